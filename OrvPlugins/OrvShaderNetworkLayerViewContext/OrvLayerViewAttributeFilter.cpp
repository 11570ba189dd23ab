#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewAttributeFilter.h"

#include "OrvCore/Layers/OrvLayer.h"

#include <QtWidgets/QPushButton>

OrvLayerViewAttributeFilter::OrvLayerViewAttributeFilter(QWidget* pParent)
    : OrvLayerViewButtonFilter(pParent)
{
    addCondition(QStringLiteral("simple_collection_view.16x16.png"), tr("Show group layers"),
        [](const OrvLayer* pLayer) { return pLayer->isGroupLayer(); });
    m_UnlockedButton = addCondition(QStringLiteral("UnLock.16x16.png"), tr("Show unlocked layers"),
        [](const OrvLayer* pLayer) { return !pLayer->isLocked(); });
    m_LockedButton = addCondition(QStringLiteral("Lock.16x16.png"), tr("Show locked layers"),
        [](const OrvLayer* pLayer) { return pLayer->isLocked(); });
    m_VisibleButton = addCondition(QStringLiteral("ShowAll.16x16.png"), tr("Show visible layers"),
        [](const OrvLayer* pLayer) { return pLayer->isVisible(); });
    m_InvisibleButton = addCondition(QStringLiteral("Hide.16x16.png"), tr("Show invisible layers"),
        [](const OrvLayer* pLayer) { return !pLayer->isVisible(); });
    addCondition(QStringLiteral("Mask.16x16.png"), tr("Show layers that have masks"),
        [](const OrvLayer* pLayer) { return pLayer->hasMask(); });
    addCondition(QStringLiteral("ColorCurves.16x16.png"), tr("Show layers that have adjustments"),
        [](const OrvLayer* pLayer) { return pLayer->hasAdjustmentStack(); });

    connect(m_LockedButton, SIGNAL(toggled(bool)), this, SLOT(uncheckUnlockedIfChecked(bool)));
    connect(m_UnlockedButton, SIGNAL(toggled(bool)), this, SLOT(uncheckLockedIfChecked(bool)));
    connect(m_InvisibleButton, SIGNAL(toggled(bool)), this, SLOT(uncheckVisibleIfChecked(bool)));
    connect(m_VisibleButton, SIGNAL(toggled(bool)), this, SLOT(uncheckInvisibleIfChecked(bool)));
}

QString OrvLayerViewAttributeFilter::name() const
{
    return tr("Attribute");
}

void OrvLayerViewAttributeFilter::uncheckUnlockedIfChecked(bool Checked)
{
    if (Checked)
        m_UnlockedButton->setChecked(false);
}

void OrvLayerViewAttributeFilter::uncheckLockedIfChecked(bool Checked)
{
    if (Checked)
        m_LockedButton->setChecked(false);
}

void OrvLayerViewAttributeFilter::uncheckVisibleIfChecked(bool Checked)
{
    if (Checked)
        m_VisibleButton->setChecked(false);
}

void OrvLayerViewAttributeFilter::uncheckInvisibleIfChecked(bool Checked)
{
    if (Checked)
        m_InvisibleButton->setChecked(false);
}

#include "moc_OrvLayerViewAttributeFilter.cpp"
