#pragma once

#include <QtCore/QFlags>
#include <QtCore/QMetaType>

/// Where a new layer goes and what happens to it. Callers pass sums: 30 for an ordinary creation command, 94
/// for one inside an expanded group, 22 and 86 for pasting (names are kept), 1 for the base layer of a new
/// channel.
enum OrvLayerCreateFlag {
    OrvLayerAtBottom = 1,
    OrvLayerAboveCurrent = 2,
    OrvLayerMakeCurrent = 4,
    OrvLayerUniqueName = 8,
    OrvLayerSelectAlone = 16,
    OrvLayerInsideCurrentGroup = 64
};

class OrvLayerCreateFlags : public QFlags<OrvLayerCreateFlag> {
public:
    constexpr OrvLayerCreateFlags() = default;
    constexpr OrvLayerCreateFlags(OrvLayerCreateFlag Flag)
        : QFlags(Flag)
    {
    }
    constexpr OrvLayerCreateFlags(int Value)
        : QFlags(QFlag(Value))
    {
    }
};

Q_DECLARE_METATYPE(OrvLayerCreateFlags)
