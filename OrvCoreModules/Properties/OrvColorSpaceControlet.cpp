#include "OrvCoreModules/Properties/OrvColorSpaceControlet.h"

#include "OrvCoreModules/Widgets/OrvComboBox.h"
#include "OrvCoreModules/Widgets/OrvFormLayout.h"

#include "OrvDdi/Color/OrvColorManager.h"
#include "OrvDdi/Color/OrvColorSpaceConfig.h"

#include <QtWidgets/QLabel>

OrvColorSpaceControlet::OrvColorSpaceControlet(OrvColorSpaceConfig& Config, QWidget* pParent)
    : QWidget(pParent)
    , m_Config(Config)
{
    OrvFormLayout* pLayout = new OrvFormLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    const QString Labels[OrvColorSpaceConfig::RoleCount] = {tr("Stored"), tr("Working")};
    const QString ToolTips[OrvColorSpaceConfig::RoleCount]
        = {tr("The color space in which pixels are stored"),
            tr("The color space in which layers are blended")};
    for (int Role = 0; Role < OrvColorSpaceConfig::RoleCount; ++Role) {
        OrvComboBox* pCombo = new OrvComboBox(this);
        pCombo->setToolTip(ToolTips[Role]);
        pCombo->addItem(QString(), QString());
        for (const QString& Name : OrvColorManager::colorSpaces())
            pCombo->addItem(Name, Name);
        connect(pCombo, QOverload<int>::of(&QComboBox::activated), this,
            [this, Role](int Index) { choose(Role, Index); });
        m_pLabels[Role] = new QLabel(Labels[Role], this);
        m_Combos[Role] = pCombo;
        pLayout->addRow(m_pLabels[Role], pCombo);
    }
    refresh();
}

void OrvColorSpaceControlet::refresh()
{
    const bool SeveralRoles = m_Config.isColorSpaceVisible(0) && m_Config.isColorSpaceVisible(1);
    for (int Role = 0; Role < OrvColorSpaceConfig::RoleCount; ++Role) {
        QComboBox* pCombo = m_Combos[Role];
        const QString Automatic
            = OrvColorSpaceConfig::automaticColorSpace(m_Config.scalar(), Role, m_Config.automaticType(Role));
        pCombo->setItemText(0, tr("Automatic (%1)").arg(Automatic));
        // A space that the present colour configuration lacks still shows by its name.
        if (!m_Config.isAutomatic(Role) && pCombo->findData(m_Config.colorSpace(Role)) < 0)
            pCombo->addItem(m_Config.colorSpace(Role), m_Config.colorSpace(Role));
        pCombo->setCurrentIndex(m_Config.isAutomatic(Role) ? 0 : pCombo->findData(m_Config.colorSpace(Role)));
        pCombo->setVisible(m_Config.isColorSpaceVisible(Role));
        m_pLabels[Role]->setVisible(SeveralRoles);
    }
}

void OrvColorSpaceControlet::choose(int Role, int Index)
{
    m_Config.setColorSpace(Role, m_Combos[Role]->itemData(Index).toString());
    refresh();
    Q_EMIT colorSpaceChanged();
}

#include "moc_OrvColorSpaceControlet.cpp"
