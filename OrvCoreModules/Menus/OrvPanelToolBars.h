#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QHash>
#include <QtCore/QStringList>

class OrvLateBindAction;

/// Which commands the tool bars of the palettes carry: the program's choice until the user makes another,
/// which is kept in the settings. Publishing puts late-bound actions under (root menu, "Panel") of the menu
/// manager, where the palettes find them.
class ORVCOREMODULES_EXPORT OrvPanelToolBars {
public:
    static OrvPanelToolBars& instance();

    /// Action keys of one root menu's tool bar ("Layers", "Channels", "Shaders"), the user's choice first.
    QStringList actionKeys(const QString& RootMenu) const;
    QStringList defaultActionKeys(const QString& RootMenu) const { return m_Defaults.value(RootMenu); }
    void setDefaultActionKeys(const QString& RootMenu, const QStringList& Keys);
    /// The user's choice: kept, and shown at once where tool bars are published.
    void setActionKeys(const QString& RootMenu, const QStringList& Keys);

    /// Called when the palettes exist to hear of it; once is enough, a second call changes nothing.
    void publish();

private:
    OrvPanelToolBars();
    void publish(const QString& RootMenu);
    void withdraw(const QString& RootMenu);

    QHash<QString, QStringList> m_Defaults;
    QHash<QString, QList<OrvLateBindAction*>> m_Published;
    bool m_IsPublished = false;
};
