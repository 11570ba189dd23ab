#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvPaletteSplitter.h"

#include "OrvCore/Object/OrvSettings.h"

#include <QtCore/QCoreApplication>
#include <QtWidgets/QVBoxLayout>

namespace {

const QString SplitterKey = QStringLiteral("SplitterSize");
constexpr int UpperTenths = 4, LowerTenths = 6;

} // namespace

OrvPaletteSplitter::OrvPaletteSplitter(const QString& SettingsGroup, QWidget* pParent)
    : QSplitter(Qt::Vertical, pParent)
    , m_SettingsGroup(SettingsGroup)
{
    setChildrenCollapsible(false);
    // The window with its palettes outlives the program's run.
    connect(qApp, &QCoreApplication::aboutToQuit, this, &OrvPaletteSplitter::saveToSettings);
}

OrvPaletteSplitter::~OrvPaletteSplitter()
{
    saveToSettings();
}

void OrvPaletteSplitter::saveToSettings() const
{
    if (!m_HasSizes)
        return;
    OrvSettings Settings;
    Settings.beginGroup(m_SettingsGroup);
    Settings.setValue(SplitterKey, saveState());
}

void OrvPaletteSplitter::setPanes(QWidget* pUpper, QWidget* pLower)
{
    addWidget(pUpper);
    addWidget(pLower);
    setCollapsible(1, true);
    shareOutHeight();
    OrvSettings Settings;
    Settings.beginGroup(m_SettingsGroup);
    m_HasSizes = restoreState(Settings.value(SplitterKey).toByteArray());
}

QVBoxLayout* OrvPaletteSplitter::createTightLayout(QWidget* pPane)
{
    QVBoxLayout* pLayout = new QVBoxLayout(pPane);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(0);
    return pLayout;
}

void OrvPaletteSplitter::shareOutHeight()
{
    setSizes({height() * UpperTenths / 10, height() * LowerTenths / 10});
}

void OrvPaletteSplitter::showEvent(QShowEvent* pEvent)
{
    QSplitter::showEvent(pEvent);
    // Only now is there a height to share out.
    if (m_HasSizes)
        return;
    shareOutHeight();
    m_HasSizes = true;
}

#include "moc_OrvPaletteSplitter.cpp"
