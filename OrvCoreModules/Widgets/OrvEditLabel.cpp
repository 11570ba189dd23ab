#include "OrvCoreModules/Widgets/OrvEditLabel.h"

#include "OrvCoreModules/Widgets/OrvInPlaceEdit.h"

#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <QtGui/QStaticText>
#include <QtGui/QTextOption>
#include <QtWidgets/QApplication>

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
    // What is being edited commits nothing any more.
    delete m_pEditor;
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
    m_pDisplayText = std::make_unique<QStaticText>();
    m_pDisplayText->setTextFormat(Qt::RichText);
    QTextOption Option(Qt::AlignLeft);
    Option.setWrapMode(QTextOption::NoWrap);
    m_pDisplayText->setTextOption(Option);
    m_pDisplayText->setText(RichText);
    update();
}

void OrvEditLabel::clearDisplayText()
{
    if (!m_pDisplayText)
        return;
    m_pDisplayText.reset();
    update();
}

QString OrvEditLabel::displayText() const
{
    return m_pDisplayText ? m_pDisplayText->text() : QString();
}

bool OrvEditLabel::isEditing() const
{
    return m_pEditor;
}

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
    m_pEditor = new OrvInPlaceEdit(m_Text, this);
    m_pEditor->setAlignment(m_Alignment);
    connect(m_pEditor, &OrvInPlaceEdit::ended, this, &OrvEditLabel::onEditEnded);
}

void OrvEditLabel::onEditEnded(QString Text, bool Committed)
{
    m_pEditor = nullptr;
    // Unless the user went elsewhere, the keyboard goes back to where it was before.
    if (hasFocus() && m_pFocusBefore)
        m_pFocusBefore->setFocus(Qt::OtherFocusReason);
    update();
    if (!Committed || Text == m_Text)
        return;
    setText(Text);
    Q_EMIT textChanged(Text);
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
    if (m_pDisplayText) {
        const int Top = (height() - int(m_pDisplayText->size().height())) / 2;
        Painter.setClipRect(Area);
        Painter.drawStaticText(Area.left(), Top, *m_pDisplayText);
        return;
    }
    const QFontMetrics Metrics = fontMetrics();
    Painter.drawText(Area, int(m_Alignment) | Qt::TextSingleLine | Qt::TextIncludeTrailingSpaces,
        Metrics.elidedText(m_Text, Qt::ElideRight, Area.width()));
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
