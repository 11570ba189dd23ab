#include "OrvCoreModules/Menus/OrvPanelToolBars.h"

#include "OrvCore/Object/OrvSettings.h"
#include "OrvCoreModules/Menus/OrvLateBindAction.h"
#include "OrvCoreModules/Menus/OrvMenuManager.h"

namespace {
const QString Panel = QStringLiteral("Panel");
const QString SettingsGroup = QStringLiteral("ToolBars");
} // namespace

OrvPanelToolBars& OrvPanelToolBars::instance()
{
    static auto* pInstance = new OrvPanelToolBars;
    return *pInstance;
}

OrvPanelToolBars::OrvPanelToolBars()
{
    m_Defaults.insert(QStringLiteral("Layers"),
        {QStringLiteral("/Orvi/Layers/Copy"), QStringLiteral("/Orvi/Layers/Paste"),
            QStringLiteral("/Orvi/Layers/Merge Layers")});
    m_Defaults.insert(QStringLiteral("Channels"),
        {QStringLiteral("/Orvi/Channels/Remove Channel"), QStringLiteral("/Orvi/Channels/Convert Channel"),
            QStringLiteral("/Orvi/Channels/Copy"), QStringLiteral("/Orvi/Channels/Paste")});
    m_Defaults.insert(QStringLiteral("Shaders"),
        {QStringLiteral("/Orvi/Layers/Shaders/Duplicate Shader"),
            QStringLiteral("/Orvi/Layers/Shaders/Remove Shader"),
            QStringLiteral("/Orvi/Channels/Views/Current Channel"),
            QStringLiteral("/Orvi/Channels/Views/Current Layer && Below"),
            QStringLiteral("/Orvi/Channels/Views/Current Layer"),
            QStringLiteral("/Orvi/Channels/Views/Current Paint Target"),
            QStringLiteral("/Orvi/Channels/Views/Current Material"),
            QStringLiteral("/Orvi/Channels/Views/User Shader")});
}

QStringList OrvPanelToolBars::actionKeys(const QString& RootMenu) const
{
    const OrvSettings Settings;
    return Settings.value(SettingsGroup + QLatin1Char('/') + RootMenu, m_Defaults.value(RootMenu))
        .toStringList();
}

void OrvPanelToolBars::setDefaultActionKeys(const QString& RootMenu, const QStringList& Keys)
{
    m_Defaults.insert(RootMenu, Keys);
    if (m_IsPublished)
        publish(RootMenu);
}

void OrvPanelToolBars::setActionKeys(const QString& RootMenu, const QStringList& Keys)
{
    OrvSettings Settings;
    const QString SettingsKey = SettingsGroup + QLatin1Char('/') + RootMenu;
    if (Keys == m_Defaults.value(RootMenu))
        Settings.remove(SettingsKey);
    else
        Settings.setValue(SettingsKey, Keys);
    if (m_IsPublished)
        publish(RootMenu);
}

void OrvPanelToolBars::publish()
{
    if (m_IsPublished)
        return;
    m_IsPublished = true;
    const QStringList RootMenus = m_Defaults.keys();
    for (const QString& RootMenu : RootMenus)
        publish(RootMenu);
}

void OrvPanelToolBars::publish(const QString& RootMenu)
{
    withdraw(RootMenu);
    OrvMenuManager& Menus = OrvMenuManager::instance();
    for (const QString& Key : actionKeys(RootMenu)) {
        auto* pAction = new OrvLateBindAction(Key, &Menus);
        m_Published[RootMenu].append(pAction);
        Menus.registerAction(RootMenu, Panel, QString(), pAction);
    }
}

void OrvPanelToolBars::withdraw(const QString& RootMenu)
{
    const QList<OrvLateBindAction*> Actions = m_Published.take(RootMenu);
    for (OrvLateBindAction* pAction : Actions) {
        OrvMenuManager::instance().unregisterAction(RootMenu, Panel, QString(), pAction);
        pAction->deleteLater();
    }
}
