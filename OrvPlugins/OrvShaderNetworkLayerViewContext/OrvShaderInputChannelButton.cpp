#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputChannelButton.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCoreModules/Window/OrvIcon.h"

#include <QtGui/QPainter>
#include <QtWidgets/QStyleOptionToolButton>

namespace {

constexpr int RowHeight = 22;
constexpr int SmallestWidth = 40;
constexpr int IconSize = 16;
constexpr int Margin = 4;

} // namespace

OrvShaderInputChannelButton::OrvShaderInputChannelButton(QWidget* pParent)
    : QToolButton(pParent)
{
    setFixedHeight(RowHeight);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFocusPolicy(Qt::TabFocus);
    setIconSize({IconSize, IconSize});
}

void OrvShaderInputChannelButton::showChannel(const OrvShaderInput* pChannel, bool Current)
{
    const bool Material = pChannel->isMaterialStack();
    take(Material ? Kind::Material : Kind::Channel, pChannel->name(), Current);
    const QString Size
        = tr("%1 x %2").arg(pChannel->imageSetSize().width()).arg(pChannel->imageSetSize().height());
    const QString Click = Material ? tr("Click to show its layers")
        : Current                  ? tr("This is the current channel")
                                   : tr("Click to make it the current channel");
    setToolTip(QStringLiteral("%1\n%2, %3\n%4")
                   .arg(pChannel->name(), Size, pChannel->imageSetDepthAsString(), Click));
}

void OrvShaderInputChannelButton::showNone(const QString& Text, const QString& ToolTip)
{
    take(Kind::None, Text, false);
    setToolTip(ToolTip);
}

void OrvShaderInputChannelButton::take(Kind What, const QString& Name, bool Emphasized)
{
    if (m_Kind == What && m_Name == Name && font().bold() == Emphasized)
        return;
    m_Kind = What;
    m_Name = Name;
    QFont Font = font();
    Font.setBold(Emphasized);
    setFont(Font);
    setAutoRaise(What == Kind::None);
    if (What == Kind::None)
        setIcon(QIcon());
    else
        setIcon(
            OrvIcon::createIconFromFilename(What == Kind::Material ? QStringLiteral("Material.16x16.png")
                                                                   : QStringLiteral("Channel.16x16.png")));
    setAccessibleName(Name);
    update();
}

QSize OrvShaderInputChannelButton::sizeHint() const
{
    return {fontMetrics().horizontalAdvance(m_Name) + IconSize + 3 * Margin, RowHeight};
}

QSize OrvShaderInputChannelButton::minimumSizeHint() const
{
    return {SmallestWidth, RowHeight};
}

void OrvShaderInputChannelButton::paintEvent(QPaintEvent*)
{
    QPainter Painter(this);
    QStyleOptionToolButton Option;
    initStyleOption(&Option);
    // The style would centre the contents and let a long name run out of the button.
    Option.icon = QIcon();
    Option.text.clear();
    style()->drawComplexControl(QStyle::CC_ToolButton, &Option, &Painter, this);

    QRect Area = rect().adjusted(Margin, 0, -Margin, 0);
    // Where there is room for one of them, the name says more.
    const int NameWidth = fontMetrics().horizontalAdvance(m_Name);
    if (m_Kind != Kind::None && Area.width() >= IconSize + Margin + NameWidth) {
        icon().paint(&Painter, QRect(Area.left(), (height() - IconSize) / 2, IconSize, IconSize),
            Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
        Area.setLeft(Area.left() + IconSize + Margin);
    }
    const QPalette::ColorGroup Group
        = isEnabled() && m_Kind != Kind::None ? QPalette::Active : QPalette::Disabled;
    Painter.setPen(palette().color(Group, QPalette::ButtonText));
    Painter.drawText(Area, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
        fontMetrics().elidedText(m_Name, Qt::ElideRight, Area.width()));
}

#include "moc_OrvShaderInputChannelButton.cpp"
