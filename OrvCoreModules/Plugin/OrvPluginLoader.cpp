#include "OrvCoreModules/Plugin/OrvPluginLoader.h"

#include "OrvCore/Object/OrvDebug.h"
#include "OrvCoreModules/Plugin/OrvPluginInterface.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QLibrary>
#include <QtCore/QPluginLoader>

#include <algorithm>

namespace {

const char File[] = "OrvPluginLoader";
const QString InterfaceKey = QStringLiteral("IID");

void report(int Line, const QString& Message)
{
    OrvDebug(File, Line, Message, false, false);
}

bool declaresInterface(const QJsonObject& MetaData)
{
    return MetaData.value(InterfaceKey).toString() == QLatin1String(OrvPluginInterface_iid);
}

} // namespace

OrvPluginLoader& OrvPluginLoader::instance()
{
    static auto* pInstance = new OrvPluginLoader;
    return *pInstance;
}

QStringList OrvPluginLoader::directories()
{
    const QString Override = qEnvironmentVariable("ORV_PLUGINS");
    if (!Override.isEmpty())
        return Override.split(QDir::listSeparator(), Qt::SkipEmptyParts);
    const QDir Program(QCoreApplication::applicationDirPath());
    return {QDir::cleanPath(Program.filePath(QStringLiteral("../lib/orvi/plugins"))),
        QDir::cleanPath(Program.filePath(QStringLiteral("../lib/plugins"))),
        Program.filePath(QStringLiteral("plugins"))};
}

bool OrvPluginLoader::loadAll(const QStringList& Directories)
{
    const int First = m_Plugins.size();
    findLinkedIn();
    for (const QString& Directory : Directories)
        findInDirectory(Directory);

    // By place, as a plug-in that loads others while it initialises may make the list grow.
    QVector<int> Order;
    for (int Place = First; Place < m_Plugins.size(); ++Place) {
        if (m_Plugins.at(Place).CurrentState == Found)
            Order.append(Place);
    }
    std::stable_sort(Order.begin(), Order.end(), [this](int Left, int Right) {
        return m_Plugins.at(Left).pInterface->initializePriority()
            > m_Plugins.at(Right).pInterface->initializePriority();
    });

    for (const int Place : qAsConst(Order)) {
        if (m_Plugins.at(Place).pInterface->initialize())
            m_Plugins[Place].CurrentState = Initialized;
        else
            fail(m_Plugins[Place], QStringLiteral("its initialisation failed"));
    }
    for (const int Place : qAsConst(Order)) {
        if (m_Plugins.at(Place).CurrentState == Initialized
            && !m_Plugins.at(Place).pInterface->pluginsInitialized())
            fail(m_Plugins[Place], QStringLiteral("it failed after the initialisation of all plug-ins"));
    }
    return std::none_of(m_Plugins.cbegin() + First, m_Plugins.cend(),
        [](const Plugin& Entry) { return Entry.CurrentState == Failed; });
}

void OrvPluginLoader::findLinkedIn()
{
    const QVector<QStaticPlugin> LinkedIn = QPluginLoader::staticPlugins();
    for (const QStaticPlugin& Candidate : LinkedIn) {
        if (!declaresInterface(Candidate.metaData()))
            continue;
        QObject* pRoot = Candidate.instance();
        const bool Known = std::any_of(m_Plugins.cbegin(), m_Plugins.cend(), [pRoot](const Plugin& Entry) {
            return Entry.pInterface == qobject_cast<OrvPluginInterface*>(pRoot);
        });
        if (!Known)
            enter(QString(), pRoot, QStringLiteral("it has no root object"));
    }
}

void OrvPluginLoader::findInDirectory(const QString& Directory)
{
    const QFileInfoList Files = QDir(Directory).entryInfoList(QDir::Files, QDir::Name);
    for (const QFileInfo& Candidate : Files) {
        const QString FileName = Candidate.canonicalFilePath();
        if (!QLibrary::isLibrary(FileName) || isKnown(FileName))
            continue;
        QPluginLoader Loader(FileName);
        if (!Loader.metaData().isEmpty() && !declaresInterface(Loader.metaData())) {
            enter(FileName, nullptr,
                QStringLiteral("it is made for \"%1\", not for \"%2\"")
                    .arg(Loader.metaData().value(InterfaceKey).toString(),
                        QLatin1String(OrvPluginInterface_iid)));
            continue;
        }
        QObject* pRoot = Loader.instance();
        enter(FileName, pRoot, Loader.errorString());
    }
}

void OrvPluginLoader::enter(const QString& File, QObject* pRoot, const QString& Error)
{
    Plugin Entry;
    Entry.File = File;
    Entry.pInterface = qobject_cast<OrvPluginInterface*>(pRoot);
    m_Plugins.append(Entry);
    if (!Entry.pInterface)
        fail(
            m_Plugins.last(), pRoot ? QStringLiteral("its root object is no plug-in of the program") : Error);
}

void OrvPluginLoader::fail(Plugin& Entry, const QString& Error)
{
    Entry.CurrentState = Failed;
    Entry.Error = Error;
    const QString Name = Entry.pInterface ? Entry.pInterface->name() : Entry.File;
    report(__LINE__, QStringLiteral("[ !! ] Plug-in '%1' is left out: %2").arg(Name, Error));
}

bool OrvPluginLoader::isKnown(const QString& File) const
{
    return std::any_of(
        m_Plugins.cbegin(), m_Plugins.cend(), [&File](const Plugin& Entry) { return Entry.File == File; });
}
