#include "OrvCoreModules/Window/OrvAppearance.h"

#include "OrvCore/Object/OrvSettings.h"

namespace {
const QString PrecisionKey = QStringLiteral("Appearance/SliderPrecision");
constexpr int DefaultPrecision = 3;
constexpr int GreatestPrecision = 6;
} // namespace

OrvAppearance& OrvAppearance::instance()
{
    static auto* pInstance = new OrvAppearance;
    return *pInstance;
}

OrvAppearance::OrvAppearance()
    : m_SliderPrecision(
        qBound(0, OrvSettings().value(PrecisionKey, DefaultPrecision).toInt(), GreatestPrecision))
{
}

void OrvAppearance::setSliderPrecision(int Decimals)
{
    const int Precision = qBound(0, Decimals, GreatestPrecision);
    if (Precision == m_SliderPrecision)
        return;
    m_SliderPrecision = Precision;
    OrvSettings().setValue(PrecisionKey, Precision);
    Q_EMIT sliderPrecisionChanged(Precision);
}

#include "moc_OrvAppearance.cpp"
