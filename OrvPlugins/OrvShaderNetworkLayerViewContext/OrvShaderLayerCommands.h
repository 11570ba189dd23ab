#pragma once

class OrvLayerShader;
class OrvLayerView;
class OrvLayerViewCommands;
class QObject;
class QString;

/// Adds shaders as layers to the material stack of a Layers palette, which owns it. The shader's type is
/// chosen in the host's menu of shader types, which all palettes share; a new shader and its layer are one
/// undo step.
class OrvShaderLayerCommands {
public:
    OrvShaderLayerCommands(OrvLayerView* pLayerView, const OrvLayerViewCommands* pCommands);

    /// Opens the menu at the cursor for this palette, and returns when it has closed.
    void addShaderLayer();
    /// The menu tells every palette of a choice; it is for the one that opened it.
    void addChosenShader(const QObject* pSender);
    /// Without a menu.
    void addShaderLayer(const QString& Key);
    /// Of the shader and the input that the sender names, as the box in an OrvShaderInputRow does.
    void setInputInverted(const QObject* pSender, bool Inverted);

private:
    bool addLayer(OrvLayerShader* pShader);

    OrvLayerView* m_LayerView;
    const OrvLayerViewCommands* m_Commands;
    bool m_IsRefused = false;
};
