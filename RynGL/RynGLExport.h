#pragma once

#include <QtCore/qglobal.h>

#if defined(RYNGL_LIBRARY)
#define RYNGL_EXPORT Q_DECL_EXPORT
#else
#define RYNGL_EXPORT Q_DECL_IMPORT
#endif
