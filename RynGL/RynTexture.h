#pragma once

#include "RynGL/RynGLExport.h"

#include <qopengl.h>

namespace Brennick::Ryn {

/// Names a GL texture without owning it. A value that can be made before any application or GL context exists and
/// outlive both; the default one names no texture.
class RYNGL_EXPORT TextureToken {
public:
    TextureToken();
    explicit TextureToken(GLuint Name);

    bool isNull() const { return m_Name == 0; }
    GLuint name() const { return m_Name; }

    bool operator==(const TextureToken& Other) const { return m_Name == Other.m_Name; }
    bool operator!=(const TextureToken& Other) const { return m_Name != Other.m_Name; }

private:
    GLuint m_Name = 0;
};

} // namespace Brennick::Ryn
