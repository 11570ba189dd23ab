#pragma once

class OrvSnBaseNode;
class QIcon;

/// What the row of a shader shows before its name: what a system shader follows, or what kind of shader it
/// is.
namespace OrvShaderRowIcon {

QIcon of(const OrvSnBaseNode* pNode);

} // namespace OrvShaderRowIcon
