#include "OrvCoreModules/Window/OrvLogView.h"

#include "OrvCore/Object/OrvDebug.h"

#include <QtCore/QTime>
#include <QtGui/QContextMenuEvent>
#include <QtGui/QFontDatabase>
#include <QtWidgets/QMenu>
#include <QtWidgets/QScrollBar>

#include <memory>

namespace {

constexpr int MessagesKept = 5000;
const QLatin1String ErrorMark("[ !! ]");
const QColor ErrorColor(0xe8, 0x8a, 0x7a);

} // namespace

OrvLogView::OrvLogView(QWidget* pParent)
    : QPlainTextEdit(pParent)
{
    setReadOnly(true);
    setMaximumBlockCount(MessagesKept);
    setLineWrapMode(QPlainTextEdit::NoWrap);
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    OrvSetDebugSink([this](const OrvDebugMessage& Message) {
        // Queued also on this thread: a message from within painting must not change what is painted.
        QMetaObject::invokeMethod(
            this, [this, Message] { append(Message); }, Qt::QueuedConnection);
    });
}

OrvLogView::~OrvLogView()
{
    OrvSetDebugSink({});
}

void OrvLogView::append(const OrvDebugMessage& Message)
{
    QTextCharFormat Format = currentCharFormat();
    if (Message.Text.startsWith(ErrorMark))
        Format.setForeground(ErrorColor);
    else
        Format.clearForeground();
    setCurrentCharFormat(Format);
    appendPlainText(QStringLiteral("%1  %2:%3  %4")
                        .arg(QTime::currentTime().toString(QStringLiteral("hh:mm:ss")), Message.File)
                        .arg(Message.Line)
                        .arg(Message.Text));
}

void OrvLogView::showEvent(QShowEvent* pEvent)
{
    QPlainTextEdit::showEvent(pEvent);
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
    horizontalScrollBar()->setValue(0);
}

void OrvLogView::contextMenuEvent(QContextMenuEvent* pEvent)
{
    const std::unique_ptr<QMenu> pMenu(createStandardContextMenu());
    pMenu->addSeparator();
    pMenu->addAction(tr("Clear"), this, &QPlainTextEdit::clear);
    pMenu->exec(pEvent->globalPos());
}

#include "moc_OrvLogView.cpp"
