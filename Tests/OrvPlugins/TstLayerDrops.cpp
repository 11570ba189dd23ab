#include "LayerDrags.h"
#include "LayersFixture.h"
#include "MessageBoxes.h"
#include "SettingsDirectory.h"

#include "Tests/Support/OrvDebugReports.h"
#include "Tests/Support/OrvTestProject.h"

#include "OrvCore/Network/OrvSnPassNode.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderUtils.h"
#include "OrvCore/Shaders/OrvMultiChannelLayerUtils.h"
#include "OrvCore/Shelf/OrvShelfDirectories.h"
#include "OrvCoreModules/Window/OrvStatusManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerComponentPushButton.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextConstants.h"

#include <QtCore/QUrl>
#include <QtCore/QUuid>
#include <QtTest/QtTest>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QUndoStack>

#include <memory>

using namespace LayersFixture;

/// Drops on the Layers palette, of everything that can be dragged there, on a real document: what it comes
/// to, what the user is told, and that one undo takes it back.
class TstLayerDrops : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_Directory.isValid()); }
    void init()
    {
        m_Project = std::make_unique<OrvTestProject>();
        m_Channel = m_Project->channel();
        for (const char* pName : {"E", "D", "C", "B", "F", "A"})
            m_Project->paint(QString::fromLatin1(pName));
        m_Project->group(QStringLiteral("H"), {layer("C")});
        m_Project->group(QStringLiteral("G"), {layer("B"), layer("H")});
        QCOMPARE(stackText(m_Channel), StartText);
        m_View = std::make_unique<OrvLayerView>(nullptr, 0);
        m_View->resize(400, 700);
        m_View->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_View.get()));
        show(m_Channel);
        OrvUndoManager::instance().clear();
        m_Reports.Texts.clear();
        m_Boxes.take();
    }

    void cleanup()
    {
        m_View.reset();
        m_Project.reset();
    }

    void layersLandWhereTheyAreDropped_data()
    {
        QTest::addColumn<QString>("Dragged");
        QTest::addColumn<QString>("Place");
        QTest::addColumn<int>("Modifiers");
        QTest::addColumn<QString>("Expected");
        const auto row = [](const char* pDragged, const char* pPlace, int Modifiers, const char* pExpected) {
            QTest::addRow("%s to %s, %x", pDragged, pPlace, Modifiers)
                << pDragged << pPlace << Modifiers << pExpected;
        };
        const auto nothing = [row](const char* pDragged, const char* pPlace, int Modifiers) {
            row(pDragged, pPlace, Modifiers, "A F G(B H(C)) D E");
        };
        row("A", "/3", Qt::NoModifier, "F G(B H(C)) A D E");
        row("E", "/0", Qt::NoModifier, "E A F G(B H(C)) D");
        row("E", "/0", Qt::ControlModifier, "E A F G(B H(C)) D");
        row("A", "/5", Qt::NoModifier, "F G(B H(C)) D E A");
        row("A", "area", Qt::NoModifier, "F G(B H(C)) D E A");
        row("E", "G", Qt::NoModifier, "A F G(E B H(C)) D");
        row("A", "G/1", Qt::NoModifier, "F G(B A H(C)) D E");
        row("A", "G/2", Qt::NoModifier, "F G(B H(C) A) D E");
        row("C", "/0", Qt::NoModifier, "C A F G(B H()) D E");
        row("H", "area", Qt::NoModifier, "A F G(B) D E H(C)");
        // However they were selected, several keep their order.
        row("E A", "G", Qt::NoModifier, "F G(A E B H(C)) D");
        row("B F", "/5", Qt::NoModifier, "A G(H(C)) D E F B");
        row("D C A", "G/1", Qt::NoModifier, "F G(B A C D H()) E");
        // What is inside a dragged group goes with it.
        row("B G C", "/0", Qt::NoModifier, "G(B H(C)) A F D E");
        row("A", "/5", Qt::AltModifier, "A F G(B H(C)) D E A Copy");
        row("D A", "H", Qt::AltModifier | Qt::ControlModifier, "A F G(B H(A Copy D Copy C)) D E");
        row("G", "G", Qt::AltModifier, "A F G(G Copy(B H(C)) B H(C)) D E");
        row("A", "G", Qt::ShiftModifier, "A F G(A B H(C)) D E");
        row("H", "/0", Qt::ShiftModifier | Qt::ControlModifier, "H(C) A F G(B H(C)) D E");
        nothing("D", "/3", Qt::NoModifier);
        nothing("D", "/4", Qt::NoModifier);
        nothing("E D", "/5", Qt::NoModifier);
        nothing("G", "H", Qt::NoModifier);
        nothing("G", "G/1", Qt::NoModifier);
    }
    void layersLandWhereTheyAreDropped()
    {
        QFETCH(QString, Dragged);
        QFETCH(QString, Place);
        QFETCH(int, Modifiers);
        QFETCH(QString, Expected);
        const QByteArray Before = OrvTestProject::document();
        const std::unique_ptr<QMimeData> pData = rows(Dragged.split(QLatin1Char(' ')));
        const bool Dropped = drop(*pData, Place, Modifiers);
        QCOMPARE(stackText(m_Channel), Expected);
        QTRY_COMPARE(rowText(m_View.get()), Expected);
        QVERIFY(m_Boxes.isEmpty());
        if (Expected == StartText) {
            QVERIFY(OrvTestProject::document() == Before);
            QCOMPARE(undoCount(), 0);
            return;
        }
        QVERIFY(Dropped);
        QCOMPARE(undoCount(), 1);
        QCOMPARE(OrvUndoManager::instance().stack()->undoText(), QStringLiteral("Drop Layers"));
        OrvTestProject::undo();
        QVERIFY(OrvTestProject::document() == Before);
        OrvTestProject::redo();
        QCOMPARE(stackText(m_Channel), Expected);
    }

    void locksAreRespected()
    {
        layer("D")->setLocked(true);
        layer("G")->setLocked(true);
        OrvUndoManager::instance().clear();
        // Into a locked group, out of it, a locked layer, a shared one.
        QVERIFY(!drop(*rows({"A"}), "G"));
        QVERIFY(!drop(*rows({"A"}), "H", Qt::AltModifier));
        QVERIFY(!drop(*rows({"A"}), "G/1", Qt::ShiftModifier));
        QVERIFY(!drop(*rows({"B"}), "/0"));
        QVERIFY(!drop(*rows({"D"}), "/0"));
        QCOMPARE(undoCount(), 0);
        // Others do not wait for a locked one; it can be copied.
        QVERIFY(drop(*rows({"A", "D"}), "/5"));
        QCOMPARE(stackText(m_Channel), QStringLiteral("F G(B H(C)) D E A"));
        QVERIFY(drop(*rows({"D"}), "/0", Qt::AltModifier));
        QCOMPARE(stackText(m_Channel), QStringLiteral("D Copy F G(B H(C)) D E A"));
        QVERIFY(!layer("D Copy")->isLocked());
        QVERIFY(m_Boxes.isEmpty());
    }

    void cachesAreRespected()
    {
        layer("D")->cacheLayer();
        layer("G")->cacheLayer();
        OrvUndoManager::instance().clear();
        const QByteArray Before = OrvTestProject::document();
        for (const int Modifiers : {int(Qt::NoModifier), int(Qt::AltModifier), int(Qt::ShiftModifier)}) {
            QVERIFY(!drop(*rows({"A"}), "G", Modifiers));
            QVERIFY(!drop(*rows({"A"}), "H", Modifiers));
            QVERIFY(!drop(*rows({"A"}), "G/1", Modifiers));
        }
        QVERIFY(!drop(*rows({"B"}), "/0"));
        QVERIFY(OrvTestProject::document() == Before);
        QCOMPARE(undoCount(), 0);
        layer("E")->cacheUpToHere();
        OrvUndoManager::instance().clear();
        QVERIFY(!drop(*rows({"A"}), "/5"));
        QVERIFY(!drop(*rows({"A"}), "area", Qt::AltModifier));
        QCOMPARE(stackText(m_Channel), StartText);
        QCOMPARE(undoCount(), 0);
    }

    void payloadsAreTakenForWhatTheyAreWorth()
    {
        const QString A = layer("A")->blendNode()->uuidString(), D = layer("D")->blendNode()->uuidString();
        QStringList Uuids;
        for (int Index = 0; Index < 10000; ++Index)
            Uuids << QUuid::createUuid().toString() << A << QStringLiteral("Layer %1").arg(Index);
        Uuids << D << A;
        QMimeData Data;
        OrvLayerDragPayload::write(Data, Uuids);
        QElapsedTimer Timer;
        Timer.start();
        QCOMPARE(OrvLayerDragPayload::read(&Data),
            QVector<OrvSnBaseNode*>({layer("A")->blendNode(), layer("D")->blendNode()}));
        QVERIFY(Timer.elapsed() < 500);
        // Named twice, they are copied and shared once.
        QVERIFY(drop(Data, "/5", Qt::AltModifier));
        QCOMPARE(stackText(m_Channel), QStringLiteral("A F G(B H(C)) D E A Copy D Copy"));
        OrvTestProject::undo();
        QVERIFY(drop(Data, "G", Qt::ShiftModifier));
        QCOMPARE(m_Channel->allLayers().count(layer("A")), 1);
        OrvTestProject::undo();
        QCOMPARE(stackText(m_Channel), StartText);

        // Of a project that is not open any more, or of no stack that there is.
        OrvLayerDragPayload::write(Data, {A});
        m_View->setLayerStack(nullptr);
        m_Project.reset();
        m_Project = std::make_unique<OrvTestProject>();
        m_Channel = m_Project->channel();
        m_Project->paint(QStringLiteral("Other"));
        show(m_Channel);
        OrvUndoManager::instance().clear();
        QVERIFY(!drop(Data, "/0"));
        QVERIFY(!drop(Data, "/0", Qt::AltModifier));
        OrvLayerDragPayload::write(Data, {layer("Other")->blendNode()->uuidString()});
        Data.setData(OrvLayerViewContext::LayerStackNodeMimeType, "nonsense");
        Data.setData(OrvLayerViewContext::LayerStackTargetInputMimeType, "\xff:");
        QVERIFY(!OrvLayerDragPayload::readStack(&Data));
        QCOMPARE(undoCount(), 0);
        QVERIFY(drop(Data, "/1", Qt::AltModifier));
        QCOMPARE(stackText(m_Channel), QStringLiteral("Other Other Copy"));
        QVERIFY(m_Boxes.isEmpty());
    }

    void sharingIsRefusedWhereItCannotBe()
    {
        QVERIFY(!drop(*rows({"G"}), "H", Qt::ShiftModifier));
        QCOMPARE(takeBox(), cyclicMessage("G"));
        // An adjustment is what lies below it.
        m_Channel->createAdjustmentLayer(anyKey("Filter/"), 0, nullptr, QStringLiteral("Blur"));
        m_View->refresh();
        QVERIFY(!drop(*rows({"Blur"}), "/3", Qt::ShiftModifier));
        QCOMPARE(takeBox(), cyclicMessage("Blur"));
        // One that shares already opens no box.
        QVERIFY(drop(*rows({"A"}), "G", Qt::ShiftModifier));
        QVERIFY(layer("A")->isPaintComponentShared());
        const QByteArray Before = OrvTestProject::document();
        const int CountBefore = undoCount();
        QVERIFY(!drop(*rows({"A", "D"}), "area", Qt::ShiftModifier));
        QVERIFY(m_Boxes.isEmpty());
        QCOMPARE(OrvStatusManager::instance().text(),
            QStringLiteral("'A' is shared already, and can be copied here"));
        QVERIFY(OrvTestProject::document() == Before);
        QCOMPARE(undoCount(), CountBefore);
    }

    void layersOfOtherObjectsCanOnlyBeCopied()
    {
        OrvProject* pProject = OrvProjectManager::instance().currentProject();
        OrvShaderNetwork* pOther = pProject->addGeoEntity(QStringLiteral("Other"))->shaderNetwork();
        OrvShaderInput* pOtherChannel
            = OrvShaderInputUtils::create(pOther, QStringLiteral("Diffuse"), QSize(32, 32), GL_FLOAT);
        OrvLayer* pForeign
            = m_Project->paint(QStringLiteral("Foreign"), OrvColor(1, 0.5f, 0, 1), pOtherChannel);
        OrvUndoManager::instance().clear();
        const QByteArray Before = OrvTestProject::document();
        const std::unique_ptr<QMimeData> pData = LayerDrags::ofNodes({pForeign->blendNode()});
        OrvLayerDragPayload::writeStack(*pData, pOtherChannel);

        QVERIFY(!drop(*pData, "/0"));
        QCOMPARE(takeBox(),
            refusal("Could not move layer 'Foreign'. Moving layers between objects isn't allowed."));
        QVERIFY(!drop(*pData, "/0", Qt::ShiftModifier));
        QCOMPARE(takeBox(),
            refusal(
                "Could not add a shared layer for 'Foreign'. Sharing layers between objects isn't allowed."));
        QVERIFY(m_Reports.Texts.contains(QStringLiteral(
            "[ !! ] Layer Opertion Failed 'Could not add a shared layer for 'Foreign'. Sharing layers "
            "between objects isn't allowed.'")));
        // It comes before what stands against others of the same drag.
        QVERIFY(!drop(
            *LayerDrags::ofNodes({layer("G")->blendNode(), pForeign->blendNode()}), "H", Qt::ShiftModifier));
        QVERIFY(takeBox().contains(QStringLiteral("between objects")));
        QCOMPARE(undoCount(), 0);
        QVERIFY(drop(*pData, "/0", Qt::AltModifier));
        QCOMPARE(stackText(m_Channel), QStringLiteral("Foreign A F G(B H(C)) D E"));
        QVERIFY(OrvTestProject::same(m_Project->pixel(), OrvColor(1, 0.5f, 0, 1)));
        QCOMPARE(pOtherChannel->layerList(), QList<OrvLayer*>{pForeign});
        OrvTestProject::undo();
        QVERIFY(OrvTestProject::document() == Before);
    }

    void channelsAreShared()
    {
        OrvShaderInput* pGloss = OrvTestProject::addChannel(QStringLiteral("Gloss"));
        m_Project->paint(QStringLiteral("Red"), OrvColor(1, 0, 0, 1), pGloss);
        const std::unique_ptr<QMimeData> pData = LayerDrags::ofNodes({pGloss->node()});
        for (const int Modifiers : {int(Qt::NoModifier), int(Qt::AltModifier)}) {
            QVERIFY(!drop(*pData, "/0", Modifiers));
            QCOMPARE(takeBox(), refusal("Could not add non-Shared Channel Layer for Channel 'Gloss'"));
        }
        OrvUndoManager::instance().clear();
        const QByteArray Before = OrvTestProject::document();
        QVERIFY(drop(*pData, "/0", Qt::ShiftModifier));
        QCOMPARE(stackText(m_Channel), QStringLiteral("Gloss A F G(B H(C)) D E"));
        QCOMPARE(m_Channel->layerList().first()->sharedShaderInput(), pGloss);
        QVERIFY(OrvTestProject::same(m_Project->pixel(), OrvColor(1, 0, 0, 1)));

        // Round in a circle, directly and through the other channel.
        const QString Cyclic = refusal("Could not add a Shared Channel Layer for Channel 'Diffuse'. Sharing "
                                       "'Diffuse' at this location would make a cyclic reference.");
        const std::unique_ptr<QMimeData> pOwn = LayerDrags::ofNodes({m_Channel->node()});
        QVERIFY(!drop(*pOwn, "G", Qt::ShiftModifier));
        QCOMPARE(takeBox(), Cyclic);
        show(pGloss);
        QVERIFY(!drop(*pOwn, "/1", Qt::ShiftModifier));
        QCOMPARE(takeBox(), Cyclic);
        QCOMPARE(undoCount(), 1);
        OrvTestProject::undo();
        QVERIFY(OrvTestProject::document() == Before);
    }

    void shadingStaysInMaterialStacks()
    {
        OrvShaderInput* pMaterial = OrvTestProject::addChannel(QStringLiteral("Plastic"));
        pMaterial->node()->addTag(OrvSnNames::MaterialShaderInputTag);
        QVERIFY(pMaterial->isMaterialStack());
        OrvSnBaseNode* pShader
            = network()->addNode(std::make_unique<OrvSnPassNode>(QStringList{OrvSnNames::ShaderTag}));
        pShader->setName(QStringLiteral("Coat"));
        const std::unique_ptr<QMimeData> pShaderData = LayerDrags::ofNodes({pShader});

        QVERIFY(!drop(*pShaderData, "/0"));
        QCOMPARE(takeBox(),
            refusal("Could not add a Shader Layer for 'Coat'. Can only add 'Coat' within Material stacks."));
        QVERIFY(!drop(*LayerDrags::ofNodes({pMaterial->node()}), "/0", Qt::ShiftModifier));
        QCOMPARE(takeBox(),
            refusal("Could not add a Channel Layer for 'Plastic'. Can only add 'Plastic' within Material "
                    "stacks."));

        // One that shows the stack cannot stand in it.
        show(pMaterial);
        pShader->connectInput(OrvSnNames::Input, pMaterial->node());
        QVERIFY(!drop(*pShaderData, "area"));
        QCOMPARE(takeBox(), refusal("Could not process Shader 'Coat'"));
        pShader->disconnectInput(OrvSnNames::Input);
        OrvUndoManager::instance().clear();
        QVERIFY(drop(*pShaderData, "area"));
        QCOMPARE(stackText(pMaterial), QStringLiteral("Coat"));
        QVERIFY(pMaterial->layerList().first()->isShaderLayer());
        QCOMPARE(undoCount(), 1);
        const std::unique_ptr<QMimeData> pShaderLayer = rows({"Coat"});
        // Paint does not go in, neither moved nor copied.
        const std::unique_ptr<QMimeData> pPaint = LayerDrags::ofNodes({layer("A")->blendNode()});
        for (const int Modifiers : {int(Qt::NoModifier), int(Qt::AltModifier)})
            QVERIFY(!drop(*pPaint, "/0", Modifiers));
        QVERIFY(m_Boxes.isEmpty());
        show(m_Channel);
        for (const int Modifiers : {int(Qt::NoModifier), int(Qt::AltModifier), int(Qt::ShiftModifier)}) {
            QVERIFY(!drop(*pShaderLayer, "G", Modifiers));
            QCOMPARE(takeBox(),
                refusal(
                    "Could not add a Shader layer for 'Coat'. Can only add 'Coat' within Material stacks."));
        }
    }

    void masksBecomeLayers()
    {
        OrvLayer* pMasked = layer("A");
        pMasked->addMaskImageSet(OrvLayer::FilledMask, OrvColor(0.5f, 0.5f, 0.5f, 1));
        OrvSnBaseNode* pMask = pMasked->maskNode();
        pMask->setName(QStringLiteral("Holes"));
        OrvUndoManager::instance().clear();
        const QByteArray Before = OrvTestProject::document();
        const std::unique_ptr<QMimeData> pData = LayerDrags::ofNodes({pMask});
        const auto top = [this] { return m_Channel->layerList().first(); };

        QVERIFY(drop(*pData, "/0"));
        QCOMPARE(stackText(m_Channel), QStringLiteral("Holes A F G(B H(C)) D E"));
        QCOMPARE(top()->contentNode(), pMask);
        QVERIFY(!pMasked->hasMask());
        OrvTestProject::undo();
        QVERIFY(OrvTestProject::document() == Before);

        QVERIFY(drop(*pData, "/0", Qt::AltModifier));
        QCOMPARE(stackText(m_Channel), QStringLiteral("Holes A F G(B H(C)) D E"));
        QVERIFY(top()->contentNode() != pMask && pMasked->maskNode() == pMask);
        QVERIFY(
            OrvTestProject::same(OrvTestProject::pixel(top()->contentNode()), OrvTestProject::pixel(pMask)));
        OrvTestProject::undo();
        QVERIFY(OrvTestProject::document() == Before);

        QVERIFY(drop(*pData, "/0", Qt::ShiftModifier));
        QCOMPARE(top()->contentNode(), pMask);
        QVERIFY(pMasked->hasMaskStack() && top()->isShared());
        QCOMPARE(undoCount(), 1);
        OrvTestProject::undo();
        QVERIFY(OrvTestProject::document() == Before);

        // Only a mask can be one; a locked layer keeps its own, and no layer gives its paint away.
        pMasked->setLocked(true);
        QVERIFY(!drop(*pData, "/1"));
        QVERIFY(!drop(*pData, "/1", Qt::ShiftModifier));
        QCOMPARE(takeBox(), refusal("Failed to create a mask stack"));
        QVERIFY(!drop(*LayerDrags::ofNodes({layer("D")->contentNode()}), "/0"));
        QVERIFY(!drop(*LayerDrags::ofNodes({layer("D")->contentNode()}), "/0", Qt::ShiftModifier));
        QCOMPARE(takeBox(), refusal("The given component imageset does not belong to a layer"));
    }

    void stacksWithoutABottomTakeNothing()
    {
        OrvShaderInput* pGloss = OrvTestProject::addChannel(QStringLiteral("Gloss"));
        pGloss->node()->disconnectInput(OrvSnNames::Input);
        show(pGloss);
        OrvUndoManager::instance().clear();
        QVERIFY(!drop(*LayerDrags::ofNodes({layer("A")->blendNode()}), "area"));
        QCOMPARE(m_Reports.Texts.last(),
            QStringLiteral(
                "The layer's new network has no Bottom Transparency node. The layer node was not properly "
                "connected"));
        QCOMPARE(undoCount(), 0);
        show(nullptr);
        QVERIFY(!drop(*LayerDrags::ofNodes({layer("A")->blendNode()}), "area"));
        QCOMPARE(stackText(m_Channel), StartText);
    }

    void anythingAnywhereIsUndone()
    {
        OrvLayer* pMasked = layer("A");
        pMasked->addMaskImageSet();
        pMasked->convertMaskToMaskStack();
        layer("D")->addMaskImageSet();
        layer("E")->addLayerAdjustmentLayerFromKey(anyKey("Filter/"));
        layer("F")->setLocked(true);
        OrvLayer* pBlur
            = m_Channel->createAdjustmentLayer(anyKey("Filter/"), 0, nullptr, QStringLiteral("Blur"));
        OrvLayer* pNoise
            = m_Channel->createProceduralLayer(anyKey("Procedural/"), 0, nullptr, QStringLiteral("Noise"));
        OrvLayer* pShared = m_Channel->shareLayer(layer("H"), OrvLayerCreateFlags());
        OrvLayer* pGraph = m_Channel->createGraphLayer(OrvLayerCreateFlags());
        OrvLayer* pBakePoint = m_Channel->createBakePointLayer(OrvLayerCreateFlags());
        const QString Dirt = OrvShelfDirectories::shipped() + QStringLiteral("/Masks/Dirt.orvproc");
        QString Error;
        OrvLayer* pCustom
            = m_Channel->createCustomProceduralLayer(Dirt, nullptr, OrvLayerCreateFlags(), Error);
        QVERIFY(pBlur && pNoise && pShared && pGraph && pBakePoint && pCustom);
        QVERIFY(layer("E")->addMaskCustomProcedural(Dirt, Error));
        OrvShaderInput* pGloss = OrvTestProject::addChannel(QStringLiteral("Gloss"));
        OrvShaderInput* pMaterial = OrvTestProject::addChannel(QStringLiteral("Plastic"));
        pMaterial->node()->addTag(OrvSnNames::MaterialShaderInputTag);
        OrvLayerShader* pUserShader
            = OrvLayerShaderUtils::createShaderFromKey(QStringLiteral("Shader/MetallicRoughness"), false);
        pUserShader->setInputShaderInput(QStringLiteral("Base Color"), m_Channel);
        pUserShader->setInputShaderInput(QStringLiteral("Roughness"), pGloss);
        const QString Steel
            = OrvShelfDirectories::shipped() + QStringLiteral("/Materials/Rusted Steel.orvmat");
        const OrvLayer* pSteel
            = OrvMultiChannelLayerUtils::createMaterialLayer(Steel, pUserShader, m_Channel->topNode(), Error);
        const OrvLayer* pStreams = OrvMultiChannelLayerUtils::createMultiChannelGroupLayer(
            pUserShader, m_Channel->topNode(), Error);
        const OrvLayer* pShaderLayer = pMaterial->createShaderLayer(
            OrvLayerShaderUtils::createShaderFromKey(QStringLiteral("Shader/Unlit"), false),
            OrvLayerCreateFlags());
        QVERIFY(pSteel && pStreams && pShaderLayer);
        m_Project->paint(QStringLiteral("L"));
        m_Project->group(QStringLiteral("Locked"), {layer("L")})->setLocked(true);
        m_Project->paint(QStringLiteral("K"));
        m_Project->group(QStringLiteral("Cached"), {layer("K")})->cacheLayer();
        OrvSnBaseNode* pShader
            = network()->addNode(std::make_unique<OrvSnPassNode>(QStringList{OrvSnNames::ShaderTag}));

        const OrvSnBaseNode* pGone = network()->addNode(std::make_unique<OrvSnPassNode>());
        const QString GoneUuid = pGone->uuidString();
        network()->removeNode(const_cast<OrvSnBaseNode*>(pGone));
        OrvUndoManager::instance().clear();

        std::vector<std::unique_ptr<QMimeData>> Contents;
        const QVector<QVector<OrvSnBaseNode*>> NodeLists{{pMasked->blendNode()}, {layer("G")->blendNode()},
            {layer("C")->blendNode()}, {layer("F")->blendNode()}, {pBlur->blendNode()}, {pNoise->blendNode()},
            {pShared->blendNode()}, {pGraph->blendNode()}, {pBakePoint->blendNode()}, {pCustom->blendNode()},
            {layer("L")->blendNode()}, {layer("K")->blendNode()}, {layer("Locked")->blendNode()},
            {layer("Cached")->blendNode()}, {layer("E")->maskNode()},
            {layer("E")->adjustmentStack()->layerList().first()->blendNode()},
            {pMasked->maskStack()->layerList().first()->blendNode()},
            {layer("E")->blendNode(), layer("B")->blendNode(), layer("G")->blendNode()},
            {layer("D")->maskNode()}, {layer("D")->contentNode()}, {m_Channel->node()}, {pGloss->node()},
            {pMaterial->node()}, {pShader}, {pUserShader->node()}, {pShaderLayer->blendNode()},
            {pSteel->blendNode()}, {pStreams->blendNode()}, {m_Channel->bottomNode()},
            {pGloss->node(), layer("D")->maskNode(), layer("A")->blendNode()}, {}};
        for (const QVector<OrvSnBaseNode*>& Nodes : NodeLists)
            Contents.push_back(LayerDrags::ofNodes(Nodes));
        Contents.push_back(std::make_unique<QMimeData>());
        OrvLayerDragPayload::write(*Contents.back(), {GoneUuid, pMasked->blendNode()->uuidString()});
        Contents.push_back(std::make_unique<QMimeData>());
        Contents.back()->setData(OrvLayerDragPayload::mimeType(), "::\xff\xfe:nonsense:");
        Contents.push_back(std::make_unique<QMimeData>());
        Contents.back()->setText(QStringLiteral("A"));
        Contents.push_back(std::make_unique<QMimeData>());
        Contents.back()->setUrls({QUrl::fromLocalFile(Dirt)});

        const QByteArray Before = OrvTestProject::document();
        int DropCount = 0, ChangeCount = 0;
        for (OrvLayerStack* pStack : QList<OrvLayerStack*>{
                 m_Channel, pMasked->maskStack(), layer("E")->adjustmentStack(), pGloss, pMaterial}) {
            show(pStack);
            for (const auto& [Row, Parent] : allPlaces()) {
                for (std::size_t Content = 0; Content < Contents.size(); ++Content) {
                    // With Control they mean the same; a few contents will do for that.
                    QVector<int> AllModifiers{Qt::NoModifier, Qt::ShiftModifier, Qt::AltModifier};
                    if (Content < 2)
                        AllModifiers << Qt::ControlModifier << int(Qt::ShiftModifier | Qt::ControlModifier)
                                     << int(Qt::AltModifier | Qt::ControlModifier);
                    for (const int Modifiers : qAsConst(AllModifiers)) {
                        const int CountBefore = undoCount();
                        hold(Modifiers);
                        const bool Dropped = m_View->model()->dropMimeData(
                            Contents[Content].get(), Qt::CopyAction, Row, 0, Parent);
                        hold(Qt::NoModifier);
                        ++DropCount;
                        const QString Case
                            = QStringLiteral("content %1 at %2 in '%3' of '%4', modifiers %5")
                                  .arg(Content)
                                  .arg(Row)
                                  .arg(Parent.isValid() ? m_View->layerFromIndex(Parent)->name() : "")
                                  .arg(pStack->name())
                                  .arg(Modifiers);
                        QVERIFY2(!OrvUndoManager::instance().isInMacro(), qPrintable(Case));
                        const int Steps = undoCount() - CountBefore;
                        QVERIFY2(Steps <= (Dropped ? 1 : 0), qPrintable(Case));
                        if (Steps == 1) {
                            const QByteArray After = OrvTestProject::document();
                            QVERIFY2(After != Before, qPrintable(Case));
                            OrvTestProject::undo();
                            OrvTestProject::redo();
                            QVERIFY2(OrvTestProject::document() == After, qPrintable(Case));
                            OrvTestProject::undo();
                            OrvUndoManager::instance().clear();
                            ++ChangeCount;
                        }
                        QVERIFY2(OrvTestProject::document() == Before, qPrintable(Case));
                    }
                }
            }
        }
        qInfo("%d drops, %d of them changed the document", DropCount, ChangeCount);
        QVERIFY(ChangeCount > 200);
    }

    void dragTellsWhetherItWouldBeDropped()
    {
        OrvShaderInput* pGloss = OrvTestProject::addChannel(QStringLiteral("Gloss"));
        settle(m_View.get());
        const std::unique_ptr<QMimeData> pGroup = rows({"G"});
        QVERIFY(dragOver(*pGroup, above("A")));
        QVERIFY(m_View->treeView()->showDropIndicator());
        QVERIFY(!dragOver(*pGroup, above("C")));
        QVERIFY(!m_View->treeView()->showDropIndicator());
        QVERIFY(!dragOver(*pGroup, onto("H")));
        QVERIFY(dragOver(*pGroup, above("C"), Qt::AltModifier));
        QVERIFY(dragOver(*pGroup, above("E")));
        // The reason is to be read while the drag is there.
        const std::unique_ptr<QMimeData> pChannel = LayerDrags::ofNodes({pGloss->node()});
        QVERIFY(!dragOver(*pChannel, above("E")));
        QCOMPARE(OrvStatusManager::instance().text(),
            QStringLiteral("Could not add non-Shared Channel Layer for Channel 'Gloss'"));
        QVERIFY(dragOver(*pChannel, above("E"), Qt::ShiftModifier));
        QCOMPARE(OrvStatusManager::instance().text(), QString());
        QVERIFY(!dragOver(*pChannel, above("E")));
        LayerDrags::leave(viewport());
        // Also when the mouse was let go.
        QVERIFY(OrvStatusManager::instance().text().contains(QStringLiteral("Gloss")));
        QVERIFY(!dragOver(*LayerDrags::ofNodes({}), above("E")));
        QVERIFY(dragOver(*pGroup, above("E")));
        LayerDrags::leave(viewport());
        QVERIFY(!m_View->treeView()->showDropIndicator());
        layer("E")->setLocked(true);
        QVERIFY(!dragOver(*rows({"E"}), above("A")));
        QVERIFY(OrvStatusManager::instance().text().contains(QStringLiteral("locked")));
        layer("E")->setLocked(false);

        QVERIFY(dropAt(*rows({"E"}), onto("G")));
        QVERIFY(!m_View->treeView()->showDropIndicator());
        QCOMPARE(stackText(m_Channel), QStringLiteral("A F G(E B H(C)) D"));
        QCOMPARE(rowText(m_View.get()), StartText);
        m_View->refresh();
        settle(m_View.get());
        QVERIFY(dropAt(*rows({"A"}), above("H")));
        QCOMPARE(stackText(m_Channel), QStringLiteral("F G(E B A H(C)) D"));
        QVERIFY(m_Boxes.isEmpty());
    }

    void foldedGroupOpensUnderADrag()
    {
        OrvLayerTreeView* pTree = m_View->treeView();
        const auto isOpen = [&] { return pTree->isExpanded(m_View->model()->indexFromLayer(layer("G"))); };
        pTree->collapse(m_View->model()->indexFromLayer(layer("G")));
        settle(m_View.get());
        const std::unique_ptr<QMimeData> pData = rows({"E"});
        dragOver(*pData, onto("G"));
        QTest::qWait(200);
        QVERIFY(!isOpen());
        LayerDrags::leave(viewport());
        QTest::qWait(800);
        QVERIFY(!isOpen());
        dragOver(*pData, onto("G"));
        dragOver(*pData, onto("G"));
        QTRY_VERIFY_WITH_TIMEOUT(isOpen(), 2000);
        // It stays open under a drag that goes on resting there.
        dragOver(*pData, onto("G"));
        QTest::qWait(900);
        QVERIFY(isOpen());
        QCOMPARE(undoCount(), 0);
    }

    void layersDroppedOnAMaskGoIntoIt()
    {
        OrvLayer* pMasked = layer("A");
        pMasked->addMaskImageSet(OrvLayer::FilledMask, OrvColor::white());
        pMasked->maskNode()->setName(QStringLiteral("Holes"));
        OrvUndoManager::instance().clear();
        const QByteArray Before = OrvTestProject::document();
        m_View->refresh();
        settle(m_View.get());
        OrvLayerComponentPushButton* pButton = maskButton(pMasked);
        QVERIFY(pButton);
        const std::unique_ptr<QMimeData> pLayers = rows({"E", "D"});
        const auto sendTo = [](QWidget* pWidget, const QMimeData& Data, Qt::KeyboardModifiers Modifiers) {
            const QPoint Place = pWidget->rect().center();
            if (LayerDrags::over(pWidget, Data, Place, Modifiers) == Qt::IgnoreAction)
                return false;
            LayerDrags::drop(pWidget, Data, Place, Modifiers);
            return true;
        };
        const auto saysWhyNot = [&](const QMimeData& Data, const char* pReason) {
            const bool Refused = !sendTo(pButton, Data, Qt::NoModifier);
            LayerDrags::leave(pButton);
            return Refused && OrvStatusManager::instance().text() == QLatin1String(pReason);
        };
        pMasked->setLocked(true);
        QVERIFY(saysWhyNot(*pLayers, "'A' is locked"));
        pMasked->setLocked(false);
        layer("F")->setLocked(true);
        QVERIFY(saysWhyNot(*rows({"F"}), "What is dragged stays where it is: 'F' is locked"));
        QVERIFY(saysWhyNot(*rows({"A"}), "'A' cannot stand inside itself"));
        layer("F")->setLocked(false);
        OrvUndoManager::instance().clear();

        QVERIFY(sendTo(pButton, *pLayers, Qt::NoModifier));
        QCOMPARE(stackText(m_Channel), QStringLiteral("A F G(B H(C))"));
        QVERIFY(pMasked->hasMaskStack());
        QVERIFY(stackText(pMasked->maskStack()).startsWith(QStringLiteral("D E ")));
        QCOMPARE(OrvUndoManager::instance().stack()->undoText(), QStringLiteral("Drop Layers"));
        // The button of the stack takes the next one without waiting for its palette.
        m_View->refresh();
        settle(m_View.get());
        auto* pStackButton = row("A")->findChild<QToolButton*>(QStringLiteral("LayerStackPopupButton"));
        QVERIFY(pStackButton);
        QVERIFY(sendTo(pStackButton, *rows({"F"}), Qt::NoModifier));
        QCOMPARE(stackText(m_Channel), QStringLiteral("A G(B H(C))"));
        QVERIFY(stackText(pMasked->maskStack()).startsWith(QStringLiteral("F D E ")));
        OrvTestProject::undo();
        OrvTestProject::undo();
        QVERIFY(OrvTestProject::document() == Before);

        m_View->refresh();
        settle(m_View.get());
        pButton = maskButton(pMasked);
        QVERIFY(sendTo(pButton, *pLayers, Qt::ShiftModifier));
        QCOMPARE(stackText(m_Channel), StartText);
        QVERIFY(layer("D")->isPaintComponentShared());
        OrvTestProject::undo();

        // Onto itself, the layer into its own mask, other data.
        m_View->refresh();
        settle(m_View.get());
        pButton = maskButton(pMasked);
        QVERIFY(!sendTo(pButton, *LayerDrags::ofNodes({pMasked->maskNode()}), Qt::NoModifier));
        QVERIFY(!sendTo(pButton, *rows({"A"}), Qt::NoModifier));
        QMimeData Text;
        Text.setText(QStringLiteral("A"));
        QVERIFY(!sendTo(pButton, Text, Qt::NoModifier));
        QVERIFY(OrvTestProject::document() == Before);
        // Other components are a part of their row.
        QVERIFY(sendTo(
            row("F")->findChildren<OrvLayerComponentPushButton*>().at(1), *rows({"E"}), Qt::NoModifier));
        QCOMPARE(stackText(m_Channel), QStringLiteral("A F E G(B H(C)) D"));
        QVERIFY(m_Boxes.isEmpty());
    }

private:
    using Place = QPair<int, QPersistentModelIndex>;
    const QString StartText = QStringLiteral("A F G(B H(C)) D E");

    OrvLayer* layer(const char* pName) const { return m_Project->layer(QString::fromLatin1(pName)); }
    void show(OrvLayerStack* pStack)
    {
        m_View->setLayerStack(pStack);
        m_View->refresh();
    }
    static int undoCount() { return OrvUndoManager::instance().stack()->index(); }
    static QString refusal(const char* pMessage)
    {
        return QStringLiteral("Layer Operation Failed: ") + QLatin1String(pMessage);
    }
    static QString cyclicMessage(const char* pName)
    {
        return refusal(
            "Could not add a shared layer for '%1'. Sharing '%1' at this location would make a cyclic "
            "reference.")
            .arg(QLatin1String(pName));
    }

    /// What a drag of rows of the stack shown carries.
    std::unique_ptr<QMimeData> rows(const QStringList& Names) const
    {
        QList<OrvLayer*> Layers;
        for (const QString& Name : Names)
            Layers.append(OrvTestProject::layer(Name, m_View->layerStack()));
        return LayerDrags::ofRows(m_View.get(), Layers);
    }
    /// "/2": the gap above row 2, "G/2": that inside a group, "G": onto its row, "area": below all rows.
    Place placeOf(const QString& Text) const
    {
        const QStringList Parts = Text.split(QLatin1Char('/'));
        const QModelIndex Parent = m_View->model()->indexFromLayer(m_Project->layer(Parts.first()));
        return {Parts.size() > 1 ? Parts.last().toInt() : -1, Parent};
    }
    QVector<Place> allPlaces(const QModelIndex& Parent = QModelIndex()) const
    {
        QVector<Place> Places{{-1, Parent}};
        // A layer that holds none has no gaps.
        if (Parent.isValid() && !m_View->model()->hasChildren(Parent))
            return Places;
        for (int Row = 0; Row <= m_View->model()->rowCount(Parent); ++Row) {
            Places.append({Row, Parent});
            const QModelIndex Index = m_View->model()->index(Row, 0, Parent);
            if (Index.isValid())
                Places += allPlaces(Index);
        }
        return Places;
    }
    /// Keys stay down until others, or none, are held.
    void hold(int Modifiers) const
    {
        const Qt::Key Key = Modifiers & Qt::AltModifier ? Qt::Key_Alt
            : Modifiers & Qt::ShiftModifier             ? Qt::Key_Shift
                                                        : Qt::Key_Control;
        if (Modifiers)
            QTest::keyPress(m_View->treeView(), Key, Qt::KeyboardModifiers(Modifiers));
        else
            QTest::keyRelease(m_View->treeView(), Key);
    }
    bool drop(const QMimeData& Data, const QString& Text, int Modifiers = Qt::NoModifier)
    {
        m_View->refresh();
        const Place To = placeOf(Text);
        hold(Modifiers);
        const bool Dropped = m_View->model()->dropMimeData(&Data, Qt::CopyAction, To.first, 0, To.second);
        hold(Qt::NoModifier);
        m_View->refresh();
        return Dropped;
    }
    bool drop(const QMimeData& Data, const char* pText, int Modifiers = Qt::NoModifier)
    {
        return drop(Data, QString::fromLatin1(pText), Modifiers);
    }

    QWidget* viewport() const { return m_View->treeView()->viewport(); }
    QPoint above(const char* pName) const { return LayerDrags::above(m_View.get(), layer(pName)); }
    QPoint onto(const char* pName) const
    {
        return m_View->treeView()->visualRect(m_View->model()->indexFromLayer(layer(pName))).center();
    }
    bool dragOver(
        const QMimeData& Data, const QPoint& At, Qt::KeyboardModifiers Modifiers = Qt::NoModifier) const
    {
        return LayerDrags::over(viewport(), Data, At, Modifiers)
            == OrvLayerDragPayload::actionFromModifiers(Modifiers);
    }
    bool dropAt(const QMimeData& Data, const QPoint& At) const
    {
        if (!dragOver(Data, At))
            return false;
        // Told of a move, the source would take its rows away.
        return LayerDrags::drop(viewport(), Data, At) == Qt::CopyAction;
    }

    OrvLayerViewItemRowWidget* row(const char* pName) const { return rowOf(m_View.get(), layer(pName)); }
    OrvLayerComponentPushButton* maskButton(const OrvLayer* pLayer) const
    {
        for (auto* pButton : rowOf(m_View.get(), pLayer)->findChildren<OrvLayerComponentPushButton*>()) {
            if (pButton->componentNode() == pLayer->maskNode())
                return pButton;
        }
        return nullptr;
    }

    /// The one message that was shown.
    QString takeBox() { return m_Boxes.take().join(QStringLiteral("; ")); }

    SettingsDirectory m_Directory;
    MessageBoxes m_Boxes;
    OrvDebugReports m_Reports;
    std::unique_ptr<OrvTestProject> m_Project;
    std::unique_ptr<OrvLayerView> m_View;
    OrvShaderInput* m_Channel = nullptr;
};

QTEST_MAIN(TstLayerDrops)
#include "TstLayerDrops.moc"
