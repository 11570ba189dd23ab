#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputModel.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragPayload.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewUtils.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputView.h"

#include <QtCore/QMimeData>

namespace {

void report(int Line, const char* Message)
{
    OrvDebug("OrvShaderInputModel", Line, QString::fromLatin1(Message), false, false);
}

void duplicateChannel(OrvShaderInput* pShaderInput)
{
    if (!pShaderInput->containsMultiChannelLayerOfShaderModel(nullptr)) {
        OrvShaderInputUtils::createDuplicate(pShaderInput, QString());
        return;
    }
    OrvLayerViewUtils::warn(OrvShaderInputModel::tr("Duplication Operation Failed"),
        OrvShaderInputModel::tr(
            "This Channel contains Multi-Channel Layers and cannot be duplicated, cut, copied or "
            "pasted. Please convert all Multi-Channel Layers to standard Layers first."));
}

/// False ends the whole drop.
bool dropLayer(OrvLayer* pLayer, Qt::DropAction Action)
{
    if (!pLayer) {
        report(__LINE__, "Layer is NULL");
        return false;
    }
    if (OrvLayerStreamUtils::isMultiChannelMergeLayer(pLayer))
        return false;
    if (Action == Qt::LinkAction)
        pLayer->shareLayerAsChannel();
    return true;
}

bool dropChannel(OrvShaderInput* pShaderInput, Qt::DropAction Action)
{
    if (!pShaderInput) {
        report(__LINE__, "ShaderInput is NULL");
        return false;
    }
    if (Action == Qt::CopyAction)
        duplicateChannel(pShaderInput);
    return true;
}

} // namespace

OrvShaderInputModel::OrvShaderInputModel(OrvShaderInputView* pView)
    : OrvNodeRowModel(pView)
{
}

bool OrvShaderInputModel::dropMimeData(
    const QMimeData* pMimeData, Qt::DropAction, int, int, const QModelIndex&)
{
    const Qt::DropAction Action = OrvLayerDragPayload::actionFromModifiers();
    for (OrvSnBaseNode* pNode : OrvLayerDragPayload::read(pMimeData)) {
        if (OrvLayerStreamUtils::isMergeNode(pNode)) {
            if (!dropLayer(OrvLayerManager::instance().getLayer(pNode, true), Action))
                break;
        } else if (pNode->hasTag(OrvSnNames::ShaderInputTag)) {
            if (!dropChannel(OrvShaderInputUtils::find(pNode, QString()), Action))
                break;
        }
    }
    return false;
}

QModelIndex OrvShaderInputModel::indexFromShaderInput(const OrvShaderInput* pShaderInput) const
{
    if (!pShaderInput) {
        report(__LINE__, "ShaderInput is NULL");
        return {};
    }
    return indexFromNode(pShaderInput->node());
}

#include "moc_OrvShaderInputModel.cpp"
