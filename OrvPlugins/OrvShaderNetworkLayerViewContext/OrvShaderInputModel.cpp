#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputModel.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Object/OrvObjectReferenceManager.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragPayload.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputView.h"

#include <QtCore/QMimeData>
#include <QtWidgets/QMessageBox>

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
    QMessageBox::warning(&OrvMainWindow::instance(), OrvShaderInputModel::tr("Duplication Operation Failed"),
        OrvShaderInputModel::tr(
            "This Channel contains Multi-Channel Layers and cannot be duplicated, cut, copied or "
            "pasted. Please convert all Multi-Channel Layers to standard Layers first."),
        QMessageBox::Ok);
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
    : QStandardItemModel(pView)
{
}

QStringList OrvShaderInputModel::mimeTypes() const
{
    return {OrvLayerDragPayload::mimeType()};
}

QMimeData* OrvShaderInputModel::mimeData(const QModelIndexList& Indexes) const
{
    return OrvLayerDragPayload::ofRows(Indexes, NodeRole);
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

Qt::DropActions OrvShaderInputModel::supportedDropActions() const
{
    return Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
}

OrvSnBaseNode* OrvShaderInputModel::nodeFromIndex(const QModelIndex& Index) const
{
    const QString Uuid = Index.data(NodeRole).toString();
    if (Uuid.isEmpty())
        return nullptr;
    return qobject_cast<OrvSnBaseNode*>(OrvObjectReferenceManager::instance().getPointer(Uuid));
}

QModelIndex OrvShaderInputModel::indexFromShaderInput(const OrvShaderInput* pShaderInput) const
{
    if (!pShaderInput) {
        report(__LINE__, "ShaderInput is NULL");
        return {};
    }
    if (!pShaderInput->node())
        return {};
    const QString Uuid = pShaderInput->node()->uuidString();
    for (int Row = 0; Row < rowCount(); ++Row) {
        const QStandardItem* pItem = item(Row);
        if (pItem && pItem->data(NodeRole).toString() == Uuid)
            return pItem->index();
    }
    return {};
}

#include "moc_OrvShaderInputModel.cpp"
