#include "OrvCoreModules/Widgets/OrvDeferredTimer.h"

OrvDeferredTimer::OrvDeferredTimer(int Interval, QObject* pParent)
    : QTimer(pParent)
{
    setSingleShot(true);
    setInterval(Interval);
    connect(this, &QTimer::timeout, this, &OrvDeferredTimer::timedOut);
}

#include "moc_OrvDeferredTimer.cpp"
