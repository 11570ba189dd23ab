#include "Tests/Support/OrvTestProject.h"

#include "OrvCore/Layers/OrvLayerClipboard.h"
#include "OrvCore/Layers/OrvLayerRendering.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Layers/OrvSelectionProvider.h"
#include "OrvCore/Network/OrvNodeRegistry.h"
#include "OrvCore/Network/OrvSnBakePointNode.h"
#include "OrvCore/Network/OrvSnGraphNode.h"

#include "OrvDdi/Image/OrvImageResampling.h"

#include <QtCore/QMimeData>
#include <QtCore/QTemporaryDir>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <QtTest/QtTest>
#include <QtWidgets/QUndoStack>

namespace {

const QString Invert = QStringLiteral("Filter/Adjust/Invert Linear");
const QString Blur = QStringLiteral("Filter/Blur/Box Blur");
const QString Checkers = QStringLiteral("Procedural/Pattern/Checkerboard");
const OrvColor Red(1.0f, 0.0f, 0.0f);
const OrvColor Green(0.0f, 1.0f, 0.0f);
const OrvColor Blue(0.0f, 0.0f, 1.0f);
const OrvPixelFormat Linear{GL_FLOAT, OrvPixelFormat::Rgba, OrvPixelFormat::Linear};

OrvLayerManager& layers()
{
    return OrvLayerManager::instance();
}

/// Colour and alpha that change from pixel to pixel.
void paintRamp(OrvImageSet* pImages, float AlphaScale = 1.0f)
{
    const QRect Extent = pImages->extent();
    std::vector<float> Pixels;
    for (int Y = 0; Y < Extent.height(); ++Y) {
        for (int X = 0; X < Extent.width(); ++X) {
            const float Right = float(X) / Extent.width(), Down = float(Y) / Extent.height();
            Pixels.insert(
                Pixels.end(), {Right, Down, 0.8f - 0.6f * Right, AlphaScale * (0.1f + 0.9f * Down)});
        }
    }
    pImages->buffer().write(Extent, Linear, Pixels.data());
    pImages->pixelsWritten(Extent);
}

void setBlending(OrvLayer* pLayer, const QString& Mode, double Amount)
{
    pLayer->blendNode()->setUserAttributeValue(OrvMergeAttributes::BlendMode, Mode);
    pLayer->blendNode()->setUserAttributeValue(OrvMergeAttributes::Amount, Amount);
}

/// Selects the left half, and has one group: the right half.
class HalfSelection : public OrvSelectionProvider {
public:
    bool Any = true;
    QString Picked;

    OrvImageBuffer selection(const OrvUdimLayout& Layout) const override
    {
        return Any ? half(Layout, 0) : OrvImageBuffer();
    }
    QStringList selectionGroups() const override { return {QStringLiteral("Right")}; }
    OrvImageBuffer selectionGroup(const QString& Name, const OrvUdimLayout& Layout) const override
    {
        return Name == "Right" ? half(Layout, Layout.extent().width() / 2) : OrvImageBuffer();
    }
    QString askForSelectionGroup() override { return Picked; }

private:
    static OrvImageBuffer half(const OrvUdimLayout& Layout, int Left)
    {
        OrvImageBuffer Mask(Layout.extent(), {GL_FLOAT, OrvPixelFormat::Scalar, OrvPixelFormat::Linear});
        const QRect Extent = Layout.extent();
        Mask.fill(OrvColor::white(), QRect(Left, 0, Extent.width() / 2, Extent.height()));
        return Mask;
    }
};

/// A conversion that must not be seen: how the layer is made, and what is done to it.
struct Conversion {
    const char* pName;
    std::function<OrvLayer*(OrvTestProject&)> Make;
    std::function<bool(OrvLayer*)> Convert;
};

OrvLayer* painted(OrvTestProject& Project, float AlphaScale = 1.0f)
{
    OrvLayer* pLayer = Project.paint("Painted");
    paintRamp(pLayer->paintImageSet(), AlphaScale);
    return pLayer;
}

/// Gives a layer a mask that is grey in one place.
OrvLayer* mask(OrvLayer* pLayer, const QRect& Place, float Grey)
{
    pLayer->addMaskImageSet();
    OrvTestProject::fill(pLayer->maskImageSet(), Place, OrvColor(Grey, Grey, Grey));
    return pLayer;
}

OrvLayer* masked(OrvTestProject& Project)
{
    return mask(painted(Project), QRect(2, 2, 11, 20), 0.4f);
}

OrvLayer* maskedGroup(OrvTestProject& Project)
{
    OrvLayer* pInside = painted(Project, 0.7f);
    OrvLayer* pOther = Project.paint("Green", OrvColor(0.1f, 0.9f, 0.2f, 0.4f));
    OrvLayer* pGroup = mask(Project.group("Group", {pOther, pInside}), QRect(3, 3, 20, 9), 0.5f);
    setBlending(pGroup, "Multiply", 0.75);
    return pGroup;
}

OrvLayer* dependentGroup(OrvTestProject& Project)
{
    OrvLayer* pMultiplied = painted(Project);
    setBlending(pMultiplied, "Multiply", 1.0);
    OrvLayer* pInvert = Project.channel()->createAdjustmentLayer(Invert, 0);
    OrvLayer* pGroup = mask(Project.group("Group", {pInvert, pMultiplied}), QRect(0, 0, 7, 32), 0.25f);
    pGroup->blendNode()->setUserAttributeValue(OrvMergeAttributes::Amount, 0.5);
    return pGroup;
}

OrvLayer* withMaskStack(OrvTestProject& Project)
{
    OrvLayer* pLayer = mask(painted(Project), QRect(5, 5, 9, 9), 0.2f);
    OrvLayerStack* pMask = pLayer->convertMaskToMaskStack();
    paintRamp(pMask->createPaintableLayer(30, nullptr, "Above", OrvColor::clear())->paintImageSet(), 0.5f);
    return pLayer;
}

/// Lengths of operations are meant for tiles of 2048 pixels; the channels here have 32.
void setLength(OrvSnBaseNode* pOperation, const QStringList& Names, int Pixels)
{
    for (const QString& Name : Names)
        pOperation->setUserAttributeValue(Name, Pixels * 64);
}

void showCheckers(OrvSnBaseNode* pCheckers)
{
    setLength(pCheckers, {QStringLiteral("x"), QStringLiteral("y")}, 8);
}

OrvLayer* withProceduralMask(OrvTestProject& Project)
{
    OrvLayer* pLayer = painted(Project);
    OrvSnBaseNode* pCheckers
        = Project.network()->addNode(OrvNodeRegistry::instance().createFromMenuPath(Checkers));
    showCheckers(pCheckers);
    pLayer->blendNode()->connectInput(OrvSnNames::Mask, pCheckers);
    return pLayer;
}

OrvLayer* withAdjustments(OrvTestProject& Project)
{
    OrvLayer* pLayer = painted(Project);
    setLength(pLayer->addLayerAdjustmentLayerFromKey(Blur)->contentNode(), {QStringLiteral("radius")}, 4);
    setBlending(pLayer->addLayerAdjustmentLayerFromKey(Invert), "Normal", 0.6);
    return pLayer;
}

OrvLayer* graph(OrvTestProject& Project)
{
    OrvLayer* pLayer = Project.channel()->createGraphLayer(0);
    auto* pGraph = qobject_cast<OrvSnGraphNode*>(pLayer->graphNode());
    OrvSnBaseNode* pCheckers
        = pGraph->nestedNetwork()->addNode(OrvNodeRegistry::instance().createFromMenuPath(Checkers));
    showCheckers(pCheckers);
    pGraph->outputNode()->connectInput(pGraph->outputNode()->preferredInput(), pCheckers);
    setBlending(pLayer, "Screen", 0.5);
    return pLayer;
}

const QVector<Conversion>& conversions()
{
    static const QVector<Conversion> All{
        {"flatten a group", maskedGroup,
            [](OrvLayer* p) { return OrvLayerStreamUtils::flattenLayer(p, nullptr) == p; }},
        {"flatten a group that needs what is below", dependentGroup,
            [](OrvLayer* p) { return OrvLayerStreamUtils::flattenLayer(p, nullptr) == p && !p->hasMask(); }},
        {"flatten a group with adjustments",
            [](OrvTestProject& Project) {
                OrvLayer* pGroup = maskedGroup(Project);
                pGroup->addLayerAdjustmentLayerFromKey(Invert);
                return pGroup;
            },
            [](OrvLayer* p) {
                return OrvLayerStreamUtils::flattenLayer(p, nullptr) && p->hasAdjustmentStack();
            }},
        {"bake a mask", masked, [](OrvLayer* p) { return p->applyMask() && !p->hasMask(); }},
        {"bake a mask above adjustments",
            [](OrvTestProject& P) { return mask(withAdjustments(P), QRect(2, 2, 11, 20), 0.0f); },
            [](OrvLayer* p) { return p->applyMask() && !p->hasAdjustmentStack(); }},
        {"mask stack to image", withMaskStack,
            [](OrvLayer* p) { return p->convertMaskToImageSet() && p->hasMaskImageSet(); }},
        {"procedural mask to image", withProceduralMask,
            [](OrvLayer* p) {
                return p->isMaskProcedural() && p->convertMaskToImageSet() && p->hasMaskImageSet();
            }},
        {"procedural mask to stack", withProceduralMask,
            [](OrvLayer* p) {
                const OrvLayerStack* pStack = p->convertMaskToMaskStack();
                return pStack && pStack->layerList().first()->isProceduralLayer();
            }},
        {"bake adjustments", withAdjustments,
            [](OrvLayer* p) { return p->convertAdjustmentStackToImageSet() && !p->hasAdjustmentStack(); }},
        {"bake adjustments that are off",
            [](OrvTestProject& Project) {
                OrvLayer* pLayer = withAdjustments(Project);
                pLayer->setAdjustmentStackEnabled(false);
                return pLayer;
            },
            [](OrvLayer* p) { return p->convertAdjustmentStackToImageSet() && !p->hasAdjustmentStack(); }},
        {"procedural to paint",
            [](OrvTestProject& Project) {
                OrvLayer* pLayer = Project.channel()->createProceduralLayer(Checkers, 0);
                showCheckers(pLayer->proceduralNode());
                pLayer->addLayerAdjustmentLayerFromKey(Invert);
                return pLayer;
            },
            [](OrvLayer* p) {
                return p->convertPayloadToImageSet() && p->isPaintableLayer() && p->hasAdjustmentStack();
            }},
        {"graph to paint", graph,
            [](OrvLayer* p) { return p->convertPayloadToImageSet() && p->isPaintableLayer(); }},
        {"mask to float", masked,
            [](OrvLayer* p) {
                const GLenum Depth = p->maskImageSet()->format().Depth == GL_FLOAT ? GL_HALF_FLOAT : GL_FLOAT;
                return p->convertMask(Depth) && p->maskImageSet()->format().Depth == Depth;
            }},
        {"bake what lies below",
            [](OrvTestProject& Project) {
                setBlending(painted(Project), "Overlay", 0.8);
                return Project.channel()->createBakePointLayer(0);
            },
            [](OrvLayer* p) { return p->bake() && p->bakePointNode()->isBakedResultUpToDate(false); }},
    };
    return All;
}

} // namespace

/// Conversions of layers: the picture stays as it was, each is one step that undo takes back, and what cannot
/// be done is refused with a word and nothing changed.
class TstLayerConversions : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        OrvLayerRendering::setProgress({});
        OrvProjectManager::instance().closeProject();
    }

    void pictureStays_data()
    {
        QTest::addColumn<int>("Index");
        QTest::addColumn<int>("Depth");
        QTest::addColumn<float>("Within");
        for (int Index = 0; Index < conversions().size(); ++Index) {
            const QString Name = conversions()[Index].pName;
            // A step of eight bits is up to 0.009 in linear light, and some pictures are rounded twice.
            QTest::newRow(qPrintable(Name + ", 8 bits")) << Index << int(GL_UNSIGNED_BYTE) << 0.02f;
            QTest::newRow(qPrintable(Name + ", half")) << Index << int(GL_HALF_FLOAT) << 0.002f;
            QTest::newRow(qPrintable(Name + ", float")) << Index << int(GL_FLOAT) << 1e-4f;
        }
    }

    void pictureStays()
    {
        QFETCH(int, Index);
        QFETCH(int, Depth);
        QFETCH(float, Within);
        OrvTestProject Project(QSize(40, 32), GLenum(Depth));
        Project.paint("Base", OrvColor(0.6f, 0.5f, 0.3f));
        OrvLayer* pLayer = conversions()[Index].Make(Project);
        Project.paint("Top", OrvColor(0.2f, 0.2f, 0.2f, 0.1f));
        pLayer->makeCurrent(false, true);
        const std::vector<float> Picture = picture(Project);
        const QByteArray Before = Project.document();
        const int Steps = OrvUndoManager::instance().stack()->count();

        QVERIFY(conversions()[Index].Convert(pLayer));
        QCOMPARE(OrvUndoManager::instance().stack()->count(), Steps + 1);
        QVERIFY2(
            difference(Project, Picture) < Within, qPrintable(QString::number(difference(Project, Picture))));
        QVERIFY(layers().currentLayer() == pLayer);
        QVERIFY(!layers().currentComponent() || layers().currentComponent()->network());
        for (const OrvSnBaseNode* pNode : Project.network()->nodes())
            QVERIFY(!pNode->consumers().isEmpty() || pNode->hasTag("_shaderInput"));
        const QByteArray After = Project.document();
        Project.undo();
        QCOMPARE(Project.document(), Before);
        QVERIFY(difference(Project, Picture) < 1e-6f);
        Project.redo();
        QCOMPARE(Project.document(), After);
        QVERIFY(difference(Project, Picture) < Within);
    }

    void mergingOverTransparencyKeepsThePicture()
    {
        // Layers that depend on what is below, which covers only a part of it.
        OrvTestProject Project(QSize(40, 32));
        painted(Project, 0.8f);
        OrvLayer* pMultiplied = Project.paint("M", OrvColor(0.8f, 0.3f, 0.6f, 0.5f));
        setBlending(pMultiplied, "Multiply", 1.0);
        OrvLayer* pNormal = Project.paint("N", OrvColor(0.1f, 0.8f, 0.9f, 0.3f));
        const std::vector<float> Picture = picture(Project);
        Project.select({pMultiplied, pNormal});
        QVERIFY(Project.channel()->mergeLayers(30));
        QVERIFY2(
            difference(Project, Picture) < 1e-3f, qPrintable(QString::number(difference(Project, Picture))));
    }

    void maskFromAlphaShowsWhatIsCovered()
    {
        OrvTestProject Project(QSize(16, 16), GL_UNSIGNED_BYTE);
        OrvLayer* pLayer = Project.paint("A");
        Project.fill(pLayer->paintImageSet(), QRect(0, 0, 8, 16), OrvColor(1.0f, 0.0f, 0.0f, 0.5f));
        QVERIFY(pLayer->addMaskImageSetFromAlpha());
        QVERIFY(Project.same(Project.pixel(pLayer->maskNode(), {3, 3}), OrvColor(0.5f, 0.5f, 0.5f)));
        QVERIFY(Project.same(Project.pixel(pLayer->maskNode(), {12, 3}), OrvColor::black()));
        QVERIFY(!pLayer->addMaskImageSetFromAlpha()); // it has one now
        // Of a group, a procedural and an adjustment: what they yield counts.
        OrvLayer* pGroup = Project.group("Group", {pLayer});
        QVERIFY(pGroup->addMaskImageSetFromAlpha());
        QVERIFY(Project.same(Project.pixel(pGroup->maskNode(), {3, 3}), OrvColor(0.25f, 0.25f, 0.25f)));
        OrvLayer* pInvert = Project.channel()->createAdjustmentLayer(Invert, 0);
        QVERIFY(pInvert->addMaskImageSetFromAlpha());
        QVERIFY(Project.pixel(pInvert->maskNode(), {3, 3}).red() > 0.01f);
    }

    void maskFromSelection()
    {
        OrvTestProject Project(QSize(16, 16), GL_UNSIGNED_BYTE);
        OrvLayer* pLayer = Project.paint("A", Red);
        QSignalSpy Refused(&layers(), &OrvLayerManager::refused);
        QVERIFY(!pLayer->addMaskImageSetFromSelection());
        QVERIFY(!pLayer->addMaskImageSetFromSelectionGroupViaGUI());
        QCOMPARE(Refused.size(), 2);
        {
            HalfSelection Selection;
            OrvSelectionProvider::install(&Selection);
            Selection.Any = false;
            QVERIFY(!pLayer->addMaskImageSetFromSelection());
            Selection.Any = true;
            QVERIFY(pLayer->addMaskImageSetFromSelection());
            QCOMPARE(pLayer->maskImageSet()->format(), Project.channel()->maskFormat());
            QVERIFY(Project.same(Project.pixel({3, 3}), Red));
            QVERIFY(Project.same(Project.pixel({12, 3}), OrvColor::clear()));
            Project.undo();
            QVERIFY(!pLayer->addMaskImageSetFromSelectionGroupViaGUI()); // not picked
            QVERIFY(!pLayer->hasMask());
            Selection.Picked = "Right";
            QVERIFY(pLayer->addMaskImageSetFromSelectionGroupViaGUI());
            QVERIFY(Project.same(Project.pixel({3, 3}), OrvColor::clear()));
            QVERIFY(Project.same(Project.pixel({12, 3}), Red));
        }
        QVERIFY(!OrvSelectionProvider::instance()); // it went with its owner
    }

    void masksGoOverTheClipboard()
    {
        QByteArray Bytes;
        {
            OrvTestProject Project(QSize(16, 16));
            OrvLayer* pStacked = withMaskStack(Project);
            OrvLayer* pPlain = Project.paint("Plain", Red);
            pPlain->addMaskImageSetAndFillBlack();
            OrvLayer* pBare = Project.paint("Bare", Blue);
            QVERIFY(!pBare->copyMaskToClipboard() && !pBare->cutMaskToClipboard());
            QVERIFY(pPlain->copyMaskToClipboard());
            QVERIFY(pBare->pasteMaskFromClipboard());
            QVERIFY(pBare->hasMaskImageSet() && pBare->maskNode() != pPlain->maskNode());
            QVERIFY(Project.same(Project.pixel(pBare->maskNode()), OrvColor::black()));
            const QByteArray Before = Project.document();
            const int Nodes = Project.network()->nodes().size();
            QVERIFY(pStacked->cutMaskToClipboard());
            QVERIFY(!pStacked->hasMask());
            // It replaces the mask that is there, a copy each time.
            QVERIFY(pBare->pasteMaskFromClipboard() && pPlain->pasteMaskFromClipboard());
            QVERIFY(pBare->hasMaskStack() && pPlain->hasMaskStack());
            QCOMPARE(Project.tree(pBare->maskStack()), QString("Above Mask"));
            QVERIFY(pBare->maskStack()->topNode() != pPlain->maskStack()->topNode());
            for (int Step = 0; Step < 3; ++Step)
                Project.undo();
            QCOMPARE(Project.document(), Before);
            QCOMPARE(Project.network()->nodes().size(), Nodes);
            QString Error;
            QVERIFY(Project.channel()->pasteFromClipboard(22, Error).isEmpty() && !Error.isEmpty());
            Bytes = QGuiApplication::clipboard()->mimeData()->data(
                OrvLayerClipboard::mimeType(OrvLayerClipboard::Mask));
        }
        // As another process hands it over, into a project of another size.
        OrvTestProject Other(QSize(32, 32));
        auto* pData = new QMimeData;
        pData->setData(OrvLayerClipboard::mimeType(OrvLayerClipboard::Mask), Bytes);
        QGuiApplication::clipboard()->setMimeData(pData);
        OrvLayer* pLayer = Other.paint("A", Green);
        QVERIFY(pLayer->pasteMaskFromClipboard());
        QCOMPARE(Other.tree(pLayer->maskStack()), QString("Above Mask"));
        const OrvImageSet* pPasted = pLayer->maskStack()->layerList().first()->paintImageSet();
        QCOMPARE(pPasted->layout(), Other.channel()->layout());
        QGuiApplication::clipboard()->clear();
        QVERIFY(!pLayer->pasteMaskFromClipboard() && pLayer->hasMaskStack());
    }

    void pastedMasksDoNotShowThemselves()
    {
        OrvTestProject Project;
        OrvShaderInput* pBump = Project.addChannel("Bump");
        OrvLayer* pInBump = Project.paint("In Bump", Red, pBump);
        OrvLayer* pMasked = Project.paint("Masked", Green);
        pMasked->addMaskImageSet();
        OrvLayerStack* pMask = pMasked->convertMaskToMaskStack();
        QVERIFY(OrvLayerStreamUtils::createLayerNodeAfter(
            pMask->topNode(), pBump->node(), QString(), QString(), true));
        QVERIFY(pMasked->copyMaskToClipboard());
        const QByteArray Before = Project.document();
        QVERIFY(!pInBump->pasteMaskFromClipboard());
        QCOMPARE(Project.document(), Before);
        QVERIFY(Project.paint("Other", Blue)->pasteMaskFromClipboard());
    }

    void resizedImagesStayInPlace_data()
    {
        QTest::addColumn<int>("Size");
        QTest::addColumn<QSize>("Expected");
        QTest::newRow("half") << -1 << QSize(32, 32);
        QTest::newRow("double") << -2 << QSize(128, 128);
        QTest::newRow("an odd edge") << 24 << QSize(24, 24);
    }

    void resizedImagesStayInPlace()
    {
        QFETCH(int, Size);
        QFETCH(QSize, Expected);
        OrvTestProject Project(QSize(64, 64));
        OrvLayer* pLayer = Project.paint("A", Red);
        Project.fill(pLayer->paintImageSet(), QRect(0, 0, 64, 16), Blue);
        pLayer->addMaskImageSetAndFillBlack();
        Project.fill(pLayer->maskImageSet(), QRect(0, 0, 32, 64), OrvColor::white());
        const QByteArray Before = Project.document();
        QVERIFY(pLayer->resizeMaskImageSets(0, Size, true, true));
        QVERIFY(pLayer->resizeImageSets(0, Size, true, true));
        QCOMPARE(pLayer->maskImageSet()->imageSetSize(), Expected);
        QCOMPARE(pLayer->paintImageSet()->imageSetSize(), Expected);
        QVERIFY(Project.same(Project.pixel({10, 60}), Red));
        QVERIFY(Project.same(Project.pixel({10, 4}), Blue));
        QVERIFY(Project.same(Project.pixel({60, 60}), OrvColor::clear()));
        QCOMPARE(OrvNodeEvaluation::result(Project.channel()->node())->boundingBox(), QRect(0, 0, 64, 64));

        // What is painted on them shows where it belongs, at once.
        const QSize Edge = Expected / 4;
        Project.fill(pLayer->maskImageSet(),
            QRect(QPoint(Expected.width() - Edge.width(), Expected.height() - Edge.height()), Edge),
            OrvColor::white());
        QVERIFY(Project.same(Project.pixel({60, 60}), Red));
        QVERIFY(Project.same(Project.pixel({60, 30}), OrvColor::clear()));
        // Through an adjustment stack, and beside a layer that shares the paint.
        pLayer->addLayerAdjustmentLayerFromKey(Invert);
        QVERIFY(Project.same(Project.pixel({10, 60}), OrvColor(0.0f, 1.0f, 1.0f)));
        Project.undo();
        OrvLayer* pShared = pLayer->addSharedLayerAfter(pLayer->blendNode(), QString(), true);
        pShared->deleteMask();
        QVERIFY(Project.same(Project.pixel({60, 30}), Red));
        while (Project.document() != Before && OrvUndoManager::instance().stack()->canUndo())
            Project.undo();
        QCOMPARE(Project.document(), Before);
        QVERIFY(Project.same(Project.pixel({10, 60}), Red)
            && Project.same(Project.pixel({60, 60}), OrvColor::clear()));
    }

    void channelsOfOtherSizesAreSharedWhole()
    {
        OrvTestProject Project(QSize(64, 64));
        OrvShaderInput* pSmall = Project.addChannel("Small", QSize(16, 16));
        OrvLayer* pInSmall = Project.paint("Small Paint", Red, pSmall);
        Project.fill(pInSmall->paintImageSet(), QRect(8, 0, 8, 16), Green);
        QVERIFY(OrvLayerStreamUtils::createLayerNodeAfter(
            Project.channel()->topNode(), pSmall->node(), QString(), QString(), true));
        QVERIFY(Project.same(Project.pixel({10, 60}), Red) && Project.same(Project.pixel({60, 60}), Green));
        // A group shared into the small channel, and then moved there, shows the same picture there.
        OrvLayer* pPaint = Project.paint("Paint", Blue);
        Project.fill(pPaint->paintImageSet(), QRect(0, 0, 32, 64), Red);
        OrvLayer* pGroup = Project.group("Group", {pPaint});
        OrvLayerStreamUtils::insertLayerAfter(pGroup, Project.channel()->bottomNode(), Project.channel());
        OrvLayer* pCopy = OrvLayerStreamUtils::addDuplicateLayerAbove(pGroup, pSmall->topNode(), nullptr);
        QVERIFY(pCopy);
        QVERIFY(Project.same(Project.pixel(pSmall->node(), {4, 12}), Red));
        QVERIFY(Project.same(Project.pixel(pSmall->node(), {12, 12}), Blue));
    }

    void impossibleThingsAreRefused()
    {
        OrvTestProject Project;
        OrvLayer* pPaint = Project.paint("Paint", Red);
        OrvLayer* pGroup = Project.group("Group", {Project.paint("Inside", Green)});
        OrvLayer* pLocked = maskedGroup(Project);
        pLocked->addLayerAdjustmentLayerFromKey(Invert);
        pLocked->setLocked(true);
        OrvLayer* pInLocked = OrvLayerStreamUtils::groupStack(pLocked)->layerList().first();
        QGuiApplication::clipboard()->clear();
        const QByteArray Before = Project.document();
        const int Steps = OrvUndoManager::instance().stack()->count();
        QSignalSpy Refused(&layers(), &OrvLayerManager::refused);
        int Asked = 0;
        const auto refuses = [&](bool Done) {
            const bool Told = Refused.size() == ++Asked;
            return !Done && Told && Project.document() == Before;
        };
        for (OrvLayer* pLayer : {pPaint, pLocked}) {
            QVERIFY(refuses(pLayer->applyMask()));
            QVERIFY(refuses(pLayer->convertMaskToImageSet()));
            QVERIFY(refuses(pLayer->convertAdjustmentStackToImageSet()));
            QVERIFY(refuses(pLayer->convertPayloadToImageSet()));
            QVERIFY(refuses(pLayer->resizeMaskImageSets(0, -1, true, true)));
            QVERIFY(refuses(pLayer->convertMask(GL_HALF_FLOAT)));
            QVERIFY(refuses(pLayer->pasteMaskFromClipboard()));
            QVERIFY(refuses(pLayer->bake()));
            QVERIFY(refuses(OrvLayerStreamUtils::flattenLayer(pLayer, Project.channel()) != nullptr));
        }
        QVERIFY(refuses(pLocked->cutMaskToClipboard()));
        QVERIFY(refuses(pInLocked->addMaskImageSetFromAlpha()));
        QVERIFY(refuses(pGroup->convertPayloadToImageSet()));
        QVERIFY(refuses(pPaint->resizeImageSets(0, 0, true, true)));
        QVERIFY(refuses(pPaint->resizeImageSets(0, 1000000, true, true)));
        QVERIFY(!OrvLayerStreamUtils::flattenLayer(nullptr, Project.channel()));
        QCOMPARE(OrvUndoManager::instance().stack()->count(), Steps);
    }

    void cancelledWorkLeavesNoTrace_data()
    {
        QTest::addColumn<int>("Index");
        for (int Index = 0; Index < conversions().size(); ++Index)
            QTest::newRow(conversions()[Index].pName) << Index;
    }

    void cancelledWorkLeavesNoTrace()
    {
        QFETCH(int, Index);
        OrvTestProject Project(QSize(24, 24));
        Project.paint("Base", Green);
        OrvLayer* pLayer = conversions()[Index].Make(Project);
        const QByteArray Before = Project.document();
        const int Steps = OrvUndoManager::instance().stack()->count();
        int Asked = 0;
        OrvLayerRendering::setProgress([&Asked](int, int) { return ++Asked < 0; });
        if (conversions()[Index].Convert(pLayer)) {
            QCOMPARE(Asked, 0); // this one is never long
            return;
        }
        QVERIFY(Asked > 0);
        QCOMPARE(Project.document(), Before);
        QCOMPARE(OrvUndoManager::instance().stack()->count(), Steps);
        QVERIFY(!OrvUndoManager::instance().isInMacro());
    }

    void sharersSeeTheSameAsBefore()
    {
        OrvTestProject Project;
        OrvLayer* pProcedural = Project.channel()->createProceduralLayer(Checkers, 0);
        OrvLayer* pSharer = Project.channel()->shareLayer(pProcedural, 0);
        QVERIFY(pProcedural->convertPayloadToImageSet());
        QVERIFY(pSharer->isPaintableLayer() && pSharer->paintNode() == pProcedural->paintNode());

        // A mask is baked into the paint of its own layer only.
        pProcedural->addMaskImageSetAndFillBlack();
        OrvSnBaseNode* pPaint = pSharer->paintNode();
        const OrvColor Seen = Project.pixel(pPaint);
        QVERIFY(pProcedural->applyMask());
        QVERIFY(pProcedural->paintNode() != pPaint && pSharer->paintNode() == pPaint);
        QVERIFY(Project.same(Project.pixel(pPaint), Seen));
        QCOMPARE(Project.pixel(pProcedural->paintNode()).alpha(), 0.0f);

        OrvLayer* pMasked = withMaskStack(Project);
        OrvLayer* pSharesMask = Project.channel()->shareLayer(pMasked, 0);
        QVERIFY(pMasked->convertMaskToImageSet());
        QVERIFY(pMasked->hasMaskImageSet() && pSharesMask->maskNode() == pMasked->maskNode());

        OrvLayer* pGroup = Project.group("Group", {Project.paint("Inside", Red)});
        OrvLayer* pSharesGroup = Project.channel()->shareLayer(pGroup, 0);
        QVERIFY(OrvLayerStreamUtils::flattenLayer(pGroup, Project.channel()));
        QVERIFY(pSharesGroup->isPaintableLayer() && pSharesGroup->paintNode() == pGroup->paintNode());
    }

    void layersThatGoAreTold()
    {
        OrvTestProject Project;
        OrvLayer* pGroup = maskedGroup(Project);
        OrvLayer* pInside = OrvLayerStreamUtils::groupStack(pGroup)->layerList().last();
        pInside->makeCurrent(false, true);
        QSignalSpy Removed(&layers(), &OrvLayerManager::layersRemoved);
        QVERIFY(OrvLayerStreamUtils::flattenLayer(pGroup, Project.channel()));
        QCOMPARE(Removed.takeFirst().first().value<QSet<OrvLayer*>>().size(), 2);
        QVERIFY(pGroup->isCurrent() && layers().currentComponent() == pGroup->paintNode());
        Project.undo();
        QVERIFY(pInside->isCurrent() && layers().currentComponent() == pInside->paintNode());

        OrvLayer* pMasked = withMaskStack(Project);
        OrvLayer* pInMask = pMasked->maskStack()->layerList().first();
        pInMask->makeCurrent(false, true);
        QPointer<OrvLayerStack> pStack = pMasked->maskStack();
        layers().setCurrentLayerStack(pStack);
        QVERIFY(pMasked->convertMaskToImageSet());
        QCOMPARE(Removed.size(), 1);
        QVERIFY(pMasked->isCurrent() && layers().currentComponent() == pMasked->maskPaintNode());
        QCOMPARE(layers().currentLayerStack(), Project.channel());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!pStack);
    }

    void bakePointsKnowWhetherTheyAreUpToDate()
    {
        OrvTestProject Project(QSize(600, 20));
        OrvLayer* pPaint = Project.paint("Paint", Red);
        OrvLayer* pHidden = Project.paint("Hidden", Blue);
        pHidden->setVisible(false);
        OrvLayer* pBake = Project.channel()->createBakePointLayer(30);
        OrvLayer* pAbove = Project.paint("Above");
        OrvSnBakePointNode* pNode = pBake->bakePointNode();
        QVERIFY(pBake->isBakePointLayer() && !pBake->isAdjustmentLayer() && !pNode->hasBakedResult());
        QSignalSpy Changed(pBake, &OrvLayer::bakePointStateChanged);
        const auto told = [&Changed] { return Changed.size() > 0 && (Changed.clear(), true); };
        const auto upToDate
            = [pNode] { return pNode->isBakedResultUpToDate(false) && pNode->isBakedResultUpToDate(true); };
        Project.fill(pPaint->paintImageSet(), QRect(0, 0, 10, 10), Green); // live: shown at once
        QVERIFY(Project.same(Project.pixel(), Green));
        QVERIFY(pBake->bake() && told() && upToDate());
        const QByteArray Baked = Project.document();

        // Nothing that cannot be seen makes it outdated.
        pPaint->setName("Other Name");
        pPaint->setColor(QColor(0xc8, 0x4b, 0x4b));
        pHidden->addMaskImageSet();
        pAbove->addMaskImageSet();
        QVERIFY(upToDate() && Changed.isEmpty());
        // What can be seen does, until it is taken back.
        setBlending(pPaint, "Multiply", 0.5);
        QVERIFY(!upToDate() && told());
        QVERIFY(Project.same(Project.pixel(), Green)); // still what was baked
        Project.undo();
        Project.undo();
        QVERIFY(upToDate() && told());
        pHidden->setVisible(true);
        QVERIFY(!upToDate() && told());
        pHidden->setVisible(false);
        QVERIFY(upToDate() && told());
        const OrvImageBuffer Before = pPaint->paintImageSet()->snapshot();
        {
            const OrvUndoManager::AutoMacro Stroke("Stroke");
            Project.fill(pPaint->paintImageSet(), QRect(590, 5, 4, 4), Blue);
            pPaint->setLocked(true);
        }
        QVERIFY(!upToDate() && told());
        QVERIFY(Project.same(Project.pixel({591, 6}), Red));
        pPaint->paintImageSet()->restore(Before, QRect(590, 5, 4, 4));
        pPaint->setLocked(false);
        QVERIFY(upToDate() && told());

        Project.fill(pPaint->paintImageSet(), QRect(0, 0, 10, 10), Blue);
        QVERIFY(pBake->bake() && upToDate());
        QVERIFY(Project.same(Project.pixel(), Blue));
        Project.undo();
        QVERIFY(Project.same(Project.pixel(), Green) && !pNode->isBakedResultUpToDate(true));
        Project.fill(pPaint->paintImageSet(), QRect(0, 0, 10, 10), Green);
        QVERIFY(pBake->unbake() && !pNode->hasBakedResult() && !pBake->unbake());
        QVERIFY(Project.same(Project.pixel(), Green));
        Project.undo();
        while (Project.document() != Baked && OrvUndoManager::instance().stack()->canUndo())
            Project.undo();
        QCOMPARE(Project.document(), Baked);
        QVERIFY(upToDate());
    }

    void bakePointsAreStoredAndCopied()
    {
        const QTemporaryDir Folder;
        QString Error;
        OrvTestProject Project(QSize(16, 16));
        OrvLayer* pPaint = Project.paint("Paint");
        paintRamp(pPaint->paintImageSet());
        OrvLayer* pBake = Project.channel()->createBakePointLayer(30);
        QVERIFY(pBake->bake());
        const OrvColor Baked = Project.pixel({9, 9});
        OrvLayer* pGroup = Project.group("Group", {pBake, pPaint});
        QVERIFY(Project.same(Project.pixel({9, 9}), Baked));
        Project.select({pGroup});
        const QList<OrvLayer*> Copies = Project.channel()->duplicateLayers();
        QVERIFY(Copies.size() == 1);
        OrvLayer* pCopy = OrvLayerStreamUtils::groupStack(Copies.first())->layerList().first();
        QVERIFY(
            pCopy->bakePointNode()->hasBakedResult() && pCopy->bakePointNode()->isBakedResultUpToDate(true));
        QVERIFY(
            !pBake->addSharedLayerAfter(pGroup->blendNode(), QString(), true)); // it is what lies below it

        QVERIFY(OrvProjectManager::instance().saveProjectAs(Folder.filePath("P.orvi"), Error));
        QVERIFY(OrvProjectManager::instance().openProject(Folder.filePath("P.orvi"), Error));
        OrvShaderInput* pChannel = Project.channel("Diffuse");
        for (OrvLayer* pLayer : pChannel->allLayers()) {
            if (!pLayer->isBakePointLayer())
                continue;
            QVERIFY(pLayer->bakePointNode()->hasBakedResult());
            QVERIFY(pLayer->bakePointNode()->isBakedResultUpToDate(false));
        }
        QVERIFY(Project.same(Project.pixel(pChannel->node(), {9, 9}), Baked));
        Project.layer("Paint", pChannel)->setVisible(false);
        QVERIFY(Project.same(Project.pixel(pChannel->node(), {9, 9}), Baked));
    }

    void imageSetsAreSortedByStatus()
    {
        OrvTestProject Project;
        OrvShaderInput* pBump = Project.addChannel("Bump");
        OrvLayer* pFree = Project.paint("Free");
        pFree->addMaskImageSet();
        OrvLayer* pLocked = Project.paint("Locked");
        OrvLayer* pLockedGroup = Project.group("Group", {pLocked});
        OrvLayer* pShared = Project.paint("Shared");
        pShared->addSharedLayerAfter(pBump->topNode(), QString(), true);
        pLockedGroup->setLocked(true);
        auto Images = Project.channel()->allImageSetsByStatus();
        QCOMPARE(Images.value(OrvLayerStack::FreeImageSets).size(), 2);
        QCOMPARE(Images.value(OrvLayerStack::LockedImageSets), QList<OrvImageSet*>{pLocked->paintImageSet()});
        QCOMPARE(Images.value(OrvLayerStack::SharedImageSets), QList<OrvImageSet*>{pShared->paintImageSet()});
        pShared->setLocked(true);
        Images = Project.channel()->allImageSetsByStatus();
        QCOMPARE(Images.value(OrvLayerStack::LockedImageSets).size(), 2);
        QVERIFY(!Images.contains(OrvLayerStack::SharedImageSets));
        QVERIFY(Project.addChannel("Empty")->allImageSetsByStatus().isEmpty());
    }

    void layersAreSharedAsAChannel()
    {
        OrvTestProject Project(QSize(16, 16), GL_HALF_FLOAT);
        OrvLayer* pBase = Project.paint("Base", Red);
        OrvLayer* pInvert = Project.channel()->createAdjustmentLayer(Invert, 0);
        OrvLayer* pTop = Project.paint("Top", OrvColor(0.0f, 0.0f, 1.0f, 0.5f));
        const QByteArray Before = Project.document();
        const OrvColor Seen = Project.pixel();
        OrvShaderInput* pChannel = Project.channel()->shareLayersAsChannel({pTop, pInvert, pBase});
        QVERIFY(pChannel);
        QCOMPARE(pChannel->layerList().size(), 3);
        QCOMPARE(pChannel->imageSetDepth(), GLenum(GL_HALF_FLOAT));
        QVERIFY(pTop->isShared() && pBase->isShared());
        QVERIFY(Project.same(Project.pixel(pChannel->node()), Seen));
        QCOMPARE(OrvUndoManager::instance().stack()->undoText(), QString("Share Layers As Channel"));
        Project.undo();
        QCOMPARE(Project.document(), Before);
        QVERIFY(pTop->shareLayerAsChannel());
        QVERIFY(!Project.channel()->shareLayersAsChannel({}));
    }

private:
    static std::vector<float> picture(const OrvTestProject& Project)
    {
        const QRect Extent = Project.channel()->layout().extent();
        std::vector<float> Pixels(std::size_t(Extent.width() * Extent.height()) * 4);
        OrvNodeEvaluation::result(Project.channel()->node())->render(Extent, 1.0, Linear, Pixels.data());
        return Pixels;
    }

    /// Colours count as far as they cover anything.
    static float difference(const OrvTestProject& Project, const std::vector<float>& Before)
    {
        const std::vector<float> Now = picture(Project);
        float Largest = 0.0f;
        for (std::size_t Pixel = 0; Pixel < Now.size(); Pixel += 4) {
            for (std::size_t Index = Pixel; Index < Pixel + 3; ++Index)
                Largest = std::max(
                    Largest, std::abs(Now[Index] * Now[Pixel + 3] - Before[Index] * Before[Pixel + 3]));
            Largest = std::max(Largest, std::abs(Now[Pixel + 3] - Before[Pixel + 3]));
        }
        return Largest;
    }
};

QTEST_MAIN(TstLayerConversions)
#include "TstLayerConversions.moc"
