#pragma once

class OrvLayerShader;
class QString;
class QWidget;

/// The editor of the colour or number that an input of a shader has while no channel feeds it. Each edit is
/// one undo step; a gesture that is under way survives refreshes of what is around it.
namespace OrvShaderInputValueEditor {

/// Null for an input that has no value of its own.
QWidget* create(OrvLayerShader* pShader, const QString& InputName, QWidget* pParent);

} // namespace OrvShaderInputValueEditor
