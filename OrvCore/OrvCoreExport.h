#pragma once

#include <QtCore/qglobal.h>

#if defined(ORVCORE_LIBRARY)
#define ORVCORE_EXPORT Q_DECL_EXPORT
#else
#define ORVCORE_EXPORT Q_DECL_IMPORT
#endif
