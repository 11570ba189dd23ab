#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderTagActions.h"

#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Menus/OrvMenuManager.h"
#include "OrvCoreModules/Menus/OrvShortcutManager.h"
#include "OrvCoreModules/Window/OrvIcon.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextConstants.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewUtils.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderView.h"

#include <QtWidgets/QAction>

namespace {

const char TagProperty[] = "shaderTag";
const char UserShaderProperty[] = "UserShader";
const QString ViewMenu = QStringLiteral("&View");

struct TagAction {
    const char* pTag;
    const char* pText;
    const char* pToolTip;
    const char* pIcon;
    const char* pSlot;
    const char* pMissing;
};

/// In the order of the targets.
const TagAction Table[] = {
    {"Channel", "Current Channel", QT_TRANSLATE_NOOP("OrvShaderTagActions", "View the current channel"),
        "ViewCurrentChannel.png", SLOT(currentChannel()), "Cannot get Current Channel Shader"},
    {"LayerAndBelow", "Current Layer && Below",
        QT_TRANSLATE_NOOP("OrvShaderTagActions", "View only the current layer & below"),
        "ViewCurrentLayerAndBelow1.png", SLOT(currentLayerAndBelow()),
        "Cannot get Current Layer And Below Shader"},
    {"Layer", "Current Layer", QT_TRANSLATE_NOOP("OrvShaderTagActions", "View the current layer"),
        "ViewCurrentLayer1.png", SLOT(currentLayer()), "Cannot get Current Layer Shader"},
    {"Paint", "Current Paint Target",
        QT_TRANSLATE_NOOP("OrvShaderTagActions", "View the current paint target"), "ViewCurrentPaint.png",
        SLOT(currentComponent()), "Cannot get Current Paint Shader"},
    {"Material", "Current Material", QT_TRANSLATE_NOOP("OrvShaderTagActions", "View the current material"),
        "ViewCurrentMaterial.svg", SLOT(currentMaterial()), "Cannot get Current Material Shader"},
    // The last text is the channel's, and is meant to be.
    {"UserSelectedShader", "User Shader", QT_TRANSLATE_NOOP("OrvShaderTagActions", "View the user shader"),
        "ViewUserShader.png", SLOT(lastSelectedUserShader()), "Cannot get Current Channel Shader"},
};

void report(int Line, const char* pMessage)
{
    OrvDebug("OrvShaderView", Line, QString::fromLatin1(pMessage), false, false);
}

OrvSnBaseNode* shaderOf(OrvShaderTagActions::Target What, const OrvShaderNetwork* pNetwork)
{
    const OrvLayerShaderManager& Shaders = OrvLayerShaderManager::instance();
    switch (What) {
    case OrvShaderTagActions::LayerAndBelow:
        return Shaders.getCurrentLayerAndBelowShader(pNetwork);
    case OrvShaderTagActions::PaintTarget:
        return Shaders.getCurrentCurrentComponentShader();
    case OrvShaderTagActions::Layer:
        return Shaders.getCurrentCurrentLayerShader();
    case OrvShaderTagActions::Channel:
        return Shaders.getCurrentChannelShader(pNetwork);
    case OrvShaderTagActions::Material:
        return Shaders.getCurrentMaterialProxyShader(pNetwork);
    case OrvShaderTagActions::UserShader:
        return Shaders.selectedUserShaderNode();
    }
    return nullptr;
}

} // namespace

OrvShaderTagActions::OrvShaderTagActions(OrvShaderView* pShaderView)
    : QObject(pShaderView)
{
    OrvMenuManager& Menus = OrvMenuManager::instance();
    Menus.addSeparator(OrvLayerViewContext::MainWindowName, ViewMenu, QString());
    for (const TagAction& Entry : Table) {
        const QString Text = QString::fromLatin1(Entry.pText);
        QAction* pAction
            = new QAction(OrvIcon::createIconFromFilename(QString::fromLatin1(Entry.pIcon)), Text, this);
        pAction->setCheckable(true);
        pAction->setToolTip(tr(Entry.pToolTip));
        pAction->setStatusTip(pAction->toolTip());
        pAction->setProperty(TagProperty, QString::fromLatin1(Entry.pTag));
        connect(pAction, SIGNAL(triggered()), pShaderView, Entry.pSlot);
        m_Actions.append(pAction);
        // Numbered in menu order.
        OrvShortcutManager::instance().setDefaultShortcut(
            OrvLayerViewContext::ViewsPath + QLatin1Char('/') + Text,
            QKeySequence(Qt::ALT + Qt::Key_0 + m_Actions.size()));
        OrvActionTreeManager::instance().registerAction(OrvLayerViewContext::ViewsPath, pAction);
        Menus.registerAction(OrvLayerViewContext::MainWindowName, ViewMenu, QString(), pAction);
    }
    m_Actions.at(UserShader)->setProperty(UserShaderProperty, true);
}

void OrvShaderTagActions::view(Target What)
{
    OrvLayerShaderManager& Shaders = OrvLayerShaderManager::instance();
    const OrvShaderNetwork* pNetwork = OrvShaderNetworkManager::instance().currentShaderNetwork();
    OrvSnBaseNode* pNode = pNetwork ? shaderOf(What, pNetwork) : nullptr;
    if (!pNetwork) {
        report(__LINE__, "Cannot get a handle to the current shader network");
    } else if (!pNode) {
        report(__LINE__, Table[What].pMissing);
        OrvLayerViewUtils::tell(tr("There is nothing to show: add a shader of your own first"));
    } else {
        Shaders.setCurrentShader(pNode);
    }
    // The action has toggled itself; what counts is what is shown now.
    showCurrent(pNetwork ? Shaders.currentLayerShader() : nullptr);
}

bool OrvShaderTagActions::isUsable(const QAction* pAction) const
{
    const bool IsForUserShader = pAction->property(UserShaderProperty).toBool();
    return m_Enabled && (!IsForUserShader || OrvLayerShaderManager::instance().selectedUserShaderNode());
}

void OrvShaderTagActions::showCurrent(const OrvLayerShader* pShader)
{
    const OrvSnBaseNode* pNode = pShader ? pShader->node() : nullptr;
    for (QAction* pAction : qAsConst(m_Actions)) {
        pAction->setChecked(pNode && pNode->hasTag(pAction->property(TagProperty).toString()));
        pAction->setEnabled(isUsable(pAction));
    }
}

void OrvShaderTagActions::setEnabled(bool Enabled)
{
    m_Enabled = Enabled;
    for (QAction* pAction : qAsConst(m_Actions))
        pAction->setEnabled(isUsable(pAction));
}

#include "moc_OrvShaderTagActions.cpp"
