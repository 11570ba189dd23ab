#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QTimer>

/// Merges a burst of requests into one time-out: every start() waits the whole interval anew. Owned by
/// whoever refreshes; it never fires twice for one burst.
class ORVCOREMODULES_EXPORT OrvDeferredTimer : public QTimer {
    Q_OBJECT

public:
    explicit OrvDeferredTimer(int Interval, QObject* pParent = nullptr);

Q_SIGNALS:
    void timedOut();
};
