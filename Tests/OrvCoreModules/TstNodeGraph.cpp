#include "Tests/Support/OrvTestProject.h"

#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Network/OrvNodeRegistry.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnBottomTransparencyNode.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Network/OrvSnGraphNode.h"
#include "OrvCore/Network/OrvSnOperationNode.h"
#include "OrvCoreModules/Graph/OrvNodeGraphCommands.h"
#include "OrvCoreModules/Graph/OrvNodeGraphCreation.h"
#include "OrvCoreModules/Graph/OrvNodeGraphLayout.h"
#include "OrvCoreModules/Graph/OrvNodeGraphPalette.h"
#include "OrvCoreModules/Graph/OrvNodeGraphScene.h"
#include "OrvCoreModules/Graph/OrvNodeGraphView.h"
#include "OrvCoreModules/Graph/OrvNodeItem.h"
#include "OrvCoreModules/Graph/OrvWireItem.h"
#include "OrvCoreModules/Plugin/OrvPluginLoader.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvCoreModules/Window/OrvPaletteManager.h"
#include "OrvCoreModules/Window/OrvStatusManager.h"

#include <QtCore/QRandomGenerator>
#include <QtTest/QtTest>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QUndoStack>

#include <memory>

/// The Node Graph palette under the mouse and the keyboard: what it shows is the document, and what is done
/// in it is one undo step each, whatever becomes of the graph.
class TstNodeGraph : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        OrvMainWindow& Window = OrvMainWindow::instance();
        Window.resize(1200, 800);
        Window.setCentralWidget(new QWidget);
        m_pPalette = new OrvNodeGraphPalette;
        OrvPaletteManager::instance().registerPalette(m_pPalette, false, QString());
        Window.addDockWidget(Qt::BottomDockWidgetArea, m_pPalette);
        Window.show();
        QVERIFY(QTest::qWaitForWindowActive(&Window));
        QCOMPARE(OrvPaletteManager::find(QStringLiteral("Node Graph")), m_pPalette);
    }

    void init()
    {
        m_pProject = std::make_unique<OrvTestProject>();
        m_pLayer = m_pProject->paint("Rust", OrvColor(1.0f, 0.0f, 0.0f, 1.0f));
        m_pPaint = m_pLayer->paintNode();
        OrvUndoManager::instance().clear();
        OrvMainWindow::instance().activateWindow();
        m_pPalette->open();
        QTRY_VERIFY(scene()->isActive());
        scene()->synchronize();
        view()->setFocus();
        QTRY_VERIFY(view()->hasFocus());
        m_pPalette->frameAll();
        OrvStatusManager::instance().showMessage(QString());
    }

    void cleanup()
    {
        QVERIFY(!OrvUndoManager::instance().isInMacro());
        m_pPalette->hide();
        m_pProject.reset();
        QVERIFY(!m_pPalette->network());
    }

    // What is shown

    void showsTheDocumentAndNothingWhileHidden()
    {
        checkShown();
        m_pPalette->hide();
        QVERIFY(scene()->items().isEmpty());
        OrvLayer* pSecond = m_pProject->paint("Dust");
        QTest::qWait(50);
        QVERIFY(scene()->items().isEmpty());
        m_pPalette->open();
        QTRY_VERIFY(scene()->item(pSecond->blendNode()));
        checkShown();
    }

    void followsEditsUndoAndRedo()
    {
        OrvLayer* pGroup = m_pProject->group("Group", {m_pLayer});
        pGroup->addMaskImageSet(OrvLayer::FilledMask, OrvColor());
        pGroup->setName("Old Metal");
        pGroup->setLocked(true);
        pGroup->blendNode()->setPosition(QPointF(40.0, 900.0));
        QTRY_COMPARE(itemOf(pGroup->blendNode())->look().Title, QStringLiteral("Old Metal"));
        checkShown();
        QVERIFY(itemOf(pGroup->blendNode())->look().Locked);
        const int Length = historyLength();
        for (int Step = 0; Step < 2 * Length; ++Step) {
            Step < Length ? m_pProject->undo() : m_pProject->redo();
            checkShown();
        }
    }

    void closingTheProjectEmptiesIt()
    {
        m_pProject.reset();
        QVERIFY(!m_pPalette->network());
        QVERIFY(scene()->items().isEmpty());
        QVERIFY(!view()->grab().isNull());
    }

    void layoutIsTidyForAnyGraph()
    {
        QRandomGenerator Random(5);
        for (int Round = 0; Round < 20; ++Round) {
            const OrvUndoManager::NoRecording NoRecording;
            OrvShaderNetwork Network(static_cast<OrvGeoEntity*>(nullptr));
            for (int Count = 5 + Random.bounded(60); Count > 0; --Count) {
                OrvSnBaseNode* pMerge = Network.addNode(std::make_unique<OrvSnMergeNode>());
                for (const OrvSnBaseNode::Input& Input : QVector<OrvSnBaseNode::Input>(pMerge->inputs())) {
                    if (Random.bounded(4))
                        pMerge->connectInput(
                            Input.Name, Network.nodes()[Random.bounded(Network.nodes().size())]);
                }
            }
            checkTidy(Network.nodes());
        }
    }

    void layoutKeepsAStackInOneRow()
    {
        for (int Count = 0; Count < 5; ++Count)
            m_pProject->paint(QString("Layer %1").arg(Count));
        OrvLayer* pInside = m_pProject->paint("Inside");
        m_pProject->group("Group", {pInside});
        const OrvNodeGraphLayout::Places Places = arranged(m_pProject->network()->nodes());
        checkTidy(m_pProject->network()->nodes());
        const QPointF End = Places.value(m_pProject->channel()->node());
        for (OrvSnBaseNode* pNode = m_pProject->channel()->topNode(); pNode;
             pNode = pNode->preferredInputNode()) {
            QCOMPARE(Places.value(pNode).y(), End.y());
            QVERIFY(Places.value(pNode).x() < End.x());
        }
        for (const OrvLayer* pLayer : m_pProject->channel()->layerList()) {
            const QPointF Content = Places.value(pLayer->contentNode()),
                          Merge = Places.value(pLayer->blendNode());
            QVERIFY(Content.y() >= Merge.y());
            QCOMPARE(Content.x(), Merge.x() - OrvNodeGraphLayout::ColumnWidth);
        }
    }

    void deepGraphsAreLaidOut()
    {
        const OrvUndoManager::NoRecording NoRecording;
        OrvShaderNetwork Network(static_cast<OrvGeoEntity*>(nullptr));
        OrvSnBaseNode* pBelow = Network.addNode(std::make_unique<OrvSnBottomTransparencyNode>());
        for (int Depth = 0; Depth < 20000; ++Depth) {
            OrvSnBaseNode* pMerge = Network.addNode(std::make_unique<OrvSnMergeNode>());
            pMerge->connectInput(Depth % 2 ? OrvSnNames::Base : OrvSnNames::Over, pBelow);
            pBelow = pMerge;
        }
        QCOMPARE(arranged(Network.nodes()).size(), Network.nodes().size());
    }

    // Connections

    void wiresAreDrawnBothWays()
    {
        OrvSnBaseNode* pBlur = addBlurAsMask();
        QCOMPARE(merge()->inputNode(OrvSnNames::Mask), pBlur);
        QCOMPARE(history(), QStringLiteral("Connect 'Rust'"));
        checkShown();
        m_pProject->undo();
        QVERIFY(!merge()->inputNode(OrvSnNames::Mask));

        drag(input(merge(), OrvSnNames::Mask), output(pBlur));
        QCOMPARE(merge()->inputNode(OrvSnNames::Mask), pBlur);
        // On the node as a whole, a wire finds the input that is free.
        drag(output(paintNode()), middle(pBlur));
        QCOMPARE(pBlur->inputNode(OrvSnNames::Input), paintNode());
    }

    void cyclesAndLocksAreRefused()
    {
        OrvSnBaseNode* pBlur = addBlurAsMask();
        const QByteArray Document = m_pProject->document();
        const int Length = historyLength();
        drag(output(merge()), input(pBlur, OrvSnNames::Input));
        QVERIFY2(OrvStatusManager::instance().text().contains("depends"),
            qPrintable(OrvStatusManager::instance().text()));
        drag(output(merge()), input(merge(), OrvSnNames::Base));
        QVERIFY(OrvStatusManager::instance().text().contains("itself"));
        drag(output(merge()), middle(paintNode()));
        QVERIFY(OrvStatusManager::instance().text().contains("no input"));
        QCOMPARE(m_pProject->document(), Document);
        QCOMPARE(historyLength(), Length);

        m_pLayer->setLocked(true);
        scene()->synchronize();
        drag(output(paintNode()), input(pBlur, OrvSnNames::Input));
        QVERIFY(!pBlur->inputNode(OrvSnNames::Input));
        QVERIFY(OrvStatusManager::instance().text().contains("locked"));
        drag(input(merge(), OrvSnNames::Over), emptyPlace());
        QCOMPARE(merge()->inputNode(OrvSnNames::Over), paintNode());
    }

    void wiresAreTakenOffAndMoved()
    {
        drag(input(merge(), OrvSnNames::Over), input(merge(), OrvSnNames::Mask));
        QVERIFY(!merge()->inputNode(OrvSnNames::Over));
        QCOMPARE(merge()->inputNode(OrvSnNames::Mask), paintNode());
        m_pProject->undo();
        QCOMPARE(merge()->inputNode(OrvSnNames::Over), paintNode());
        scene()->synchronize();

        const int Length = OrvUndoManager::instance().stack()->index();
        drag(input(merge(), OrvSnNames::Over), input(merge(), OrvSnNames::Over));
        QCOMPARE(OrvUndoManager::instance().stack()->index(), Length);
        drag(input(merge(), OrvSnNames::Over), emptyPlace());
        QVERIFY(!merge()->inputNode(OrvSnNames::Over));
        QCOMPARE(history(), QStringLiteral("Disconnect 'Rust'"));
        checkShown();

        // Selected and deleted.
        const OrvWireItem* pWire = itemOf(merge())->wireInto(OrvSnNames::Base);
        click(view()->mapFromScene(pWire->sceneBoundingRect().center()));
        QTest::keyClick(view(), Qt::Key_Delete);
        QVERIFY(!merge()->inputNode(OrvSnNames::Base));
    }

    /// What is taken off stays in sight, beside what stood around it, and can be plugged in elsewhere.
    void freedNodesStayWhereTheyWere()
    {
        for (const char* pName : {"Dust", "Dirt", "Oil"})
            m_pProject->paint(pName, OrvColor(0.5f, 0.5f, 0.5f, 1.0f))->addMaskImageSet(
                OrvLayer::FilledMask, OrvColor());
        OrvUndoManager::instance().clear();
        frameAll();
        const auto isShownNear = [this](const QPointF& Place) {
            const OrvNodeItem* pItem = itemOf(paintNode());
            for (const OrvNodeItem* pOther : scene()->nodeItems()) {
                if (pOther != pItem
                    && pOther->body().translated(pOther->pos()).intersects(pItem->body().translated(pItem->pos())))
                    return false;
            }
            return pItem->pos().x() == Place.x() && qAbs(pItem->pos().y() - Place.y()) < 200.0;
        };
        const QPointF Before = itemOf(paintNode())->pos();
        OrvSnBaseNode* pOther = m_pProject->layer("Dust")->paintNode();
        drag(input(merge(), OrvSnNames::Over), emptyPlace());
        QVERIFY(paintNode()->network() && isShownNear(Before));
        m_pProject->undo();
        scene()->synchronize();
        QCOMPARE(itemOf(paintNode())->pos(), Before);
        QVERIFY(paintNode()->position().isNull());

        frameAll();
        drag(output(pOther), input(merge(), OrvSnNames::Over));
        QCOMPARE(merge()->inputNode(OrvSnNames::Over), pOther);
        QVERIFY(paintNode()->consumers().isEmpty() && isShownNear(Before));
        frameAll();
        drag(output(paintNode()), input(merge(), OrvSnNames::Mask));
        QCOMPARE(merge()->inputNode(OrvSnNames::Mask), paintNode());
    }

    void escapeLeavesNoTrace()
    {
        const QByteArray Document = m_pProject->document();
        const QPointF Before = itemOf(merge())->pos();
        const QPoint End = emptyPlace();
        const QPoint Title = middle(merge());
        for (const QPoint& Start : {input(merge(), OrvSnNames::Over), Title}) {
            QTest::mousePress(canvas(), Qt::LeftButton, Qt::NoModifier, Start);
            move(Start, End);
            QCOMPARE(itemOf(merge())->pos() != Before, Start == Title);
            QTest::keyClick(view(), Qt::Key_Escape);
            QCOMPARE(itemOf(merge())->pos(), Before);
            QVERIFY(itemOf(merge())->wireInto(OrvSnNames::Over)->isVisible());
            QTest::mouseRelease(canvas(), Qt::LeftButton, Qt::NoModifier, End);
            QCOMPARE(m_pProject->document(), Document);
        }
    }

    void theGraphMayChangeUnderTheMouse()
    {
        OrvSnBaseNode* pBlur = addBlurAsMask();
        const QPoint Start = output(pBlur), End = input(merge(), OrvSnNames::Over);
        QTest::mousePress(canvas(), Qt::LeftButton, Qt::NoModifier, Start);
        move(Start, End);
        m_pProject->undo();
        m_pProject->undo();
        OrvUndoManager::instance().clear(); // the node is deleted
        scene()->synchronize();
        move(End, End + QPoint(1, 1));
        QTest::mouseRelease(canvas(), Qt::LeftButton, Qt::NoModifier, End);
        QCOMPARE(merge()->inputNode(OrvSnNames::Over), paintNode());
    }

    // Moving, selecting, looking around

    void aDragIsOneStep()
    {
        OrvSnBaseNode* pImage = paintNode();
        click(middle(merge()));
        click(middle(pImage), Qt::ShiftModifier);
        const QPointF First = itemOf(merge())->pos(), Second = itemOf(pImage)->pos();
        drag(middle(merge()), middle(merge()) + QPoint(50, 60));
        QCOMPARE(history(), QStringLiteral("Move 2 Nodes"));
        QCOMPARE(itemOf(merge())->pos() - First, itemOf(pImage)->pos() - Second);
        QVERIFY((itemOf(merge())->pos() - First).manhattanLength() > 50.0);
        checkShown();
        m_pProject->undo();
        scene()->synchronize();
        QCOMPARE(itemOf(merge())->pos(), First);
        QVERIFY(merge()->position().isNull());
    }

    void selectionGoesBothWays()
    {
        OrvLayer* pSecond = m_pProject->paint("Dust");
        frameAll();
        click(middle(merge()));
        QVERIFY(m_pLayer->isSelected() && m_pLayer->isCurrent() && !pSecond->isSelected());
        click(middle(pSecond->blendNode()), Qt::ControlModifier);
        QVERIFY(m_pLayer->isSelected() && pSecond->isSelected());
        click(middle(paintNode()));
        QVERIFY(!m_pLayer->isSelected() && !pSecond->isSelected());

        m_pProject->select({pSecond});
        QTRY_VERIFY(itemOf(pSecond->blendNode())->isSelected());
        QVERIFY(!itemOf(paintNode())->isSelected());
        click(emptyPlace());
        QVERIFY(!pSecond->isSelected());

        drag(QPoint(2, 2), canvas()->rect().bottomRight() - QPoint(2, 2));
        QVERIFY(m_pLayer->isSelected() && pSecond->isSelected());
        QCOMPARE(m_pProject->network()->selectedNodes().size(), m_pProject->network()->nodes().size());

        OrvShaderInput* pOther = m_pProject->addChannel("Bump");
        frameAll();
        click(middle(pOther->node()));
        QCOMPARE(OrvShaderInputManager::instance().currentShaderInput(), pOther);
    }

    void canvasIsMovedAndScaled()
    {
        const QPointF Under = view()->mapToScene(QPoint(100, 80));
        const qreal Before = view()->zoom();
        QWheelEvent Wheel(QPointF(100, 80), canvas()->mapToGlobal(QPoint(100, 80)), QPoint(), QPoint(0, 240),
            Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(canvas(), &Wheel);
        QVERIFY(view()->zoom() > Before);
        QVERIFY((view()->mapToScene(QPoint(100, 80)) - Under).manhattanLength() < 4.0);

        const QPoint Spot = middle(merge());
        QTest::mousePress(canvas(), Qt::MiddleButton, Qt::NoModifier, QPoint(50, 50));
        move(QPoint(50, 50), QPoint(80, 70));
        QTest::mouseRelease(canvas(), Qt::MiddleButton, Qt::NoModifier, QPoint(80, 70));
        QCOMPARE(middle(merge()), Spot + QPoint(30, 20));
        QTest::keyPress(view(), Qt::Key_Space);
        drag(QPoint(80, 70), QPoint(50, 50));
        QTest::keyRelease(view(), Qt::Key_Space);
        QCOMPARE(middle(merge()), Spot);
        QCOMPARE(historyLength(), 0);

        view()->centerOn(9000, 9000);
        QTest::keyClick(view(), Qt::Key_F);
        QVERIFY(canvas()->rect().contains(middle(merge())));
    }

    // Edits

    void deletedNodesAreBridged()
    {
        OrvLayer* pSecond = m_pProject->paint("Dust");
        OrvLayer* pThird = m_pProject->paint("Dirt");
        OrvSnBaseNode* pBottom = m_pProject->channel()->bottomNode();
        const QByteArray Document = m_pProject->document();
        frameAll();
        click(middle(merge()));
        click(middle(pSecond->blendNode()), Qt::ControlModifier);
        QTest::keyClick(view(), Qt::Key_Delete);
        QCOMPARE(history(), QStringLiteral("Delete 2 Nodes"));
        QCOMPARE(pThird->blendNode()->inputNode(OrvSnNames::Base), pBottom);
        QCOMPARE(m_pProject->tree(), QStringLiteral("Dirt"));
        checkShown();
        m_pProject->undo();
        QCOMPARE(m_pProject->document(), Document);
        checkShown();
    }

    void channelsAndLockedNodesStay()
    {
        m_pLayer->setLocked(true);
        const QByteArray Document = m_pProject->document();
        scene()->synchronize();
        for (OrvSnBaseNode* pNode : {m_pProject->channel()->node(), merge(), paintNode()}) {
            OrvStatusManager::instance().showMessage(QString());
            click(middle(pNode));
            QTest::keyClick(view(), Qt::Key_Delete);
            QVERIFY(!OrvStatusManager::instance().text().isEmpty());
            QCOMPARE(m_pProject->document(), Document);
        }
        // What may go does, beside one that stays.
        OrvSnBaseNode* pBlur = add(Blur);
        click(middle(m_pProject->channel()->node()));
        click(middle(pBlur), Qt::ControlModifier);
        QTest::keyClick(view(), Qt::Key_Delete);
        QCOMPARE(m_pProject->document(), Document);
    }

    void everyKindCanBeAdded()
    {
        const QStringList Keys = offeredKeys();
        for (const QString& Key : OrvShaderNetworkManager::instance().layerPathKeys())
            QVERIFY2(Keys.contains(Key), qPrintable(Key));
        for (const char* pPlain : {"ImageSet", "Merge", "BottomTransparency", "Pass", "Graph"})
            QVERIFY2(Keys.contains(pPlain), pPlain);
        QVERIFY(!Keys.contains("GraphOutput"));

        const QByteArray Document = m_pProject->document();
        for (const QString& Key : Keys) {
            OrvSnBaseNode* pNode = OrvNodeGraphCreation::add(Key,
                {m_pPalette->network(), QPointF(10, 20), paintNode(), QString(),
                    {merge(), OrvSnNames::Over}});
            QVERIFY2(pNode, qPrintable(Key));
            QCOMPARE(merge()->inputNode(OrvSnNames::Over), pNode);
            if (!pNode->preferredInput().isEmpty())
                QCOMPARE(pNode->preferredInputNode(), paintNode());
            QCOMPARE(history(), QString("Add '%1'").arg(pNode->name()));
            m_pProject->pixel();
            m_pProject->undo();
            QCOMPARE(m_pProject->document(), Document);
        }
        QVERIFY(!OrvNodeGraphCreation::add(
            "Filter/Nothing/Of This Name", {m_pPalette->network(), {}, nullptr, {}, {}}));
    }

    void quickFindAddsBehindTheSelectedNode()
    {
        click(middle(paintNode()));
        bool Seen = false;
        QTimer::singleShot(0, this, [&] {
            QWidget* pDialog = QApplication::activeModalWidget();
            if (!pDialog)
                return;
            Seen = true;
            QTest::keyClicks(pDialog->findChild<QLineEdit*>(), "gaussian blur");
            QTest::keyClick(pDialog->findChild<QLineEdit*>(), Qt::Key_Return);
        });
        QTest::keyClick(view(), Qt::Key_Tab);
        QVERIFY(Seen);
        QCOMPARE(history(), QStringLiteral("Add 'Gaussian Blur'"));
        OrvSnBaseNode* pBlur = m_pProject->network()->nodes().last();
        QCOMPARE(pBlur->preferredInputNode(), paintNode());
        QVERIFY(itemOf(pBlur)->isSelected());
    }

    void titlesAreEditedInPlace()
    {
        click(middle(merge()));
        QTest::keyClick(view(), Qt::Key_F2);
        QWidget* pEdit = QApplication::focusWidget();
        QVERIFY(qobject_cast<QLineEdit*>(pEdit));
        QTest::keyClicks(pEdit, "Patina");
        QTest::keyClick(pEdit, Qt::Key_Return);
        QCOMPARE(m_pLayer->name(), QStringLiteral("Patina"));
        QCOMPARE(history(), QStringLiteral("Rename 'Rust' to 'Patina'"));
        QVERIFY(view()->hasFocus());

        doubleClick(middle(merge()));
        pEdit = QApplication::focusWidget();
        QTest::keyClicks(pEdit, "Nothing");
        QTest::keyClick(pEdit, Qt::Key_Escape);
        QCOMPARE(m_pLayer->name(), QStringLiteral("Patina"));

        // The node goes while its name is edited.
        QTest::keyClick(view(), Qt::Key_F2);
        pEdit = QApplication::focusWidget();
        QTest::keyClicks(pEdit, "Late");
        m_pProject->channel()->deleteLayers({m_pLayer});
        OrvUndoManager::instance().clear();
        QTest::keyClick(pEdit, Qt::Key_Return);
    }

    void switchingOffIsSeenInThePicture()
    {
        OrvSnBaseNode* pInvert = OrvNodeGraphCreation::add("Filter/Adjust/Invert Linear",
            {m_pPalette->network(), QPointF(10, 400), paintNode(), QString(), {merge(), OrvSnNames::Over}});
        frameAll();
        const OrvColor Red(1.0f, 0.0f, 0.0f, 1.0f), Cyan(0.0f, 1.0f, 1.0f, 1.0f);
        QVERIFY(m_pProject->same(m_pProject->pixel(), Cyan));
        click(middle(pInvert));
        QTest::keyClick(view(), Qt::Key_D);
        QCOMPARE(history(), QStringLiteral("Disable 'Invert Linear'"));
        QVERIFY(m_pProject->same(m_pProject->pixel(), Red));
        // Rewired while it is off, it is right when it is on again.
        OrvSnBaseNode* pGreen = m_pProject->paint("Green", OrvColor(0.0f, 1.0f, 0.0f, 1.0f))->contentNode();
        pInvert->connectInput(OrvSnNames::Input, pGreen);
        m_pProject->channel()->layerList().first()->setVisible(false);
        QVERIFY(m_pProject->same(m_pProject->pixel(), OrvColor(0.0f, 1.0f, 0.0f, 1.0f)));
        QTest::keyClick(view(), Qt::Key_D);
        QVERIFY(m_pProject->same(m_pProject->pixel(), OrvColor(1.0f, 0.0f, 1.0f, 1.0f)));
        OrvUndoManager::instance().stack()->setIndex(0);
        QVERIFY(m_pProject->same(m_pProject->pixel(), Red));

        click(middle(paintNode()));
        QTest::keyClick(view(), Qt::Key_D);
        QVERIFY(paintNode()->enabledAsBool());
        QVERIFY(!OrvStatusManager::instance().text().isEmpty());
    }

    void arrangingIsOneStep()
    {
        m_pProject->paint("Dust");
        for (OrvSnBaseNode* pNode : m_pProject->network()->nodes())
            pNode->setPosition(QPointF(300, 300));
        scene()->synchronize();
        // Given one place, they are not hidden behind each other.
        QSet<qreal> Places;
        for (OrvSnBaseNode* pNode : m_pProject->network()->nodes())
            Places.insert(itemOf(pNode)->x());
        QCOMPARE(Places.size(), m_pProject->network()->nodes().size());
        const QByteArray Document = m_pProject->document();

        QTest::keyClick(view(), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(view(), Qt::Key_L);
        scene()->synchronize();
        QVERIFY(itemOf(paintNode())->x() < itemOf(merge())->x());
        QVERIFY(!merge()->position().isNull());
        const int Length = historyLength();
        QTest::keyClick(view(), Qt::Key_L);
        QCOMPARE(historyLength(), Length); // tidy already
        m_pProject->undo();
        QCOMPARE(m_pProject->document(), Document);

        click(emptyPlace());
        QTest::keyClick(view(), Qt::Key_L);
        QVERIFY(merge()->position().isNull());
        m_pProject->undo();
        QCOMPARE(m_pProject->document(), Document);
    }

    void duplicatesKeepWhatFeedsThem()
    {
        OrvSnBaseNode* pBlur = add(Blur);
        pBlur->connectInput(OrvSnNames::Input, paintNode());
        scene()->synchronize();
        click(middle(pBlur));
        QTest::keyClick(view(), Qt::Key_D, Qt::ControlModifier);
        QCOMPARE(history(), QStringLiteral("Duplicate 'Gaussian Blur'"));
        OrvSnBaseNode* pCopy = m_pProject->network()->nodes().last();
        QVERIFY(pCopy != pBlur && pCopy->preferredInputNode() == paintNode());
        QVERIFY(itemOf(pCopy)->isSelected() && !itemOf(pBlur)->isSelected());
        QVERIFY(itemOf(pCopy)->pos() != itemOf(pBlur)->pos());
    }

    // Graphs inside nodes

    void graphsAreEnteredAndLeft()
    {
        OrvLayer* pGraphLayer = m_pProject->channel()->createGraphLayer(30);
        OrvSnBaseNode* pGraph = pGraphLayer->graphNode();
        frameAll();
        doubleClick(middle(pGraph));
        QCOMPARE(m_pPalette->network(), pGraph->nestedNetwork());
        checkShown();
        QVERIFY(!offeredKeys().contains("GraphOutput")); // there is one

        QTest::keyClick(view(), Qt::Key_Backspace);
        QCOMPARE(m_pPalette->network(), m_pProject->network());
        QVERIFY(itemOf(pGraph)->isSelected());
        QTest::keyClick(view(), Qt::Key_Return);
        QCOMPARE(m_pPalette->network(), pGraph->nestedNetwork());
        QApplication::processEvents();
        QToolButton* pStep = nullptr;
        for (QToolButton* pButton : m_pPalette->findChildren<QToolButton*>()) {
            if (pButton->isVisible() && pButton->text() == QLatin1String("Head"))
                pStep = pButton;
        }
        QVERIFY(pStep);
        QTest::mouseClick(pStep, Qt::LeftButton);
        QCOMPARE(m_pPalette->network(), m_pProject->network());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

        m_pPalette->enter(pGraph->nestedNetwork());
        m_pProject->undo();
        QCOMPARE(m_pPalette->network(), m_pProject->network());
        OrvUndoManager::instance().clear();
        checkShown();
    }

    void layersOpenTheirContents()
    {
        OrvLayer* pGraphLayer = m_pProject->channel()->createGraphLayer(30);
        m_pPalette->hide();
        OrvLayerStreamUtils::openLayerContentsInNodeGraph(pGraphLayer);
        QVERIFY(m_pPalette->isVisible());
        auto* pGraph = static_cast<OrvSnGraphNode*>(pGraphLayer->graphNode());
        QCOMPARE(m_pPalette->network(), pGraph->nestedNetwork());
        QVERIFY(itemOf(pGraph->outputNode())->isSelected());

        OrvLayerStreamUtils::openLayerContentsInNodeGraph(m_pLayer);
        QCOMPARE(m_pPalette->network(), m_pProject->network());
        QVERIFY(itemOf(paintNode())->isSelected());
        QVERIFY((middle(paintNode()) - canvas()->rect().center()).manhattanLength() < 40);
        OrvShaderNetworkManager::instance().focusOnNode(nullptr);
    }

    // Anything

    void thousandsOfNodesAreShownAndFollowed()
    {
        const OrvUndoManager::NoRecording NoRecording;
        m_pPalette->hide();
        for (int Count = 0; Count < 2500; ++Count)
            m_pProject->paint("Layer");
        m_pPalette->open();
        QTRY_COMPARE(scene()->nodeItems().size(), m_pProject->network()->nodes().size());
        m_pProject->paint("One More");
        scene()->synchronize();
        QCOMPARE(scene()->nodeItems().size(), m_pProject->network()->nodes().size());
        m_pPalette->frameAll();
        QVERIFY(!canvas()->grab().isNull());
    }

    void anyGraphIsBorne_data()
    {
        QTest::addColumn<int>("Seed");
        for (int Seed = 1; Seed <= 6; ++Seed)
            QTest::newRow(qPrintable(QString("seed %1").arg(Seed))) << Seed;
    }

    void anyGraphIsBorne()
    {
        QFETCH(int, Seed);
        // With all palettes that there are, showing the same document.
        OrvPluginLoader::instance().loadAll();
        for (OrvPalette* pPalette : OrvPaletteManager::instance().palettes())
            pPalette->show();
        m_Random.seed(quint32(Seed));
        m_pProject->group("Group", {m_pLayer});
        m_pProject->channel()->createGraphLayer(30);
        m_pProject->addChannel("Bump");
        QUndoStack& History = *OrvUndoManager::instance().stack();
        History.clear();
        QVector<QByteArray> Documents{m_pProject->document()};
        for (int Step = 0; Step < 250; ++Step) {
            const int Before = History.index();
            const int Kind = m_Random.bounded(12);
            if (Kind == 0 && History.canUndo())
                m_pProject->undo();
            else if (Kind == 1 && History.canRedo())
                m_pProject->redo();
            else if (Kind > 1)
                randomEdit();
            QVERIFY(!OrvUndoManager::instance().isInMacro());
            if (Kind > 1 && History.index() > Before) {
                Documents.resize(Before + 1);
                Documents.append(m_pProject->document());
            }
            QCOMPARE(m_pProject->document(), Documents[History.index()]);
            if (Step % 5 == 0)
                look();
            if (QTest::currentTestFailed())
                return;
        }
        History.setIndex(0);
        QCOMPARE(m_pProject->document(), Documents.first());
        History.setIndex(History.count());
        QCOMPARE(m_pProject->document(), Documents.last());
        look();
    }

private:
    static constexpr const char* Blur = "Filter/Blur/Gaussian Blur";

    OrvNodeGraphView* view() const { return m_pPalette->view(); }
    OrvNodeGraphScene* scene() const { return static_cast<OrvNodeGraphScene*>(view()->scene()); }
    QWidget* canvas() const { return view()->viewport(); }
    OrvSnBaseNode* merge() const { return m_pLayer->blendNode(); }
    OrvSnBaseNode* paintNode() const { return m_pPaint; }
    OrvNodeItem* itemOf(const OrvSnBaseNode* pNode) const
    {
        scene()->synchronize();
        return scene()->item(pNode);
    }
    static int historyLength() { return OrvUndoManager::instance().stack()->count(); }
    static QString history() { return OrvUndoManager::instance().stack()->undoText(); }
    int wireCount() const
    {
        int Count = 0;
        for (const QGraphicsItem* pItem : scene()->items())
            Count += qgraphicsitem_cast<const OrvWireItem*>(pItem) != nullptr;
        return Count;
    }

    /// Left below everything else, with all of the graph in sight.
    OrvSnBaseNode* add(const QString& Key)
    {
        OrvSnBaseNode* pNode = OrvNodeGraphCreation::add(
            Key, {m_pPalette->network(), QPointF(-150, 260), nullptr, QString(), {}});
        frameAll();
        return pNode;
    }

    OrvSnBaseNode* addBlurAsMask()
    {
        OrvSnBaseNode* pBlur = add(Blur);
        drag(output(pBlur), input(merge(), OrvSnNames::Mask));
        return pBlur;
    }

    QPoint onCanvas(const QPointF& Place) const { return view()->mapFromScene(Place); }
    QPoint middle(const OrvSnBaseNode* pNode) const
    {
        return onCanvas(itemOf(pNode)->mapToScene(itemOf(pNode)->titleBar().center()));
    }
    QPoint input(const OrvSnBaseNode* pNode, const QString& Name) const
    {
        return onCanvas(itemOf(pNode)->inputPoint(Name));
    }
    QPoint output(const OrvSnBaseNode* pNode) const
    {
        return onCanvas(itemOf(pNode)->outputPoint(QString()));
    }
    QPoint emptyPlace() const
    {
        for (int Y = canvas()->height() - 6; Y > 0; Y -= 10) {
            for (int X = 6; X < canvas()->width(); X += 10) {
                const OrvNodeGraphScene::Spot Spot = scene()->spotAt(view()->mapToScene(X, Y), true);
                if (!Spot.pNode && !Spot.pWire)
                    return {X, Y};
            }
        }
        return {};
    }
    void move(const QPoint& From, const QPoint& To) const
    {
        // QTest's own moves have no button pressed.
        for (int Step = 1; Step <= 8; ++Step) {
            const QPoint Place = From + (To - From) * Step / 8;
            QMouseEvent Move(QEvent::MouseMove, Place, canvas()->mapToGlobal(Place), Qt::NoButton,
                Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(canvas(), &Move);
        }
    }
    void drag(const QPoint& From, const QPoint& To) const
    {
        QTest::mousePress(canvas(), Qt::LeftButton, Qt::NoModifier, From);
        move(From, To);
        QTest::mouseRelease(canvas(), Qt::LeftButton, Qt::NoModifier, To);
        scene()->synchronize();
    }
    void click(const QPoint& Place, Qt::KeyboardModifiers Modifiers = Qt::NoModifier) const
    {
        QTest::mouseClick(canvas(), Qt::LeftButton, Modifiers, Place);
    }
    void doubleClick(const QPoint& Place) const
    {
        QTest::mouseClick(canvas(), Qt::LeftButton, Qt::NoModifier, Place);
        QTest::mouseDClick(canvas(), Qt::LeftButton, Qt::NoModifier, Place);
    }
    void frameAll() const
    {
        scene()->synchronize();
        m_pPalette->frameAll();
    }
    /// What the menu adds here.
    QStringList offeredKeys() const
    {
        QMenu Menu;
        QStringList Keys;
        OrvNodeGraphCreation::fillMenu(
            &Menu, m_pPalette->network(), [&](const QString& Key) { Keys.append(Key); });
        triggerAll(&Menu);
        return Keys;
    }
    static void triggerAll(const QMenu* pMenu)
    {
        for (QAction* pAction : pMenu->actions()) {
            if (pAction->menu())
                triggerAll(pAction->menu());
            else if (!pAction->isSeparator())
                pAction->trigger();
        }
    }

    void checkShown() const
    {
        scene()->synchronize();
        const QVector<OrvSnBaseNode*>& Nodes = m_pPalette->network()->nodes();
        QCOMPARE(scene()->nodeItems().size(), Nodes.size());
        int Connections = 0;
        for (OrvSnBaseNode* pNode : Nodes) {
            const OrvNodeItem* pItem = scene()->item(pNode);
            QVERIFY(pItem && pItem->node() == pNode);
            QCOMPARE(pItem->look().Title, OrvNodeLook::titleOf(pNode));
            if (!pNode->position().isNull())
                QVERIFY((pItem->pos() - pNode->position()).x() >= 0.0);
            for (const OrvSnBaseNode::Input& Input : pNode->inputs()) {
                const OrvWireItem* pWire = pItem->wireInto(Input.Name);
                QCOMPARE(pWire != nullptr, Input.pNode != nullptr);
                if (pWire)
                    QCOMPARE(pWire->source()->node(), Input.pNode);
                Connections += Input.pNode != nullptr;
            }
        }
        QCOMPARE(wireCount(), Connections);
    }

    static qreal heightOf(const OrvSnBaseNode* pNode) { return 40.0 + 16.0 * pNode->inputs().size(); }
    static OrvNodeGraphLayout::Places arranged(const QVector<OrvSnBaseNode*>& Nodes)
    {
        return OrvNodeGraphLayout::arrange(Nodes, &heightOf);
    }
    static void checkTidy(const QVector<OrvSnBaseNode*>& Nodes)
    {
        const OrvNodeGraphLayout::Places Places = arranged(Nodes);
        QCOMPARE(Places, arranged(Nodes));
        for (int First = 0; First < Nodes.size(); ++First) {
            const QPointF Place = Places.value(Nodes[First]);
            for (const OrvSnBaseNode::Input& Input : Nodes[First]->inputs())
                QVERIFY(!Input.pNode || Places.value(Input.pNode).x() < Place.x());
            for (int Second = 0; Second < First; ++Second) {
                const QPointF Other = Places.value(Nodes[Second]);
                const qreal Upper = Place.y() < Other.y() ? heightOf(Nodes[First]) : heightOf(Nodes[Second]);
                QVERIFY(Place.x() != Other.x() || qAbs(Place.y() - Other.y()) >= Upper);
            }
        }
    }

    OrvSnBaseNode* anyNode()
    {
        const QVector<OrvSnBaseNode*>& Nodes = m_pPalette->network()->nodes();
        return Nodes[m_Random.bounded(Nodes.size())];
    }

    void randomEdit()
    {
        namespace Commands = OrvNodeGraphCommands;
        static const QStringList Keys{"Merge", "ImageSet", "BottomTransparency", "Pass", "Graph", Blur,
            "Filter/Adjust/Invert Linear", "Procedural/Basic/Solid Color"};
        OrvSnBaseNode* pNode = anyNode();
        const QString Input = pNode->inputs().isEmpty()
            ? QString()
            : pNode->inputs()[m_Random.bounded(pNode->inputs().size())].Name;
        switch (m_Random.bounded(16)) {
        case 4:
            Commands::disconnect({{pNode, Input}});
            return;
        case 5:
        case 6:
            if (m_pPalette->network()->nodes().size() < 60)
                OrvNodeGraphCreation::add(Keys[m_Random.bounded(Keys.size())],
                    {m_pPalette->network(), QPointF(m_Random.bounded(900), m_Random.bounded(500)), anyNode(),
                        QString(), {pNode, Input}});
            return;
        case 7:
            Commands::remove({pNode, anyNode()}, {});
            return;
        case 8:
            if (m_pPalette->network()->nodes().size() < 60)
                Commands::duplicate({pNode});
            return;
        case 9:
            Commands::toggleEnabled({pNode});
            return;
        case 10:
            if (m_Random.bounded(3) == 0)
                Commands::toggleLocked({pNode});
            else
                pNode->setLocked(false);
            return;
        case 11:
            Commands::rename(pNode, QString("Name %1").arg(m_Random.bounded(9)));
            return;
        case 12:
            // Any step of the way: neither chain nor group may be what it was.
            if (pNode->nestedNetwork())
                m_pPalette->enter(pNode->nestedNetwork());
            else
                m_pPalette->leaveGraph();
            return;
        case 13:
            scene()->clearSelection();
            itemOf(pNode)->setSelected(true);
            click(middle(pNode));
            return;
        case 14:
            if (OrvLayer* pLayer = OrvLayerManager::instance().getLayer(pNode, true))
                pLayer->setVisible(!pLayer->isVisible());
            return;
        case 15:
            m_Random.bounded(2)
                ? Commands::move({{pNode, QPointF(m_Random.bounded(900), m_Random.bounded(900))}})
                : Commands::arrangeAll(m_pPalette->network());
            return;
        default:
            Commands::connect({anyNode(), QString(), pNode, Input});
        }
    }

    static void forgetEvaluation(const OrvShaderNetwork* pNetwork)
    {
        for (OrvSnBaseNode* pNode : pNetwork->nodes()) {
            OrvNodeEvaluation::removed(pNode);
            if (const OrvShaderNetwork* pNested = pNode->nestedNetwork())
                forgetEvaluation(pNested);
        }
    }

    /// As the palettes and the canvas would; the picture is the one that a fresh evaluation gives.
    void look()
    {
        QApplication::processEvents();
        checkShown();
        OrvMainWindow::instance().grab();
        const QVector<OrvSnBaseNode*> Nodes = m_pProject->network()->nodes();
        QVector<OrvColor> Seen;
        for (const OrvSnBaseNode* pNode : Nodes)
            Seen.append(m_pProject->pixel(pNode));
        forgetEvaluation(m_pProject->network());
        for (int Index = 0; Index < Nodes.size(); ++Index)
            QVERIFY2(m_pProject->same(Seen[Index], m_pProject->pixel(Nodes[Index])),
                qPrintable(Nodes[Index]->name()));
        for (OrvSnBaseNode* pNode : Nodes) {
            OrvLayer* pLayer = OrvLayerManager::instance().getLayer(pNode, true);
            if (!pLayer)
                continue;
            pLayer->path(true);
            pLayer->isModifiable();
            pLayer->contentNode();
            pLayer->cost();
            for (const OrvLayerStack* pStack : pLayer->stacks())
                pStack->allLayers();
        }
    }

    OrvNodeGraphPalette* m_pPalette = nullptr;
    std::unique_ptr<OrvTestProject> m_pProject;
    OrvLayer* m_pLayer = nullptr;
    OrvSnBaseNode* m_pPaint = nullptr; ///< the layer's, wherever it is connected later
    QRandomGenerator m_Random;
};

QTEST_MAIN(TstNodeGraph)
#include "TstNodeGraph.moc"
