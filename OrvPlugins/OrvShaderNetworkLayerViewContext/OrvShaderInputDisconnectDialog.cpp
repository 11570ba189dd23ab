#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputDisconnectDialog.h"

#include "OrvCoreModules/Window/OrvApplication.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextConstants.h"

#include <QtWidgets/QFrame>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

namespace {

constexpr int OptionSpacing = 12;

void addOption(QVBoxLayout* pLayout, const QString& Heading, const QString& Effects)
{
    QLabel* pHeading = new QLabel(Heading);
    pHeading->setStyleSheet(QStringLiteral("font-weight: bold; "));
    pLayout->addWidget(pHeading);
    pLayout->addWidget(new QLabel(Effects));
}

} // namespace

OrvShaderInputDisconnectDialog::Treatment OrvShaderInputDisconnectDialog::ask(Occasion Why)
{
    if (!OrvApplication::popupsAllowed())
        return Treatment::Convert;
    OrvShaderInputDisconnectDialog Dialog(&OrvMainWindow::instance(), Why);
    if (Dialog.exec() != QDialog::Accepted)
        return Treatment::GiveUp;
    return Dialog.disconnectChosen() ? Treatment::Disconnect : Treatment::Convert;
}

OrvShaderInputDisconnectDialog::OrvShaderInputDisconnectDialog(QWidget* pParent, Occasion Why)
    : OrvDialog(pParent)
    , m_Occasion(Why)
{
    setWindowTitle(Why == Occasion::RemovingShader ? tr("Removing a Shader") : tr("Disconnecting a Channel"));
    QLabel* pIntroduction = new QLabel(introduction(), this);
    pIntroduction->setWordWrap(true);

    QFrame* pFrame = new QFrame(this);
    pFrame->setStyleSheet(OrvLayerViewContext::FramedWidgetStyleSheet);
    QVBoxLayout* pOptions = new QVBoxLayout(pFrame);
    addOption(pOptions, tr("Option 'Disconnect':"),
        tr("Material Layers will be removed from the layer stack\n\nMulti-Channel Group Layers will be "
           "removed\n\nStandard Layers nested within Multi-Channel Group Layers will also be disconnected"));
    pOptions->addSpacing(OptionSpacing);
    addOption(pOptions, tr("Option 'Convert':"),
        tr("Material Layers will be converted into Paintable Layers\n\nMulti-Channel Group Layers will be "
           "converted into Group layers\n\nMulti-Channel Layer masks will be flattened to Paintable Masks"));

    QPushButton* pDisconnect = new QPushButton(tr("Disconnect"), this);
    QPushButton* pConvert = new QPushButton(tr("Convert"), this);
    // Return takes what loses nothing.
    pConvert->setDefault(true);
    QHBoxLayout* pButtons = new QHBoxLayout;
    pButtons->addStretch();
    pButtons->addWidget(pDisconnect);
    pButtons->addWidget(pConvert);

    QVBoxLayout* pLayout = new QVBoxLayout(this);
    pLayout->addWidget(pIntroduction);
    pLayout->addWidget(pFrame);
    pLayout->addWidget(new QLabel(tr("Close this window to leave everything as it is."), this));
    pLayout->addLayout(pButtons);
    connect(pDisconnect, SIGNAL(released()), this, SLOT(onDisconnect()));
    connect(pConvert, SIGNAL(released()), this, SLOT(onConvert()));
}

QString OrvShaderInputDisconnectDialog::introduction() const
{
    const bool RemovingShader = m_Occasion == Occasion::RemovingShader;
    const QString Fact = RemovingShader
        ? tr("This Shader is connected to one or more Channels containing Multi - Channel Layers.")
        : tr("This Channel contains Multi - Channel Layers.");
    const QString When = RemovingShader ? tr(" On removing the Shader")
                                        : tr(" On disconnecting the Channel from the Shader");
    return Fact + When + tr(", depending on the chosen option, the following shall occur:");
}

void OrvShaderInputDisconnectDialog::onDisconnect()
{
    m_DisconnectChosen = true;
    accept();
}

void OrvShaderInputDisconnectDialog::onConvert()
{
    m_DisconnectChosen = false;
    accept();
}

#include "moc_OrvShaderInputDisconnectDialog.cpp"
