#pragma once

#include <QtCore/QPersistentModelIndex>
#include <QtWidgets/QListView>

/// The list of shaders. The Shaders palette owns it; it reports the current row, and only shaders and shader
/// layers may be dragged over it. A row becomes current by a click: one that is dragged leaves what is
/// current, with its material tabs, in sight.
class OrvShaderListView : public QListView {
    Q_OBJECT

public:
    explicit OrvShaderListView(QWidget* pParent);

Q_SIGNALS:
    void currentIndexChanged(QModelIndex Current, QModelIndex Previous);

protected:
    void currentChanged(const QModelIndex& Current, const QModelIndex& Previous) override;
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;
    void startDrag(Qt::DropActions SupportedActions) override;
    void dragMoveEvent(QDragMoveEvent* pEvent) override;

private:
    QPersistentModelIndex m_Pressed; ///< until the button is released, or the row dragged
    bool m_IsPressing = false;
};
