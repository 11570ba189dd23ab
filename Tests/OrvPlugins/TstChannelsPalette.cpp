#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Object/OrvSettings.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Project/OrvProject.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Widgets/OrvColorSwatch.h"
#include "OrvCoreModules/Widgets/OrvEditLabel.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragPayload.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvQuickChannelStrip.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputActions.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputModel.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputTreeView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputViewItemRowWidget.h"

#include <QtCore/QMimeData>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QToolBar>
#include <QtWidgets/QToolButton>

#include <memory>

/// The Channels palette on a real document, driven by mouse and keys.
class TstChannelsPalette : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_Directory.isValid());
        qputenv("ORV_SETTINGS", m_Directory.filePath(QStringLiteral("settings.ini")).toLocal8Bit());
        OrvShaderInputActions::instance();
        m_View = OrvLayerViewContextManager::instance().shaderInputView();
        m_Tree = m_View->treeView();
    }

    void init()
    {
        OrvProjectManager::instance().newProject(QStringLiteral("Test"));
        m_View->window()->resize(360, 700);
        OrvMainWindow::instance().resize(900, 700);
        OrvMainWindow::instance().show();
        for (QWidget* pWidget = m_View; pWidget; pWidget = pWidget->parentWidget())
            pWidget->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_View->window()));
    }

    void cleanup() { OrvProjectManager::instance().closeProject(); }

    void listsChannelsByNameAndFollowsRenames()
    {
        OrvShaderInput* pGloss = addChannel(QStringLiteral("gloss"));
        addChannel(QStringLiteral("Diffuse"));
        addChannel(QStringLiteral("Bump"));
        QTRY_COMPARE(rows(), QStringList({"Bump", "Diffuse", "gloss"}));

        pGloss->node()->setName(QStringLiteral("Alpha"));
        QTRY_COMPARE(rows(), QStringList({"Alpha", "Bump", "Diffuse"}));
        OrvUndoManager::instance().undo();
        QTRY_COMPARE(rows(), QStringList({"Bump", "Diffuse", "gloss"}));

        OrvProjectManager::instance().closeProject();
        QTRY_COMPARE(m_View->model()->rowCount(), 0);
    }

    void rowsOfUnchangedChannelsKeepTheirWidgets()
    {
        addChannel(QStringLiteral("A"));
        OrvShaderInput* pB = addChannel(QStringLiteral("B"));
        addChannel(QStringLiteral("D"));
        m_View->refresh();
        const QWidget* pRowOfA = rowWidget("A");
        const QWidget* pRowOfD = rowWidget("D");
        QVERIFY(pRowOfA && pRowOfD);

        OrvShaderInputManager::instance().destroy(pB, OrvShaderInputManager::SharersBecomeGroups);
        addChannel(QStringLiteral("C"));
        m_View->refresh();
        QCOMPARE(rows(), QStringList({"A", "C", "D"}));
        QCOMPARE(rowWidget("A"), pRowOfA);
        QCOMPARE(rowWidget("D"), pRowOfD);
        QCOMPARE(rowWidget("C")->shaderInput()->name(), QStringLiteral("C"));
    }

    void clickMakesChannelCurrentAndHostIsFollowed()
    {
        OrvShaderInput* pA = addChannel(QStringLiteral("A"));
        OrvShaderInput* pB = addChannel(QStringLiteral("B"));
        m_View->refresh();
        clickRow("B");
        QCOMPARE(channels().currentShaderInput(), pB);
        QCOMPARE(mainStack(), pB);

        channels().makeShaderInputCurrent(pA, true);
        QCOMPARE(m_Tree->currentIndex(), m_View->model()->indexFromShaderInput(pA));
        QCOMPARE(mainStack(), pA);
        channels().makeShaderInputCurrent(networkOfTest(), nullptr, true);
        QVERIFY(!m_Tree->currentIndex().isValid());
        QVERIFY(!mainStack());
    }

    void removingRowsLeavesCurrentChannelAlone()
    {
        OrvShaderInput* pA = addChannel(QStringLiteral("A"));
        addChannel(QStringLiteral("B"));
        OrvShaderInput* pC = addChannel(QStringLiteral("C"));
        m_View->refresh();
        channels().makeShaderInputCurrent(pA, true);
        channels().makeShaderInputCurrent(networkOfTest(), nullptr, true);
        m_Tree->selectionModel()->setCurrentIndex(
            m_View->model()->indexFromShaderInput(pA), QItemSelectionModel::NoUpdate);
        channels().makeShaderInputCurrent(pC, true);
        channels().destroy(pA, OrvShaderInputManager::SharersBecomeGroups);
        m_View->refresh();
        QCOMPARE(channels().currentShaderInput(), pC);
        QCOMPARE(m_Tree->currentIndex(), m_View->model()->indexFromShaderInput(pC));
    }

    void nameIsEditedInTheRow()
    {
        OrvShaderInput* pChannel = addChannel(QStringLiteral("Diffuse"));
        m_View->refresh();
        editName("Diffuse", QStringLiteral("  Albedo "));
        QCOMPARE(pChannel->name(), QStringLiteral("Albedo"));
        OrvUndoManager::instance().undo();
        QCOMPARE(pChannel->name(), QStringLiteral("Diffuse"));

        m_View->refresh();
        editName("Diffuse", QStringLiteral("   "));
        QCOMPARE(pChannel->name(), QStringLiteral("Diffuse"));
        pChannel->setLocked(true);
        rowWidget("Diffuse")->setNameUndo(QStringLiteral("Other"));
        QCOMPARE(pChannel->name(), QStringLiteral("Diffuse"));
    }

    void lockButtonLocksAndFollowsUndo()
    {
        OrvShaderInput* pChannel = addChannel(QStringLiteral("Diffuse"));
        m_View->refresh();
        QToolButton* pLock = lockButton("Diffuse");
        QVERIFY(pLock);
        QTest::mouseClick(pLock, Qt::LeftButton);
        QVERIFY(pChannel->isLocked());
        OrvUndoManager::instance().undo();
        QVERIFY(!pChannel->isLocked());
        QVERIFY(!pLock->isChecked());
        OrvUndoManager::instance().redo();
        QVERIFY(pLock->isChecked());
        QTest::mouseClick(pLock, Qt::LeftButton);
        QVERIFY(!pChannel->isLocked());
    }

    void quickChannelIsOneUndoStep()
    {
        const QList<OrvColorSwatch*> Swatches = m_View->findChildren<OrvColorSwatch*>();
        QCOMPARE(Swatches.size(), 4);
        QTest::mouseClick(Swatches.at(1), Qt::LeftButton);
        QTRY_COMPARE(rows(), QStringList({"Quick Channel"}));
        OrvShaderInput* pChannel = channels().currentShaderInput();
        QVERIFY(pChannel);
        QCOMPARE(pChannel->name(), QStringLiteral("Quick Channel"));
        QCOMPARE(pChannel->layerList().size(), 1);
        QCOMPARE(pChannel->layerList().first()->name(), QStringLiteral("Base"));
        QTest::mouseClick(Swatches.at(0), Qt::LeftButton);
        QTRY_COMPARE(rows().size(), 2);
        OrvUndoManager::instance().undo();
        OrvUndoManager::instance().undo();
        QTRY_COMPARE(rows(), QStringList());

        OrvProjectManager::instance().closeProject();
        QVERIFY(!Swatches.at(1)->isEnabled());
    }

    void quickChannelSizeSurvivesPtex()
    {
        auto* pStrip = m_View->findChild<OrvQuickChannelStrip*>();
        QComboBox* pSizes = pStrip->findChildren<QComboBox*>().first();
        pSizes->setCurrentIndex(pSizes->findData(QSize(1024, 1024)));
        OrvGeoEntity* pEntity = OrvProjectManager::instance().currentProject()->currentGeoEntity();
        pEntity->setPtex(true);
        m_View->onCurrentGeoEntityChanged(pEntity);
        QCOMPARE(pSizes->currentText(), QStringLiteral("Ptex"));
        QCOMPARE(pSizes->count(), 1);
        QVERIFY(!pSizes->isEnabled());
        QVERIFY(!pStrip->channelSize().isValid());

        pEntity->setPtex(false);
        m_View->onCurrentGeoEntityChanged(pEntity);
        QCOMPARE(pStrip->channelSize(), QSize(1024, 1024));
        QVERIFY(pSizes->isEnabled());
        OrvSettings Settings;
        QCOMPARE(Settings.value("Quick Create Channel/Size").toSize(), QSize(1024, 1024));
    }

    void deleteKeyRemovesTheChannelInOneStep()
    {
        addChannel(QStringLiteral("A"));
        OrvShaderInput* pB = addChannel(QStringLiteral("B"));
        m_View->refresh();
        clickRow("A");
        m_Tree->setFocus();
        QTest::keyClick(m_Tree, Qt::Key_Delete);
        QTRY_COMPARE(rows(), QStringList({"B"}));
        QCOMPARE(channels().currentShaderInput(), pB);
        OrvUndoManager::instance().undo();
        QTRY_COMPARE(rows(), QStringList({"A", "B"}));
    }

    void modifiersChooseTheDropAction_data()
    {
        QTest::addColumn<int>("Modifiers");
        QTest::addColumn<Qt::DropAction>("Action");
        QTest::newRow("none") << int(Qt::NoModifier) << Qt::MoveAction;
        QTest::newRow("Ctrl") << int(Qt::ControlModifier) << Qt::MoveAction;
        QTest::newRow("Alt") << int(Qt::AltModifier) << Qt::CopyAction;
        QTest::newRow("Alt+Ctrl") << int(Qt::AltModifier | Qt::ControlModifier) << Qt::CopyAction;
        QTest::newRow("Shift") << int(Qt::ShiftModifier) << Qt::LinkAction;
        QTest::newRow("Shift+Ctrl") << int(Qt::ShiftModifier | Qt::ControlModifier) << Qt::LinkAction;
        QTest::newRow("Shift+Alt") << int(Qt::ShiftModifier | Qt::AltModifier) << Qt::MoveAction;
        QTest::newRow("Alt+Meta") << int(Qt::AltModifier | Qt::MetaModifier) << Qt::MoveAction;
    }
    void modifiersChooseTheDropAction()
    {
        QFETCH(int, Modifiers);
        QFETCH(Qt::DropAction, Action);
        QCOMPARE(OrvLayerDragPayload::actionFromModifiers(Qt::KeyboardModifiers(Modifiers)), Action);
    }

    void altDropDuplicatesAndPlainDropDoesNothing()
    {
        addChannel(QStringLiteral("A"));
        addChannel(QStringLiteral("B"));
        m_View->refresh();
        OrvShaderInputModel* pModel = m_View->model();
        std::unique_ptr<QMimeData> pMime(pModel->mimeData({pModel->index(1, 0), pModel->index(0, 0)}));
        QCOMPARE(OrvLayerDragPayload::read(pMime.get()).size(), 2);
        QCOMPARE(OrvLayerDragPayload::read(pMime.get()).first()->name(), QStringLiteral("B"));
        // An identity of something that is gone must not stop the others.
        pMime->setData(OrvLayerDragPayload::mimeType(),
            "gone:" + pMime->data(OrvLayerDragPayload::mimeType()).split(':').first());

        QVERIFY(!pModel->dropMimeData(pMime.get(), Qt::CopyAction, -1, -1, {}));
        QCOMPARE(channels().getShaderInputsFromNetwork(networkOfTest()).size(), 2);
        QTest::keyPress(m_Tree, Qt::Key_Alt, Qt::AltModifier);
        QVERIFY(!pModel->dropMimeData(pMime.get(), Qt::MoveAction, -1, -1, {}));
        QTest::keyRelease(m_Tree, Qt::Key_Alt);
        QTRY_COMPARE(m_View->model()->rowCount(), 3);

        const std::unique_ptr<QMimeData> pEmpty(pModel->mimeData({}));
        QVERIFY(pEmpty->hasFormat(OrvLayerDragPayload::mimeType()));
        QVERIFY(!pModel->dropMimeData(nullptr, Qt::CopyAction, -1, -1, {}));
    }

    void restingDragSwitchesTheChannel()
    {
        addChannel(QStringLiteral("A"));
        OrvShaderInput* pB = addChannel(QStringLiteral("B"));
        m_View->refresh();
        clickRow("A");
        QApplication::processEvents();
        OrvShaderInputViewItemRowWidget* pRow = rowWidget("B");
        const QPoint OnName = pRow->mapTo(m_Tree->viewport(), QPoint(8, pRow->height() / 2));
        const QPoint OnHotSpot = pRow->mapTo(m_Tree->viewport(), pRow->dragTargetGeometry().center());

        dragTo(OnName);
        QTest::qWait(200);
        QVERIFY(channels().currentShaderInput() != pB);
        QTRY_COMPARE_WITH_TIMEOUT(channels().currentShaderInput(), pB, 1000);
        clickRow("A");
        dragTo(OnHotSpot);
        QTRY_COMPARE_WITH_TIMEOUT(channels().currentShaderInput(), pB, 150);
    }

    void toolBarStartsWithAddChannelOnce()
    {
        QAction* pAdd = OrvActionTreeManager::instance().findAction(QStringLiteral("/Orvi/Channels/Add Channel"));
        QVERIFY(pAdd);
        const QToolBar* pToolBar = m_View->findChild<QToolBar*>();
        QCOMPARE(pToolBar->actions().count(pAdd), 1);
        pAdd->trigger();
        QTRY_COMPARE(m_View->model()->rowCount(), 1);
        OrvUndoManager::instance().undo();
        QTRY_COMPARE(m_View->model()->rowCount(), 0);
        QVERIFY(pAdd->isEnabled());
        OrvProjectManager::instance().closeProject();
        QVERIFY(!pAdd->isEnabled());
    }

    void rowsAreNotClipped()
    {
        for (const char* pName : {"Bump", "Diffuse", "Displacement", "Specular Roughness of the clear coat"})
            addChannel(QLatin1String(pName));
        m_View->refresh();
        QApplication::processEvents();
        for (const QString& Name : rows()) {
            const OrvShaderInputViewItemRowWidget* pRow = rowWidget(Name);
            QCOMPARE(pRow->height(), int(OrvShaderInputViewItemRowWidget::RowHeight));
            QVERIFY(pRow->geometry().right() < m_Tree->viewport()->width());
            for (const QWidget* pChild : pRow->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
                QVERIFY(pRow->rect().contains(pChild->geometry()));
        }
    }

    void refreshOfUnchangedChannelsIsFast()
    {
        constexpr int Count = 500;
        {
            const OrvUndoManager::NoRecording NoRecording;
            for (int i = 0; i < Count; ++i)
                addChannel(QStringLiteral("Channel %1").arg(i, 3, 10, QLatin1Char('0')));
        }
        m_View->refresh();
        QCOMPARE(m_View->model()->rowCount(), Count);
        QApplication::processEvents();
        qint64 Best = std::numeric_limits<qint64>::max();
        for (int Run = 0; Run < 5; ++Run) {
            QElapsedTimer Timer;
            Timer.start();
            m_View->refresh();
            Best = qMin(Best, Timer.nsecsElapsed());
        }
        qInfo("refresh of %d unchanged channels: %.2f ms", Count, double(Best) / 1e6);
        QVERIFY(Best < 5 * 1000 * 1000);
    }

private:
    static OrvShaderInputManager& channels() { return OrvShaderInputManager::instance(); }
    static OrvShaderNetwork* networkOfTest() { return OrvShaderNetworkManager::instance().currentShaderNetwork(); }
    static OrvLayerStack* mainStack()
    {
        return OrvLayerViewContextManager::instance().mainLayerView()->layerStack();
    }
    static OrvShaderInput* addChannel(const QString& Name)
    {
        return OrvShaderInputUtils::create(networkOfTest(), Name, QSize(256, 256), GL_UNSIGNED_BYTE);
    }

    QStringList rows() const
    {
        QStringList Names;
        for (int Row = 0; Row < m_View->model()->rowCount(); ++Row) {
            // Until the refresh a row can outlive its node.
            const OrvSnBaseNode* pNode = m_View->model()->nodeFromIndex(m_View->model()->index(Row, 0));
            Names.append(pNode ? pNode->name() : QString());
        }
        return Names;
    }
    OrvShaderInputViewItemRowWidget* rowWidget(const QString& Name) const
    {
        const QModelIndex Index = m_View->model()->index(rows().indexOf(Name), 0);
        return qobject_cast<OrvShaderInputViewItemRowWidget*>(m_Tree->indexWidget(Index));
    }
    QToolButton* lockButton(const QString& Name) const
    {
        for (QToolButton* pButton : rowWidget(Name)->findChildren<QToolButton*>()) {
            if (pButton->defaultAction())
                return pButton;
        }
        return nullptr;
    }
    void clickRow(const QString& Name) const
    {
        QApplication::processEvents();
        const QModelIndex Index = m_View->model()->index(rows().indexOf(Name), 0);
        QTest::mouseClick(m_Tree->viewport(), Qt::LeftButton, Qt::NoModifier, m_Tree->visualRect(Index).center());
    }
    void editName(const QString& Name, const QString& Text) const
    {
        QApplication::processEvents();
        OrvEditLabel* pLabel = rowWidget(Name)->findChild<OrvEditLabel*>();
        QTest::mouseDClick(pLabel, Qt::LeftButton);
        QLineEdit* pEdit = pLabel->findChild<QLineEdit*>();
        QVERIFY(pEdit && pEdit->isVisible());
        pEdit->selectAll();
        QTest::keyClicks(pEdit, Text);
        QTest::keyClick(pEdit, Qt::Key_Return);
    }
    void dragTo(const QPoint& Position) const
    {
        QCursor::setPos(m_Tree->viewport()->mapToGlobal(Position));
        const std::unique_ptr<QMimeData> pMime(m_View->model()->mimeData({m_View->model()->index(0, 0)}));
        QDragEnterEvent Enter(Position, Qt::CopyAction, pMime.get(), Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_Tree->viewport(), &Enter);
        QDragMoveEvent Move(Position, Qt::CopyAction, pMime.get(), Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_Tree->viewport(), &Move);
    }

    QTemporaryDir m_Directory;
    OrvShaderInputView* m_View = nullptr;
    OrvShaderInputTreeView* m_Tree = nullptr;
};

QTEST_MAIN(TstChannelsPalette)
#include "TstChannelsPalette.moc"
