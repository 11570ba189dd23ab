#pragma once

#include <QtCore/qglobal.h>

#if defined(ORVCOREMODULES_LIBRARY)
#define ORVCOREMODULES_EXPORT Q_DECL_EXPORT
#else
#define ORVCOREMODULES_EXPORT Q_DECL_IMPORT
#endif
