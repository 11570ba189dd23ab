#include "OrvCoreModules/Widgets/OrvEditLabel.h"

#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <QtGui/QTextOption>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>

namespace {

constexpr int Margin = 2;

} // namespace

OrvEditLabel::OrvEditLabel(const QString& Text, QWidget* pParent)
    : QWidget(pParent)
    , m_Text(Text)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

OrvEditLabel::OrvEditLabel(QWidget* pParent)
    : OrvEditLabel(QString(), pParent)
{
}

OrvEditLabel::~OrvEditLabel()
{
    // The editor loses its focus while the label goes: that commits nothing any more.
    if (m_pEditor)
        m_pEditor->removeEventFilter(this);
}

void OrvEditLabel::setText(const QString& Text)
{
    if (m_Text == Text)
        return;
    m_Text = Text;
    updateGeometry();
    update();
}

void OrvEditLabel::setDisplayText(const QString& RichText, const QString& PlainText)
{
    setText(PlainText);
    m_HasDisplayText = true;
    m_DisplayText.setTextFormat(Qt::RichText);
    QTextOption Option(Qt::AlignLeft);
    Option.setWrapMode(QTextOption::NoWrap);
    m_DisplayText.setTextOption(Option);
    m_DisplayText.setText(RichText);
    update();
}

void OrvEditLabel::clearDisplayText()
{
    if (!m_HasDisplayText)
        return;
    m_HasDisplayText = false;
    m_DisplayText = QStaticText();
    update();
}

bool OrvEditLabel::isEditing() const { return m_pEditor; }

void OrvEditLabel::setAlignment(Qt::Alignment Alignment)
{
    m_Alignment = Alignment;
    update();
}

QSize OrvEditLabel::sizeHint() const
{
    return {fontMetrics().horizontalAdvance(m_Text) + 2 * Margin + 1, fontMetrics().height() + 2 * Margin};
}

QSize OrvEditLabel::minimumSizeHint() const
{
    return {qMin(sizeHint().width(), 3 * fontMetrics().averageCharWidth()), sizeHint().height()};
}

void OrvEditLabel::edit()
{
    if (!m_Editable || m_pEditor || !isEnabled())
        return;
    m_pFocusBefore = QApplication::focusWidget();
    m_pEditor = new QLineEdit(m_Text, this);
    m_pEditor->setFrame(false);
    m_pEditor->setTextMargins(0, 0, 0, 0);
    m_pEditor->setAlignment(m_Alignment);
    m_pEditor->setGeometry(rect());
    m_pEditor->selectAll();
    m_pEditor->installEventFilter(this);
    m_pEditor->show();
    m_pEditor->setFocus(Qt::OtherFocusReason);
}

void OrvEditLabel::finish(Ending How)
{
    QLineEdit* pEditor = m_pEditor;
    m_pEditor = nullptr;
    const QString Text = pEditor->text();
    pEditor->removeEventFilter(this);
    if (pEditor->hasFocus() && m_pFocusBefore)
        m_pFocusBefore->setFocus(Qt::OtherFocusReason);
    // The editor may be in the middle of an event; it goes later, but is no child any more.
    pEditor->hide();
    pEditor->setParent(nullptr);
    pEditor->deleteLater();
    update();
    if (How == Ending::Cancel || Text == m_Text)
        return;
    setText(Text);
    Q_EMIT textChanged(Text);
}

bool OrvEditLabel::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (pWatched != m_pEditor)
        return QWidget::eventFilter(pWatched, pEvent);
    switch (pEvent->type()) {
    case QEvent::KeyPress: {
        const int Key = static_cast<QKeyEvent*>(pEvent)->key();
        if (Key == Qt::Key_Escape) {
            finish(Ending::Cancel);
            return true;
        }
        if (Key == Qt::Key_Return || Key == Qt::Key_Enter) {
            finish(Ending::Commit);
            return true;
        }
        break;
    }
    case QEvent::ShortcutOverride:
        // Return and Escape are the editor's, whatever the window does with them.
        pEvent->accept();
        break;
    case QEvent::FocusOut:
        // The editor's own context menu comes and goes while editing.
        if (static_cast<QFocusEvent*>(pEvent)->reason() != Qt::PopupFocusReason)
            finish(Ending::Commit);
        break;
    default:
        break;
    }
    return QWidget::eventFilter(pWatched, pEvent);
}

bool OrvEditLabel::event(QEvent* pEvent)
{
    if (pEvent->type() == QEvent::ShortcutOverride && static_cast<QKeyEvent*>(pEvent)->key() == Qt::Key_F2)
        pEvent->accept();
    return QWidget::event(pEvent);
}

void OrvEditLabel::paintEvent(QPaintEvent*)
{
    if (m_pEditor)
        return;
    QPainter Painter(this);
    Painter.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, foregroundRole()));
    const QRect Area = rect().adjusted(Margin, 0, -Margin, 0);
    if (m_HasDisplayText) {
        const int Top = (height() - int(m_DisplayText.size().height())) / 2;
        Painter.setClipRect(Area);
        Painter.drawStaticText(Area.left(), Top, m_DisplayText);
        return;
    }
    const QFontMetrics Metrics = fontMetrics();
    Painter.drawText(Area, int(m_Alignment) | Qt::TextSingleLine | Qt::TextIncludeTrailingSpaces,
        Metrics.elidedText(m_Text, Qt::ElideRight, Area.width()));
}

void OrvEditLabel::resizeEvent(QResizeEvent*)
{
    if (m_pEditor)
        m_pEditor->setGeometry(rect());
}

void OrvEditLabel::mouseDoubleClickEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() == Qt::LeftButton && m_Editable)
        edit();
    else
        pEvent->ignore();
}

void OrvEditLabel::keyPressEvent(QKeyEvent* pEvent)
{
    if (pEvent->key() == Qt::Key_F2 && m_Editable)
        edit();
    else
        QWidget::keyPressEvent(pEvent);
}

#include "moc_OrvEditLabel.cpp"
