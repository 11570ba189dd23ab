#include "OrvCoreModules/Menus/OrvToggleAction.h"

OrvToggleAction::OrvToggleAction(const QIcon& OnIcon, const QIcon& OffIcon, QObject* pParent)
    : OrvAction(pParent)
    , m_OnIcon(OnIcon)
    , m_OffIcon(OffIcon)
{
    setCheckable(true);
    setIcon(m_OffIcon);
    connect(this, &QAction::toggled, this, &OrvToggleAction::onToggled);
}

void OrvToggleAction::onToggled(bool Checked)
{
    setIcon(Checked ? m_OnIcon : m_OffIcon);
    Q_EMIT checkedChanged(Checked);
}

#include "moc_OrvToggleAction.cpp"
