#pragma once

#include "OrvCoreModules/Plugin/OrvPluginInterface.h"

#include <QtCore/QObject>

/// The object that the host finds when it loads the module. It brings up the actions and palettes of the layered
/// shader network once and registers their menus; it holds nothing itself and never takes anything down again.
class OrvShaderNetworkLayerViewContextPlugin : public QObject, public OrvPluginInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID OrvPluginInterface_iid)
    Q_INTERFACES(OrvPluginInterface)

public:
    bool initialize() override;
    bool pluginsInitialized() override;
    ~OrvShaderNetworkLayerViewContextPlugin() override;
    QString name() const override;
    QString description() const override;
    QString author() const override;
    QString vendor() const override;
    int version() const override;
};
