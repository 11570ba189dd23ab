#include "Tests/Orvi/OrvTestAnswers.h"
#include "Tests/OrvPlugins/LayersFixture.h"
#include "Tests/OrvPlugins/SettingsDirectory.h"
#include "Tests/Support/OrvDebugReports.h"

#include "OrvCore/Channels/OrvSnShaderInputNode.h"
#include "OrvCore/Object/OrvSettings.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Project/OrvProject.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderUtils.h"
#include "OrvCore/Shaders/OrvMultiChannelLayerUtils.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Menus/OrvMenuManager.h"
#include "OrvCoreModules/Properties/OrvPropertyView.h"
#include "OrvCoreModules/Widgets/OrvColorSwatch.h"
#include "OrvCoreModules/Widgets/OrvEditLabel.h"
#include "OrvCoreModules/Widgets/OrvExpandableListWidget.h"
#include "OrvCoreModules/Window/OrvIcon.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvDdi/Image/OrvChannel.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragPayload.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvQuickChannelStrip.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputActions.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputModel.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputTreeView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputViewItemRowWidget.h"

#include <QtCore/QMimeData>
#include <QtGui/QPainter>
#include <QtTest/QtTest>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QToolBar>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QUndoStack>

#include <memory>

/// The Channels palette on a real document, driven by mouse and keys.
class TstChannelsPalette : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_Directory.isValid());
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
        m_View->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_View->window()));
    }

    void cleanup() { OrvProjectManager::instance().closeProject(); }

    void listsChannelsByNameAndFollowsRenames()
    {
        OrvShaderInput* pGloss = addChannels({"gloss", "Diffuse", "Bump"}).first();
        QTRY_COMPARE(rows(), QStringList({"Bump", "Diffuse", "gloss"}));

        pGloss->node()->setName(QStringLiteral("Alpha"));
        QTRY_COMPARE(rows(), QStringList({"Alpha", "Bump", "Diffuse"}));
        OrvUndoManager::instance().undo();
        QTRY_COMPARE(rows(), QStringList({"Bump", "Diffuse", "gloss"}));

        addChannel("Twin")->node()->setName(QStringLiteral("Bump"));
        QTRY_COMPARE(rows(), QStringList({"Bump", "Bump", "Diffuse", "gloss"}));
        QVERIFY(m_View->model()->index(0, 0).data(OrvShaderInputModel::NodeRole)
            != m_View->model()->index(1, 0).data(OrvShaderInputModel::NodeRole));

        OrvProjectManager::instance().closeProject();
        QTRY_COMPARE(m_View->model()->rowCount(), 0);
    }

    void rowsOfUnchangedChannelsKeepTheirWidgets()
    {
        OrvShaderInput* pB = addChannels({"A", "B", "D"}).at(1);
        const QWidget* pRowOfA = rowWidget("A");
        const QWidget* pRowOfD = rowWidget("D");
        QVERIFY(pRowOfA && pRowOfD);

        OrvShaderInputManager::instance().destroy(pB, OrvShaderInputManager::SharersBecomeGroups);
        addChannels({"C"});
        QCOMPARE(rows(), QStringList({"A", "C", "D"}));
        QCOMPARE(rowWidget("A"), pRowOfA);
        QCOMPARE(rowWidget("D"), pRowOfD);
        QCOMPARE(rowWidget("C")->shaderInput()->name(), QStringLiteral("C"));
    }

    void clickMakesChannelCurrentAndHostIsFollowed()
    {
        const QList<OrvShaderInput*> Channels = addChannels({"A", "B"});
        OrvShaderInput* pA = Channels.first();
        clickRow("B");
        QCOMPARE(channels().currentShaderInput(), Channels.last());
        QCOMPARE(mainStack(), Channels.last());

        channels().makeShaderInputCurrent(pA, true);
        QCOMPARE(m_Tree->currentIndex(), m_View->model()->indexFromShaderInput(pA));
        QCOMPARE(mainStack(), pA);
        channels().makeShaderInputCurrent(LayersFixture::network(), nullptr, true);
        QVERIFY(!m_Tree->currentIndex().isValid());
        QVERIFY(!mainStack());
    }

    void pressThatStartsSharingLeavesTheCurrentChannel()
    {
        const QList<OrvShaderInput*> Channels = addChannels({"A", "B"});
        clickRow("B");
        const QModelIndex A = m_View->model()->indexFromShaderInput(Channels.first());
        const QModelIndex B = m_View->model()->indexFromShaderInput(Channels.last());
        const QPoint OnA = m_Tree->visualRect(A).center();
        for (const Qt::KeyboardModifier Key : {Qt::ShiftModifier, Qt::AltModifier}) {
            QTest::mousePress(m_Tree->viewport(), Qt::LeftButton, Key, OnA);
            QCOMPARE(m_Tree->currentIndex(), B);
            QCOMPARE(m_Tree->selectionModel()->selectedRows(), QModelIndexList{A}); // what a drag takes along
            QCOMPARE(mainStack(), Channels.last());
            QTest::mouseRelease(m_Tree->viewport(), Qt::LeftButton, Key, OnA);
            QCOMPARE(m_Tree->selectionModel()->selectedRows(), QModelIndexList{B});
        }
        QCOMPARE(channels().currentShaderInput(), Channels.last());

        // Nor does it make one current where none is, as under a material.
        channels().makeShaderInputCurrent(LayersFixture::network(), nullptr, true);
        QTest::mousePress(m_Tree->viewport(), Qt::LeftButton, Qt::ShiftModifier, OnA);
        QCOMPARE(m_Tree->selectionModel()->selectedRows(), QModelIndexList{A});
        QTest::mouseRelease(m_Tree->viewport(), Qt::LeftButton, Qt::ShiftModifier, OnA);
        QVERIFY(m_Tree->selectionModel()->selectedRows().isEmpty());
        QVERIFY(!channels().currentShaderInput());
    }

    void removingRowsLeavesCurrentChannelAlone()
    {
        const QList<OrvShaderInput*> Channels = addChannels({"A", "B", "C"});
        OrvShaderInput *pA = Channels.first(), *pC = Channels.last();
        channels().makeShaderInputCurrent(pA, true);
        channels().makeShaderInputCurrent(LayersFixture::network(), nullptr, true);
        m_Tree->selectionModel()->setCurrentIndex(
            m_View->model()->indexFromShaderInput(pA), QItemSelectionModel::NoUpdate);
        channels().makeShaderInputCurrent(pC, true);
        channels().destroy(pA, OrvShaderInputManager::SharersBecomeGroups);
        // Its row is there a little longer and can be chosen.
        m_Tree->setCurrentIndex(m_View->model()->index(0, 0));
        QCOMPARE(mainStack(), pC);
        m_View->refresh();
        QCOMPARE(channels().currentShaderInput(), pC);
        QCOMPARE(m_Tree->currentIndex(), m_View->model()->indexFromShaderInput(pC));
    }

    void nameIsEditedInTheRow()
    {
        OrvShaderInput* pChannel = addChannels({"Diffuse"}).first();
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

    void keyRenamesTheCurrentChannel()
    {
        OrvShaderInput* pChannel = addChannels({"Diffuse"}).first();
        clickRow(QStringLiteral("Diffuse"));
        m_Tree->setFocus();
        QTest::keyClick(m_Tree, Qt::Key_F2);
        QLineEdit* pEdit = rowWidget("Diffuse")->findChild<QLineEdit*>();
        QVERIFY(pEdit);
        pEdit->selectAll();
        QTest::keyClicks(pEdit, QStringLiteral("Albedo"));
        QTest::keyClick(pEdit, Qt::Key_Return);
        QCOMPARE(pChannel->name(), QStringLiteral("Albedo"));
    }

    void lockButtonLocksAndFollowsUndo()
    {
        OrvShaderInput* pChannel = addChannels({"Diffuse"}).first();
        QToolButton* pLock = lockButton("Diffuse");
        QTest::mouseClick(pLock, Qt::LeftButton);
        QVERIFY(pChannel->isLocked());
        OrvUndoManager::instance().undo();
        QVERIFY(!pChannel->isLocked());
        QVERIFY(!pLock->isChecked());
        channels().makeShaderInputCurrent(pChannel, true);
        QTRY_COMPARE(propertyNode(), pChannel->node());
        const OrvPropertyView* pProperties = shownProperties();
        QVERIFY(pProperties->isEnabled());
        OrvUndoManager::instance().redo();
        QVERIFY(pLock->isChecked());
        QVERIFY(!pProperties->isEnabled());
        QTest::mouseClick(pLock, Qt::LeftButton);
        QVERIFY(!pChannel->isLocked());
        QVERIFY(pProperties->isEnabled());
    }

    /// As renaming in the row is.
    void propertiesAreClosedByWhatSharesTheChannel()
    {
        OrvShaderInput* pDirt = addChannel("Dirt");
        OrvLayer* pSharer = share(pDirt, addChannel("Diffuse"));
        channels().makeShaderInputCurrent(pDirt, true);
        QTRY_COMPARE(propertyNode(), pDirt->node());
        QVERIFY(shownProperties()->isEnabled());
        pSharer->blendNode()->setCacheActive(OrvSnCacheActive);
        QVERIFY(!shownProperties()->isEnabled());
        OrvUndoManager::instance().undo();
        QVERIFY(shownProperties()->isEnabled());
        pSharer->setLocked(true);
        QVERIFY(!shownProperties()->isEnabled());
        OrvUndoManager::instance().undo();
        QVERIFY(shownProperties()->isEnabled());
    }

    /// What a user does with a new project, by mouse and keys alone.
    void channelsAreMadeNamedChosenAndRemoved()
    {
        QCOMPARE(swatches().size(), 4);
        const QList<QComboBox*> Combos = strip()->findChildren<QComboBox*>();
        for (QComboBox* pCombo : Combos)
            QTest::keyClick(pCombo, Qt::Key_End);
        QTest::keyClick(Combos.first(), Qt::Key_Home);
        QTest::mouseClick(swatches().at(2), Qt::LeftButton);
        QTRY_COMPARE(rows(), QStringList({"Quick Channel"}));
        OrvShaderInput* pQuick = channels().currentShaderInput();
        QCOMPARE(LayersFixture::stackText(pQuick), QStringLiteral("Base"));
        QCOMPARE(pQuick->imageSetSize(), OrvChannel::supportedTextureSizes().first());
        QCOMPARE(pQuick->imageSetDepth(), GLenum(GL_FLOAT));
        QCOMPARE(mainStack(), pQuick);
        QTRY_COMPARE(propertyNode(), pQuick->node());

        const auto title = [this] {
            const auto* pGroup = m_View->findChild<OrvPropertyView*>()->findChild<OrvExpandableListWidget*>();
            return pGroup->title();
        };
        QCOMPARE(title(), QStringLiteral("Channel : Quick Channel"));
        editName("Quick Channel", QStringLiteral("Mask of rust"));
        QCOMPARE(title(), QStringLiteral("Channel : Mask of rust"));
        QTRY_COMPARE(rows(), QStringList({"Mask of rust"}));
        QToolBar* pToolBar = m_View->findChild<QToolBar*>();
        QTest::mouseClick(pToolBar->widgetForAction(pToolBar->actions().first()), Qt::LeftButton);
        QTRY_COMPARE(rows(), QStringList({"Channel", "Mask of rust"}));

        clickRow("Channel");
        QTRY_COMPARE(propertyNode(), channels().currentShaderInput()->node());
        QVERIFY(channels().currentShaderInput() != pQuick);
        QTest::keyClick(m_Tree, Qt::Key_Down);
        QCOMPARE(channels().currentShaderInput(), pQuick);
        QCOMPARE(mainStack(), pQuick);
        QTest::keyClick(m_Tree, Qt::Key_Delete);
        QTRY_COMPARE(rows(), QStringList({"Channel"}));
        QTRY_COMPARE(m_Tree->currentIndex(), m_View->model()->index(0, 0));

        int Steps = 0;
        while (OrvUndoManager::instance().stack()->canUndo()) {
            OrvUndoManager::instance().undo();
            ++Steps;
        }
        QCOMPARE(Steps, 4);
        QTRY_COMPARE(rows(), QStringList());
        QVERIFY(!mainStack());
        QTRY_VERIFY(!propertyNode());
        while (OrvUndoManager::instance().stack()->canRedo())
            OrvUndoManager::instance().redo();
        QTRY_COMPARE(rows(), QStringList({"Channel"}));
        OrvProjectManager::instance().closeProject();
        QVERIFY(!swatches().first()->isEnabled());
    }

    void rightClickOffersTheCommands()
    {
        QStringList Texts;
        QTimer::singleShot(0, this, [&Texts] {
            QWidget* pMenu = QApplication::activePopupWidget();
            for (const QAction* pAction : pMenu ? pMenu->actions() : QList<QAction*>())
                Texts.append(pAction->text());
            if (pMenu)
                QTest::keyClick(pMenu, Qt::Key_Escape);
        });
        QContextMenuEvent Event(QContextMenuEvent::Mouse, QPoint(9, 9), m_Tree->mapToGlobal(QPoint(9, 9)));
        QApplication::sendEvent(m_Tree->viewport(), &Event);
        QVERIFY(Texts.contains(QStringLiteral("Add Channel")));
        QVERIFY(Texts.contains(QStringLiteral("Remove Channel")));
    }

    void publishedCommandsComeToTheToolBar()
    {
        const QToolBar* pToolBar = m_View->findChild<QToolBar*>();
        QAction Command(QStringLiteral("Mirror Channel"));
        OrvMenuManager& Menus = OrvMenuManager::instance();
        for (const char* pMenu : {"Panel", "Other"})
            Menus.registerAction(QStringLiteral("Channels"), QLatin1String(pMenu), QString(), &Command);
        QCOMPARE(pToolBar->actions().count(&Command), 1);
        Menus.unregisterAction(QStringLiteral("Channels"), QStringLiteral("Other"), QString(), &Command);
        QVERIFY(pToolBar->actions().contains(&Command));
        Menus.unregisterAction(QStringLiteral("Channels"), QStringLiteral("Panel"), QString(), &Command);
        QVERIFY(!pToolBar->actions().contains(&Command));
    }

    void settingsSurviveARestart()
    {
        const auto openView = [] {
            auto pView = std::make_unique<OrvShaderInputView>(nullptr);
            pView->resize(290, 600);
            pView->show();
            return pView;
        };
        QList<int> Sizes;
        {
            const auto pView = openView();
            const QList<QComboBox*> Combos
                = pView->findChild<OrvQuickChannelStrip*>()->findChildren<QComboBox*>();
            Combos.at(0)->setCurrentIndex(Combos.at(0)->findData(QSize(512, 512)));
            Combos.at(1)->setCurrentIndex(Combos.at(1)->findData(GL_HALF_FLOAT));
            pView->findChild<QSplitter*>()->setSizes({400, 200});
            Sizes = pView->findChild<QSplitter*>()->sizes();
        }
        const auto pView = openView();
        QCOMPARE(pView->findChild<QSplitter*>()->sizes(), Sizes);
        QCOMPARE(pView->findChild<OrvQuickChannelStrip*>()->channelSize(), QSize(512, 512));
        QCOMPARE(pView->findChild<OrvQuickChannelStrip*>()->channelDepth(), GL_HALF_FLOAT);
        OrvSettings Settings;
        Settings.setValue("Quick Create Channel/Size", QSize(300, 200));
        const OrvQuickChannelStrip Odd;
        QCOMPARE(Odd.findChildren<QComboBox*>().first()->currentIndex(), -1);
        QCOMPARE(Odd.channelDepth(), GL_HALF_FLOAT);
        Settings.remove(QStringLiteral("Quick Create Channel"));
    }

    void quickChannelNeedsAnObject()
    {
        OrvShaderNetwork* pNetwork = LayersFixture::network();
        OrvShaderNetworkManager::instance().setCurrentShaderNetwork(nullptr);
        const OrvDebugReports Told;
        QTest::mouseClick(swatches().at(1), Qt::LeftButton);
        QCOMPARE(Told.Texts, QStringList("Cannot get a handle to the network"));
        QVERIFY(channels().getShaderInputsFromNetwork(pNetwork).isEmpty());
        QVERIFY(!OrvUndoManager::instance().stack()->canUndo());
        OrvShaderNetworkManager::instance().setCurrentShaderNetwork(pNetwork);
    }

    void materialStacksAreNotListed()
    {
        OrvShaderInput* pColor = addChannel("Diffuse");
        OrvShaderInput* pMaterial = OrvShaderInputUtils::createShaderInput(true);
        QVERIFY(pMaterial && pMaterial->isMaterialStack());
        m_View->refresh();
        QCOMPARE(rows(), QStringList({"Diffuse"}));
        QVERIFY(!m_View->model()->indexFromShaderInput(pMaterial).isValid());
        channels().makeShaderInputCurrent(pColor, true);
        QCOMPARE(mainStack(), pColor);
        channels().makeShaderInputCurrent(pMaterial, true);
        QVERIFY(!m_Tree->currentIndex().isValid());
        QVERIFY(!mainStack());
        QTRY_COMPARE(propertyNode(), pMaterial->node());
    }

    void quickChannelSizeSurvivesPtex()
    {
        OrvQuickChannelStrip* pStrip = strip();
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
        addChannels({"A", "B"});
        OrvShaderInputModel* pModel = m_View->model();
        std::unique_ptr<QMimeData> pMime(pModel->mimeData({pModel->index(1, 0), pModel->index(0, 0)}));
        QCOMPARE(OrvLayerDragPayload::read(pMime.get()).size(), 2);
        QCOMPARE(OrvLayerDragPayload::read(pMime.get()).first()->name(), QStringLiteral("B"));
        // An identity of something that is gone must not stop the others.
        pMime->setData(OrvLayerDragPayload::mimeType(),
            "gone:" + pMime->data(OrvLayerDragPayload::mimeType()).split(':').first());

        QVERIFY(!pModel->dropMimeData(pMime.get(), Qt::CopyAction, -1, -1, {}));
        QTest::keyPress(m_Tree, Qt::Key_Shift, Qt::ShiftModifier);
        QVERIFY(!pModel->dropMimeData(pMime.get(), Qt::LinkAction, -1, -1, {}));
        QTest::keyRelease(m_Tree, Qt::Key_Shift);
        QCOMPARE(channels().getShaderInputsFromNetwork(LayersFixture::network()).size(), 2);
        QTest::keyPress(m_Tree, Qt::Key_Alt, Qt::AltModifier);
        QVERIFY(!pModel->dropMimeData(pMime.get(), Qt::MoveAction, -1, -1, {}));
        QTest::keyRelease(m_Tree, Qt::Key_Alt);
        QTRY_COMPARE(m_View->model()->rowCount(), 3);

        const std::unique_ptr<QMimeData> pEmpty(pModel->mimeData({}));
        QVERIFY(pEmpty->hasFormat(OrvLayerDragPayload::mimeType()));
        QVERIFY(!pModel->dropMimeData(nullptr, Qt::CopyAction, -1, -1, {}));
    }

    void shiftDropSharesLayersAsChannels()
    {
        OrvShaderInput* pDiffuse = addChannels({"Diffuse"}).first();
        OrvLayer* pDirt = LayersFixture::addLayer(pDiffuse, "Dirt");
        const QList<OrvSnBaseNode*> Dropped{
            pDirt->blendNode(), LayersFixture::addLayer(pDiffuse, "Rust")->blendNode()};
        drop(Dropped);
        drop(Dropped, Qt::Key_Alt, Qt::AltModifier);
        QCOMPARE(channels().getShaderInputsFromNetwork(LayersFixture::network()).size(), 1);
        drop(Dropped, Qt::Key_Shift, Qt::ShiftModifier);
        QTRY_COMPARE(rows(), QStringList({"Diffuse", "Dirt", "Rust"}));
        OrvShaderInput* pShared = OrvShaderInputUtils::getShaderInput(
            m_View->model()->nodeFromIndex(m_View->model()->index(1, 0)));
        QCOMPARE(pShared->layerList().size(), 1);
        QCOMPARE(pShared->layerList().first()->contentNode(), pDirt->contentNode());
        QCOMPARE(pShared->imageSetSize(), pDiffuse->imageSetSize());
        OrvUndoManager::instance().undo();
        QTRY_COMPARE(rows(), QStringList({"Diffuse", "Dirt"}));

        // An adjustment reads what lies below it, which is something else there: it becomes a layer of its own.
        OrvLayer* pInvert = pDiffuse->createAdjustmentLayer(
            OrvShaderNetworkManager::instance().layerPathKeys().filter(QRegExp("^Filter/")).first(),
            OrvLayerCreateFlags());
        QVERIFY(pInvert);
        const OrvShaderInput* pAdjusted = pInvert->shareLayerAsChannel();
        QVERIFY(pAdjusted && pAdjusted->layerList().first()->isAdjustmentLayer());
        QVERIFY(!pInvert->isPaintComponentShared());
    }

    void layersOfSeveralChannelsAreNeitherSharedNorDuplicated()
    {
        const QList<OrvShaderInput*> Channels = addChannels({"Diffuse", "Gloss", "Plain"});
        OrvShaderInput* pDiffuse = Channels.first();
        OrvLayerShader* pShader = OrvLayerShaderUtils::createShaderFromKey("Shader/MetallicRoughness", true);
        QVERIFY(pShader && pShader->setInputShaderInput("Base Color", pDiffuse));
        QVERIFY(pShader->setInputShaderInput("Roughness", Channels.at(1)));
        QString Error;
        OrvLayer* pCommon
            = OrvMultiChannelLayerUtils::createMultiChannelGroupLayer(pShader, pDiffuse->bottomNode(), Error);
        QVERIFY2(pCommon, qPrintable(Error));
        const OrvLayer* pDirt = LayersFixture::addLayer(pDiffuse, "Dirt");
        const OrvLayer* pRust = LayersFixture::addLayer(pDiffuse, "Rust");
        // It ends the drop; what comes after it stays.
        QVERIFY(drop({pDirt->blendNode(), pCommon->blendNode(), pRust->blendNode()}, Qt::Key_Shift,
            Qt::ShiftModifier)
                    .isEmpty());
        QTRY_COMPARE(rows(), QStringList({"Diffuse", "Dirt", "Gloss", "Plain"}));
        QCOMPARE(drop({pDiffuse->node(), Channels.last()->node()}, Qt::Key_Alt, Qt::AltModifier),
            QStringList("This Channel contains Multi-Channel Layers and cannot be duplicated, cut, copied or pasted. "
                        "Please convert all Multi-Channel Layers to standard Layers first."));
        QTRY_COMPARE(rows(), QStringList({"Diffuse", "Dirt", "Gloss", "Plain", "Plain Copy"}));
    }

    void marksFollowTheChannel()
    {
        const QList<OrvShaderInput*> Channels = addChannels({"Diffuse", "Other"});
        OrvShaderInput* pChannel = Channels.first();
        const QList<QLabel*> Marks = rowWidget("Diffuse")->findChildren<QLabel*>();
        QCOMPARE(Marks.size(), 2);
        const auto depthMark = [&] { return Marks.first()->pixmap(Qt::ReturnByValue); };
        const QImage Bytes = depthMark().toImage();
        QVERIFY(!Bytes.isNull() && !Marks.last()->pixmap(Qt::ReturnByValue).isNull());
        QVERIFY(pChannel->convertDepthTo(GL_FLOAT, OrvShaderInput::FreeImages));
        QVERIFY(!depthMark().isNull() && depthMark().toImage() != Bytes);
        pChannel->channelNode()->setDepth(0x1403);
        QVERIFY(depthMark().isNull());

        // Who shares the channel is seen at once, also when it is undone.
        const QToolButton* pShared = button("Diffuse", "Show the layers that share the channel");
        QVERIFY(!pShared->isVisible());
        OrvUndoManager::instance().clear();
        QVERIFY(share(pChannel, Channels.last()));
        QTRY_VERIFY(pShared->isVisible());
        OrvUndoManager::instance().undo();
        QTRY_VERIFY(!pShared->isVisible());
        OrvUndoManager::instance().redo();
        QTRY_VERIFY(pShared->isVisible());
    }

    void sharersAreListedAndGoneTo()
    {
        const QList<OrvShaderInput*> Channels = addChannels({"Dirt", "Diffuse"});
        OrvLayer* pSharer = share(Channels.first(), Channels.last());
        channels().makeShaderInputCurrent(Channels.first(), true);
        m_View->refresh();
        QApplication::processEvents();
        QTest::mouseClick(button("Dirt", "Show the layers that share the channel"), Qt::LeftButton);
        QWidget* pPopup = QApplication::activePopupWidget();
        QVERIFY(pPopup);
        auto* pList = pPopup->findChild<QListWidget*>();
        QCOMPARE(pList->count(), 2);
        QCOMPARE(pList->item(0)->text(), QStringLiteral("Shared By :"));
        QCOMPARE(pList->item(1)->text(), pSharer->path(true));
        QTest::mouseClick(pList->viewport(), Qt::LeftButton, Qt::NoModifier,
            pList->visualItemRect(pList->item(1)).center());
        QCOMPARE(OrvLayerManager::instance().currentLayer(LayersFixture::network()), pSharer);
        QCOMPARE(channels().currentShaderInput(), Channels.last());
    }

    void lockAroundASharedChannelIsAskedFor_data()
    {
        QTest::addColumn<QString>("Button");
        QTest::addColumn<bool>("Unlocked");
        QTest::newRow("yes") << "Yes" << true;
        QTest::newRow("no") << "No" << false;
        QTest::newRow("cancel") << "Cancel" << false;
    }
    void lockAroundASharedChannelIsAskedFor()
    {
        QFETCH(QString, Button);
        QFETCH(bool, Unlocked);
        OrvShaderInput* pDirt = addChannel("Dirt");
        OrvLayer* pSharer = share(pDirt, addChannel("Diffuse"));
        pDirt->setLocked(true);
        pSharer->setLocked(true);
        pSharer->blendNode()->setCacheActive(OrvSnCacheActive);
        m_View->refresh();
        QApplication::processEvents();
        OrvUndoManager::instance().clear();
        const QStringList Questions
            = answering(Button, [this] { QTest::mouseClick(lockButton("Dirt"), Qt::LeftButton); });
        QCOMPARE(Questions,
            QStringList("This channel is locked because this is shared into a layer whose ancestors are locked and/or "
                        "cached. Unlocking this channel will remove the lock and/or cache. Would you like to unlock "
                        "this channel"));
        QCOMPARE(!pDirt->isLocked(), Unlocked);
        QCOMPARE(!pSharer->isLocked(), Unlocked);
        QCOMPARE(pDirt->isModifiable(), Unlocked);
        QCOMPARE(lockButton("Dirt")->isChecked(), !Unlocked);
        QCOMPARE(OrvUndoManager::instance().stack()->count(), Unlocked ? 1 : 0);
        if (!Unlocked)
            return;
        OrvUndoManager::instance().undo();
        QVERIFY(pDirt->isLocked() && pSharer->isLocked());
        QCOMPARE(pSharer->blendNode()->cacheActive(), OrvSnCacheActive);
    }

    void anEmptyStackIsShownInTheGraph()
    {
        OrvShaderInput* pChannel = addChannels({"Diffuse"}).first();
        QToolButton* pButton = button("Diffuse", "Show the channel in the node graph");
        const auto shows = [pButton](const char* pFile) {
            return pButton->icon().pixmap(16).toImage()
                == OrvIcon::createIconFromFilename(QLatin1String(pFile)).pixmap(16).toImage();
        };
        QSignalSpy Focused(
            &OrvShaderNetworkManager::instance(), &OrvShaderNetworkManager::nodeFocusRequested);
        QVERIFY(shows("NodeGraph.16x16.png"));
        QTest::mouseClick(pButton, Qt::LeftButton);
        QCOMPARE(Focused.size(), 1);
        QCOMPARE(Focused.first().first().value<OrvSnBaseNode*>(), pChannel->node());

        LayersFixture::addLayer(pChannel, "Dirt");
        QTRY_VERIFY(shows("Channel.16x16.png"));
        QCOMPARE(button("Diffuse", "Open the channel's layer stack"), pButton);
        const auto stackViews = [pChannel] {
            int Count = 0;
            for (const QWidget* pWidget : QApplication::allWidgets()) {
                const auto* pView = qobject_cast<const OrvLayerView*>(pWidget);
                Count += pView && pView->layerStack() == pChannel;
            }
            return Count;
        };
        const int Before = stackViews();
        QTest::mouseClick(pButton, Qt::LeftButton);
        QCOMPARE(Focused.size(), 1);
        QCOMPARE(stackViews(), Before + 1);
        OrvUndoManager::instance().undo();
        QTRY_VERIFY(shows("NodeGraph.16x16.png"));
    }

    void restingDragSwitchesTheChannel()
    {
        OrvShaderInput* pB = addChannels({"A", "B"}).last();
        clickRow("A");
        QApplication::processEvents();
        OrvShaderInputViewItemRowWidget* pRow = rowWidget("B");
        const QPoint OnName = pRow->mapTo(m_Tree->viewport(), QPoint(8, pRow->height() / 2));
        const QPoint OnHotSpot = pRow->mapTo(m_Tree->viewport(), pRow->dragTargetGeometry().center());

        // Who goes on before the time is up chooses nothing.
        OrvShaderInput* pA = channels().currentShaderInput();
        dragTo(OnName);
        QTest::qWait(200);
        QCursor::setPos(m_Tree->viewport()->mapToGlobal(m_Tree->viewport()->rect().bottomLeft()));
        QTest::qWait(400);
        QCOMPARE(channels().currentShaderInput(), pA);
        dragTo(OnName);
        QTest::qWait(200);
        QVERIFY(channels().currentShaderInput() != pB);
        QTRY_COMPARE_WITH_TIMEOUT(channels().currentShaderInput(), pB, 1000);
        clickRow("A");
        dragTo(OnHotSpot);
        QTRY_COMPARE_WITH_TIMEOUT(channels().currentShaderInput(), pB, 150);

        // Nor does who drops before the time is up.
        channels().makeShaderInputCurrent(pA, true);
        const std::unique_ptr<QMimeData> pDropped = dragTo(OnName);
        QDropEvent Drop(OnName, Qt::CopyAction, pDropped.get(), Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_Tree->viewport(), &Drop);
        QTest::qWait(600);
        QCOMPARE(channels().currentShaderInput(), pA);
    }

    void dragShowsTheRow()
    {
        addChannels({"A"});
        QStyleOptionViewItem Option;
        Option.rect = QRect(QPoint(), rowWidget("A")->size());
        QPixmap Picture(Option.rect.size());
        QPainter Painter(&Picture);
        m_Tree->itemDelegate()->paint(&Painter, Option, m_View->model()->index(0, 0));
        Painter.end();
        const QImage Name = Picture.toImage().copy(rowWidget("A")->findChild<OrvEditLabel*>()->geometry());
        QImage Blank = Name;
        Blank.fill(Name.pixelColor(Name.rect().bottomRight()));
        QVERIFY(Name != Blank);
    }

    void toolBarStartsWithAddChannelOnce()
    {
        QAction* pAdd = OrvActionTreeManager::instance().findAction(QStringLiteral("/Orvi/Channels/Add Channel"));
        QVERIFY(pAdd);
        QCOMPARE(m_View->findChild<QToolBar*>()->actions().count(pAdd), 1);
        QVERIFY(pAdd->isEnabled());
        OrvProjectManager::instance().closeProject();
        QVERIFY(!pAdd->isEnabled());
    }

    void rowsAreNotClipped()
    {
        addChannels({"Bump", "Specular Roughness of the clear coat", QString(200, 'W')});
        // Once they were seen, rows tell how large they would like to be.
        for (int Time = 0; Time < 2; ++Time) {
            m_View->refresh();
            QApplication::processEvents();
        }
        for (const QString& Name : rows()) {
            const OrvShaderInputViewItemRowWidget* pRow = rowWidget(Name);
            QCOMPARE(pRow->height(), int(OrvShaderInputViewItemRowWidget::RowHeight));
            QVERIFY(pRow->geometry().right() < m_Tree->viewport()->width());
            for (const QWidget* pChild : pRow->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
                QVERIFY(pRow->rect().contains(pChild->geometry()));
        }
    }

private:
    static OrvShaderInputManager& channels() { return OrvShaderInputManager::instance(); }
    OrvQuickChannelStrip* strip() const { return m_View->findChild<OrvQuickChannelStrip*>(); }
    QList<OrvColorSwatch*> swatches() const { return m_View->findChildren<OrvColorSwatch*>(); }
    const OrvPropertyView* shownProperties() const
    {
        const OrvPropertyView* pShown = nullptr;
        for (const OrvPropertyView* pView : m_View->findChildren<OrvPropertyView*>()) {
            if (pView->isVisible())
                pShown = pView;
        }
        return pShown;
    }
    /// Whose properties are shown.
    const QObject* propertyNode() const { return shownProperties() ? shownProperties()->object() : nullptr; }
    static OrvLayerStack* mainStack()
    {
        return OrvLayerViewContextManager::instance().mainLayerView()->layerStack();
    }
    static OrvShaderInput* addChannel(const QString& Name)
    {
        return OrvShaderInputUtils::create(LayersFixture::network(), Name, QSize(256, 256), GL_UNSIGNED_BYTE);
    }

    /// With rows that are there at once.
    QList<OrvShaderInput*> addChannels(const QStringList& Names) const
    {
        QList<OrvShaderInput*> Channels;
        for (const QString& Name : Names)
            Channels.append(addChannel(Name));
        m_View->refresh();
        QApplication::processEvents();
        return Channels;
    }
    /// A layer of the other channel that shows the channel.
    static OrvLayer* share(const OrvShaderInput* pChannel, const OrvShaderInput* pOther)
    {
        return OrvLayerManager::instance().getLayer(
            OrvLayerStreamUtils::createLayerNodeAfter(
                pOther->topNode(), pChannel->node(), QStringLiteral("Shows"), QString(), true),
            true);
    }
    /// Returns what the user is told about it.
    QStringList drop(const QList<OrvSnBaseNode*>& Nodes, Qt::Key Key = Qt::Key_unknown,
        Qt::KeyboardModifier Modifier = Qt::NoModifier) const
    {
        QStringList Uuids;
        for (const OrvSnBaseNode* pNode : Nodes)
            Uuids.append(pNode->uuidString());
        QMimeData Mime;
        OrvLayerDragPayload::write(Mime, Uuids);
        if (Modifier)
            QTest::keyPress(m_Tree, Key, Modifier);
        const QStringList Told = answering("OK", [&] {
            // A drop that moves would take away what was dragged.
            QVERIFY(!m_View->model()->dropMimeData(&Mime, Qt::LinkAction, -1, -1, {}));
        });
        if (Modifier)
            QTest::keyRelease(m_Tree, Key);
        return Told;
    }
    QToolButton* button(const QString& Row, const QString& ToolTip) const
    {
        for (QToolButton* pButton : rowWidget(Row)->findChildren<QToolButton*>()) {
            if (pButton->toolTip() == ToolTip)
                return pButton;
        }
        return nullptr;
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
    /// Returns what is dragged.
    std::unique_ptr<QMimeData> dragTo(const QPoint& Position) const
    {
        QCursor::setPos(m_Tree->viewport()->mapToGlobal(Position));
        std::unique_ptr<QMimeData> pMime(m_View->model()->mimeData({m_View->model()->index(0, 0)}));
        QDragEnterEvent Enter(Position, Qt::CopyAction, pMime.get(), Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_Tree->viewport(), &Enter);
        QDragMoveEvent Move(Position, Qt::CopyAction, pMime.get(), Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_Tree->viewport(), &Move);
        return pMime;
    }

    SettingsDirectory m_Directory;
    OrvShaderInputView* m_View = nullptr;
    OrvShaderInputTreeView* m_Tree = nullptr;
};

QTEST_MAIN(TstChannelsPalette)
#include "TstChannelsPalette.moc"
