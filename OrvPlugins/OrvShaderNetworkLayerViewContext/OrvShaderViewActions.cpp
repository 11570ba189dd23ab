#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderViewActions.h"

OrvShaderViewActions& OrvShaderViewActions::instance()
{
    static OrvShaderViewActions Instance;
    return Instance;
}

OrvShaderViewActions::OrvShaderViewActions() = default;

#include "moc_OrvShaderViewActions.cpp"
