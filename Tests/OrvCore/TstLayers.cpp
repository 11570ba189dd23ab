#include "Tests/Support/OrvTestProject.h"

#include "OrvCore/Layers/OrvEditObstacle.h"
#include "OrvCore/Layers/OrvLayerClipboard.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnOperationNode.h"

#include <QtCore/QMimeData>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <QtTest/QtTest>
#include <QtWidgets/QUndoStack>

#include <array>
#include <functional>

namespace {

const OrvColor Red(1.0f, 0.0f, 0.0f), Green(0.0f, 1.0f, 0.0f), Blue(0.0f, 0.0f, 1.0f);
const QString Invert = QStringLiteral("Filter/Adjust/Invert Linear");
const QString Noise = QStringLiteral("Procedural/Pattern/Checkerboard");

OrvLayerManager& layers()
{
    return OrvLayerManager::instance();
}

int undoCount()
{
    return OrvUndoManager::instance().stack()->count();
}

/// Paintable layers of these names, the last on top.
template <typename... Texts>
std::array<OrvLayer*, sizeof...(Texts)> paint(OrvTestProject& Project, Texts... Names)
{
    return {Project.paint(Names)...};
}

/// Moves a layer, as dropping it above another one does.
bool move(OrvLayer* pLayer, OrvSnBaseNode* pBelow, OrvLayerStack* pStack)
{
    return OrvLayerStreamUtils::insertLayerAfter(pLayer, pBelow, pStack);
}

QByteArray clipboardBytes()
{
    return QGuiApplication::clipboard()->mimeData()->data(
        OrvLayerClipboard::mimeType(OrvLayerClipboard::Layers));
}

/// What another process would leave there.
void setClipboardBytes(const QByteArray& Bytes)
{
    auto* pData = new QMimeData;
    pData->setData(OrvLayerClipboard::mimeType(OrvLayerClipboard::Layers), Bytes);
    QGuiApplication::clipboard()->setMimeData(pData);
}

} // namespace

/// Layers and stacks as the palettes use them, on a real document.
class TstLayers : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { OrvProjectManager::instance().closeProject(); }

    void newLayersGoWhereTheFlagsSay()
    {
        OrvTestProject Project;
        OrvShaderInput* pChannel = Project.channel();
        QVERIFY(pChannel->isEmpty());
        OrvLayer* pA = pChannel->createPaintableLayer(30, nullptr, "A", Red);
        OrvLayer* pB = pChannel->createPaintableLayer(30, nullptr, "B", Red);
        pA->makeCurrent(false, true);
        OrvLayer* pAbove = pChannel->createPaintableLayer(30, nullptr, QString(), Red);
        QCOMPARE(Project.tree(), QString("B Layer A"));
        QCOMPARE(layers().currentLayer(), pAbove);
        QVERIFY(pAbove->isSelected() && !pA->isSelected());
        pChannel->createPaintableLayer(1, nullptr, "Base", Red);
        QCOMPARE(layers().currentLayer(), pAbove);
        pChannel->createPaintableLayer(0, pB, "Top", Red);
        QCOMPARE(Project.tree(), QString("Top B Layer A Base"));

        pB->makeCurrent(false, true);
        OrvLayer* pGroup = pChannel->createGroupLayer(30);
        pChannel->createPaintableLayer(94, nullptr, "Inside", Red);
        QCOMPARE(Project.tree(), QString("Top Group[Inside] B Layer A Base"));
        // The current layer stands inside: above it means inside too.
        pChannel->createPaintableLayer(30, nullptr, "Inside too", Red);
        pGroup->makeCurrent(false, true);
        pChannel->createPaintableLayer(30, nullptr, "Outside", Red);
        QCOMPARE(Project.tree(), QString("Top Outside Group[Inside too Inside] B Layer A Base"));
        QVERIFY(!pChannel->createAdjustmentLayer("Filter/No/Such", 30));
        QVERIFY(!pChannel->createAdjustmentLayer(Noise, 30));
        QVERIFY(!pChannel->createProceduralLayer(Invert, 30));
    }

    void namesAreUniqueAndGivenAgain()
    {
        OrvTestProject Project;
        for (int Count = 0; Count < 3; ++Count)
            Project.channel()->createPaintableLayer(30, nullptr, QString(), Red);
        QCOMPARE(Project.tree(), QString("Layer 3 Layer 2 Layer"));
        Project.undo();
        Project.layer("Layer 2")->setName("Rust");
        Project.channel()->createPaintableLayer(30, nullptr, QString(), Red);
        QCOMPARE(Project.tree(), QString("Layer 2 Rust Layer"));
        Project.channel()->createPaintableLayer(30, nullptr, "Layer", Red);
        QCOMPARE(Project.channel()->layerList().first()->name(), QString("Layer"));
    }

    void theStackIsSeenAsItIsBlended()
    {
        OrvTestProject Project;
        Project.paint("Base", Red);
        OrvLayer* pTop = Project.paint("Top", Green);
        QVERIFY(Project.same(Project.pixel(), Green));
        pTop->setVisible(false);
        QVERIFY(Project.same(Project.pixel(), Red));
        pTop->setVisible(true);
        pTop->blendNode()->setUserAttributeValue(OrvMergeAttributes::Amount, 0.5);
        QVERIFY(Project.same(Project.pixel(), OrvColor(0.5f, 0.5f, 0.0f)));
        pTop->addMaskImageSetAndFillBlack();
        QVERIFY(Project.same(Project.pixel(), Red));
        pTop->setMaskEnabled(false);
        QVERIFY(Project.same(Project.pixel(), OrvColor(0.5f, 0.5f, 0.0f)));
        pTop->deleteMask();
        Project.channel()->createAdjustmentLayer(Invert, 0);
        QVERIFY(Project.same(Project.pixel(), OrvColor(0.5f, 0.5f, 1.0f)));
    }

    void adjustmentsFollowWhatLiesBelowThem()
    {
        OrvTestProject Project;
        OrvLayer* pBase = Project.paint("Base", Red);
        OrvLayer* pInvert = Project.channel()->createAdjustmentLayer(Invert, 0);
        QVERIFY(pInvert->isAdjustmentLayer() && !pInvert->isProceduralLayer());
        QVERIFY(Project.same(Project.pixel(), OrvColor(0.0f, 1.0f, 1.0f)));
        OrvLayer* pBetween = Project.channel()->createPaintableLayer(0, pBase, "Between", Blue);
        QCOMPARE(pInvert->adjustmentNode()->preferredInputNode(), pBetween->blendNode());
        QVERIFY(Project.same(Project.pixel(), OrvColor(1.0f, 1.0f, 0.0f)));
        // Moved below, it changes only the layer under it.
        QVERIFY(move(pInvert, pBase->blendNode(), Project.channel()));
        QVERIFY(Project.same(Project.pixel(), Blue));
        Project.channel()->deleteLayers({pBetween});
        QVERIFY(Project.same(Project.pixel(), OrvColor(0.0f, 1.0f, 1.0f)));
        Project.channel()->deleteLayers({pBase});
        QVERIFY(OrvLayerStreamUtils::isChainEnd(pInvert->adjustmentNode()->preferredInputNode()));

        pInvert->addSecondaryAdjustmentLayerFromKey(Invert);
        QVERIFY(pInvert->hasSecondaryAdjustment()
            && pInvert->adjustmentNode() != pInvert->secondaryAdjustmentNode());
        OrvLayer* pNewBase = Project.channel()->createPaintableLayer(1, nullptr, "New", Red);
        QVERIFY(Project.same(Project.pixel(), Red));
        QCOMPARE(pInvert->adjustmentNode()->preferredInputNode(), pNewBase->blendNode());
        pInvert->removeSecondaryAdjustmentLayer();
        QVERIFY(Project.same(Project.pixel(), OrvColor(0.0f, 1.0f, 1.0f)));
    }

    void proceduralsAndGraphs()
    {
        OrvTestProject Project;
        OrvLayer* pProcedural = Project.channel()->createProceduralLayer(Noise, 30);
        QVERIFY(pProcedural && pProcedural->isProceduralLayer());
        OrvEngineNode* pResult = OrvNodeEvaluation::result(Project.channel()->node());
        QCOMPARE(pResult->boundingBox(), QRect(0, 0, 32, 32));
        OrvLayer* pGraph = Project.channel()->createGraphLayer(30);
        QVERIFY(pGraph->isGraphLayer());
        const OrvColor Before = Project.pixel();
        pGraph->setVisible(false);
        QVERIFY(Project.same(Project.pixel(), Before)); // an empty graph shows nothing
        const QByteArray With = Project.document();
        Project.undo();
        Project.undo();
        Project.redo();
        Project.redo();
        QCOMPARE(Project.document(), With);
        QCOMPARE(pGraph->graphNode()->nestedNetwork()->nodes().size(), 1);
    }

    void everyOperationIsUndoneAndDoneAgain_data()
    {
        QTest::addColumn<int>("Which");
        for (int Which = 0; Which < operations().size(); ++Which)
            QTest::newRow(operations()[Which].first) << Which;
    }

    void everyOperationIsUndoneAndDoneAgain()
    {
        QFETCH(int, Which);
        OrvTestProject Project;
        Project.addChannel("Bump");
        Project.paint("A", Red);
        OrvLayer* pB = Project.paint("B", Green);
        OrvLayer* pC = Project.paint("C", Blue);
        Project.paint("D", Red);
        pB->addMaskImageSet();
        pC->addLayerAdjustmentLayerFromKey(Invert);
        OrvLayer* pGroup = Project.group("G", {pB, pC});
        pGroup->addMaskImageSet();
        pC->makeCurrent(false, true);
        OrvUndoManager::instance().clear();
        const QByteArray Before = Project.document();
        const OrvColor ColorBefore = Project.pixel();

        operations()[Which].second(Project);
        QCOMPARE(undoCount(), 1);
        const QByteArray After = Project.document();
        const QString TreeAfter = Project.tree();
        const OrvColor ColorAfter = Project.pixel();
        QVERIFY(After != Before);
        for (int Round = 0; Round < 2; ++Round) {
            Project.undo();
            QCOMPARE(Project.document(), Before);
            QVERIFY(Project.same(Project.pixel(), ColorBefore, 0.001f));
            QCOMPARE(Project.tree(), QString("D G[C B] A"));
            Project.redo();
            QCOMPARE(Project.document(), After);
            QVERIFY(Project.same(Project.pixel(), ColorAfter, 0.001f));
            QCOMPARE(Project.tree(), TreeAfter);
        }
    }

    void groupingKeepsThePicture()
    {
        OrvTestProject Project;
        Project.paint("Base", OrvColor(0.5f, 0.5f, 0.5f));
        OrvLayer* pMultiply = Project.paint("Multiply", OrvColor(0.5f, 1.0f, 1.0f));
        pMultiply->blendNode()->setUserAttributeValue(OrvMergeAttributes::BlendMode, "Multiply");
        OrvLayer* pInvert = Project.channel()->createAdjustmentLayer(Invert, 0);
        const OrvColor Before = Project.pixel();
        QVERIFY(Project.same(Before, OrvColor(0.75f, 0.5f, 0.5f)));
        OrvLayer* pGroup = Project.group("Group", {pMultiply, pInvert});
        QVERIFY(pGroup->isGroupLayer());
        QCOMPARE(pMultiply->parentGroup(), pGroup);
        QVERIFY(OrvLayerStreamUtils::isLayerGroupPassThrough(pGroup->blendNode()));
        QVERIFY(Project.same(Project.pixel(), Before));
        OrvLayerStreamUtils::setLayerGroupPassThrough(pGroup->blendNode(), false);
        QVERIFY(!Project.same(Project.pixel(), Before));
        Project.undo();
        Project.select({pGroup});
        Project.channel()->ungroupLayers();
        QVERIFY(Project.same(Project.pixel(), Before));
        QCOMPARE(Project.tree(), QString("Invert Linear Multiply Base"));
    }

    void whatGoesWithAGroupIsTold()
    {
        OrvTestProject Project;
        OrvLayer* pGroup = Project.group("Group", {Project.paint("A")});
        QSignalSpy Told(&layers(), &OrvLayerManager::refused);
        Project.select({pGroup});
        Project.channel()->ungroupLayers();
        QVERIFY(Told.isEmpty());
        Project.undo();
        pGroup->addMaskImageSet();
        pGroup->blendNode()->setUserAttributeValue(OrvMergeAttributes::BlendMode, "Multiply");
        pGroup->blendNode()->setUserAttributeValue(OrvMergeAttributes::Amount, 0.5);
        Project.select({pGroup});
        Project.channel()->ungroupLayers();
        QCOMPARE(Told.size(), 1);
        QVERIFY(Told.first().first().toString().endsWith("'Group' (mask, blend mode, amount)"));
        Project.undo();
        OrvLayer* pLocked = Project.group("Locked", {Project.paint("B")});
        pLocked->setLocked(true);
        Project.select({pGroup, pLocked});
        Project.channel()->ungroupLayers();
        QCOMPARE(Told.size(), 2);
        const QString Both = Told.last().first().toString();
        QVERIFY(Both.contains("'Locked' is locked") && Both.endsWith("'Group' (mask, blend mode, amount)"));
    }

    void groupingRefusesWhatCannotBeGrouped()
    {
        OrvTestProject Project;
        const auto [pA, pB, pC] = paint(Project, "A", "B", "C");
        OrvLayer* pGroup = Project.group("G", {pA, pB});
        QString Error;
        const int Count = undoCount();
        QVERIFY(!Project.channel()->groupLayers(Error, 30));
        QVERIFY(Error.isEmpty()); // nothing is selected
        QVERIFY(!Project.channel()->groupLayers(Error, 30, {pB, pC}));
        QVERIFY(Error.contains("'C'") && Error.contains("'B'"));
        pC->setLocked(true);
        QVERIFY(!Project.channel()->groupLayers(Error, 30, {pC, pGroup}));
        QVERIFY(Error.contains("'C' is locked"));
        QVERIFY(!Project.channel()->groupLayers(Error, 30, {pGroup}, pA));
        QVERIFY(!Error.isEmpty());
        QCOMPARE(Project.tree(), QString("C G[B A]"));
        QCOMPARE(undoCount(), Count + 1); // the lock
        // What a selected group holds goes with it.
        pC->setLocked(false);
        QVERIFY(Project.channel()->groupLayers(Error, 30, {pC, pGroup, pA}, nullptr, "All"));
        QCOMPARE(Project.tree(), QString("All[C G[B A]]"));
    }

    void mergingKeepsThePicture()
    {
        OrvTestProject Project;
        Project.paint("Base", OrvColor(0.5f, 0.5f, 0.5f));
        OrvLayer* pMultiply = Project.paint("Multiply", OrvColor(0.5f, 1.0f, 1.0f));
        pMultiply->blendNode()->setUserAttributeValue(OrvMergeAttributes::BlendMode, "Multiply");
        pMultiply->addMaskImageSet();
        Project.fill(pMultiply->maskImageSet(), QRect(0, 0, 16, 32), OrvColor::black());
        OrvLayer* pHalf = Project.paint("Half", OrvColor(0.0f, 0.0f, 1.0f, 0.5f));
        OrvLayer* pTop = Project.paint("Top");
        Project.fill(pTop->paintImageSet(), QRect(4, 4, 4, 4), Red);
        const QVector<QPoint> Places{{1, 1}, {5, 5}, {20, 20}};
        QVector<OrvColor> Before;
        for (const QPoint& Place : Places)
            Before.append(Project.pixel(Place));

        Project.select({pTop, pHalf});
        OrvLayer* pMerged = Project.channel()->mergeLayers();
        QCOMPARE(Project.tree(), QString("Top Multiply Base"));
        QVERIFY(pMerged->isPaintableLayer() && pMerged->isCurrent());
        QCOMPARE(layers().currentComponent(), pMerged->paintNode());
        for (int Index = 0; Index < Places.size(); ++Index)
            QVERIFY(Project.same(Project.pixel(Places[Index]), Before[Index]));
        // Alone it is still half transparent: what lies below may change.
        QVERIFY(Project.same(Project.pixel(pMerged->paintNode()), OrvColor(0.0f, 0.0f, 1.0f, 0.5f)));

        Project.select({pMerged, pMultiply}); // needs its base
        pMerged = Project.channel()->mergeLayers();
        QCOMPARE(Project.tree(), QString("Top Base"));
        for (int Index = 0; Index < Places.size(); ++Index)
            QVERIFY(Project.same(Project.pixel(Places[Index]), Before[Index]));
    }

    void mergingTellsWhatIsHiddenAndKeepsTheTag()
    {
        OrvTestProject Project;
        const QColor Tag = OrvLayerUtils::validLayerColors().value("red");
        const QList<OrvLayer*> Layers{Project.paint("A"), Project.paint("B"), Project.paint("C")};
        for (OrvLayer* pLayer : Layers)
            pLayer->setColor(Tag);
        Layers[1]->setVisible(false);
        QSignalSpy Told(&layers(), &OrvLayerManager::refused);
        OrvLayer* pGroup = Project.group("G", {Layers[1], Layers[2]});
        Project.select({pGroup, Layers[0]});
        pGroup->setColor(Tag);
        const OrvLayer* pMerged = Project.channel()->mergeLayers();
        QCOMPARE(pMerged->color(), Tag);
        QCOMPARE(Told.size(), 1);
        QVERIFY(Told.last().first().toString().endsWith("'B'"));

        Project.undo();
        pGroup->setColor(QColor());
        Layers[1]->setVisible(true);
        Project.select({pGroup, Layers[0]});
        pMerged = Project.channel()->mergeLayers();
        QVERIFY(!pMerged->color().isValid());
        QCOMPARE(Told.size(), 1);

        Project.undo();
        pGroup->setVisible(false);
        Project.select({pGroup, Layers[0]});
        pMerged = Project.channel()->mergeLayers();
        QCOMPARE(pMerged->name(), QString("A")); // what it shows, though the group was the upper one
        QCOMPARE(Told.size(), 2);

        Project.undo();
        Layers[0]->setVisible(false);
        Project.select({pGroup, Layers[0]});
        QVERIFY(!Project.channel()->mergeLayers());
        QCOMPARE(Told.size(), 3);
    }

    void masksAndMaskStacks()
    {
        OrvTestProject Project;
        Project.paint("Base", Red);
        OrvLayer* pTop = Project.paint("Top", Green);
        QSignalSpy MaskChanged(pTop, &OrvLayer::maskEnabledChanged);
        pTop->addMaskImageSetAndFillBlack();
        QVERIFY(pTop->hasMaskImageSet() && !pTop->hasMaskStack() && !pTop->maskStack());
        QVERIFY(MaskChanged.size() > 0);
        QVERIFY(!pTop->addMaskImageSet(1, OrvColor::white())); // has one already
        QVERIFY(Project.same(Project.pixel(), Red));

        OrvLayerStack* pMask = pTop->convertMaskToMaskStack();
        QVERIFY(pMask && pTop->hasMaskStack() && !pTop->hasMaskImageSet() && pMask->isMaskStack());
        QCOMPARE(pMask, pTop->maskStack());
        QCOMPARE(Project.tree(pMask), QString("Mask"));
        QCOMPARE(pMask->name(), QString("Top"));
        QVERIFY(Project.same(Project.pixel(), Red));
        OrvLayer* pWhite = Project.paint("White", OrvColor::white(), pMask);
        QVERIFY(pMask->isWithinMask() && !Project.channel()->isWithinMask());
        QVERIFY(Project.same(Project.pixel(), Green));
        pWhite->blendNode()->setUserAttributeValue(OrvMergeAttributes::Amount, 0.25);
        QVERIFY(Project.same(Project.pixel(), OrvColor(0.75f, 0.25f, 0.0f), 0.02f));
        QCOMPARE(pWhite->path(), QString("Diffuse/Top/Mask/White"));

        QPointer<OrvLayerStack> pGone = pMask;
        pTop->deleteMask();
        QVERIFY(!pTop->hasMask());
        QVERIFY(Project.same(Project.pixel(), Green));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!pGone);
        Project.undo();
        QCOMPARE(Project.tree(pTop->maskStack()), QString("White Mask"));
    }

    void adjustmentStacksChangeOnlyTheirLayer()
    {
        OrvTestProject Project;
        Project.paint("Base", Red);
        OrvLayer* pTop = Project.paint("Top", OrvColor(0.0f, 1.0f, 0.0f, 0.5f));
        QSignalSpy Changed(pTop, &OrvLayer::adjustmentEnabledChanged);
        QVERIFY(!pTop->hasAdjustmentStack() && pTop->canHaveAdjustmentStack());
        OrvLayer* pInvert = pTop->addLayerAdjustmentLayerFromKey(Invert);
        QVERIFY(pInvert && pTop->hasAdjustmentStack() && pTop->isPaintableLayer());
        QVERIFY(Changed.size() > 0);
        OrvLayerStack* pStack = pTop->adjustmentStack();
        QVERIFY(pStack->isAdjustmentStack() && !pStack->isGroupStack());
        QCOMPARE(pStack->bottomNode(), pTop->adjustmentStackBottomNode());
        QVERIFY(OrvLayerStreamUtils::isValidBottomTransparencyNode(pStack->bottomNode()));
        QVERIFY(Project.same(Project.pixel(), OrvColor(1.0f, 0.0f, 0.5f)));
        pTop->addLayerAdjustmentLayerFromKey(Invert, "Again");
        QCOMPARE(Project.tree(pStack), QString("Again Invert Linear"));
        QVERIFY(Project.same(Project.pixel(), OrvColor(0.5f, 0.5f, 0.0f)));
        Project.layer("Again", pStack)->setVisible(false);
        pTop->disableAdjustmentStack();
        QVERIFY(!pTop->isAdjustmentStackEnabled());
        QVERIFY(Project.same(Project.pixel(), OrvColor(0.5f, 0.5f, 0.0f)));
        pTop->enableAdjustmentStack();
        QVERIFY(Project.same(Project.pixel(), OrvColor(1.0f, 0.0f, 0.5f)));
        pTop->removeLayerAdjustment();
        QVERIFY(!pTop->hasAdjustmentStack() && pTop->isPaintableLayer());
        QVERIFY(!pStack->topNode() || !pTop->adjustmentStack());

        // Around a group it takes the group's picture, and the group stays a group.
        OrvLayer* pGroup = Project.group("Group", {pTop});
        pGroup->addLayerAdjustmentLayerFromKey(Invert);
        QVERIFY(pGroup->isGroupLayer());
        QCOMPARE(Project.tree(), QString("Group[Top] Base"));
        QCOMPARE(pTop->parentGroup(), pGroup);
        QVERIFY(Project.same(Project.pixel(), OrvColor(1.0f, 0.0f, 0.5f)));
        QVERIFY(Project.paint("New", OrvColor(0.0f, 0.0f, 1.0f), OrvLayerStreamUtils::groupStack(pGroup)));
        QCOMPARE(Project.tree(), QString("Group[New Top] Base"));
        QVERIFY(Project.same(Project.pixel(), OrvColor(1.0f, 1.0f, 0.0f)));
    }

    void locksReachInwardsOnly()
    {
        OrvTestProject Project;
        const auto [pA, pB, pC] = paint(Project, "A", "B", "C");
        OrvLayer* pInner = Project.group("Inner", {pA, pB});
        OrvLayer* pOuter = Project.group("Outer", {pInner});
        pA->addMaskImageSet();
        OrvLayerStack* pMask = pA->convertMaskToMaskStack();
        OrvLayer* pInMask = pMask->layerList().first();
        OrvLayer* pInvert = Project.channel()->createAdjustmentLayer(Invert, 0); // above all of them

        QSignalSpy Refreshed(&layers(), &OrvLayerManager::layerStateRefreshed);
        pOuter->setLocked(true);
        QVERIFY(!pOuter->isModifiable() && !pInner->isModifiable() && !pA->isModifiable()
            && !pInMask->isModifiable());
        QVERIFY(pA->isDownstreamLocked() && !pOuter->isDownstreamLocked() && !pA->isLocked());
        QVERIFY(pC->isModifiable() && pInvert->isModifiable());
        QSet<OrvLayer*> Told;
        for (const QList<QVariant>& Arguments : Refreshed)
            Told.insert(Arguments.first().value<OrvLayer*>());
        QVERIFY(Told.contains(pInMask) && Told.contains(pB) && !Told.contains(pC));

        const QByteArray Locked = Project.document();
        const int Count = undoCount();
        OrvLayerStack* pInside = OrvLayerStreamUtils::groupStack(pInner);
        QVERIFY(!pInside->createPaintableLayer(30, nullptr, "X", Red));
        QVERIFY(!pMask->createPaintableLayer(30, nullptr, "X", Red));
        pInside->deleteLayers({pA});
        QVERIFY(!move(pB, pC->blendNode(), Project.channel()));
        QVERIFY(!move(pC, pB->blendNode(), pInside));
        QVERIFY(!pB->addMaskImageSet(1, Red));
        QVERIFY(!pB->addLayerAdjustmentLayerFromKey(Invert));
        Project.channel()->deleteLayers({pOuter});
        QCOMPARE(Project.document(), Locked);
        QCOMPARE(undoCount(), Count);
        // Beside a locked layer there is room.
        QVERIFY(Project.channel()->createPaintableLayer(0, pOuter, "X", Red));

        pA->unlockLockedAncestorLayers();
        QVERIFY(pA->isModifiable() && !pOuter->isLocked());
        // A locked adjustment layer reads what is below it, but does not hold it.
        pInvert->setLocked(true);
        QVERIFY(pC->isModifiable());

        Project.channel()->setLocked(true);
        QVERIFY(!pC->isModifiable() && !pInMask->isModifiable());
        QVERIFY(!Project.channel()->createPaintableLayer(30, nullptr, "Y", Red));
        QVERIFY(OrvLayerUtils::isModificationAllowedAt(Project.channel()->node()));
    }

    void cachesFreezeWhatIsBelow()
    {
        OrvTestProject Project;
        OrvLayer* pA = Project.paint("A", Red);
        OrvLayer* pB = Project.paint("B", Green);
        OrvLayer* pC = Project.paint("C");
        OrvLayer* pGroup = Project.group("Group", {pA});
        QSignalSpy Changed(pB, &OrvLayer::cacheStateChanged);
        pB->blendNode()->setCacheActive(OrvSnCacheActive);
        QCOMPARE(Changed.size(), 1);
        QVERIFY(pB->isCachedUpToHere() && !pB->isModifiable());
        QVERIFY(pGroup->isDownstreamCached() && pA->isDownstreamCached() && !pA->isModifiable());
        QVERIFY(!pC->isDownstreamCached() && pC->isModifiable());
        QVERIFY(!Project.channel()->createPaintableLayer(1, nullptr, "Base", Red));
        QVERIFY(Project.same(Project.pixel(), Green));
        pA->blendNode()->propagateDeleteCache(true);
        QVERIFY(!pB->isCachedUpToHere() && pA->isModifiable());

        pGroup->blendNode()->setUserAttributeValue(OrvMergeAttributes::LayerCached, true);
        QVERIFY(pGroup->isLayerCached() && pA->isDownstreamCached() && !pB->isDownstreamCached());
        pGroup->uncacheLayer();
        QVERIFY(pA->isModifiable());
    }

    void sharedContentIsOneContent()
    {
        OrvTestProject Project;
        OrvShaderInput* pBump = Project.addChannel("Bump");
        OrvLayer* pA = Project.paint("A", Red);
        OrvLayer* pB = Project.paint("B", Green);
        pA->addMaskImageSet();
        QVERIFY(!pA->isShared());
        OrvLayer* pShared = Project.channel()->shareLayer(pA, 30);
        QCOMPARE(Project.tree(), QString("B A A"));
        QVERIFY(pShared->isCurrent());
        QCOMPARE(pShared->paintImageSet(), pA->paintImageSet());
        QCOMPARE(pShared->maskImageSet(), pA->maskImageSet());
        QVERIFY(pA->isPaintComponentShared() && pA->isMaskComponentShared());
        QCOMPARE(pA->getOtherSharers(), QList<OrvLayer*>{pShared});
        pShared->setLocked(true);
        QVERIFY(!pA->isModifiable() && pA->isBlendingModifiable());
        pShared->setLocked(false);

        // Into another channel; a group shares what it holds.
        OrvLayer* pGroup = Project.group("Group", {pB});
        OrvLayer* pThere = pGroup->addSharedLayerAfter(pBump->topNode(), QString(), true);
        QVERIFY(pThere && pThere->isGroupLayer());
        QCOMPARE(Project.tree(pBump), QString("Group[B]"));
        QVERIFY(pB->isDownstreamShared());
        const QList<OrvLayer*> Around = pB->downstreamSharer();
        QVERIFY(Around.size() == 2 && Around.contains(pGroup) && Around.contains(pThere));
        QCOMPARE(pB->stacks().size(), 2);
        Project.paint("New", Blue, OrvLayerStreamUtils::groupStack(pThere));
        QCOMPARE(Project.tree(), QString("Group[New B] A A"));
        QCOMPARE(Project.tree(pBump), QString("Group[New B]"));
        QVERIFY(Project.same(Project.pixel(pBump->node()), Blue));
        pBump->setLocked(true);
        QVERIFY(!pB->isModifiable());
        pBump->setLocked(false);

        // Dissolved on one side, it stays on the other.
        Project.select({pGroup});
        Project.channel()->ungroupLayers();
        QCOMPARE(Project.tree(), QString("New B A A"));
        QCOMPARE(Project.tree(pBump), QString("Group[New B]"));

        pShared->unshareLayer();
        QVERIFY(!pA->isShared() && !pShared->isShared());
        QVERIFY(pShared->paintImageSet() != pA->paintImageSet());
        QVERIFY(Project.same(Project.pixel(pShared->paintNode()), Red));
        OrvLayer* pInvert = Project.channel()->createAdjustmentLayer(Invert, 0);
        QVERIFY(!Project.channel()->shareLayer(pInvert, 30));
    }

    void nothingContainsItself()
    {
        OrvTestProject Project;
        OrvShaderInput* pBump = Project.addChannel("Bump");
        OrvLayer* pA = Project.paint("A");
        OrvLayer* pGroup = Project.group("Group", {pA});
        OrvLayerStack* pInside = OrvLayerStreamUtils::groupStack(pGroup);
        pA->addMaskImageSet();
        OrvLayerStack* pMask = pA->convertMaskToMaskStack();
        const QByteArray Before = Project.document();
        QVERIFY(!pGroup->canBePlacedAt(pA->blendNode(), pInside));
        QVERIFY(!move(pGroup, pA->blendNode(), pInside));
        QVERIFY(!move(pGroup, pMask->topNode(), pMask));
        QVERIFY(!pGroup->addSharedLayerAfter(pMask->topNode(), QString(), true));
        QVERIFY(!OrvLayerStreamUtils::createLayerNodeAfter(
            pA->blendNode(), Project.channel()->node(), QString(), QString(), true));
        QCOMPARE(Project.document(), Before);

        OrvSnBaseNode* pChannelLayer = OrvLayerStreamUtils::createLayerNodeAfter(
            pBump->topNode(), Project.channel()->node(), QString(), QString(), true);
        OrvLayer* pShared = layers().getLayer(pChannelLayer);
        QCOMPARE(pShared->name(), QString("Diffuse"));
        QCOMPARE(pShared->sharedShaderInput(), Project.channel());
        QVERIFY(Project.channel()->isSharedLayers());
        QVERIFY(!move(pShared, pA->blendNode(), pInside));
        QVERIFY(!pShared->addSharedLayerAfter(pA->blendNode(), QString(), true));
        Project.select({pShared});
        pBump->copyToClipboard();
        const QByteArray Unpasted = Project.document();
        QString Error;
        QVERIFY(Project.channel()->pasteFromClipboard(22, Error).isEmpty());
        QVERIFY(Error.contains("'Diffuse'"));
        QCOMPARE(Project.document(), Unpasted);
        pShared->setLocked(true); // seen through the shared channel
        QVERIFY(!pA->isModifiable());
        QVERIFY(!OrvLayerUtils::isModificationAllowedAt(Project.channel()->node()));
    }

    void movingKeepsLayersWhole()
    {
        OrvTestProject Project;
        const auto [pA, pB, pC] = paint(Project, "A", "B", "C");
        OrvLayer* pGroup = Project.group("Group", {pB});
        OrvLayerStack* pInside = OrvLayerStreamUtils::groupStack(pGroup);
        QVERIFY(move(pC, pInside->bottomNode(), pInside));
        QCOMPARE(Project.tree(), QString("Group[B C] A"));
        QVERIFY(move(pA, pGroup->blendNode(), Project.channel()));
        QCOMPARE(Project.tree(), QString("A Group[B C]"));
        QVERIFY(move(pB, Project.channel()->bottomNode(), Project.channel()));
        QVERIFY(move(pC, pA->blendNode(), Project.channel()));
        QCOMPARE(Project.tree(), QString("C A Group[] B"));
        QVERIFY(pGroup->isGroupLayer() && pInside->isEmpty());
        const int Count = undoCount();
        QVERIFY(move(pC, pA->blendNode(), Project.channel())); // is there already
        QVERIFY(move(pC, pC->blendNode(), Project.channel()));
        QCOMPARE(undoCount(), Count);
        QCOMPARE(OrvLayerStreamUtils::layerNodeBelow(pC, Project.channel()), pA->blendNode());
    }

    void layersFitTheChannelTheyMoveTo()
    {
        OrvTestProject Project(QSize(32, 32));
        OrvShaderInput* pSmall = Project.addChannel("Small", QSize(16, 16));
        OrvLayer* pA = Project.paint("A", Red);
        Project.fill(pA->paintImageSet(), QRect(0, 0, 16, 32), Blue);
        pA->addMaskImageSet();
        OrvLayer* pProcedural = Project.channel()->createProceduralLayer(Noise, 0);
        OrvLayer* pGroup = Project.group("Group", {pA, pProcedural});
        pProcedural->setVisible(false);
        const QByteArray Before = Project.document();
        QVERIFY(move(pGroup, pSmall->topNode(), pSmall));
        QCOMPARE(pA->paintImageSet()->layout(), pSmall->layout());
        QCOMPARE(pA->maskImageSet()->layout(), pSmall->layout());
        QCOMPARE(
            OrvNodeEvaluation::result(pProcedural->proceduralNode())->boundingBox(), QRect(0, 0, 16, 16));
        QVERIFY(Project.same(Project.pixel(pSmall->node(), {4, 4}), Blue));
        QVERIFY(Project.same(Project.pixel(pSmall->node(), {12, 12}), Red));
        QVERIFY(Project.same(Project.pixel({4, 4}), OrvColor::clear()));
        Project.undo();
        QCOMPARE(Project.document(), Before);
        QVERIFY(Project.same(Project.pixel({14, 4}), Blue) && Project.same(Project.pixel({17, 30}), Red));
        Project.redo();
        QCOMPARE(pA->paintImageSet()->layout(), pSmall->layout());
        QVERIFY(Project.same(Project.pixel(pSmall->node(), {4, 4}), Blue));
    }

    void deletingFindsTheNextCurrentLayer()
    {
        OrvTestProject Project;
        const auto [pA, pB, pC] = paint(Project, "A", "B", "C");
        OrvLayer* pGroup = Project.group("Group", {pB});
        pB->makeCurrent(false, true);
        QCOMPARE(layers().currentComponent(), pB->paintNode());
        QSignalSpy Removed(&layers(), &OrvLayerManager::layersRemoved);
        QSignalSpy Current(&layers(), &OrvLayerManager::currentLayerChanged);
        const int Nodes = Project.network()->nodes().size();
        Project.channel()->deleteLayers({pGroup});
        QCOMPARE(Project.network()->nodes().size(), Nodes - 4); // group, its bottom, layer, paint
        QCOMPARE(Removed.size(), 1);
        QCOMPARE(layers().currentLayer(), pA);
        QCOMPARE(layers().currentComponent(), pA->paintNode());
        QCOMPARE(Current.size(), 1);
        Project.undo();
        QCOMPARE(layers().currentLayer(), pB);
        QCOMPARE(layers().currentComponent(), pB->paintNode());
        Project.redo();
        QCOMPARE(Removed.size(), 2);
        Project.select({pA, pC});
        Project.channel()->deleteLayers();
        QVERIFY(!layers().currentLayer() && !layers().currentComponent() && Project.channel()->isEmpty());
        QCOMPARE(Project.network()->nodes().size(), 2);
        Project.channel()->deleteLayers();
        QCOMPARE(Removed.size(), 3);
    }

    /// Which lock or cache it is and whose, and no word where nothing stands against an edit.
    void obstaclesAreNamed()
    {
        OrvTestProject Project;
        OrvLayer* pA = Project.paint("A", Red);
        OrvLayer* pGroup = Project.group("Group", {pA});
        OrvLayer* pTop = Project.paint("Top", Green);
        const auto isFree = [&] {
            return OrvEditObstacle::of(pA).isEmpty() && OrvEditObstacle::at(pA->blendNode()).isEmpty()
                && OrvEditObstacle::ofSharers(pTop).isEmpty()
                && OrvEditObstacle::of(Project.channel()).isEmpty();
        };
        QVERIFY(isFree());
        pA->setLocked(true);
        QCOMPARE(OrvEditObstacle::of(pA), QString("'A' is locked"));
        QCOMPARE(OrvEditObstacle::at(pA->blendNode()), QString()); // a layer may go above it
        Project.undo();
        pGroup->setLocked(true);
        QCOMPARE(OrvEditObstacle::of(pA), QString("'A' is in 'Group', which is locked"));
        QCOMPARE(OrvEditObstacle::at(pA->blendNode()), QString("'Group' is locked"));
        Project.undo();
        Project.channel()->setLocked(true);
        QCOMPARE(OrvEditObstacle::of(pA), QString("'A' is in 'Diffuse', which is locked"));
        QCOMPARE(OrvEditObstacle::of(Project.channel()), QString("'Diffuse' is locked"));
        Project.undo();
        pGroup->cacheLayer();
        QCOMPARE(OrvEditObstacle::of(pA), QString("'A' is in 'Group', which is cached"));
        Project.undo();
        pTop->cacheUpToHere();
        for (const OrvLayer* pBelow : {pA, pGroup})
            QCOMPARE(OrvEditObstacle::of(pBelow),
                QString("'%1' is below 'Top', which is cached with all below it").arg(pBelow->name()));
        QCOMPARE(OrvEditObstacle::of(pTop), QString("'Top' is cached with all below it"));
        Project.undo();
        OrvLayer* pSharer = Project.channel()->shareLayer(pTop, 0);
        pSharer->setName("Sharer");
        pSharer->setLocked(true);
        QCOMPARE(OrvEditObstacle::ofSharers(pTop), QString("'Top' is shared, and 'Sharer' is locked"));
        QCOMPARE(OrvEditObstacle::of(pTop), QString());
        pSharer->setLocked(false);
        QVERIFY(isFree());
        QCOMPARE(OrvEditObstacle::several({"a", "", "b", "c", "d", "e"}), QString("a; b; c; and 2 more"));
    }

    void whatStaysOfADeletionIsNamed()
    {
        OrvTestProject Project;
        OrvLayer* pLocked = Project.paint("Locked");
        OrvLayer* pFree = Project.paint("Free");
        OrvLayer* pInside = Project.paint("Inside");
        OrvLayer* pGroup = Project.group("Group", {pInside});
        pLocked->setLocked(true);
        pGroup->setLocked(true);
        QSignalSpy Refused(&layers(), &OrvLayerManager::refused);
        Project.channel()->deleteLayers({pLocked, pFree, pGroup});
        QCOMPARE(Project.tree(), QString("Group[Inside] Locked"));
        QCOMPARE(Refused.takeFirst().first().toString(),
            QString("Not all layers were removed: 'Group' is locked; 'Locked' is locked"));
        OrvLayerStreamUtils::groupStack(pGroup)->deleteLayers({pInside});
        QCOMPARE(Refused.takeFirst().first().toString(),
            QString("No layer was removed: 'Inside' is in 'Group', which is locked"));
        // A new layer says the same of its place.
        QVERIFY(!OrvLayerStreamUtils::groupStack(pGroup)->createPaintableLayer(Red, 0));
        QCOMPARE(
            Refused.takeFirst().first().toString(), QString("No layer can be added here: 'Group' is locked"));
        QVERIFY(Refused.isEmpty());
    }

    void theCurrentLayerLeavesWithTheMaskItStandsIn()
    {
        OrvTestProject Project;
        OrvLayer* pBase = Project.paint("Base", Red);
        OrvLayer* pTop = Project.paint("Top", Green);
        pTop->addMaskImageSet();
        OrvLayer* pSpots = Project.paint("Spots", OrvColor::white(), pTop->convertMaskToMaskStack());
        OrvLayer* pInvert = pBase->addLayerAdjustmentLayerFromKey(Invert);
        for (OrvLayer* pInside : {pSpots, pInvert}) {
            layers().setCurrentLayer(Project.network(), pInside);
            OrvLayer* pGoing = pInside == pSpots ? pTop : pBase;
            Project.channel()->deleteLayers({pGoing});
            QCOMPARE(layers().currentLayer(), pGoing == pTop ? pBase : pTop);
            Project.undo();
            QCOMPARE(layers().currentLayer(), pInside);
            QVERIFY(Project.channel()->flattenUI());
            QCOMPARE(layers().currentLayer(), Project.channel()->layerList().first());
            Project.undo();
            QCOMPARE(layers().currentLayer(), pInside);
        }
    }

    void copiesAreIndependent()
    {
        OrvTestProject Project;
        OrvShaderInput* pSmall = Project.addChannel("Small", QSize(16, 16));
        OrvLayer* pA = Project.paint("A", Red);
        Project.fill(pA->paintImageSet(), QRect(0, 0, 8, 8), Blue);
        pA->addMaskImageSet();
        OrvLayer* pGroup = Project.group("Group", {pA});
        pGroup->setLocked(true);
        OrvLayer* pCopy
            = OrvLayerStreamUtils::addDuplicateLayerAbove(pGroup, pGroup->blendNode(), Project.channel());
        QCOMPARE(Project.tree(), QString("Group Copy[A] Group[A]"));
        QVERIFY(!pCopy->isLocked());
        Project.fill(pA->paintImageSet(), QRect(0, 0, 32, 32), Green);
        QVERIFY(Project.same(Project.pixel({1, 1}), Blue) && Project.same(Project.pixel({20, 20}), Red));
        Project.select({pCopy});
        Project.channel()->duplicateLayers();
        QCOMPARE(Project.tree(), QString("Group Copy 2[A] Group Copy[A] Group[A]"));

        // In a channel of another size a copy covers the same part of the picture.
        OrvLayer* pThere = OrvLayerStreamUtils::addDuplicateLayerAbove(pCopy, pSmall->topNode(), pSmall);
        QVERIFY(Project.same(Project.pixel(pSmall->node(), {1, 1}), Blue));
        QVERIFY(Project.same(Project.pixel(pSmall->node(), {10, 10}), Red));
        QCOMPARE(OrvLayerStreamUtils::groupStack(pThere)->layerList().first()->paintImageSet()->layout(),
            pSmall->layout());
    }

    void clipboardWorksBetweenProjects_data()
    {
        QTest::addColumn<bool>("AsBytes");
        QTest::newRow("within the program") << false;
        QTest::newRow("from another process") << true;
    }

    void clipboardWorksBetweenProjects()
    {
        QFETCH(bool, AsBytes);
        {
            OrvTestProject Source;
            OrvShaderInput* pBump = Source.addChannel("Bump");
            Source.paint("In Bump", Blue, pBump);
            OrvLayer* pA = Source.paint("A", Red);
            Source.fill(pA->paintImageSet(), QRect(0, 0, 8, 8), Green);
            pA->addMaskImageSet();
            pA->blendNode()->setUserAttributeValue(OrvMergeAttributes::BlendMode, "Screen");
            OrvLayer* pInvert = Source.channel()->createAdjustmentLayer(Invert, 0);
            OrvLayer* pGraph = Source.channel()->createGraphLayer(0);
            OrvLayer* pShared = layers().getLayer(OrvLayerStreamUtils::createLayerNodeAfter(
                Source.channel()->topNode(), pBump->node(), QString(), QString(), true));
            OrvLayer* pGroup = Source.group("Group", {pA, pInvert});
            Source.select({pShared, pGraph, pGroup, pA});
            const QByteArray Before = Source.document();
            Source.channel()->copyToClipboard();
            QCOMPARE(Source.document(), Before);
        }
        if (AsBytes)
            setClipboardBytes(clipboardBytes());
        OrvTestProject Target(QSize(64, 64));
        OrvLayer* pBase = Target.paint("Base", Red);
        pBase->makeCurrent(false, true);
        const QByteArray Before = Target.document();
        QString Error;
        const QList<OrvLayer*> Pasted = Target.channel()->pasteFromClipboard(22, Error);
        QVERIFY2(Error.isEmpty(), qPrintable(Error));
        // The channel that is not here has become a group.
        QCOMPARE(Target.tree(), QString("Bump[In Bump] Graph Group[Invert Linear A] Base"));
        QCOMPARE(Pasted.size(), 3);
        QVERIFY(Pasted.first()->isCurrent() && Pasted.last()->isSelected() && !pBase->isSelected());
        OrvLayer* pA = Target.layer("A");
        QCOMPARE(pA->blendNode()->userAttribute(OrvMergeAttributes::BlendMode).value().toString(),
            QString("Screen"));
        QVERIFY(Target.same(Target.pixel(pA->paintNode(), {4, 4}), Green));
        QVERIFY(Target.same(Target.pixel(pA->paintNode(), {30, 30}), Red));
        Pasted.first()->setVisible(false);
        QVERIFY(Target.same(Target.pixel({4, 4}), Blue)); // the adjustment sees the layers below
        Target.undo();
        Target.undo();
        QCOMPARE(Target.document(), Before);
    }

    void badClipboardsAreRefused()
    {
        OrvTestProject Project;
        OrvLayer* pA = Project.paint("A", Red);
        Project.fill(pA->paintImageSet(), QRect(0, 0, 8, 8), Green);
        Project.select({pA});
        Project.channel()->copyToClipboard();
        const QByteArray Good = clipboardBytes();
        QByteArray Newer = Good;
        Newer[7] = char(99);
        const QByteArray Before = Project.document();
        const auto isRefused = [&] {
            QString Error;
            return Project.channel()->pasteFromClipboard(22, Error).isEmpty() && !Error.isEmpty();
        };
        for (const QByteArray& Bytes : {QByteArray(), QByteArray("nonsense"), Newer,
                 Good.left(Good.size() / 2), Good.left(Good.size() - 3), Good.left(20), Good + "tail"}) {
            setClipboardBytes(Bytes);
            QVERIFY(isRefused());
        }
        QGuiApplication::clipboard()->setText("some text");
        QVERIFY(isRefused());
        QCOMPARE(Project.document(), Before);
    }

    void oneObjectPerStackAndLayer()
    {
        OrvTestProject Project;
        OrvLayer* pA = Project.paint("A");
        OrvLayer* pGroup = Project.group("Group", {pA});
        OrvSnBaseNode* pNode = pGroup->blendNode();
        OrvLayerStack* pStack = OrvLayerStack::getLayerStack(pNode, "Over");
        QVERIFY(pStack && pStack->isGroupStack());
        QCOMPARE(OrvLayerStack::getLayerStack(pNode, "Over"), pStack);
        QVERIFY(!OrvLayerStack::getLayerStack(pNode, "Mask") && !OrvLayerStack::getLayerStack(pNode, "Base"));
        QCOMPARE(OrvLayerStack::getLayerStack(Project.channel()->node(), "Input"), Project.channel());
        // The top changes under the palettes that show the stack.
        OrvLayerStack* pDuring = nullptr;
        const auto Connection = connect(&OrvShaderNetworkManager::instance(),
            QOverload<OrvShaderNetwork*, QString, OrvSnBaseNode*, OrvSnBaseNode*>::of(
                &OrvShaderNetworkManager::nodeReconnected),
            [&](OrvShaderNetwork*, QString, OrvSnBaseNode*, OrvSnBaseNode*) {
                pDuring = OrvLayerStack::getLayerStack(pNode, "Over");
            });
        Project.paint("B", Red, pStack);
        disconnect(Connection);
        QCOMPARE(pDuring, pStack);
        QCOMPARE(pStack->layerList().size(), 2);
        QCOMPARE(layers().getLayer(pNode), pGroup);
        Project.channel()->deleteLayers({pGroup});
        Project.undo();
        QCOMPARE(layers().getLayer(pNode), pGroup);
        QCOMPARE(Project.tree(), QString("Group[B A]"));
    }

    void currentObjectsFollowEachOther()
    {
        OrvTestProject Project;
        OrvShaderInputManager& Channels = OrvShaderInputManager::instance();
        OrvShaderInput* pBump = Project.addChannel("Bump");
        OrvLayer* pA = Project.paint("A");
        OrvLayer* pB = Project.paint("B", Red, pBump);
        QSignalSpy LayerMadeCurrent(Project.channel(), &OrvShaderInput::layerMadeCurrent);
        pA->makeCurrent(false, true);
        QCOMPARE(LayerMadeCurrent.size(), 1);
        QCOMPARE(Project.channel()->currentLayer(), pA);
        pB->makeCurrent(false, true);
        QCOMPARE(Channels.currentShaderInput(), pBump);
        QCOMPARE(layers().currentLayerStack(), static_cast<OrvLayerStack*>(pBump));
        QCOMPARE(layers().currentComponent(), pB->paintNode());
        QVERIFY(pB->isSelected() && !pA->isSelected());
        Channels.makeShaderInputCurrent(Project.channel(), true);
        QCOMPARE(layers().currentLayer(), pA);
        QCOMPARE(layers().currentLayerStack(), static_cast<OrvLayerStack*>(Project.channel()));

        // The mask is painted on until another layer is current; in a macro the change is undone.
        pA->addMaskImageSet();
        QCOMPARE(layers().currentComponent(), pA->maskNode());
        {
            OrvUndoManager::AutoMacro Macro("Make Paint Current");
            OrvLayerStreamUtils::makePaintComponentCurrent(pA, Project.channel());
        }
        QCOMPARE(layers().currentComponent(), pA->paintNode());
        Project.undo();
        QCOMPARE(layers().currentComponent(), pA->maskNode());
        pA->deleteMask();
        QCOMPARE(layers().currentComponent(), pA->paintNode());

        QSignalSpy CurrentLayer(&layers(), &OrvLayerManager::currentLayerChanged);
        Project.channel()->createPaintableLayer(30, nullptr, "C", Red);
        Project.undo();
        QCOMPARE(layers().currentLayer(), pA);
        QCOMPARE(CurrentLayer.size(), 2);
    }

    void colorTagsAndNamesTellTheRows()
    {
        OrvTestProject Project;
        OrvLayer* pA = Project.paint("A");
        OrvLayer* pGroup = Project.group("Group", {pA});
        QSignalSpy ColorChanged(pA, &OrvLayer::colorChanged), Named(pA, &OrvLayer::nameChanged),
            Shown(pA, &OrvLayer::enabledAsBoolChanged);
        const QColor Tag = OrvLayerUtils::validLayerColors().value("green");
        OrvLayerStreamUtils::setColorRecursiveUndo({pGroup}, Tag);
        QCOMPARE(pA->color(), Tag);
        Project.undo();
        QVERIFY(!pA->color().isValid() && !pGroup->color().isValid());
        QCOMPARE(ColorChanged.size(), 2);
        pA->setName("Rust");
        pA->setName(QString());
        Project.undo();
        QCOMPARE(Named.size(), 2);
        pA->setVisible(false);
        Project.undo();
        QCOMPARE(Shown.size(), 2);
        QVERIFY(OrvLayerUtils::validLayerColors().contains("none"));
        QVERIFY(!OrvLayerUtils::validLayerColors().value("none").isValid());
    }

    void costsAddUpAndHiddenLayersAreFree()
    {
        OrvTestProject Project;
        OrvLayer* pPaint = Project.paint("Paint", Red);
        OrvLayer* pBlur = Project.channel()->createAdjustmentLayer("Filter/Blur/Gaussian Blur", 0);
        const double Paint = pPaint->cost(), Blur = pBlur->cost();
        QVERIFY(Paint > 0.0 && Blur > 10.0 * Paint);
        QVERIFY(pBlur->costDescription().contains("gaussian blur"));
        Project.fill(pPaint->paintImageSet(), QRect(0, 0, 2, 2), Blue);
        OrvLayer* pGroup = Project.group("Group", {pPaint, pBlur});
        QVERIFY(pGroup->cost() > Paint + Blur);
        pBlur->setVisible(false);
        QVERIFY(pGroup->cost() < Blur);
        QCOMPARE(pBlur->cost(), 0.0);
        // Each adjustment reads what lies below it; that is not counted again and again.
        for (int Index = 0; Index < 40; ++Index)
            Project.channel()->createAdjustmentLayer(Invert, 0);
        QVERIFY(Project.channel()->layerList().first()->cost() < 2.0 * Blur);
    }

    void longStacksAreBuiltLockedAndBroughtBack()
    {
        constexpr int Count = 4000;
        OrvTestProject Project;
        OrvLayer* pGroup = Project.channel()->createGroupLayer(30);
        OrvLayerStack* pInside = OrvLayerStreamUtils::groupStack(pGroup);
        for (int Index = 0; Index < Count; ++Index)
            pInside->createPaintableLayer(30, nullptr, QString(), Red);
        QCOMPARE(pInside->layerList().size(), Count);
        pGroup->setLocked(true);
        for (const OrvLayer* pLayer : pInside->layerList())
            QVERIFY(!pLayer->isModifiable());
        pGroup->setLocked(false);
        for (const OrvLayer* pLayer : Project.channel()->allLayers())
            QVERIFY(pLayer->isModifiable());
        Project.channel()->deleteLayers({pGroup});
        Project.undo();
        QCOMPARE(OrvLayerStreamUtils::groupStack(pGroup)->layerList().size(), Count);
    }

private:
    using Operation = QPair<const char*, std::function<void(OrvTestProject&)>>;
    static const QVector<Operation>& operations()
    {
        static const auto stack = [](OrvTestProject& Project) { return Project.channel(); };
        static const QVector<Operation> All{
            {"paint layer",
                [](OrvTestProject& P) { stack(P)->createPaintableLayer(30, nullptr, QString(), Red); }},
            {"adjustment layer", [](OrvTestProject& P) { stack(P)->createAdjustmentLayer(Invert, 30); }},
            {"adjustment below",
                [](OrvTestProject& P) { stack(P)->createAdjustmentLayer(Invert, 0, P.layer("A")); }},
            {"procedural layer", [](OrvTestProject& P) { stack(P)->createProceduralLayer(Noise, 30); }},
            {"graph layer", [](OrvTestProject& P) { stack(P)->createGraphLayer(30); }},
            {"empty group", [](OrvTestProject& P) { stack(P)->createGroupLayer(30); }},
            {"group",
                [](OrvTestProject& P) {
                    P.group("New", {P.layer("D"), P.layer("A")});
                }},
            {"ungroup",
                [](OrvTestProject& P) {
                    P.select({P.layer("G")});
                    stack(P)->ungroupLayers();
                }},
            {"duplicate",
                [](OrvTestProject& P) {
                    P.select({P.layer("G"), P.layer("D"), P.layer("B")});
                    stack(P)->duplicateLayers();
                }},
            {"delete one", [](OrvTestProject& P) { stack(P)->deleteLayers({P.layer("C")}); }},
            {"delete group",
                [](OrvTestProject& P) {
                    stack(P)->deleteLayers({P.layer("G"), P.layer("B")});
                }},
            {"cut",
                [](OrvTestProject& P) {
                    P.select({P.layer("G")});
                    stack(P)->cutToClipboard();
                }},
            {"merge",
                [](OrvTestProject& P) {
                    P.select({P.layer("G"), P.layer("D")});
                    stack(P)->mergeLayers(30);
                }},
            {"share", [](OrvTestProject& P) { stack(P)->shareLayer(P.layer("G"), 30); }},
            {"move",
                [](OrvTestProject& P) {
                    move(P.layer("D"), P.layer("B")->blendNode(),
                        OrvLayerStreamUtils::groupStack(P.layer("G")));
                }},
            {"mask", [](OrvTestProject& P) { P.layer("A")->addMaskImageSetAndFillBlack(); }},
            {"mask stack", [](OrvTestProject& P) { P.layer("B")->convertMaskToMaskStack(); }},
            {"delete mask", [](OrvTestProject& P) { P.layer("G")->deleteMask(); }},
            {"adjustment stack",
                [](OrvTestProject& P) { P.layer("G")->addLayerAdjustmentLayerFromKey(Invert); }},
            {"more adjustment",
                [](OrvTestProject& P) { P.layer("C")->addLayerAdjustmentLayerFromKey(Invert); }},
            {"remove adjustment stack", [](OrvTestProject& P) { P.layer("C")->removeLayerAdjustment(); }},
            {"pass through",
                [](OrvTestProject& P) {
                    OrvLayerStreamUtils::setLayerGroupPassThrough(P.layer("G")->blendNode(), true);
                }},
            {"channel as layer",
                [](OrvTestProject& P) {
                    OrvLayerStreamUtils::createLayerNodeAfter(
                        P.layer("A")->blendNode(), P.channel("Bump")->node(), QString(), QString(), true);
                }},
            {"remove channel",
                [](OrvTestProject& P) { OrvShaderInputManager::instance().destroy(P.channel("Bump"), 0); }},
            {"duplicate channel",
                [](OrvTestProject& P) { OrvShaderInputUtils::createDuplicate(P.channel(), {}); }},
        };
        return All;
    }
};

QTEST_MAIN(TstLayers)
#include "TstLayers.moc"
