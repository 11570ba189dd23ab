#include "LayersFixture.h"
#include "SettingsDirectory.h"

#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCore/Network/OrvSnPassNode.h"
#include "OrvCoreModules/DragAndDrop/OrvDragAndDropManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragPayload.h"

#include <QtCore/QMimeData>
#include <QtCore/QRandomGenerator>
#include <QtTest/QtTest>
#include <QtWidgets/QPushButton>

#include <memory>

using namespace LayersFixture;

/// The rows of a layer tree against the stack that they show: order, nesting, reuse, drags and drops.
class TstLayerModel : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_Directory.isValid()); }

    void init()
    {
        OrvProjectManager::instance().newProject(QStringLiteral("Test"));
        m_Channel = addChannel(QStringLiteral("Diffuse"));
        m_View = std::make_unique<OrvLayerView>(nullptr, 0);
        m_View->resize(300, 600);
        m_View->setLayerStack(m_Channel);
        m_View->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_View.get()));
    }

    void cleanup()
    {
        m_View.reset();
        OrvProjectManager::instance().closeProject();
    }

    void rowsFollowTheStack()
    {
        const QList<OrvLayer*> Layers = addLayers(m_Channel, {"A", "B", "C", "D", "E"});
        expectRows("A B C D E");
        OrvLayer* pGroup = group(m_Channel, {Layers[1], Layers[2]}, QStringLiteral("G"));
        expectRows("A G(B C) D E");
        group(OrvLayerStreamUtils::groupStack(pGroup), {Layers[2]}, QStringLiteral("H"));
        expectRows("A G(B H(C)) D E");
        OrvLayerStreamUtils::insertLayerAfter(Layers[4], Layers[0]->blendNode(), m_Channel);
        expectRows("E A G(B H(C)) D");
        m_Channel->deleteLayers({Layers[0], Layers[3]});
        expectRows("E G(B H(C))");
        for (int Step = 0; Step < 4; ++Step)
            OrvUndoManager::instance().undo();
        expectRows("A B C D E");
        m_Channel->deleteLayers(m_Channel->layerList());
        expectRows("");
    }

    void unchangedRowsKeepTheirWidgetsAndMovedOnesTheirItems()
    {
        const QList<OrvLayer*> Layers = addLayers(m_Channel, {"A", "B", "C", "D"});
        m_View->refresh();
        const QVector<QStandardItem*> Items = items({0, 1, 2, 3});
        const QVector<QWidget*> Widgets = widgets({0, 1, 2, 3});

        OrvLayerStreamUtils::insertLayerAfter(Layers[3], Layers[0]->blendNode(), m_Channel);
        m_View->refresh();
        QCOMPARE(rowText(m_View.get()), QStringLiteral("D A B C"));
        QCOMPARE(items({0, 1, 2, 3}), QVector<QStandardItem*>({Items[3], Items[0], Items[1], Items[2]}));
        QCOMPARE(widgets({1, 2, 3}), QVector<QWidget*>({Widgets[0], Widgets[1], Widgets[2]}));
        QVERIFY(widgets({0}).first() != Widgets[3]);
        QCOMPARE(m_View->rowWidget(m_View->model()->index(0, 0))->layer(), Layers[3]);

        addLayer(m_Channel, QStringLiteral("New"));
        m_Channel->deleteLayers({Layers[1]});
        m_View->refresh();
        QCOMPARE(rowText(m_View.get()), QStringLiteral("New D A C"));
        QCOMPARE(widgets({2, 3}), QVector<QWidget*>({Widgets[0], Widgets[2]}));
    }

    void randomEditsAndUndoLeaveRowsInStep()
    {
        QRandomGenerator Random(20240917);
        addLayers(m_Channel, {"A", "B", "C", "D", "E", "F"});
        for (int Step = 0; Step < 200; ++Step) {
            const QList<OrvLayer*> All = m_Channel->allLayers();
            const auto any = [&] { return All.isEmpty() ? nullptr : All[Random.bounded(All.size())]; };
            switch (Random.bounded(7)) {
            case 0:
                addLayer(m_Channel, QStringLiteral("L%1").arg(Step));
                break;
            case 1:
                if (All.size() > 3)
                    m_Channel->deleteLayers({any()});
                break;
            case 2:
                if (OrvLayer* pLayer = any())
                    group(pLayer->stacks().first(), {pLayer}, QStringLiteral("G%1").arg(Step));
                break;
            case 3:
            case 4:
                if (All.size() > 1)
                    OrvLayerStreamUtils::insertLayerAfter(any(), any()->blendNode(), m_Channel);
                break;
            case 5:
                for (int Count = Random.bounded(5); Count > 0; --Count)
                    OrvUndoManager::instance().undo();
                break;
            case 6:
                for (int Count = Random.bounded(5); Count > 0; --Count)
                    OrvUndoManager::instance().redo();
                break;
            }
            m_View->refresh();
            QCOMPARE(rowText(m_View.get()), stackText(m_Channel));
            verifyWidgets(QModelIndex());
        }
        // Nothing is left over of rows that went.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(m_View->findChildren<OrvLayerViewItemRowWidget*>().size(), m_Channel->allLayers().size());
    }

    void selectionComesFromTheLayers()
    {
        const QList<OrvLayer*> Layers = addLayers(m_Channel, {"A", "B", "C", "D"});
        network()->selectNone();
        for (int Row : {0, 1, 3})
            Layers[Row]->setSelected(true);
        m_View->refresh();
        QCOMPARE(selectedNames(), QStringList({"A", "B", "D"}));
        Layers[1]->setSelected(false);
        m_View->refresh();
        QCOMPARE(selectedNames(), QStringList({"A", "D"}));
        // The refresh itself tells the layers nothing.
        m_View->clearAndRefresh();
        QCOMPARE(selectedNames(), QStringList({"A", "D"}));
        QVERIFY(Layers[0]->isSelected() && !Layers[1]->isSelected() && Layers[3]->isSelected());
    }

    void foldedGroupsStayFoldedWhereverTheyGo()
    {
        const QList<OrvLayer*> Layers = addLayers(m_Channel, {"A", "B", "C"});
        OrvLayer* pGroup = group(m_Channel, {Layers[2]}, QStringLiteral("G"));
        m_View->refresh();
        const auto isExpanded
            = [&] { return m_View->treeView()->isExpanded(m_View->model()->indexFromLayer(pGroup)); };
        QVERIFY(isExpanded());
        QApplication::processEvents();
        const QWidget* pInside = rowOf(m_View.get(), Layers[2]);
        QVERIFY(pInside->isVisible());
        m_View->treeView()->collapse(m_View->model()->indexFromLayer(pGroup));
        QVERIFY(!pInside->isVisible());
        OrvLayerStreamUtils::insertLayerAfter(pGroup, Layers[0]->blendNode(), m_Channel);
        m_View->refresh();
        QCOMPARE(rowText(m_View.get()), QStringLiteral("G(C) A B"));
        QVERIFY(!isExpanded());
        m_View->clearAndRefresh();
        QVERIFY(!isExpanded());
    }

    void brokenChainShowsAWarningRow()
    {
        const QList<OrvLayer*> Layers = addLayers(m_Channel, {"A", "B"});
        m_View->refresh();
        QVERIFY(!warningButton());
        Layers[1]->blendNode()->disconnectInput(OrvSnNames::Base);
        m_View->refresh();
        QCOMPARE(rowText(m_View.get()), QStringLiteral("A B !"));
        QVERIFY(warningButton());
        QCOMPARE(warningButton()->toolTip(), QStringLiteral("No bottom stack node."));
        QCOMPARE(warningButton()->text(), QStringLiteral("Node Graph"));
        const QPushButton* pButton = warningButton();
        m_View->refresh();
        QCOMPARE(warningButton(), pButton);

        OrvSnBaseNode* pForeign
            = network()->addNode(std::make_unique<OrvSnPassNode>(QStringList{QStringLiteral("_other")}));
        pForeign->setName(QStringLiteral("Elsewhere"));
        Layers[1]->blendNode()->connectInput(OrvSnNames::Base, pForeign);
        m_View->refresh();
        QCOMPARE(rowText(m_View.get()), QStringLiteral("A B !"));
        QCOMPARE(warningButton()->toolTip(), QStringLiteral("Node 'Elsewhere' is unrepresentable."));
        for (int Step = 0; Step < 3; ++Step)
            OrvUndoManager::instance().undo();
        m_View->refresh();
        QCOMPARE(warningButton()->toolTip(), QStringLiteral("No bottom stack node."));

        m_Channel->node()->disconnectInput(m_Channel->targetInputName());
        m_View->refresh();
        QCOMPARE(rowText(m_View.get()), QStringLiteral("!"));
        OrvUndoManager::instance().undo();
        OrvUndoManager::instance().undo();
        m_View->refresh();
        QCOMPARE(rowText(m_View.get()), QStringLiteral("A B"));
    }

    void dragCarriesLayersInTreeOrder()
    {
        const QList<OrvLayer*> Layers = addLayers(m_Channel, {"A", "B", "C"});
        m_View->refresh();
        const OrvLayerViewModel* pModel = m_View->model();
        const std::unique_ptr<QMimeData> pData(pModel->mimeData(
            {pModel->index(2, 0), pModel->index(0, 0), pModel->index(1, 0).siblingAtColumn(1)}));
        const QByteArray Expected
            = (Layers[0]->blendNode()->uuidString() + QLatin1Char(':') + Layers[2]->blendNode()->uuidString())
                  .toLatin1();
        QCOMPARE(pData->data(QStringLiteral("application/x-orvi-layer")), Expected);
        QCOMPARE(pData->data(QStringLiteral("application/x-orvi-layer-stack-node")),
            m_Channel->node()->uuidString().toLatin1());
        QCOMPARE(pData->data(QStringLiteral("application/x-orvi-layer-stack-target-input")),
            m_Channel->targetInputName().toLatin1());
        QCOMPARE(OrvLayerDragPayload::readStack(pData.get()), static_cast<OrvLayerStack*>(m_Channel));
        QVERIFY(pModel->canDropMimeData(pData.get(), Qt::MoveAction, 0, 0, {}));

        m_View->setLayerStack(nullptr);
        const std::unique_ptr<QMimeData> pHomeless(pModel->mimeData({pModel->index(0, 0)}));
        QCOMPARE(pHomeless->formats(), QStringList({"application/x-orvi-layer"}));
        QVERIFY(!OrvLayerDragPayload::readStack(pHomeless.get()));
        QVERIFY(!OrvLayerDragPayload::readStack(nullptr));
    }

    void dropsLandAboveTheRightNode()
    {
        const QList<OrvLayer*> Layers = addLayers(m_Channel, {"A", "B", "C"});
        OrvLayer* pGroup = group(m_Channel, {Layers[1]}, QStringLiteral("G"));
        m_View->refresh();
        const OrvLayerViewModel* pModel = m_View->model();
        const QModelIndex Group = pModel->indexFromLayer(pGroup);
        const auto target = [&](int Row, const QModelIndex& Parent = {}) {
            return static_cast<OrvSnBaseNode*>(pModel->dropTargetNode(Row, Parent));
        };
        QCOMPARE(target(0), static_cast<OrvSnBaseNode*>(Layers[0]->blendNode()));
        QCOMPARE(target(2), static_cast<OrvSnBaseNode*>(Layers[2]->blendNode()));
        QCOMPARE(target(3), m_Channel->bottomNode());
        QCOMPARE(target(-1), m_Channel->bottomNode());
        QCOMPARE(target(-1, Group), static_cast<OrvSnBaseNode*>(Layers[1]->blendNode()));
        QCOMPARE(target(1, Group), OrvLayerStreamUtils::groupStack(pGroup)->bottomNode());
        QCOMPARE(target(-1, pModel->index(0, 0)), Layers[0]->contentNode());
        m_View->setLayerStack(nullptr);
        QVERIFY(!target(-1));
    }

    void hostContentGoesToTheHost()
    {
        const QList<OrvLayer*> Layers = addLayers(m_Channel, {"A", "B"});
        m_View->refresh();
        OrvLayerViewModel* pModel = m_View->model();
        QVariantMap Received;
        const QString Type = QStringLiteral("application/x-orvi-test");
        OrvDragAndDropManager& Drops = OrvDragAndDropManager::instance();
        const int Handler = Drops.registerHandler(OrvDragAndDropManager::LayerTreeTarget,
            {{Type}, {}, [&](const QMimeData&, const QVariantMap& Parameters) {
                 Received = Parameters;
                 return true;
             }});
        QMimeData Data;
        Data.setData(Type, "x");
        QVERIFY(pModel->mimeTypes().contains(Type));
        QVERIFY(pModel->canDropMimeData(&Data, Qt::CopyAction, 1, 0, {}));
        QVERIFY(pModel->dropMimeData(&Data, Qt::CopyAction, 1, 0, {}));
        Drops.unregisterHandler(Handler);
        QCOMPARE(
            Received.value("LayerStack").value<OrvLayerStack*>(), static_cast<OrvLayerStack*>(m_Channel));
        QCOMPARE(Received.value("LayerBelow").value<OrvLayer*>(), Layers[1]);
        QVERIFY(!pModel->canDropMimeData(&Data, Qt::CopyAction, 1, 0, {}));
    }

    void sharersOfOtherLayersAreFound()
    {
        const QList<OrvLayer*> Layers = addLayers(m_Channel, {"A", "B"});
        OrvLayer* pShared = m_Channel->shareLayer(Layers[0], OrvLayerCreateFlags(30));
        QVERIFY(pShared);
        m_View->refresh();
        const QModelIndexList Rows = m_View->model()->rowsSharingContentWith({Layers[0]}).indexes();
        QCOMPARE(Rows, QModelIndexList({m_View->model()->indexFromLayer(pShared)}));
        QVERIFY(m_View->model()->rowsSharingContentWith({Layers[1]}).isEmpty());
    }

private:
    void expectRows(const char* pText)
    {
        QCOMPARE(stackText(m_Channel), QString::fromLatin1(pText));
        QTRY_COMPARE(rowText(m_View.get()), QString::fromLatin1(pText));
    }
    QVector<QStandardItem*> items(std::initializer_list<int> Rows) const
    {
        QVector<QStandardItem*> Items;
        for (int Row : Rows)
            Items.append(m_View->model()->item(Row));
        return Items;
    }
    QVector<QWidget*> widgets(std::initializer_list<int> Rows) const
    {
        QVector<QWidget*> Widgets;
        for (int Row : Rows)
            Widgets.append(m_View->rowWidget(m_View->model()->index(Row, 0)));
        return Widgets;
    }
    /// Every row has a widget that shows its layer.
    void verifyWidgets(const QModelIndex& Parent) const
    {
        for (int Row = 0; Row < m_View->model()->rowCount(Parent); ++Row) {
            const QModelIndex Index = m_View->model()->index(Row, 0, Parent);
            const OrvLayerViewItemRowWidget* pWidget = m_View->rowWidget(Index);
            QVERIFY(pWidget);
            QCOMPARE(pWidget->layer(), m_View->layerFromIndex(Index));
            verifyWidgets(Index);
        }
    }
    QStringList selectedNames() const
    {
        QModelIndexList Rows = m_View->treeView()->selectionModel()->selectedRows();
        std::sort(Rows.begin(), Rows.end());
        QStringList Names;
        for (const QModelIndex& Index : Rows)
            Names.append(m_View->layerFromIndex(Index)->name());
        return Names;
    }
    QPushButton* warningButton() const
    {
        const OrvLayerViewModel* pModel = m_View->model();
        return qobject_cast<QPushButton*>(
            m_View->treeView()->indexWidget(pModel->index(pModel->rowCount() - 1, 0)));
    }

    SettingsDirectory m_Directory;
    std::unique_ptr<OrvLayerView> m_View;
    OrvShaderInput* m_Channel = nullptr;
};

QTEST_MAIN(TstLayerModel)
#include "TstLayerModel.moc"
