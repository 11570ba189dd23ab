#pragma once

/// What the question marks of the three palettes tell: the gestures that no button shows. Registered once,
/// with the host's help, by whoever makes the palettes.
namespace OrvPaletteHelp {

void registerTexts();

} // namespace OrvPaletteHelp
