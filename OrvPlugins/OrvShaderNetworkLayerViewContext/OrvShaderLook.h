#pragma once

class OrvSnBaseNode;
class QIcon;
class QString;

/// What the Shaders palette tells of a shader besides its name, in a picture and in words: what a system
/// shader follows, or what kind of shader it is.
namespace OrvShaderLook {

/// In front of its name.
QIcon icon(const OrvSnBaseNode* pNode);
/// In place of the inputs that it does not have.
QString whatItShows(const OrvSnBaseNode* pNode);

} // namespace OrvShaderLook
