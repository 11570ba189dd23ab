#pragma once

class OrvShaderInput;
class OrvShaderInputActionsConvertDialog;

/// Converts a channel to what the user chose in the dialog: its depth and both of its colour spaces, in the
/// order that loses least. It opens no undo step of its own; whoever calls it takes back what a refused or
/// cancelled one has done so far.
namespace OrvShaderInputConversion {

/// False when a step was refused or cancelled; the user knows why.
bool convert(OrvShaderInput* pShaderInput, const OrvShaderInputActionsConvertDialog& Wanted);

} // namespace OrvShaderInputConversion
