#include "LayersFixture.h"

#include "OrvCore/Object/OrvSettings.h"
#include "OrvCoreModules/Window/OrvApplication.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvCoreModules/Window/OrvPalette.h"
#include "OrvCoreModules/Window/OrvPaletteManager.h"
#include "OrvCoreModules/Window/OrvStatusManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerActions.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerTreeView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerToolBar.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewItemRowWidget.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputActions.h"

#include <QtCore/QMimeData>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QStackedLayout>
#include <QtWidgets/QToolButton>

#include <memory>

using namespace LayersFixture;

/// The Layers palette in its window on a real document, driven by mouse and keys.
class TstLayersPalette : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_Directory.isValid());
        qputenv("ORV_SETTINGS", m_Directory.filePath(QStringLiteral("settings.ini")).toLocal8Bit());
        OrvApplication::appInstance().setInitialized(true);
        OrvShaderInputActions::instance();
        OrvLayerActions::instance();
        m_View = OrvLayerViewContextManager::instance().mainLayerView();
        m_Tree = m_View->treeView();
        OrvMainWindow::instance().resize(900, 800);
        OrvMainWindow::instance().show();
        OrvPaletteManager::find(QStringLiteral("Layers"))->open();
        QVERIFY(QTest::qWaitForWindowExposed(m_View->window()));
    }

    void init()
    {
        OrvProjectManager::instance().newProject(QStringLiteral("Test"));
        m_Channel = addChannel(QStringLiteral("Diffuse"));
        m_View->setLayerStack(m_Channel);
        m_View->refresh();
        m_View->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_View->window()));
    }

    void cleanup()
    {
        OrvProjectManager::instance().closeProject();
        QCOMPARE(m_View->model()->rowCount(), 0);
    }

    void commandsAddLayersWhereTheUserIs()
    {
        clickCommand("Add New Layer");
        QTRY_COMPARE(m_View->model()->rowCount(), 1);
        OrvLayer* pFirst = m_Channel->layerList().first();
        QCOMPARE(currentLayer(), pFirst);
        QTRY_COMPARE(selectedNames(), QStringList({pFirst->name()}));
        clickCommand("Add New Layer");
        QTRY_COMPARE(m_View->model()->rowCount(), 2);
        QCOMPARE(m_Channel->layerList().last(), pFirst);

        clickRow(pFirst);
        clickCommand("Group Layers");
        QTRY_VERIFY(OrvLayerStreamUtils::isLayerGroup(m_Channel->layerList().last(), m_Channel));
        OrvLayer* pGroup = m_Channel->layerList().last();
        m_View->refresh();
        clickRow(pGroup);
        clickCommand("Add New Layer");
        QCOMPARE(OrvLayerStreamUtils::groupStack(pGroup)->layerList().size(), 2);
        m_View->refresh();
        m_Tree->collapse(m_View->model()->indexFromLayer(pGroup));
        clickRow(pGroup);
        clickCommand("Add New Layer");
        QCOMPARE(OrvLayerStreamUtils::groupStack(pGroup)->layerList().size(), 2);
        QCOMPARE(m_Channel->layerList().size(), 3);

        clickCommand("Duplicate Layers");
        QCOMPARE(m_Channel->layerList().size(), 4);
        clickCommand("Add Graph Layer");
        QVERIFY(currentLayer()->isGraphLayer());
        clickCommand("Add Layer Mask");
        QVERIFY(currentLayer()->hasMaskImageSet());
        clickCommand("Add Mask Stack");
        QVERIFY(currentLayer()->hasMaskStack());
        OrvUndoManager::instance().undo();
        QVERIFY(!currentLayer()->hasMaskStack() && currentLayer()->hasMask());
        clickCommand("Remove Layers");
        QCOMPARE(m_Channel->layerList().size(), 4);
    }

    void menusAddAdjustmentsAndProcedurals()
    {
        addLayers(m_Channel, {"A"});
        chooseCommand("Add Adjustment Layer");
        QVERIFY(currentLayer()->isAdjustmentLayer());
        chooseCommand("Add Procedural Layer");
        QVERIFY(currentLayer()->isProceduralLayer());
        chooseCommand("Add Adjustment Stack");
        QVERIFY(currentLayer()->hasAdjustmentStack());
        QCOMPARE(m_Channel->layerList().size(), 3);
    }

    void withoutAProjectNothingIsOffered()
    {
        OrvProjectManager::instance().closeProject();
        QVERIFY(!m_View->layerStack());
        for (const QAction* pAction : m_View->toolBar()->actions())
            QVERIFY(!pAction->isEnabled());
        m_View->addNewLayer();
        QCOMPARE(m_View->model()->rowCount(), 0);
    }

    void clicksSelectForTheHost()
    {
        const QList<OrvLayer*> Layers = addLayers(m_Channel, {"A", "B", "C", "D"});
        m_View->refresh();
        clickRow(Layers[1]);
        QCOMPARE(currentLayer(), Layers[1]);
        QCOMPARE(selectedLayerNames(), QStringList({"B"}));
        clickRow(Layers[3], Qt::ControlModifier);
        QCOMPARE(selectedLayerNames(), QStringList({"B", "D"}));
        clickRow(Layers[1], Qt::ControlModifier);
        QCOMPARE(selectedLayerNames(), QStringList({"D"}));
        clickRow(Layers[0]);
        clickRow(Layers[2], Qt::ShiftModifier);
        QCOMPARE(selectedLayerNames(), QStringList({"A", "B", "C"}));
        clickRow(Layers[0]);
        QCOMPARE(selectedLayerNames(), QStringList({"A"}));
        m_View->refresh();
        QCOMPARE(selectedNames(), QStringList({"A"}));

        // The host went elsewhere meanwhile; a click on the tree's current row brings it back.
        Layers[3]->makeCurrent(false, false);
        clickRow(Layers[0], Qt::ControlModifier);
        clickRow(Layers[0]);
        QCOMPARE(currentLayer(), Layers[0]);
    }

    void keysMoveRenameCopyAndRemove()
    {
        const QList<OrvLayer*> Layers = addLayers(m_Channel, {"A", "B", "C"});
        m_View->refresh();
        clickRow(Layers[0]);
        m_Tree->setFocus();
        QTest::keyClick(m_Tree, Qt::Key_Down);
        QCOMPARE(currentLayer(), Layers[1]);
        QCOMPARE(selectedLayerNames(), QStringList({"B"}));

        QTest::keyClick(m_Tree, Qt::Key_F2);
        QLineEdit* pEditor = qobject_cast<QLineEdit*>(QApplication::focusWidget());
        QVERIFY(pEditor);
        pEditor->selectAll();
        QTest::keyClicks(pEditor, QStringLiteral("Rust"));
        QTest::keyClick(pEditor, Qt::Key_Return);
        QCOMPARE(Layers[1]->name(), QStringLiteral("Rust"));

        m_Tree->setFocus();
        QTest::keyClick(m_Tree, Qt::Key_C, Qt::ControlModifier);
        QTest::keyClick(m_Tree, Qt::Key_V, Qt::ControlModifier);
        QTRY_COMPARE(stackText(m_Channel), QStringLiteral("A Rust Rust C"));
        QTRY_COMPARE(rowText(m_View), stackText(m_Channel));
        clickRow(Layers[0]);
        m_Tree->setFocus();
        QTest::keyClick(m_Tree, Qt::Key_Delete);
        QTRY_COMPARE(rowText(m_View), QStringLiteral("Rust Rust C"));
        OrvUndoManager::instance().undo();
        QTRY_COMPARE(rowText(m_View), QStringLiteral("A Rust Rust C"));
    }

    void aBurstOfChangesCausesOneRefresh()
    {
        addLayers(m_Channel, {"A", "B", "C"});
        OrvShaderInput* pOther = addChannel(QStringLiteral("Bump"));
        m_View->setLayerStack(m_Channel);
        QTest::qWait(300);
        QSignalSpy Texts(&OrvStatusManager::instance(), SIGNAL(textChanged(QString)));
        const auto refreshCount = [&] {
            int Count = 0;
            for (const QList<QVariant>& Arguments : qAsConst(Texts))
                Count += Arguments.first().toString() == QLatin1String("Refreshing Layer View");
            return Count;
        };
        for (int Request = 0; Request < 10; ++Request)
            m_View->requestRefresh();
        addLayer(m_Channel, QStringLiteral("D"));
        QTRY_COMPARE(rowText(m_View), QStringLiteral("D A B C"));
        QTest::qWait(300);
        QCOMPARE(refreshCount(), 1);

        // A change below another channel does not concern the palette; one inside a layer here does.
        QSignalSpy Requests(m_View, SIGNAL(refreshRequested()));
        pOther->node()->createUserAttribute(OrvCustomAttribute(QStringLiteral("Note"), 1));
        QTest::qWait(50);
        QCOMPARE(Requests.size(), 0);
        m_Channel->layerList().last()->contentNode()->createUserAttribute(
            OrvCustomAttribute(QStringLiteral("Note"), 1));
        QTRY_VERIFY(!Requests.isEmpty());
    }

    void nothingIsShownOfWhatIsGone()
    {
        addLayers(m_Channel, {"A", "B"});
        m_View->refresh();
        OrvShaderNetworkManager::instance().setCurrentShaderNetwork(nullptr);
        QTRY_COMPARE(m_View->model()->rowCount(), 0);
        OrvShaderNetworkManager::instance().setCurrentShaderNetwork(m_Channel->network());
        QTRY_COMPARE(m_View->model()->rowCount(), 2);

        QSignalSpy Changes(m_View, SIGNAL(layerStackChanged(OrvLayerStack*)));
        OrvProjectManager::instance().closeProject();
        QCOMPARE(m_View->model()->rowCount(), 0);
        QCOMPARE(Changes.size(), 1);
    }

    void propertiesFollowTheCurrentRow()
    {
        const QList<OrvLayer*> Layers = addLayers(m_Channel, {"A", "B"});
        OrvLayer* pGroup = group(m_Channel, {Layers[1]}, QStringLiteral("G"));
        m_View->refresh();
        clickRow(Layers[0]);
        const QList<QPointer<QWidget>> Controlets = blendControlets();
        QCOMPARE(Controlets.size(), 2);
        // An editor that is in use survives a refresh; another row has its own.
        m_View->refresh();
        QCOMPARE(blendControlets(), Controlets);
        clickRow(pGroup);
        QVERIFY(blendControlets() != Controlets);

        Layers[0]->setLocked(true);
        clickRow(Layers[0]);
        for (const QPointer<QWidget>& pControlet : blendControlets())
            QVERIFY(!pControlet->isEnabled());
        Layers[0]->setLocked(false);
        m_View->refresh();
        for (const QPointer<QWidget>& pControlet : blendControlets())
            QVERIFY(pControlet->isEnabled());
        Layers[0]->blendNode()->setUserAttributeValue(OrvMergeAttributes::AmountEnabled, false);
        QVERIFY(!blendControlets().last()->isEnabled());
    }

    void groupsGoThroughAndBack()
    {
        const QList<OrvLayer*> Layers = addLayers(m_Channel, {"A", "B"});
        OrvLayer* pGroup = group(m_Channel, {Layers[1]}, QStringLiteral("G"));
        m_View->refresh();
        clickRow(Layers[0]);
        QVERIFY(!passThroughButton());
        clickRow(pGroup);
        QVERIFY(passThroughButton());
        QVERIFY(!blendControlets().isEmpty() && blendControlets().first()->isVisible());
        QTest::mouseClick(passThroughButton(), Qt::LeftButton);
        QVERIFY(OrvLayerStreamUtils::isLayerGroupPassThrough(pGroup->blendNode()));
        QVERIFY(!blendControlets().first()->isVisible());
        QVERIFY(passThroughButton() && passThroughButton()->isChecked());
        QTest::mouseClick(passThroughButton(), Qt::LeftButton);
        QVERIFY(!OrvLayerStreamUtils::isLayerGroupPassThrough(pGroup->blendNode()));
        OrvUndoManager::instance().undo();
        QVERIFY(!blendControlets().first()->isVisible());
    }

    void tagColoursGoToAllSelectedLayers()
    {
        const QList<OrvLayer*> Layers = addLayers(m_Channel, {"A", "B", "C"});
        m_View->refresh();
        clickRow(Layers[0]);
        clickRow(Layers[1], Qt::ControlModifier);
        QTest::mouseClick(
            m_View->findChild<QPushButton*>(QStringLiteral("ColorPopupButton")), Qt::LeftButton);
        QWidget* pSwatch = QApplication::activePopupWidget();
        QVERIFY(pSwatch);
        QTest::mouseClick(pSwatch, Qt::LeftButton, Qt::NoModifier,
            QPoint(pSwatch->width() - pSwatch->height() / 2, pSwatch->height() / 2));
        QVERIFY(Layers[0]->color().isValid());
        QCOMPARE(Layers[1]->color(), Layers[0]->color());
        QVERIFY(!Layers[2]->color().isValid());
        QVERIFY(!QApplication::activePopupWidget());
        OrvUndoManager::instance().undo();
        QVERIFY(!Layers[0]->color().isValid() && !Layers[1]->color().isValid());
    }

    void quickFindRemembersAsManyPathsAsTheUserWants()
    {
        addLayers(m_Channel, {"A"});
        m_View->refresh();
        OrvSettings Settings;
        Settings.remove(QStringLiteral("Node Graph"));
        const auto find = [this](const QString& Text) {
            QTimer::singleShot(50, [Text] {
                QWidget* pDialog = QApplication::activeModalWidget();
                QVERIFY(pDialog);
                QLineEdit* pEdit = pDialog->findChild<QLineEdit*>();
                QTest::keyClicks(pEdit, Text);
                QTest::keyClick(pEdit, Qt::Key_Return);
            });
            m_View->quickFind();
        };
        const auto lastUsed = [] {
            return OrvSettings().value(QStringLiteral("LayerView/LastUsedNodePaths")).toStringList();
        };
        find(QStringLiteral("blur"));
        QVERIFY(currentLayer()->isAdjustmentLayer());
        QCOMPARE(lastUsed(), QStringList());
        Settings.setValue(QStringLiteral("Node Graph/numberOfLastUsedNodePathsToStore"), 1);
        Settings.sync();
        find(QStringLiteral("noise"));
        find(QStringLiteral("blur"));
        QCOMPARE(lastUsed().size(), 1);
        QVERIFY(lastUsed().first().contains(QStringLiteral("blur"), Qt::CaseInsensitive));
    }

    void dragShowsWhatTheKeysAskFor_data()
    {
        QTest::addColumn<int>("Modifiers");
        QTest::addColumn<Qt::DropAction>("Action");
        QTest::newRow("none") << int(Qt::NoModifier) << Qt::MoveAction;
        QTest::newRow("Shift") << int(Qt::ShiftModifier) << Qt::LinkAction;
        QTest::newRow("Alt+Ctrl") << int(Qt::AltModifier | Qt::ControlModifier) << Qt::CopyAction;
    }
    void dragShowsWhatTheKeysAskFor()
    {
        QFETCH(int, Modifiers);
        QFETCH(Qt::DropAction, Action);
        addLayers(m_Channel, {"A", "B", "C"});
        m_View->refresh();
        QApplication::processEvents();
        const std::unique_ptr<QMimeData> pData(m_View->model()->mimeData({m_View->model()->index(2, 0)}));
        const QPoint Position = m_Tree->visualRect(m_View->model()->index(0, 0)).center();
        const Qt::DropActions All = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
        QDragEnterEvent Enter(Position, All, pData.get(), Qt::LeftButton, Qt::KeyboardModifiers(Modifiers));
        QApplication::sendEvent(m_Tree->viewport(), &Enter);
        QVERIFY(Enter.isAccepted());
        QDragMoveEvent Move(Position, All, pData.get(), Qt::LeftButton, Qt::KeyboardModifiers(Modifiers));
        QApplication::sendEvent(m_Tree->viewport(), &Move);
        QVERIFY(Move.isAccepted());
        QCOMPARE(Move.dropAction(), Action);
    }

    void rowsStandStraight()
    {
        for (int Row = 0; Row < 200; ++Row)
            addLayer(m_Channel, QStringLiteral("Layer %1").arg(Row));
        m_View->refresh();
        for (int Place : {0, 77, m_Tree->verticalScrollBar()->maximum()}) {
            m_Tree->verticalScrollBar()->setValue(Place);
            QApplication::processEvents();
            int ShownCount = 0;
            for (int Row = 0; Row < 200; ++Row) {
                const QModelIndex Index = m_View->model()->index(Row, 0);
                const QWidget* pRow = m_View->rowWidget(Index);
                const QRect Place = m_Tree->visualRect(Index);
                QCOMPARE(pRow->isVisible(), Place.intersects(m_Tree->viewport()->rect()));
                if (!pRow->isVisible())
                    continue;
                ++ShownCount;
                QCOMPARE(pRow->geometry(), Place);
                QCOMPARE(Place.right() + 1, m_Tree->viewport()->width());
                for (const QWidget* pPart :
                    pRow->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
                    QVERIFY(pPart->isHidden() || pRow->rect().contains(pPart->geometry()));
            }
            QVERIFY(ShownCount > 3);
        }
    }

    void refreshesAreFast()
    {
        const auto bestOf = [](int Runs, const std::function<void()>& Work) {
            qint64 Best = std::numeric_limits<qint64>::max();
            for (int Run = 0; Run < Runs; ++Run) {
                QElapsedTimer Timer;
                Timer.start();
                Work();
                Best = qMin(Best, Timer.nsecsElapsed());
            }
            return double(Best) / 1e6;
        };
        const auto settle = [this] {
            m_View->refresh();
            m_Tree->visualRect(m_View->model()->index(0, 0));
            m_Tree->repaint();
        };
        const auto idle = [] {
            QCoreApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        };
        {
            const OrvUndoManager::NoRecording NoRecording;
            for (int Row = 0; Row < 1000; ++Row)
                m_Channel->createPaintableLayer(
                    OrvLayerCreateFlags(), nullptr, QStringLiteral("Layer"), OrvColor());
        }
        settle();
        const double Unchanged = bestOf(5, [this] { m_View->refresh(); });
        {
            const OrvUndoManager::NoRecording NoRecording;
            for (int Row = 1000; Row < 10000; ++Row)
                m_Channel->createPaintableLayer(
                    OrvLayerCreateFlags(), nullptr, QStringLiteral("Layer"), OrvColor());
        }
        double Build = 1e9, Insertion = 1e9;
        for (int Run = 0; Run < 3; ++Run) {
            m_View->model()->removeRows(0, m_View->model()->rowCount());
            idle();
            Build = qMin(Build, bestOf(1, settle));
        }
        idle();
        for (int Run = 0; Run < 5; ++Run) {
            OrvLayer* pLayer = m_Channel->createPaintableLayer(
                OrvLayerCreateFlags(30), nullptr, QStringLiteral("New"), OrvColor());
            QVERIFY(pLayer);
            Insertion = qMin(Insertion, bestOf(1, settle));
            idle();
        }
        qInfo("1000 unchanged rows: %.2f ms; 10000 rows built: %.1f ms; one more row: %.2f ms", Unchanged,
            Build, Insertion);
        // A busy machine takes a few times as long; work that grows with the square of the rows takes a
        // hundred times.
        QVERIFY(Unchanged < 5);
        QVERIFY(Build < 1000);
        QVERIFY(Insertion < 60);
    }

private:
    static OrvLayer* currentLayer() { return OrvLayerManager::instance().currentLayer(); }

    void clickRow(const OrvLayer* pLayer, Qt::KeyboardModifiers Modifiers = Qt::NoModifier) const
    {
        const QModelIndex Index = m_View->model()->indexFromLayer(pLayer);
        m_Tree->scrollTo(Index);
        const QPoint Position = m_Tree->visualRect(Index).center();
        QWidget* pTarget = m_Tree->viewport()->childAt(Position);
        if (!pTarget)
            pTarget = m_Tree->viewport();
        QTest::mouseClick(pTarget, Qt::LeftButton, Modifiers, pTarget->mapFrom(m_Tree->viewport(), Position));
    }
    void clickCommand(const char* pText) const
    {
        for (QAction* pAction : m_View->toolBar()->actions()) {
            if (pAction->text() != QLatin1String(pText))
                continue;
            QWidget* pButton = m_View->toolBar()->widgetForAction(pAction);
            if (pButton->isVisible())
                QTest::mouseClick(pButton, Qt::LeftButton);
            else
                pAction->trigger();
            return;
        }
        QFAIL(pText);
    }
    /// Takes the first entry of the menu that the command opens.
    void chooseCommand(const char* pText) const
    {
        clickCommand(pText);
        auto* pMenu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        QVERIFY(pMenu);
        QAction* pEntry = pMenu->actions().first();
        while (pEntry->menu())
            pEntry = pEntry->menu()->actions().first();
        pEntry->trigger();
        pMenu->close();
    }
    QStringList selectedNames() const
    {
        QStringList Names;
        for (const QModelIndex& Index : m_Tree->selectionModel()->selectedRows())
            Names.append(m_View->layerFromIndex(Index)->name());
        Names.sort();
        return Names;
    }
    QStringList selectedLayerNames() const
    {
        QStringList Names;
        for (const OrvLayer* pLayer : m_Channel->selectedLayers())
            Names.append(pLayer->name());
        Names.sort();
        return Names;
    }
    /// The editors of blend mode and amount.
    QList<QPointer<QWidget>> blendControlets() const
    {
        QList<QPointer<QWidget>> Controlets;
        auto* pPages = m_View->findChild<QStackedLayout*>();
        const QLayout* pLayout = pPages->widget(1)->layout();
        for (int Item = 0; Item < 2; ++Item) {
            if (!qobject_cast<QPushButton*>(pLayout->itemAt(Item)->widget()))
                Controlets.append(pLayout->itemAt(Item)->widget());
        }
        return Controlets;
    }
    QPushButton* passThroughButton() const
    {
        for (QPushButton* pButton : m_View->findChildren<QPushButton*>()) {
            if (pButton->isVisible() && pButton->toolTip().contains(QStringLiteral("Pass Through")))
                return pButton;
        }
        return nullptr;
    }

    QTemporaryDir m_Directory;
    OrvLayerView* m_View = nullptr;
    OrvLayerTreeView* m_Tree = nullptr;
    OrvShaderInput* m_Channel = nullptr;
};

QTEST_MAIN(TstLayersPalette)
#include "TstLayersPalette.moc"
