#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QScopedPointer>
#include <QtCore/QString>

class QProgressDialog;
class QWidget;

/// Progress of long work that the user may cancel (import, export, save): a modal dialog that comes up once
/// the work has taken a while. It runs the event loop from step(), so it suits work that nothing may
/// interleave with but the window's own painting. In unattended runs no dialog is shown and nothing is
/// cancelled.
class ORVCOREMODULES_EXPORT OrvProgressDialog {
public:
    explicit OrvProgressDialog(const QString& Text, QWidget* pParent = nullptr);
    ~OrvProgressDialog();
    OrvProgressDialog(const OrvProgressDialog&) = delete;
    OrvProgressDialog& operator=(const OrvProgressDialog&) = delete;

    /// Cheap to call often. False once the user has cancelled.
    bool step(int Done, int Total);
    bool isCancelled() const { return m_Cancelled; }
    void cancel() { m_Cancelled = true; }
    void setText(const QString& Text);

private:
    QScopedPointer<QProgressDialog> m_Dialog;
    QElapsedTimer m_Age;
    qint64 m_LastEventRun = 0; // ms of age
    bool m_Cancelled = false;
};
