#pragma once

#include "OrvCoreModules/Widgets/OrvExpandableListWidget.h"

class OrvLayer;
class OrvLayerShader;
class OrvLayerView;

/// The inputs of a shader layer's own shader among the layer's properties, one row each. The properties area
/// makes and owns it for one layer; the rows follow the shader by themselves.
class OrvLayerShaderInputs : public OrvExpandableListWidget {
    Q_OBJECT

public:
    /// Null for a layer that is no shader layer, and without a palette.
    static OrvLayerShaderInputs* create(const OrvLayer* pLayer, OrvLayerView* pLayerView, QWidget* pParent);

private Q_SLOTS:
    void onInputSwitched(bool Enabled);

private:
    OrvLayerShaderInputs(OrvLayerShader* pShader, OrvLayerView* pLayerView, QWidget* pParent);
};
