#include "Tests/Support/OrvTestProject.h"

#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Network/OrvNodeRegistry.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvShaderNetworkUtils.h"
#include "OrvCore/Network/OrvSnGraphNode.h"
#include "OrvCore/Network/OrvSnPassNode.h"
#include "OrvCore/Object/OrvObjectReferenceManager.h"
#include "OrvCore/Undo/OrvCallMethodUndo.h"

#include <QtTest/QtTest>
#include <QtWidgets/QUndoStack>

#include <functional>

namespace {

OrvShaderNetworkManager& networks()
{
    return OrvShaderNetworkManager::instance();
}

OrvUndoManager& undoManager()
{
    return OrvUndoManager::instance();
}

OrvSnBaseNode* addPass(const QString& Name)
{
    return OrvChainEditing::addNode<OrvSnBaseNode>(
        OrvTestProject::network(), std::make_unique<OrvSnPassNode>(), Name, nullptr, 0, 0);
}

QObject* referenced(const QString& Uuid)
{
    return OrvObjectReferenceManager::instance().getPointer(Uuid);
}

} // namespace

/// The primitive edits of which everything else is composed, the undo history, and walks through the graph.
class TstNodes : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void primitiveEditsAreUndoneAndToldAlike_data()
    {
        QTest::addColumn<int>("Which");
        for (int Which = 0; Which < edits().size(); ++Which)
            QTest::newRow(edits()[Which].Name) << Which;
    }

    void primitiveEditsAreUndoneAndToldAlike()
    {
        QFETCH(int, Which);
        const Edit& Tried = edits()[Which];
        OrvTestProject Project;
        OrvSnBaseNode* pNode = addPass("Node");
        OrvSnBaseNode* pSource = addPass("Source");
        pNode->addTag("old");
        pNode->createUserAttribute({"Number", 1});
        undoManager().clear();
        QSignalSpy Told(&networks(), Tried.Signal), ToldBack(&networks(), Tried.UndoSignal);
        QSignalSpy Finished(&undoManager(), &OrvUndoManager::editFinished);
        const QByteArray Before = Project.document();

        Tried.Do(pNode, pSource);
        const QByteArray After = Project.document();
        QCOMPARE(After != Before, Tried.Stored);
        const int Signals = Told.size();
        QVERIFY(Signals > 0);
        QCOMPARE(Finished.size(), 1);
        QCOMPARE(undoManager().stack()->count(), 1);
        Tried.Do(pNode, pSource); // changes nothing any more
        QCOMPARE(undoManager().stack()->count(), 1);
        QCOMPARE(Told.size(), Signals);

        for (int Round = 0; Round < 2; ++Round) {
            ToldBack.clear();
            Project.undo();
            QCOMPARE(Project.document(), Before);
            QCOMPARE(ToldBack.size(), Signals);
            Told.clear();
            Project.redo();
            QCOMPARE(Project.document(), After);
            QCOMPARE(Told.size(), Signals);
        }
    }

    void nodesComeAndGoWithTheirIdentity()
    {
        OrvTestProject Project;
        OrvSnBaseNode* pA = addPass("A");
        OrvSnBaseNode* pB = addPass("B");
        OrvSnBaseNode* pC = addPass("C");
        pB->connectInput("Input", pA);
        pC->connectInput("Input", pB);
        const QByteArray Before = Project.document();
        const QString Uuid = pB->uuidString();
        QVERIFY(!Uuid.contains(':') && !Uuid.isEmpty());
        QCOMPARE(referenced(Uuid), static_cast<QObject*>(pB));
        QSignalSpy Gone(&networks(), &OrvShaderNetworkManager::nodeDeregistered);
        Project.network()->removeNode(pB);
        QCOMPARE(Gone.size(), 1);
        QVERIFY(!referenced(Uuid) && !pB->network() && !pC->inputNode("Input") && pA->consumers().isEmpty());
        Project.undo();
        QCOMPARE(referenced(Uuid), static_cast<QObject*>(pB));
        QCOMPARE(Project.document(), Before);
        QCOMPARE(pC->inputNode("Input"), pB);

        // What a graph node holds cannot be found while the node is away.
        auto pGraph = std::make_unique<OrvSnGraphNode>();
        OrvSnBaseNode* pHeld = pGraph.get();
        OrvSnBaseNode* pInside = OrvChainEditing::addNode<OrvSnBaseNode>(
            pGraph->nestedNetwork(), std::make_unique<OrvSnPassNode>(), "Inside", nullptr, 0, 0);
        Project.network()->addNode(std::move(pGraph));
        QVERIFY(Project.network()->contains(pInside));
        QCOMPARE(pInside->network()->geoEntity(), Project.network()->geoEntity());
        Project.network()->removeNode(pHeld);
        QVERIFY(!referenced(pInside->uuidString()));
        Project.undo();
        QCOMPARE(referenced(pInside->uuidString()), static_cast<QObject*>(pInside));
    }

    void connectionsNeverCloseACycle()
    {
        OrvTestProject Project;
        QVector<OrvSnBaseNode*> Chain;
        for (int Index = 0; Index < 6; ++Index) {
            Chain.append(addPass(QString::number(Index)));
            if (Index > 0)
                QVERIFY(Chain[Index]->connectInput("Input", Chain[Index - 1]));
        }
        const QByteArray Before = Project.document();
        for (OrvSnBaseNode* pAbove : Chain) {
            if (pAbove != Chain[0])
                QVERIFY(Project.network()->wouldConnectionBreakDAG(pAbove, Chain[0]));
            QVERIFY(!Chain[0]->connectInput("Input", pAbove));
        }
        QVERIFY(!Project.network()->wouldConnectionBreakDAG(Chain[0], Chain[5]));
        QVERIFY(!Project.network()->wouldConnectionBreakDAG(Chain[3], Chain[5]));
        QVERIFY(!Project.network()->wouldConnectionBreakDAG(nullptr, Chain[5]));
        QVERIFY(!Chain[3]->connectInput("Nothing", Chain[0]));
        OrvGeoEntity* pOther = OrvProjectManager::instance().currentProject()->addGeoEntity("Other");
        OrvSnBaseNode* pForeign = pOther->shaderNetwork()->addNode(std::make_unique<OrvSnPassNode>());
        QVERIFY(!Chain[0]->connectInput("Input", pForeign));
        QCOMPARE(Project.document(), Before);

        // A side branch that joins again further down.
        auto* pMerge = OrvChainEditing::addNode<OrvSnMergeNode>(
            Project.network(), std::make_unique<OrvSnMergeNode>(), "Merge", nullptr, 0, 0);
        QVERIFY(pMerge->connectInput("Base", Chain[2]) && pMerge->connectInput("Over", Chain[5]));
        QVERIFY(!Chain[1]->connectInput("Input", pMerge));
        QVERIFY(!Project.network()->wouldConnectionBreakDAG(Chain[1], pMerge));
    }

    void macrosNestAndCancel()
    {
        OrvTestProject Project;
        OrvSnBaseNode* pNode = addPass("Node");
        undoManager().clear();
        const QByteArray Before = Project.document();
        {
            OrvUndoManager::AutoMacro Outer("Outer");
            pNode->setName("Renamed");
            {
                OrvUndoManager::AutoMacro Inner("Inner");
                pNode->setLocked(true);
                pNode->addTag("tag");
                Inner.cancel();
                QVERIFY(!pNode->locked() && pNode->name() == "Renamed");
                pNode->setLocked(true);
            }
            undoManager().undo(); // not while a macro is open
            QCOMPARE(pNode->name(), QString("Renamed"));
        }
        QCOMPARE(undoManager().stack()->count(), 1);
        QCOMPARE(undoManager().stack()->undoText(), QString("Outer"));
        Project.undo();
        QCOMPARE(Project.document(), Before);
        {
            OrvUndoManager::AutoMacro Empty("Empty");
        }
        {
            OrvUndoManager::AutoMacro Cancelled("Cancelled");
            pNode->setName("Other");
            addPass("More");
            Cancelled.cancel();
        }
        QCOMPARE(Project.document(), Before);
        QVERIFY(undoManager().stack()->canRedo()); // what was undone can still be done again
        Project.redo();
        QVERIFY(pNode->locked());
        {
            const OrvUndoManager::NoRecording NoRecording;
            pNode->setName("Quiet");
        }
        QCOMPARE(undoManager().stack()->count(), 1);
    }

    void recordedCallsRunOnUndoAndRedoOnly()
    {
        OrvTestProject Project;
        auto pTarget = std::make_unique<QTimer>();
        undoManager().addUndo(
            new OrvCallMethodUndo(pTarget.get(), "start(int)", {"70000"}, {"80000"}, -1, "Start"));
        QVERIFY(!pTarget->isActive());
        Project.undo();
        QCOMPARE(pTarget->interval(), 70000);
        Project.redo();
        QCOMPARE(pTarget->interval(), 80000);
        pTarget.reset();
        Project.undo();
        Project.redo();
    }

    void viewStateIsNoEdit()
    {
        OrvTestProject Project;
        OrvSnBaseNode* pNode = addPass("Node");
        undoManager().clear();
        OrvCustomAttribute Expand("_ExpandLayerGroup", true);
        Expand.setTweakable(false);
        Expand.setVisible(false);
        pNode->createUserAttribute(Expand);
        pNode->setUserAttributeValue("_ExpandLayerGroup", false);
        OrvCustomAttribute Size("_PaletteSize", QSize(3, 4));
        Size.setNonVersionable();
        pNode->createUserAttribute(Size);
        QCOMPARE(undoManager().stack()->count(), 0);
        QVERIFY(pNode->exists("_PaletteSize"));
        QCOMPARE(pNode->userAttribute("_ExpandLayerGroup").value(), QVariant(false));
        pNode->setUserAttributeValue("Absent", 3);
        QVERIFY(!pNode->exists("Absent"));
        // A node that no network holds has no history.
        OrvLayerManager::instance().dummyBlendNode()->setUserAttributeValue("Amount", 0.5);
        QCOMPARE(undoManager().stack()->count(), 0);
        OrvLayerManager::instance().dummyBlendNode()->setUserAttributeValue("Amount", 1.0);
        QVERIFY(OrvLayerManager::instance().dummyBlendNode()->ownUserAttributes().isEmpty());
    }

    void descriptionsBringNodesBack()
    {
        OrvTestProject Project;
        OrvLayer* pLayer = Project.paint("Layer", OrvColor(0.25f, 0.5f, 0.75f));
        Project.fill(pLayer->paintImageSet(), QRect(2, 2, 5, 5), OrvColor::white());
        OrvSnBaseNode* pNode = pLayer->paintNode();
        pNode->addTag("tag");
        pNode->createUserAttribute({"List", QVariantList{1, 2.5, "three", QSize(4, 5)}});
        pNode->createUserAttribute(
            {"Map", QVariantMap{{"a", true}, {"b", QVariant::fromValue(OrvColor::white())}}});
        const OrvNodeDescription Before = OrvNodeSubgraph::describe(pNode);
        OrvNodeDescription Read;
        QString Error;
        QVERIFY(OrvNodeDescription::fromJson(Before.toJson(), Read, Error));
        QCOMPARE(Read.toJson(), Before.toJson());
        QCOMPARE(Read.Attributes.size(), 2);
        QVERIFY(Read.Attributes.contains(pNode->userAttribute("List")));
        QCOMPARE(Read.Attributes.last().value().toMap().value("b").value<OrvColor>(), OrvColor::white());

        QJsonObject Foreign{{"id", "x"}, {"type", "FromTheFuture"}, {"whatever", QJsonArray{1, 2}}};
        QVERIFY(OrvNodeDescription::fromJson(Foreign, Read = OrvNodeDescription(), Error));
        QCOMPARE(Read.toJson(), Foreign);
        QVERIFY(!OrvNodeDescription::fromJson({{"type", "Pass"}, {"name", "Lost"}}, Read, Error));
        QVERIFY(Error.contains("Lost"));
        QVERIFY(!OrvNodeRegistry::instance().create("Operation/no:such"));
        QVERIFY(!OrvNodeRegistry::instance().createFromMenuPath("Filter/No/Such"));
    }

    void walksFindWhatLiesUpstream()
    {
        OrvTestProject Project;
        OrvLayer* pLow = Project.paint("Low");
        for (int Index = 0; Index < 200; ++Index)
            Project.paint("Layer");
        OrvLayer* pMid = Project.channel()->layerList()[100];
        OrvSnBaseNode* pLoose = addPass("Loose");
        using namespace OrvShaderNetworkUtils;
        QVERIFY(OrvNodeWalkerUpstream({pLoose, pMid->paintNode()}).walk(Project.channel()->node()));
        QVERIFY(OrvNodeWalkerUpstream({pLow->blendNode()}).walk(pMid->blendNode()));
        QVERIFY(!OrvNodeWalkerUpstream({pMid->blendNode()}).walk(pLow->blendNode()));
        QVERIFY(!OrvNodeWalkerUpstream({pLoose}).walk(Project.channel()->node()));
        QVERIFY(OrvNodeWalkerUpstream({pLoose}).walk(pLoose));
        QVERIFY(!OrvNodeWalkerUpstream({}).walk(pLoose) && !OrvNodeWalkerUpstream({pLoose}).walk(nullptr));

        // Through the wall of a nested network.
        OrvLayer* pGraph = Project.channel()->createGraphLayer(0);
        OrvShaderNetwork* pNested = pGraph->graphNode()->nestedNetwork();
        OrvSnBaseNode* pInside = pNested->addNode(std::make_unique<OrvSnPassNode>());
        QVERIFY(!OrvNodeWalkerUpstream({pInside}).walk(Project.channel()->node()));
        pNested->nodes().first()->connectInput("Input", pInside);
        QVERIFY(OrvNodeWalkerUpstream({pInside}).walk(Project.channel()->node()));

        struct Counter : OrvNodeWalker::Visitor {
            OrvNodeWalker::Direction direction() const override { return OrvNodeWalker::Downstream; }
            bool visit(OrvSnBaseNode* pNode) override
            {
                Seen.append(pNode);
                return Seen.size() < Limit;
            }
            QVector<OrvSnBaseNode*> Seen;
            int Limit = 1000000;
        } Whole, Short;
        OrvNodeWalker::walk(pInside, Whole);
        // Itself, the output, the graph, its layer, the channel.
        QCOMPARE(Whole.Seen.size(), 5);
        QCOMPARE(Whole.Seen.last(), Project.channel()->node());
        Short.Limit = 2;
        OrvNodeWalker::walk(pInside, Short);
        QCOMPARE(Short.Seen.size(), 2);
    }

    void nodesArePlacedBesideEachOther()
    {
        OrvTestProject Project;
        OrvSnBaseNode* pA = addPass("A");
        OrvSnBaseNode* pB = addPass("B");
        pA->setPosition(QPointF(100, 50));
        pB->setLayout(9, pA, false, true);
        QVERIFY(pB->position().x() > 100 && pB->position().y() == 50);
        Project.undo();
        QCOMPARE(pB->position(), QPointF());
        pB->setLayout(3, pA, false, true);
        pB->setLayout(9, nullptr, false, true);
        QCOMPARE(pB->position(), QPointF());
    }

private:
    struct Edit {
        const char* Name;
        const char* Signal;
        bool Stored; ///< in the project
        std::function<void(OrvSnBaseNode*, OrvSnBaseNode*)> Do;
        const char* UndoSignal = Signal;
    };
    static const QVector<Edit>& edits()
    {
        using Node = OrvSnBaseNode;
        static const QVector<Edit> All{
            {"name", SIGNAL(nodeNameChanged(OrvSnBaseNode*, QString)), true,
                [](Node* pNode, Node*) { pNode->setName("New"); }},
            {"add tag", SIGNAL(nodeTagsChanged(OrvSnBaseNode*, QString)), true,
                [](Node* pNode, Node*) { pNode->addTag("new"); }},
            {"remove tag", SIGNAL(nodeTagsChanged(OrvSnBaseNode*, QString)), true,
                [](Node* pNode, Node*) { pNode->removeTag("old"); }},
            {"lock", SIGNAL(nodeLockedChanged(OrvSnBaseNode*, bool)), true,
                [](Node* pNode, Node*) { pNode->setLocked(true); }},
            {"block", SIGNAL(nodeBlockedChanged(OrvSnBaseNode*, bool)), false,
                [](Node* pNode, Node*) { pNode->setBlocked(true); }},
            {"disable", SIGNAL(nodeEnabledChanged(OrvSnBaseNode*, int)), true,
                [](Node* pNode, Node*) { pNode->setEnabledAsBool(false); }},
            {"cache", SIGNAL(nodeCacheActiveChanged(OrvSnBaseNode*, OrvSnBaseNodeCacheActiveState)), true,
                [](Node* pNode, Node*) { pNode->setCacheActive(OrvSnCacheActive); }},
            {"move", SIGNAL(nodePositionChanged(OrvSnBaseNode*)), true,
                [](Node* pNode, Node*) { pNode->setPosition(QPointF(3, 4)); }},
            {"connect", SIGNAL(nodeReconnected(OrvShaderNetwork*, QString, OrvSnBaseNode*, OrvSnBaseNode*)),
                true, [](Node* pNode, Node* pSource) { pNode->connectInput("Input", pSource); }},
            {"connect, with the old source",
                SIGNAL(nodeReconnected(
                    OrvShaderNetwork*, QString, OrvSnBaseNode*, OrvSnBaseNode*, OrvSnBaseNode*)),
                true, [](Node* pNode, Node* pSource) { pSource->connectInput("Input", pNode, "Output 2"); }},
            {"change attribute", SIGNAL(nodeUserAttributeChanged(OrvSnBaseNode*, QString)), true,
                [](Node* pNode, Node*) { pNode->setUserAttributeValue("Number", 2); }},
            {"disable attribute", SIGNAL(nodeUserAttributeChanged(OrvSnBaseNode*, QString)), true,
                [](Node* pNode, Node*) { pNode->setUserAttributeEnabled("Number", false); }},
            {"create attribute", SIGNAL(nodeUserAttributeCreated(OrvSnBaseNode*, QString)), true,
                [](Node* pNode, Node*) {
                    pNode->createUserAttribute({"Text", "new"});
                },
                SIGNAL(nodeUserAttributeRemoved(OrvSnBaseNode*, QString))},
            {"remove attribute", SIGNAL(nodeUserAttributeRemoved(OrvSnBaseNode*, QString)), true,
                [](Node* pNode, Node*) { pNode->removeUserAttribute("Number"); },
                SIGNAL(nodeUserAttributeCreated(OrvSnBaseNode*, QString))},
        };
        return All;
    }
};

QTEST_MAIN(TstNodes)
#include "TstNodes.moc"
