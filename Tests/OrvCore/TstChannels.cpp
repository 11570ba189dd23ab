#include "Tests/Support/OrvTestProject.h"

#include "OrvCore/Channels/OrvSnShaderInputNode.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"

#include "OrvDdi/Color/OrvColorManager.h"

#include <QtTest/QtTest>
#include <QtWidgets/QUndoStack>

namespace {

OrvShaderInputManager& channels()
{
    return OrvShaderInputManager::instance();
}

} // namespace

/// Channels: what they know of their images, which is current, how they come and go.
class TstChannels : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void creationAndItsUndo()
    {
        OrvTestProject Project;
        QSignalSpy Created(&channels(), &OrvShaderInputManager::shaderInputCreated);
        QSignalSpy Added(&channels(), &OrvShaderInputManager::shaderInputAdded);
        QSignalSpy Removed(&channels(), &OrvShaderInputManager::shaderInputRemoved);
        const QByteArray Before = Project.document();
        OrvShaderInput* pBump = Project.addChannel("Bump", QSize(64, 16), GL_HALF_FLOAT, true);
        QCOMPARE(pBump->imageSetSize(), QSize(64, 16));
        QCOMPARE(pBump->imageSetDepth(), GLenum(GL_HALF_FLOAT));
        QVERIFY(pBump->isScalar() && pBump->isEmpty() && pBump->isModifiable() && !pBump->currentLayer());
        QVERIFY(pBump->node()->hasTag("_shaderInput") && pBump->bottomNode());
        QCOMPARE(pBump->path(), QString("Head/Bump"));
        QCOMPARE(pBump->parentShaderInputs(), QList<OrvShaderInput*>{pBump});
        QVERIFY(pBump->imageSetDepthList().contains(pBump->imageSetDepthAsString()));
        QCOMPARE(OrvShaderInputUtils::find(pBump->node(), QString()), pBump);
        QVERIFY(!OrvShaderInputUtils::getShaderInput(nullptr));
        Project.undo();
        QCOMPARE(Project.document(), Before);
        QCOMPARE(Removed.size(), 1);
        Project.redo();
        QCOMPARE(Created.size(), 1); // the object waited in the history
        QCOMPARE(Added.size(), 2);
        QCOMPARE(Project.channel("Bump"), pBump);
        QCOMPARE(OrvShaderInputUtils::generateUniqueName(Project.network(), "Bump"), QString("Bump 2"));
        pBump->node()->setName("Bump 2");
        QCOMPARE(OrvShaderInputUtils::generateUniqueName(Project.network(), "Bump"), QString("Bump"));
        Project.undo();
        QCOMPARE(OrvShaderInputUtils::generateUniqueName(Project.network(), "Bump"), QString("Bump 2"));
        QVERIFY(!OrvShaderInputUtils::create(nullptr, "X", QSize(8, 8), GL_FLOAT));
        QVERIFY(!OrvShaderInputUtils::create(Project.network(), "X", QSize(8, 8), 17));
        OrvShaderInput* pLike = OrvShaderInputUtils::createShaderInput(true);
        QVERIFY(pLike->isMaterialStack());
        QCOMPARE(pLike->imageSetSize(), Project.channel()->imageSetSize());
    }

    void numbersOfNamesMayBeFarApart()
    {
        OrvTestProject Project;
        Project.addChannel("Shot");
        OrvShaderInput* pDated = Project.addChannel("Shot 20261125");
        const auto next = [&] { return OrvShaderInputUtils::generateUniqueName(Project.network(), "Shot"); };
        QCOMPARE(next(), QString("Shot 20261126"));
        pDated->node()->setName("Shot 999999999");
        QCOMPARE(next(), QString("Shot 1000000000"));
        pDated->node()->setName("Shot 2147483647");
        QCOMPARE(next(), QString("Shot 2"));
        Project.addChannel("Shot 3");
        for (const char* pName : {"Shot 20261125", "Shot 0020261125", "Elsewhere"})
            pDated->node()->setName(pName);
        QCOMPARE(next(), QString("Shot 4"));
    }

    void imagesFollowTheChannel_data()
    {
        QTest::addColumn<GLenum>("Depth");
        QTest::addColumn<bool>("Scalar");
        QTest::addColumn<bool>("SrgbExpected");
        QTest::newRow("8-bit color") << GLenum(GL_UNSIGNED_BYTE) << false << true;
        QTest::newRow("half color") << GLenum(GL_HALF_FLOAT) << false << false;
        QTest::newRow("8-bit scalar") << GLenum(GL_UNSIGNED_BYTE) << true << false;
    }

    void imagesFollowTheChannel()
    {
        QFETCH(GLenum, Depth);
        QFETCH(bool, Scalar);
        QFETCH(bool, SrgbExpected);
        OrvTestProject Project;
        OrvShaderInput* pChannel = Project.addChannel("Channel", QSize(24, 16), Depth, Scalar);
        OrvLayer* pLayer = Project.paint("Layer", OrvColor(0.5f, 0.5f, 0.5f, 0.5f), pChannel);
        pLayer->addMaskImageSet();
        const OrvPixelFormat Paint = pLayer->paintImageSet()->format();
        QCOMPARE(pLayer->paintImageSet()->extent(), QRect(0, 0, 24, 16));
        QVERIFY(Paint.Depth == Depth && Paint.Kind == OrvPixelFormat::Rgba);
        QCOMPARE(Paint.Curve == OrvPixelFormat::Srgb, SrgbExpected);
        const OrvPixelFormat Mask = pLayer->maskImageSet()->format();
        QVERIFY(Mask.Depth == Depth && Mask.Kind == OrvPixelFormat::Scalar
            && Mask.Curve == OrvPixelFormat::Linear);
        // Inside a mask paint is data, but can be transparent.
        OrvLayer* pInMask = Project.paint("In Mask", OrvColor::white(), pLayer->convertMaskToMaskStack());
        QVERIFY(pInMask->paintImageSet()->format().Kind == OrvPixelFormat::Rgba);
        QVERIFY(pInMask->paintImageSet()->format().Curve == OrvPixelFormat::Linear);
        QVERIFY(Project.same(Project.pixel(pChannel->node()), OrvColor(0.5f, 0.5f, 0.5f, 0.5f), 0.02f));
    }

    void colorSpacesAreStoredUndoneAndTold()
    {
        OrvTestProject Project;
        OrvShaderInput* pChannel = Project.channel();
        QCOMPARE(pChannel->colorSpaceConfig().colorSpace(), OrvColorManager::linear()); // float
        pChannel->colorSpaceConfig().setColorSpaceVisible(0, false);
        QSignalSpy Changed(pChannel, &OrvShaderInput::colorSpaceConfigChanged);
        OrvColorSpaceConfig Config = pChannel->colorSpaceConfig();
        Config.setColorSpace(OrvColorSpaceConfig::NativeSpace, OrvColorManager::acesCg());
        pChannel->setColorSpaceConfig(Config, true);
        QCOMPARE(pChannel->colorSpaceConfig().colorSpace(), OrvColorManager::acesCg());
        QVERIFY(!pChannel->colorSpaceConfig().isColorSpaceVisible(0)); // the editors' settings stay
        Project.undo();
        QCOMPARE(pChannel->colorSpaceConfig().colorSpace(), OrvColorManager::linear());
        QCOMPARE(Changed.size(), 2);
        const int Count = OrvUndoManager::instance().stack()->count();
        OrvColorSpaceConfig Scalar = pChannel->scalarColorSpaceConfig();
        QVERIFY(Scalar.scalar());
        Scalar.setColorSpace(OrvColorSpaceConfig::NativeSpace, OrvColorManager::linear());
        pChannel->setScalarColorSpaceConfig(Scalar, false);
        QVERIFY(pChannel->scalarColorSpaceConfig() == Scalar);
        QCOMPARE(OrvUndoManager::instance().stack()->count(), Count);

        QSignalSpy Depth(pChannel, &OrvShaderInput::imageSetDepthChanged);
        pChannel->channelNode()->setDepth(GL_UNSIGNED_BYTE);
        QCOMPARE(Depth.size(), 1);
        QCOMPARE(pChannel->colorSpaceConfig().colorSpace(), OrvColorManager::srgb());
        QCOMPARE(
            pChannel->node()->property("imageSetDepthString").toString(), pChannel->imageSetDepthAsString());
    }

    void locksAndNamesAreTold()
    {
        OrvTestProject Project;
        QSignalSpy Locked(Project.channel(), &OrvShaderInput::lockedChanged);
        QSignalSpy Renamed(&channels(), &OrvShaderInputManager::shaderInputRenamed);
        Project.channel()->setLocked(true);
        Project.undo();
        Project.channel()->node()->setName("Color");
        Project.undo();
        QCOMPARE(Locked.size(), 2);
        QCOMPARE(Locked.last().first().toBool(), false);
        QCOMPARE(Renamed.size(), 2);
    }

    void theIconFollowsEmptyAndFull()
    {
        OrvTestProject Project;
        QSignalSpy Told(Project.channel(), &OrvShaderInput::layerMadeCurrent);
        OrvLayer* pA = Project.paint("A");
        QCOMPARE(Told.size(), 1);
        QCOMPARE(Project.channel()->currentLayer(), pA); // the top one, when none was chosen
        Project.paint("B");
        QCOMPARE(Told.size(), 1);
        Project.undo();
        Project.undo();
        QCOMPARE(Told.size(), 2);
        QVERIFY(!Project.channel()->currentLayer());
    }

    void theNextChannelIsTakenByName()
    {
        OrvTestProject Project;
        OrvShaderInput* pAmbient = Project.addChannel("ambient");
        OrvShaderInput* pSpecular = Project.addChannel("Specular");
        Project.addChannel("Material")->node()->addTag("_materialShaderInput");
        QSignalSpy Current(&channels(), &OrvShaderInputManager::currentShaderInputChanged);
        // Capitals come first, as in the list that the user sees; at its end there is only the way back.
        for (const OrvShaderInput* pNext : {pSpecular, pAmbient, pSpecular}) {
            channels().selectNextShaderInput();
            QCOMPARE(channels().currentShaderInput(), pNext);
        }
        QCOMPARE(Current.size(), 3);
        channels().makeShaderInputCurrent(pSpecular, true);
        QCOMPARE(Current.size(), 3);
        QVERIFY(channels().destroy(pSpecular, 0));
        QCOMPARE(channels().currentShaderInput(), pAmbient);
        QVERIFY(channels().destroy(pAmbient, 0));
        QCOMPARE(channels().currentShaderInput(), Project.channel());
        QCOMPARE(channels().currentShaderInputNode(), Project.channel()->node());
        channels().makeShaderInputCurrent(Project.network(), nullptr, true);
        QVERIFY(!channels().currentShaderInput() && !OrvLayerManager::instance().currentLayerStack());
    }

    void undoLeadsBackToTheFormerChannel()
    {
        OrvTestProject Project;
        Project.addChannel("Next by name");
        OrvShaderInput* pWorkedOn = Project.channel();
        channels().makeShaderInputCurrent(Project.addChannel("Elsewhere"), true);
        channels().makeShaderInputCurrent(pWorkedOn, true);
        for (const char* pName : {"One", "Two"})
            channels().makeShaderInputCurrent(Project.addChannel(pName), true);
        Project.undo();
        QCOMPARE(channels().currentShaderInput(), Project.channel("One"));
        Project.undo();
        QCOMPARE(channels().currentShaderInput(), pWorkedOn);
    }

    void removingASharedChannel_data()
    {
        QTest::addColumn<int>("Strategy");
        QTest::addColumn<QString>("Left");
        QTest::newRow("sharers become groups") << 0 << QString("Again[B A] Bump[B A] Base");
        QTest::newRow("sharers are deleted") << 1 << QString("Base");
    }

    void removingASharedChannel()
    {
        QFETCH(int, Strategy);
        QFETCH(QString, Left);
        OrvTestProject Project;
        OrvShaderInput* pBump = Project.addChannel("Bump");
        Project.paint("A", OrvColor(1, 0, 0), pBump);
        Project.paint("B", OrvColor(0, 0, 1, 0.5f), pBump);
        Project.paint("Base", OrvColor(0, 1, 0));
        for (const QString& Name : {QString(), QString("Again")}) {
            OrvLayerStreamUtils::createLayerNodeAfter(
                Project.channel()->topNode(), pBump->node(), Name, QString(), true);
        }
        const OrvColor Shown = Project.pixel();
        const QByteArray Before = Project.document();
        Project.layer("Bump")->setLocked(true);
        QVERIFY(!channels().destroy(pBump, Strategy)); // a locked layer shows it
        Project.undo();
        QCOMPARE(Project.document(), Before);

        QVERIFY(channels().destroy(pBump, Strategy));
        QVERIFY(!Project.channel("Bump"));
        QCOMPARE(Project.tree(), Left);
        if (Strategy == OrvShaderInputManager::SharersBecomeGroups)
            QVERIFY(Project.same(Project.pixel(), Shown));
        else
            QCOMPARE(Project.network()->nodes().size(), 4); // channel, bottom, layer, paint
        Project.undo();
        QCOMPARE(Project.document(), Before);
        QCOMPARE(Project.channel("Bump"), pBump);
        QVERIFY(Project.same(Project.pixel(), Shown));
    }

    void duplicatesShareNothing()
    {
        OrvTestProject Project;
        OrvLayer* pA = Project.paint("A", OrvColor(1, 0, 0));
        Project.group("Group", {pA});
        Project.channel()->createAdjustmentLayer("Filter/Adjust/Invert Linear", 0);
        OrvShaderInput* pCopy = OrvShaderInputUtils::createDuplicate(Project.channel(), QString());
        QCOMPARE(pCopy->name(), QString("Diffuse Copy"));
        QCOMPARE(Project.tree(pCopy), Project.tree());
        QCOMPARE(pCopy->imageSetDepth(), Project.channel()->imageSetDepth());
        Project.fill(pA->paintImageSet(), QRect(0, 0, 32, 32), OrvColor(0, 0, 1));
        QVERIFY(Project.same(Project.pixel(pCopy->node()), OrvColor(0, 1, 1)));
    }

    void eachObjectHasItsOwnCurrentChannel()
    {
        OrvTestProject Project;
        Project.paint("A")->makeCurrent(false, true);
        OrvProject* pProject = OrvProjectManager::instance().currentProject();
        OrvGeoEntity* pHead = pProject->currentGeoEntity();
        OrvGeoEntity* pBody = pProject->addGeoEntity("Body");
        pBody->setUdimTiles({1001, 1002});
        OrvShaderInput* pSkin
            = OrvShaderInputUtils::create(pBody->shaderNetwork(), "Skin", QSize(16, 16), GL_FLOAT);
        QCOMPARE(pSkin->layout().extent(), QRect(0, 0, 32, 16));
        channels().makeShaderInputCurrent(pSkin, true);
        QCOMPARE(channels().currentShaderInput(), Project.channel());
        QSignalSpy Current(&channels(), &OrvShaderInputManager::currentShaderInputChanged);
        QSignalSpy Layer(&OrvLayerManager::instance(), &OrvLayerManager::currentLayerChanged);
        pProject->setCurrentGeoEntity(pBody);
        QCOMPARE(channels().currentShaderInput(), pSkin);
        QCOMPARE(OrvLayerManager::instance().currentLayerStack(), static_cast<OrvLayerStack*>(pSkin));
        QVERIFY(
            !OrvLayerManager::instance().currentLayer() && !OrvLayerManager::instance().currentComponent());
        QVERIFY(Current.size() == 1 && Layer.size() == 1);
        pProject->setCurrentGeoEntity(pHead);
        QCOMPARE(OrvLayerManager::instance().currentLayer(), Project.layer("A"));

        // A layer goes to the other object as a copy.
        OrvLayer* pThere
            = OrvLayerStreamUtils::addDuplicateLayerAbove(Project.layer("A"), pSkin->topNode(), pSkin);
        QVERIFY(pThere);
        QCOMPARE(pThere->paintImageSet()->layout(), pSkin->layout());
        QVERIFY(!Project.layer("A")->canBePlacedAt(pSkin->topNode(), pSkin));
        QVERIFY(!Project.layer("A")->addSharedLayerAfter(pSkin->topNode(), QString(), true));
    }
};

QTEST_MAIN(TstChannels)
#include "TstChannels.moc"
