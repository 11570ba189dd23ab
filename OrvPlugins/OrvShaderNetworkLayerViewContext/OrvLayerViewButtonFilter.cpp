#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewButtonFilter.h"

#include <QtWidgets/QPushButton>

#include <algorithm>

OrvLayerViewButtonFilter::OrvLayerViewButtonFilter(QWidget* pParent)
    : OrvLayerViewFilterType(pParent)
{
    // The first to hear of a change: the others find the filter active or not as it is now.
    connect(this, SIGNAL(changed()), this, SLOT(updateActive()));
}

QPushButton* OrvLayerViewButtonFilter::addCondition(
    const QString& IconFileName, const QString& ToolTip, Condition Holds)
{
    m_Choices.append({createButton(IconFileName, ToolTip), Holds});
    return m_Choices.last().pButton;
}

QList<QWidget*> OrvLayerViewButtonFilter::widgets() const
{
    QList<QWidget*> Buttons;
    for (const Choice& One : m_Choices)
        Buttons.append(One.pButton);
    return Buttons;
}

bool OrvLayerViewButtonFilter::matches(const OrvLayer* pLayer) const
{
    return !isActive() || std::any_of(m_Choices.cbegin(), m_Choices.cend(), [pLayer](const Choice& One) {
        return One.pButton->isChecked() && One.Holds(pLayer);
    });
}

void OrvLayerViewButtonFilter::updateActive()
{
    m_Active = std::any_of(
        m_Choices.cbegin(), m_Choices.cend(), [](const Choice& One) { return One.pButton->isChecked(); });
}

#include "moc_OrvLayerViewButtonFilter.cpp"
