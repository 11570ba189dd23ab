#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvQuickChannelStrip.h"

#include "OrvCore/Object/OrvSettings.h"
#include "OrvCoreModules/Widgets/OrvColorSwatch.h"
#include "OrvDdi/Image/OrvChannel.h"
#include "OrvDdi/Image/OrvImage.h"

#include <QtWidgets/QComboBox>
#include <QtWidgets/QHBoxLayout>

namespace {

const QString SettingsGroup = QStringLiteral("Quick Create Channel");
const QString SizeKey = QStringLiteral("Size");
const QString DepthKey = QStringLiteral("Depth");
const QSize DefaultSize(2048, 2048);
constexpr int DefaultDepth = GL_UNSIGNED_BYTE;
constexpr int SwatchSize = 24;

QVariant preference(const QString& Key, const QVariant& Default)
{
    OrvSettings Settings;
    Settings.beginGroup(SettingsGroup);
    return Settings.value(Key, Default);
}

} // namespace

OrvQuickChannelStrip::OrvQuickChannelStrip(QWidget* pParent)
    : QWidget(pParent)
{
    QHBoxLayout* pLayout = new QHBoxLayout(this);
    pLayout->setContentsMargins(1, 1, 1, 1);
    pLayout->setSpacing(1);
    addSwatch(pLayout, OrvColor::black(), tr("Create a new black channel"));
    addSwatch(pLayout, OrvColor::white(), tr("Create a new white channel"));
    addSwatch(pLayout, OrvColor::grey50(), tr("Create a new mid-gray channel"));
    addSwatch(pLayout, OrvColor::clear(), tr("Create a new transparent channel"))->setCheckerOnly(true);
    m_QuickChannelSize = createCombo(6, tr("Set the size of the new quick channel"));
    m_QuickChannelDepth = createCombo(5, tr("Set the depth of the new quick channel"));
    fillSizes(false);
    fillDepths();
    pLayout->addWidget(m_QuickChannelSize);
    pLayout->addWidget(m_QuickChannelDepth);
    pLayout->addStretch();
    for (QComboBox* pCombo : {m_QuickChannelSize, m_QuickChannelDepth})
        connect(pCombo, SIGNAL(currentIndexChanged(int)), this, SIGNAL(preferencesChanged()));
}

OrvColorSwatch* OrvQuickChannelStrip::addSwatch(
    QHBoxLayout* pLayout, const OrvColor& Color, const QString& ToolTip)
{
    OrvColorSwatch* pSwatch = new OrvColorSwatch(this);
    pSwatch->setColor(Color);
    pSwatch->setDrawBorder(true);
    pSwatch->setPickingEnabled(false);
    pSwatch->setAcceptsColorDrops(false);
    pSwatch->setEmitOnClick(true);
    pSwatch->setToolTipOverride(ToolTip);
    pSwatch->setFixedSize(SwatchSize, SwatchSize);
    connect(pSwatch, SIGNAL(colorChanged(OrvColor, OrvColorSpaceDefaults::ColorSpaceTarget)), this,
        SIGNAL(colorChosen(OrvColor, OrvColorSpaceDefaults::ColorSpaceTarget)));
    pLayout->addWidget(pSwatch);
    return pSwatch;
}

QComboBox* OrvQuickChannelStrip::createCombo(int MinimumLength, const QString& ToolTip)
{
    QComboBox* pCombo = new QComboBox(this);
    pCombo->setMinimumContentsLength(MinimumLength);
    pCombo->setToolTip(ToolTip);
    pCombo->setWhatsThis(ToolTip);
    pCombo->setStatusTip(ToolTip);
    return pCombo;
}

void OrvQuickChannelStrip::fillSizes(bool Ptex)
{
    if (Ptex) {
        m_QuickChannelSize->addItem(tr("Ptex"));
    } else {
        for (const QSize& Size : OrvChannel::supportedTextureSizes())
            m_QuickChannelSize->addItem(QStringLiteral("%1 x %2").arg(Size.width()).arg(Size.height()), Size);
        m_QuickChannelSize->setCurrentIndex(m_QuickChannelSize->findData(preference(SizeKey, DefaultSize)));
    }
    m_QuickChannelSize->setEnabled(!Ptex);
}

void OrvQuickChannelStrip::fillDepths()
{
    for (const auto& Depth : OrvImage::sortedSupportedDepths())
        m_QuickChannelDepth->addItem(Depth.first, int(Depth.second));
    // Settings files keep numbers as texts.
    const int Stored = preference(DepthKey, DefaultDepth).toInt();
    m_QuickChannelDepth->setCurrentIndex(m_QuickChannelDepth->findData(Stored));
}

QSize OrvQuickChannelStrip::channelSize() const
{
    return m_QuickChannelSize->currentData().toSize();
}

int OrvQuickChannelStrip::channelDepth() const
{
    return m_QuickChannelDepth->currentData().toInt();
}

void OrvQuickChannelStrip::setPtex(bool Ptex)
{
    const bool ShowsPtex = !m_QuickChannelSize->itemData(0).isValid();
    if (ShowsPtex == Ptex)
        return;
    // Refilling must not overwrite the stored size.
    const QSignalBlocker Blocker(m_QuickChannelSize);
    m_QuickChannelSize->clear();
    fillSizes(Ptex);
}

void OrvQuickChannelStrip::savePreferences() const
{
    OrvSettings Settings;
    Settings.beginGroup(SettingsGroup);
    const QVariant Size = m_QuickChannelSize->currentData();
    if (Size.isValid())
        Settings.setValue(SizeKey, Size);
    Settings.setValue(DepthKey, m_QuickChannelDepth->currentData());
}

#include "moc_OrvQuickChannelStrip.cpp"
