#include "Tests/Orvi/OrvTestAnswers.h"
#include "Tests/Orvi/OrvTestDocument.h"

#include "Orvi/OrvObjectCommands.h"
#include "Orvi/OrvObjectDialog.h"
#include "Orvi/OrvObjectsPalette.h"

#include "OrvCoreModules/Menus/OrvAction.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"

#include <QtTest/QtTest>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QToolButton>

#include <functional>

/// The Objects palette and menu, used as by hand, on a project of two objects whose channels have the same
/// name.
class TstObjectsPalette : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_pHead = m_Document.newProject()->geoEntity();
        m_pBody = project()->addGeoEntity(QStringLiteral("Body"));
        for (const OrvGeoEntity* pEntity : {m_pHead, m_pBody})
            OrvShaderInputUtils::create(
                pEntity->shaderNetwork(), QStringLiteral("Color"), QSize(32, 32), GL_UNSIGNED_BYTE);
        OrvUndoManager::instance().clear();
        m_pCommands = std::make_unique<OrvObjectCommands>();
        m_pPalette = std::make_unique<OrvObjectsPalette>(m_pCommands.get());
        m_pPalette->resize(240, 200);
        m_pPalette->show();
        m_pPalette->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_pPalette.get()));
        m_pList = m_pPalette->findChild<QListWidget*>();
        m_pList->setFocus();
    }
    void cleanup()
    {
        m_pPalette.reset();
        m_pCommands.reset();
        OrvProjectManager::instance().closeProject();
    }

    void theCurrentObjectIsMarkedAndChosen()
    {
        QCOMPARE(rows(), QStringList({"*Object", "Body"}));
        QTest::mouseClick(m_pList->viewport(), Qt::LeftButton, Qt::NoModifier, place(1));
        QTest::mouseDClick(m_pList->viewport(), Qt::LeftButton, Qt::NoModifier, place(1));
        QCOMPARE(project()->currentGeoEntity(), m_pBody);
        QCOMPARE(rows(), QStringList({"Object", "*Body"}));
        QCOMPARE(m_pList->currentRow(), 1);
        m_pList->setCurrentRow(0);
        QTest::keyClick(m_pList, Qt::Key_Return);
        QCOMPARE(rows(), QStringList({"*Object", "Body"}));
        QCOMPARE(OrvUndoManager::instance().stack()->count(), 0);
        // From the menu, around the end.
        m_pCommands->makePreviousCurrent();
        QCOMPARE(project()->currentGeoEntity(), m_pBody);
        m_pCommands->makeNextCurrent();
        QCOMPARE(project()->currentGeoEntity(), m_pHead);
        OrvProjectManager::instance().closeProject();
        QCOMPARE(m_pList->count(), 0);
        m_pCommands->makeNextCurrent();
        m_pCommands->removeCurrent();
        m_pCommands->renameCurrent();
    }

    void namesAreEditedInPlace()
    {
        const auto type = [this](const QString& Name) {
            m_pList->setCurrentRow(1);
            QTest::keyClick(m_pList, Qt::Key_F2);
            auto* pEditor = m_pList->findChild<QLineEdit*>();
            QVERIFY(pEditor);
            pEditor->setText(Name);
            QTest::keyClick(pEditor, Qt::Key_Return);
            QTRY_VERIFY(!m_pList->findChild<QLineEdit*>());
            QApplication::processEvents();
        };
        type(QStringLiteral("  Torso & Arms "));
        QCOMPARE(m_pBody->name(), QStringLiteral("Torso & Arms"));
        QCOMPARE(rows(), QStringList({"*Object", "Torso & Arms"}));
        type(QStringLiteral("Object")); // another one's
        type(QStringLiteral("   "));
        QCOMPARE(rows(), QStringList({"*Object", "Torso & Arms"}));
        QCOMPARE(OrvUndoManager::instance().stack()->count(), 1);
        OrvUndoManager::instance().undo();
        QCOMPARE(rows(), QStringList({"*Object", "Body"}));
        // The menu's command edits in the row of the current one.
        m_pCommands->renameCurrent();
        QCOMPARE(m_pList->currentRow(), 0);
        QVERIFY(m_pList->findChild<QLineEdit*>());
    }

    void removingAsksAndCanBeUndone()
    {
        m_pList->setCurrentRow(1);
        QCOMPARE(answering(QStringLiteral("No"), [this] { QTest::keyClick(m_pList, Qt::Key_Delete); }),
            QStringList{QStringLiteral("Remove object \"Body\" with its channel?")});
        QCOMPARE(rows().size(), 2);
        QCOMPARE(answering(QStringLiteral("Yes"), [this] { button("Remove")->click(); }).size(), 1);
        QCOMPARE(rows(), QStringList{"*Object"});
        QVERIFY(!button("Remove")->isEnabled());
        QVERIFY(!action("Remove Object")->isEnabled() && !action("Next Object")->isEnabled());
        m_pCommands->removeCurrent(); // the last one stays
        QCOMPARE(project()->geoEntities().size(), 1);
        OrvUndoManager::instance().undo();
        QCOMPARE(rows(), QStringList({"*Object", "Body"}));
        QVERIFY(action("Remove Object")->isEnabled());
    }

    void aNewObjectIsAsItWasAskedFor()
    {
        const auto add = [this](const std::function<void(QDialog*, QPushButton*)>& Fill) {
            OrvApplication::appInstance().setPopupsAllowed(true);
            QTimer::singleShot(0, this, [&] {
                auto* pDialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
                QVERIFY(pDialog);
                for (QPushButton* pButton : pDialog->findChildren<QPushButton*>()) {
                    if (pButton->text().contains(QLatin1String("Add"))) {
                        Fill(pDialog, pButton);
                        return pButton->click();
                    }
                }
                QFAIL("no button to add with");
            });
            button("Add an object")->click();
            OrvApplication::appInstance().setPopupsAllowed(false);
        };
        const auto fields = [](QDialog* pDialog) { return pDialog->findChildren<QLineEdit*>(); };
        add([&](QDialog* pDialog, const QPushButton* pAdd) {
            QLineEdit *pName = fields(pDialog)[0], *pTiles = fields(pDialog)[1];
            QCOMPARE(pName->text(), QStringLiteral("Object 2"));
            for (const char* pTaken : {"Body", " ", " Object "}) {
                pName->setText(QLatin1String(pTaken));
                QVERIFY(!pAdd->isEnabled());
            }
            pName->setText(QStringLiteral(" Hand"));
            pTiles->setText(QStringLiteral("1003-1001"));
            QVERIFY(!pAdd->isEnabled());
            pTiles->setText(QStringLiteral("1011, 1001-1003"));
            QVERIFY(pAdd->isEnabled());
        });
        QCOMPARE(rows(), QStringList({"Object", "Body", "*Hand"}));
        QCOMPARE(project()->currentGeoEntity()->udimTiles(), QVector<int>({1001, 1002, 1003, 1011}));
        QCOMPARE(m_pList->item(2)->toolTip(), QStringLiteral("Tiles 1001-1003, 1011"));

        add([&](QDialog* pDialog, const QPushButton*) {
            fields(pDialog)[0]->setText(QStringLiteral("Scales"));
            pDialog->findChildren<QComboBox*>()[0]->setCurrentIndex(1);
            QComboBox* pFaces = pDialog->findChildren<QComboBox*>()[1];
            pFaces->setCurrentIndex(pFaces->findData(QSize(256, 256)));
        });
        const OrvGeoEntity* pScales = project()->currentGeoEntity();
        QVERIFY(pScales->isPtex() && pScales->faceResolution() == QSize(256, 256));
        QCOMPARE(m_pList->item(3)->toolTip(), QStringLiteral("Ptex, faces of 256 x 256"));

        // One step each, and back where the work was.
        OrvUndoManager::instance().undo();
        QCOMPARE(rows(), QStringList({"Object", "Body", "*Hand"}));
        OrvUndoManager::instance().undo();
        QCOMPARE(rows(), QStringList({"*Object", "Body"}));
        OrvUndoManager::instance().redo();
        QCOMPARE(rows(), QStringList({"Object", "Body", "*Hand"}));
    }

    void whatMakesSenseForTilesAloneIsDisabledForFaces()
    {
        QAction Resize(QStringLiteral("256 x 256"));
        OrvActionTreeManager& Actions = OrvActionTreeManager::instance();
        Actions.addToActionSet(QStringLiteral("PatchOnly"), &Resize);
        QVERIFY(Resize.isEnabled());
        m_pBody->setPtex(true);
        project()->setCurrentGeoEntity(m_pBody);
        QVERIFY(!Resize.isEnabled());
        project()->setCurrentGeoEntity(m_pHead);
        QVERIFY(Resize.isEnabled());
        OrvProjectManager::instance().closeProject();
        QVERIFY(!Resize.isEnabled());
    }

    void listsOfTilesAreRead_data()
    {
        QTest::addColumn<QString>("Text");
        QTest::addColumn<QVector<int>>("Tiles");
        const auto row = [](const char* pText, const QVector<int>& Tiles) {
            QTest::newRow(pText) << QString::fromLatin1(pText) << Tiles;
        };
        row("1001", {1001});
        row(" 1012 ,1001 - 1002", {1001, 1002, 1012});
        row("1001, 1001-1001", {1001});
        for (const char* pText : {"", ",", "1001,", "1000", "10000", "1003-1001", "1-2-3", "one", "-1001",
                 "1001-9999", "1001 1002"})
            row(pText, {});
    }
    void listsOfTilesAreRead()
    {
        QFETCH(QString, Text);
        QFETCH(QVector<int>, Tiles);
        QCOMPARE(OrvObjectDialog::tilesOf(Text), Tiles);
    }

    void theContextMenuIsForTheRow()
    {
        QStringList Entries;
        QTimer::singleShot(50, this, [&] {
            auto* pMenu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            QVERIFY(pMenu);
            for (QAction* pAction : pMenu->actions()) {
                if (!pAction->isSeparator())
                    Entries.append(pAction->text() + (pAction->isEnabled() ? "" : " (off)"));
            }
            pMenu->actions().first()->trigger();
            pMenu->close();
        });
        m_pList->setCurrentRow(1);
        Q_EMIT m_pList->customContextMenuRequested(place(1));
        QCOMPARE(Entries, QStringList({"Make Current", "Rename", "Remove…", "Add Object…"}));
        QCOMPARE(rows(), QStringList({"Object", "*Body"}));
    }

    void allIsSelectedInTheListThatHasTheKeyboard()
    {
        QWidget Window;
        QListWidget List(&Window);
        List.setSelectionMode(QAbstractItemView::ExtendedSelection);
        List.addItems({QStringLiteral("One"), QStringLiteral("Two")});
        QPushButton Beside(&Window);
        QAction OfWindow(&Window);
        OfWindow.setShortcut(QKeySequence::SelectAll);
        Window.addAction(&OfWindow);
        const QSignalSpy Selections(&OfWindow, &QAction::triggered);
        Window.show();
        Window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&Window));
        List.setFocus();
        QTest::keyClick(&List, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(List.selectedItems().size(), 2);
        QCOMPARE(Selections.size(), 0);
        Beside.setFocus();
        QTest::keyClick(&Beside, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(Selections.size(), 1);
    }

private:
    static OrvProject* project() { return OrvProjectManager::instance().currentProject(); }
    QPoint place(int Row) const { return m_pList->visualItemRect(m_pList->item(Row)).center(); }
    /// Names in order, the current one starred.
    QStringList rows() const
    {
        QStringList Names;
        for (int Row = 0; Row < m_pList->count(); ++Row) {
            const QListWidgetItem* pItem = m_pList->item(Row);
            Names.append((pItem->font().bold() ? "*" : "") + pItem->text());
        }
        return Names;
    }
    QToolButton* button(const char* pToolTip) const
    {
        for (QToolButton* pButton : m_pPalette->findChildren<QToolButton*>()) {
            if (pButton->toolTip() == QLatin1String(pToolTip))
                return pButton;
        }
        return nullptr;
    }
    static QAction* action(const char* pName)
    {
        return OrvActionTreeManager::instance().findAction(
            QStringLiteral("/Orvi/Objects/") + QLatin1String(pName));
    }

    OrvTestDocument m_Document;
    std::unique_ptr<OrvObjectCommands> m_pCommands;
    std::unique_ptr<OrvObjectsPalette> m_pPalette;
    QListWidget* m_pList = nullptr;
    OrvGeoEntity *m_pHead = nullptr, *m_pBody = nullptr;
};

int main(int ArgumentCount, char** pArguments)
{
    OrvApplication Application(ArgumentCount, pArguments);
    TstObjectsPalette Test;
    return QTest::qExec(&Test, ArgumentCount, pArguments);
}

#include "TstObjectsPalette.moc"
