#include "Orvi/OrvStartupTrace.h"

#include "OrvCore/Object/OrvDebug.h"
#include "OrvCoreModules/Window/OrvPalette.h"
#include "OrvCoreModules/Window/OrvPaletteManager.h"

#include <QtCore/QEvent>
#include <QtWidgets/QTreeView>

OrvStartupTrace::OrvStartupTrace(QObject* pParent)
    : QObject(pParent)
{
    m_Elapsed.start();
    const OrvPalette* pLayers = OrvPaletteManager::find(QStringLiteral("Layers"));
    const QWidget* pBody = pLayers ? pLayers->originalWidget() : nullptr;
    if (QTreeView* pTree = pBody ? pBody->findChild<QTreeView*>() : nullptr)
        pTree->viewport()->installEventFilter(this);
}

bool OrvStartupTrace::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    const auto* pTree = qobject_cast<QTreeView*>(pWatched->parent());
    if (pEvent->type() == QEvent::Paint && pTree && pTree->model() && pTree->model()->rowCount() > 0) {
        pWatched->removeEventFilter(this);
        // The paint itself is still to come.
        QMetaObject::invokeMethod(
            this,
            [this] {
                OrvDebug("OrvStartupTrace", __LINE__,
                    QStringLiteral("[ -- ] First layers shown after %1 ms").arg(m_Elapsed.elapsed()), false,
                    false);
                deleteLater();
            },
            Qt::QueuedConnection);
    }
    return QObject::eventFilter(pWatched, pEvent);
}

#include "moc_OrvStartupTrace.cpp"
