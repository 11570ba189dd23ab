#pragma once

#include "LayersFixture.h"

#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragPayload.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerTreeView.h"

#include <QtCore/QMimeData>
#include <QtGui/QDropEvent>
#include <QtWidgets/QApplication>

#include <memory>

/// Drags of layers, with the mouse over a widget that they may be dropped on.
namespace LayerDrags {

constexpr Qt::DropActions AllActions{Qt::CopyAction | Qt::MoveAction | Qt::LinkAction};

/// What a drag of rows carries.
inline std::unique_ptr<QMimeData> ofRows(const OrvLayerView* pView, const QList<OrvLayer*>& Layers)
{
    QModelIndexList Indexes;
    for (const OrvLayer* pLayer : Layers)
        Indexes.append(pView->model()->indexFromLayer(pLayer));
    return std::unique_ptr<QMimeData>(pView->model()->mimeData(Indexes));
}

inline std::unique_ptr<QMimeData> ofNodes(const QVector<OrvSnBaseNode*>& Nodes)
{
    QStringList Uuids;
    for (const OrvSnBaseNode* pNode : Nodes)
        Uuids.append(pNode->uuidString());
    auto pData = std::make_unique<QMimeData>();
    OrvLayerDragPayload::write(*pData, Uuids);
    return pData;
}

/// The gap above the layer's row.
inline QPoint above(const OrvLayerView* pView, const OrvLayer* pLayer)
{
    return pView->treeView()->visualRect(pView->model()->indexFromLayer(pLayer)).topLeft() + QPoint(40, 1);
}

/// The action that the cursor shows; none where nothing would be dropped.
inline Qt::DropAction over(
    QWidget* pWidget, const QMimeData& Data, const QPoint& At, Qt::KeyboardModifiers Keys = Qt::NoModifier)
{
    QDragEnterEvent Enter(At, AllActions, &Data, Qt::LeftButton, Keys);
    QApplication::sendEvent(pWidget, &Enter);
    if (!Enter.isAccepted())
        return Qt::IgnoreAction;
    QDragMoveEvent Move(At, AllActions, &Data, Qt::LeftButton, Keys);
    QApplication::sendEvent(pWidget, &Move);
    return Move.isAccepted() ? Move.dropAction() : Qt::IgnoreAction;
}

/// Lets go, wherever the drag went before. What the source is told; none where nothing was dropped.
inline Qt::DropAction drop(
    QWidget* pWidget, const QMimeData& Data, const QPoint& At, Qt::KeyboardModifiers Keys = Qt::NoModifier)
{
    QDropEvent Drop(At, AllActions, &Data, Qt::LeftButton, Keys);
    QApplication::sendEvent(pWidget, &Drop);
    return Drop.isAccepted() ? Drop.dropAction() : Qt::IgnoreAction;
}

inline void leave(QWidget* pWidget)
{
    QDragLeaveEvent Leave;
    QApplication::sendEvent(pWidget, &Leave);
}

} // namespace LayerDrags
