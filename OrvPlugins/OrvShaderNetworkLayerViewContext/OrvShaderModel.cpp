#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderModel.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCore/Shaders/OrvMultiChannelLayerUtils.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragPayload.h"

#include <QtCore/QSignalBlocker>

#include <optional>

namespace {

void report(int Line, const char* pMessage)
{
    OrvDebug("OrvShaderModel", Line, QString::fromLatin1(pMessage), false, false);
}

} // namespace

OrvShaderModel::OrvShaderModel(QObject* pParent)
    : OrvNodeRowModel(pParent)
{
    setSortRole(PositionRole);
}

bool OrvShaderModel::dropMimeData(const QMimeData* pMimeData, Qt::DropAction, int, int, const QModelIndex&)
{
    const Qt::DropAction Action = OrvLayerDragPayload::actionFromModifiers();
    const QVector<OrvSnBaseNode*> Nodes = OrvLayerDragPayload::read(pMimeData);
    // One drop is one step; that of a single layer bears its name.
    std::optional<OrvUndoManager::AutoMacro> Macro;
    if (Nodes.size() > 1)
        Macro.emplace(tr("Convert Layers to Shaders"));
    for (OrvSnBaseNode* pNode : Nodes) {
        if (pNode->hasTag(OrvSnNames::ShaderTag)) {
            if (OrvLayerShaderManager::instance().getLayerShader(pNode))
                continue;
            report(__LINE__, "LayerShader is NULL");
            break;
        }
        if (!OrvLayerStreamUtils::isMergeNode(pNode))
            continue;
        OrvLayer* pLayer = OrvLayerManager::instance().getLayer(pNode, true);
        if (!pLayer) {
            report(__LINE__, "Layer is NULL");
            break;
        }
        OrvMultiChannelLayerUtils::assertOnMultiChannelLayer(pLayer);
        if (!pLayer->isShaderLayer() || pLayer->isSharedShader())
            break;
        OrvSnBaseNode* pShaderNode
            = Action == Qt::MoveAction ? pLayer->convertShaderLayerToShader() : nullptr;
        if (pShaderNode)
            Q_EMIT addShaderNode(pShaderNode);
    }
    return false;
}

OrvSnBaseNode* OrvShaderModel::nodeFromItem(const QStandardItem* pItem) const
{
    return pItem ? nodeFromIndex(pItem->index()) : nullptr;
}

QStandardItem* OrvShaderModel::appendNode(const OrvSnBaseNode* pNode, const QIcon& Icon, bool Editable)
{
    QStandardItem* pItem = new QStandardItem(pNode->name());
    pItem->setData(pNode->uuidString(), NodeRole);
    pItem->setData(rowCount(), PositionRole);
    pItem->setIcon(Icon);
    pItem->setEditable(Editable);
    appendRow(pItem);
    return pItem;
}

void OrvShaderModel::renumber()
{
    const QSignalBlocker Blocker(this);
    for (int Row = 0; Row < rowCount(); ++Row)
        item(Row)->setData(Row, PositionRole);
}

#include "moc_OrvShaderModel.cpp"
