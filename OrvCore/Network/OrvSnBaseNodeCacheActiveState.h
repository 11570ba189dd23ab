#pragma once

#include <QtCore/QMetaType>

/// Whether a node keeps its result ("cached up to here").
enum OrvSnBaseNodeCacheActiveState {
    OrvSnCacheInactive = 0,
    OrvSnCacheActive = 1
};

Q_DECLARE_METATYPE(OrvSnBaseNodeCacheActiveState)
