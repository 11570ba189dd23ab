#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

class OrvPluginInterface;
class QObject;

/// Finds the plug-ins, brings them up by priority and keeps the list of them with what went wrong. Plug-ins
/// stay loaded until the process ends, as their palettes and actions do; a plug-in that fails never stops the
/// others.
class ORVCOREMODULES_EXPORT OrvPluginLoader {
public:
    enum State { Found, Initialized, Failed };

    struct Plugin {
        QString File; ///< empty for one that is linked in
        OrvPluginInterface* pInterface = nullptr;
        State CurrentState = Found;
        QString Error;
    };

    static OrvPluginLoader& instance();

    /// The directories named by the environment variable ORV_PLUGINS, else those beside the program.
    static QStringList directories();

    /// Loads every plug-in of the directories and those linked in, then initialises all that came up. A
    /// second call adds only files that were not seen before. False when any plug-in failed.
    bool loadAll(const QStringList& Directories = directories());

    const QVector<Plugin>& plugins() const { return m_Plugins; }

private:
    OrvPluginLoader() = default;
    void findLinkedIn();
    void findInDirectory(const QString& Directory);
    void enter(const QString& File, QObject* pRoot, const QString& Error);
    void fail(Plugin& Entry, const QString& Error);
    bool isKnown(const QString& File) const;

    QVector<Plugin> m_Plugins;
};
