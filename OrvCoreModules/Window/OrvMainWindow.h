#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QStringList>
#include <QtWidgets/QMainWindow>

#include <functional>

class OrvCancelWatch;
class QLabel;
class QProgressBar;
class QToolButton;

/// The one main window: menus from the menu manager, the status line, docked palettes around whatever the
/// program makes its central widget. It is made on first use and lives as long as the process; it never
/// touches the document.
class ORVCOREMODULES_EXPORT OrvMainWindow : public QMainWindow {
    Q_OBJECT

public:
    static OrvMainWindow& instance();

    /// Asked before the window closes; false keeps it open (unsaved changes, work under way).
    void setCloseGuard(std::function<bool()> MayClose) { m_MayClose = std::move(MayClose); }

    /// Arranges the palettes when there is no saved layout, or when the user asks for the default one.
    void setDefaultLayout(std::function<void()> Arrange) { m_ArrangeDefaultLayout = std::move(Arrange); }
    /// Size, place and palettes as the user left them, else the default layout. Returns whether a layout was
    /// found. Called once the palettes are registered.
    bool restoreLayout();
    void saveLayout() const;

    /// Titles of the menu bar from left to right; menus not named go before the last two.
    void setMenuOrder(const QStringList& Titles);

    QMenu* createPopupMenu() override;

public Q_SLOTS:
    void resetLayout();

protected:
    void showEvent(QShowEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;
    void closeEvent(QCloseEvent* pEvent) override;

private Q_SLOTS:
    void onMenuChanged(const QString& Window);
    void showStatus(const QString& Text);
    void showProgress(int Value, int Minimum, int Maximum, bool Cancellable);
    void hideProgress();

private:
    OrvMainWindow();
    void createStatusBar();
    void rebuildMenuBar();
    /// The first start: as much of the screen as is good.
    void fitToScreen();
    /// Once a window that was left maximised has its size again, its palettes get theirs.
    void restoreMaximizedState();
    void raiseFloatingPalettes();
    /// Progress is reported from code that keeps the event loop waiting, so the change is painted at once, and
    /// Escape and the cancel button are looked for where they are of use.
    void repaintStatusBar();

    std::function<bool()> m_MayClose;
    std::function<void()> m_ArrangeDefaultLayout;
    QStringList m_MenuOrder;
    QByteArray m_MaximizedState; ///< of the palettes, until the window is large enough for it
    QLabel* m_StatusLabel = nullptr;
    QProgressBar* m_ProgressBar = nullptr;
    QToolButton* m_CancelButton = nullptr;
    OrvCancelWatch* m_CancelWatch = nullptr;
};
