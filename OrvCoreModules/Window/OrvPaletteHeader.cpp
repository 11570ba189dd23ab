#include "OrvCoreModules/Window/OrvPaletteHeader.h"

#include "OrvCoreModules/Window/OrvContextHelp.h"
#include "OrvCoreModules/Window/OrvCustomFusionStyle.h"
#include "OrvCoreModules/Window/OrvGlyphs.h"
#include "OrvCoreModules/Window/OrvPalette.h"

#include <QtGui/QHelpEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QToolTip>

namespace {

constexpr int HeaderHeight = 22;
constexpr int IconSize = 16;
constexpr int ButtonSize = 18;
constexpr int GlyphSize = 12;

} // namespace

OrvPaletteHeader::OrvPaletteHeader(OrvPalette* pPalette)
    : QWidget(pPalette)
    , m_Palette(pPalette)
    , m_IconLabel(new QLabel(this))
    , m_TitleLabel(new QLabel(this))
    , m_HelpButton(createButton(tr("Help"), OrvGlyphs::icon(OrvGlyphs::Help)))
    , m_PinButton(createButton(tr("Keep the palette open"), OrvGlyphs::icon(OrvGlyphs::Pin)))
    , m_FloatButton(createButton(QString(), OrvGlyphs::icon(OrvGlyphs::Float)))
    , m_CloseButton(createButton(tr("Close"), OrvGlyphs::icon(OrvGlyphs::Close)))
{
    setFixedHeight(HeaderHeight);
    m_PinButton->setCheckable(true);
    // The title gives way to the buttons: refresh() elides it to what is left.
    m_TitleLabel->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_TitleLabel->setTextFormat(Qt::PlainText);
    m_TitleLabel->installEventFilter(this);

    auto* pLayout = new QHBoxLayout(this);
    pLayout->setContentsMargins(5, 0, 3, 0);
    pLayout->setSpacing(1);
    pLayout->addWidget(m_IconLabel);
    pLayout->addSpacing(4);
    pLayout->addWidget(m_TitleLabel, 1);
    for (QToolButton* pButton : {m_HelpButton, m_PinButton, m_FloatButton, m_CloseButton})
        pLayout->addWidget(pButton);

    connect(m_HelpButton, &QToolButton::clicked, pPalette, &OrvPalette::showContextHelp);
    connect(m_PinButton, &QToolButton::clicked, pPalette, &OrvPalette::setPinned);
    connect(m_FloatButton, &QToolButton::clicked, this, &OrvPaletteHeader::toggleFloating);
    connect(m_CloseButton, &QToolButton::clicked, pPalette, &QWidget::close);
    connect(pPalette, &OrvPalette::headerChanged, this, &OrvPaletteHeader::refresh);
    connect(pPalette, &OrvPalette::pinnedChanged, this, &OrvPaletteHeader::refresh);
    connect(pPalette, &QDockWidget::topLevelChanged, this, &OrvPaletteHeader::refresh);
    connect(pPalette, &QDockWidget::featuresChanged, this, &OrvPaletteHeader::refresh);
    connect(pPalette, &QWidget::windowTitleChanged, this, &OrvPaletteHeader::refresh);
    refresh();
}

QToolButton* OrvPaletteHeader::createButton(const QString& ToolTip, const QIcon& Icon)
{
    auto* pButton = new QToolButton(this);
    pButton->setAutoRaise(true);
    pButton->setFocusPolicy(Qt::NoFocus);
    pButton->setFixedSize(ButtonSize, ButtonSize);
    pButton->setIconSize(QSize(GlyphSize, GlyphSize));
    pButton->setIcon(Icon);
    pButton->setToolTip(ToolTip);
    return pButton;
}

void OrvPaletteHeader::refresh()
{
    const QIcon Icon = m_Palette->paletteIcon();
    m_IconLabel->setVisible(!Icon.isNull());
    if (!Icon.isNull())
        m_IconLabel->setPixmap(Icon.pixmap(QSize(IconSize, IconSize)));
    m_HelpButton->setVisible(!m_Palette->contextHelpKey().isEmpty());

    m_PinButton->setVisible(m_Palette->isPinnable());
    m_PinButton->setChecked(m_Palette->isPinned());
    m_PinButton->setIcon(OrvGlyphs::icon(m_Palette->isPinned() ? OrvGlyphs::Pin : OrvGlyphs::Unpin));
    m_FloatButton->setVisible(m_Palette->features() & QDockWidget::DockWidgetFloatable);
    m_FloatButton->setToolTip(m_Palette->isFloating() ? tr("Dock in the window") : tr("Float"));
    m_FloatButton->setIcon(OrvGlyphs::icon(m_Palette->isFloating() ? OrvGlyphs::Dock : OrvGlyphs::Float));
    m_CloseButton->setVisible(m_Palette->features() & QDockWidget::DockWidgetClosable);
    elideTitle();
}

void OrvPaletteHeader::elideTitle()
{
    const QString Title = m_Palette->headerTitle();
    const QString Elided
        = m_TitleLabel->fontMetrics().elidedText(Title, Qt::ElideMiddle, m_TitleLabel->width());
    m_TitleLabel->setText(Elided);
    m_TitleLabel->setToolTip(Elided == Title ? QString() : Title);
}

QSize OrvPaletteHeader::minimumSizeHint() const
{
    return {layout()->minimumSize().width(), HeaderHeight};
}

bool OrvPaletteHeader::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    const QString ToolTip = pEvent->type() == QEvent::ToolTip ? m_Palette->headerToolTip() : QString();
    if (ToolTip.isEmpty())
        return QWidget::eventFilter(pWatched, pEvent);
    QToolTip::showText(static_cast<QHelpEvent*>(pEvent)->globalPos(), ToolTip, m_TitleLabel);
    return true;
}

void OrvPaletteHeader::resizeEvent(QResizeEvent* pEvent)
{
    QWidget::resizeEvent(pEvent);
    // The label has its new width only once the layout has run.
    layout()->activate();
    elideTitle();
}

void OrvPaletteHeader::mousePressEvent(QMouseEvent* pEvent)
{
    if (m_Palette->isFloating())
        m_Palette->raise();
    // The dock widget drags.
    pEvent->ignore();
}

void OrvPaletteHeader::paintEvent(QPaintEvent*)
{
    QPainter Painter(this);
    Painter.fillRect(
        rect(), OrvCustomFusionStyle::windowColor().lighter(m_Palette->isActiveWindow() ? 135 : 118));
    Painter.setPen(OrvCustomFusionStyle::borderColor());
    Painter.drawLine(rect().bottomLeft(), rect().bottomRight());
}

void OrvPaletteHeader::toggleFloating()
{
    m_Palette->setFloating(!m_Palette->isFloating());
}

#include "moc_OrvPaletteHeader.cpp"
