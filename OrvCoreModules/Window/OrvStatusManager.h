#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>
#include <QtCore/QString>

/// The status line and its progress bar. It keeps what is to be shown and says so by signals, which the main
/// window shows at once; it works without a window, and never runs the event loop: the main window looks for a
/// user who wants to cancel whenever a report that can be cancelled goes on. What layers refuse, and how far
/// they are with long work, it shows by itself.
class ORVCOREMODULES_EXPORT OrvStatusManager : public QObject {
    Q_OBJECT

public:
    static OrvStatusManager& instance();

    /// The text of the innermost progress report, else the last message.
    QString text() const;

    class AutoProgress;

public Q_SLOTS:
    /// A message stays until the next one; a time in milliseconds takes it away by itself.
    void showMessage(const QString& Text, int Duration = 0);
    /// Asks the running progress reports to give up; they look when it suits them.
    void cancel();

Q_SIGNALS:
    void textChanged(QString Text);
    void progressChanged(int Value, int Minimum, int Maximum, bool Cancellable);
    void progressFinished();

private:
    OrvStatusManager();
    void enter(AutoProgress* pProgress);
    void leave(AutoProgress* pProgress);

    AutoProgress* m_pInnermost = nullptr;
    QString m_Message;
    int m_MessageNumber = 0;
};

/// A progress report that is open for its lifetime. Its text shows at once, its bar once the delay is over.
/// Reports nest; they are made and destroyed on the GUI thread, on the stack.
class ORVCOREMODULES_EXPORT OrvStatusManager::AutoProgress {
public:
    AutoProgress(const QString& Text, int Maximum = 100, int Minimum = 0, int DelaySeconds = 1);
    ~AutoProgress();
    AutoProgress(const AutoProgress&) = delete;
    AutoProgress& operator=(const AutoProgress&) = delete;

    void setValue(int Value);
    const QString& text() const { return m_Text; }

    /// A report that can be cancelled shows a button, and Escape does the same; after each value whoever
    /// reports looks here for the answer.
    void setCancellable(bool Cancellable) { m_Cancellable = Cancellable; }
    bool isCancelled() const { return m_Cancelled; }

private:
    friend class OrvStatusManager;

    QString m_Text;
    int m_Maximum;
    int m_Minimum;
    int m_Value;
    qint64 m_Delay; // ms
    QElapsedTimer m_Age;
    AutoProgress* m_pOuter = nullptr;
    bool m_Cancellable = false;
    bool m_Cancelled = false;
    bool m_BarShown = false;
};
