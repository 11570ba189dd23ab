#include "OrvCoreModules/Window/OrvPaletteSidebar.h"

#include "OrvCoreModules/Menus/OrvMenu.h"
#include "OrvCoreModules/Window/OrvPalette.h"

#include <QtGui/QContextMenuEvent>
#include <QtGui/QScreen>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QVBoxLayout>

namespace {

constexpr int ButtonSize = 28;
constexpr int IconSize = 20;
constexpr int Gap = 4; // between the strip and a palette that opens beside it

/// What a palette without an icon shows.
QString initials(const QString& Name)
{
    return Name.left(2);
}

} // namespace

OrvPaletteSidebar::OrvPaletteSidebar(QWidget* pParent)
    : QWidget(pParent)
    , m_Buttons(new QVBoxLayout(this))
{
    m_Buttons->setContentsMargins(1, 2, 1, 2);
    m_Buttons->setSpacing(2);
    m_Buttons->addStretch(1);
}

void OrvPaletteSidebar::addPalette(OrvPalette* pPalette)
{
    auto* pButton = new QToolButton(this);
    pButton->setAutoRaise(true);
    pButton->setCheckable(true);
    pButton->setFocusPolicy(Qt::NoFocus);
    pButton->setFixedSize(ButtonSize, ButtonSize);
    pButton->setIconSize(QSize(IconSize, IconSize));
    if (pPalette->paletteIcon().isNull())
        pButton->setText(initials(pPalette->objectName()));
    else
        pButton->setIcon(pPalette->paletteIcon());
    pButton->setToolTip(pPalette->objectName());
    pButton->setChecked(pPalette->isPaletteActive());
    m_Buttons->insertWidget(m_Buttons->count() - 1, pButton);

    connect(pPalette, &OrvPalette::paletteActiveChanged, pButton, &QToolButton::setChecked);
    connect(pPalette, &QObject::destroyed, pButton, &QObject::deleteLater);
    connect(
        pButton, &QToolButton::clicked, pPalette, [this, pPalette, pButton] { toggle(pPalette, pButton); });
}

void OrvPaletteSidebar::setPaletteOpenMode(PaletteOpenMode Mode)
{
    if (Mode == m_Mode)
        return;
    m_Mode = Mode;
    Q_EMIT paletteOpenModeChanged(Mode);
}

void OrvPaletteSidebar::toggle(OrvPalette* pPalette, const QToolButton* pButton)
{
    if (pPalette->isPaletteActive()) {
        // A palette behind another one's tab is what the user asks to see.
        if (pPalette->visibleRegion().isEmpty() && isVisible())
            pPalette->open();
        else
            pPalette->close();
    } else if (m_Mode == Open) {
        openBeside(pPalette, pButton);
    } else {
        if (!pPalette->isPinned()) {
            // It was a visitor before.
            pPalette->setPinned(true);
            pPalette->setFloating(false);
        }
        pPalette->open();
    }
    const_cast<QToolButton*>(pButton)->setChecked(pPalette->isPaletteActive());
}

void OrvPaletteSidebar::openBeside(OrvPalette* pPalette, const QToolButton* pButton) const
{
    pPalette->setPinnable(true);
    pPalette->setPinned(false);
    pPalette->setFloating(true);
    const QRect Screen = screen()->availableGeometry();
    QRect Place(mapToGlobal(QPoint(width() + Gap, 0)), pPalette->size());
    Place.moveTop(pButton->mapToGlobal(QPoint(0, 0)).y());
    Place.moveBottom(qMin(Place.bottom(), Screen.bottom()));
    Place.moveTop(qMax(Place.top(), Screen.top()));
    pPalette->move(Place.topLeft());
    pPalette->open();
}

void OrvPaletteSidebar::contextMenuEvent(QContextMenuEvent* pEvent)
{
    OrvMenu Menu(this);
    const auto AddMode = [this, &Menu](const QString& Text, PaletteOpenMode Mode) {
        QAction* pAction = Menu.addAction(Text, this, [this, Mode] { setPaletteOpenMode(Mode); });
        pAction->setCheckable(true);
        pAction->setChecked(Mode == m_Mode);
    };
    AddMode(tr("Open Palettes in the Window"), Dock);
    AddMode(tr("Open Palettes Until They Are Left"), Open);
    Menu.exec(pEvent->globalPos());
}

#include "moc_OrvPaletteSidebar.cpp"
