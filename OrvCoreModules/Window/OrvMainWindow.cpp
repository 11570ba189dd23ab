#include "OrvCoreModules/Window/OrvMainWindow.h"

#include "OrvCore/Object/OrvSettings.h"
#include "OrvCoreModules/Menus/OrvMenu.h"
#include "OrvCoreModules/Menus/OrvMenuManager.h"
#include "OrvCoreModules/Menus/OrvShortcutManager.h"
#include "OrvCoreModules/Window/OrvCancelWatch.h"
#include "OrvCoreModules/Window/OrvGlyphs.h"
#include "OrvCoreModules/Window/OrvPalette.h"
#include "OrvCoreModules/Window/OrvPaletteManager.h"
#include "OrvCoreModules/Window/OrvStatusManager.h"

#include <QtCore/QTimer>
#include <QtGui/QCloseEvent>
#include <QtGui/QScreen>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QProgressBar>
#include <QtWidgets/QStatusBar>
#include <QtWidgets/QToolButton>

#include <utility>

namespace {

const QString Window = QStringLiteral("MainWindow");
const QString SettingsGroup = QStringLiteral("MainWindow");
const QString GeometryKey = QStringLiteral("Geometry");
const QString StateKey = QStringLiteral("State");
constexpr int StateVersion = 1; // of the set of palettes and tool bars
const QSize InitialSize(1400, 900);
constexpr double InitialShare = 0.9; // of the screen, at most
const QSize SmallScreen(1280, 800); // one that the window needs all of
const QSize ProgressBarSize(180, 12);
constexpr int MaximizingTime = 3000; // ms; what comes later is the user's doing
constexpr int TitlesKeptLast = 2; // of the menu order

QString plain(QString Title)
{
    return Title.remove(QLatin1Char('&'));
}

} // namespace

OrvMainWindow& OrvMainWindow::instance()
{
    // Never destroyed: what its palettes show is torn down in no order that widgets could rely on.
    static auto* pInstance = new OrvMainWindow;
    return *pInstance;
}

OrvMainWindow::OrvMainWindow()
    : m_MenuOrder({QStringLiteral("File"), QStringLiteral("Edit"), QStringLiteral("Layers"),
        QStringLiteral("Channels"), QStringLiteral("Shaders"), QStringLiteral("View"),
        QStringLiteral("Palettes"), QStringLiteral("Help")})
{
    setObjectName(QStringLiteral("OrvMainWindow"));
    resize(InitialSize);
    setDockOptions(AnimatedDocks | AllowNestedDocks | AllowTabbedDocks);
    setTabPosition(Qt::AllDockWidgetAreas, QTabWidget::North);
    setCorner(Qt::TopLeftCorner, Qt::LeftDockWidgetArea);
    setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
    setCorner(Qt::TopRightCorner, Qt::RightDockWidgetArea);
    setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea);
    createStatusBar();
    OrvShortcutManager::instance().attachTo(this);
    connect(&OrvMenuManager::instance(), &OrvMenuManager::menuChanged, this, &OrvMainWindow::onMenuChanged);
    rebuildMenuBar();
}

void OrvMainWindow::createStatusBar()
{
    m_StatusLabel = new QLabel(this);
    m_StatusLabel->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_ProgressBar = new QProgressBar(this);
    m_ProgressBar->setFixedSize(ProgressBarSize);
    m_ProgressBar->setTextVisible(false);
    m_ProgressBar->hide();
    m_CancelButton = new QToolButton(this);
    m_CancelButton->setAutoRaise(true);
    m_CancelButton->setIcon(OrvGlyphs::icon(OrvGlyphs::Close));
    m_CancelButton->setIconSize(QSize(ProgressBarSize.height(), ProgressBarSize.height()));
    m_CancelButton->setToolTip(tr("Cancel (Esc)"));
    m_CancelWatch = new OrvCancelWatch(m_CancelButton, this);
    m_CancelButton->hide();
    statusBar()->addWidget(m_StatusLabel, 1);
    statusBar()->addPermanentWidget(m_ProgressBar);
    statusBar()->addPermanentWidget(m_CancelButton);

    OrvStatusManager* pStatus = &OrvStatusManager::instance();
    connect(pStatus, &OrvStatusManager::textChanged, this, &OrvMainWindow::showStatus);
    connect(pStatus, &OrvStatusManager::progressChanged, this, &OrvMainWindow::showProgress);
    connect(pStatus, &OrvStatusManager::progressFinished, this, &OrvMainWindow::hideProgress);
    connect(m_CancelButton, &QToolButton::clicked, pStatus, &OrvStatusManager::cancel);
    m_StatusLabel->setText(pStatus->text());
}

void OrvMainWindow::showStatus(const QString& Text)
{
    m_StatusLabel->setText(Text);
}

void OrvMainWindow::showProgress(int Value, int Minimum, int Maximum, bool Cancellable)
{
    m_ProgressBar->setRange(Minimum, Maximum);
    m_ProgressBar->setValue(Value);
    m_ProgressBar->show();
    m_CancelButton->setVisible(Cancellable);
    repaintStatusBar();
    if (Cancellable && isVisible())
        m_CancelWatch->look();
}

void OrvMainWindow::hideProgress()
{
    m_ProgressBar->hide();
    m_CancelButton->hide();
}

void OrvMainWindow::repaintStatusBar()
{
    if (!isVisible())
        return;
    statusBar()->layout()->activate();
    statusBar()->repaint();
}

void OrvMainWindow::setMenuOrder(const QStringList& Titles)
{
    m_MenuOrder = Titles;
    rebuildMenuBar();
}

void OrvMainWindow::onMenuChanged(const QString& ChangedWindow)
{
    if (ChangedWindow == Window
        && OrvMenuManager::instance().menus(Window).size() != menuBar()->actions().size())
        rebuildMenuBar();
}

void OrvMainWindow::rebuildMenuBar()
{
    // Menus not named by the order go between its first ones and those kept last.
    QStringList Titles = OrvMenuManager::instance().menus(Window);
    const int UnnamedRank = qMax(0, m_MenuOrder.size() - TitlesKeptLast);
    const auto Rank = [this, UnnamedRank](const QString& Title) {
        const int Named = m_MenuOrder.indexOf(plain(Title));
        return Named < 0 ? 2 * UnnamedRank - 1 : 2 * Named;
    };
    std::stable_sort(Titles.begin(), Titles.end(),
        [&Rank](const QString& Left, const QString& Right) { return Rank(Left) < Rank(Right); });

    menuBar()->clear();
    qDeleteAll(menuBar()->findChildren<OrvMenu*>(QString(), Qt::FindDirectChildrenOnly));
    for (const QString& Title : qAsConst(Titles)) {
        auto* pMenu = new OrvMenu(Title, menuBar());
        menuBar()->addMenu(pMenu);
        OrvMenuManager::instance().fillMenu(pMenu, Window, Title);
        // Filled anew when it is opened: its entries may have changed any number of times in between.
        connect(pMenu, &QMenu::aboutToShow, pMenu, [pMenu, Title] {
            pMenu->clearAll();
            OrvMenuManager::instance().fillMenu(pMenu, Window, Title);
        });
    }
}

QMenu* OrvMainWindow::createPopupMenu()
{
    return OrvMenuManager::instance().makeMenu(Window, QStringLiteral("&Palettes"));
}

bool OrvMainWindow::restoreLayout()
{
    OrvSettings Settings;
    Settings.beginGroup(SettingsGroup);
    if (!restoreGeometry(Settings.value(GeometryKey).toByteArray()))
        fitToScreen();
    // Palettes that float find the window that they lie above only if it is there before them.
    winId();
    const QByteArray State = Settings.value(StateKey).toByteArray();
    const bool Found = restoreState(State, StateVersion);
    if (Found && isMaximized())
        m_MaximizedState = State;
    if (!Found && m_ArrangeDefaultLayout)
        m_ArrangeDefaultLayout();
    OrvPaletteManager::instance().restorePaletteSettings(Settings);
    return Found;
}

void OrvMainWindow::fitToScreen()
{
    const QRect Room = screen()->availableGeometry();
    const QSize Size = InitialSize.boundedTo(Room.size() * InitialShare);
    setGeometry(QRect(Room.center() - QPoint(Size.width(), Size.height()) / 2, Size));
    if (Room.width() <= SmallScreen.width() || Room.height() <= SmallScreen.height())
        setWindowState(windowState() | Qt::WindowMaximized);
}

void OrvMainWindow::restoreMaximizedState()
{
    if (m_MaximizedState.isEmpty() || !isVisible() || !isMaximized() || size() == normalGeometry().size())
        return;
    restoreState(std::exchange(m_MaximizedState, QByteArray()), StateVersion);
}

void OrvMainWindow::raiseFloatingPalettes()
{
    for (OrvPalette* pPalette : findChildren<OrvPalette*>()) {
        if (pPalette->isFloating() && pPalette->isVisible())
            pPalette->raise();
    }
}

void OrvMainWindow::saveLayout() const
{
    OrvSettings Settings;
    Settings.beginGroup(SettingsGroup);
    Settings.setValue(GeometryKey, saveGeometry());
    Settings.setValue(StateKey, saveState(StateVersion));
    OrvPaletteManager::instance().savePaletteSettings(Settings);
}

void OrvMainWindow::resetLayout()
{
    m_MaximizedState.clear();
    if (m_ArrangeDefaultLayout)
        m_ArrangeDefaultLayout();
}

void OrvMainWindow::showEvent(QShowEvent* pEvent)
{
    QMainWindow::showEvent(pEvent);
    // The window system puts a window that it shows in front of those that were there before.
    if (!pEvent->spontaneous())
        QTimer::singleShot(0, this, &OrvMainWindow::raiseFloatingPalettes);
    if (!m_MaximizedState.isEmpty())
        QTimer::singleShot(MaximizingTime, this, [this] { m_MaximizedState.clear(); });
}

void OrvMainWindow::resizeEvent(QResizeEvent* pEvent)
{
    QMainWindow::resizeEvent(pEvent);
    restoreMaximizedState();
}

void OrvMainWindow::closeEvent(QCloseEvent* pEvent)
{
    if (m_MayClose && !m_MayClose()) {
        pEvent->ignore();
        return;
    }
    saveLayout();
    QMainWindow::closeEvent(pEvent);
}

#include "moc_OrvMainWindow.cpp"
