#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewColorTagFilter.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCoreModules/Widgets/OrvBasicColorSwatch.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvTagColorSwatch.h"

namespace {
constexpr int SwatchHeight = 24;
}

OrvLayerViewColorTagFilter::OrvLayerViewColorTagFilter(QWidget* pParent)
    : OrvLayerViewFilterType(pParent)
    , m_Swatch(OrvTagColorSwatch::create(pParent))
{
    m_Swatch->setFixedHeight(SwatchHeight);
    // The first to hear of a change: the others find the filter active or not as it is now.
    connect(this, SIGNAL(changed()), this, SLOT(updateActive()));
    connect(m_Swatch, SIGNAL(colorChecked(QColor, bool)), this, SLOT(updateActive()));
    connect(m_Swatch, SIGNAL(colorChecked(QColor, bool)), this, SIGNAL(changed()));
}

QString OrvLayerViewColorTagFilter::name() const
{
    return tr("Color Tag");
}

QList<QWidget*> OrvLayerViewColorTagFilter::widgets() const
{
    return {m_Swatch};
}

void OrvLayerViewColorTagFilter::updateActive()
{
    m_CheckedColors = m_Swatch->checkedColors();
    m_Active = !m_CheckedColors.isEmpty();
}

bool OrvLayerViewColorTagFilter::matches(const OrvLayer* pLayer) const
{
    return !isActive() || m_CheckedColors.contains(pLayer->color());
}

#include "moc_OrvLayerViewColorTagFilter.cpp"
