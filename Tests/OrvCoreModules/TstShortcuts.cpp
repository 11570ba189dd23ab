#include "Tests/OrvPlugins/SettingsDirectory.h"

#include "OrvCore/Object/OrvSettings.h"
#include "OrvCoreModules/Menus/OrvActionHelpers.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Menus/OrvLateBindAction.h"
#include "OrvCoreModules/Menus/OrvShortcutEditor.h"
#include "OrvCoreModules/Menus/OrvShortcutManager.h"
#include "OrvCoreModules/Menus/OrvShortcutSequence.h"
#include "OrvCoreModules/Window/OrvApplication.h"

#include <QtTest/QtTest>
#include <QtWidgets/QAction>
#include <QtWidgets/QKeySequenceEdit>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTreeWidget>
#include <QtWidgets/QVBoxLayout>

#include <memory>

/// A view with a tree in it, as palettes have them.
class FirstView : public QWidget {
    Q_OBJECT

public:
    FirstView()
        : Tree(new QTreeWidget(this))
        , Editor(new QLineEdit(this))
    {
        auto* pLayout = new QVBoxLayout(this);
        pLayout->addWidget(Tree);
        pLayout->addWidget(Editor);
        OrvActionHelpers::createAndRegisterShortcut(
            Tree, QKeySequence(Qt::Key_Delete), SLOT(removeRows()), this);
    }

    QTreeWidget* Tree;
    QLineEdit* Editor;
    int Removals = 0;

public Q_SLOTS:
    void removeRows() { ++Removals; }
};

class SecondView : public QWidget {
    Q_OBJECT

public:
    SecondView()
    {
        OrvActionHelpers::createAndRegisterShortcut(
            this, QKeySequence(Qt::Key_Delete), SLOT(removeRows()), this);
    }

public Q_SLOTS:
    void removeRows() { }
};

/// Shortcuts as the user binds and presses them.
class TstShortcuts : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_Directory.isValid());
        manager().addShortcutGroupMapping(QStringLiteral("First"), QStringLiteral("FirstView"));
        manager().addShortcutGroupMapping(QStringLiteral("Second"), QStringLiteral("SecondView"));
    }

    void init() { m_Owner = std::make_unique<QWidget>(); }

    void cleanup()
    {
        manager().resetAll();
        m_Owner.reset();
    }

    void bindingsOutliveTheirActions()
    {
        const QString Path = QStringLiteral("/Orvi/Keys/Cut");
        QAction* pAction = createAction("Cut", "Ctrl+X");
        QCOMPARE(manager().defaultShortcut(Path), keys("Ctrl+X"));
        QVERIFY(manager().setShortcut(Path, keys("Ctrl+Shift+X")));
        QCOMPARE(pAction->shortcut(), keys("Ctrl+Shift+X"));

        delete pAction;
        pAction = createAction("Cut", "Ctrl+X");
        QCOMPARE(pAction->shortcut(), keys("Ctrl+Shift+X"));

        // Without keys is a choice, too.
        QVERIFY(manager().setShortcut(Path, QKeySequence()));
        delete pAction;
        pAction = createAction("Cut", "Ctrl+X");
        QVERIFY(pAction->shortcut().isEmpty());

        manager().reset(Path);
        QCOMPARE(pAction->shortcut(), keys("Ctrl+X"));
        OrvSettings Settings;
        Settings.beginGroup(QStringLiteral("Shortcuts"));
        QVERIFY(Settings.allKeys().isEmpty());
        QVERIFY(!manager().setShortcut(QStringLiteral("/Orvi/Keys/Unknown"), keys("F9")));
    }

    void defaultsMayComeBeforeOrAfterTheAction()
    {
        manager().setDefaultShortcut(QStringLiteral("/Orvi/Keys/Early"), keys("Ctrl+1"));
        const QAction* pEarly = createAction("Early", "");
        QCOMPARE(pEarly->shortcut(), keys("Ctrl+1"));

        const QAction* pLate = createAction("Late", "");
        manager().setDefaultShortcut(QStringLiteral("/Orvi/Keys/Late"), keys("Ctrl+2"));
        QCOMPARE(pLate->shortcut(), keys("Ctrl+2"));
        manager().setShortcut(QStringLiteral("/Orvi/Keys/Late"), keys("Ctrl+3"));
        manager().setDefaultShortcut(QStringLiteral("/Orvi/Keys/Late"), keys("Ctrl+4"));
        QCOMPARE(pLate->shortcut(), keys("Ctrl+3"));
    }

    void menusShowTheKeysOfWidgets()
    {
        const QAction* pAction = createAction("Remove", "");
        const QString Path = QStringLiteral("/Orvi/Keys/Remove");
        const OrvLateBindAction Entry(Path);
        manager().showWidgetShortcut(Path, QStringLiteral("First"), SLOT(removeRows()));
        FirstView View;
        const QString Removal = QStringLiteral("/Orvi/Palettes/First/Remove Rows");
        // Shown, but the action does not answer, and nobody is in the way.
        QCOMPARE(Entry.shortcut(), keys("Del"));
        QVERIFY(pAction->shortcut().isEmpty());
        QVERIFY(manager().conflicts(Removal, keys("Del")).isEmpty());
        show(View);
        press(View.Tree, Qt::Key_Delete);
        QCOMPARE(View.Removals, 1);
        manager().setShortcut(Removal, keys("Backspace"));
        QCOMPARE(Entry.shortcut(), keys("Backspace"));
        // Keys of its own come first.
        manager().setShortcut(Path, keys("F9"));
        QCOMPARE(Entry.shortcut(), keys("F9"));
        manager().setShortcut(Path, QKeySequence());
        QCOMPARE(Entry.shortcut(), keys("Backspace"));
    }

    void keysInUseAreRefusedUntilTakenOver()
    {
        const QAction* pSave = createAction("Save", "Ctrl+S");
        const QAction* pShare = createAction("Share", "");
        const QString Share = QStringLiteral("/Orvi/Keys/Share");
        QCOMPARE(manager().conflicts(Share, keys("Ctrl+S")), QStringList{"/Orvi/Keys/Save"});
        QVERIFY(!manager().setShortcut(Share, keys("Ctrl+S")));
        QVERIFY(pShare->shortcut().isEmpty());
        // The longer one could never be reached.
        QCOMPARE(manager().conflicts(Share, keys("Ctrl+S, Ctrl+A")), QStringList{"/Orvi/Keys/Save"});
        QVERIFY(manager().conflicts(Share, QKeySequence()).isEmpty());
        QVERIFY(manager().conflicts(QStringLiteral("/Orvi/Keys/Save"), keys("Ctrl+S")).isEmpty());

        manager().takeShortcut(Share, keys("Ctrl+S"));
        QCOMPARE(pShare->shortcut(), keys("Ctrl+S"));
        QVERIFY(pSave->shortcut().isEmpty());
        manager().resetAll();
        QCOMPARE(pSave->shortcut(), keys("Ctrl+S"));
        QVERIFY(pShare->shortcut().isEmpty());
    }

    void widgetShortcutsWorkWithinTheWidgetAndShareKeysAcrossGroups()
    {
        FirstView First;
        const SecondView Second;
        const QString Path = QStringLiteral("/Orvi/Palettes/First/Remove Rows");
        QCOMPARE(manager().group(Path), QStringLiteral("First palette"));
        QCOMPARE(manager().group(QStringLiteral("/Orvi/Keys/AddNode/Any")), QStringLiteral("Keys > Add Node"));
        QCOMPARE(manager().text(Path), QStringLiteral("Remove Rows"));
        QVERIFY(manager().conflicts(Path, QKeySequence(Qt::Key_Delete)).isEmpty());
        // A command of the whole window would make the key ambiguous.
        createAction("Erase", "Del");
        QCOMPARE(manager().conflicts(Path, QKeySequence(Qt::Key_Delete)), QStringList{"/Orvi/Keys/Erase"});

        show(First);
        press(First.Editor, Qt::Key_Delete);
        QCOMPARE(First.Removals, 0);
        press(First.Tree, Qt::Key_Delete);
        QCOMPARE(First.Removals, 1);

        // All views of the class are bound together, those made later included.
        FirstView Sibling;
        manager().takeShortcut(Path, keys("Ctrl+D"));
        FirstView LaterSibling;
        for (FirstView* pView : {&Sibling, &LaterSibling}) {
            show(*pView);
            press(pView->Tree, Qt::Key_Delete);
            QCOMPARE(pView->Removals, 0);
            QTest::keyClick(pView->Tree, Qt::Key_D, Qt::ControlModifier);
            QCOMPARE(pView->Removals, 1);
        }
    }

    void actionsAnswerInTheWindowTheyAreAttachedTo()
    {
        QAction* pAction = createAction("Group", "Ctrl+G");
        FirstView Window;
        manager().attachTo(&Window);
        show(Window);
        QSignalSpy Triggered(pAction, &QAction::triggered);
        press(Window.Tree, Qt::Key_G, Qt::ControlModifier);
        QCOMPARE(Triggered.size(), 1);
        manager().setShortcut(QStringLiteral("/Orvi/Keys/Group"), keys("Ctrl+H"));
        QTest::keyClick(Window.Tree, Qt::Key_G, Qt::ControlModifier);
        QTest::keyClick(Window.Tree, Qt::Key_H, Qt::ControlModifier);
        QCOMPARE(Triggered.size(), 2);
    }

    void specialKeyWorksWhileEnabledAndNeverWhileTyping()
    {
        FirstView View;
        auto* pFind = new QAction(QStringLiteral("Quick Find"), m_Owner.get());
        OrvActionTreeManager::instance().registerAction(QStringLiteral("/Orvi/Layers"), pFind);
        QSignalSpy Found(pFind, &QAction::triggered);
        show(View);
        press(View.Tree, Qt::Key_Tab);
        QCOMPARE(Found.size(), 0);
        manager().setEnabledSpecialShortcut(Qt::Key_Tab, true);
        press(View.Tree, Qt::Key_Tab);
        QCOMPARE(Found.size(), 1);
        QCOMPARE(QApplication::focusWidget(), View.Tree);
        QTest::keyClick(View.Tree, Qt::Key_Tab, Qt::ShiftModifier);
        press(View.Editor, Qt::Key_Tab);
        pFind->setEnabled(false);
        press(View.Tree, Qt::Key_Tab);
        QCOMPARE(Found.size(), 1);

        pFind->setEnabled(true);
        manager().setEnabledSpecialShortcut(Qt::Key_Tab, false);
        press(View.Tree, Qt::Key_Tab);
        QCOMPARE(Found.size(), 1);
        // A key that nobody knows is remembered and does nothing.
        manager().setEnabledSpecialShortcut(Qt::Key_F35, true);
        QTest::keyClick(View.Tree, Qt::Key_F35);
        manager().setEnabledSpecialShortcut(Qt::Key_F35, false);
    }

    void editorEditsOnlyWhatItShows()
    {
        const QAction* pGroup = createAction("Group", "Ctrl+G");
        createAction("512 x 512", "");
        createAction("1024 x 1024", "");
        OrvShortcutEditor Editor;
        auto* pTree = Editor.findChild<QTreeWidget*>();
        const auto row = [pTree](const char* pText) {
            return pTree->indexOfTopLevelItem(pTree->findItems(QLatin1String(pText), Qt::MatchExactly).value(0));
        };
        QVERIFY(row("512 x 512") < row("1024 x 1024"));
        pTree->setCurrentItem(pTree->topLevelItem(row("Group")));
        auto* pFilter = Editor.findChild<QLineEdit*>();
        pFilter->setText(QStringLiteral("gro"));
        QVERIFY(button(Editor, "Clear")->isEnabled());
        pFilter->setText(QStringLiteral("512"));
        QVERIFY(!pTree->currentItem() && pTree->selectedItems().isEmpty());
        for (const char* pButton : {"Assign", "Clear", "Reset"})
            QVERIFY(!button(Editor, pButton)->isEnabled());
        QCOMPARE(pGroup->shortcut(), keys("Ctrl+G"));
    }

    void defaultsInUseAreAssignedOnlyOnRequest()
    {
        const QAction* pGroup = createAction("Group", "Ctrl+G");
        const QAction* pMerge = createAction("Merge", "Ctrl+E");
        manager().takeShortcut(QStringLiteral("/Orvi/Keys/Merge"), keys("Ctrl+G"));
        OrvShortcutEditor Editor;
        auto* pTree = Editor.findChild<QTreeWidget*>();
        pTree->setCurrentItem(pTree->findItems(QStringLiteral("Group"), Qt::MatchExactly).value(0));
        button(Editor, "Reset")->click();
        QCOMPARE(pMerge->shortcut(), keys("Ctrl+G"));
        button(Editor, "Assign")->click();
        QCOMPARE(pGroup->shortcut(), keys("Ctrl+G"));
        QVERIFY(pMerge->shortcut().isEmpty());

        const auto resetAll = [&Editor](QMessageBox::StandardButton Answer) {
            QTimer::singleShot(0, &Editor, [Answer] {
                if (auto* pBox = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
                    pBox->button(Answer)->click();
            });
            OrvApplication::appInstance().setPopupsAllowed(true);
            button(Editor, "Reset All")->click();
            OrvApplication::appInstance().setPopupsAllowed(false);
        };
        resetAll(QMessageBox::No);
        QVERIFY(pMerge->shortcut().isEmpty());
        resetAll(QMessageBox::Yes);
        QCOMPARE(pMerge->shortcut(), keys("Ctrl+E"));
    }

    void editorFiltersNamesConflictsAndBinds()
    {
        const QAction* pSave = createAction("Save", "Ctrl+S");
        const QAction* pShare = createAction("Share", "");
        OrvShortcutEditor Editor;
        auto* pTree = Editor.findChild<QTreeWidget*>();
        Editor.findChild<QLineEdit*>()->setText(QStringLiteral("share"));
        QList<QTreeWidgetItem*> Shown;
        for (int Row = 0; Row < pTree->topLevelItemCount(); ++Row) {
            if (!pTree->topLevelItem(Row)->isHidden())
                Shown.append(pTree->topLevelItem(Row));
        }
        QCOMPARE(Shown.size(), 1);
        pTree->setCurrentItem(Shown.first());

        Editor.findChild<QKeySequenceEdit*>()->setKeySequence(keys("Ctrl+S"));
        const QList<QLabel*> Labels = Editor.findChildren<QLabel*>();
        QVERIFY(std::any_of(Labels.begin(), Labels.end(),
            [](const QLabel* pLabel) { return pLabel->text().contains(QStringLiteral("\"Save\" (Keys)")); }));
        QCOMPARE(pSave->shortcut(), keys("Ctrl+S"));
        button(Editor, "Assign")->click();
        QCOMPARE(pShare->shortcut(), keys("Ctrl+S"));
        QVERIFY(pSave->shortcut().isEmpty());
        QCOMPARE(Shown.first()->text(2), QStringLiteral("Ctrl+S"));
        button(Editor, "Reset")->click();
        QVERIFY(pShare->shortcut().isEmpty());
        button(Editor, "Reset All")->click();
        QCOMPARE(pSave->shortcut(), keys("Ctrl+S"));
    }

    void combinationsReadWell()
    {
#ifndef Q_OS_MACOS
        QCOMPARE(OrvShortcutSequence::toUserFriendlyString(QStringLiteral("Ctrl+Shift")),
            QStringLiteral("Ctrl+Shift"));
        QCOMPARE(OrvShortcutSequence::toUserFriendlyString(QStringLiteral("Ctrl + Alt")),
            QStringLiteral("Ctrl+Alt"));
#endif
    }

private:
    static OrvShortcutManager& manager() { return OrvShortcutManager::instance(); }
    static QKeySequence keys(const char* pText) { return QKeySequence(QLatin1String(pText)); }

    QAction* createAction(const char* pText, const char* pKeys)
    {
        auto* pAction = new QAction(QLatin1String(pText), m_Owner.get());
        pAction->setShortcut(keys(pKeys));
        OrvActionTreeManager::instance().registerAction(QStringLiteral("/Orvi/Keys"), pAction);
        return pAction;
    }

    static void show(QWidget& Window)
    {
        Window.show();
        Window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&Window));
    }

    static void press(QWidget* pFocused, Qt::Key Key, Qt::KeyboardModifiers Modifiers = Qt::NoModifier)
    {
        pFocused->setFocus();
        QTest::keyClick(pFocused, Key, Modifiers);
    }

    static QPushButton* button(const QWidget& Dialog, const char* pText)
    {
        for (QPushButton* pButton : Dialog.findChildren<QPushButton*>()) {
            if (pButton->text() == QLatin1String(pText))
                return pButton;
        }
        return nullptr;
    }

    SettingsDirectory m_Directory;
    std::unique_ptr<QWidget> m_Owner;
};

QTEST_MAIN(TstShortcuts)
#include "TstShortcuts.moc"
