#include "LayerDrags.h"
#include "LayersFixture.h"
#include "LayersPaletteFixture.h"
#include "MessageBoxes.h"
#include "SettingsDirectory.h"

#include "Tests/Support/OrvDebugReports.h"

#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCore/Object/OrvSettings.h"
#include "OrvCoreModules/Menus/OrvMenuManager.h"
#include "OrvCoreModules/Menus/OrvShortcutManager.h"
#include "OrvCoreModules/Properties/OrvNodePropertyEditor.h"
#include "OrvCoreModules/Widgets/OrvDeferredTimer.h"
#include "OrvCoreModules/Window/OrvStatusManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerToolBar.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewItem.h"

#include <QtGui/QClipboard>
#include <QtTest/QtTest>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QStackedLayout>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QUndoStack>

#include <memory>

using namespace LayersFixture;

/// The Layers palette in its window on a real document, driven by mouse and keys.
class TstLayersPalette : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_Directory.isValid());
        m_View = showLayersPalette(QSize(900, 800));
        QVERIFY(m_View);
        m_Tree = m_View->treeView();
    }

    void init()
    {
        OrvProjectManager::instance().newProject(QStringLiteral("Test"));
        m_Channel = addChannel(QStringLiteral("Diffuse"));
        m_View->setLayerStack(m_Channel);
        m_View->refresh();
        m_View->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_View->window()));
    }

    void cleanup()
    {
        OrvProjectManager::instance().closeProject();
        QCOMPARE(m_View->model()->rowCount(), 0);
    }

    void commandsAddLayersWhereTheUserIs()
    {
        clickCommand("Add New Layer");
        QTRY_COMPARE(m_View->model()->rowCount(), 1);
        OrvLayer* pFirst = m_Channel->layerList().first();
        QCOMPARE(currentLayer(), pFirst);
        QTRY_COMPARE(selectedNames(), QStringList({pFirst->name()}));
        clickCommand("Add New Layer");
        QTRY_COMPARE(m_View->model()->rowCount(), 2);
        QCOMPARE(m_Channel->layerList().last(), pFirst);

        clickRow(pFirst);
        clickCommand("Group Layers");
        QTRY_VERIFY(OrvLayerStreamUtils::isLayerGroup(m_Channel->layerList().last(), m_Channel));
        OrvLayer* pGroup = m_Channel->layerList().last();
        m_View->refresh();
        clickRow(pGroup);
        clickCommand("Add New Layer");
        QCOMPARE(OrvLayerStreamUtils::groupStack(pGroup)->layerList().size(), 2);
        m_View->refresh();
        m_Tree->collapse(m_View->model()->indexFromLayer(pGroup));
        clickRow(pGroup);
        clickCommand("Add New Layer");
        QCOMPARE(OrvLayerStreamUtils::groupStack(pGroup)->layerList().size(), 2);
        QCOMPARE(m_Channel->layerList().size(), 3);

        clickCommand("Duplicate Layers");
        QCOMPARE(m_Channel->layerList().size(), 4);
        clickCommand("Add Graph Layer");
        QVERIFY(currentLayer()->isGraphLayer());
        clickCommand("Add Layer Mask");
        QVERIFY(currentLayer()->hasMaskImageSet());
        clickCommand("Add Mask Stack");
        QVERIFY(currentLayer()->hasMaskStack());
        OrvUndoManager::instance().undo();
        QVERIFY(!currentLayer()->hasMaskStack() && currentLayer()->hasMask());
        clickCommand("Remove Layers");
        QCOMPARE(m_Channel->layerList().size(), 4);
    }

    void theLayerToPaintOnIsMarkedInEveryChannel()
    {
        OrvLayer* pHere = addLayer(m_Channel, QStringLiteral("Here"));
        OrvShaderInput* pOther = addChannel(QStringLiteral("Metallic"));
        OrvLayer* pThere = addLayer(pOther, QStringLiteral("There"));
        pThere->makeCurrent(false, true);
        OrvShaderInputManager::instance().makeShaderInputCurrent(m_Channel, true);
        m_View->setLayerStack(m_Channel);
        m_View->refresh();
        m_Channel->network()->selectNone({pHere->blendNode()});
        QVERIFY(!pThere->isSelected());
        OrvShaderInputManager::instance().makeShaderInputCurrent(pOther, true);
        m_View->setLayerStack(pOther);
        m_View->refresh();
        QCOMPARE(currentLayer(), pThere);
        QCOMPARE(selectedNames(), QStringList({QStringLiteral("There")}));
    }

    void menusAddAdjustmentsAndProcedurals()
    {
        addLayers(m_Channel, {"A"});
        chooseCommand("Add Adjustment Layer");
        QVERIFY(currentLayer()->isAdjustmentLayer());
        chooseCommand("Add Procedural Layer");
        QVERIFY(currentLayer()->isProceduralLayer());
        chooseCommand("Add Adjustment Stack");
        QVERIFY(currentLayer()->hasAdjustmentStack());
        QCOMPARE(m_Channel->layerList().size(), 3);
    }

    void aPictureIsLayeredUndoneAndRedone()
    {
        const auto state = [this] {
            QStringList States{stackText(m_Channel)};
            for (OrvLayer* pLayer : m_Channel->allLayers())
                States.append(QStringLiteral("%1 %2").arg(
                    QString::number(pLayer->isVisible()), blendMode(pLayer).toString()));
            return States.join(QLatin1Char('|'));
        };
        OrvUndoManager& Undo = OrvUndoManager::instance();
        Undo.clear();
        QStringList States{state()};
        // Each gesture is one step back.
        const auto done = [&] {
            QTRY_COMPARE(rowText(m_View), stackText(m_Channel));
            QVERIFY(state() != States.last());
            States.append(state());
            QCOMPARE(Undo.stack()->count(), States.size() - 1);
        };
        for (const char* pName : {"Base", "Dirt", "Rust"}) {
            clickCommand("Add New Layer");
            done();
            clickRow(currentLayer());
            QTest::keyClick(m_Tree, Qt::Key_F2);
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_A, Qt::ControlModifier);
            QTest::keyClicks(QApplication::focusWidget(), QString::fromLatin1(pName));
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
            done();
        }
        QCOMPARE(rowText(m_View), QStringLiteral("Rust Dirt Base"));
        const QList<OrvLayer*> Layers = m_Channel->layerList();

        auto* pModes = qobject_cast<QComboBox*>(blendControlets().first());
        if (!pModes)
            pModes = blendControlets().first()->findChild<QComboBox*>();
        QVERIFY(pModes);
        QTest::keyClick(pModes, Qt::Key_Down);
        done();
        QVERIFY(blendMode(Layers[0]) != blendMode(Layers[1]));

        clickRow(Layers[1], Qt::ControlModifier);
        clickCommand("Group Layers");
        done();
        OrvLayer* pGroup = m_Channel->layerList().first();
        QVERIFY(rowText(m_View).endsWith(QStringLiteral("(Rust Dirt) Base")));

        const auto eye
            = [this](const OrvLayer* pLayer) { return rowOf(m_View, pLayer)->findChild<QToolButton*>(); };
        QTest::mouseClick(eye(Layers[2]), Qt::LeftButton);
        done();
        QVERIFY(!Layers[2]->isVisible());

        const QRect Place = m_Tree->visualRect(m_View->model()->indexFromLayer(pGroup));
        const QPoint Triangle(Place.left() - m_Tree->indentation() / 2, Place.center().y());
        QTest::mouseClick(m_Tree->viewport(), Qt::LeftButton, Qt::NoModifier, Triangle);
        QVERIFY(!m_Tree->isExpanded(m_View->model()->indexFromLayer(pGroup)));
        QTest::mouseClick(m_Tree->viewport(), Qt::LeftButton, Qt::NoModifier, Triangle);
        QVERIFY(m_Tree->isExpanded(m_View->model()->indexFromLayer(pGroup)));

        const std::unique_ptr<QMimeData> pDirt = LayerDrags::ofRows(m_View, {Layers[1]});
        const QPoint BelowBase
            = m_Tree->visualRect(m_View->model()->indexFromLayer(Layers[2])).bottomLeft() + QPoint(40, 0);
        QCOMPARE(LayerDrags::over(m_Tree->viewport(), *pDirt, BelowBase), Qt::MoveAction);
        LayerDrags::drop(m_Tree->viewport(), *pDirt, BelowBase);
        done();
        QVERIFY(rowText(m_View).endsWith(QStringLiteral("(Rust) Base Dirt")));

        clickRow(Layers[2]);
        m_Tree->setFocus();
        QTest::keyClick(m_Tree, Qt::Key_Delete);
        done();

        for (int Step = States.size() - 2; Step >= 0; --Step) {
            Undo.undo();
            QCOMPARE(state(), States[Step]);
            m_View->refresh();
            QCOMPARE(rowText(m_View), stackText(m_Channel));
        }
        for (int Step = 1; Step < States.size(); ++Step) {
            Undo.redo();
            QCOMPARE(state(), States[Step]);
        }
        QTRY_COMPARE(rowText(m_View), stackText(m_Channel));
    }

    void toolBarOffersWhatTheStackTakes()
    {
        const auto commands = [this] {
            QStringList Texts;
            for (const QAction* pAction : m_View->toolBar()->actions()) {
                if (pAction->isVisible())
                    Texts.append(pAction->text());
            }
            return Texts;
        };
        const QStringList Ordinary{"Add New Layer", "Add Layer Mask", "Add Mask Stack",
            "Add Adjustment Layer", "Add Adjustment Stack", "Add Procedural Layer", "Group Layers",
            "Add Graph Layer", "Duplicate Layers", "Remove Layers", "Add Multi-Channel Layer", ""};
        QCOMPARE(commands(), Ordinary);
        m_Channel->node()->addTag(OrvSnNames::MaterialShaderInputTag);
        m_View->refresh();
        QCOMPARE(commands(),
            QStringList(
                {"Add Shader Layer", "Add Layer Mask", "Add Mask Stack", "Remove Shader Layers", ""}));

        // In a palette as narrow as it opens, no command is out of sight.
        OrvLayerView Narrow(nullptr, OrvLayerView::DedicatedStack);
        Narrow.resize(300, 500);
        Narrow.show();
        QVERIFY(QTest::qWaitForWindowExposed(&Narrow));
        for (QAction* pAction : Narrow.toolBar()->actions())
            QCOMPARE(Narrow.toolBar()->widgetForAction(pAction)->isVisible(), pAction->isVisible());
    }

    void publishedCommandsComeAndGo()
    {
        QAction Own(QStringLiteral("Own")), Other(QStringLiteral("Other"));
        OrvMenuManager& Menus = OrvMenuManager::instance();
        Menus.registerAction(QStringLiteral("Layers"), QStringLiteral("Panel"), QString(), &Own);
        Menus.registerAction(QStringLiteral("Channels"), QStringLiteral("Panel"), QString(), &Other);
        QVERIFY(m_View->toolBar()->actions().contains(&Own));
        QVERIFY(!m_View->toolBar()->actions().contains(&Other));
        Menus.unregisterAction(QStringLiteral("Layers"), QStringLiteral("Panel"), QString(), &Own);
        Menus.unregisterAction(QStringLiteral("Channels"), QStringLiteral("Panel"), QString(), &Other);
        QVERIFY(!m_View->toolBar()->actions().contains(&Own));
    }

    void refusalsAreExplained()
    {
        const QList<OrvLayer*> Layers = addLayers(m_Channel, {"A"});
        m_View->refresh();
        clickRow(Layers[0]);
        Layers[0]->setLocked(true);
        MessageBoxes Boxes;
        m_View->groupLayers();
        QVERIFY(Boxes.take().value(0).startsWith(QStringLiteral("Grouping Operation Failed: ")));
        QApplication::clipboard()->clear();
        m_View->paste();
        QVERIFY(Boxes.take().value(0).startsWith(QStringLiteral("Layer Operation Failed: ")));
        QCOMPARE(rowText(m_View), QStringLiteral("A"));
    }

    void withoutAStackCommandsSayWhereTheLayersAre()
    {
        m_View->setLayerStack(nullptr);
        m_View->addNewLayer();
        QVERIFY(OrvStatusManager::instance().text().contains(QStringLiteral("choose a channel")));
        m_Channel->node()->addTag(OrvSnNames::MaterialShaderInputTag);
        m_View->addNewLayer();
        QVERIFY(OrvStatusManager::instance().text().startsWith('\'' + m_Channel->name() + '\''));
        // In its own palette a layer of another kind is refused for what it is.
        m_View->setLayerStack(m_Channel);
        m_View->addNewLayer();
        QVERIFY(OrvStatusManager::instance().text().contains(QStringLiteral("Only shader layers")));
        QVERIFY(m_Channel->isEmpty());
    }

    void withoutAStackCommandsAreReported_data()
    {
        QTest::addColumn<QByteArray>("Command");
        for (const char* pCommand : {"addNewLayer", "addLayerMask", "addMaskStack", "addGraphLayer",
                 "groupLayers", "removeLayers", "pickTagColors", "addAdjustmentLayer", "addAdjustmentStack",
                 "addProceduralLayer", "duplicateLayers", "mergeLayers", "cut", "copy", "paste", "quickFind"})
            QTest::newRow(pCommand) << QByteArray(pCommand);
    }
    void withoutAStackCommandsAreReported()
    {
        QFETCH(QByteArray, Command);
        m_View->setLayerStack(nullptr);
        m_View->refresh();
        const OrvDebugReports Told;
        QVERIFY(QMetaObject::invokeMethod(m_View, Command));
        QCOMPARE(Told.Texts,
            QStringList({Command == "quickFind" ? "m_LayerStack is NULL" : "pLayerStack is NULL"}));
        QVERIFY(!QApplication::activePopupWidget());
        QVERIFY(m_Channel->layerList().isEmpty());
    }

    void withoutAProjectNothingIsOffered()
    {
        OrvProjectManager::instance().closeProject();
        QVERIFY(!m_View->layerStack());
        for (const QAction* pAction : m_View->toolBar()->actions())
            QVERIFY(!pAction->isEnabled());
        m_View->addNewLayer();
        QCOMPARE(m_View->model()->rowCount(), 0);
    }

    void clicksSelectForTheHost()
    {
        const QList<OrvLayer*> Layers = addLayers(m_Channel, {"A", "B", "C", "D"});
        m_View->refresh();
        clickRow(Layers[1]);
        QCOMPARE(currentLayer(), Layers[1]);
        QCOMPARE(selectedLayerNames(), QStringList({"B"}));
        clickRow(Layers[3], Qt::ControlModifier);
        QCOMPARE(selectedLayerNames(), QStringList({"B", "D"}));
        clickRow(Layers[1], Qt::ControlModifier);
        QCOMPARE(selectedLayerNames(), QStringList({"D"}));
        clickRow(Layers[0]);
        clickRow(Layers[2], Qt::ShiftModifier);
        QCOMPARE(selectedLayerNames(), QStringList({"A", "B", "C"}));
        clickRow(Layers[0]);
        QCOMPARE(selectedLayerNames(), QStringList({"A"}));
        m_View->refresh();
        QCOMPARE(selectedNames(), QStringList({"A"}));

        // The host went elsewhere meanwhile; a click on the tree's current row brings it back.
        Layers[3]->makeCurrent(false, false);
        clickRow(Layers[0], Qt::ControlModifier);
        clickRow(Layers[0]);
        QCOMPARE(currentLayer(), Layers[0]);
    }

    void hostsCurrentLayerIsFollowed()
    {
        const QList<OrvLayer*> Layers = addLayers(m_Channel, {"A", "B", "C"});
        OrvLayer* pGroup = group(m_Channel, {Layers[2]}, QStringLiteral("G"));
        m_View->refresh();
        clickRow(Layers[0]);
        const QList<QPointer<QWidget>> Controlets = blendControlets();
        Layers[1]->makeCurrent(false, true);
        QCOMPARE(m_View->layerFromIndex(m_Tree->currentIndex()), Layers[1]);
        QVERIFY(blendControlets() != Controlets);
        QTRY_COMPARE(selectedNames(), QStringList({"B"}));

        // Of the rows of a layer in a shared group, the one that was clicked stays.
        QVERIFY(m_Channel->shareLayer(pGroup, OrvLayerCreateFlags(30)));
        m_View->refresh();
        const QList<OrvLayerViewItem*> Items = m_View->model()->itemsFromLayer(Layers[2]);
        QCOMPARE(Items.size(), 2);
        for (const OrvLayerViewItem* pItem : Items) {
            clickRow(Layers[0]);
            clickIndex(pItem->index());
            QCOMPARE(m_Tree->currentIndex(), pItem->index());
            m_View->refresh();
            QCOMPARE(m_Tree->currentIndex(), pItem->index());
        }
        QCOMPARE(currentLayer(), Layers[2]);
        OrvLayerManager::instance().setCurrentLayer(network(), nullptr);
        QVERIFY(m_Tree->currentIndex().isValid());
    }

    void shiftPressWaitsForARealMove()
    {
        const QList<OrvLayer*> Layers = addLayers(m_Channel, {"A", "B", "C"});
        m_View->refresh();
        clickRow(Layers[0]);
        const auto move = [this](const QPoint& Position) {
            QMouseEvent Move(QEvent::MouseMove, Position, m_Tree->viewport()->mapToGlobal(Position),
                Qt::NoButton, Qt::LeftButton, Qt::ShiftModifier);
            QApplication::sendEvent(m_Tree->viewport(), &Move);
        };
        // Below the rows, where a press would begin a rubber band.
        const QPoint Press = m_Tree->visualRect(m_View->model()->index(2, 0)).bottomLeft() + QPoint(40, 2);
        QTest::mousePress(m_Tree->viewport(), Qt::LeftButton, Qt::ShiftModifier, Press);
        move(Press - QPoint(0, QApplication::startDragDistance()));
        QCOMPARE(selectedLayerNames(), QStringList({"A"}));
        for (int Beyond : {1, 2})
            move(Press - QPoint(0, QApplication::startDragDistance() + Beyond));
        QVERIFY(selectedLayerNames() != QStringList({"A"}));
        QTest::mouseRelease(m_Tree->viewport(), Qt::LeftButton, Qt::ShiftModifier, Press);
    }

    void mouseBringsAndTakesTheKeys()
    {
        OrvShortcutManager& Shortcuts = OrvShortcutManager::instance();
        QEvent Leave(QEvent::Leave);
        QEnterEvent Enter({5, 5}, {5, 5}, {5, 5});
        QApplication::sendEvent(m_Tree, &Enter);
        m_Tree->setFocus();
        QVERIFY(Shortcuts.isSpecialShortcutEnabled(Qt::Key_Tab) && m_Tree->hasFocus());
        QApplication::sendEvent(m_Tree, &Leave);
        QVERIFY(!Shortcuts.isSpecialShortcutEnabled(Qt::Key_Tab) && !m_Tree->hasFocus());
    }

    void contextMenuIsForTheStackShown()
    {
        addLayers(m_Channel, {"A"});
        m_View->refresh();
        const auto texts = [this] {
            QStringList Texts;
            QTimer::singleShot(0, [&] {
                auto* pMenu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
                QVERIFY(pMenu);
                for (const QAction* pAction : pMenu->actions())
                    Texts.append(pAction->text());
                pMenu->close();
            });
            QContextMenuEvent Event(QContextMenuEvent::Mouse, QPoint(5, 5), m_View->mapToGlobal({5, 5}));
            QApplication::sendEvent(m_View, &Event);
            return Texts;
        };
        OrvLayerManager::instance().setCurrentLayerStack(nullptr);
        const QStringList Plain = texts();
        QVERIFY(!Plain.isEmpty());
        QCOMPARE(OrvLayerManager::instance().currentLayerStack(), static_cast<OrvLayerStack*>(m_Channel));
        OrvSettings().setValue(QStringLiteral("Developer/Tools"), true);
        QCOMPARE(texts(), Plain + QStringList({QString(), QStringLiteral("Refresh Layer View")}));
        OrvSettings().remove(QStringLiteral("Developer/Tools"));
    }

    void splitterStaysWhereTheUserPutIt()
    {
        OrvSettings().remove(QStringLiteral("LayerView/SplitterSize"));
        const auto sizesOfNewView = [](const QList<int>& Moved) {
            OrvLayerView View(nullptr, OrvLayerView::DedicatedStack);
            View.resize(300, 800);
            View.show();
            auto* pSplitter = View.findChild<QSplitter*>();
            const QList<int> Sizes = pSplitter->sizes();
            if (!Moved.isEmpty())
                pSplitter->setSizes(Moved);
            return Sizes;
        };
        const QList<int> First = sizesOfNewView({600, 190});
        QVERIFY(qAbs(First[0] * 6 - First[1] * 4) < 40);
        const QList<int> Moved = sizesOfNewView({790, 0});
        QVERIFY(qAbs(Moved[0] - 600) < 20);
        QCOMPARE(sizesOfNewView({})[1], 0);
        OrvSettings().remove(QStringLiteral("LayerView/SplitterSize"));
    }

    void keysMoveRenameCopyAndRemove()
    {
        const QList<OrvLayer*> Layers = addLayers(m_Channel, {"A", "B", "C"});
        m_View->refresh();
        clickRow(Layers[0]);
        m_Tree->setFocus();
        QTest::keyClick(m_Tree, Qt::Key_Down);
        QCOMPARE(currentLayer(), Layers[1]);
        QCOMPARE(selectedLayerNames(), QStringList({"B"}));

        QTest::keyClick(m_Tree, Qt::Key_F2);
        QLineEdit* pEditor = qobject_cast<QLineEdit*>(QApplication::focusWidget());
        QVERIFY(pEditor);
        pEditor->selectAll();
        QTest::keyClicks(pEditor, QStringLiteral("Rust"));
        QTest::keyClick(pEditor, Qt::Key_Return);
        QCOMPARE(Layers[1]->name(), QStringLiteral("Rust"));

        m_Tree->setFocus();
        QTest::keyClick(m_Tree, Qt::Key_C, Qt::ControlModifier);
        QTest::keyClick(m_Tree, Qt::Key_V, Qt::ControlModifier);
        QTRY_COMPARE(stackText(m_Channel), QStringLiteral("A Rust Rust C"));
        QTRY_COMPARE(rowText(m_View), stackText(m_Channel));
        clickRow(Layers[0]);
        m_Tree->setFocus();
        QTest::keyClick(m_Tree, Qt::Key_Delete);
        QTRY_COMPARE(rowText(m_View), QStringLiteral("Rust Rust C"));
        OrvUndoManager::instance().undo();
        QTRY_COMPARE(rowText(m_View), QStringLiteral("A Rust Rust C"));
    }

    void aBurstOfChangesCausesOneRefresh()
    {
        addLayers(m_Channel, {"A", "B", "C"});
        OrvShaderInput* pOther = addChannel(QStringLiteral("Bump"));
        m_View->setLayerStack(m_Channel);
        QTest::qWait(300);
        // Of this view alone; other palettes have their own.
        QSignalSpy Refreshes(m_View->findChild<OrvDeferredTimer*>(), SIGNAL(timedOut()));
        for (int Request = 0; Request < 10; ++Request)
            m_View->requestRefresh();
        addLayer(m_Channel, QStringLiteral("D"));
        QTRY_COMPARE(rowText(m_View), QStringLiteral("D A B C"));
        QTest::qWait(300);
        QCOMPARE(Refreshes.size(), 1);

        // A change below another channel does not concern the palette; one inside a layer here does.
        QSignalSpy Requests(m_View, SIGNAL(refreshRequested()));
        pOther->node()->createUserAttribute(OrvCustomAttribute(QStringLiteral("Note"), 1));
        QTest::qWait(50);
        QCOMPARE(Requests.size(), 0);
        m_Channel->layerList().last()->contentNode()->createUserAttribute(
            OrvCustomAttribute(QStringLiteral("Note"), 1));
        QTRY_VERIFY(!Requests.isEmpty());
    }

    void nothingIsShownOfWhatIsGone()
    {
        addLayers(m_Channel, {"A", "B"});
        m_View->refresh();
        OrvShaderNetworkManager::instance().setCurrentShaderNetwork(nullptr);
        QTRY_COMPARE(m_View->model()->rowCount(), 0);
        OrvShaderNetworkManager::instance().setCurrentShaderNetwork(m_Channel->network());
        QTRY_COMPARE(m_View->model()->rowCount(), 2);

        QSignalSpy Changes(m_View, SIGNAL(layerStackChanged(OrvLayerStack*)));
        OrvProjectManager::instance().closeProject();
        QCOMPARE(m_View->model()->rowCount(), 0);
        QCOMPARE(Changes.size(), 1);
    }

    void propertiesFollowTheCurrentRow()
    {
        const QList<OrvLayer*> Layers = addLayers(m_Channel, {"A", "B"});
        OrvLayer* pGroup = group(m_Channel, {Layers[1]}, QStringLiteral("G"));
        m_View->refresh();
        clickRow(Layers[0]);
        const QList<QPointer<QWidget>> Controlets = blendControlets();
        QCOMPARE(Controlets.size(), 2);
        // An editor that is in use survives a refresh; another row has its own.
        m_View->refresh();
        QCOMPARE(blendControlets(), Controlets);
        clickRow(pGroup);
        QVERIFY(blendControlets() != Controlets);

        Layers[0]->setLocked(true);
        clickRow(Layers[0]);
        for (const QPointer<QWidget>& pControlet : blendControlets())
            QVERIFY(!pControlet->isEnabled());
        Layers[0]->setLocked(false);
        m_View->refresh();
        for (const QPointer<QWidget>& pControlet : blendControlets())
            QVERIFY(pControlet->isEnabled());
        Layers[0]->blendNode()->setUserAttributeValue(OrvMergeAttributes::AmountEnabled, false);
        QVERIFY(!blendControlets().last()->isEnabled());
    }

    void editorsAreThoseOfTheLayersNodes()
    {
        OrvLayer* pLayer = m_Channel->createAdjustmentLayer(
            anyKey("Filter/"), OrvLayerCreateFlags(30), nullptr, QString());
        OrvLayerView Dedicated(nullptr, OrvLayerView::DedicatedStack);
        const auto nodes = [pLayer](OrvLayerView* pView) {
            QList<OrvSnBaseNode*> Nodes;
            QWidget Parent;
            for (const QPointer<QWidget>& pEditor : pView->createPropertyWidgets(pLayer, &Parent))
                Nodes.append(qobject_cast<OrvNodePropertyEditor*>(pEditor)->node());
            return Nodes;
        };
        QCOMPARE(nodes(m_View), QList<OrvSnBaseNode*>({pLayer->adjustmentNode(), pLayer->blendNode()}));
        QCOMPARE(nodes(&Dedicated), QList<OrvSnBaseNode*>({pLayer->adjustmentNode()}));
        QVERIFY(m_View->createPropertyWidgets(nullptr, m_View).isEmpty());
    }

    void groupsGoThroughAndBack()
    {
        const QList<OrvLayer*> Layers = addLayers(m_Channel, {"A", "B"});
        OrvLayer* pGroup = group(m_Channel, {Layers[1]}, QStringLiteral("G"));
        m_View->refresh();
        clickRow(Layers[0]);
        QVERIFY(!passThroughButton());
        clickRow(pGroup);
        QVERIFY(passThroughButton());
        QVERIFY(!blendControlets().isEmpty() && blendControlets().first()->isVisible());
        QTest::mouseClick(passThroughButton(), Qt::LeftButton);
        QVERIFY(OrvLayerStreamUtils::isLayerGroupPassThrough(pGroup->blendNode()));
        QVERIFY(!blendControlets().first()->isVisible());
        QVERIFY(passThroughButton() && passThroughButton()->isChecked());
        QTest::mouseClick(passThroughButton(), Qt::LeftButton);
        QVERIFY(!OrvLayerStreamUtils::isLayerGroupPassThrough(pGroup->blendNode()));
        OrvUndoManager::instance().undo();
        QVERIFY(!blendControlets().first()->isVisible());
    }

    void tagColoursGoToAllSelectedLayers()
    {
        const QList<OrvLayer*> Layers = addLayers(m_Channel, {"A", "B", "C"});
        m_View->refresh();
        clickRow(Layers[0]);
        clickRow(Layers[1], Qt::ControlModifier);
        QTest::mouseClick(
            m_View->findChild<QPushButton*>(QStringLiteral("ColorPopupButton")), Qt::LeftButton);
        QWidget* pSwatch = QApplication::activePopupWidget();
        QVERIFY(pSwatch);
        QTest::mouseClick(pSwatch, Qt::LeftButton, Qt::NoModifier,
            QPoint(pSwatch->width() - pSwatch->height() / 2, pSwatch->height() / 2));
        QVERIFY(Layers[0]->color().isValid());
        QCOMPARE(Layers[1]->color(), Layers[0]->color());
        QVERIFY(!Layers[2]->color().isValid());
        QVERIFY(!QApplication::activePopupWidget());
        OrvUndoManager::instance().undo();
        QVERIFY(!Layers[0]->color().isValid() && !Layers[1]->color().isValid());
    }

    void quickFindRemembersAsManyPathsAsTheUserWants()
    {
        addLayers(m_Channel, {"A"});
        m_View->refresh();
        OrvSettings Settings;
        Settings.remove(QStringLiteral("Node Graph"));
        const auto find = [this](const QString& Text) {
            QTimer::singleShot(50, [Text] {
                QWidget* pDialog = QApplication::activeModalWidget();
                QVERIFY(pDialog);
                QLineEdit* pEdit = pDialog->findChild<QLineEdit*>();
                QTest::keyClicks(pEdit, Text);
                QTest::keyClick(pEdit, Qt::Key_Return);
            });
            m_View->quickFind();
        };
        const auto lastUsed = [] {
            return OrvSettings().value(QStringLiteral("LayerView/LastUsedNodePaths")).toStringList();
        };
        find(QStringLiteral("blur"));
        QVERIFY(currentLayer()->isAdjustmentLayer());
        QCOMPARE(lastUsed(), QStringList());
        Settings.setValue(QStringLiteral("Node Graph/numberOfLastUsedNodePathsToStore"), 1);
        Settings.sync();
        find(QStringLiteral("noise"));
        find(QStringLiteral("blur"));
        QCOMPARE(lastUsed().size(), 1);
        QVERIFY(lastUsed().first().contains(QStringLiteral("blur"), Qt::CaseInsensitive));
    }

    void viewMayGoWhileANodeIsLookedFor()
    {
        QPointer<OrvLayerView> pView = new OrvLayerView(nullptr, OrvLayerView::DedicatedStack);
        pView->setLayerStack(m_Channel);
        pView->show();
        QTimer::singleShot(20, [&] { delete pView; });
        pView->quickFind();
        QVERIFY(!pView);
    }

    void dragShowsWhatTheKeysAskFor_data()
    {
        QTest::addColumn<int>("Modifiers");
        QTest::addColumn<Qt::DropAction>("Action");
        QTest::newRow("none") << int(Qt::NoModifier) << Qt::MoveAction;
        QTest::newRow("Ctrl") << int(Qt::ControlModifier) << Qt::MoveAction;
        QTest::newRow("Shift+Alt") << int(Qt::ShiftModifier | Qt::AltModifier) << Qt::MoveAction;
        QTest::newRow("Shift") << int(Qt::ShiftModifier) << Qt::LinkAction;
        QTest::newRow("Shift+Ctrl") << int(Qt::ShiftModifier | Qt::ControlModifier) << Qt::LinkAction;
        QTest::newRow("Alt") << int(Qt::AltModifier) << Qt::CopyAction;
        QTest::newRow("Alt+Ctrl") << int(Qt::AltModifier | Qt::ControlModifier) << Qt::CopyAction;
    }
    void dragShowsWhatTheKeysAskFor()
    {
        QFETCH(int, Modifiers);
        QFETCH(Qt::DropAction, Action);
        const QList<OrvLayer*> Layers = addLayers(m_Channel, {"A", "B", "C"});
        showRows(m_View);
        const std::unique_ptr<QMimeData> pData = LayerDrags::ofRows(m_View, {Layers[2]});
        const QPoint Position = m_Tree->visualRect(m_View->model()->indexFromLayer(Layers[0])).center();
        QCOMPARE(
            LayerDrags::over(m_Tree->viewport(), *pData, Position, Qt::KeyboardModifiers(Modifiers)), Action);
    }

    void rowsStandStraight()
    {
        for (int Row = 0; Row < 200; ++Row)
            addLayer(m_Channel, QStringLiteral("Layer %1").arg(Row));
        m_View->refresh();
        for (int Place : {0, 77, m_Tree->verticalScrollBar()->maximum()}) {
            m_Tree->verticalScrollBar()->setValue(Place);
            QApplication::processEvents();
            int ShownCount = 0;
            for (int Row = 0; Row < 200; ++Row) {
                const QModelIndex Index = m_View->model()->index(Row, 0);
                const QWidget* pRow = m_View->rowWidget(Index);
                const QRect Place = m_Tree->visualRect(Index);
                QCOMPARE(pRow->isVisible(), Place.intersects(m_Tree->viewport()->rect()));
                if (!pRow->isVisible())
                    continue;
                ++ShownCount;
                QCOMPARE(pRow->geometry(), Place);
                QCOMPARE(Place.right() + 1, m_Tree->viewport()->width());
                for (const QWidget* pPart :
                    pRow->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
                    QVERIFY(pPart->isHidden() || pRow->rect().contains(pPart->geometry()));
            }
            QVERIFY(ShownCount > 3);
        }
    }

private:
    static OrvLayer* currentLayer() { return OrvLayerManager::instance().currentLayer(); }

    static QVariant blendMode(const OrvLayer* pLayer)
    {
        return pLayer->blendNode()->userAttribute(OrvMergeAttributes::BlendMode).value();
    }
    void clickRow(const OrvLayer* pLayer, Qt::KeyboardModifiers Modifiers = Qt::NoModifier) const
    {
        clickIndex(m_View->model()->indexFromLayer(pLayer), Modifiers);
    }
    void clickIndex(const QModelIndex& Index, Qt::KeyboardModifiers Modifiers = Qt::NoModifier) const
    {
        m_Tree->scrollTo(Index);
        const QPoint Position = m_Tree->visualRect(Index).center();
        QWidget* pTarget = m_Tree->viewport()->childAt(Position);
        if (!pTarget)
            pTarget = m_Tree->viewport();
        QTest::mouseClick(pTarget, Qt::LeftButton, Modifiers, pTarget->mapFrom(m_Tree->viewport(), Position));
    }
    void clickCommand(const char* pText) const
    {
        for (QAction* pAction : m_View->toolBar()->actions()) {
            if (pAction->text() != QLatin1String(pText))
                continue;
            QWidget* pButton = m_View->toolBar()->widgetForAction(pAction);
            if (pButton->isVisible())
                QTest::mouseClick(pButton, Qt::LeftButton);
            else
                pAction->trigger();
            return;
        }
        QFAIL(pText);
    }
    /// Takes the first entry of the menu that the command opens.
    void chooseCommand(const char* pText) const
    {
        clickCommand(pText);
        auto* pMenu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        QVERIFY(pMenu);
        QAction* pEntry = pMenu->actions().first();
        while (pEntry->menu())
            pEntry = pEntry->menu()->actions().first();
        pEntry->trigger();
        pMenu->close();
    }
    QStringList selectedNames() const
    {
        QStringList Names;
        for (const QModelIndex& Index : m_Tree->selectionModel()->selectedRows())
            Names.append(m_View->layerFromIndex(Index)->name());
        Names.sort();
        return Names;
    }
    QStringList selectedLayerNames() const
    {
        QStringList Names;
        for (const OrvLayer* pLayer : m_Channel->selectedLayers())
            Names.append(pLayer->name());
        Names.sort();
        return Names;
    }
    /// The editors of blend mode and amount.
    QList<QPointer<QWidget>> blendControlets() const
    {
        QList<QPointer<QWidget>> Controlets;
        auto* pPages = m_View->findChild<QStackedLayout*>();
        const QLayout* pLayout = pPages->widget(1)->layout();
        for (int Item = 0; Item < 2; ++Item) {
            if (!qobject_cast<QPushButton*>(pLayout->itemAt(Item)->widget()))
                Controlets.append(pLayout->itemAt(Item)->widget());
        }
        return Controlets;
    }
    QPushButton* passThroughButton() const
    {
        for (QPushButton* pButton : m_View->findChildren<QPushButton*>()) {
            if (pButton->isVisible() && pButton->toolTip().contains(QStringLiteral("Pass Through")))
                return pButton;
        }
        return nullptr;
    }

    SettingsDirectory m_Directory;
    OrvLayerView* m_View = nullptr;
    OrvLayerTreeView* m_Tree = nullptr;
    OrvShaderInput* m_Channel = nullptr;
};

QTEST_MAIN(TstLayersPalette)
#include "TstLayersPalette.moc"
