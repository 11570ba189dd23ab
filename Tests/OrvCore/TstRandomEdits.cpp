#include "Tests/Support/OrvTestProject.h"

#include "OrvCore/Channels/OrvSnShaderInputNode.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Layers/OrvShaderLayers.h"
#include "OrvCore/Network/OrvNodeEvaluation.h"
#include "OrvCore/Network/OrvSnGraphOutputNode.h"
#include "OrvCore/Network/OrvSnMultiChannelMergeNode.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCore/Shaders/OrvLayerShaderUtils.h"
#include "OrvCore/Shaders/OrvMultiChannelLayerUtils.h"
#include "OrvCore/Shaders/OrvShadingModel.h"
#include "OrvCore/Shaders/OrvSnShaderNode.h"

#include "OrvDdi/Color/OrvColorManager.h"
#include "OrvDdi/Engine/OrvEngineNode.h"

#include <QtCore/QRandomGenerator>
#include <QtTest/QtTest>
#include <QtWidgets/QUndoStack>

#include <functional>

/// Thousands of edits as a user without a plan would do them, with undo and redo among them: whatever
/// happens, the history leads back to exactly the documents that were, nothing is left behind, and the
/// picture is the one that a fresh evaluation of the document gives.
class TstRandomEdits : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QFile File(m_Directory.filePath("Random.orvmat"));
        QVERIFY(File.open(QIODevice::WriteOnly));
        File.write(
            "{\"orvmat\": 1, \"name\": \"Random\", \"streams\": {\"Base Color\": {\"color\": [1, 0.5, 0]},"
            " \"Color\": {\"value\": 0.5}, \"Roughness\": {\"value\": 0.25}, \"Bump\": {\"value\": 0.75}}}");
        m_Material = File.fileName();
    }
    void cleanup() { OrvProjectManager::instance().closeProject(); }

    void historyLeadsBackToEveryDocument_data()
    {
        QTest::addColumn<int>("Seed");
        for (int Seed = 1; Seed <= 10; ++Seed)
            QTest::newRow(qPrintable(QString("seed %1").arg(Seed))) << Seed;
    }

    void historyLeadsBackToEveryDocument()
    {
        QFETCH(int, Seed);
        m_Random.seed(quint32(Seed));
        OrvTestProject Project(QSize(8, 8));
        m_pProject = &Project;
        Project.channel()->channelNode()->setLayoutOfImages(OrvUdimLayout(QSize(8, 8), {1001, 1002, 1011}));
        Project.addChannel("Bump", QSize(8, 8));
        Project.addChannel("Material", QSize(16, 16))->node()->addTag(OrvSnNames::MaterialShaderInputTag);
        OrvLayerShader* pShader = OrvLayerShaderUtils::createShaderFromKey("Shader/MetallicRoughness", true);
        pShader->setInputShaderInput("Base Color", Project.channel());
        pShader->setInputShaderInput("Roughness", Project.channel("Bump"));
        OrvUndoManager::instance().clear();
        const QUndoStack& History = *OrvUndoManager::instance().stack();
        QVector<QByteArray> Documents{Project.document()};
        View Shown(Project.channel());

        for (int Step = 0; Step < 800; ++Step) {
            const int Kind = below(10);
            if (Kind == 0) {
                for (int Back = below(12); Back > 0 && History.canUndo(); --Back)
                    Project.undo();
            } else if (Kind == 1) {
                for (int Forth = below(12); Forth > 0 && History.canRedo(); --Forth)
                    Project.redo();
            } else {
                const int Before = History.index();
                edit();
                QVERIFY(!OrvUndoManager::instance().isInMacro());
                if (History.index() == Before)
                    continue; // refused: nothing may have changed
                Documents.resize(Before + 1);
                Documents.append(Project.document());
                QCOMPARE(History.index(), Documents.size() - 1);
            }
            QCOMPARE(Project.document(), Documents[History.index()]);
            QVERIFY(Shown.isToldOfAllThatDiffers());
            if (Step % 25 == 0)
                checkWhole();
            if (QTest::currentTestFailed())
                return;
        }
        while (History.canUndo())
            Project.undo();
        QCOMPARE(Project.document(), Documents.first());
        while (History.canRedo())
            Project.redo();
        QCOMPARE(Project.document(), Documents.last());
        checkWhole();
    }

    /// Nothing is computed again for layers on which nobody has painted, whatever becomes of them.
    void emptyLayersAreNoNews()
    {
        OrvTestProject Project;
        Project.paint("Base", OrvColor(0.25f, 0.5f, 0.75f));
        OrvLayer* pEmpty = Project.paint("Empty");
        OrvLayer* pHalf = Project.paint("Half", OrvColor(1, 0, 0, 0.5f));
        Project.paint("Top", OrvColor(0, 1, 0, 0.25f));
        View Shown(Project.channel());
        const std::function<void()> Edits[] = {
            [&] { pEmpty->blendNode()->setEnabledAsBool(false); },
            [&] { pEmpty->blendNode()->setEnabledAsBool(true); },
            [&] { OrvLayerStreamUtils::insertLayerAfter(pEmpty, pHalf->blendNode(), Project.channel()); },
            [&] { Project.undo(); },
            [&] { Project.group("Group", {pEmpty}); },
            [&] { Project.undo(); },
            [&] { Project.channel()->deleteLayers({pEmpty}); },
            [&] { Project.undo(); },
        };
        for (const auto& Edit : Edits) {
            const QString Before = Project.tree();
            Edit();
            QVERIFY2(Shown.told().isEmpty(), qPrintable(Before + " became " + Project.tree()));
            QVERIFY(Shown.isToldOfAllThatDiffers());
        }
        pHalf->blendNode()->setEnabledAsBool(false);
        QVERIFY(!Shown.told().isEmpty());
    }

private:
    /// A channel as a canvas shows it, which computes anew only what it is told of.
    class View {
    public:
        explicit View(OrvShaderInput* pChannel)
            : m_pChannel(pChannel)
        {
            m_pShown->setInvalidated([this](const QRect& Region) { m_Told += Region; });
            isToldOfAllThatDiffers();
        }
        /// Since the picture was looked at last.
        const QRegion& told()
        {
            m_pShown->connectInput(OrvEngineNode::Base, OrvNodeEvaluation::result(m_pChannel->node()));
            return m_Told;
        }
        bool isToldOfAllThatDiffers()
        {
            const QRegion Told = told();
            const QRect Extent = m_pChannel->layout().extent();
            std::vector<float> Pixels(size_t(Extent.width()) * size_t(Extent.height()) * 4);
            m_pShown->render(
                Extent, 1.0, {GL_FLOAT, OrvPixelFormat::Rgba, OrvPixelFormat::Linear}, Pixels.data());
            m_Told = QRegion(); // evaluations tell of nothing new
            std::swap(m_Pixels, Pixels);
            bool Missed = false;
            for (size_t Index = 0; Pixels.size() == m_Pixels.size() && Index < Pixels.size(); ++Index) {
                const QPoint Pixel(int(Index / 4) % Extent.width(), int(Index / 4) / Extent.width());
                Missed |= qAbs(Pixels[Index] - m_Pixels[Index]) > 1e-5f && !Told.contains(Pixel);
            }
            return !Missed;
        }

    private:
        OrvShaderInput* m_pChannel;
        QRegion m_Told;
        std::vector<float> m_Pixels;
        std::unique_ptr<OrvEngineNode> m_pShown = OrvEngineNode::createPass();
    };

    int below(int Limit) { return m_Random.bounded(Limit); }

    OrvLayerStack* anyStack()
    {
        const int Which = below(6);
        const char* pName = Which < 4 ? "Diffuse" : Which == 4 ? "Bump" : "Material";
        OrvShaderInput* pChannel = m_pProject->channel(pName);
        OrvLayer* pLayer = below(2) ? anyLayer(pChannel) : nullptr;
        if (pLayer && below(2) && OrvLayerStreamUtils::groupStack(pLayer))
            return OrvLayerStreamUtils::groupStack(pLayer);
        if (pLayer && pLayer->maskStack())
            return pLayer->maskStack();
        if (pLayer && pLayer->adjustmentStack())
            return pLayer->adjustmentStack();
        return pChannel;
    }
    OrvLayer* anyLayer(const OrvLayerStack* pStack)
    {
        const QList<OrvLayer*> Layers = pStack->allLayers();
        return Layers.isEmpty() ? nullptr : Layers[below(Layers.size())];
    }
    /// One of those that something can be done with, if there are any.
    OrvLayer* anyLayer(const OrvLayerStack* pStack, bool (OrvLayer::*pSuits)() const)
    {
        QList<OrvLayer*> Suited;
        for (OrvLayer* pLayer : pStack->allLayers()) {
            if ((pLayer->*pSuits)() && pLayer->isModifiable())
                Suited.append(pLayer);
        }
        return Suited.isEmpty() ? anyLayer(pStack) : Suited[below(Suited.size())];
    }
    QList<OrvLayer*> someLayers(const OrvLayerStack* pStack)
    {
        QList<OrvLayer*> Layers;
        for (int Count = 1 + below(4); Count > 0; --Count) {
            OrvLayer* pLayer = anyLayer(pStack);
            if (pLayer && !Layers.contains(pLayer))
                Layers.append(pLayer);
        }
        return Layers;
    }
    OrvColor anyColor() { return {below(5) / 4.0f, below(5) / 4.0f, below(5) / 4.0f, below(5) / 4.0f}; }

    OrvLayerShader* anyShader()
    {
        const OrvLayerShaderManager& Manager = OrvLayerShaderManager::instance();
        const QList<OrvSnBaseNode*> Nodes = Manager.getShaderNodes(m_pProject->network(), false);
        return Nodes.isEmpty() ? nullptr : Manager.getLayerShader(Nodes[below(Nodes.size())]);
    }
    OrvShaderInput* anyChannel()
    {
        const QList<OrvShaderInput*> Channels
            = OrvShaderInputManager::instance().getShaderInputsFromNetwork(m_pProject->network());
        return Channels[below(Channels.size())];
    }

    void editShaders()
    {
        OrvLayerShaderManager& Manager = OrvLayerShaderManager::instance();
        const QVector<const OrvShadingModel*>& Models = OrvShadingModel::all();
        const QString Key = Models[below(Models.size())]->key();
        OrvShaderInput* pMaterial = m_pProject->channel("Material");
        OrvLayer* pLayer = anyLayer(pMaterial);
        OrvLayerShader* pShader = anyShader();
        const QStringList Inputs = pShader ? pShader->inputNames() : QStringList();
        const QString Input = Inputs.isEmpty() ? QString() : Inputs[below(Inputs.size())];
        QString Error;
        const int Kind = below(14);
        const bool Crowded = Manager.getShaderNodes(m_pProject->network(), false).size() > 20;
        if (!Crowded && (Kind < 2 || !pShader)) {
            OrvLayerShaderUtils::createShaderFromKey(Key, below(2));
        } else if (!Crowded && Kind == 2) {
            OrvUndoManager::AutoMacro Macro("Add Shader Layer");
            Manager.setLayerShaderCreating(true);
            if (!pMaterial->createShaderLayer(OrvLayerShaderUtils::createShaderFromKey(Key, true), 30))
                Macro.cancel();
            Manager.setLayerShaderCreating(false);
        } else if (Kind == 3) {
            if (pMaterial->allLayers().size() < 20)
                pMaterial->createShaderLayer(pShader, below(2) ? 30 : 94);
        } else if (Kind < 6) {
            pShader->setInputShaderInput(Input, below(4) ? anyChannel() : nullptr);
        } else if (Kind == 6) {
            pShader->setInputValue(Input, anyColor());
        } else if (Kind == 7) {
            pShader->setInputInverted(Input, below(2));
        } else if (Kind == 8) {
            pShader->setInputEnabled(Input, below(2));
        } else if (Kind == 9 && !Crowded) {
            OrvLayerShaderUtils::duplicateLayerShader(pShader, Error);
        } else if (Kind == 10) {
            below(2) ? OrvLayerShaderUtils::destroy(pShader, below(2))
                     : OrvLayerShaderUtils::cutToClipboard(pShader);
        } else if (Kind == 11) {
            OrvLayerShaderUtils::copyToClipboard(pShader);
            if (!Crowded)
                OrvLayerShaderUtils::pasteFromClipboard(Error, m_pProject->network());
        } else if (Kind == 12 && pLayer) {
            pLayer->convertShaderLayerToShader();
        } else if (Kind == 13) {
            below(4) ? Manager.setCurrentShader(pShader->node()) : Manager.recreateSystemShaders();
        }
    }

    void editChannels()
    {
        OrvShaderInput* pChannel = anyChannel();
        const GLenum Depths[] = {GL_UNSIGNED_BYTE, GL_HALF_FLOAT, GL_FLOAT};
        const QString Spaces[] = {OrvColorManager::srgb(), OrvColorManager::linear(), OrvColorManager::raw()};
        const int Option = below(2);
        const bool IsExtra = !QStringList{"Diffuse", "Bump", "Material"}.contains(pChannel->name());
        const bool Crowded
            = OrvShaderInputManager::instance().getShaderInputsFromNetwork(OrvTestProject::network()).size()
            > 6;
        QString Error;
        switch (below(7)) {
        case 0:
            pChannel->convertDepthTo(Depths[below(3)], Option);
            return;
        case 1:
            pChannel->convertColorSpaceTo(Spaces[below(3)], Option);
            return;
        case 2:
            pChannel->convertScalarColorSpaceTo(Spaces[below(3)], Option);
            return;
        case 3:
            pChannel->resizeLayers(4 << below(3));
            return;
        case 4:
            below(3) ? void(OrvShaderInputUtils::copyToClipboard(pChannel)) : void(pChannel->flattenUI());
            return;
        case 5:
            if (!Crowded)
                OrvShaderInputUtils::pasteFromClipboard(Error, OrvTestProject::network());
            return;
        default:
            if (IsExtra)
                OrvShaderInputUtils::cutToClipboard(pChannel, below(2));
        }
    }

    void editMultiChannelLayers()
    {
        OrvLayerShader* pShader = anyShader();
        OrvShaderInput* pChannel = anyChannel();
        OrvLayer* pAny = anyLayer(pChannel);
        OrvLayer* pLayer = anyLayer(pChannel, &OrvLayer::isMultiChannelLayer);
        OrvSnBaseNode* pTarget = pAny && below(2) ? pAny->blendNode() : nullptr;
        const OrvShadingModel* pModel = pShader && below(3) ? pShader->shaderModel() : nullptr;
        QString Error;
        const int Kind = below(12);
        const bool Crowded = pChannel->allLayers().size() > 25;
        if (Kind < 3 && pShader && !Crowded) {
            OrvMultiChannelLayerUtils::createMultiChannelGroupLayer(pShader, pTarget, Error);
        } else if (Kind < 6 && pShader && !Crowded) {
            OrvMultiChannelLayerUtils::createMaterialLayer(m_Material, pShader, pTarget, Error);
        } else if (Kind == 6) {
            OrvMultiChannelLayerUtils::convertToStandardLayers(QList<OrvShaderInput*>{pChannel}, pModel);
        } else if (Kind == 7) {
            OrvMultiChannelLayerUtils::removeFromChannels({pChannel}, pModel);
        } else if (Kind == 8 && pLayer) {
            pLayer->convertPayloadToImageSet();
        } else if (Kind == 9 && pLayer) {
            pLayer->setVisibleHere(below(2));
        } else if (Kind == 10 && pLayer) {
            pLayer->addMaskImageSet(OrvLayer::FilledMask, anyColor());
        } else if (pLayer && !Crowded) {
            OrvLayerStreamUtils::addDuplicateLayerAbove(
                pLayer, below(2) ? pLayer->blendNode() : pChannel->bottomNode(), pChannel);
        }
    }

    void edit()
    {
        if (below(6) == 0)
            return editMultiChannelLayers();
        if (below(10) == 0)
            return editChannels();
        if (below(6) == 0)
            return editShaders();
        OrvLayerStack* pStack = anyStack();
        OrvLayer* pLayer = anyLayer(pStack);
        const OrvLayerCreateFlags Flags = below(2) ? 30 : below(2) ? 94 : 1;
        QString Error;
        const int Kind = below(49);
        if (pLayer && Kind > 5 && below(4) == 0)
            pLayer->makeCurrent(false, below(2) == 0);
        m_pProject->select(someLayers(pStack));
        const auto paint = [&] {
            pStack->createPaintableLayer(Flags, below(3) ? nullptr : pLayer, QString(), anyColor());
        };
        const auto group = [&] { pStack->groupLayers(Error, 30); };
        // What stands here several times is done as many times as often.
        const QVector<std::function<void()>> StackEdits{
            paint,
            paint,
            paint,
            [&] {
                const QString Filter("Filter/Adjust/Invert Linear");
                pStack->createAdjustmentLayer(Filter, Flags, below(3) ? nullptr : pLayer);
            },
            [&] { pStack->createProceduralLayer("Procedural/Basic/Solid Color", Flags); },
            [&] { below(3) ? pStack->createGroupLayer(Flags) : pStack->createGraphLayer(Flags); },
            group,
            group,
            [&] { pStack->ungroupLayers(); },
            [&] { pStack->deleteLayers(); },
            [&] {
                if (pStack->allLayers().size() < 60)
                    pStack->duplicateLayers();
            },
            [&] { pStack->mergeLayers(30); },
            [&] { pStack->cutToClipboard(); },
            [&] { pStack->copyToClipboard(); },
            [&] {
                if (pStack->allLayers().size() < 60)
                    pStack->pasteFromClipboard(below(2) ? 22 : 86, Error);
            },
        };
        if (Kind < StackEdits.size())
            return StackEdits[Kind]();
        if (!pLayer)
            return;
        OrvLayerStack* pOther = anyStack();
        OrvLayer* pPlace = anyLayer(pOther);
        OrvSnBaseNode* pTarget = pPlace ? pPlace->blendNode() : pOther->bottomNode();
        if (Kind >= 34 && Kind < 40)
            pLayer = anyLayer(pStack, &OrvLayer::hasMask);
        else if (Kind == 40)
            pLayer = anyLayer(pStack, &OrvLayer::isGroupLayer);
        else if (Kind >= 41 && Kind < 43)
            pLayer = anyLayer(pStack, &OrvLayer::isBakePointLayer);
        const auto moveLayer = [&] { OrvLayerStreamUtils::insertLayerAfter(pLayer, pTarget, pOther); };
        const auto deleteCaches = [&] {
            const OrvUndoManager::AutoMacro Macro("Delete Caches");
            for (OrvSnBaseNode* pNode : m_pProject->network()->nodes())
                pNode->propagateDeleteCache(true);
        };
        const auto maskToPicture
            = [&] { below(3) ? pLayer->addMaskImageSetFromAlpha() : pLayer->convertMaskToImageSet(); };
        const QVector<std::function<void()>> LayerEdits{
            moveLayer,
            moveLayer,
            [&] { pLayer->addSharedLayerAfter(pTarget, QString(), true); },
            [&] { pLayer->unshareLayer(); },
            [&] { pLayer->setVisible(!pLayer->isVisible()); },
            [&] { pLayer->setLocked(below(4) == 0); },
            [&] { pLayer->unlockLockedAncestorLayers(); },
            [&] { below(2) ? pLayer->addMaskImageSet() : pLayer->addMaskImageSetAndFillBlack(); },
            [&] { pLayer->convertMaskToMaskStack(); },
            [&] { pLayer->deleteMask(); },
            [&] { pLayer->setMaskEnabled(!pLayer->isMaskEnabled()); },
            [&] { pLayer->addLayerAdjustmentLayerFromKey("Filter/Adjust/Invert Linear"); },
            [&] { below(2) ? pLayer->removeLayerAdjustment() : pLayer->setAdjustmentStackEnabled(below(2)); },
            [&] { OrvLayerStreamUtils::setLayerGroupPassThrough(pLayer->blendNode(), below(2)); },
            [&] {
                pLayer->blendNode()->setUserAttributeValue(OrvMergeAttributes::BlendMode,
                    OrvBlendParameters::modeNames()[below(OrvBlendParameters::modeNames().size())]);
            },
            [&] { pLayer->blendNode()->setUserAttributeValue(OrvMergeAttributes::Amount, below(5) / 4.0); },
            [&] {
                OrvLayerStreamUtils::createLayerNodeAfter(
                    pTarget, m_pProject->channel("Bump")->node(), QString(), QString(), true);
            },
            [&] {
                below(2) ? pLayer->addSecondaryAdjustmentLayerFromKey("Filter/Adjust/Invert Linear")
                         : pLayer->removeSecondaryAdjustmentLayer();
            },
            maskToPicture,
            maskToPicture,
            [&] { below(2) ? pLayer->applyMask() : pLayer->convertAdjustmentStackToImageSet(); },
            [&] { below(2) ? pLayer->copyMaskToClipboard() : pLayer->cutMaskToClipboard(); },
            [&] { pLayer->pasteMaskFromClipboard(); },
            [&] { pLayer->convertMask(below(2) ? GL_UNSIGNED_BYTE : GL_HALF_FLOAT); },
            [&] {
                below(2) ? pLayer->resizeMaskImageSets(0, 2 << below(4), true, true)
                         : pLayer->resizeImageSets(0, 2 << below(4), true, true);
            },
            [&] {
                below(2) ? OrvLayerStreamUtils::flattenLayer(pLayer, pStack) != nullptr
                         : pStack->shareLayersAsChannel(pStack->selectedLayers()) != nullptr;
            },
            [&] { below(3) ? void(pLayer->bake()) : void(pStack->createBakePointLayer(Flags)); },
            [&] {
                pLayer->bakePointNode() && below(2) ? void(pLayer->unbake())
                                                    : void(pStack->createBakePointLayer(Flags));
            },
            [&] { below(4) ? pStack->uncacheLayers() : pStack->cacheLayers(); },
            [&] { below(4) ? pLayer->uncacheUpToHere() : void(pLayer->cacheUpToHere()); },
            deleteCaches,
            deleteCaches,
            deleteCaches,
            [&] { pLayer->convertPayloadToImageSet(); },
        };
        LayerEdits[Kind - StackEdits.size()]();
    }

    void checkWhole()
    {
        // Nothing hangs about that no channel shows.
        const OrvLayerShaderManager& Shaders = OrvLayerShaderManager::instance();
        for (const OrvSnBaseNode* pNode : m_pProject->network()->nodes()) {
            QVERIFY2(!pNode->consumers().isEmpty() || pNode->hasTag("_shaderInput")
                    || Shaders.isListed(Shaders.getLayerShader(pNode)),
                qPrintable(pNode->typeName()));
        }
        QVERIFY(Shaders.currentLayerShader() && Shaders.currentShaderNode()->network());
        const QStringList Channels{"Diffuse", "Bump", "Material"};
        QVector<QVector<float>> Seen;
        for (const QString& Name : Channels) {
            const OrvShaderInput* pChannel = m_pProject->channel(Name);
            for (const OrvLayer* pLayer : pChannel->allLayers()) {
                QVERIFY(pLayer->contentNode());
                const OrvSnMultiChannelMergeNode* pCommon = pLayer->blendNode()->multiChannelNode();
                QVERIFY(!pCommon || pCommon->isRepresentable());
                QVERIFY(OrvShaderLayers::fits(pLayer, pChannel->isMaterialStack()));
                QVERIFY(!pLayer->stacks().isEmpty());
                const OrvLayerStack* pInside = OrvLayerStreamUtils::groupStack(pLayer);
                QVERIFY(!pInside || OrvLayerStreamUtils::isChainEnd(pInside->bottomNode()));
                QVERIFY(!pLayer->isModifiable() || !pLayer->isDownstreamLocked());
            }
            QVERIFY(OrvLayerStreamUtils::isChainEnd(pChannel->bottomNode()));
            Seen.append(pictureOf(pChannel->node()));
        }
        const QList<OrvSnBaseNode*> Lit = Shaders.getShaderNodes(m_pProject->network(), false);
        QVector<QVector<float>> SeenLit;
        for (const OrvSnBaseNode* pNode : Lit)
            SeenLit.append(pictureOf(pNode));
        for (OrvSnBaseNode* pNode : m_pProject->network()->nodes())
            OrvNodeEvaluation::removed(pNode);
        for (int Index = 0; Index < Channels.size(); ++Index) {
            const QVector<float> Fresh = pictureOf(m_pProject->channel(Channels[Index])->node());
            QVERIFY2(areSame(Seen[Index], Fresh),
                qPrintable(QString("%1: %2").arg(
                    Channels[Index], m_pProject->tree(m_pProject->channel(Channels[Index])))));
        }
        for (int Index = 0; Index < Lit.size(); ++Index) {
            const QVector<float> Fresh = pictureOf(Lit[Index]);
            QVERIFY2(areSame(SeenLit[Index], Fresh), qPrintable(Lit[Index]->name()));
        }
    }

    /// All tiles, in full and reduced.
    static QVector<float> pictureOf(const OrvSnBaseNode* pNode)
    {
        const auto* pChannel = qobject_cast<const OrvSnShaderInputNode*>(pNode);
        const auto* pShader = qobject_cast<const OrvSnShaderNode*>(pNode);
        const QSize Plane = (pChannel ? pChannel->layout() : pShader->layout()).extent().size();
        QVector<float> Picture;
        for (const int Reduction : {1, 2}) {
            const QSize Size = Plane / Reduction;
            QVector<float> Level(4 * Size.width() * Size.height());
            OrvNodeEvaluation::result(pNode)->render(QRect(QPoint(), Size), 1.0 / Reduction,
                {GL_FLOAT, OrvPixelFormat::Rgba, OrvPixelFormat::Linear}, Level.data());
            Picture += Level;
        }
        return Picture;
    }
    static bool areSame(const QVector<float>& First, const QVector<float>& Second)
    {
        return First.size() == Second.size()
            && std::equal(First.begin(), First.end(), Second.begin(),
                [](float A, float B) { return std::abs(A - B) <= 0.001f; });
    }

    QTemporaryDir m_Directory;
    QString m_Material;
    QRandomGenerator m_Random;
    OrvTestProject* m_pProject = nullptr;
};

QTEST_MAIN(TstRandomEdits)
#include "TstRandomEdits.moc"
