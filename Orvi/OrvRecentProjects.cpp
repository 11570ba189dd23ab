#include "Orvi/OrvRecentProjects.h"

#include "OrvCore/Object/OrvSettings.h"
#include "OrvCoreModules/Menus/OrvMenuManager.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtWidgets/QAction>

namespace {

const QString SettingsKey = QStringLiteral("Project/Recent");
const QString Window = QStringLiteral("MainWindow");
const QString Menu = QStringLiteral("&File");

} // namespace

OrvRecentProjects::OrvRecentProjects(QObject* pParent)
    : QObject(pParent)
{
    rebuildMenu();
}

OrvRecentProjects::~OrvRecentProjects()
{
    clear();
}

QStringList OrvRecentProjects::paths()
{
    return OrvSettings().value(SettingsKey).toStringList();
}

void OrvRecentProjects::add(const QString& Path)
{
    QStringList Paths = paths();
    const QString Absolute = QDir(Path).absolutePath();
    Paths.removeAll(Absolute);
    Paths.prepend(Absolute);
    OrvSettings().setValue(SettingsKey, QStringList(Paths.mid(0, Most)));
    rebuildMenu();
}

void OrvRecentProjects::clear()
{
    for (QAction* pAction : qAsConst(m_Actions)) {
        OrvMenuManager::instance().unregisterAction(Window, Menu, tr("Open Recent"), pAction);
        // The chosen entry is still being triggered.
        pAction->deleteLater();
    }
    m_Actions.clear();
}

void OrvRecentProjects::rebuildMenu()
{
    clear();
    for (const QString& Path : paths()) {
        if (!QFileInfo::exists(Path))
            continue;
        QAction* pAction = new QAction(QFileInfo(Path).completeBaseName(), this);
        pAction->setToolTip(QDir::toNativeSeparators(Path));
        connect(pAction, &QAction::triggered, this, [this, Path] { Q_EMIT chosen(Path); });
        OrvMenuManager::instance().registerAction(Window, Menu, tr("Open Recent"), pAction);
        m_Actions.append(pAction);
    }
    const bool Any = !m_Actions.isEmpty();
    OrvMenuManager::instance().setMenuEnabled(
        Window + QLatin1Char('/') + Menu + QLatin1Char('/') + tr("Open Recent"), Any);
}

#include "moc_OrvRecentProjects.cpp"
