#include "OrvCoreModules/Widgets/OrvInPlaceEdit.h"

#include <QtGui/QKeyEvent>

namespace {

bool isEndKey(const QKeyEvent* pEvent)
{
    return pEvent->key() == Qt::Key_Escape || pEvent->key() == Qt::Key_Return
        || pEvent->key() == Qt::Key_Enter;
}

} // namespace

OrvInPlaceEdit::OrvInPlaceEdit(const QString& Text, QWidget* pHost)
    : QLineEdit(Text, pHost)
{
    setFrame(false);
    setAutoFillBackground(true); // what the host paints must not show through
    setCursor(Qt::IBeamCursor);
    setGeometry(pHost->rect());
    selectAll();
    // Tab leads on from where the host stands, not from the end of the window.
    setTabOrder(pHost, this);
    pHost->installEventFilter(this);
    show();
    setFocus(Qt::OtherFocusReason);
}

void OrvInPlaceEdit::end(bool Commit)
{
    if (m_Ended)
        return;
    m_Ended = true;
    if (hasFocus())
        parentWidget()->setFocus(Qt::OtherFocusReason);
    // It may be in the middle of an event: it goes later, but is nobody's child any more.
    hide();
    setParent(nullptr);
    deleteLater();
    Q_EMIT ended(text(), Commit);
}

bool OrvInPlaceEdit::event(QEvent* pEvent)
{
    // Whatever the window does with these keys.
    if (pEvent->type() == QEvent::ShortcutOverride && isEndKey(static_cast<QKeyEvent*>(pEvent)))
        pEvent->accept();
    return QLineEdit::event(pEvent);
}

bool OrvInPlaceEdit::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (pWatched == parent() && pEvent->type() == QEvent::Resize)
        setGeometry(parentWidget()->rect());
    return QLineEdit::eventFilter(pWatched, pEvent);
}

void OrvInPlaceEdit::keyPressEvent(QKeyEvent* pEvent)
{
    if (isEndKey(pEvent))
        end(pEvent->key() != Qt::Key_Escape);
    else
        QLineEdit::keyPressEvent(pEvent);
}

void OrvInPlaceEdit::mouseDoubleClickEvent(QMouseEvent* pEvent)
{
    // A number is one word, whatever stands between its digits.
    bool IsNumber = false;
    text().toDouble(&IsNumber);
    if (IsNumber)
        selectAll();
    else
        QLineEdit::mouseDoubleClickEvent(pEvent);
}

void OrvInPlaceEdit::focusOutEvent(QFocusEvent* pEvent)
{
    QLineEdit::focusOutEvent(pEvent);
    // Its own context menu comes and goes while editing.
    if (pEvent->reason() != Qt::PopupFocusReason)
        end(true);
}

#include "moc_OrvInPlaceEdit.cpp"
