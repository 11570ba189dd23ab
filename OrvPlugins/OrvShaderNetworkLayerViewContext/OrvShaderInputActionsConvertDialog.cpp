#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputActionsConvertDialog.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCoreModules/Properties/OrvColorSpaceControlet.h"
#include "OrvCoreModules/Widgets/OrvExpandableListWidget.h"
#include "OrvCoreModules/Widgets/OrvFormLayout.h"
#include "OrvDdi/Color/OrvColorManager.h"
#include "OrvDdi/Image/OrvImage.h"

#include <QtWidgets/QComboBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

namespace {

QString otherLayersText(bool HasLockedLayers, bool HasSharedLayers)
{
    using Dialog = OrvShaderInputActionsConvertDialog;
    QStringList Kinds;
    if (HasLockedLayers)
        Kinds.append(Dialog::tr("locked layers"));
    if (HasSharedLayers)
        Kinds.append(Dialog::tr("shared layers that are used by other channels"));
    return Dialog::tr("\nThe selected channel contains ") + Kinds.join(Dialog::tr(" and "))
        + Dialog::tr(".\n\nWould you like to change these as well?\n");
}

} // namespace

OrvShaderInputActionsConvertDialog::OrvShaderInputActionsConvertDialog(
    OrvShaderInput* pShaderInput, QWidget* pParent, bool HasLockedLayers, bool HasSharedLayers)
    : QDialog(pParent)
    , m_ColorSpaceConfig(pShaderInput->colorSpaceConfig())
    , m_ScalarColorSpaceConfig(pShaderInput->scalarColorSpaceConfig())
{
    setWindowTitle(tr("Convert Channel"));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    QVBoxLayout* pLayout = new QVBoxLayout(this);
    pLayout->addWidget(new QLabel(tr("Select the texel format to convert the channel to:\n")));

    m_TypeCombo = new QComboBox;
    for (const QString& Text : pShaderInput->imageSetDepthList())
        m_TypeCombo->addItem(Text, uint(OrvImage::validTypeFromString(Text)));
    m_TypeCombo->setCurrentIndex(m_TypeCombo->findText(pShaderInput->imageSetDepthAsString()));
    OrvFormLayout* pForm = new OrvFormLayout;
    pForm->addRow(tr("Type"), m_TypeCombo);
    pLayout->addLayout(pForm);
    pLayout->addWidget(createColorSpaces());
    // The spaces of a configuration that cannot be read are missing among those offered.
    const QString Trouble = OrvColorManager::configurationError();
    if (!Trouble.isEmpty()) {
        QLabel* pTrouble = new QLabel(Trouble);
        pTrouble->setWordWrap(true);
        pTrouble->setTextFormat(Qt::PlainText);
        pLayout->addWidget(pTrouble);
    }

    const bool HasOtherLayers = HasLockedLayers || HasSharedLayers;
    if (HasOtherLayers)
        pLayout->addWidget(new QLabel(otherLayersText(HasLockedLayers, HasSharedLayers)));
    pLayout->addStretch();
    pLayout->addWidget(createButtons(HasOtherLayers));
    connect(m_TypeCombo, SIGNAL(currentIndexChanged(QString)), this, SLOT(updateAutomaticColorSpaces()));
}

QWidget* OrvShaderInputActionsConvertDialog::createColorSpaces()
{
    OrvExpandableListWidget* pGroup = new OrvExpandableListWidget(tr("Colorspace"), this);
    m_ColorSpaces = new OrvColorSpaceControlet(m_ColorSpaceConfig);
    m_ScalarColorSpaces = new OrvColorSpaceControlet(m_ScalarColorSpaceConfig);
    // Unlike a palette, a dialog can be as wide as the names of spaces are long.
    for (const QWidget* pControlet : {m_ColorSpaces, m_ScalarColorSpaces}) {
        for (QComboBox* pCombo : pControlet->findChildren<QComboBox*>())
            pCombo->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    }
    pGroup->addChild(m_ColorSpaces, tr("Color Data"), QString());
    pGroup->addChild(m_ScalarColorSpaces, tr("Mask Data"), QString());
    pGroup->setExpanded(false);
    // The dialog is as large as what it shows.
    connect(pGroup, &OrvExpandableListWidget::expandedChanged, this, [this] {
        layout()->activate();
        adjustSize();
    });
    return pGroup;
}

QWidget* OrvShaderInputActionsConvertDialog::createButtons(bool HasOtherLayers)
{
    QWidget* pButtons = new QWidget(this);
    QHBoxLayout* pLayout = new QHBoxLayout(pButtons);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->addStretch();
    const auto add = [&](const QString& Text, const char* pSlot) {
        QPushButton* pButton = new QPushButton(Text);
        connect(pButton, SIGNAL(clicked()), this, pSlot);
        pLayout->addWidget(pButton);
        return pButton;
    };
    add(HasOtherLayers ? tr("Convert Channel Only") : tr("Convert"), SLOT(acceptConvertChannel()))
        ->setDefault(true);
    if (HasOtherLayers)
        add(tr("Convert All"), SLOT(acceptConvertAll()));
    add(tr("Cancel"), SLOT(reject()));
    return pButtons;
}

GLenum OrvShaderInputActionsConvertDialog::depth() const
{
    return GLenum(m_TypeCombo->currentData().toUInt());
}

void OrvShaderInputActionsConvertDialog::updateAutomaticColorSpaces()
{
    for (OrvColorSpaceConfig* pConfig : {&m_ColorSpaceConfig, &m_ScalarColorSpaceConfig}) {
        for (int Role = 0; Role < OrvColorSpaceConfig::RoleCount; ++Role)
            pConfig->setAutomaticType(Role, depth());
    }
    m_ColorSpaces->refresh();
    m_ScalarColorSpaces->refresh();
}

void OrvShaderInputActionsConvertDialog::acceptConvertChannel()
{
    m_Choice = ConvertChannel;
    accept();
}

void OrvShaderInputActionsConvertDialog::acceptConvertAll()
{
    m_Choice = ConvertAll;
    accept();
}

#include "moc_OrvShaderInputActionsConvertDialog.cpp"
