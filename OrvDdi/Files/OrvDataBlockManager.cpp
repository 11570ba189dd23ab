#include "OrvDdi/Files/OrvDataBlockManager.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>
#include <QtCore/QStandardPaths>

OrvDataBlockManager& OrvDataBlockManager::instance()
{
    static OrvDataBlockManager Manager;
    return Manager;
}

QStringList OrvDataBlockManager::cacheRoots()
{
    QStringList Wanted = instance().m_Roots;
    if (Wanted.isEmpty()) {
        const QString Cache = QStandardPaths::writableLocation(QStandardPaths::CacheLocation);
        if (!Cache.isEmpty())
            Wanted.append(Cache + QLatin1String("/projects"));
    }
    QStringList Roots;
    for (const QString& Root : qAsConst(Wanted)) {
        const QString Path = QDir::cleanPath(Root);
        if (QDir().mkpath(Path) && QFileInfo(Path).isWritable())
            Roots.append(Path);
    }
    return Roots;
}

void OrvDataBlockManager::setCacheRoots(const QStringList& Roots)
{
    m_Roots = Roots;
}

QString OrvDataBlockManager::subCache()
{
    return instance().m_SubCache;
}

void OrvDataBlockManager::setSubCache(const QString& Name)
{
    static const QRegularExpression Unsafe(QStringLiteral("[/\\\\:*?\"<>|\\x00-\\x1f]|^\\.+"));
    m_SubCache = Name;
    m_SubCache.replace(Unsafe, QStringLiteral("_"));
    subCachePath();
}

QString OrvDataBlockManager::subCachePath()
{
    const QStringList Roots = cacheRoots();
    if (Roots.isEmpty() || subCache().isEmpty())
        return {};
    const QString Path = Roots.first() + QLatin1Char('/') + subCache();
    return QDir().mkpath(Path) ? Path : QString();
}
