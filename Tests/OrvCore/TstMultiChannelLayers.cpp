#include "Tests/Support/OrvTestProject.h"

#include "OrvCore/Channels/OrvSnShaderInputNode.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Layers/OrvMultiChannelLayer.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnMultiChannelMergeNode.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderUtils.h"
#include "OrvCore/Shaders/OrvMultiChannelLayerUtils.h"
#include "OrvCore/Shaders/OrvShadingModel.h"
#include "OrvCore/Shelf/OrvMaterialPaintManager.h"

#include "OrvDdi/Files/OrvImageFiles.h"

#include <QtTest/QtTest>
#include <QtWidgets/QUndoStack>

namespace Utils = OrvMultiChannelLayerUtils;

namespace {

const OrvColor Red(1.0f, 0.0f, 0.0f);
const OrvColor Green(0.0f, 1.0f, 0.0f);
const OrvColor Blue(0.0f, 0.0f, 1.0f);

OrvColor grey(float Value)
{
    return {Value, Value, Value};
}

/// A shader with three channels of its own, the first of which is current, and a fourth channel that feeds
/// nothing.
class ShadedProject : public OrvTestProject {
public:
    ShadedProject()
    {
        pBase = channel();
        pMetal = addChannel(QStringLiteral("Metal"), QSize(16, 16));
        pRough = addChannel(QStringLiteral("Rough"), QSize(32, 32), GL_UNSIGNED_BYTE, true);
        pFree = addChannel(QStringLiteral("Free"));
        pShader = OrvLayerShaderUtils::createShaderFromKey(QStringLiteral("Shader/MetallicRoughness"), true);
        pShader->setInputShaderInput(QStringLiteral("Base Color"), pBase);
        pShader->setInputShaderInput(QStringLiteral("Metallic"), pMetal);
        pShader->setInputShaderInput(QStringLiteral("Roughness"), pRough);
        for (OrvShaderInput* pChannel : {pRough, pMetal, pBase})
            paint(QStringLiteral("Below"), Blue, pChannel);
        OrvUndoManager::instance().clear();
    }

    QList<OrvShaderInput*> channels() const { return {pBase, pMetal, pRough}; }
    QString trees() const
    {
        return tree(pBase) + QStringLiteral(" | ") + tree(pMetal) + QStringLiteral(" | ") + tree(pRough);
    }
    OrvColor at(const OrvShaderInput* pChannel, const QPoint& Place = QPoint(1, 1)) const
    {
        return pixel(pChannel->node(), Place);
    }
    /// The colours of all channels at one place.
    bool shows(const OrvColor& Base, const OrvColor& Metal, const OrvColor& Rough, float Within = 0.01f) const
    {
        return same(at(pBase), Base, Within) && same(at(pMetal), Metal, Within)
            && same(at(pRough), Rough, Within);
    }
    OrvLayer* material(const QString& Path, OrvSnBaseNode* pTarget = nullptr)
    {
        Error.clear();
        return Utils::createMaterialLayer(Path, pShader, pTarget, Error);
    }
    OrvLayer* group(OrvSnBaseNode* pTarget = nullptr)
    {
        Error.clear();
        return Utils::createMultiChannelGroupLayer(pShader, pTarget, Error);
    }
    static OrvLayer* in(const OrvShaderInput* pChannel, const OrvLayer* pLayer)
    {
        for (OrvLayer* pStream : pLayer->inAllChannels()) {
            if (OrvShaderInputUtils::findParents(pStream->blendNode(), QString())
                    .contains(const_cast<OrvShaderInput*>(pChannel)))
                return pStream;
        }
        return nullptr;
    }
    static int steps() { return OrvUndoManager::instance().stack()->count(); }
    /// Undone and done again, the document is the same, byte by byte.
    static bool isUndoneWhole(const QByteArray& Before)
    {
        const QByteArray After = document();
        undo();
        const bool Undone = document() == Before;
        redo();
        return Undone && document() == After;
    }

    OrvShaderInput *pBase, *pMetal, *pRough, *pFree;
    OrvLayerShader* pShader;
    QString Error;
};

} // namespace

/// Materials and groups that stand in several channels of a shader.
class TstMultiChannelLayers : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // Metal is no part of it, and no channel is there for the emission.
        m_Paint = write("Paint.orvmat",
            "{\"orvmat\": 1, \"name\": \"Paint\", \"streams\": {\"Base Color\": {\"color\": [1, 0, 0]},"
            " \"Roughness\": {\"value\": 0.5}, \"Emissive\": {\"value\": 1}}}");
        m_Steel = write("Steel.orvmat",
            "{\"orvmat\": 1, \"name\": \"Steel\", \"streams\": {\"Base Color\": {\"image\": \"Left.png\"},"
            " \"Metallic\": {\"value\": 0.75}, \"Roughness\": {\"value\": 0.25}}}");
        OrvImageBuffer Picture(
            QRect(0, 0, 8, 8), {GL_UNSIGNED_BYTE, OrvPixelFormat::Rgba, OrvPixelFormat::Srgb});
        Picture.fill(Green, QRect(0, 0, 4, 8));
        Picture.fill(Red, QRect(4, 0, 4, 8));
        QString Error;
        QVERIFY2(
            OrvImageFiles::write(m_Directory.filePath("Left.png"), Picture, QRect(0, 0, 8, 8), {}, {}, Error),
            qPrintable(Error));
    }

    void aMaterialGoesIntoTheChannelsThatItNames()
    {
        ShadedProject Project;
        const QByteArray Before = Project.document();
        OrvLayer* pLayer = Project.material(m_Paint);
        QVERIFY2(pLayer, qPrintable(Project.Error));
        QCOMPARE(Project.steps(), 1);
        QCOMPARE(Project.trees(), QStringLiteral("Paint Below | Below | Paint Below"));
        QVERIFY(Project.shows(Red, Blue, grey(0.5f)));
        QVERIFY(pLayer->isCurrent() && pLayer->isSelected() && pLayer == Project.pBase->currentLayer());
        auto* pMaterial = qobject_cast<OrvMultiChannelLayer*>(pLayer);
        QVERIFY(pMaterial && pMaterial->isMaterialLayer() && OrvLayerStreamUtils::isMaterialLayer(pLayer));
        QCOMPARE(pMaterial->streamName(), QStringLiteral("Base Color"));
        QCOMPARE(pMaterial->siblings().size(), 1);
        QVERIFY(pMaterial->multiChannelNode()->isRepresentable());
        QVERIFY(!OrvLayerStreamUtils::isInvalidMaterialLayer(pLayer));
        QCOMPARE(pMaterial->multiChannelNode()->streams(), (QStringList{"Base Color", "Roughness"}));
        QVERIFY(Project.pRough->containsMultiChannelLayerOfShaderModel(nullptr));
        QVERIFY(Project.pRough->containsMultiChannelLayerOfShaderModel(Project.pShader->shaderModel()));
        QVERIFY(
            !Project.pRough->containsMultiChannelLayerOfShaderModel(OrvShadingModel::find("Shader/Unlit")));
        QVERIFY(!Project.pMetal->containsMultiChannelLayerOfShaderModel(nullptr));
        QVERIFY(Project.isUndoneWhole(Before));
        QVERIFY(Project.layer("Paint") == pLayer);
        QCOMPARE(Project.pBase->currentStream(), QStringLiteral("Base Color"));
        QCOMPARE(Project.pFree->currentStream(), QString());
    }

    void imagesFillEveryTileAndSize()
    {
        ShadedProject Project;
        QVERIFY2(Project.material(m_Steel), qPrintable(Project.Error));
        QVERIFY(Project.shows(Green, grey(0.75f), grey(0.25f)));
        QVERIFY(Project.same(Project.at(Project.pBase, QPoint(30, 30)), Red));
        QVERIFY(Project.same(Project.at(Project.pMetal, QPoint(14, 14)), grey(0.75f)));
    }

    void theSamplesOfTheShelfMakeLayers()
    {
        const QVector<OrvShelfMaterial> Materials = OrvMaterialPaintManager::instance().materialsFromShelf();
        QVERIFY(Materials.size() >= 2);
        for (const OrvShelfMaterial& Material : Materials) {
            ShadedProject Project;
            QVERIFY2(Project.material(Material.Data.toString()), qPrintable(Project.Error));
            for (const OrvShaderInput* pChannel : Project.channels())
                QVERIFY2(!Project.same(Project.at(pChannel), Blue), qPrintable(Material.Name));
        }
    }

    void whatCannotBeMadeChangesNothing()
    {
        ShadedProject Project;
        const QString Alien = write(
            "Alien.orvmat", "{\"orvmat\": 1, \"name\": \"Alien\", \"streams\": {\"Slime\": {\"value\": 1}}}");
        Project.pRough->setLocked(true);
        OrvUndoManager::instance().clear();
        const QByteArray Before = Project.document();
        for (const QString& Path : {Alien, m_Paint, m_Directory.filePath("None.orvmat")}) {
            QVERIFY(!Project.material(Path));
            QVERIFY(!Project.Error.isEmpty());
        }
        QVERIFY(!Project.group() && !Project.Error.isEmpty());
        QVERIFY(!Utils::createMaterialLayer(m_Paint, nullptr, nullptr, Project.Error)
            && !Project.Error.isEmpty());
        QVERIFY(Project.document() == Before);
        QCOMPARE(Project.steps(), 0);

        // The reason names what stands in the way, in whichever channel that is.
        const QString Reason("No layer can be added to '%1': '%2' is locked");
        QVERIFY(!Project.group());
        QCOMPARE(Project.Error, Reason.arg(Project.pRough->name(), Project.pRough->name()));
        Project.pRough->setLocked(false);
        OrvLayer* pGroup = Project.group();
        pGroup->setLocked(true);
        QVERIFY(!Project.group(pGroup->contentNode()));
        QCOMPARE(Project.Error, Reason.arg(Project.pBase->name(), pGroup->name()));
    }

    void streamsGoToLikePlaces()
    {
        ShadedProject Project;
        OrvLayer* pPaint = Project.material(m_Paint);
        OrvLayer* pTop = Project.paint("Top", Green, Project.pRough);
        pPaint->makeCurrent(false, true);
        QVERIFY(Project.material(m_Steel)); // above the current layer, and above the same layer elsewhere
        QCOMPARE(Project.trees(), QStringLiteral("Steel Paint Below | Steel Below | Top Steel Paint Below"));
        OrvLayer* pGroup = Project.group(pTop->blendNode());
        QVERIFY(pGroup);
        QCOMPARE(Project.trees(),
            QStringLiteral(
                "Group[] Steel Paint Below | Group[] Steel Below | Group[] Top Steel Paint Below"));
        // Into the group: into the group of each channel that has the stream.
        QVERIFY(Project.material(m_Paint, ShadedProject::in(Project.pRough, pGroup)->contentNode()));
        QCOMPARE(Project.trees(),
            QStringLiteral("Group[Paint 2] Steel Paint Below | Group[] Steel Below | Group[Paint 2] Top "
                           "Steel Paint Below"));
        QVERIFY(Project.shows(Red, grey(0.75f), grey(0.5f)));
        QVERIFY(OrvLayerStreamUtils::validateGroupSelection(
            OrvLayerStreamUtils::groupStack(pGroup)->layerList(), pGroup->commonNode()));
    }

    void commonFactsAreThereOnce()
    {
        ShadedProject Project;
        const OrvColor RoughBelow = Project.at(Project.pRough);
        OrvLayer* pLayer = Project.material(m_Steel);
        OrvLayer* pRough = ShadedProject::in(Project.pRough, pLayer);
        QVERIFY(pRough && pRough != pLayer && qobject_cast<OrvMultiChannelLayer*>(pRough));
        QSignalSpy Names(pRough, &OrvLayer::nameChanged), Visibility(pRough, &OrvLayer::enabledAsBoolChanged),
            Colors(pRough, &OrvLayer::colorChanged), States(pRough, &OrvLayer::layerStateRefreshed);
        const QByteArray Before = Project.document();
        const int Steps = Project.steps();
        pLayer->setName("Chrome");
        QCOMPARE(pRough->name(), QStringLiteral("Chrome"));
        pLayer->setColor(Qt::red);
        QCOMPARE(pRough->color(), QColor(Qt::red));
        pLayer->setVisible(false);
        QVERIFY(!pRough->isVisible() && Project.shows(Blue, Blue, RoughBelow));
        pLayer->setVisible(true);
        pRough->setLocked(true);
        QVERIFY(pLayer->isLocked() && !pLayer->isModifiable() && !pLayer->isBlendingModifiable());
        QCOMPARE(Names.count() + Visibility.count() + Colors.count(), 4);
        QVERIFY(!States.isEmpty());
        QCOMPARE(Project.steps() - Steps, 5);
        for (int Step = 0; Step < 5; ++Step)
            Project.undo();
        QVERIFY(Project.document() == Before && pRough->name() == "Steel" && !pRough->isLocked());
    }

    void blendingAndHidingAreOfOneChannel()
    {
        ShadedProject Project;
        OrvLayer* pLayer = Project.material(m_Steel);
        pLayer->blendNode()->setUserAttributeValue(OrvMergeAttributes::Amount, 0.0);
        QVERIFY(Project.shows(Blue, grey(0.75f), grey(0.25f)));
        Project.undo();
        ShadedProject::in(Project.pMetal, pLayer)->blendNode()->setEnabledAsBool(false);
        QVERIFY(pLayer->isVisible() && pLayer->isVisibleHere());
        QVERIFY(!ShadedProject::in(Project.pMetal, pLayer)->isVisibleHere());
        QVERIFY(Project.shows(Green, Blue, grey(0.25f)));
        pLayer->setVisible(false);
        pLayer->setVisible(true);
        QVERIFY(Project.shows(Green, Blue, grey(0.25f)));
    }

    void aMaskPaintedOnceIsSeenEverywhere()
    {
        ShadedProject Project;
        OrvLayer* pLayer = Project.material(m_Steel);
        OrvLayer* pMetal = ShadedProject::in(Project.pMetal, pLayer);
        QSignalSpy MaskTold(pMetal, &OrvLayer::maskEnabledChanged);
        const QByteArray Before = Project.document();
        QVERIFY(pLayer->addMaskImageSet(OrvLayer::FilledMask, OrvColor::white()));
        QVERIFY(!MaskTold.isEmpty() && pMetal->hasMaskImageSet());
        QCOMPARE(pMetal->maskImageSet(), pLayer->maskImageSet());
        QVERIFY(!pLayer->isShared() && pLayer->getOtherSharers().isEmpty());
        QVERIFY(Project.shows(Green, grey(0.75f), grey(0.25f)));
        // The upper left quarter; the metal's channel is of half the size.
        Project.fill(pLayer->maskImageSet(), QRect(0, 0, 16, 16), OrvColor::black());
        QVERIFY(
            Project.same(Project.at(Project.pBase), Blue) && Project.same(Project.at(Project.pMetal), Blue));
        QVERIFY(Project.same(Project.at(Project.pMetal, QPoint(4, 4)), Blue));
        QVERIFY(Project.same(Project.at(Project.pMetal, QPoint(12, 4)), grey(0.75f)));
        QVERIFY(Project.same(Project.at(Project.pRough, QPoint(20, 20)), grey(0.25f)));
        pMetal->setMaskEnabled(false);
        QVERIFY(!pLayer->isMaskEnabled() && Project.shows(Green, grey(0.75f), grey(0.25f)));
        pMetal->setMaskEnabled(true);

        OrvLayerStack* pStack = pMetal->convertMaskToMaskStack();
        QVERIFY(pStack && pStack == pLayer->maskStack() && pStack->isMaskStack());
        QCOMPARE(pStack->parentShaderInputs(), Project.channels());
        Project.paint("White", OrvColor::white(), pStack);
        QVERIFY(Project.shows(Green, grey(0.75f), grey(0.25f)));
        QVERIFY(!pLayer->canBePlacedAt(pStack->topNode(), pStack));
        QVERIFY(pLayer->convertMaskToImageSet());
        QVERIFY(pMetal->hasMaskImageSet() && Project.shows(Green, grey(0.75f), grey(0.25f)));
        // A lock in one channel keeps the mask of all, which is told everywhere.
        QSignalSpy States(pMetal, &OrvLayer::layerStateRefreshed);
        Project.pRough->setLocked(true);
        QVERIFY(!States.isEmpty() && !pMetal->isModifiable());
        pLayer->deleteMask();
        QVERIFY(pLayer->hasMask());
        Project.pRough->setLocked(false);
        pLayer->deleteMask();
        QVERIFY(!pMetal->hasMask());
        while (Project.steps() && OrvUndoManager::instance().stack()->index() > 1)
            Project.undo();
        QVERIFY(Project.document() == Before);
    }

    void goingInOneChannelIsGoingInAll()
    {
        ShadedProject Project;
        OrvLayer* pLayer = Project.material(m_Steel);
        const QByteArray Before = Project.document();
        Project.pMetal->deleteLayers({ShadedProject::in(Project.pMetal, pLayer)});
        QCOMPARE(Project.trees(), QStringLiteral("Below | Below | Below"));
        QVERIFY(Project.isUndoneWhole(Before));
        Project.undo();
        QVERIFY(Project.layer("Steel") == pLayer);
        // In a group of one channel too; another one may forbid it.
        OrvLayer* pGroup = Project.OrvTestProject::group("Folder", {pLayer});
        QVERIFY(pGroup);
        QCOMPARE(Project.trees(), QStringLiteral("Folder[Steel] Below | Steel Below | Steel Below"));
        Project.pRough->setLocked(true);
        Project.pBase->deleteLayers({pGroup});
        QCOMPARE(Project.trees(), QStringLiteral("Folder[Steel] Below | Steel Below | Steel Below"));
        Project.pRough->setLocked(false);
        Project.pBase->deleteLayers({pGroup});
        QCOMPARE(Project.trees(), QStringLiteral("Below | Below | Below"));
        for (const OrvSnBaseNode* pNode : Project.network()->nodes())
            QVERIFY(!qobject_cast<const OrvSnMultiChannelMergeNode*>(pNode));
    }

    void movingIsOfOneChannel()
    {
        ShadedProject Project;
        OrvLayer* pLayer = Project.material(m_Steel);
        OrvLayer* pTop = Project.paint("Top", Green);
        QVERIFY(OrvLayerStreamUtils::insertLayerAfter(pLayer, pTop->blendNode(), Project.pBase));
        QCOMPARE(Project.trees(), QStringLiteral("Steel Top Below | Steel Below | Steel Below"));
        for (OrvShaderInput* pOther : {Project.pMetal, Project.pFree}) {
            QVERIFY(!pLayer->canBePlacedAt(pOther->topNode(), pOther));
            QVERIFY(!OrvLayerStreamUtils::insertLayerAfter(pLayer, pOther->topNode(), pOther));
        }
    }

    void copiesAreOfAllChannels()
    {
        ShadedProject Project;
        OrvLayer* pGroup = Project.group();
        QVERIFY(Project.material(m_Steel, pGroup->contentNode()));
        OrvLayer* pMask = ShadedProject::in(Project.pMetal, pGroup);
        pMask->addMaskImageSetAndFillBlack();
        const QByteArray Before = Project.document();
        Project.select({pGroup});
        const QList<OrvLayer*> Copies = Project.pBase->duplicateLayers();
        QCOMPARE(Copies.size(), 1);
        QCOMPARE(Project.trees(),
            QStringLiteral("Group Copy[Steel] Group[Steel] Below | Group Copy[Steel] Group[Steel] Below | "
                           "Group Copy[Steel] Group[Steel] Below"));
        QVERIFY(Project.isUndoneWhole(Before));
        OrvLayer* pCopy = Project.layer("Group Copy");
        QCOMPARE(pCopy->inAllChannels().size(), 3);
        QVERIFY(pCopy->maskNode() && pCopy->maskNode() != pGroup->maskNode() && !pCopy->isShared());
        OrvLayer* pSteelCopy = OrvLayerStreamUtils::groupStack(pCopy)->layerList().first();
        QCOMPARE(pSteelCopy->inAllChannels().size(), 3); // a layer of its own in the copy of the group
        QVERIFY(pSteelCopy->commonNode() != Project.layer("Group")->commonNode());
        pCopy->deleteMask();
        QVERIFY(Project.shows(Green, grey(0.75f), grey(0.25f)));
    }

    void theClipboardTakesOneChannel()
    {
        ShadedProject Project;
        OrvLayer* pLayer = Project.material(m_Steel);
        pLayer->setColor(Qt::red);
        pLayer->addMaskImageSetAndFillBlack();
        ShadedProject::in(Project.pRough, pLayer)->setMaskEnabled(false);
        Project.select({pLayer});
        Project.pBase->copyToClipboard();
        QString Error;
        const QList<OrvLayer*> Pasted = Project.pFree->pasteFromClipboard(0, Error);
        QCOMPARE(Pasted.size(), 1);
        QVERIFY(!Pasted.first()->isMultiChannelLayer() && Pasted.first()->name() == "Steel");
        QVERIFY(Pasted.first()->hasMaskImageSet() && !Pasted.first()->isMaskEnabled());
        QVERIFY(Pasted.first()->maskNode() != pLayer->maskNode());
        QCOMPARE(Pasted.first()->color(), QColor(Qt::red));
        QCOMPARE(Pasted.first()->blendNode()->stream(), QString());
        QVERIFY(Project.same(Project.at(Project.pFree), Green));
        QCOMPARE(pLayer->inAllChannels().size(), 3);
        // Shared, it is an ordinary layer with the same content and mask.
        const OrvLayer* pShared
            = pLayer->addSharedLayerAfter(Project.layer("Below")->blendNode(), QString(), true);
        QVERIFY(pShared && !pShared->isMultiChannelLayer() && pShared->maskNode() == pLayer->maskNode());
        QVERIFY(pShared->getOtherSharers().contains(pLayer) && pLayer->isShared());
        // Where a channel is copied, its layers are ordinary ones.
        OrvShaderInput* pCopy = OrvShaderInputUtils::createDuplicate(Project.pMetal, "Copy");
        QVERIFY(!pCopy || !pCopy->containsMultiChannelLayerOfShaderModel(nullptr));
    }

    void groupsKeepThePicture()
    {
        ShadedProject Project;
        OrvLayer* pGroup = Project.group();
        QVERIFY(Project.material(m_Steel, pGroup->contentNode()));
        Project.paint("Own", Red, OrvLayerStreamUtils::groupStack(ShadedProject::in(Project.pMetal, pGroup)));
        ShadedProject::in(Project.pRough, pGroup)->blendNode()->setEnabledAsBool(false);
        const OrvColor Rough = Project.at(Project.pRough);
        QVERIFY(Project.shows(Green, Red, Rough));
        // What another channel locks does not matter inside; what locks the group does.
        Project.pRough->setLocked(true);
        OrvLayer* pInside = OrvLayerStreamUtils::groupStack(pGroup)->layerList().first();
        QVERIFY(OrvLayerUtils::isModificationAllowedAt(pInside->blendNode()));
        QCOMPARE(OrvShaderInputUtils::findParents(pInside->blendNode(), QString()),
            QList<OrvShaderInput*>{Project.pBase});
        Project.undo();
        ShadedProject::in(Project.pMetal, pGroup)->setLocked(true);
        QVERIFY(
            !OrvLayerUtils::isModificationAllowedAt(pInside->blendNode()) && pInside->isDownstreamLocked());
        pInside->unlockLockedAncestorLayers();
        QVERIFY(!pGroup->isLocked());

        const QByteArray Before = Project.document();
        Project.select({pGroup});
        Project.pBase->ungroupLayers();
        QCOMPARE(Project.trees(), QStringLiteral("Steel Below | Own Steel Below | Steel Below"));
        QVERIFY(Project.shows(Green, Red, Rough));
        QVERIFY(Project.isUndoneWhole(Before));
        Project.undo();
        // Merging would tear the layer apart; flattening takes all channels.
        Project.select({pGroup, Project.layer("Below")});
        QVERIFY(!Project.pBase->mergeLayers());
        OrvLayer* pFlat = OrvLayerStreamUtils::flattenLayer(pGroup, Project.pBase, true);
        QVERIFY(pFlat && pFlat->isPaintableLayer() && !pFlat->isMultiChannelLayer());
        QCOMPARE(Project.trees(), QStringLiteral("Group Below | Group Below | Group Below"));
        QVERIFY(Project.shows(Green, Red, Rough));
        QVERIFY(Project.isUndoneWhole(Before));
    }

    void convertedLayersLookTheSame()
    {
        ShadedProject Project;
        OrvLayer* pLayer = Project.material(m_Steel);
        pLayer->addMaskImageSet(OrvLayer::FilledMask, OrvColor::white());
        Project.fill(pLayer->maskImageSet(), QRect(0, 0, 16, 16), OrvColor::black());
        pLayer->setName("Chrome");
        ShadedProject::in(Project.pMetal, pLayer)
            ->blendNode()
            ->setUserAttributeValue(OrvMergeAttributes::Amount, 0.5);
        pLayer->makeCurrent(false, true);
        QVector<OrvColor> Colors;
        const auto allColors = [&Project] {
            QVector<OrvColor> All;
            for (const OrvShaderInput* pChannel : Project.channels())
                All << Project.at(pChannel) << Project.at(pChannel, QPoint(12, 12))
                    << Project.at(pChannel, QPoint(31, 31));
            return All;
        };
        const auto looksAsBefore = [&](const QVector<OrvColor>& Before) {
            const QVector<OrvColor> Now = allColors();
            for (int Index = 0; Index < Now.size(); ++Index) {
                if (!Project.same(Now[Index], Before[Index]))
                    return false;
            }
            return true;
        };
        Colors = allColors();
        const QByteArray Before = Project.document();
        QVERIFY(pLayer->convertPayloadToImageSet());
        QVERIFY(looksAsBefore(Colors));
        QVERIFY(Project.isUndoneWhole(Before));
        QSet<OrvSnBaseNode*> Masks;
        for (const OrvShaderInput* pChannel : Project.channels()) {
            const OrvLayer* pPaint = Project.layer("Chrome", pChannel);
            QVERIFY(pPaint && pPaint->isPaintableLayer() && pPaint->hasMaskImageSet()
                && !pPaint->isMultiChannelLayer());
            QCOMPARE(pPaint->maskImageSet()->layout(), pChannel->layout());
            Masks.insert(pPaint->maskNode());
        }
        QCOMPARE(Masks.size(), 3);
        QVERIFY(Project.layer("Chrome")->isCurrent());

        // One channel alone leaves the shader.
        Project.undo();
        QVERIFY(Utils::convertToStandardLayers(
            QList<OrvShaderInput*>{Project.pMetal}, Project.pShader->shaderModel()));
        QVERIFY(looksAsBefore(Colors));
        QVERIFY(!Project.pMetal->containsMultiChannelLayerOfShaderModel(nullptr));
        QCOMPARE(pLayer->inAllChannels().size(), 2);
        QVERIFY(Project.isUndoneWhole(Before));
        Project.undo();
        const OrvShadingModel* pOther = OrvShadingModel::find("Shader/Specular");
        QVERIFY(Utils::convertToStandardLayers(Project.channels(), pOther));
        QVERIFY(Project.document() == Before);
    }

    void disconnectedChannelsLoseTheirLayers()
    {
        ShadedProject Project;
        OrvLayer* pGroup = Project.group();
        OrvLayer* pSteel = Project.material(m_Steel, pGroup->contentNode());
        Project.paint("Own", Red, OrvLayerStreamUtils::groupStack(ShadedProject::in(Project.pMetal, pGroup)));
        pSteel->makeCurrent(false, true);
        const QByteArray Before = Project.document();
        Utils::removeFromChannels({Project.pBase, Project.pMetal}, Project.pShader->shaderModel());
        QCOMPARE(Project.trees(), QStringLiteral("Below | Below | Group[Steel] Below"));
        QVERIFY(Project.shows(Blue, Blue, grey(0.25f)));
        QVERIFY(OrvLayerManager::instance().currentLayer() == Project.layer("Below"));
        QVERIFY(Project.isUndoneWhole(Before));
        Project.undo();
        // So does a channel that goes; the last one takes the layer along.
        for (OrvShaderInput* pChannel : {Project.pBase, Project.pMetal})
            QVERIFY(OrvShaderInputManager::instance().destroy(pChannel, 0));
        QCOMPARE(Project.tree(Project.pRough), QStringLiteral("Group[Steel] Below"));
        QVERIFY(Project.same(Project.at(Project.pRough), grey(0.25f)));
        QVERIFY(OrvShaderInputManager::instance().destroy(Project.pRough, 0));
        for (const OrvSnBaseNode* pNode : Project.network()->nodes())
            QVERIFY(!qobject_cast<const OrvSnMultiChannelMergeNode*>(pNode));
        for (int Step = 0; Step < 3; ++Step)
            Project.undo();
        QVERIFY(Project.document() == Before);
    }

    void projectsKeepThem()
    {
        QString Error;
        const QString Path = m_Directory.filePath("Kept.orv");
        QByteArray Stored;
        {
            ShadedProject Project;
            OrvLayer* pGroup = Project.group();
            QVERIFY(Project.material(m_Steel, pGroup->contentNode()));
            pGroup->addMaskImageSet(OrvLayer::FilledMask, OrvColor::white());
            Project.fill(pGroup->maskImageSet(), QRect(0, 0, 16, 16), OrvColor::black());
            ShadedProject::in(Project.pRough, pGroup)->blendNode()->setEnabledAsBool(false);
            Stored = Project.document();
            QVERIFY2(OrvProjectManager::instance().saveProjectAs(Path, Error), qPrintable(Error));
        }
        QVERIFY2(OrvProjectManager::instance().openProject(Path, Error), qPrintable(Error));
        QVERIFY(OrvTestProject::document() == Stored);
        const OrvShaderInput* pMetal = OrvTestProject::channel("Metal");
        QVERIFY(OrvTestProject::same(OrvTestProject::pixel(pMetal->node()), Blue));
        QVERIFY(OrvTestProject::same(OrvTestProject::pixel(pMetal->node(), QPoint(14, 14)), grey(0.75f)));
        OrvLayer* pGroup = OrvTestProject::layer("Group", pMetal);
        QVERIFY(pGroup && qobject_cast<OrvMultiChannelLayer*>(pGroup)
            && !OrvLayerStreamUtils::isMaterialLayer(pGroup));
        QCOMPARE(pGroup->inAllChannels().size(), 3);
        QCOMPARE(pGroup->blendNode()->stream(), QStringLiteral("Metallic"));
        OrvProjectManager::instance().closeProject();
    }

    void theShaderIsAskedForWhereSeveralArePossible()
    {
        ShadedProject Project;
        QList<OrvLayerShader*> Offered;
        Utils::setShaderChooser([&Offered](const QList<OrvLayerShader*>& Shaders) {
            Offered = Shaders;
            return Shaders.last();
        });
        QCOMPARE(Utils::shaderForMultiChannelLayerCreationWithUserInput(Project.pRough), Project.pShader);
        QVERIFY(Offered.isEmpty() && !Utils::shaderForMultiChannelLayerCreationWithUserInput(Project.pFree));
        OrvLayerShader* pSecond
            = OrvLayerShaderUtils::createShaderFromKey(QStringLiteral("Shader/Unlit"), false);
        QVERIFY(pSecond->setInputShaderInput("Color", Project.pBase));
        QCOMPARE(Utils::shaderForMultiChannelLayerCreationWithUserInput(), pSecond);
        QCOMPARE(Offered.size(), 2);
        QCOMPARE(Utils::shaderForMultiChannelLayerCreationWithUserInput(Project.pMetal), Project.pShader);
        Utils::setShaderChooser({});
        // A group of one shader in a group of the other cannot be shown as such.
        OrvLayer* pGroup = Project.group();
        QVERIFY(Utils::createMultiChannelGroupLayer(pSecond, pGroup->contentNode(), Project.Error));
        QVERIFY(!OrvLayerStreamUtils::validateGroupSelection(
            OrvLayerStreamUtils::groupStack(pGroup)->layerList(), pGroup->commonNode()));
    }

private:
    QString write(const char* pName, const QByteArray& Text)
    {
        QFile File(m_Directory.filePath(pName));
        return File.open(QIODevice::WriteOnly) && File.write(Text) == Text.size() ? File.fileName()
                                                                                  : QString();
    }

    QTemporaryDir m_Directory;
    QString m_Paint, m_Steel;
};

QTEST_MAIN(TstMultiChannelLayers)
#include "TstMultiChannelLayers.moc"
