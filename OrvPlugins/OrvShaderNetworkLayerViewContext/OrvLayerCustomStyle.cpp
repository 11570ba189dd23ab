#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerCustomStyle.h"

void OrvLayerCustomStyle::drawPrimitive(
    PrimitiveElement Element, const QStyleOption* pOption, QPainter* pPainter, const QWidget* pWidget) const
{
    if (Element != PE_IndicatorBranch)
        OrvCustomStyle2::drawPrimitive(Element, pOption, pPainter, pWidget);
}

#include "moc_OrvLayerCustomStyle.cpp"
