#pragma once

#include <QtCore/QMetaType>

/// Says in which kind of colour space a colour value is expressed. Which space that is by name depends on the
/// application's settings (OrvColorSpaceManager) and, for data and working values, on a channel's
/// OrvColorSpaceConfig.
namespace OrvColorSpaceDefaults {

enum ColorSpaceTarget {
    None = 0, ///< plain numbers, never converted
    Display = 1, ///< what the monitor is sent
    Picker = 2, ///< what colour editors show and take
    Data = 3, ///< how a channel's pixels are stored
    Working = 4 ///< where a channel's pixels are painted and blended
};

} // namespace OrvColorSpaceDefaults

Q_DECLARE_METATYPE(OrvColorSpaceDefaults::ColorSpaceTarget)
