#pragma once

#include <QtCore/QPointer>
#include <QtGui/QStandardItemModel>
#include <QtWidgets/QTreeView>

/// The least that a tree of row widgets can cost, in plain Qt: all rows are inserted first, their widgets are set and
/// hidden again while the layout is still pending, only those in view are placed and shown, and a row makes its dozen
/// children when it is first painted. The Layers palette is measured against it.
class FloorTree : public QTreeView {
    Q_OBJECT

public:
    FloorTree();

    /// Replaces all rows: each tenth is a group that holds the nine after it.
    void build(int RowCount);
    void insertRowOnTop();
    /// Takes the last row of the top level and puts it on top, with a new widget.
    void moveLastRowToTop();
    /// Hides the rows whose names lack the text, unless they hold one that does not.
    void filterRows(const QString& Text);

protected:
    void updateEditorGeometries() override;

private:
    void setRowWidget(const QModelIndex& Index);
    void setRowWidgets(const QModelIndex& Parent);
    bool filterRows(const QString& Text, const QModelIndex& Parent);

    QStandardItemModel m_Model;
    QVector<QPointer<QWidget>> m_Shown;
};
