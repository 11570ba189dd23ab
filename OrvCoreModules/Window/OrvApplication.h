#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtWidgets/QApplication>

/// The program's application object: sets the names, the look and the display habits that every window
/// shares. Whether the program is up and may ask the user is kept apart from the object, so that libraries
/// can ask in any process, a test or a tool included.
class ORVCOREMODULES_EXPORT OrvApplication : public QApplication {
    Q_OBJECT

public:
    class ORVCOREMODULES_EXPORT State {
    public:
        /// The start-up is over: palettes, plug-ins and menus exist.
        bool isInitialized() const { return m_Initialized; }
        void setInitialized(bool Initialized) { m_Initialized = Initialized; }

        /// False in unattended runs: no message box or dialog may wait for an answer that nobody gives.
        bool popupsAllowed() const { return m_PopupsAllowed; }
        void setPopupsAllowed(bool Allowed) { m_PopupsAllowed = Allowed; }

    private:
        friend class OrvApplication;
        State();

        bool m_Initialized = false;
        bool m_PopupsAllowed;
    };

    OrvApplication(int& ArgumentCount, char** ppArguments);

    /// Lists that have the keyboard select all that they hold, whatever the window would do at the same key.
    bool notify(QObject* pReceiver, QEvent* pEvent) override;

    static State& appInstance();

    static bool isInitialized() { return appInstance().isInitialized(); }
    static bool popupsAllowed() { return appInstance().popupsAllowed(); }
};
