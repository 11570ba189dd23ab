#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderNetworkLayerViewContextPlugin.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerCreateFlags.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCoreModules/Menus/OrvMenuManager.h"
#include "OrvDdi/Image/OrvColor.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerActions.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvMultiChannelLayerCommands.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputActions.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderViewActions.h"

#include <QtCore/QItemSelection>

namespace {

void registerMetaTypes()
{
    qRegisterMetaType<OrvLayer*>("OrvLayer*");
    qRegisterMetaType<OrvSnBaseNode*>("OrvSnBaseNode*");
    qRegisterMetaType<OrvLayerCreateFlags>("OrvLayerCreateFlags");
    qRegisterMetaType<OrvColor>("OrvColor");
    qRegisterMetaType<QItemSelection>("QItemSelection");
}

} // namespace

OrvShaderNetworkLayerViewContextPlugin::~OrvShaderNetworkLayerViewContextPlugin() = default;

bool OrvShaderNetworkLayerViewContextPlugin::initialize()
{
    // The log names a fixed line, whatever this file looks like.
    OrvDebug("OrvShaderNetworkLayerViewContextPlugin", 20,
        QStringLiteral("[ Plugin ] Shader Network - Layer View Context"), false, false);
    registerMetaTypes();

    // The palettes fill their menus and tool bars from the actions, so those come first.
    OrvShaderInputActions::instance();
    OrvLayerActions::instance();
    OrvLayerViewContextManager::instance();
    OrvShaderViewActions::instance();
    OrvMultiChannelLayerCommands::installShaderChooser();

    OrvMenuManager& MenuManager = OrvMenuManager::instance();
    const QStringList Names{QStringLiteral("Layers"), QStringLiteral("Channels"), QStringLiteral("Shaders")};
    for (const QString& Name : Names)
        MenuManager.addMenuSet(Name);
    for (const QString& Name : Names)
        MenuManager.addRootMenu(Name, QStringLiteral("Panel"));
    return true;
}

bool OrvShaderNetworkLayerViewContextPlugin::pluginsInitialized()
{
    return true;
}
QString OrvShaderNetworkLayerViewContextPlugin::name() const
{
    return tr("Layer View Context");
}
QString OrvShaderNetworkLayerViewContextPlugin::description() const
{
    return tr("Layer View of the Shader Network");
}
QString OrvShaderNetworkLayerViewContextPlugin::author() const
{
    return QStringLiteral("The Orvi authors");
}
QString OrvShaderNetworkLayerViewContextPlugin::vendor() const
{
    return QStringLiteral("Orvi");
}
int OrvShaderNetworkLayerViewContextPlugin::version() const
{
    return 1;
}

#include "moc_OrvShaderNetworkLayerViewContextPlugin.cpp"
