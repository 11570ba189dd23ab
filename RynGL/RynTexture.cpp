#include "RynGL/RynTexture.h"

namespace Brennick::Ryn {

TextureToken::TextureToken() = default;

TextureToken::TextureToken(GLuint Name)
    : m_Name(Name)
{
}

} // namespace Brennick::Ryn
