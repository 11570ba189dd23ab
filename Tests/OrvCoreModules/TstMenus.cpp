#include "Tests/OrvPlugins/SettingsDirectory.h"

#include "OrvCore/Object/OrvSettings.h"
#include "OrvCoreModules/Menus/OrvAction.h"
#include "OrvCoreModules/Menus/OrvActionCreator.h"
#include "OrvCoreModules/Menus/OrvActionHelpers.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Menus/OrvLateBindAction.h"
#include "OrvCoreModules/Menus/OrvMenu.h"
#include "OrvCoreModules/Menus/OrvMenuManager.h"
#include "OrvCoreModules/Menus/OrvPanelToolBars.h"
#include "OrvCoreModules/Menus/OrvToggleAction.h"
#include "OrvCoreModules/Window/OrvCustomFusionStyle.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"

#include <QtTest/QtTest>
#include <QtWidgets/QMenuBar>

#include <memory>

namespace {

QStringList texts(const QList<QAction*>& Actions)
{
    QStringList Texts;
    for (const QAction* pAction : Actions)
        Texts.append(pAction->isSeparator() ? QStringLiteral("-") : pAction->text());
    return Texts;
}

/// What a menu offers, without its separators.
QStringList entries(const QMenu* pMenu)
{
    QStringList Entries = texts(pMenu->actions());
    Entries.removeAll(QStringLiteral("-"));
    return Entries;
}

OrvAction* command(OrvActionCreator& Creator, const char* pText)
{
    return Creator.create(QLatin1String(pText), QString(), SLOT(plain()), {}, QString());
}

QMenu* subMenu(const QMenu* pMenu, const QString& Title)
{
    for (const QAction* pAction : pMenu->actions()) {
        if (pAction->menu() && pAction->text() == Title)
            return pAction->menu();
    }
    return nullptr;
}

} // namespace

/// What a module does with its commands: slots of each shape, so that a test sees which one was called with
/// what.
class CommandOwner : public QObject {
    Q_OBJECT

public:
    QStringList Calls;

public Q_SLOTS:
    void plain() { Calls.append(QStringLiteral("plain")); }
    void relay(QAction* pAction) { Calls.append(QStringLiteral("relay ") + pAction->data().toString()); }
    void toggled(bool Checked) { Calls.append(Checked ? QStringLiteral("on") : QStringLiteral("off")); }
};

/// Actions, sets and menus, as modules register them and users meet them.
class TstMenus : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_Owner = std::make_unique<CommandOwner>(); }
    void cleanup() { m_Owner.reset(); }

    void pathsAreForgivingAndDeadActionsLeave()
    {
        auto* pAction = new QAction(QStringLiteral("Quick Find"), m_Owner.get());
        tree().registerAction(QStringLiteral("/Orvi/Paths/"), pAction);
        for (const char* pKey :
            {"/Orvi/Paths/Quick Find", "Orvi/Paths/Quick Find", "/Orvi//Paths/Quick Find"})
            QCOMPARE(tree().findAction(QLatin1String(pKey)), pAction);
        QVERIFY(!tree().hasAction(QStringLiteral("/Orvi/Paths")));

        // A second action of that key must not push the first one out.
        QAction Rival(QStringLiteral("Quick Find"));
        tree().registerAction(QStringLiteral("/Orvi/Paths"), &Rival);
        QCOMPARE(tree().findAction(QStringLiteral("/Orvi/Paths/Quick Find")), pAction);

        QSignalSpy Unregistered(&tree(), &OrvActionTreeManager::actionUnregistered);
        delete pAction;
        QCOMPARE(Unregistered.value(0), QVariantList{QStringLiteral("/Orvi/Paths/Quick Find")});
        QVERIFY(!tree().hasAction(QStringLiteral("/Orvi/Paths/Quick Find")));
        tree().registerAction(QStringLiteral("/Orvi/Paths"), &Rival);
        QCOMPARE(tree().findAction(QStringLiteral("/Orvi/Paths/Quick Find")), &Rival);
    }

    void keysOfAPathKeepTheirOrderAndStopAtTheBoundary()
    {
        for (const char* pText : {"Zoom", "Align", "Mask/Hide"}) {
            const QString Path = QString::fromLatin1(pText);
            tree().registerAction(QStringLiteral("/Orvi/Order/") + Path.section('/', 0, -2),
                new QAction(Path.section('/', -1), m_Owner.get()));
        }
        tree().registerAction(
            QStringLiteral("/Orvi/Order 2"), new QAction(QStringLiteral("Other"), m_Owner.get()));
        QCOMPARE(tree().actionKeys(QStringLiteral("/Orvi/Order")),
            QStringList({"/Orvi/Order/Zoom", "/Orvi/Order/Align", "/Orvi/Order/Mask/Hide"}));
    }

    void setsSwitchTheirActionsAndLateComers()
    {
        auto* pEarly = new QAction(QStringLiteral("Early"), m_Owner.get());
        tree().addToActionSet(QStringLiteral("TestSet"), pEarly);
        tree().setActionSetEnabled(QStringLiteral("TestSet"), false);
        QVERIFY(!pEarly->isEnabled());
        auto* pLate = new QAction(QStringLiteral("Late"), m_Owner.get());
        tree().addToActionSet(QStringLiteral("TestSet"), pLate);
        QVERIFY(!pLate->isEnabled());
        delete pEarly;
        tree().setActionSetEnabled(QStringLiteral("TestSet"), true);
        QVERIFY(pLate->isEnabled());
        QCOMPARE(tree().actionSet(QStringLiteral("TestSet")), QList<QAction*>{pLate});
    }

    void creatorCallsTheSlotThatFits()
    {
        OrvActionCreator Creator(QStringLiteral("/Orvi/Slots"), m_Owner.get(), QString(), QString());
        command(Creator, "Plain")->trigger();
        Creator
            .create(
                QStringLiteral("Relay"), QString(), SLOT(relay(QAction*)), QStringLiteral("me"), QString())
            ->trigger();
        OrvAction* pToggle
            = Creator.create(QStringLiteral("Toggle"), QString(), SLOT(toggled(bool)), QVariant(), QString());
        pToggle->setCheckable(true);
        pToggle->trigger();
        QCOMPARE(m_Owner->Calls, QStringList({"plain", "relay me", "on"}));
    }

    void createLeavesAStandInAndTheOthersTheActionItself()
    {
        OrvActionCreator Creator(
            QStringLiteral("/Orvi/Created"), m_Owner.get(), QStringLiteral("TestWindow/&Created"), QString());
        OrvAction* pFirst = command(Creator, "First");
        Creator.addMenuSeparator();
        Creator.setMenuPath(QStringLiteral("TestWindow/&Created/Deeper"));
        OrvAction* pSecond
            = Creator.createAndAddToMenu(QStringLiteral("Second"), QString(), SLOT(plain()), {}, QString());
        OrvAction* pThird = Creator.createAndAddToMenuWithHierarchy(
            QStringLiteral("Filter/Blur/Gaussian"), QString(), SLOT(plain()), {}, QString());

        QCOMPARE(tree().findAction(QStringLiteral("/Orvi/Created/Filter/Blur/Gaussian")), pThird);
        const auto* pStandIn = qobject_cast<OrvLateBindAction*>(
            OrvActionHelpers::getMenuActions(QStringLiteral("TestWindow/&Created")).value(0));
        QVERIFY(pStandIn);
        QCOMPARE(pStandIn->parentAction(), pFirst);
        QCOMPARE(OrvActionHelpers::getMenuActions(QStringLiteral("TestWindow/Created/Deeper")),
            QList<QAction*>{pSecond});
        QCOMPARE(OrvActionHelpers::getMenuActions(QStringLiteral("TestWindow/&Created/Deeper/Filter/Blur")),
            QList<QAction*>{pThird});

        const std::unique_ptr<QMenu> pMenu(menus().makeMenu("TestWindow", "&Created"));
        QCOMPARE(texts(pMenu->actions()), QStringList({"First", "-", "Deeper"}));
        QSignalSpy Triggered(pMenu.get(), &QMenu::triggered);
        pThird->trigger();
        QCOMPARE(Triggered.size(), 1);

        // A taken key makes no second action, and leaves no second entry.
        QVERIFY(!command(Creator, "Second"));
        QCOMPARE(OrvActionHelpers::getMenuActions(QStringLiteral("TestWindow/&Created/Deeper")).size(), 1);
    }

    void standInFollowsItsAction()
    {
        OrvLateBindAction StandIn(QStringLiteral("/Orvi/Late/Paint"));
        QVERIFY(!StandIn.parentAction());
        QVERIFY(!StandIn.isVisible());
        StandIn.trigger();

        auto* pAction = new QAction(QStringLiteral("Paint"), m_Owner.get());
        pAction->setEnabled(false);
        pAction->setCheckable(true);
        pAction->setShortcut(QKeySequence(QStringLiteral("Ctrl+7")));
        tree().registerAction(QStringLiteral("/Orvi/Late"), pAction);
        QCOMPARE(StandIn.parentAction(), pAction);
        QVERIFY(StandIn.isVisible());
        QVERIFY(!StandIn.isEnabled());
        QCOMPARE(StandIn.shortcut(), pAction->shortcut());
        QCOMPARE(StandIn.shortcutContext(), Qt::WidgetShortcut);

        pAction->setEnabled(true);
        pAction->setText(QStringLiteral("Paint Through"));
        QCOMPARE(StandIn.text(), QStringLiteral("Paint Through"));
        StandIn.trigger();
        QVERIFY(pAction->isChecked());
        QVERIFY(StandIn.isChecked());

        // An action that refuses to be switched leaves its stand-in unswitched, too.
        connect(pAction, &QAction::triggered, pAction, [pAction] { pAction->setChecked(true); });
        StandIn.trigger();
        QVERIFY(StandIn.isChecked());

        delete pAction;
        QVERIFY(!StandIn.parentAction());
        QVERIFY(!StandIn.isVisible());
    }

    void menusFollowTheirEnabledState()
    {
        auto* pAction = new QAction(QStringLiteral("Reveal"), m_Owner.get());
        menus().registerAction("EnableWindow", "&Layers", "Layer Mask", pAction);
        const std::unique_ptr<QMenu> pBefore(menus().makeMenu("EnableWindow", "&Layers"));
        const QString WhyNot = QStringLiteral("Choose a layer first");
        OrvActionHelpers::setMenuEnabled(QStringLiteral("EnableWindow/&Layers/Layer Mask"), false, WhyNot);
        OrvActionHelpers::setMenuEnabled(QStringLiteral("EnableWindow/&Layers/No Such Menu"), false);
        const std::unique_ptr<QMenu> pAfter(menus().makeMenu("EnableWindow", "&Layers"));
        for (const QMenu* pMenu : {pBefore.get(), pAfter.get()}) {
            QVERIFY(!subMenu(pMenu, QStringLiteral("Layer Mask"))->menuAction()->isEnabled());
            QCOMPARE(subMenu(pMenu, QStringLiteral("Layer Mask"))->menuAction()->toolTip(), WhyNot);
        }
        QVERIFY(pAction->isEnabled());
        QCOMPARE(texts(pAfter->actions()), QStringList{"Layer Mask"});

        OrvActionHelpers::setMenuEnabled(QStringLiteral("EnableWindow/Layers/Layer Mask"), true, WhyNot);
        QVERIFY(subMenu(pBefore.get(), QStringLiteral("Layer Mask"))->menuAction()->isEnabled());
        QCOMPARE(subMenu(pBefore.get(), QStringLiteral("Layer Mask"))->menuAction()->toolTip(),
            QStringLiteral("Layer Mask"));
    }

    void entriesHavePlacesAndSections()
    {
        const auto Add = [this](const char* pText, const char* pSection, const char* pBefore) {
            menus().registerAction("PlaceWindow", "Edit", QString(),
                new QAction(QLatin1String(pText), m_Owner.get()), QLatin1String(pSection),
                QLatin1String(pBefore));
        };
        Add("Cut", "clip", "");
        Add("&Undo", "history", "Cut");
        menus().addSeparator("PlaceWindow", "Edit", QString(), "clip");
        Add("Paste", "clip", "No Such Entry");
        std::unique_ptr<QMenu> pMenu(menus().makeMenu("PlaceWindow", "Edit"));
        QCOMPARE(texts(pMenu->actions()), QStringList({"&Undo", "Cut", "-", "Paste"}));
        pMenu.reset(menus().makeMenu("PlaceWindow", "Edit", "clip"));
        QCOMPARE(texts(pMenu->actions()), QStringList({"Cut", "-", "Paste"}));

        // Entries of dead actions are gone at the next filling.
        m_Owner = std::make_unique<CommandOwner>();
        pMenu.reset(menus().makeMenu("PlaceWindow", "Edit"));
        QCOMPARE(texts(pMenu->actions()), QStringList{"-"});
    }

    void registrationIsAnnounced()
    {
        QSignalSpy Added(&menus(), &OrvMenuManager::actionAdded);
        QSignalSpy Removed(&menus(), &OrvMenuManager::actionRemoved);
        auto* pAction = new QAction(QStringLiteral("Share"), m_Owner.get());
        menus().registerAction("Layers", "Panel", QString(), pAction, "", "");
        QCOMPARE(Added.size(), 1);
        QCOMPARE(Added.first().mid(0, 3), QVariantList({"Layers", "Panel", QString()}));
        QCOMPARE(Added.first().at(3).value<QAction*>(), pAction);
        menus().unregisterAction("Layers", "Panel", QString(), pAction);
        menus().unregisterAction("Layers", "Panel", QString(), pAction);
        QCOMPARE(Removed.size(), 1);
        QCOMPARE(Removed.first().at(3).value<QAction*>(), pAction);
    }

    void layerContextMenuGroupsTheActionTree()
    {
        OrvActionCreator Creator(QStringLiteral("/Orvi/Layers/Mask"), m_Owner.get(), QString(), QString());
        command(Creator, "Reveal All");
        Creator.setActionPath(QStringLiteral("/Orvi/Layers"));
        command(Creator, "Cut");
        Creator.setActionPath(QStringLiteral("/Orvi/Layers/Mask/Resize Mask"));
        command(Creator, "Halve Size");
        Creator.setActionPath(QStringLiteral("/Orvi/Layers/Shaders/AddShader"));
        command(Creator, "Phong");
        Creator.setActionPath(QStringLiteral("/Orvi/Layers/Shaders"));
        OrvAction* pAdd = command(Creator, "Add New Shader");
        QMenu Types;
        pAdd->setMenu(&Types);

        const std::unique_ptr<QMenu> pMenu(menus().makeMenu("CollectionContext", "OrvLayer"));
        QCOMPARE(entries(pMenu.get()), QStringList({"Cut", "Mask", "Shaders"}));
        const QMenu* pMask = subMenu(pMenu.get(), QStringLiteral("Mask"));
        QCOMPARE(texts(pMask->actions()), QStringList({"Reveal All", "Resize Mask"}));
        QVERIFY(qobject_cast<OrvLateBindAction*>(pMask->actions().first()));
        // The entry with a menu of its own opens it, and stays that menu's action.
        const QMenu* pShaders = subMenu(pMenu.get(), QStringLiteral("Shaders"));
        QCOMPARE(pShaders->actions(), QList<QAction*>{pAdd});
        QCOMPARE(Types.menuAction(), pAdd);
        pAdd->setMenu(nullptr);
    }

    /// Even where an icon stands in the place of the check.
    void checkedEntriesWithIconsLookChecked()
    {
        OrvCustomFusionStyle Style;
        QMenu Menu;
        Menu.setStyle(&Style);
        Menu.setPalette(Style.standardPalette());
        QPixmap Clear(16, 16);
        Clear.fill(Qt::transparent);
        QAction* pEntry = Menu.addAction(QIcon(Clear), QStringLiteral("Shown"));
        pEntry->setCheckable(true);
        const auto ground = [&Menu, pEntry] {
            const QImage Picture = Menu.grab(Menu.actionGeometry(pEntry)).toImage();
            return Picture.pixelColor(12, Picture.height() / 2);
        };
        const QColor Unchecked = ground();
        pEntry->setChecked(true);
        QVERIFY(ground().blue() - Unchecked.blue() > 50);
    }

    void layerContextMenuLeadsWithTheLayersMenu()
    {
        OrvActionCreator Creator(
            QStringLiteral("/Orvi/Layers"), m_Owner.get(), QStringLiteral("MainWindow/&Layers"), QString());
        command(Creator, "Merge");
        Creator.createAndAddToMenuWithHierarchy(
            QStringLiteral("Filter/Blur"), QString(), SLOT(plain()), {}, QString());
        Creator.setMenuPath(QString());
        command(Creator, "Quick Find");
        const std::unique_ptr<QMenu> pMenu(menus().makeMenu("CollectionContext", "OrvLayer"));
        QCOMPARE(entries(pMenu.get()), QStringList({"Merge", "Filter", "Quick Find"}));
    }

    void menusKeepTheirPlaceWhoeverFillsThemFirst()
    {
        const auto addEntry = [this](const char* pSubMenu, const char* pText) {
            menus().registerAction("PlacedWindow", "&Edit", QString::fromLatin1(pSubMenu),
                new QAction(QString::fromLatin1(pText), m_Owner.get()));
        };
        addEntry("&Export", "Image");
        menus().placeMenu("PlacedWindow/&Edit/Filters");
        menus().placeMenu("PlacedWindow/&Edit/Never Filled");
        addEntry("", "Undo");
        menus().placeMenu("PlacedWindow/&Edit/&Export");
        addEntry("Filters/Type/Blur", "Soft");
        const std::unique_ptr<QMenu> pMenu(menus().makeMenu("PlacedWindow", "&Edit"));
        QCOMPARE(texts(pMenu->actions()), QStringList({"Filters", "Undo", "&Export"}));
        // Levels that hold one sub-menu and nothing else are skipped.
        QCOMPARE(texts(subMenu(pMenu.get(), "Filters")->actions()), QStringList{"Soft"});
        addEntry("Filters/Type", "Sharp");
        const std::unique_ptr<QMenu> pFuller(menus().makeMenu("PlacedWindow", "&Edit"));
        QCOMPARE(texts(subMenu(pFuller.get(), "Filters")->actions()), QStringList({"Blur", "Sharp"}));
    }

    void menuCanBeClearedAndRefilled()
    {
        auto* pAction = new QAction(QStringLiteral("Phong"), m_Owner.get());
        menus().registerAction("RefillWindow", "AddShader", "Simple", pAction);
        const std::unique_ptr<OrvMenu> pMenu(menus().makeMenu("RefillWindow", "AddShader"));
        for (int Round = 0; Round < 2; ++Round) {
            pMenu->clearAll();
            QVERIFY(pMenu->isEmpty());
            QVERIFY(pMenu->findChildren<QMenu*>().isEmpty());
            menus().fillMenu(pMenu.get(), "RefillWindow", "AddShader");
            QCOMPARE(subMenu(pMenu.get(), "Simple")->actions(), QList<QAction*>{pAction});
        }
    }

    void popupOfAnActionsMenuWaits()
    {
        QAction Command(QStringLiteral("Add New Shader Layer"));
        auto pMenu = std::make_unique<OrvMenu>();
        QAction* pEntry = pMenu->addAction(QStringLiteral("Phong"));
        Command.setMenu(pMenu.get());
        connect(&Command, SIGNAL(triggered()), &menus(), SLOT(popupSubMenu()));
        QSignalSpy Chosen(pMenu.get(), &QMenu::triggered);
        QTimer::singleShot(0, pMenu.get(), [&pMenu, pEntry] {
            QVERIFY(pMenu->isVisible());
            QTest::mouseClick(pMenu.get(), Qt::LeftButton, {}, pMenu->actionGeometry(pEntry).center());
        });
        Command.trigger();
        QCOMPARE(Chosen.size(), 1);
        QVERIFY(!pMenu->isVisible());
    }

    void toolBarsArePublishedAndRemembered()
    {
        OrvPanelToolBars& ToolBars = OrvPanelToolBars::instance();
        const QStringList Defaults = ToolBars.actionKeys(QStringLiteral("Shaders"));
        QVERIFY(!Defaults.isEmpty());
        QSignalSpy Added(&menus(), &OrvMenuManager::actionAdded);
        QSignalSpy Removed(&menus(), &OrvMenuManager::actionRemoved);
        ToolBars.publish();
        ToolBars.publish();
        const auto CountFor = [](const QSignalSpy& Spy, const QString& RootMenu) {
            return std::count_if(Spy.begin(), Spy.end(), [&RootMenu](const QVariantList& Arguments) {
                return Arguments.at(0) == RootMenu && Arguments.at(1) == QLatin1String("Panel");
            });
        };
        QCOMPARE(CountFor(Added, QStringLiteral("Shaders")), Defaults.size());
        ToolBars.setActionKeys(QStringLiteral("Shaders"), {QStringLiteral("/Orvi/Layers/Shaders/Cut")});
        QCOMPARE(CountFor(Removed, QStringLiteral("Shaders")), Defaults.size());
        QCOMPARE(CountFor(Added, QStringLiteral("Shaders")), Defaults.size() + 1);
        QCOMPARE(OrvSettings().value(QStringLiteral("ToolBars/Shaders")).toStringList(),
            QStringList{QStringLiteral("/Orvi/Layers/Shaders/Cut")});
        ToolBars.setActionKeys(QStringLiteral("Shaders"), Defaults);
        QVERIFY(!OrvSettings().contains(QStringLiteral("ToolBars/Shaders")));
    }

    void menuBarShowsTheWindowsMenusInOrder()
    {
        OrvMainWindow& MainWindow = OrvMainWindow::instance();
        auto* pAction = new QAction(QStringLiteral("Something"), m_Owner.get());
        for (const char* pTitle : {"&Help", "&Unknown", "&Layers", "&File"})
            menus().registerAction("MainWindow", QLatin1String(pTitle), QString(), pAction);
        QStringList Titles = texts(MainWindow.menuBar()->actions());
        Titles.removeAll(QStringLiteral("&Palettes"));
        QCOMPARE(Titles, QStringList({"&File", "&Layers", "&Unknown", "&Help"}));

        // Entries that come later are there when the menu opens.
        QMenu* pLayers = MainWindow.menuBar()->actions().at(1)->menu();
        auto* pLate = new QAction(QStringLiteral("Later"), m_Owner.get());
        menus().registerAction("MainWindow", "&Layers", QString(), pLate);
        Q_EMIT pLayers->aboutToShow();
        QCOMPARE(texts(pLayers->actions()), QStringList({"Something", "Later"}));
    }

    void lettersGoToEntries()
    {
        OrvMenu Menu;
        for (const char* pText : {"Zoom In", "&Export", "Zoom Out", "Zap"})
            Menu.addAction(QString::fromLatin1(pText));
        Menu.actions()[3]->setEnabled(false);
        QMenu* pZones = Menu.addMenu(QStringLiteral("Zones"));
        pZones->addAction(QStringLiteral("Zenith"));
        int Chosen = 0;
        connect(Menu.actions()[1], &QAction::triggered, this, [&Chosen] { ++Chosen; });
        Menu.popup(QPoint(10, 10));
        for (const int Row : {0, 2, 4, 0, 2, 4}) {
            QTest::keyClick(&Menu, Qt::Key_Z);
            QCOMPARE(Menu.activeAction(), Menu.actions()[Row]);
            QCOMPARE(QApplication::activePopupWidget(), &Menu);
        }
        QTest::keyClick(&Menu, Qt::Key_Right);
        QVERIFY(pZones->isVisible() && pZones->activeAction() == pZones->actions()[0]);
        QTest::keyClick(pZones, Qt::Key_Left);
        // A mnemonic acts at once, as ever.
        QTest::keyClick(&Menu, Qt::Key_E);
        QCOMPARE(Chosen, 1);
        QVERIFY(!Menu.isVisible());
    }

    void toggleActionIsSilentWhenNothingChanges()
    {
        QPixmap Pixmap(4, 4);
        const QIcon On(Pixmap);
        const QIcon Off(Pixmap);
        OrvToggleAction Lock(On, Off);
        QSignalSpy Changed(&Lock, &OrvToggleAction::checkedChanged);
        Lock.setCheckedState(false);
        QVERIFY(Changed.isEmpty());
        Lock.trigger();
        Lock.setCheckedState(true);
        QCOMPARE(Changed.size(), 1);
        QCOMPARE(Changed.first().first().toBool(), true);
        QCOMPARE(Lock.icon().cacheKey(), On.cacheKey());
        Lock.setCheckedState(false);
        QCOMPARE(Changed.size(), 2);
        QCOMPARE(Lock.icon().cacheKey(), Off.cacheKey());
    }

private:
    static OrvActionTreeManager& tree() { return OrvActionTreeManager::instance(); }
    static OrvMenuManager& menus() { return OrvMenuManager::instance(); }

    SettingsDirectory m_Directory;
    std::unique_ptr<CommandOwner> m_Owner;
};

QTEST_MAIN(TstMenus)
#include "TstMenus.moc"
