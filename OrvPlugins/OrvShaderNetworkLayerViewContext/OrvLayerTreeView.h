#pragma once

#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvRowWidgetTree.h"

#include <QtCore/QItemSelection>

class OrvLayer;
class OrvLayerDragHover;
class OrvLayerView;
class OrvSnBaseNode;

/// The tree of a Layers palette, which owns it: shows the rows, relays what the user selects to the host's
/// layers, and says where a drag of layers may land. It edits nothing of the document.
class OrvLayerTreeView : public OrvRowWidgetTree {
    Q_OBJECT

public:
    OrvLayerTreeView(QWidget* pParent, OrvLayerView* pLayerView);

    /// While rows are rebuilt from the host, their selection must not go back to it.
    void connectSelectionRelay();
    void disconnectSelectionRelay();

    /// Shown in the middle of a tree that shows no rows.
    void setEmptyText(const QString& Text);
    const QString& emptyText() const { return m_EmptyText; }

Q_SIGNALS:
    void currentIndexChanged(QModelIndex Current, QModelIndex Previous);

public Q_SLOTS:
    void onSelectionChanged(QItemSelection Selected, QItemSelection Deselected);

protected:
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseDoubleClickEvent(QMouseEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;
    void mouseMoveEvent(QMouseEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    void enterEvent(QEvent* pEvent) override;
    void leaveEvent(QEvent* pEvent) override;
    void dragMoveEvent(QDragMoveEvent* pEvent) override;
    void dragLeaveEvent(QDragLeaveEvent* pEvent) override;
    void dropEvent(QDropEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;
    QStyleOptionViewItem viewOptions() const override;
    QSize viewportSizeHint() const override;
    void currentChanged(const QModelIndex& Current, const QModelIndex& Previous) override;
    void startDrag(Qt::DropActions SupportedActions) override;

protected Q_SLOTS:
    void rowsAboutToBeRemoved(const QModelIndex& Parent, int First, int Last) override;

private:
    QString branchStyleSheet() const;
    void removeRowWidgetsBelow(const QModelIndex& Parent);
    bool mayLand(const QVector<OrvSnBaseNode*>& Nodes) const;
    /// Said as for the model, of the place that the base class just found.
    bool wouldDrop(const QDropEvent& Event);
    void selectSharingRows(const QSet<OrvLayer*>& Deselected);

    OrvLayerView* m_LayerView;
    OrvLayerDragHover* m_DragHover;
    QPoint m_PressPosition; ///< of a press with Shift, until the mouse has really moved; (0, 0): none
    bool m_PlainClick = false; ///< the user chooses one row, by mouse or key, while this is set
    bool m_Pressed = false; ///< here, not on a button of a row
    QString m_EmptyText;
};
