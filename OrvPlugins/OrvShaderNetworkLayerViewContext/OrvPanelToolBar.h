#pragma once

#include <QtWidgets/QToolBar>

/// The tool bar of a palette: flat, fixed in its place, and open to commands that the user's set-up publishes
/// for the palette's panel. The palette owns it and tells it what the menu manager gained and lost.
class OrvPanelToolBar : public QToolBar {
    Q_OBJECT

public:
    /// The name is that of the palette's root menu.
    OrvPanelToolBar(const QString& RootMenu, QWidget* pParent);

    /// Those that were published before there was this tool bar.
    void addPublishedActions();
    /// Actions published for other menus are ignored.
    void addPublishedAction(const QString& Root, const QString& Sub, QAction* pAction);
    void removePublishedAction(const QString& Root, const QString& Sub, QAction* pAction);

protected:
    void actionEvent(QActionEvent* pEvent) override;

private:
    bool isMeant(const QString& Root, const QString& Sub) const;

    QString m_RootMenu;
};
