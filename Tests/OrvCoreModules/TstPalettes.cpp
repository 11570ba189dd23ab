#include "OrvCore/Object/OrvSettings.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvCoreModules/Window/OrvPalette.h"
#include "OrvCoreModules/Window/OrvPaletteManager.h"
#include "OrvCoreModules/Window/OrvPaletteSidebar.h"

#include <QtCore/QTemporaryDir>
#include <QtGui/QScreen>
#include <QtGui/QWindow>
#include <QtTest/QtTest>
#include <QtWidgets/QAction>
#include <QtWidgets/QDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QToolButton>

#include <memory>

/// Palettes in the main window: registered, docked, floating, left, saved and restored.
class TstPalettes : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_Directory.isValid());
        qputenv("ORV_SETTINGS", m_Directory.filePath(QStringLiteral("settings.ini")).toLocal8Bit());
        window().resize(900, 600);
        window().setCentralWidget(new QWidget);
        window().show();
        QVERIFY(QTest::qWaitForWindowExposed(&window()));
        // Away from whatever a test opens.
        QCursor::setPos(window().mapToGlobal(QPoint(450, 590)));
    }

    void cleanup()
    {
        qDeleteAll(window().findChildren<OrvPalette*>());
        if (manager().sidebar())
            manager().sidebar()->setPaletteOpenMode(OrvPaletteSidebar::Dock);
    }

    void registeredPaletteWaitsInTheWindow()
    {
        OrvPalette* pHidden = createRegistered("Shaders", false);
        OrvPalette* pShown = createRegistered("Channels", true);
        QVERIFY(!pHidden->isPaletteActive());
        QVERIFY(pShown->isPaletteActive() && pShown->isVisible());
        QCOMPARE(window().dockWidgetArea(pHidden), Qt::LeftDockWidgetArea);
        QCOMPARE(OrvPaletteManager::find(QStringLiteral("Shaders")), pHidden);
        QVERIFY(!OrvPaletteManager::find(QStringLiteral("Node Graph")));

        manager().registerPalette(pShown, false, QString());
        QCOMPARE(manager().palettes(), QList<OrvPalette*>({pHidden, pShown}));
        delete pHidden;
        QVERIFY(!OrvPaletteManager::find(QStringLiteral("Shaders")));
        QCOMPARE(manager().palettes(), QList<OrvPalette*>{pShown});
    }

    void paletteCommandAndSidebarFollowThePalette()
    {
        OrvPalette* pPalette = createRegistered("History", false);
        QAction* pCommand
            = OrvActionTreeManager::instance().findAction(QStringLiteral("/Orvi/Palettes/History"));
        const QToolButton* pButton = sidebarButton("History");
        QVERIFY(pCommand && pButton);
        pCommand->trigger();
        QVERIFY(pPalette->isVisible());
        QVERIFY(pButton->isChecked());
        pPalette->close();
        QVERIFY(!pCommand->isChecked());
        QVERIFY(!pButton->isChecked());

        // Renamed for its contents, it keeps its name in menus.
        pPalette->setWindowTitle(QStringLiteral("History - 3 steps"));
        QCOMPARE(pCommand->text(), QStringLiteral("History"));
        delete pPalette;
        QVERIFY(!OrvActionTreeManager::instance().hasAction(QStringLiteral("/Orvi/Palettes/History")));
        QTRY_VERIFY(!sidebarButton("History"));
    }

    void sidebarRaisesATabBeforeItCloses()
    {
        OrvPalette* pFront = createRegistered("Front", true);
        OrvPalette* pBack = createRegistered("Back", true);
        window().tabifyDockWidget(pFront, pBack);
        pFront->raise();
        QCoreApplication::processEvents();
        QVERIFY(pBack->isPaletteActive());
        sidebarButton("Back")->click();
        QTRY_VERIFY(!pBack->visibleRegion().isEmpty());
        QVERIFY(sidebarButton("Back")->isChecked());
        sidebarButton("Back")->click();
        QVERIFY(!pBack->isPaletteActive());
        QVERIFY(pFront->isPaletteActive());
    }

    void openModeBringsVisitors()
    {
        OrvPalette* pPalette = createRegistered("Shelf", false);
        manager().sidebar()->setPaletteOpenMode(OrvPaletteSidebar::Open);
        sidebarButton("Shelf")->click();
        QVERIFY(pPalette->isVisible() && pPalette->isFloating() && !pPalette->isPinned());
        sidebarButton("Shelf")->click();
        QVERIFY(!pPalette->isVisible());
        // Opened to stay, it is an ordinary palette again.
        manager().sidebar()->setPaletteOpenMode(OrvPaletteSidebar::Dock);
        sidebarButton("Shelf")->click();
        QVERIFY(pPalette->isVisible() && !pPalette->isFloating() && pPalette->isPinned());
    }

    void unpinnedFloatingPaletteClosesWhenLeft_data()
    {
        QTest::addColumn<bool>("Floating");
        QTest::addColumn<bool>("Pinnable");
        QTest::addColumn<bool>("Pinned");
        QTest::addColumn<bool>("Closes");
        QTest::newRow("visitor") << true << true << false << true;
        QTest::newRow("pinned") << true << true << true << false;
        QTest::newRow("not pinnable") << true << false << false << false;
        QTest::newRow("docked") << false << true << false << false;
    }

    void unpinnedFloatingPaletteClosesWhenLeft()
    {
        QFETCH(bool, Floating);
        QFETCH(bool, Pinnable);
        QFETCH(bool, Pinned);
        QFETCH(bool, Closes);
        OrvPalette* pPalette = createFloating("Stack");
        pPalette->setPinnable(Pinnable);
        pPalette->setPinned(Pinned);
        pPalette->setFloating(Floating);
        leave(pPalette);
        QTest::qWait(500);
        QCOMPARE(pPalette->isVisible(), !Closes);
    }

    void visitorStaysForMouseDialogsAndRelatives()
    {
        OrvPalette* pPalette = createFloating("Stack");
        OrvPalette* pRelated = createRegistered("Channels", true);
        pPalette->setPinnable(true);
        pPalette->setPinned(false);
        const QPoint Away = QCursor::pos();

        QCursor::setPos(pPalette->frameGeometry().center());
        leave(pPalette);
        QTest::qWait(500);
        QVERIFY(pPalette->isVisible());

        // A dialog that it has opened is a part of it.
        auto pDialog = std::make_unique<QDialog>(pPalette);
        pDialog->setModal(true);
        pDialog->show();
        QCursor::setPos(Away);
        QTest::qWait(500);
        QVERIFY(pPalette->isVisible());

        pPalette->addRelatedPalette(pRelated);
        pRelated->addRelatedPalette(pPalette);
        QCursor::setPos(pRelated->mapToGlobal(pRelated->rect().center()));
        pDialog.reset();
        leave(pPalette);
        QTest::qWait(500);
        QVERIFY(pPalette->isVisible());

        QCursor::setPos(Away);
        QTRY_VERIFY(!pPalette->isVisible());
        QVERIFY(!pPalette->isPaletteActive());
    }

    void headerShowsTitleStateAndButtons()
    {
        OrvPalette* pPalette = createFloating("Stack");
        pPalette->resize(400, 300);
        QVERIFY(headerText(pPalette).contains(QStringLiteral("Stack")));
        pPalette->setHeaderTitle(QStringLiteral("Head/Diffuse"));
        QVERIFY(headerText(pPalette).contains(QStringLiteral("Head/Diffuse")));
        QCOMPARE(pPalette->windowTitle(), QStringLiteral("Stack"));
        pPalette->setHeaderTitle(QString());
        QVERIFY(headerText(pPalette).contains(QStringLiteral("Stack")));

        QToolButton* pPin = headerButton(pPalette, "Keep the palette open");
        QVERIFY(!pPin->isVisible());
        pPalette->setPinnable(true);
        QVERIFY(pPin->isVisible() && pPin->isChecked());
        QSignalSpy Pinned(pPalette, &OrvPalette::pinnedChanged);
        pPin->click();
        QVERIFY(!pPalette->isPinned());
        pPalette->setPinned(true);
        QVERIFY(pPin->isChecked());
        QCOMPARE(Pinned.size(), 2);

        QVERIFY(!headerButton(pPalette, "Help")->isVisible());
        pPalette->setContextHelpKey(QStringLiteral("layers_palette"));
        QVERIFY(headerButton(pPalette, "Help")->isVisible());
        headerButton(pPalette, "Dock in the window")->click();
        QVERIFY(!pPalette->isFloating());
        QVERIFY(headerButton(pPalette, "Float"));
        // Docked from the start it says so too.
        auto* pDocked = new OrvPalette(QStringLiteral("Docked"), nullptr, QString());
        OrvPaletteManager::instance().registerPalette(pDocked, true, QString());
        QVERIFY(!pDocked->isFloating());
        QVERIFY(headerButton(pDocked, "Float"));
        delete pDocked;
        headerButton(pPalette, "Close")->click();
        QVERIFY(!pPalette->isPaletteActive());
    }

    void resizingIsToldAndBodyDiesWithThePalette()
    {
        OrvPalette* pPalette = createFloating("Stack");
        const QPointer<QWidget> pBody = pPalette->originalWidget();
        QSignalSpy Resized(pPalette, SIGNAL(sizeChanged()));
        pPalette->resize(321, 234);
        QCOMPARE(Resized.size(), 1);
        QCOMPARE(pPalette->size(), QSize(321, 234));
        pPalette->fitToContents();
        QVERIFY(pPalette->size() != QSize(321, 234));
        // The body touches neither the title bar nor the edges.
        const QRect Body(pBody->mapTo(pPalette, QPoint()), pBody->size());
        QVERIFY(pPalette->rect().adjusted(2, 2, -2, -2).contains(Body));
        QVERIFY(Body.top() > pPalette->titleBarWidget()->geometry().bottom() + 1);
        delete pPalette;
        QVERIFY(!pBody);
    }

    void paletteSettingsComeBack()
    {
        OrvSettings Settings(m_Directory.filePath(QStringLiteral("palettes.conf")), QSettings::IniFormat);
        Settings.clear();
        OrvPalette* pFloating = createFloating("A");
        pFloating->setPinnable(true);
        pFloating->setPinned(false);
        pFloating->setGeometry(120, 130, 300, 200);
        OrvPalette* pDocked = createFloating("B");
        pDocked->setFloating(false);
        window().addDockWidget(Qt::RightDockWidgetArea, pDocked);
        manager().savePaletteSettings(Settings, 0, pFloating);
        manager().savePaletteSettings(Settings, 1, pDocked);
        createRegistered("Any", false);
        manager().sidebar()->setPaletteOpenMode(OrvPaletteSidebar::Open);
        manager().savePaletteSettings(Settings);
        QCOMPARE(Settings.value(QStringLiteral("Name1")).toString(), QStringLiteral("Layers/B"));
        for (const char* pKey : {"Geometry0", "Floating0", "Area0", "Pinned0", "SidebarMode"})
            QVERIFY2(Settings.contains(QLatin1String(pKey)), pKey);

        cleanup();
        createRegistered("Any", false);
        // Its entry is found by name although another one's index is asked for; a stranger goes by the index.
        OrvPalette* pB = createDocked("B");
        OrvPalette* pStranger = createDocked("C");
        manager().restorePaletteSettings(Settings, 0, pB);
        manager().restorePaletteSettings(Settings, 0, pStranger);
        manager().restorePaletteSettings(Settings);
        QCOMPARE(window().dockWidgetArea(pB), Qt::RightDockWidgetArea);
        QVERIFY(!pB->isFloating() && pB->isPinned());
        QVERIFY(pStranger->isFloating() && !pStranger->isPinned());
        QCOMPARE(pStranger->geometry(), QRect(120, 130, 300, 200));
        QCOMPARE(manager().sidebar()->paletteOpenMode(), OrvPaletteSidebar::Open);
    }

    void absentOrDamagedKeysChangeNothing()
    {
        OrvSettings Settings(m_Directory.filePath(QStringLiteral("empty.conf")), QSettings::IniFormat);
        Settings.clear();
        OrvPalette* pPalette = createFloating("A");
        createRegistered("Any", false);
        pPalette->setPinned(false);
        pPalette->setGeometry(100, 100, 250, 150);
        const auto IsUntouched = [pPalette] {
            return pPalette->isFloating() && !pPalette->isPinned()
                && pPalette->geometry() == QRect(100, 100, 250, 150)
                && OrvPaletteManager::sidebar()->paletteOpenMode() == OrvPaletteSidebar::Dock;
        };
        manager().restorePaletteSettings(Settings, 7, pPalette);
        manager().restorePaletteSettings(Settings);
        QVERIFY(IsUntouched());
        Settings.setValue(QStringLiteral("Area7"), 999);
        Settings.setValue(QStringLiteral("Geometry7"), QByteArray("nonsense"));
        Settings.setValue(QStringLiteral("SidebarMode"), 42);
        manager().restorePaletteSettings(Settings, 7, pPalette);
        manager().restorePaletteSettings(Settings);
        QVERIFY(IsUntouched());
    }

    void windowLayoutIsSavedOnCloseAndRestored()
    {
        int Arranged = 0;
        window().setDefaultLayout([&Arranged] { ++Arranged; });
        window().resize(4000, 3000);
        QVERIFY(!window().restoreLayout());
        QCOMPARE(Arranged, 1);
        QVERIFY(window().isMaximized()); // on the small screen that there is
        window().showNormal();
        QVERIFY(window().screen()->availableGeometry().contains(window().geometry()));

        OrvPalette* pPalette = createRegistered("Layers", true);
        window().addDockWidget(Qt::RightDockWidgetArea, pPalette);
        bool MayClose = false;
        window().setCloseGuard([&MayClose] { return MayClose; });
        QVERIFY(!window().close());
        QVERIFY(!OrvSettings().contains(QStringLiteral("MainWindow/State")));
        MayClose = true;
        QVERIFY(window().close());
        window().setCloseGuard({});
        window().show();

        window().addDockWidget(Qt::LeftDockWidgetArea, pPalette);
        pPalette->close();
        QVERIFY(window().restoreLayout());
        QCOMPARE(Arranged, 1);
        QCOMPARE(window().dockWidgetArea(pPalette), Qt::RightDockWidgetArea);
        QVERIFY(pPalette->isPaletteActive());
        window().resetLayout();
        QCOMPARE(Arranged, 2);
        window().setDefaultLayout({});
    }

    /// What is laid out before the window has its size again must not decide.
    void palettesOfAMaximizedWindowKeepTheirWidths()
    {
        window().setCentralWidget(new QWidget);
        OrvPalette* pLayers = createRegistered("Layers", true);
        OrvPalette* pShelf = createRegistered("Shelf", true);
        for (OrvPalette* pPalette : {pLayers, pShelf})
            window().addDockWidget(Qt::RightDockWidgetArea, pPalette);
        window().showNormal();
        window().resize(300, 300);
        window().showMaximized();
        QTRY_VERIFY(window().width() > 300);
        const int Width = window().width() / 2;
        window().resizeDocks({pLayers}, {Width}, Qt::Horizontal);
        QTRY_COMPARE(pLayers->width(), Width);
        window().close();

        window().setWindowState(Qt::WindowNoState);
        window().resizeDocks({pLayers}, {100}, Qt::Horizontal);
        QVERIFY(window().restoreLayout());
        window().show();
        // As a window system does it, some time after the window was shown.
        window().windowHandle()->resize(window().screen()->availableSize());
        QTRY_COMPARE(pLayers->width(), Width);
        window().showNormal();
        delete window().takeCentralWidget();
    }

private:
    static OrvMainWindow& window() { return OrvMainWindow::instance(); }
    static OrvPaletteManager& manager() { return OrvPaletteManager::instance(); }

    static OrvPalette* createRegistered(const char* pName, bool Shown)
    {
        auto* pPalette = new OrvPalette(nullptr);
        pPalette->setBodyWidget(new QLabel(QLatin1String(pName), pPalette));
        pPalette->setObjectName(QLatin1String(pName));
        pPalette->setWindowTitle(QLatin1String(pName));
        manager().registerPalette(pPalette, Shown, QString());
        return pPalette;
    }

    static OrvPalette* createDocked(const char* pTitle)
    {
        auto* pPalette = new OrvPalette(QLatin1String(pTitle), &window(), QStringLiteral("Layers"));
        pPalette->setBodyWidget(new QLabel(QLatin1String(pTitle), pPalette));
        window().addDockWidget(Qt::LeftDockWidgetArea, pPalette);
        pPalette->show();
        return pPalette;
    }

    static OrvPalette* createFloating(const char* pTitle)
    {
        OrvPalette* pPalette = createDocked(pTitle);
        pPalette->setFloating(true);
        pPalette->move(window().mapToGlobal(QPoint(500, 100)));
        return pPalette;
    }

    /// The user turns to the main window.
    static void leave(OrvPalette* pPalette)
    {
        pPalette->activateWindow();
        QCoreApplication::processEvents();
        window().activateWindow();
        QCoreApplication::processEvents();
    }

    static QToolButton* sidebarButton(const char* pName)
    {
        for (QToolButton* pButton : manager().sidebar()->findChildren<QToolButton*>()) {
            if (pButton->toolTip() == QLatin1String(pName))
                return pButton;
        }
        return nullptr;
    }

    static QToolButton* headerButton(const OrvPalette* pPalette, const char* pToolTip)
    {
        for (QToolButton* pButton : pPalette->titleBarWidget()->findChildren<QToolButton*>()) {
            if (pButton->toolTip() == QLatin1String(pToolTip))
                return pButton;
        }
        return nullptr;
    }

    static QStringList headerText(const OrvPalette* pPalette)
    {
        QStringList Texts;
        for (const QLabel* pLabel : pPalette->titleBarWidget()->findChildren<QLabel*>())
            Texts.append(pLabel->text());
        return Texts;
    }

    QTemporaryDir m_Directory;
};

QTEST_MAIN(TstPalettes)
#include "TstPalettes.moc"
