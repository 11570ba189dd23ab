#pragma once

class OrvLayerShader;
class OrvMenu;
class QString;
class QWidget;

/// What can be done with an input of a shader: choose the channel that feeds it, make one, disconnect it, go
/// back to the model's value. The entries act by themselves, on the shader that is there when they are
/// chosen.
namespace OrvShaderInputMenu {

/// It deletes itself when it closes.
OrvMenu* create(OrvLayerShader* pShader, const QString& InputName, QWidget* pParent);

} // namespace OrvShaderInputMenu
