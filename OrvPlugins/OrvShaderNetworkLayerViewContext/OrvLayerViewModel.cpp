#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewModel.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Shelf/OrvMaterialPaintManager.h"
#include "OrvCoreModules/DragAndDrop/OrvDragAndDropManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragPayload.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDrop.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewItem.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewItemRowWidget.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewUtils.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvMultiChannelLayerCommands.h"

#include <QtCore/QMimeData>

#include <algorithm>

OrvLayerViewModel::OrvLayerViewModel(OrvLayerView* pLayerView, QObject* pParent)
    : QStandardItemModel(0, 1, pParent)
    , m_LayerView(pLayerView)
{
    connect(this, &QAbstractItemModel::rowsInserted, this, &OrvLayerViewModel::enterRows);
    connect(this, &QAbstractItemModel::rowsAboutToBeRemoved, this, &OrvLayerViewModel::leaveRows);
}

QStringList OrvLayerViewModel::mimeTypes() const
{
    return OrvLayerDragPayload::mimeTypes()
        + OrvDragAndDropManager::instance().mimeTypes(OrvDragAndDropManager::LayerTreeTarget);
}

QMimeData* OrvLayerViewModel::mimeData(const QModelIndexList& Indexes) const
{
    QModelIndexList Sorted = Indexes;
    std::sort(Sorted.begin(), Sorted.end());
    QStringList Uuids;
    for (const QModelIndex& Index : qAsConst(Sorted)) {
        const OrvLayer* pLayer = Index.column() == 0 ? layerFromIndex(Index) : nullptr;
        if (pLayer && pLayer->blendNode())
            Uuids.append(pLayer->blendNode()->uuidString());
    }
    QMimeData* pMimeData = new QMimeData;
    OrvLayerDragPayload::write(*pMimeData, Uuids);
    OrvLayerDragPayload::writeStack(*pMimeData, m_LayerView->layerStack());
    return pMimeData;
}

bool OrvLayerViewModel::canDropMimeData(
    const QMimeData* pData, Qt::DropAction Action, int Row, int Column, const QModelIndex& Parent) const
{
    if (OrvDragAndDropManager::instance().acceptDragEnter(pData, OrvDragAndDropManager::LayerTreeTarget))
        return true;
    if (OrvMaterialPaintManager::isMimeDataMaterialFile(pData)) {
        if (!qobject_cast<OrvShaderInput*>(m_LayerView->layerStack()))
            return false;
        if (dropTargetNode(Row, Parent))
            return true;
    }
    if (OrvMaterialPaintManager::isMimeDataCustomProceduralFile(pData) && dropTargetNode(Row, Parent))
        return true;
    return QStandardItemModel::canDropMimeData(pData, Action, Row, Column, Parent);
}

bool OrvLayerViewModel::dropMimeData(
    const QMimeData* pData, Qt::DropAction, int Row, int, const QModelIndex& Parent)
{
    if (dropHostContent(pData, Row, Parent))
        return true;
    if (OrvMaterialPaintManager::isMimeDataMaterialFile(pData)) {
        const QStringList Paths = OrvMaterialPaintManager::pathListFromMimeData(pData);
        OrvSnBaseNode* pTarget = dropTargetNode(Row, Parent);
        return !Paths.isEmpty() && pTarget
            && m_LayerView->multiChannelCommands()->addMaterialAt(Paths.first(), pTarget);
    }
    if (OrvMaterialPaintManager::isMimeDataCustomProceduralFile(pData))
        return dropCustomProcedural(pData, Row, Parent);
    return dropLayers(pData, Row, Parent);
}

bool OrvLayerViewModel::dropHostContent(const QMimeData* pData, int Row, const QModelIndex& Parent) const
{
    OrvDragAndDropManager& Drops = OrvDragAndDropManager::instance();
    if (!Drops.acceptDragEnter(pData, OrvDragAndDropManager::LayerTreeTarget))
        return false;
    QVariantMap Parameters{
        {QStringLiteral("LayerStack"), QVariant::fromValue<OrvLayerStack*>(m_LayerView->layerStack())}};
    OrvSnBaseNode* pTarget = dropTargetNode(Row, Parent);
    if (OrvLayer* pBelow = pTarget ? OrvLayerManager::instance().getLayer(pTarget, true) : nullptr)
        Parameters.insert(QStringLiteral("LayerBelow"), QVariant::fromValue<OrvLayer*>(pBelow));
    if (pTarget)
        Parameters.insert(QStringLiteral("TargetNode"), QVariant::fromValue<OrvSnBaseNode*>(pTarget));
    return Drops.drop(pData, OrvDragAndDropManager::LayerTreeTarget, Parameters);
}

bool OrvLayerViewModel::dropCustomProcedural(const QMimeData* pData, int Row, const QModelIndex& Parent) const
{
    const QStringList Paths = OrvMaterialPaintManager::pathListFromMimeData(pData);
    OrvSnBaseNode* pTarget = dropTargetNode(Row, Parent);
    OrvLayerStack* pLayerStack = m_LayerView->layerStack();
    if (Paths.isEmpty() || !pTarget || !pLayerStack)
        return false;
    QString Error;
    const OrvLayer* pLayer = pLayerStack->createCustomProceduralLayer(
        Paths.first(), pTarget, OrvLayerMakeCurrent | OrvLayerUniqueName | OrvLayerSelectAlone, Error);
    OrvLayerViewUtils::warn(tr("Custom Procedural Layer Creation Failed"), Error);
    return pLayer != nullptr;
}

bool OrvLayerViewModel::dropLayers(const QMimeData* pData, int Row, const QModelIndex& Parent) const
{
    const QVector<OrvSnBaseNode*> Nodes = OrvLayerDragPayload::read(pData);
    if (Nodes.isEmpty())
        return false;
    const Qt::DropAction Action = OrvLayerDragPayload::actionFromModifiers();
    OrvSnBaseNode* pTarget = dropTargetNode(Row, Parent);
    if (!pTarget) {
        OrvDebug("OrvLayerViewModel", __LINE__,
            QStringLiteral("The layer's new network has no Bottom Transparency node. "
                           "The layer node was not properly connected"),
            false, false);
        return false;
    }
    const bool OntoItself = Action == Qt::MoveAction && Nodes.contains(pTarget);
    if (OntoItself || !OrvLayerUtils::isModificationAllowedAt(pTarget))
        return false;
    return OrvLayerDrop::inUndoStep([&] { return layerDrop(pData, Action, Row, Parent).carryOut(); });
}

OrvLayerDrop OrvLayerViewModel::layerDrop(
    const QMimeData* pData, Qt::DropAction Action, int Row, const QModelIndex& Parent) const
{
    return OrvLayerDrop(OrvLayerDragPayload::read(pData), Action, OrvLayerDragPayload::readStack(pData),
        dropTargetNode(Row, Parent), m_LayerView->layerStack());
}

Qt::DropActions OrvLayerViewModel::supportedDropActions() const
{
    return Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
}

OrvSnBaseNode* OrvLayerViewModel::dropTargetNode(int Row, const QModelIndex& Parent) const
{
    const OrvLayerStack* pLayerStack = m_LayerView->layerStack();
    if (!pLayerStack)
        return nullptr;
    if (Row != -1) {
        const OrvLayer* pAt = layerFromIndex(index(Row, 0, Parent));
        if (pAt && pAt->blendNode())
            return pAt->blendNode();
        const OrvLayer* pAbove = layerFromIndex(index(Row - 1, 0, Parent));
        return pAbove ? OrvLayerStreamUtils::layerNodeBelow(pAbove, pLayerStack) : nullptr;
    }
    if (!Parent.isValid())
        return pLayerStack->bottomNode();

    // Onto a row: on top of what the layer holds.
    const OrvLayer* pLayer = layerFromIndex(Parent);
    OrvSnBaseNode* pBlendNode = pLayer ? pLayer->blendNode() : nullptr;
    if (!pBlendNode)
        return nullptr;
    if (!pLayer->hasAdjustmentStack())
        return pBlendNode->inputNode(
            OrvLayerStreamUtils::overInputName(pLayerStack->currentStreamName(pBlendNode)));
    const OrvSnBaseNode* pBottom = pLayer->adjustmentStackBottomNode();
    return pBottom ? pBottom->inputNode(pBottom->preferredInput()) : nullptr;
}

OrvLayer* OrvLayerViewModel::layerFromIndex(const QModelIndex& Index) const
{
    return Index.isValid() ? OrvLayerViewUtils::layerFromItem(itemFromIndex(Index)) : nullptr;
}

QList<OrvLayerViewItem*> OrvLayerViewModel::itemsFromLayer(const OrvLayer* pLayer) const
{
    return pLayer && pLayer->blendNode() ? m_Items.values(pLayer->blendNode()->uuidString())
                                         : QList<OrvLayerViewItem*>();
}

QModelIndex OrvLayerViewModel::indexFromLayer(const OrvLayer* pLayer) const
{
    const QList<OrvLayerViewItem*> Items = itemsFromLayer(pLayer);
    return Items.isEmpty() ? QModelIndex() : indexFromItem(Items.first());
}

QItemSelection OrvLayerViewModel::rowsSharingContentWith(const QSet<OrvLayer*>& Layers) const
{
    QSet<const OrvImageSet*> Paint, Masks;
    for (const OrvLayer* pLayer : Layers) {
        if (!pLayer->isShared())
            continue;
        Paint.insert(pLayer->paintImageSet());
        Masks.insert(pLayer->maskImageSet());
    }
    Paint.remove(nullptr);
    Masks.remove(nullptr);
    QItemSelection Rows;
    if (Paint.isEmpty() && Masks.isEmpty())
        return Rows;
    for (const OrvLayerViewItem* pItem : m_Items) {
        OrvLayer* pLayer = pItem->rowWidget() ? pItem->rowWidget()->layer() : nullptr;
        if (pLayer && !Layers.contains(pLayer)
            && (Paint.contains(pLayer->paintImageSet()) || Masks.contains(pLayer->maskImageSet())))
            Rows.select(pItem->index(), pItem->index());
    }
    return Rows;
}

void OrvLayerViewModel::enterRows(const QModelIndex& Parent, int First, int Last)
{
    for (int Row = First; Row <= Last; ++Row) {
        const QModelIndex Index = index(Row, 0, Parent);
        if (auto* pItem = static_cast<OrvLayerViewItem*>(itemFromIndex(Index)))
            m_Items.insert(pItem->data(OrvLayerViewUtils::NodeRole).toString(), pItem);
        if (hasChildren(Index))
            enterRows(Index, 0, rowCount(Index) - 1);
    }
}

void OrvLayerViewModel::leaveRows(const QModelIndex& Parent, int First, int Last)
{
    for (int Row = First; Row <= Last; ++Row) {
        const QModelIndex Index = index(Row, 0, Parent);
        if (auto* pItem = static_cast<OrvLayerViewItem*>(itemFromIndex(Index)))
            m_Items.remove(pItem->data(OrvLayerViewUtils::NodeRole).toString(), pItem);
        if (hasChildren(Index))
            leaveRows(Index, 0, rowCount(Index) - 1);
    }
}

#include "moc_OrvLayerViewModel.cpp"
