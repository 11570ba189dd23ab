#pragma once

#include <QtCore/QPointer>
#include <QtCore/QVector>
#include <QtWidgets/QTreeView>

/// A tree whose rows are widgets, thousands of them: only those in view are ever shown, placed and polished.
/// It knows nothing of what the rows show.
class OrvRowWidgetTree : public QTreeView {
    Q_OBJECT

public:
    explicit OrvRowWidgetTree(QWidget* pParent);

    /// Puts a widget on a row; the tree takes it and shows it once the row is in view. Cheap only between
    /// scheduleRowLayout() and the layout that follows.
    void setRowWidget(const QModelIndex& Index, QWidget* pWidget);
    /// Takes the widget off its row and leaves it to the caller, in sight if it was, for another row.
    void releaseRowWidget(QWidget* pWidget);
    /// Puts the layout of the rows off until somebody needs it.
    void scheduleRowLayout();

    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void scrollContentsBy(int X, int Y) override;

protected Q_SLOTS:
    void updateEditorGeometries() override;
    void doItemsLayout() override;

private:
    bool m_RowLayoutPending = false;
    QVector<QPointer<QWidget>> m_RowWidgetsInView;
};
