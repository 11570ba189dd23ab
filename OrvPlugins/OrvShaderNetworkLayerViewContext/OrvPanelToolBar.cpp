#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvPanelToolBar.h"

#include "OrvCoreModules/Window/OrvIcon.h"

#include <QtWidgets/QToolButton>

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

bool OrvPanelToolBar::isMeant(const QString& Root, const QString& Sub) const
{
    return Root == m_RootMenu && Sub == QLatin1String("Panel");
}

#include "moc_OrvPanelToolBar.cpp"
