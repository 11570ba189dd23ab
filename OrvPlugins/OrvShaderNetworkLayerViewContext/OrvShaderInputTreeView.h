#pragma once

#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvRowWidgetTree.h"

#include <QtCore/QTimer>

class OrvShaderInputView;

/// The list of channels. The Channels palette owns it and puts a row widget on every row. A drag that rests
/// on a row makes that channel current; the view itself changes nothing of the document.
class OrvShaderInputTreeView : public OrvRowWidgetTree {
    Q_OBJECT

public:
    explicit OrvShaderInputTreeView(OrvShaderInputView* pParent);

    QSize sizeHint() const override;

Q_SIGNALS:
    void currentIndexChanged(QModelIndex Current, QModelIndex Previous);

public Q_SLOTS:
    /// Makes the row under the cursor current if the drag still rests on it.
    void testAndSetCurrentIndexFromDrag();
    /// The name of the current row is edited where it stands.
    void renameChannel();

protected:
    void currentChanged(const QModelIndex& Current, const QModelIndex& Previous) override;
    /// Shift and Alt say what a drag is to do: such a press leaves the current channel, and its stack, in
    /// sight.
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;
    void dragMoveEvent(QDragMoveEvent* pEvent) override;
    void dropEvent(QDropEvent* pEvent) override;
    void startDrag(Qt::DropActions SupportedActions) override;

private:
    void endPressWithKeys();
    bool isOverHotSpot(const QModelIndex& Index, const QPoint& Position) const;

    OrvShaderInputView* m_Parent;
    QModelIndex m_DragIndex;
    QTimer m_DragTimer;
    bool m_PressedWithKeys = false; ///< from a press with Shift or Alt to its end
    bool m_IsPressing = false;
};
