#include "Tests/Support/OrvTestProject.h"

#include "OrvCore/Object/OrvObjectReferenceManager.h"
#include "OrvCore/Project/OrvProjectFile.h"

#include <QtCore/QRandomGenerator>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>
#include <QtWidgets/QUndoStack>

namespace {

OrvProjectManager& projects()
{
    return OrvProjectManager::instance();
}

OrvShaderInputManager& channels()
{
    return OrvShaderInputManager::instance();
}

OrvLayerManager& layers()
{
    return OrvLayerManager::instance();
}

} // namespace

/// Several objects in one project, whose channels and layers have the same names: none gets in the other's
/// way, and a removed one comes back as it was.
class TstObjects : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        qRegisterMetaType<OrvGeoEntity*>();
        qRegisterMetaType<OrvShaderInput*>();
    }

    void init()
    {
        m_pProject = std::make_unique<OrvTestProject>();
        m_pHead = project()->currentGeoEntity();
        furnish(m_pHead, OrvColor(1, 0, 0));
        m_pBody = project()->addGeoEntity("Body");
        project()->setCurrentGeoEntity(m_pBody);
        for (const char* pName : {"Diffuse", "Bump"})
            OrvTestProject::addChannel(pName);
        furnish(m_pBody, OrvColor(0, 0, 1));
        OrvUndoManager::instance().clear();
    }
    void cleanup() { m_pProject.reset(); }

    void eachObjectKeepsWhatIsCurrentInIt()
    {
        OrvLayer* pHead = layerOf(m_pHead, "Dirt");
        OrvLayer* pBody = layerOf(m_pBody, "Base");
        pBody->makeCurrent(false, true);
        project()->setCurrentGeoEntity(m_pHead);
        pHead->addMaskImageSet();
        pHead->makeCurrent(false, true);
        layers().setCurrentComponent(pHead->maskPaintNode());
        layerOf(m_pHead, "Base")->addMaskImageSet();
        OrvLayerStack* pMaskStack = layerOf(m_pHead, "Base")->convertMaskToMaskStack();
        QVERIFY(pMaskStack);
        layers().setCurrentLayerStack(pMaskStack);

        project()->setCurrentGeoEntity(m_pBody);
        QCOMPARE(channels().currentShaderInput(), channelOf(m_pBody, "Diffuse"));
        QCOMPARE(layers().currentLayer(), pBody);
        QCOMPARE(layers().currentComponent(), pBody->paintNode());
        QCOMPARE(layers().currentLayerStack(), static_cast<OrvLayerStack*>(channelOf(m_pBody, "Diffuse")));
        project()->setCurrentGeoEntity(m_pHead);
        QCOMPARE(channels().currentShaderInput(), channelOf(m_pHead, "Diffuse"));
        QCOMPARE(layers().currentLayer(), pHead);
        QCOMPARE(layers().currentComponent(), pHead->maskPaintNode());
        QCOMPARE(layers().currentLayerStack(), pMaskStack);

        // A channel chosen there meanwhile is what counts.
        project()->setCurrentGeoEntity(m_pBody);
        channels().makeShaderInputCurrent(channelOf(m_pHead, "Bump"), true);
        layers().setCurrentLayerStack(channelOf(m_pBody, "Diffuse"));
        project()->setCurrentGeoEntity(m_pHead);
        QCOMPARE(channels().currentShaderInput(), channelOf(m_pHead, "Bump"));
        QVERIFY(!layers().currentLayer() && !layers().currentComponent());
    }

    void editsOfOtherObjectsStayUnseen()
    {
        project()->setCurrentGeoEntity(m_pHead);
        QSignalSpy Channel(&channels(), &OrvShaderInputManager::currentShaderInputChanged);
        QSignalSpy Layer(&layers(), &OrvLayerManager::currentLayerChanged);
        QSignalSpy Component(&layers(), &OrvLayerManager::currentComponentChanged);
        const QByteArray Head = document(m_pHead);
        OrvShaderInput* pOther = channelOf(m_pBody, "Diffuse");
        channels().makeShaderInputCurrent(channelOf(m_pBody, "Bump"), true);
        channels().makeShaderInputCurrent(pOther, true);
        OrvLayer* pNew = pOther->createPaintableLayer(OrvColor::white(),
            OrvLayerAboveCurrent | OrvLayerMakeCurrent | OrvLayerUniqueName | OrvLayerSelectAlone);
        QVERIFY(pNew && layers().currentLayer(m_pBody->shaderNetwork()) == pNew);
        QVERIFY(channels().destroy(channelOf(m_pBody, "Bump"), OrvShaderInputManager::SharersAreDeleted));
        for (int Step = 0; Step < 2; ++Step)
            OrvTestProject::undo();
        QVERIFY(Channel.isEmpty() && Layer.isEmpty() && Component.isEmpty());
        QCOMPARE(document(m_pHead), Head);
    }

    void aRemovedObjectComesBackWhole_data()
    {
        QTest::addColumn<bool>("IsCurrent");
        QTest::addColumn<bool>("IsFirst");
        QTest::newRow("current, first") << true << true;
        QTest::newRow("current, last") << true << false;
        QTest::newRow("another, first") << false << true;
        QTest::newRow("another, last") << false << false;
    }
    void aRemovedObjectComesBackWhole()
    {
        QFETCH(bool, IsCurrent);
        QFETCH(bool, IsFirst);
        OrvGeoEntity* pGoing = IsFirst ? m_pHead : m_pBody;
        OrvGeoEntity* pStaying = IsFirst ? m_pBody : m_pHead;
        project()->setCurrentGeoEntity(pGoing);
        OrvLayer* pLayer = layerOf(pGoing, "Base");
        pLayer->makeCurrent(false, true);
        pGoing->setSelectionGroups({{"All", OrvSelectionArea::ofAllTiles(OrvUdimLayout({8, 8}))}}, "Keep");
        project()->setCurrentGeoEntity(IsCurrent ? pGoing : pStaying);
        const QByteArray Gone = document(pGoing), Stayed = document(pStaying);
        const QString ChannelId = channelOf(pGoing, "Diffuse")->node()->uuidString();
        const QList<OrvGeoEntity*> Before = project()->geoEntities();
        const OrvColor Seen = OrvTestProject::pixel(channelOf(pGoing, "Diffuse")->node());

        QSignalSpy Removed(&projects(), &OrvProjectManager::geoEntityRemoved);
        QSignalSpy Added(&projects(), &OrvProjectManager::geoEntityAdded);
        for (int Round = 0; Round < 2; ++Round) {
            if (Round == 0)
                QVERIFY(project()->removeGeoEntity(pGoing));
            else
                OrvTestProject::redo();
            QCOMPARE(project()->geoEntities(), QList<OrvGeoEntity*>{pStaying});
            QCOMPARE(project()->currentGeoEntity(), pStaying);
            QCOMPARE(channels().currentShaderInput(), channelOf(pStaying, "Diffuse"));
            QVERIFY(channels().getShaderInputsFromNetwork(pGoing->shaderNetwork()).isEmpty());
            QVERIFY(!project()->geoEntity(pGoing->name()));
            QCOMPARE(document(pStaying), Stayed);

            OrvTestProject::undo();
            QCOMPARE(project()->geoEntities(), Before);
            QCOMPARE(project()->currentGeoEntity(), IsCurrent ? pGoing : pStaying);
            QCOMPARE(document(pGoing), Gone);
            QCOMPARE(document(pStaying), Stayed);
        }
        QVERIFY(Removed.size() == 2 && Added.size() == 2);
        QCOMPARE(pGoing->selectionGroups().keys(), QStringList("All"));
        OrvShaderInput* pChannel = channelOf(pGoing, "Diffuse");
        QCOMPARE(pChannel->node()->uuidString(), ChannelId);
        QCOMPARE(channels().currentShaderInput(pGoing->shaderNetwork()), pChannel);
        QCOMPARE(layers().currentLayer(pGoing->shaderNetwork()), pLayer);
        QVERIFY(OrvTestProject::same(OrvTestProject::pixel(pChannel->node()), Seen));
        project()->setCurrentGeoEntity(pGoing);
        QCOMPARE(layers().currentComponent(), pLayer->paintNode());
    }

    void theHistoryKeepsRemovedObjectsNoLongerThanItself()
    {
        const QString Entity = m_pBody->uuidString(),
                      Node = channelOf(m_pBody, "Diffuse")->node()->uuidString();
        QVERIFY(project()->removeGeoEntity(m_pBody));
        OrvObjectReferenceManager& Known = OrvObjectReferenceManager::instance();
        OrvUndoManager::instance().clear();
        QVERIFY(!Known.getPointer(Entity) && !Known.getPointer(Node));
        QVERIFY(!project()->removeGeoEntity(m_pHead)); // the last one stays
        QCOMPARE(project()->geoEntities(), QList<OrvGeoEntity*>{m_pHead});

        // Added, furnished, taken back, and never wanted again.
        OrvGeoEntity* pHand = project()->addGeoEntity("Hand");
        project()->setCurrentGeoEntity(pHand, true);
        OrvTestProject::addChannel("Diffuse");
        OrvTestProject::undo();
        project()->setCurrentGeoEntity(m_pHead); // nobody's edit
        project()->setCurrentGeoEntity(pHand);
        OrvTestProject::undo();
        QCOMPARE(project()->currentGeoEntity(), m_pHead);
        OrvTestProject::undo();
        QCOMPARE(project()->geoEntities().size(), 1);
        for (int Step = 0; Step < 3; ++Step)
            OrvTestProject::redo();
        QCOMPARE(project()->currentGeoEntity(), pHand);
        QVERIFY(channelOf(pHand, "Diffuse"));
        for (int Step = 0; Step < 3; ++Step)
            OrvTestProject::undo();
        m_pHead->setName("Skull");
        QVERIFY(!OrvUndoManager::instance().stack()->canRedo());
        OrvTestProject::undo();
        QCOMPARE(m_pHead->name(), QString("Head"));
    }

    void namesAreToldApart()
    {
        QCOMPARE(project()->geoEntity("Body"), m_pBody);
        QCOMPARE(project()->uniqueGeoEntityName("Hand"), QString("Hand"));
        QCOMPARE(project()->uniqueGeoEntityName("Body"), QString("Body 2"));
        project()->addGeoEntity("Body 2");
        QCOMPARE(project()->uniqueGeoEntityName("Body"), QString("Body 3"));
        m_pBody->setName(QString());
        QCOMPARE(m_pBody->name(), QString("Body"));
    }

    void facesGiveTheChannelsOfPtexObjectsTheirSize()
    {
        auto pNew = std::make_unique<OrvGeoEntity>("Scales");
        pNew->setPtex(true);
        pNew->setFaceResolution(QSize(96, 64));
        OrvGeoEntity* pPtex = project()->addGeoEntity(std::move(pNew));
        project()->setCurrentGeoEntity(pPtex);
        for (const QSize& Asked : {QSize(), QSize(512, 512)}) {
            const OrvShaderInput* pChannel = OrvTestProject::addChannel("Diffuse", Asked);
            QCOMPARE(pChannel->layout(), OrvUdimLayout(QSize(96, 64)));
        }
        // So it is with what comes from elsewhere.
        QString Error;
        QVERIFY(OrvShaderInputUtils::copyToClipboard(channelOf(m_pHead, "Diffuse")));
        const OrvShaderInput* pPasted
            = OrvShaderInputUtils::pasteFromClipboard(Error, pPtex->shaderNetwork());
        QVERIFY2(pPasted, qPrintable(Error));
        QCOMPARE(pPasted->layout(), OrvUdimLayout(QSize(96, 64)));
        QCOMPARE(OrvTestProject::layer("Base", pPasted)->paintImageSet()->extent(), QRect(0, 0, 96, 64));
        OrvLayer* pLayer = m_pProject->paint("Layer", OrvColor(0, 1, 0), OrvTestProject::channel("Diffuse"));
        QCOMPARE(pLayer->paintImageSet()->extent(), QRect(0, 0, 96, 64));
        // An object of tiles takes the usual size, and its own tiles.
        m_pBody->setUdimTiles({1001, 1002});
        const OrvShaderInput* pUsual
            = OrvShaderInputUtils::create(m_pBody->shaderNetwork(), "Usual", QSize(), GL_FLOAT);
        QVERIFY(!pUsual->imageSetSize().isEmpty() && pUsual->imageSetSize() != QSize(96, 64));
    }

    void copiesTakeTheTilesOfTheirNewObject()
    {
        auto pNew = std::make_unique<OrvGeoEntity>("Wide");
        pNew->setUdimTiles({1001, 1002, 1012});
        OrvGeoEntity* pWide = project()->addGeoEntity(std::move(pNew));
        project()->setCurrentGeoEntity(pWide);
        OrvShaderInput* pFrom = OrvTestProject::addChannel("Far", QSize(8, 8));
        OrvLayer* pLayer = m_pProject->paint("Layer", OrvColor::clear(), pFrom);
        for (const int Tile : {1001, 1002, 1012})
            OrvTestProject::fill(pLayer->paintImageSet(), pFrom->layout().tileRect(Tile),
                OrvColor(0, 1, (Tile - 1000) / 16.0f));
        const auto blueAt = [](const OrvShaderInput* pChannel, int Tile) {
            return OrvTestProject::pixel(pChannel->node(), pChannel->layout().tileRect(Tile).center()).blue();
        };
        QString Error;
        QVERIFY(OrvShaderInputUtils::copyToClipboard(pFrom));
        const auto paste = [&](OrvGeoEntity* pEntity) {
            return OrvShaderInputUtils::pasteFromClipboard(Error, pEntity->shaderNetwork());
        };
        const OrvShaderInput* pNarrow = paste(m_pHead);
        QVERIFY2(pNarrow, qPrintable(Error));
        QCOMPARE(pNarrow->layout(), OrvUdimLayout(QSize(8, 8)));
        QCOMPARE(blueAt(pNarrow, 1001), 1 / 16.0f);
        auto pOther = std::make_unique<OrvGeoEntity>("Tall");
        pOther->setUdimTiles({1002, 1011, 1012});
        const OrvShaderInput* pTall = paste(project()->addGeoEntity(std::move(pOther)));
        QVERIFY2(pTall, qPrintable(Error));
        QCOMPARE(blueAt(pTall, 1002), 2 / 16.0f);
        QCOMPARE(blueAt(pTall, 1011), 0.0f);
        QCOMPARE(blueAt(pTall, 1012), 12 / 16.0f);

        // Resized, flattened and converted, every tile is where it was.
        QVERIFY(pFrom->resizeLayers(16) && pFrom->flattenUI() && pFrom->convertDepthTo(GL_HALF_FLOAT, 0));
        for (const int Tile : {1001, 1002, 1012})
            QCOMPARE(blueAt(pFrom, Tile), (Tile - 1000) / 16.0f);
        QCOMPARE(pFrom->layerList().first()->paintImageSet()->layout(), pFrom->layout());
    }

    void objectsAreStoredWithWhatIsCurrentInThem()
    {
        QTemporaryDir Folder;
        const QString Path = Folder.filePath("Two.orvi");
        auto pNew = std::make_unique<OrvGeoEntity>("Scales");
        pNew->setPtex(true);
        pNew->setFaceResolution(QSize(96, 64));
        project()->addGeoEntity(std::move(pNew));
        layerOf(m_pHead, "Base")->makeCurrent(false, true);
        layerOf(m_pBody, "Dirt")->makeCurrent(false, true);
        channels().makeShaderInputCurrent(channelOf(m_pHead, "Bump"), true);
        const QByteArray Head = document(m_pHead), Body = document(m_pBody);
        QString Error;
        QVERIFY2(projects().saveProjectAs(Path, Error), qPrintable(Error));
        QVERIFY2(projects().openProject(Path, Error), qPrintable(Error));
        const QList<OrvGeoEntity*> Objects = project()->geoEntities();
        QCOMPARE(Objects.size(), 3);
        m_pHead = Objects[0];
        m_pBody = Objects[1];
        QCOMPARE(project()->currentGeoEntity(), m_pBody);
        QVERIFY(document(m_pHead) == Head && document(m_pBody) == Body);
        QVERIFY(Objects[2]->isPtex() && Objects[2]->faceResolution() == QSize(96, 64));
        QCOMPARE(layers().currentLayer(), layerOf(m_pBody, "Dirt"));
        project()->setCurrentGeoEntity(m_pHead);
        QCOMPARE(channels().currentShaderInput(), channelOf(m_pHead, "Bump"));
        channels().makeShaderInputCurrent(channelOf(m_pHead, "Diffuse"), true);
        QCOMPARE(layers().currentLayer(), layerOf(m_pHead, "Base"));
        project()->setCurrentGeoEntity(Objects[2]);
        QVERIFY(!channels().currentShaderInput() && !layers().currentLayer());
        QVERIFY(!projects().isModified());

        // Nodes are known by their identities alone: one cannot be in two objects.
        const QString Manifest = Path + "/" + OrvProjectFile::ManifestName;
        QFile File(Manifest);
        QVERIFY(File.open(QIODevice::ReadWrite));
        QByteArray Text = File.readAll();
        const auto node = [](const OrvGeoEntity* pEntity) {
            return channelOf(pEntity, "Bump")->node()->uuidString().toLatin1();
        };
        Text.replace(node(m_pBody), node(m_pHead));
        File.resize(0);
        File.write(Text);
        File.close();
        QVERIFY(!projects().openProject(Path, Error));
        QVERIFY2(Error.contains("two objects"), qPrintable(Error));
    }

    void historyLeadsBackToEveryProject_data()
    {
        QTest::addColumn<int>("Seed");
        for (int Seed = 1; Seed <= 6; ++Seed)
            QTest::newRow(qPrintable(QString("seed %1").arg(Seed))) << Seed;
    }
    void historyLeadsBackToEveryProject()
    {
        QFETCH(int, Seed);
        m_Random.seed(quint32(Seed));
        const QUndoStack& History = *OrvUndoManager::instance().stack();
        QVector<QByteArray> Documents{wholeProject()};
        for (int Step = 0; Step < 300; ++Step) {
            switch (below(8)) {
            case 0:
                for (int Back = below(12); Back > 0; --Back)
                    OrvTestProject::undo();
                break;
            case 1:
                for (int Forth = below(12); Forth > 0; --Forth)
                    OrvTestProject::redo();
                break;
            case 2:
                project()->setCurrentGeoEntity(anyObject()); // no edit
                break;
            default:
                const int Before = History.index();
                edit();
                if (History.index() != Before) {
                    Documents.resize(Before + 1);
                    Documents.append(wholeProject());
                }
            }
            QCOMPARE(wholeProject(), Documents[History.index()]);
            // Whatever is current is there, and belongs together.
            OrvGeoEntity* pCurrent = project()->currentGeoEntity();
            QVERIFY(project()->geoEntities().contains(pCurrent));
            const OrvShaderInput* pChannel = channels().currentShaderInput();
            QVERIFY(!pChannel || pChannel->network() == pCurrent->shaderNetwork());
            const OrvLayer* pLayer = layers().currentLayer();
            QVERIFY(!pLayer || pLayer->blendNode()->network() == pCurrent->shaderNetwork());
            const OrvSnBaseNode* pComponent = layers().currentComponent();
            QVERIFY(!pComponent || pComponent->network() == pCurrent->shaderNetwork());
        }
        while (History.canUndo())
            OrvTestProject::undo();
        QCOMPARE(wholeProject(), Documents.first());
        while (History.canRedo())
            OrvTestProject::redo();
        QCOMPARE(wholeProject(), Documents.last());
    }

private:
    int below(int Limit) { return m_Random.bounded(Limit); }
    OrvGeoEntity* anyObject() { return project()->geoEntities()[below(project()->geoEntities().size())]; }

    /// All objects in order, with their nodes.
    static QByteArray wholeProject()
    {
        QByteArray Bytes;
        for (const OrvGeoEntity* pEntity : project()->geoEntities())
            Bytes += pEntity->uuidString().toUtf8() + pEntity->name().toUtf8() + document(pEntity);
        return Bytes;
    }

    void edit()
    {
        OrvGeoEntity* pObject = anyObject();
        OrvShaderInput* pChannel = channelOf(pObject, "Diffuse");
        const QList<OrvLayer*> All = pChannel ? pChannel->allLayers() : QList<OrvLayer*>();
        OrvLayer* pLayer = All.isEmpty() ? nullptr : All[below(All.size())];
        switch (below(8)) {
        case 0:
            if (project()->geoEntities().size() < 4) {
                const OrvUndoManager::AutoMacro Macro("Add");
                pObject = project()->addGeoEntity(project()->uniqueGeoEntityName("Hand"));
                if (below(2))
                    project()->setCurrentGeoEntity(pObject, true);
                if (below(2))
                    OrvShaderInputUtils::create(pObject->shaderNetwork(), "Diffuse", QSize(8, 8), GL_FLOAT);
            }
            break;
        case 1:
            project()->removeGeoEntity(pObject);
            break;
        case 2:
            pObject->setName(project()->uniqueGeoEntityName("Foot"));
            break;
        case 3:
            if (pChannel)
                channels().destroy(pChannel, OrvShaderInputManager::SharersAreDeleted);
            else
                OrvShaderInputUtils::create(pObject->shaderNetwork(), "Diffuse", QSize(8, 8), GL_FLOAT);
            break;
        case 4:
            if (pLayer)
                pChannel->deleteLayers({pLayer});
            break;
        case 5:
            if (pLayer)
                pLayer->makeCurrent(true, true);
            break;
        default:
            if (pChannel)
                pChannel->createPaintableLayer(OrvColor::white(),
                    OrvLayerAboveCurrent | OrvLayerMakeCurrent | OrvLayerUniqueName | OrvLayerSelectAlone);
        }
    }

    static OrvProject* project() { return projects().currentProject(); }

    static OrvShaderInput* channelOf(const OrvGeoEntity* pEntity, const QString& Name)
    {
        for (OrvShaderInput* pChannel : channels().getShaderInputsFromNetwork(pEntity->shaderNetwork())) {
            if (pChannel->name() == Name)
                return pChannel;
        }
        return nullptr;
    }
    static OrvLayer* layerOf(const OrvGeoEntity* pEntity, const QString& Name)
    {
        return OrvTestProject::layer(Name, channelOf(pEntity, "Diffuse"));
    }
    /// The nodes of an object with their pixels.
    static QByteArray document(const OrvGeoEntity* pEntity)
    {
        OrvGeoEntity* pCurrent = project()->currentGeoEntity();
        project()->setCurrentGeoEntity(const_cast<OrvGeoEntity*>(pEntity));
        const QByteArray Bytes = OrvTestProject::document();
        project()->setCurrentGeoEntity(pCurrent);
        return Bytes;
    }
    /// The same names and structure everywhere, in another colour.
    void furnish(OrvGeoEntity* pEntity, const OrvColor& Color) const
    {
        if (!channelOf(pEntity, "Bump"))
            OrvShaderInputUtils::create(pEntity->shaderNetwork(), "Bump", QSize(16, 16), GL_FLOAT);
        OrvShaderInput* pChannel = channelOf(pEntity, "Diffuse");
        m_pProject->paint("Base", Color, pChannel);
        OrvLayer* pDirt = m_pProject->paint("Dirt", OrvColor(0.5f, 0.5f, 0.5f, 0.5f), pChannel);
        QString Error;
        pChannel->groupLayers(Error, 0, {pDirt}, nullptr, "Group");
        pChannel->createAdjustmentLayer("Filter/Adjust/Invert Linear", 0);
        channels().makeShaderInputCurrent(pChannel, true);
    }

    QRandomGenerator m_Random;
    std::unique_ptr<OrvTestProject> m_pProject;
    OrvGeoEntity *m_pHead = nullptr, *m_pBody = nullptr;
};

QTEST_MAIN(TstObjects)

#include "TstObjects.moc"
