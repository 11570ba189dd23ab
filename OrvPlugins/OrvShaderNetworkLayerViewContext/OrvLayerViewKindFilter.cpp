#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewKindFilter.h"

#include "OrvCore/Layers/OrvLayer.h"

OrvLayerViewKindFilter::OrvLayerViewKindFilter(QWidget* pParent)
    : OrvLayerViewButtonFilter(pParent)
{
    addCondition(QStringLiteral("Painting.16x16.png"),
        tr("Show layers that contain non-procedural image data"),
        [](const OrvLayer* pLayer) { return pLayer->isPaintableLayer(); });
    addCondition(QStringLiteral("ColorCurves.16x16.png"), tr("Show adjustment layers"),
        [](const OrvLayer* pLayer) { return pLayer->isAdjustmentLayer(); });
    addCondition(QStringLiteral("AddNoise.16x16.png"), tr("Show procedural layers"),
        [](const OrvLayer* pLayer) { return pLayer->isProceduralLayer(); });
}

QString OrvLayerViewKindFilter::name() const
{
    return tr("Type");
}

#include "moc_OrvLayerViewKindFilter.cpp"
