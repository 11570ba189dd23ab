#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvMultiChannelLayerCommands.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnMultiChannelMergeNode.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvMultiChannelLayerUtils.h"
#include "OrvCore/Shelf/OrvMaterialPaintManager.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvCoreModules/Menus/OrvMenu.h"
#include "OrvCoreModules/Window/OrvIcon.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewCommands.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewUtils.h"

#include <QtGui/QCursor>
#include <QtWidgets/QInputDialog>

namespace OrvUtils = OrvMultiChannelLayerUtils;

namespace {

OrvLayerShader* askForShader(const QList<OrvLayerShader*>& Shaders)
{
    QStringList Names;
    for (const OrvLayerShader* pShader : Shaders)
        Names.append(pShader->name());
    // Names may be equal; numbers tell them apart.
    for (int Index = 0; Index < Names.size(); ++Index) {
        if (Names.count(Names[Index]) > 1)
            Names[Index] = QStringLiteral("%1. %2").arg(Index + 1).arg(Names[Index]);
    }
    bool Accepted = false;
    const QString Chosen
        = QInputDialog::getItem(&OrvMainWindow::instance(), OrvLayerView::tr("Add Multi-Channel Layer"),
            OrvLayerView::tr("Add the layer to the channels of the shader:"), Names, 0, false, &Accepted);
    return Accepted ? Shaders.value(Names.indexOf(Chosen)) : nullptr;
}

QString materialFailureTitle()
{
    return OrvLayerView::tr("Material Layer Creation Failed");
}

} // namespace

OrvMultiChannelLayerCommands::OrvMultiChannelLayerCommands(
    OrvLayerView* pLayerView, const OrvLayerViewCommands* pCommands)
    : m_LayerView(pLayerView)
    , m_Commands(pCommands)
{
}

void OrvMultiChannelLayerCommands::installShaderChooser()
{
    OrvUtils::setShaderChooser(askForShader);
}

void OrvMultiChannelLayerCommands::chooseLayer()
{
    auto* pMenu = new OrvMenu(m_LayerView);
    pMenu->setAttribute(Qt::WA_DeleteOnClose);
    pMenu->setToolTipsVisible(true);
    QAction* pGroup
        = pMenu->addAction(OrvIcon::createIconFromFilename(QStringLiteral("CreateMultiChannelGroup.png")),
            OrvLayerView::tr("Group"), m_LayerView, SLOT(addMultiChannelGroup()));
    pGroup->setToolTip(OrvLayerView::tr("Add Multi-Channel Group"));
    QMenu* pMaterials = pMenu->addMenu(
        OrvIcon::createIconFromFilename(QStringLiteral("Material.png")), OrvLayerView::tr("Materials"));
    pMaterials->setToolTipsVisible(true);
    for (const OrvShelfMaterial& Material : OrvMaterialPaintManager::instance().materialsFromShelf()) {
        QAction* pAction = pMaterials->addAction(
            Material.Icon, Material.Name, m_LayerView, SLOT(addMaterialLayerFromAction()));
        pAction->setToolTip(OrvLayerView::tr("Add Material Layer %1").arg(Material.Name));
        pAction->setStatusTip(pAction->toolTip());
        pAction->setData(Material.Data);
    }
    pMaterials->setEnabled(!pMaterials->isEmpty());
    pMenu->popup(QCursor::pos());
}

void OrvMultiChannelLayerCommands::addGroup()
{
    addAtCurrent(OrvLayerView::tr("Add Multi-Channel Group"),
        OrvLayerView::tr("Multi-Channel Group Layer Creation Failed"),
        OrvUtils::createMultiChannelGroupLayer);
}

void OrvMultiChannelLayerCommands::addMaterial(const QString& Path)
{
    addAtCurrent(OrvLayerView::tr("Add Material Layer"), materialFailureTitle(),
        [&Path](OrvLayerShader* pShader, OrvSnBaseNode* pTarget, QString& Error) {
            return OrvUtils::createMaterialLayer(Path, pShader, pTarget, Error);
        });
}

bool OrvMultiChannelLayerCommands::addMaterialAt(const QString& Path, OrvSnBaseNode* pTarget)
{
    OrvLayerStack* pLayerStack = m_Commands->layerStack(__LINE__);
    if (!pLayerStack)
        return false;
    OrvLayerShader* pShader = OrvUtils::shaderForMultiChannelLayerCreationWithUserInput(pLayerStack);
    if (!pShader) {
        if (OrvUtils::shadersForMultiChannelLayers(pLayerStack).isEmpty())
            OrvLayerViewUtils::tell(OrvLayerView::tr(
                "A material goes into the channels of a shader: connect this channel to one first"));
        return false;
    }
    QString Error;
    const OrvLayer* pLayer = OrvUtils::createMaterialLayer(Path, pShader, pTarget, Error);
    OrvLayerViewUtils::warn(materialFailureTitle(), Error);
    return pLayer != nullptr;
}

void OrvMultiChannelLayerCommands::addAtCurrent(
    const QString& MacroText, const QString& FailureTitle, const Creation& Create)
{
    OrvLayerStack* pLayerStack = m_Commands->layerStack(__LINE__);
    OrvLayerShader* pShader
        = pLayerStack ? OrvUtils::shaderForMultiChannelLayerCreationWithUserInput(pLayerStack) : nullptr;
    if (!pShader)
        return;
    QString Error;
    {
        OrvUndoManager::AutoMacro Macro(MacroText);
        // Masks and adjustment stacks have no place for such layers: it is found in the channel.
        OrvSnBaseNode* pTarget = qobject_cast<OrvShaderInput*>(pLayerStack)
            ? pLayerStack->placeFor(m_Commands->creationFlags(), nullptr)
            : nullptr;
        if (!Create(pShader, pTarget, Error))
            Macro.cancel();
    }
    OrvLayerViewUtils::warn(FailureTitle, Error);
}

void OrvMultiChannelLayerCommands::toggleInChannel(const OrvLayer* pLayer, const OrvLayerStack* pLayerStack)
{
    const OrvSnMultiChannelMergeNode* pCommon = pLayer->blendNode()->multiChannelNode();
    OrvSnMergeNode* pStream = pLayerStack && pCommon
        ? pCommon->mergeNodeForShaderModelInput(pLayerStack->currentStreamName(pLayer->blendNode()))
        : nullptr;
    if (!pStream) {
        OrvDebug("OrvLayerViewItemRowWidget", __LINE__, QStringLiteral("AsMcmNode is NULL"), false, false);
        return;
    }
    const bool Enabled = !pStream->enabledAsBool();
    const OrvUndoManager::AutoMacro Macro((Enabled ? OrvLayerView::tr("Show Layer '%1' in This Channel")
                                                   : OrvLayerView::tr("Hide Layer '%1' in This Channel"))
                                              .arg(pLayer->name()));
    pStream->setEnabledAsBool(Enabled);
}
