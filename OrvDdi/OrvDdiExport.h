#pragma once

#include <QtCore/qglobal.h>

#if defined(ORVDDI_LIBRARY)
#define ORVDDI_EXPORT Q_DECL_EXPORT
#else
#define ORVDDI_EXPORT Q_DECL_IMPORT
#endif
