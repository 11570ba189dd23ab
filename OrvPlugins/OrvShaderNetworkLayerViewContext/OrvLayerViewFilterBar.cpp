#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewFilterBar.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCoreModules/Widgets/OrvSwitch.h"
#include "OrvCoreModules/Window/OrvIcon.h"
#include "OrvCoreModules/Window/OrvResourceInfo.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewFilterType.h"

#include <QtWidgets/QComboBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>

namespace {

constexpr int IconSize = 24;
constexpr int Spacing = 2;
constexpr int SmallestComboBoxWidth = 70;

void report(int Line, const QString& Message)
{
    OrvDebug("OrvLayerViewFilterBar", Line, Message, false, false);
}

void reportOutOfRange(int Line, int Index)
{
    report(Line, QStringLiteral("[ !! ] Filter index %1 is out of range").arg(Index));
}

} // namespace

OrvLayerViewFilterBar::OrvLayerViewFilterBar(QObject* pParent, QBoxLayout* pLayout)
    : QObject(pParent)
    , m_Box(new QHBoxLayout)
    , m_ComboBox(new QComboBox)
    , m_Spacer(new QSpacerItem(0, 0, QSizePolicy::MinimumExpanding, QSizePolicy::Minimum))
    , m_Switch(new OrvSwitch)
{
    auto* pIcon = new QLabel;
    pIcon->setPixmap(
        OrvIcon::createIconFromPath(OrvResourceInfo::instance().iconPath() + QStringLiteral("/Lookup.png"))
            .pixmap(IconSize));
    m_Switch->setChecked(true);
    m_Switch->setToolTip(tr("Filter the layers"));
    // In a narrow palette its text is cut before the palette is widened for the controls.
    m_ComboBox->setMinimumWidth(SmallestComboBoxWidth);
    m_ComboBox->setToolTip(tr("What layers are filtered by"));

    pLayout->addLayout(m_Box);
    m_Box->setContentsMargins(Spacing, 0, Spacing, 0);
    m_Box->setSpacing(Spacing);
    m_Box->addWidget(pIcon);
    m_Box->addWidget(m_ComboBox);
    m_Box->addItem(m_Spacer);
    m_Box->addWidget(m_Switch);

    connect(m_Switch, SIGNAL(stateChanged(bool)), this, SIGNAL(filterChanged()));
    connect(m_ComboBox, SIGNAL(currentIndexChanged(int)), this, SLOT(setFilterType(int)));
    connect(m_ComboBox, SIGNAL(currentIndexChanged(int)), this, SIGNAL(filterChanged()));
}

void OrvLayerViewFilterBar::addFilter(OrvLayerViewFilterType* pFilterType)
{
    if (!pFilterType) {
        report(__LINE__, QStringLiteral("pFilterType is NULL"));
        return;
    }
    m_Box->removeItem(m_Spacer);
    m_Box->removeWidget(m_Switch);
    for (QWidget* pControl : pFilterType->widgets()) {
        m_Box->addWidget(pControl);
        pControl->hide();
    }
    m_Box->addItem(m_Spacer);
    m_Box->addWidget(m_Switch);
    connect(pFilterType, SIGNAL(changed()), this, SIGNAL(filterChanged()));
    m_FilterTypes.append(pFilterType);
    m_ComboBox->addItem(pFilterType->name());
}

void OrvLayerViewFilterBar::setFilterType(int NewIndex)
{
    if (NewIndex < 0 || NewIndex >= m_FilterTypes.size()) {
        reportOutOfRange(__LINE__, NewIndex);
        return;
    }
    if (m_ComboBox->currentIndex() != NewIndex) {
        m_ComboBox->setCurrentIndex(NewIndex);
        return;
    }
    showControls(m_Index, false);
    showControls(NewIndex, true);
    if (m_FilterTypes[NewIndex]->stretchAfterWidgets())
        m_Spacer->changeSize(0, 0, QSizePolicy::MinimumExpanding, QSizePolicy::Minimum);
    else
        m_Spacer->changeSize(0, 0, QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_Box->invalidate();
    m_Index = NewIndex;
}

void OrvLayerViewFilterBar::showControls(int Index, bool Shown)
{
    for (QWidget* pControl : m_FilterTypes[Index]->widgets())
        pControl->setVisible(Shown);
}

bool OrvLayerViewFilterBar::filterActive() const
{
    if (!m_Switch->checked())
        return false;
    if (m_Index < m_FilterTypes.size())
        return m_FilterTypes[m_Index]->isActive();
    reportOutOfRange(__LINE__, m_Index);
    return true;
}

QString OrvLayerViewFilterBar::filteredName(const OrvLayer* pLayer) const
{
    if (!m_Switch->checked())
        return OrvLayerViewFilterType::bold(pLayer->name());
    if (m_Index < m_FilterTypes.size())
        return m_FilterTypes[m_Index]->highlightedName(pLayer);
    reportOutOfRange(__LINE__, m_Index);
    return {};
}

#include "moc_OrvLayerViewFilterBar.cpp"
