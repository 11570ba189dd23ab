#include "LayersPaletteFixture.h"
#include "SettingsDirectory.h"
#include "ShadersFixture.h"

#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Object/OrvSettings.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Menus/OrvLateBindAction.h"
#include "OrvCoreModules/Menus/OrvMenuManager.h"
#include "OrvCoreModules/Menus/OrvPanelToolBars.h"
#include "OrvCoreModules/Menus/OrvShortcutManager.h"
#include "OrvCoreModules/Window/OrvIcon.h"
#include "OrvCoreModules/Window/OrvStatusManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragPayload.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerTreeView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewModel.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvPanelToolBar.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderListView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderMaterialsView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderTagActions.h"

#include <QtCore/QMimeData>
#include <QtGui/QHelpEvent>
#include <QtTest/QtTest>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QToolTip>
#include <QtWidgets/QUndoStack>

#include <memory>

using namespace ShadersFixture;

namespace {

const QStringList SystemRows{QStringLiteral("Current Channel"), QStringLiteral("Current Layer & Below"),
    QStringLiteral("Current Layer"), QStringLiteral("Current Paint Target"),
    QStringLiteral("Current Material")};

QStringList withSystemRows(const QStringList& Names)
{
    return SystemRows + Names;
}

bool looksLike(const QIcon& Icon, const char* pFile)
{
    const QImage Wanted = OrvIcon::createIconFromFilename(QString::fromLatin1(pFile)).pixmap(16).toImage();
    return !Wanted.isNull() && Icon.pixmap(16).toImage() == Wanted;
}

} // namespace

/// The list of shaders on a real document, driven by mouse and keys: its rows, what may be dropped on it, and
/// how it and the host keep in step about what is current.
class TstShadersPalette : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_Directory.isValid());
        OrvSetDebugSink([this](const OrvDebugMessage& Message) {
            if (Message.File == QLatin1String("OrvShaderView")
                || Message.File == QLatin1String("OrvShaderModel"))
                m_Messages.append(Message.Text);
            if (Message.File == QLatin1String("OrvLayerView"))
                m_LayerViewMessages.append(Message.Text);
        });
        QVERIFY(LayersFixture::showLayersPalette(QSize(900, 700)));
        m_View = OrvLayerViewContextManager::instance().shaderView();
        m_List = m_View->listView();
        OrvPaletteManager::find(QStringLiteral("Shaders"))->open();
        OrvPanelToolBars::instance().publish();
    }
    void cleanupTestCase() { OrvSetDebugSink({}); }

    void init()
    {
        m_pProject = std::make_unique<OrvTestProject>();
        m_View->activateWindow();
        m_List->setFocus();
        QTRY_COMPARE(rowTexts(m_View), SystemRows);
        m_Messages.clear();
    }
    void cleanup() { m_pProject.reset(); }

    void rowsSayWhatTheirShadersAre()
    {
        OrvLayerShader* pUnlit = addShader(QStringLiteral("Paper"));
        addShader(QStringLiteral("Wall"), QStringLiteral("Shader/LayeredMaterial"));
        QTRY_COMPARE(rowTexts(m_View), withSystemRows({"Paper", "Wall"}));
        const OrvShaderModel* pModel = m_View->model();
        QCOMPARE(pModel->nodeFromIndex(pModel->index(5, 0)), pUnlit->node());
        const char* const Icons[] = {"ViewCurrentChannel.16x16.png", "ViewCurrentLayerAndBelow1.16x16.png",
            "ViewCurrentLayer1.16x16.png", "ViewCurrentPaint.16x16.png", "ViewCurrentMaterial.16x16.svg",
            "lighting_flat.16x16.png", "Materials.16x16.png"};
        for (int Row = 0; Row < pModel->rowCount(); ++Row) {
            const QStandardItem* pItem = pModel->item(Row);
            QVERIFY2(looksLike(pItem->icon(), Icons[Row]), Icons[Row]);
            QCOMPARE(pItem->isEditable(), Row >= SystemRows.size());
            QCOMPARE(pItem->data(OrvShaderModel::PositionRole).toInt(), Row);
        }
        // What a shader follows tells more than what it takes.
        OrvSnBaseNode* pWall = pModel->nodeFromIndex(pModel->index(6, 0));
        pWall->addTag(OrvLayerShaderManager::nodeTagCurrentLayerShader(), false);
        QVERIFY(looksLike(pModel->item(6)->icon(), "ViewCurrentLayer1.16x16.png"));
        pWall->addTag(OrvLayerShaderManager::nodeTagCurrentMaterialShader(), false);
        QTRY_COMPARE(rowTexts(m_View), withSystemRows({"Paper"}));

        QVERIFY(!m_View->addShaderNode(nullptr));
        QCOMPARE(m_Messages.takeLast(), QStringLiteral("Node is NULL"));
        m_View->onItemChanged(nullptr);
        QCOMPARE(m_Messages.takeLast(), QStringLiteral("Item is NULL"));
    }

    void closingAProjectMissesNothing()
    {
        addShader(QStringLiteral("Paper"));
        QTRY_COMPARE(userRows(m_View), QStringList({"Paper"}));
        m_LayerViewMessages.clear();
        m_pProject.reset();
        QTRY_COMPARE(m_View->model()->rowCount(), 0);
        QTest::qWait(300); // the refreshes of all palettes
        QCOMPARE(m_LayerViewMessages, QStringList());
        QCOMPARE(m_Messages, QStringList());
    }

    void rowsKeepTheOrderInWhichTheyCame()
    {
        OrvLayerShader* pA = addShader(QStringLiteral("A"));
        OrvLayerShader* pB = addShader(QStringLiteral("B"));
        addShader(QStringLiteral("C"));
        QTRY_COMPARE(userRows(m_View), QStringList({"A", "B", "C"}));
        OrvLayerShaderUtils::destroy(pA, false);
        OrvLayerShaderUtils::destroy(pB, false);
        addShader(QStringLiteral("0"));
        QTRY_COMPARE(userRows(m_View), QStringList({"C", "0"}));
        OrvTestProject::undo();
        OrvTestProject::undo();
        OrvTestProject::undo();
        QTRY_COMPARE(userRows(m_View), QStringList({"C", "B"}));
        addShader(QStringLiteral("1"));
        QTRY_COMPARE(userRows(m_View), QStringList({"C", "B", "1"}));
    }

    void namesAreEditedInPlace()
    {
        OrvLayerShader* pShader = addShader(QStringLiteral("Paper"));
        QTRY_COMPARE(userRows(m_View), QStringList({"Paper"}));
        QUndoStack* pHistory = OrvUndoManager::instance().stack();
        const int Steps = pHistory->count();
        editName(5, QStringLiteral("Card"));
        QCOMPARE(pShader->name(), QStringLiteral("Card"));
        QCOMPARE(pHistory->count(), Steps + 1);
        OrvTestProject::undo();
        QTRY_COMPARE(userRows(m_View), QStringList({"Paper"}));
        editName(5, QStringLiteral("  "));
        QCOMPARE(pShader->name(), QStringLiteral("Paper"));
        QTRY_COMPARE(userRows(m_View), QStringList({"Paper"}));
        editName(0, QStringLiteral("Mine"));
        QCOMPARE(rowTexts(m_View).first(), SystemRows.first());
    }

    /// Whatever the list learns from the host, it does not tell the host again.
    void refreshDoesNotEchoNames()
    {
        OrvLayerShader* pShader = addShader(QStringLiteral("Paper"));
        QTRY_COMPARE(userRows(m_View), QStringList({"Paper"}));
        pShader->node()->setName(QStringLiteral("Card"));
        QCOMPARE(userRows(m_View), QStringList({"Paper"}));
        const int Steps = OrvUndoManager::instance().stack()->count();
        QSignalSpy Renamed(pShader->node(), &OrvSnBaseNode::nameChanged);
        pShader->node()->addTag(QStringLiteral("Any"), false);
        m_View->refresh();
        QCOMPARE(userRows(m_View), QStringList({"Card"}));
        QCOMPARE(pShader->name(), QStringLiteral("Card"));
        QVERIFY(Renamed.isEmpty());
        QCOMPARE(OrvUndoManager::instance().stack()->count(), Steps);
        QCOMPARE(m_List->currentIndex(), m_View->model()->index(5, 0));
    }

    void droppedShaderLayersBecomeShaders()
    {
        OrvShaderInput* pMaterial = addMaterialChannel();
        OrvLayer* pLayer = addShaderLayer(pMaterial, QStringLiteral("Varnish"));
        OrvLayer* pPaint = m_pProject->paint(QStringLiteral("Paint"));
        QVERIFY(pLayer && pPaint);
        OrvSnBaseNode* pShaderNode = pLayer->shaderNode();
        m_View->refresh();
        QCOMPARE(userRows(m_View), QStringList());
        QMimeData Mime;
        carry(Mime, {pLayer->blendNode()});
        QTest::keyPress(m_List, Qt::Key_Alt, Qt::AltModifier);
        drop(Mime);
        QTest::keyRelease(m_List, Qt::Key_Alt);
        QTest::keyPress(m_List, Qt::Key_Shift, Qt::ShiftModifier);
        drop(Mime);
        QTest::keyRelease(m_List, Qt::Key_Shift);
        QCOMPARE(pMaterial->layerList().size(), 1);

        const QByteArray Before = OrvTestProject::document();
        drop(Mime);
        QCOMPARE(userRows(m_View), QStringList({pShaderNode->name()}));
        QVERIFY(pMaterial->layerList().isEmpty());
        m_View->refresh();
        QCOMPARE(userRows(m_View), QStringList({pShaderNode->name()}));
        OrvTestProject::undo();
        QCOMPARE(OrvTestProject::document(), Before);
        QTRY_COMPARE(userRows(m_View), QStringList());

        // A layer of another kind, or one that shares its shader, ends the drop.
        for (const bool BehindShared : {false, true}) {
            OrvLayer* pFirst = pPaint;
            if (BehindShared)
                pFirst = pMaterial->createShaderLayer(
                    addShader(QStringLiteral("Listed")), OrvLayerCreateFlags());
            QVERIFY(pFirst);
            carry(Mime, {pFirst->blendNode(), pMaterial->layerList().last()->blendNode()});
            const int LayerCount = pMaterial->layerList().size();
            drop(Mime);
            QCOMPARE(pMaterial->layerList().size(), LayerCount);
        }
        const QByteArray Shaders = OrvTestProject::document();
        carry(Mime, {m_View->model()->nodeFromIndex(m_View->model()->index(0, 0))});
        drop(Mime);
        QCOMPARE(OrvTestProject::document(), Shaders);
        QVERIFY(m_Messages.isEmpty());
    }

    /// They come as last rows, in the order in which they were carried.
    void aDropOfSeveralLayersIsOneStep()
    {
        addShader(QStringLiteral("Paper"));
        OrvShaderInput* pMaterial = addMaterialChannel();
        OrvLayer* pVarnish = addShaderLayer(pMaterial, QStringLiteral("Varnish"));
        OrvLayer* pDirt = addShaderLayer(pMaterial, QStringLiteral("Dirt"));
        pVarnish->shaderNode()->setName(QStringLiteral("Gloss"));
        pDirt->shaderNode()->setName(QStringLiteral("Earth"));
        m_View->refresh();
        QUndoStack* pHistory = OrvUndoManager::instance().stack();
        const int Steps = pHistory->count();
        const QByteArray Before = OrvTestProject::document();
        QMimeData Mime;
        carry(Mime, {pVarnish->blendNode(), pDirt->blendNode()});
        drop(Mime);
        QCOMPARE(userRows(m_View), QStringList({"Paper", "Gloss", "Earth"}));
        QVERIFY(pMaterial->layerList().isEmpty());
        QCOMPARE(pHistory->count(), Steps + 1);
        OrvTestProject::undo();
        QCOMPARE(OrvTestProject::document(), Before);
        QTRY_COMPARE(userRows(m_View), QStringList({"Paper"}));
    }

    void onlyShadersMayBeDraggedOver()
    {
        OrvLayer* pShaderLayer = addShaderLayer(addMaterialChannel(), QStringLiteral("Varnish"));
        OrvLayer* pPaint = m_pProject->paint(QStringLiteral("Paint"));
        OrvSnBaseNode* pShader = addShader(QStringLiteral("Paper"))->node();
        m_View->refresh();
        QVERIFY(isAccepted({pShader}));
        QVERIFY(isAccepted({pShader, pShaderLayer->blendNode()}));
        QVERIFY(!isAccepted({pPaint->blendNode()}));
        QVERIFY(!isAccepted({pShader, pPaint->blendNode()}));
        QVERIFY(!isAccepted({m_pProject->channel()->node()}));
    }

    void tagActionsChooseWhatIsShown()
    {
        const QList<QAction*> Actions = m_View->tagActions()->actions();
        const char* const Expected[][4]
            = {{"Channel", "Current Channel", "View the current channel", "ViewCurrentChannel.png"},
                {"LayerAndBelow", "Current Layer && Below", "View only the current layer & below",
                    "ViewCurrentLayerAndBelow1.png"},
                {"Layer", "Current Layer", "View the current layer", "ViewCurrentLayer1.png"},
                {"Paint", "Current Paint Target", "View the current paint target", "ViewCurrentPaint.png"},
                {"Material", "Current Material", "View the current material", "ViewCurrentMaterial.svg"},
                {"UserSelectedShader", "User Shader", "View the user shader", "ViewUserShader.png"}};
        addShader(QStringLiteral("Paper"));
        for (int Index = 0; Index < Actions.size(); ++Index) {
            QAction* pAction = Actions.at(Index);
            QCOMPARE(pAction->property("shaderTag").toString(), QString::fromLatin1(Expected[Index][0]));
            QCOMPARE(pAction->text(), QString::fromLatin1(Expected[Index][1]));
            QCOMPARE(pAction->toolTip(), QString::fromLatin1(Expected[Index][2]));
            QVERIFY(looksLike(pAction->icon(), Expected[Index][3]));
            QCOMPARE(OrvActionTreeManager::instance().findAction(
                         QStringLiteral("/Orvi/Channels/Views/") + pAction->text()),
                pAction);
            QVERIFY(pAction->isEnabled());
            // Chosen twice, it stays.
            for (int Times = 0; Times < 2; ++Times) {
                pAction->trigger();
                QVERIFY(shaders().currentShaderNode()->hasTag(QString::fromLatin1(Expected[Index][0])));
                QCOMPARE(checkedTags(), QStringList{QString::fromLatin1(Expected[Index][0])});
            }
        }
        QCOMPARE(shaders().currentShaderNode()->name(), QStringLiteral("Paper"));
        QVERIFY(m_Messages.isEmpty());
    }

    void tagActionsSayWhenThereIsNothingToShow()
    {
        QAction* pUser = tagAction("UserSelectedShader");
        QVERIFY(!pUser->isEnabled());
        QVERIFY(tagAction("Material")->isEnabled());
        const OrvSnBaseNode* pCurrent = shaders().currentShaderNode();
        m_View->lastSelectedUserShader();
        QCOMPARE(m_Messages.takeLast(), QStringLiteral("Cannot get Current Channel Shader"));
        OrvStatusManager::instance().showMessage(QString());
        tagAction("Material")->trigger();
        QCOMPARE(m_Messages.takeLast(), QStringLiteral("Cannot get Current Material Shader"));
        QVERIFY(OrvStatusManager::instance().text().contains(QStringLiteral("shader of your own")));
        QCOMPARE(shaders().currentShaderNode(), pCurrent);
        QCOMPARE(checkedTags(), QStringList{"Channel"});
        addShader(QStringLiteral("Paper"));
        QVERIFY(pUser->isEnabled() && pUser->isChecked());
        m_View->currentLayer();
        QVERIFY(pUser->isEnabled() && !pUser->isChecked());
        OrvTestProject::undo();
        OrvTestProject::undo();
        QVERIFY(!pUser->isEnabled());

        m_pProject.reset();
        for (const QAction* pAction : m_View->tagActions()->actions())
            QVERIFY(!pAction->isEnabled() && !pAction->isChecked());
    }

    void everythingUndoneAndRedoneIsShownAgain()
    {
        const QPointer<OrvSnBaseNode> pNode
            = addShader(QStringLiteral("Wall"), QStringLiteral("Shader/LayeredMaterial"))->node();
        QTRY_COMPARE(userRows(m_View), QStringList({"Wall"}));
        editName(5, QStringLiteral("Brick"));
        QUndoStack* pHistory = OrvUndoManager::instance().stack();
        while (pHistory->canUndo())
            OrvTestProject::undo();
        QTRY_COMPARE(userRows(m_View), QStringList());
        QVERIFY(!tagAction("UserSelectedShader")->isEnabled());
        while (pHistory->canRedo())
            OrvTestProject::redo();
        QTRY_COMPARE(userRows(m_View), QStringList({"Brick"}));
        QCOMPARE(shaders().currentShaderNode(), pNode.data());
        QVERIFY(tagAction("UserSelectedShader")->isEnabled());
        QCOMPARE(checkedTags(), QStringList{"UserSelectedShader"});
    }

    void tagActionsAreWithinReach()
    {
        QStringList InMenu, OnToolBar;
        for (const QAction* pAction :
            OrvMenuManager::instance().menuActions(QStringLiteral("MainWindow/&View")))
            InMenu.append(pAction->text());
        for (const QAction* pAction : m_View->toolBar()->actions())
            OnToolBar.append(pAction->text());
        const OrvShortcutManager& Shortcuts = OrvShortcutManager::instance();
        for (const QAction* pAction : m_View->tagActions()->actions()) {
            QVERIFY2(InMenu.contains(pAction->text()), qPrintable(pAction->text()));
            QVERIFY2(OnToolBar.contains(pAction->text()), qPrintable(pAction->text()));
            const QString Key = OrvActionTreeManager::instance().actionKey(pAction);
            QVERIFY2(!Shortcuts.shortcut(Key).isEmpty(), qPrintable(Key));
            QVERIFY2(Shortcuts.conflicts(Key, Shortcuts.shortcut(Key)).isEmpty(), qPrintable(Key));
        }
        // On the tool bar they stand for the actions, and are checked with them.
        addShader(QStringLiteral("Paper"));
        for (QAction* pAction : m_View->toolBar()->actions()) {
            if (pAction->text() != QLatin1String("Current Layer"))
                continue;
            QTest::mouseClick(m_View->toolBar()->widgetForAction(pAction), Qt::LeftButton);
            QVERIFY(pAction->isChecked());
        }
        QCOMPARE(checkedTags(), QStringList{"Layer"});
    }

    void listAndHostAgreeOnTheCurrentShader()
    {
        OrvLayerShader* pPaper = addShader(QStringLiteral("Paper"));
        QTRY_COMPARE(userRows(m_View), QStringList({"Paper"}));
        QCOMPARE(m_List->currentIndex().row(), 5);
        QSignalSpy Requested(m_View, &OrvShaderView::refreshRequestedShaderProperties);
        clickRow(2);
        QCOMPARE(shaders().currentShaderNode(), shaders().getCurrentCurrentLayerShader());
        QVERIFY(!Requested.isEmpty());
        QCOMPARE(checkedTags(), QStringList{"Layer"});
        QTest::keyClick(m_List, Qt::Key_End);
        QCOMPARE(shaders().currentLayerShader(), pPaper);
        shaders().setCurrentShader(shaders().getCurrentChannelShader());
        QCOMPARE(m_List->currentIndex().row(), 0);
        shaders().setCurrentShader(nullptr);
        QVERIFY(!m_List->currentIndex().isValid());
        QCOMPARE(checkedTags(), QStringList());
        m_View->refresh();
        QVERIFY(!m_List->currentIndex().isValid());
        QVERIFY(!shaders().currentLayerShader());

        Q_EMIT OrvShaderNetworkManager::instance().nodeInputOrderChanged(
            OrvTestProject::network(), pPaper->node());
        Requested.clear();
        shaders().setCurrentShader(pPaper->node());
        Requested.clear();
        pPaper->setInputShaderInput(QStringLiteral("Color"), m_pProject->channel());
        QVERIFY(!Requested.isEmpty());
        Requested.clear();
        pPaper->setInputEnabled(QStringLiteral("Color"), false);
        QVERIFY(!Requested.isEmpty());
    }

    /// A press may be the start of a drag to one of the current shader's material tabs.
    void aRowBecomesCurrentWhenItIsReleased()
    {
        OrvLayerShader* pPaper = addShader(QStringLiteral("Paper"));
        QTRY_COMPARE(m_List->currentIndex().row(), 5);
        QApplication::processEvents();
        const QModelIndex Index = m_View->model()->index(2, 0);
        m_List->scrollTo(Index);
        const QPoint Place = m_List->visualRect(Index).center();
        QTest::mousePress(m_List->viewport(), Qt::LeftButton, Qt::NoModifier, Place);
        QCOMPARE(m_List->selectionModel()->selectedIndexes(), QModelIndexList{Index});
        QCOMPARE(shaders().currentLayerShader(), pPaper);
        QTest::mouseRelease(m_List->viewport(), Qt::LeftButton, Qt::NoModifier, Place);
        QCOMPARE(shaders().currentShaderNode(), shaders().getCurrentCurrentLayerShader());
        // The right button opens the menu of what it points at.
        const QModelIndex Other = m_View->model()->index(3, 0);
        m_List->scrollTo(Other);
        QTest::mousePress(
            m_List->viewport(), Qt::RightButton, Qt::NoModifier, m_List->visualRect(Other).center());
        QCOMPARE(shaders().currentShaderNode(), shaders().getCurrentCurrentComponentShader());
    }

    void removalMakesANeighbourCurrent()
    {
        OrvLayerShader* pA = addShader(QStringLiteral("A"));
        OrvLayerShader* pB = addShader(QStringLiteral("B"));
        OrvLayerShader* pC = addShader(QStringLiteral("C"));
        QTRY_COMPARE(userRows(m_View), QStringList({"A", "B", "C"}));
        shaders().setCurrentShader(pB->node());
        QApplication::processEvents();
        QTest::keyClick(m_List, Qt::Key_Delete);
        QCOMPARE(shaders().currentLayerShader(), pC);
        QTRY_COMPARE(userRows(m_View), QStringList({"A", "C"}));
        QCOMPARE(m_List->currentIndex(), m_View->model()->index(6, 0));
        QTest::keyClick(m_List, Qt::Key_Delete);
        QCOMPARE(shaders().currentLayerShader(), pA);
        QTRY_COMPARE(userRows(m_View), QStringList({"A"}));

        // Undo has its own idea of what was current.
        OrvTestProject::undo();
        QCOMPARE(shaders().currentShaderNode()->name(), QStringLiteral("C"));
        OrvTestProject::redo();
        QCOMPARE(shaders().currentLayerShader(), pA);
        QCOMPARE(shaders().selectedUserShaderNode(), pA->node());
        // One that is not current goes without a stir.
        shaders().setCurrentShader(shaders().getCurrentCurrentLayerShader());
        QApplication::processEvents();
        OrvLayerShaderUtils::destroy(pA, false);
        QCOMPARE(shaders().currentShaderNode(), shaders().getCurrentCurrentLayerShader());
        QTRY_COMPARE(rowTexts(m_View), SystemRows);
        // System shaders stay.
        QTest::keyClick(m_List, Qt::Key_Delete);
        QTRY_COMPARE(rowTexts(m_View), SystemRows);
    }

    void undoOfANewShaderGoesBackToTheOneBefore()
    {
        addShader(QStringLiteral("A"));
        shaders().setCurrentShader(shaders().getCurrentCurrentLayerShader());
        addShader(QStringLiteral("B"));
        QTRY_COMPARE(userRows(m_View), QStringList({"A", "B"}));
        OrvTestProject::undo();
        OrvTestProject::undo();
        QTRY_COMPARE(userRows(m_View), QStringList({"A"}));
        QCOMPARE(shaders().currentShaderNode(), shaders().getCurrentCurrentLayerShader());
    }

    void newSystemShadersTakeThePlaceOfTheOldOnes()
    {
        OrvLayerShader* pPaper = addShader(QStringLiteral("Paper"));
        shaders().setCurrentShader(shaders().getCurrentCurrentLayerShader());
        m_View->refresh();
        shaders().recreateSystemShaders();
        QCOMPARE(shaders().currentShaderNode(), shaders().getCurrentCurrentLayerShader());
        QCOMPARE(shaders().selectedUserShaderNode(), pPaper->node());
        m_View->refresh();
        QStringList Rows = rowTexts(m_View);
        Rows.sort();
        QStringList Expected = withSystemRows({"Paper"});
        Expected.sort();
        QCOMPARE(Rows, Expected);
        QCOMPARE(m_View->model()->nodeFromIndex(m_List->currentIndex()), shaders().currentShaderNode());
    }

    void updatingShadersLeavesTheLayersInSight()
    {
        const OrvLayerView* pLayers = OrvLayerViewContextManager::instance().mainLayerView();
        m_pProject->paint(QStringLiteral("Paint"));
        OrvShaderInputManager::instance().makeShaderInputCurrent(m_pProject->channel(), true);
        QTRY_COMPARE(pLayers->model()->rowCount(), 1);
        OrvShaderNetworkManager::instance().upgradeAllNodes();
        QTRY_COMPARE(pLayers->layerStack(), m_pProject->channel());
        QTRY_COMPARE(pLayers->model()->rowCount(), 1);
    }

    /// Each object has its own shaders, and its own current one.
    void rowsFollowTheCurrentObject()
    {
        addShader(QStringLiteral("Paper"));
        QTRY_COMPARE(userRows(m_View), QStringList({"Paper"}));
        OrvProject* pProject = OrvProjectManager::instance().currentProject();
        OrvGeoEntity* pHead = pProject->currentGeoEntity();
        OrvGeoEntity* pHand = pProject->addGeoEntity(QStringLiteral("Hand"));
        pProject->setCurrentGeoEntity(pHand);
        QTRY_COMPARE(rowTexts(m_View), SystemRows);
        QCOMPARE(m_View->model()->nodeFromIndex(m_List->currentIndex()), shaders().getCurrentChannelShader());
        for (int Row = 0; Row < SystemRows.size(); ++Row)
            QCOMPARE(m_View->model()->nodeFromIndex(m_View->model()->index(Row, 0))->network(),
                pHand->shaderNetwork());
        QCOMPARE(checkedTags(), QStringList{"Channel"});
        QVERIFY(!tagAction("UserSelectedShader")->isEnabled());
        pProject->setCurrentGeoEntity(pHead);
        QTRY_COMPARE(userRows(m_View), QStringList({"Paper"}));
        QCOMPARE(m_List->currentIndex().row(), 5);
        QVERIFY(tagAction("UserSelectedShader")->isChecked());
    }

    /// The Layers palette has no stack before and after.
    void theEmptyLayersPaletteTellsWhereMaterialsAre()
    {
        OrvShaderInputManager& Channels = OrvShaderInputManager::instance();
        const OrvLayerView* pLayers = OrvLayerViewContextManager::instance().mainLayerView();
        const auto told = [pLayers] { return pLayers->treeView()->emptyText(); };
        Channels.destroy(m_pProject->channel(), OrvShaderInputManager::SharersBecomeGroups);
        QTRY_VERIFY(!pLayers->layerStack() && !told().isEmpty());
        QTest::qWait(300); // the last refresh
        OrvShaderInput* pMaterial = addMaterialChannel();
        Channels.makeShaderInputCurrent(pMaterial, true);
        QVERIFY(!pLayers->layerStack());
        QVERIFY2(told().contains(pMaterial->name()), qPrintable(told()));
        pMaterial->node()->setName(QStringLiteral("Leather"));
        QVERIFY2(told().contains(QStringLiteral("Leather")), qPrintable(told()));
    }

    /// In a narrow palette the end of a long name is left out.
    void rowsFitTheList()
    {
        const QString Words = QStringLiteral(" many words, more than any palette has room for,").repeated(5);
        addShader(QStringLiteral("A shader with a name of") + Words);
        addShader(QStringLiteral("Paper"));
        addShader(QStringLiteral("Another shader with a name of") + Words);
        QTRY_COMPARE(userRows(m_View).size(), 3);
        QApplication::processEvents();
        QCOMPARE(m_List->horizontalScrollBar()->maximum(), 0);
        for (int Row = 5; Row < 8; ++Row)
            QCOMPARE(m_List->visualRect(m_View->model()->index(Row, 0)).width(), m_List->viewport()->width());

        for (int Row : {6, 7}) {
            m_List->scrollTo(m_View->model()->index(Row, 0));
            const QPoint Place = m_List->visualRect(m_View->model()->index(Row, 0)).center();
            QHelpEvent Help(QEvent::ToolTip, Place, m_List->viewport()->mapToGlobal(Place));
            QApplication::sendEvent(m_List->viewport(), &Help);
            QCOMPARE(QToolTip::text(), Row == 7 ? m_View->model()->item(Row)->text() : QString());
        }
        QToolTip::hideText();
    }

    void withoutAProjectNothingIsListed()
    {
        addShader(QStringLiteral("Paper"));
        m_View->refresh();
        m_pProject.reset();
        QTRY_COMPARE(m_View->model()->rowCount(), 0);
        m_View->refresh();
        m_View->currentChannel();
        QCOMPARE(m_Messages.takeLast(), QStringLiteral("Cannot get a handle to the current shader network"));
        m_pProject = std::make_unique<OrvTestProject>();
        QTRY_COMPARE(rowTexts(m_View), SystemRows);
        QCOMPARE(m_List->currentIndex().row(), 0);
    }

    void toolBarHoldsTheCommands()
    {
        QStringList Texts;
        for (const QAction* pAction : m_View->toolBar()->actions())
            Texts.append(pAction->text());
        QCOMPARE(Texts.mid(1, 3), QStringList({"Add New Shader", "Duplicate Shader", "Remove Shader"}));
        auto* pAdd = qobject_cast<QToolButton*>(
            m_View->toolBar()->widgetForAction(m_View->toolBar()->actions().first()));
        QVERIFY(pAdd && pAdd->isEnabled());
        QCOMPARE(pAdd->text(), QStringLiteral("Add New Shader"));
        chooseFromPopup(QStringLiteral("Unlit"));
        QTest::mouseClick(pAdd, Qt::LeftButton);
        QTRY_COMPARE(userRows(m_View), QStringList({"Unlit"}));
        QCOMPARE(shaders().currentShaderNode()->name(), QStringLiteral("Unlit"));
        m_pProject.reset();
        QVERIFY(!pAdd->isEnabled());
    }

    void splitterIsRemembered()
    {
        QByteArray Left;
        for (const bool Again : {false, true}) {
            OrvShaderView Other(nullptr);
            QSplitter* pSplitter = Other.findChild<QSplitter*>();
            if (Again) {
                QCOMPARE(pSplitter->saveState(), Left);
                break;
            }
            Other.resize(300, 600);
            Other.show();
            pSplitter->setSizes({120, 480});
            Left = pSplitter->saveState();
        }
    }

    /// Palettes are still there when the program ends.
    void splitterIsRememberedWhenTheProgramEnds()
    {
        const QString Key = QStringLiteral("ShaderView/SplitterSize");
        OrvSettings().remove(Key);
        QSplitter* pSplitter = m_View->findChild<QSplitter*>();
        pSplitter->setSizes({pSplitter->height() / 3, pSplitter->height() * 2 / 3});
        QMetaObject::invokeMethod(qApp, "aboutToQuit", Qt::DirectConnection);
        QCOMPARE(OrvSettings().value(Key).toByteArray(), pSplitter->saveState());
    }

private:
    QAction* tagAction(const char* pTag) const
    {
        for (QAction* pAction : m_View->tagActions()->actions()) {
            if (pAction->property("shaderTag").toString() == QLatin1String(pTag))
                return pAction;
        }
        return nullptr;
    }
    QStringList checkedTags() const
    {
        QStringList Tags;
        for (const QAction* pAction : m_View->tagActions()->actions()) {
            if (pAction->isChecked())
                Tags.append(pAction->property("shaderTag").toString());
        }
        return Tags;
    }
    void clickRow(int Row) const
    {
        QApplication::processEvents();
        const QRect Place = m_List->visualRect(m_View->model()->index(Row, 0));
        QTest::mouseClick(m_List->viewport(), Qt::LeftButton, Qt::NoModifier, Place.center());
    }
    /// Nothing happens on a row that cannot be edited.
    void editName(int Row, const QString& Text) const
    {
        clickRow(Row);
        QTest::keyClick(m_List, Qt::Key_F2);
        QLineEdit* pEdit = m_List->viewport()->findChild<QLineEdit*>();
        if (!pEdit)
            return;
        pEdit->selectAll();
        QTest::keyClicks(pEdit, Text);
        QTest::keyClick(pEdit, Qt::Key_Return);
        QApplication::processEvents();
    }
    static void carry(QMimeData& Mime, const QList<OrvSnBaseNode*>& Nodes)
    {
        QStringList Uuids;
        for (const OrvSnBaseNode* pNode : Nodes)
            Uuids.append(pNode->uuidString());
        OrvLayerDragPayload::write(Mime, Uuids);
    }
    void drop(const QMimeData& Mime) const
    {
        QVERIFY(!m_View->model()->dropMimeData(&Mime, Qt::CopyAction, 0, 0, {}));
    }
    bool isAccepted(const QList<OrvSnBaseNode*>& Nodes) const
    {
        QMimeData Mime;
        carry(Mime, Nodes);
        const QPoint Place = m_List->viewport()->rect().center();
        QDragEnterEvent Enter(
            Place, m_View->model()->supportedDropActions(), &Mime, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_List->viewport(), &Enter);
        QDragMoveEvent Move(
            Place, m_View->model()->supportedDropActions(), &Mime, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_List->viewport(), &Move);
        return Move.isAccepted() && Move.dropAction() != Qt::IgnoreAction;
    }

    SettingsDirectory m_Directory;
    QStringList m_Messages, m_LayerViewMessages;
    std::unique_ptr<OrvTestProject> m_pProject;
    OrvShaderView* m_View = nullptr;
    OrvShaderListView* m_List = nullptr;
};

QTEST_MAIN(TstShadersPalette)
#include "TstShadersPalette.moc"
