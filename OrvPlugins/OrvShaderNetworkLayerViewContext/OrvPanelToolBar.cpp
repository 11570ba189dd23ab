#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvPanelToolBar.h"

#include "OrvCoreModules/Menus/OrvMenuManager.h"
#include "OrvCoreModules/Window/OrvIcon.h"

#include <QtGui/QActionEvent>
#include <QtWidgets/QToolButton>

namespace {
constexpr int ButtonMargin = 3; // around the icon
const QString PanelMenu = QStringLiteral("Panel");
} // namespace

OrvPanelToolBar::OrvPanelToolBar(const QString& RootMenu, QWidget* pParent)
    : QToolBar(pParent)
    , m_RootMenu(RootMenu)
{
    setMovable(false);
    setStyleSheet(QStringLiteral("QToolBar {spacing:0; margin:0; padding:0;}"));
    // Qt's own arrow for what finds no room is dark on dark.
    if (auto* pExtension = findChild<QToolButton*>(QStringLiteral("qt_toolbar_ext_button")))
        pExtension->setIcon(OrvIcon::createIconFromFilename(QStringLiteral("disclosureTriangleClosed.png")));
}

void OrvPanelToolBar::addPublishedActions()
{
    const QList<QAction*> Published
        = OrvMenuManager::instance().menuActions(m_RootMenu + QLatin1Char('/') + PanelMenu);
    for (QAction* pAction : Published) {
        if (!pAction->isSeparator())
            addPublishedAction(m_RootMenu, PanelMenu, pAction);
    }
}

void OrvPanelToolBar::addPublishedAction(const QString& Root, const QString& Sub, QAction* pAction)
{
    // A command that the palette shows anyway keeps its place.
    if (pAction && isMeant(Root, Sub) && !actions().contains(pAction))
        addAction(pAction);
}

void OrvPanelToolBar::removePublishedAction(const QString& Root, const QString& Sub, QAction* pAction)
{
    if (pAction && isMeant(Root, Sub))
        removeAction(pAction);
}

void OrvPanelToolBar::actionEvent(QActionEvent* pEvent)
{
    QToolBar::actionEvent(pEvent);
    if (pEvent->type() != QEvent::ActionAdded)
        return;
    // A palette of the usual width has room for all commands only if none takes more than it needs.
    auto* pButton = qobject_cast<QToolButton*>(widgetForAction(pEvent->action()));
    if (pButton && !pEvent->action()->menu())
        pButton->setFixedSize(iconSize() + 2 * QSize(ButtonMargin, ButtonMargin));
}

bool OrvPanelToolBar::isMeant(const QString& Root, const QString& Sub) const
{
    return Root == m_RootMenu && Sub == PanelMenu;
}

#include "moc_OrvPanelToolBar.cpp"
