#include "OrvCoreModules/Window/OrvCancelWatch.h"

#include "OrvCoreModules/Window/OrvStatusManager.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QWidget>

namespace {

constexpr qint64 LookInterval = 40; // ms

enum class Passage { Open, ForButton, Closed };

Passage passage(QEvent::Type Type)
{
    switch (Type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::ToolTip:
        return Passage::ForButton;
    case QEvent::Timer:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::InputMethod:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::NativeGesture:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
    case QEvent::Close:
    case QEvent::Quit:
        return Passage::Closed;
    default:
        return Passage::Open;
    }
}

bool isEscape(const QEvent& Event)
{
    if (Event.type() == QEvent::KeyPress || Event.type() == QEvent::ShortcutOverride)
        return static_cast<const QKeyEvent&>(Event).key() == Qt::Key_Escape;
    return Event.type() == QEvent::Shortcut
        && static_cast<const QShortcutEvent&>(Event).key() == QKeySequence(Qt::Key_Escape);
}

} // namespace

OrvCancelWatch::OrvCancelWatch(QWidget* pButton, QObject* pParent)
    : QObject(pParent)
    , m_pButton(pButton)
{
}

void OrvCancelWatch::look()
{
    if (m_Looking || (m_SinceLook.isValid() && m_SinceLook.elapsed() < LookInterval))
        return;
    m_Looking = true;
    QCoreApplication::instance()->installEventFilter(this);
    QCoreApplication::processEvents(QEventLoop::AllEvents);
    QCoreApplication::instance()->removeEventFilter(this);
    m_Looking = false;
    m_SinceLook.start();
}

bool OrvCancelWatch::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (isEscape(*pEvent))
        OrvStatusManager::instance().cancel();
    // Windows hand the mouse on to their widgets.
    const Passage Way = passage(pEvent->type());
    if (Way == Passage::Open
        || (Way == Passage::ForButton && (pWatched == m_pButton || pWatched->isWindowType())))
        return false;
    if (pEvent->type() != QEvent::Timer)
        pEvent->ignore(); // a window whose closing is not ignored is closed
    return true;
}

#include "moc_OrvCancelWatch.cpp"
