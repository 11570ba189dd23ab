#pragma once

#include "OrvCoreModules/Menus/OrvAction.h"

#include <QtGui/QIcon>

/// An on/off action with an icon for each state. It shows a state that somebody else keeps: setting what it
/// shows already is silent.
class ORVCOREMODULES_EXPORT OrvToggleAction : public OrvAction {
    Q_OBJECT

public:
    OrvToggleAction(const QIcon& OnIcon, const QIcon& OffIcon, QObject* pParent = nullptr);

    bool checkedState() const { return isChecked(); }

public Q_SLOTS:
    void setCheckedState(bool Checked) { setChecked(Checked); }

Q_SIGNALS:
    void checkedChanged(bool Checked);

private:
    void onToggled(bool Checked);

    QIcon m_OnIcon;
    QIcon m_OffIcon;
};
