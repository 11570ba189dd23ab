#include "OrvCoreModules/Graph/OrvNodeTitleEdit.h"

#include "OrvCoreModules/Widgets/OrvInPlaceEdit.h"

namespace {

constexpr qreal TextShare = 0.55; // of the title's height
constexpr int LeastPixelSize = 11;

} // namespace

OrvNodeTitleEdit::OrvNodeTitleEdit(const QString& Text, const QRect& Area, QWidget* pCanvas)
    : QWidget(pCanvas)
{
    // The keyboard goes back to the canvas.
    setFocusProxy(pCanvas->focusProxy() ? pCanvas->focusProxy() : pCanvas);
    setGeometry(Area);
    // Nothing of the title shows through.
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
    QFont Font = font();
    Font.setPixelSize(qMax(LeastPixelSize, qRound(Area.height() * TextShare)));
    setFont(Font);
    show();
    m_pEdit = new OrvInPlaceEdit(Text, this);
    connect(m_pEdit, &OrvInPlaceEdit::ended, this, [this](const QString& Edited, bool Commit) {
        m_Ended = true;
        hide();
        deleteLater();
        if (Commit)
            Q_EMIT committed(Edited);
    });
}

void OrvNodeTitleEdit::end(bool Commit)
{
    if (!m_Ended)
        m_pEdit->end(Commit);
}

#include "moc_OrvNodeTitleEdit.cpp"
