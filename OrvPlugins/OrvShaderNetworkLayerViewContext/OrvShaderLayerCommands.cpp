#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderLayerCommands.h"

#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCore/Shaders/OrvLayerShaderUtils.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewCommands.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextConstants.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewUtils.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputConnection.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputRow.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderViewActions.h"

#include <QtCore/QPointer>
#include <QtWidgets/QAction>
#include <QtWidgets/QMenu>

using OrvLayerViewUtils::report;

namespace {

const char LayerViewProperty[] = "OrvLayerView";
const char CurrentShaderProperty[] = "OrvCurrentLayerShader";

/// While a layer's shader is being made, palettes wait, and what is current is not to change.
class ShaderCreation {
public:
    ShaderCreation()
        : m_CurrentShaderNode(OrvLayerShaderManager::instance().currentShaderNode())
    {
        OrvLayerShaderManager::instance().setLayerShaderCreating(true);
    }
    ~ShaderCreation()
    {
        OrvLayerShaderManager& Shaders = OrvLayerShaderManager::instance();
        if (Shaders.currentShaderNode() != m_CurrentShaderNode)
            Shaders.setCurrentShader(m_CurrentShaderNode);
        Shaders.setLayerShaderCreating(false);
    }
    ShaderCreation(const ShaderCreation&) = delete;
    ShaderCreation& operator=(const ShaderCreation&) = delete;

private:
    QPointer<OrvSnBaseNode> m_CurrentShaderNode;
};

} // namespace

OrvShaderLayerCommands::OrvShaderLayerCommands(
    OrvLayerView* pLayerView, const OrvLayerViewCommands* pCommands)
    : m_LayerView(pLayerView)
    , m_Commands(pCommands)
{
}

void OrvShaderLayerCommands::addShaderLayer()
{
    if (!m_Commands->layerStack(__LINE__))
        return;
    QAction* pAction = OrvActionTreeManager::instance().findAction(OrvLayerViewContext::AddShaderLayerAction);
    if (!pAction) {
        report(__LINE__, "Action is NULL");
        return;
    }
    // The palette can go while the menu is open.
    const QPointer<OrvLayerView> pLayerView = m_LayerView;
    m_IsRefused = false;
    OrvUndoManager::AutoMacro Macro(OrvLayerView::tr("Add Shader Layer"));
    const ShaderCreation Creation;
    pAction->setProperty(LayerViewProperty, QVariant::fromValue<QObject*>(m_LayerView));
    pAction->setProperty(CurrentShaderProperty,
        QVariant::fromValue<OrvLayerShader*>(OrvLayerShaderManager::instance().currentLayerShader()));
    pAction->trigger();
    if (!pLayerView || m_IsRefused)
        Macro.cancel();
}

void OrvShaderLayerCommands::addChosenShader(const QObject* pSender)
{
    const auto* pMenu = qobject_cast<const QMenu*>(pSender);
    if (!pMenu) {
        report(__LINE__, "SendingMenu is NULL");
        return;
    }
    if (pMenu->menuAction()->property(LayerViewProperty).value<QObject*>() != m_LayerView)
        return;
    // Chosen elsewhere, the menu has nothing for this palette.
    if (!OrvLayerShaderManager::instance().layerShaderCreating())
        return;
    m_IsRefused = !addLayer(OrvShaderViewActions::instance().takeCreatedShader());
}

void OrvShaderLayerCommands::addShaderLayer(const QString& Key)
{
    if (!m_Commands->layerStack(__LINE__))
        return;
    OrvUndoManager::AutoMacro Macro(OrvLayerView::tr("Add Shader Layer"));
    const ShaderCreation Creation;
    if (!addLayer(OrvLayerShaderUtils::createShaderFromKey(Key, true)))
        Macro.cancel();
}

void OrvShaderLayerCommands::setInputInverted(const QObject* pSender, bool Inverted)
{
    if (!pSender) {
        report(__LINE__, "Sender is NULL");
        return;
    }
    const auto* pNode = pSender->property(OrvShaderInputRow::ShaderNodeProperty).value<OrvSnBaseNode*>();
    if (!pNode) {
        report(__LINE__, "ShaderNode is NULL");
        return;
    }
    OrvLayerShader* pShader = OrvLayerShaderManager::instance().getLayerShader(pNode);
    if (!pShader) {
        report(__LINE__, "pLayerShader is NULL");
        return;
    }
    OrvShaderInputConnection::setInverted(
        pShader, pSender->property(OrvShaderInputRow::InputNameProperty).toString(), Inverted);
}

bool OrvShaderLayerCommands::addLayer(OrvLayerShader* pShader)
{
    OrvLayerStack* pLayerStack = m_Commands->layerStack(__LINE__);
    if (!pLayerStack)
        return false;
    if (!pShader) {
        report(__LINE__, "pLayerShader is NULL");
        return false;
    }
    if (!pLayerStack->holdsShaders()) {
        OrvLayerViewUtils::tell(
            OrvLayerView::tr("Shader layers stand in material stacks only: choose a material"));
        return false;
    }
    return pLayerStack->createShaderLayer(pShader, m_Commands->creationFlags(), nullptr, QString());
}
