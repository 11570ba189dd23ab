#pragma once

#include <QtCore/QString>

#include <functional>

class OrvLayer;
class OrvLayerShader;
class OrvLayerStack;
class OrvLayerView;
class OrvLayerViewCommands;
class OrvSnBaseNode;

/// The commands of a Layers palette, which owns it, for layers that stand in several channels of a shader: it
/// adds materials and groups, and shows or hides one in a single channel. Which shader is meant is asked
/// where several are possible; failures are told.
class OrvMultiChannelLayerCommands {
public:
    OrvMultiChannelLayerCommands(OrvLayerView* pLayerView, const OrvLayerViewCommands* pCommands);

    /// From now on the user is asked in a dialog which of several shaders is meant.
    static void installShaderChooser();

    /// Opens a menu at the cursor; its entries call the palette's slots.
    void chooseLayer();
    void addGroup();
    void addMaterial(const QString& Path);
    /// Above the target, for a file that was dropped there.
    bool addMaterialAt(const QString& Path, OrvSnBaseNode* pTarget);

    /// Shows the layer in the channel of the stack, or hides it there; in its other channels it stays as it
    /// is.
    static void toggleInChannel(const OrvLayer* pLayer, const OrvLayerStack* pLayerStack);

private:
    using Creation
        = std::function<OrvLayer*(OrvLayerShader* pShader, OrvSnBaseNode* pTarget, QString& Error)>;
    void addAtCurrent(const QString& MacroText, const QString& FailureTitle, const Creation& Create);

    OrvLayerView* m_LayerView;
    const OrvLayerViewCommands* m_Commands;
};
