#include "Tests/Support/OrvTestProject.h"

#include "OrvCore/Layers/OrvLayerCost.h"
#include "OrvCore/Layers/OrvLayerUtils.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>
#include <QtWidgets/QUndoStack>

namespace {

const QString Invert = QStringLiteral("Filter/Adjust/Invert Linear");
const QString Costly = QStringLiteral("Filter/Blur/Mean Curvature");
const OrvColor Red(1.0f, 0.0f, 0.0f);
const OrvColor Green(0.0f, 1.0f, 0.0f);
const OrvColor Blue(0.0f, 0.0f, 1.0f);

/// Milliseconds for the whole picture, after something on top has changed.
double renderTime(const OrvTestProject& Project, OrvLayer* pTop)
{
    static float s_Step = 0.0f;
    const QRect Extent = Project.channel()->layout().extent();
    std::vector<float> Pixels(std::size_t(Extent.width() * Extent.height()) * 4);
    OrvEngineNode* pEngine = OrvNodeEvaluation::result(Project.channel()->node());
    Project.fill(pTop->paintImageSet(), Extent, OrvColor(0.1f, s_Step += 0.01f, 0.2f, 0.5f));
    QElapsedTimer Timer;
    Timer.start();
    pEngine->render(Extent, 1.0, {GL_FLOAT, OrvPixelFormat::Rgba, OrvPixelFormat::Linear}, Pixels.data());
    return double(Timer.nsecsElapsed()) / 1e6;
}

double leastRenderTime(const OrvTestProject& Project, OrvLayer* pTop)
{
    return std::min({renderTime(Project, pTop), renderTime(Project, pTop), renderTime(Project, pTop)});
}

} // namespace

/// Caches of layers: what is cached is not computed again, still shows the truth, forbids edits within, and
/// lives as long as the user wants.
class TstLayerCaches : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { OrvProjectManager::instance().closeProject(); }

    void nothingCachedIsComputedAgain_data()
    {
        QTest::addColumn<bool>("UpToHere");
        QTest::addColumn<bool>("InMask");
        QTest::newRow("a layer's content") << false << false;
        QTest::newRow("a layer's mask") << false << true;
        QTest::newRow("up to a layer") << true << false;
    }

    void nothingCachedIsComputedAgain()
    {
        QFETCH(bool, UpToHere);
        QFETCH(bool, InMask);
        OrvTestProject Project(QSize(512, 512));
        OrvLayer* pPaint = Project.paint("Paint", Red);
        Project.fill(pPaint->paintImageSet(), QRect(0, 0, 100, 512), Blue);
        OrvLayer *pCached = pPaint, *pCostly = nullptr;
        if (InMask) {
            pPaint->addMaskImageSet();
            Project.fill(pPaint->maskImageSet(), QRect(0, 0, 50, 512), OrvColor::black());
            pCostly = pPaint->convertMaskToMaskStack()->createAdjustmentLayer(Costly, 30);
        } else {
            pCostly = pPaint->addLayerAdjustmentLayerFromKey(Costly);
        }
        QVERIFY(pCostly);
        pCostly->contentNode()->setUserAttributeValue("iterations", 500); // small channels take fewer
        if (UpToHere)
            pCached = Project.paint("Between", OrvColor(0.0f, 1.0f, 0.0f, 0.2f));
        OrvLayer* pTop = Project.paint("Top");
        const double Uncached = leastRenderTime(Project, pTop);
        const OrvColor Seen = Project.pixel(pCached->blendNode(), {100, 9});
        QVERIFY(UpToHere ? pCached->cacheUpToHere() : pCached->cacheLayer());
        renderTime(Project, pTop);
        const double Cached = leastRenderTime(Project, pTop);
        QVERIFY2(Cached * 4 < Uncached, qPrintable(QString("%1 of %2 ms").arg(Cached).arg(Uncached)));
        QVERIFY(Project.same(Project.pixel(pCached->blendNode(), {100, 9}), Seen, 1e-4f));
        UpToHere ? pCached->uncacheUpToHere() : pCached->uncacheLayer();
        QVERIFY(leastRenderTime(Project, pTop) > Cached * 2);
    }

    void cachesShowTheTruth()
    {
        // What a cached layer reads can still change: below a group that passes through, by undo, in another
        // channel.
        OrvTestProject Project;
        OrvLayer* pBelow = Project.paint("Below", Red);
        OrvLayer* pInvert = Project.channel()->createAdjustmentLayer(Invert, 0);
        OrvLayer* pGroup = Project.group("Group", {pInvert});
        QVERIFY(OrvLayerStreamUtils::isLayerGroupPassThrough(pGroup->blendNode()));
        QVERIFY(pGroup->cacheLayer());
        QVERIFY(Project.same(Project.pixel(), OrvColor(0.0f, 1.0f, 1.0f)));
        QVERIFY(pBelow->isModifiable());
        Project.fill(pBelow->paintImageSet(), QRect(0, 0, 32, 32), Green);
        QVERIFY(Project.same(Project.pixel(), OrvColor(1.0f, 0.0f, 1.0f)));
        OrvLayer* pMore = Project.channel()->createPaintableLayer(Blue, 0, pBelow);
        QVERIFY(Project.same(Project.pixel(), OrvColor(1.0f, 1.0f, 0.0f)));
        pMore->setVisible(false);
        QVERIFY(Project.same(Project.pixel(), OrvColor(1.0f, 0.0f, 1.0f)));
        while (OrvUndoManager::instance().stack()->canUndo())
            Project.undo();
        while (OrvUndoManager::instance().stack()->canRedo())
            Project.redo();
        QVERIFY(Project.same(Project.pixel(), OrvColor(1.0f, 0.0f, 1.0f)));
        QVERIFY(pGroup->isLayerCached());

        OrvLayer* pTop = Project.paint("Top", OrvColor(0.0f, 0.0f, 1.0f, 0.5f));
        QVERIFY(pTop->cacheUpToHere());
        const OrvColor Seen = Project.pixel();
        pTop->uncacheUpToHere();
        QVERIFY(Project.same(Project.pixel(), Seen));
        pGroup->uncacheLayer();
        QVERIFY(Project.same(Project.pixel(), Seen));
    }

    void nothingInsideIsEdited()
    {
        OrvTestProject Project;
        OrvLayer* pBase = Project.paint("Base", Blue);
        OrvLayer* pInside = Project.paint("Inside", Red);
        OrvLayer* pGroup = Project.group("Group", {pInside});
        pGroup->addMaskImageSet();
        OrvLayer* pInMask = pGroup->convertMaskToMaskStack()->layerList().first();
        OrvLayer* pAbove = Project.paint("Above");
        QSignalSpy Refused(&OrvLayerManager::instance(), &OrvLayerManager::refused);
        QVERIFY(pGroup->cacheLayer() && pGroup->cacheLayer());
        QVERIFY(pGroup->isLayerCached() && pGroup->hasLayerCache());
        QVERIFY(pInside->isDownstreamCached() && pInMask->isDownstreamCached());
        QVERIFY(!pInside->cacheLayer() && !pInside->canCacheUpToHere() && !pInside->cacheUpToHere());
        QCOMPARE(Refused.size(), 2);
        const QByteArray Cached = Project.document();
        QVERIFY(!pInside->addMaskImageSetFromAlpha() && !pInMask->resizeImageSets(0, -1, true, true));
        QVERIFY(!pGroup->convertMaskToImageSet() && !pGroup->applyMask());
        QVERIFY(!OrvLayerStreamUtils::flattenLayer(pGroup, Project.channel()));
        QVERIFY(!OrvLayerStreamUtils::groupStack(pGroup)->createPaintableLayer(30, nullptr, "X", Red));
        QVERIFY(!OrvLayerUtils::isModificationAllowedAt(pInside->paintNode()));
        QVERIFY(!OrvLayerUtils::isModificationAllowedAt(pInMask->paintNode()));
        QCOMPARE(Project.document(), Cached);
        QVERIFY(pBase->isModifiable() && pAbove->isModifiable());

        QVERIFY(pAbove->canCacheUpToHere() && pAbove->cacheUpToHere() && !pAbove->canCacheUpToHere());
        QVERIFY(!pBase->isModifiable() && pBase->isDownstreamCached() && !pBase->canCacheUpToHere());
        QVERIFY(!Project.channel()->createBakePointLayer(1));
        QVERIFY(Project.channel()->createBakePointLayer(0)); // above it
        // Unlocking by the layer's row drops what caches it.
        pInside->blendNode()->propagateDeleteCache(true);
        QVERIFY(pInside->isModifiable() && pBase->isModifiable() && !pGroup->isLayerCached());
        Project.undo();
        QVERIFY(pGroup->isLayerCached() && pAbove->isCachedUpToHere());
    }

    void selectedLayersAreCachedTogether()
    {
        OrvTestProject Project;
        QList<OrvLayer*> Layers;
        for (int Index = 0; Index < 8; ++Index)
            Layers.append(Project.paint(QString("L%1").arg(Index), Red));
        OrvLayer* pGroup = Project.group("Group", {Layers[0], Layers[1]});
        Project.select({pGroup, Layers[0], Layers[2], Layers[3], Layers[4], Layers[5]});
        const QByteArray Before = Project.document();
        const int Steps = OrvUndoManager::instance().stack()->count();
        QSignalSpy Batch(&OrvLayerManager::instance(), &OrvLayerManager::batchLayerStatesRefreshed);
        QSignalSpy Changed(Layers[2], &OrvLayer::cacheStateChanged);
        QSignalSpy Inside(Layers[1], &OrvLayer::layerStateRefreshed);
        Project.channel()->cacheLayers();
        QCOMPARE(OrvUndoManager::instance().stack()->count(), Steps + 1);
        QCOMPARE(OrvUndoManager::instance().stack()->undoText(), QString("Cache Layers"));
        QVERIFY(pGroup->isLayerCached() && !Layers[0]->isLayerCached() && Layers[2]->isLayerCached());
        QVERIFY(!Layers[6]->isLayerCached());
        QCOMPARE(Batch.size(), 1);
        QCOMPARE(Changed.size(), 1);
        QCOMPARE(Inside.size(), 1);
        Project.channel()->uncacheLayers();
        QCOMPARE(Project.document(), Before);
        Project.undo();
        QVERIFY(pGroup->isLayerCached());
        Project.undo();
        QCOMPARE(Project.document(), Before);
        Project.select({});
        Project.channel()->cacheLayers(); // nothing selected: nothing to undo
        QCOMPARE(OrvUndoManager::instance().stack()->index(), Steps);
    }

    void cachesAreStoredButNotCopied()
    {
        const QTemporaryDir Folder;
        QString Error;
        OrvTestProject Project;
        OrvLayer* pGroup = Project.group("Group", {Project.paint("A", Red)});
        OrvLayer* pB = Project.paint("B", Green);
        QVERIFY(pGroup->cacheLayer() && pB->cacheUpToHere());
        Project.select({pB});
        Project.channel()->copyToClipboard();
        const QList<OrvLayer*> Pasted = Project.channel()->pasteFromClipboard(22, Error);
        QVERIFY(Pasted.size() == 1 && !Pasted.first()->isCachedUpToHere() && Pasted.first()->isModifiable());
        Pasted.first()->setName("Pasted");
        OrvLayer* pCopy = OrvLayerStreamUtils::addDuplicateLayerAbove(
            pGroup, Pasted.first()->blendNode(), Project.channel());
        QVERIFY(pCopy && !pCopy->isLayerCached() && pCopy->isModifiable());

        QVERIFY(OrvProjectManager::instance().saveProjectAs(Folder.filePath("P.orvi"), Error));
        QVERIFY(OrvProjectManager::instance().openProject(Folder.filePath("P.orvi"), Error));
        OrvShaderInput* pChannel = Project.channel("Diffuse");
        OrvLayer* pStored = Project.layer("Group", pChannel);
        QVERIFY(pStored->isLayerCached() && Project.layer("B", pChannel)->isCachedUpToHere());
        const OrvLayer* pInside = OrvLayerStreamUtils::groupStack(pStored)->layerList().first();
        QVERIFY(!pInside->isModifiable());
        QVERIFY(Project.same(Project.pixel(pChannel->node()), Red)); // the copy of the group, on top
        Project.layer("B", pChannel)->uncacheUpToHere();
        pStored->uncacheLayer();
        QVERIFY(pInside->isModifiable());
        QVERIFY(Project.same(Project.pixel(pChannel->node()), Red));
    }

    void cachedLayersCostLittle()
    {
        OrvTestProject Project;
        OrvLayer* pBlurred = Project.paint("Blurred", Red);
        Project.fill(pBlurred->paintImageSet(), QRect(0, 0, 4, 4), Blue);
        pBlurred->addLayerAdjustmentLayerFromKey(Costly);
        OrvLayer* pGroup = Project.group("Group", {pBlurred});
        OrvLayer* pTop = Project.paint("Top");
        const double Dear = pGroup->cost();
        QVERIFY(Dear > 5.0 && pBlurred->cost() > 5.0);
        QVERIFY(pGroup->cacheLayer());
        QVERIFY(pGroup->cost() < 0.1);
        QCOMPARE(pBlurred->cost(), 0.0);
        pGroup->uncacheLayer();
        QCOMPARE(pGroup->cost(), Dear);
        QVERIFY(pTop->cacheUpToHere());
        QCOMPARE(pGroup->cost(), 0.0);
        QVERIFY(pTop->cost() < 0.1 && !pTop->costDescription().isEmpty());
        Project.undo();
        QCOMPARE(pGroup->cost(), Dear);
        OrvLayer* pBake = Project.channel()->createBakePointLayer(0);
        QVERIFY(pBake->bake() && pBake->cost() < 0.1);
    }

    void whatHoldsACacheIsToldItsCost()
    {
        OrvTestProject Project;
        OrvLayer* pBlurred = Project.paint("Blurred", Red);
        pBlurred->addLayerAdjustmentLayerFromKey(Costly);
        OrvLayer* pOuter = Project.group("Outer", {Project.group("Inner", {pBlurred})});
        const double Dear = pOuter->cost();
        QVector<double> Told;
        connect(pOuter, &OrvLayer::layerStateRefreshed, this,
            [&Told](const OrvLayer* pLayer) { Told.append(pLayer->cost()); });
        pBlurred->cacheLayer();
        QVERIFY(!Told.isEmpty() && Told.last() < 0.1);
        Project.undo();
        QCOMPARE(Told.last(), Dear);
        pBlurred->cacheUpToHere();
        QVERIFY(Told.last() < 0.1);
        pBlurred->uncacheUpToHere();
        pBlurred->setVisible(false);
        QVERIFY(Told.last() < 0.1);
    }
};

QTEST_MAIN(TstLayerCaches)
#include "TstLayerCaches.moc"
