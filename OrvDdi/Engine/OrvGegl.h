#pragma once

// The one way to the image engine's headers: Qt's lower-case keywords must not reach them. For sources only.
#include <QtCore/QtGlobal>

#undef signals
#undef slots
#undef emit
#undef foreach

#include <gegl.h>
#include <gegl-plugin.h>
