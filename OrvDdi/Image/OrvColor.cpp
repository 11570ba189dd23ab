#include "OrvDdi/Image/OrvColor.h"

#include <QtGui/QColor>

namespace {

/// Variants compare the colours that they hold, not where they hold them.
const bool s_ComparesByValue = QMetaType::registerEqualsComparator<OrvColor>();

} // namespace

OrvColor OrvColor::fromQColor(const QColor& Color)
{
    return {float(Color.redF()), float(Color.greenF()), float(Color.blueF()), float(Color.alphaF())};
}

QColor OrvColor::toQColor() const
{
    // A comparison that is false for values that are not numbers, which QColor does not take.
    const auto clamped = [](float Value) { return Value > 0.0f ? qMin(double(Value), 1.0) : 0.0; };
    return QColor::fromRgbF(clamped(red()), clamped(green()), clamped(blue()), clamped(alpha()));
}
