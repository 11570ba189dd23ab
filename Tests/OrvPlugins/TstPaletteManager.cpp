#include "LayersFixture.h"
#include "SettingsDirectory.h"
#include "StackPalettes.h"
#include "Tests/Support/OrvDebugReports.h"

#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCore/Network/OrvSnPassNode.h"
#include "OrvCore/Object/OrvSettings.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Project/OrvProject.h"
#include "OrvCoreModules/Menus/OrvMenuManager.h"
#include "OrvCoreModules/Window/OrvPaletteManager.h"
#include "OrvDdi/Files/OrvDataBlockManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerToolBar.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerTreeView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerActions.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputActions.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvSharerListPopup.h"

#include <QtGui/QScreen>
#include <QtTest/QtTest>
#include <QtWidgets/QAction>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QUndoStack>
#include <QtWidgets/QVBoxLayout>

using namespace LayersFixture;
using namespace StackPalettes;

/// The palettes of single layer stacks: opened, titled, retired and kept with their project.
class TstPaletteManager : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_Directory.isValid());
        OrvDataBlockManager::instance().setCacheRoots({m_Directory.filePath(QStringLiteral("cache"))});
        OrvShaderInputActions::instance();
        OrvLayerActions::instance();
        OrvLayerViewContextManager::instance();
        OrvMainWindow::instance().resize(1000, 700);
        OrvMainWindow::instance().show();
    }

    void init()
    {
        OrvProjectManager::instance().newProject(QStringLiteral("Test"), QStringLiteral("Robot"));
        m_Channel = addChannel(QStringLiteral("Diffuse"));
        m_Layer = addLayer(m_Channel, QStringLiteral("Dirt"));
        m_Reports.Texts.clear();
    }

    void cleanup()
    {
        OrvProjectManager::instance().closeProject();
        passEventLoop();
        QVERIFY(stackPalettes().isEmpty());
    }

    void toolBarHoldsWhatWasPublishedBefore()
    {
        OrvMenuManager& Menus = OrvMenuManager::instance();
        QAction Published(QStringLiteral("Published"));
        Menus.registerAction(QStringLiteral("Layers"), QStringLiteral("Panel"), QString(), &Published);
        manager().openLayerStackPalette(m_Channel, true);
        const auto* pToolBar = layerViewOf(stackPalettes().first())->findChild<OrvLayerToolBar*>();
        const bool Held = pToolBar->actions().contains(&Published);
        Menus.unregisterAction(QStringLiteral("Layers"), QStringLiteral("Panel"), QString(), &Published);
        QVERIFY(Held && !pToolBar->actions().contains(&Published));
    }

    void stackOpensBesideThePaletteThatWasClicked()
    {
        OrvPalette* pLayers = layersPalette();
        pLayers->setFloating(true);
        pLayers->open();
        pLayers->setGeometry(0, 0, 300, 600);
        QVERIFY(QTest::qWaitForWindowExposed(pLayers));
        QCursor::setPos(pLayers->mapToGlobal(QPoint(150, 150)));
        manager().openLayerStackPalette(maskStack(), false);
        passEventLoop();
        const QRect Opened = stackPalettes().first()->geometry();
        const QRect Clicked = pLayers->geometry();
        pLayers->setFloating(false);
        QVERIFY(!Opened.intersects(Clicked));
        QVERIFY(QGuiApplication::primaryScreen()->availableGeometry().contains(Opened));
    }

    void oneStackHasOnePalette()
    {
        manager().openLayerStackPalette(m_Channel, true);
        QCOMPARE(stackPalettes().size(), 1);
        OrvPalette* pPalette = stackPalettes().first();
        QVERIFY(pPalette->isVisible() && pPalette->isFloating() && pPalette->isPinnable());
        QVERIFY(!pPalette->isPinned());
        QCOMPARE(layerViewOf(pPalette)->layerStack(), m_Channel);
        // Rows and tool bar have room at once.
        QVERIFY(pPalette->width() >= 360 && pPalette->height() >= 480);

        manager().openLayerStackPalette(m_Channel, false);
        QCOMPARE(stackPalettes().size(), 1);
        QVERIFY(pPalette->isPinned());

        pPalette->close();
        manager().openLayerStackPalette(m_Channel, false);
        QCOMPARE(stackPalettes(), QList<OrvPalette*>{pPalette});
        QVERIFY(pPalette->isVisible());

        manager().openLayerStackPalette(nullptr, true);
        QVERIFY(m_Reports.Texts.contains(QStringLiteral("pLayerStack is NULL")));
    }

    void withoutProjectNothingIsKeptOrOpened()
    {
        QCOMPARE(manager().projectSettingsFileName(),
            OrvDataBlockManager::cacheRoots().first() + QLatin1Char('/') + OrvDataBlockManager::subCache()
                + QStringLiteral("/LayerStackPalettes.conf"));
        OrvProjectManager::instance().closeProject();
        OrvShaderNetwork Loose(static_cast<OrvGeoEntity*>(nullptr));
        OrvShaderInput* pChannel
            = OrvShaderInputUtils::create(&Loose, QStringLiteral("Loose"), QSize(64, 64), GL_UNSIGNED_BYTE);
        QVERIFY(pChannel);
        manager().openLayerStackPalette(pChannel, true);
        manager().loadProjectSettings();
        QVERIFY(stackPalettes().isEmpty());
        OrvUndoManager::instance().clear();
    }

    void titlesFollowNames()
    {
        manager().openLayerStackPalette(m_Channel, false);
        manager().openLayerStackPalette(maskStack(), false);
        manager().openLayerStackPalette(adjustmentStack(), false);
        QCOMPARE(titles(),
            QSet<QString>({QStringLiteral("Robot/Diffuse"),
                QStringLiteral("Robot/%1/Mask Stack").arg(maskStack()->name()),
                QStringLiteral("Robot/%1/Adjustment Stack").arg(adjustmentStack()->name())}));

        m_Channel->node()->setName(QStringLiteral("Albedo"));
        m_Layer->setName(QStringLiteral("Rust"));
        entity()->setName(QStringLiteral("Droid"));
        QCOMPARE(titles(),
            QSet<QString>({QStringLiteral("Droid/Albedo"),
                QStringLiteral("Droid/%1/Mask Stack").arg(maskStack()->name()),
                QStringLiteral("Droid/%1/Adjustment Stack").arg(adjustmentStack()->name())}));
        QVERIFY(maskStack()->name().contains(QStringLiteral("Rust")));
        // Layers of one name are told apart by where they are.
        QSet<QString> Places;
        for (const OrvPalette* pPalette : stackPalettes())
            Places.insert(pPalette->headerToolTip());
        QCOMPARE(Places,
            QSet<QString>({QStringLiteral("Droid/Albedo"), QStringLiteral("Droid/Albedo/Rust/Mask Stack"),
                QStringLiteral("Droid/Albedo/Rust/Adjustment Stack")}));

        manager().mainLayerView()->setLayerStack(m_Channel);
        QCOMPARE(layersPalette()->windowTitle(), QStringLiteral("Layers - Albedo"));
        m_Channel->node()->setName(QStringLiteral("Diffuse"));
        QCOMPARE(layersPalette()->windowTitle(), QStringLiteral("Layers - Diffuse"));
        manager().mainLayerView()->setLayerStack(nullptr);
        QCOMPARE(layersPalette()->windowTitle(), QStringLiteral("Layers"));
    }

    void sizeIsKeptWithTheStack()
    {
        const int UndoCount = undoIndex();
        manager().openLayerStackPalette(m_Channel, false);
        OrvPalette* pPalette = stackPalettes().first();
        pPalette->resize(321, 456);
        passEventLoop();
        const OrvCustomAttribute Size = m_Channel->topNode()->userAttribute(QStringLiteral("_PaletteSize"));
        QCOMPARE(Size.value().toSize(), pPalette->size());
        QVERIFY(!Size.isVersionable());
        QCOMPARE(undoIndex(), UndoCount);

        pPalette->close();
        m_Channel->topNode()->setUserAttributeValue(QStringLiteral("_PaletteSize"), QSize(345, 432));
        manager().openLayerStackPalette(m_Channel, false);
        QCOMPARE(pPalette->size(), QSize(345, 432));
    }

    void maskPaletteGoesWhenThePlainMaskReturns()
    {
        OrvLayerStack* pMaskStack = maskStack();
        manager().openLayerStackPalette(pMaskStack, false);
        reconnect(OrvSnNames::Mask, pMaskStack->topNode());
        QCOMPARE(stackPalettes().size(), 1);
        m_Layer->blendNode()->connectInput(OrvSnNames::Mask, m_Layer->contentNode());
        QVERIFY(qobject_cast<OrvSnChannelInputNode*>(m_Layer->maskNode()));
        QTRY_VERIFY(stackPalettes().isEmpty());
    }

    void adjustmentPaletteGoesWithItsStack()
    {
        OrvLayerStack* pAdjustmentStack = adjustmentStack();
        manager().openLayerStackPalette(pAdjustmentStack, false);
        reconnect(OrvSnNames::Over, pAdjustmentStack->topNode());
        QCOMPARE(stackPalettes().size(), 1);
        OrvSnPassNode* pPlain = network()->addNode(std::make_unique<OrvSnPassNode>());
        m_Layer->blendNode()->connectInput(OrvSnNames::Over, pPlain);
        QTRY_VERIFY(stackPalettes().isEmpty());
    }

    void groupPaletteStaysWhileItsTopChanges()
    {
        addLayers(m_Channel, {"A", "B"});
        OrvLayer* pGroup = group(m_Channel, m_Channel->layerList().mid(0, 2), QStringLiteral("G"));
        OrvLayerStack* pInside = OrvLayerStreamUtils::groupStack(pGroup);
        manager().openLayerStackPalette(pInside, false);
        layerViewOf(stackPalettes().first())->addNewLayer();
        passEventLoop();
        OrvUndoManager::instance().undo();
        pInside->deleteLayers(pInside->layerList());
        passEventLoop();
        QCOMPARE(stackPalettes().size(), 1);
        OrvUndoManager::instance().undo();
        QVERIFY(OrvLayerStreamUtils::flattenLayer(pGroup, m_Channel));
        QTRY_VERIFY(stackPalettes().isEmpty());

        // What a group shows again without its adjustments is not what their palette showed.
        OrvUndoManager::instance().undo();
        pGroup->addLayerAdjustmentLayerFromKey(anyKey("Filter/"));
        manager().openLayerStackPalette(pGroup->adjustmentStack(), false);
        QCOMPARE(stackPalettes().size(), 1);
        pGroup->removeLayerAdjustment();
        QTRY_VERIFY(stackPalettes().isEmpty());
    }

    void palettesOfRemovedNodesGoTogether()
    {
        manager().openLayerStackPalette(maskStack(), false);
        manager().openLayerStackPalette(adjustmentStack(), false);
        manager().openLayerStackPalette(m_Channel, false);
        OrvPalette* pOfChannel = stackPalettes().last();
        QCOMPARE(layerViewOf(pOfChannel)->layerStack(), m_Channel);

        m_Channel->deleteLayers({m_Layer});
        // Nothing is destroyed within the host's signals.
        QCOMPARE(stackPalettes().size(), 3);
        QTRY_COMPARE(stackPalettes(), QList<OrvPalette*>{pOfChannel});

        OrvShaderInputManager::instance().destroy(m_Channel, OrvShaderInputManager::SharersAreDeleted);
        QTRY_VERIFY(stackPalettes().isEmpty());
        OrvUndoManager::instance().undo();
        OrvUndoManager::instance().undo();
        manager().openLayerStackPalette(maskStack(), false);
        QCOMPARE(stackPalettes().size(), 1);
    }

    void projectKeepsItsPalettes()
    {
        manager().openLayerStackPalette(maskStack(), false);
        manager().openLayerStackPalette(m_Channel, false);
        paletteOf(m_Channel)->close();
        save();
        {
            OrvSettings Settings(manager().projectSettingsFileName(), QSettings::IniFormat);
            QCOMPARE(Settings.value(QStringLiteral("Palettes/Number")).toInt(), 1);
            QCOMPARE(Settings.value(QStringLiteral("Palettes/Name0")).toString(),
                m_Layer->blendNode()->uuidString() + QStringLiteral(":Mask"));
            QVERIFY(Settings.contains(QStringLiteral("Palettes/State")));
        }
        reopen();
        QCOMPARE(stackPalettes().size(), 1);
        OrvPalette* pRestored = stackPalettes().first();
        QCOMPARE(layerViewOf(pRestored)->layerStack(), m_Layer->maskStack());
        QVERIFY(!pRestored->isPinnable());
        manager().openLayerStackPalette(m_Layer->maskStack(), true);
        QCOMPARE(stackPalettes(), QList<OrvPalette*>{pRestored});
        QVERIFY(pRestored->isPinnable());
    }

    void savingWithoutPalettesForgetsThem()
    {
        manager().openLayerStackPalette(m_Channel, false);
        save();
        stackPalettes().first()->close();
        save();
        {
            OrvSettings Settings(manager().projectSettingsFileName(), QSettings::IniFormat);
            QCOMPARE(Settings.value(QStringLiteral("Palettes/Number")), QVariant(QStringLiteral("0")));
            QVERIFY(!Settings.contains(QStringLiteral("Palettes/State")));
        }
        manager().closeLayerViewPalettes();
        save();
        OrvSettings Settings(manager().projectSettingsFileName(), QSettings::IniFormat);
        QVERIFY(Settings.allKeys().isEmpty());
        QVERIFY(OrvProjectManager::instance().filesExcludedFromArchive().contains(
            QStringLiteral("LayerStackPalettes.conf")));
    }

    void damagedFilesOpenWhatTheyCan_data()
    {
        QTest::addColumn<QByteArray>("Contents");
        QTest::addColumn<int>("Opened");
        QTest::newRow("empty") << QByteArray() << 0;
        QTest::newRow("no INI") << QByteArray("\x00\xff\x7f{}[[", 7) << 0;
        QTest::newRow("negative") << QByteArray("[Palettes]\nNumber=-3\nName0=%mask\n") << 0;
        QTest::newRow("no number") << QByteArray("[Palettes]\nNumber=many\nName0=%mask\n") << 0;
        QTest::newRow("more than there are")
            << QByteArray("[Palettes]\nNumber=2000000000\nName0=%mask\n") << 1;
        QTest::newRow("twice the same")
            << QByteArray("[Palettes]\nNumber=2\nName0=%mask\nName1=%mask\n") << 1;
        QTest::newRow("odd names are skipped")
            << QByteArray("[Palettes]\nNumber=4\nName0=a:b:c\nName1=gone:Mask\nName2=\nName3=%mask\n") << 1;
        QTest::newRow("a missing stack ends it")
            << QByteArray("[Palettes]\nNumber=2\nName0=%blend:Nowhere\nName1=%mask\n") << 0;
        QTest::newRow("what came before stays")
            << QByteArray("[Palettes]\nNumber=2\nName0=%mask\nName1=%blend:Nowhere\n") << 1;
    }
    void damagedFilesOpenWhatTheyCan()
    {
        QFETCH(QByteArray, Contents);
        QFETCH(int, Opened);
        maskStack();
        save();
        const QByteArray Blend = m_Layer->blendNode()->uuidString().toLatin1();
        Contents.replace("%mask", Blend + ":Mask").replace("%blend", Blend);
        QFile File(manager().projectSettingsFileName());
        QVERIFY(File.open(QIODevice::WriteOnly));
        File.write(Contents);
        File.close();
        reopen();
        QCOMPARE(stackPalettes().size(), Opened);
        QCOMPARE(m_Reports.Texts.contains(QStringLiteral("LayerStack is NULL")), Contents.contains("Nowhere"));
    }

    void sharersAreShownWhereTheyStand()
    {
        QWidget Popup;
        QListWidget* pList = new QListWidget(&Popup);
        (new QVBoxLayout(&Popup))->addWidget(pList);
        connect(pList, SIGNAL(itemClicked(QListWidgetItem*)), &manager(),
            SLOT(makeSharerInfoItemCurrent(QListWidgetItem*)));
        const auto choose = [&](OrvSnBaseNode* pNode) {
            Popup.show();
            QListWidgetItem Item;
            Item.setData(Qt::UserRole, QVariant::fromValue<QObject*>(pNode));
            Q_EMIT pList->itemClicked(&Item);
        };
        OrvShaderInput* pOther = addChannel(QStringLiteral("Bump"));
        OrvShaderInputManager::instance().makeShaderInputCurrent(m_Channel, true);

        choose(m_Layer->blendNode());
        QVERIFY(stackPalettes().isEmpty());
        QVERIFY(m_Layer->isCurrent());
        QVERIFY(!Popup.isVisible());

        choose(pOther->node());
        QCOMPARE(OrvShaderInputManager::instance().currentShaderInput(), pOther);
        choose(m_Layer->blendNode());
        QCOMPARE(stackPalettes().size(), 1);
        QCOMPARE(layerViewOf(stackPalettes().first())->layerStack(), m_Channel);

        choose(m_Layer->contentNode());
        QVERIFY(!Popup.isVisible());
        QVERIFY(m_Reports.Texts.last().startsWith(
            QStringLiteral("The given node that shares a layer is not identified")));
        choose(nullptr);
        QVERIFY(Popup.isVisible());
        QCOMPARE(m_Reports.Texts.last(), QStringLiteral("Node is NULL"));
        manager().makeSharerInfoItemCurrent(nullptr);
        QCOMPARE(m_Reports.Texts.last(), QStringLiteral("Item is NULL"));
    }

    void sharersThatAreGoneLeadNowhere()
    {
        QWidget Parent;
        auto* pPopup = new OrvSharerListPopup(&Parent);
        pPopup->addSharer(m_Channel->path(), m_Channel->node());
        auto* pList = pPopup->findChild<QListWidget*>();
        QCOMPARE(pList->item(0)->data(Qt::UserRole).value<QObject*>(), m_Channel->node());
        pPopup->popup();
        OrvProjectManager::instance().closeProject();
        passEventLoop();
        QCOMPARE(pList->item(0)->data(Qt::UserRole).value<QObject*>(), nullptr);
        Q_EMIT pList->itemClicked(pList->item(0));
        QCOMPARE(m_Reports.Texts.last(), QStringLiteral("Node is NULL"));
    }

    void commandsGoToTheActiveView()
    {
        QCOMPARE(manager().layerView(), manager().mainLayerView());
        manager().openLayerStackPalette(m_Channel, false);
        OrvLayerView* pView = layerViewOf(stackPalettes().first());
        OrvLayerManager::instance().setCurrentLayerStack(nullptr);
        QTest::mouseClick(pView->treeView()->viewport(), Qt::LeftButton);
        QCOMPARE(manager().layerView(), pView);
        QCOMPARE(OrvLayerManager::instance().currentLayerStack(), m_Channel);
        // Choosing a channel brings the work back to the main palette.
        OrvShaderInputManager::instance().makeShaderInputCurrent(m_Channel->network(), nullptr, true);
        QCOMPARE(manager().layerView(), manager().mainLayerView());
        QTest::mouseClick(pView->treeView()->viewport(), Qt::LeftButton);
        QCOMPARE(manager().layerView(), pView);
        OrvProjectManager::instance().closeProject();
        QTRY_COMPARE(manager().layerView(), manager().mainLayerView());
    }

private:
    static OrvLayerViewContextManager& manager() { return OrvLayerViewContextManager::instance(); }
    static OrvGeoEntity* entity()
    {
        return OrvProjectManager::instance().currentProject()->currentGeoEntity();
    }
    static int undoIndex() { return OrvUndoManager::instance().stack()->index(); }
    static OrvPalette* layersPalette() { return OrvPaletteManager::find(QStringLiteral("Layers")); }
    static void passEventLoop()
    {
        QTest::qWait(20);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    OrvLayerStack* maskStack() const
    {
        m_Layer->addMaskImageSet();
        return m_Layer->hasMaskStack() ? m_Layer->maskStack() : m_Layer->convertMaskToMaskStack();
    }
    OrvLayerStack* adjustmentStack() const
    {
        if (!m_Layer->hasAdjustmentStack())
            m_Layer->addLayerAdjustmentLayerFromKey(anyKey("Filter/"));
        return m_Layer->adjustmentStack();
    }
    /// As an edit that frees the input on its way.
    void reconnect(const QString& InputName, OrvSnBaseNode* pNode) const
    {
        {
            OrvUndoManager::AutoMacro Macro(QStringLiteral("Reconnect"));
            m_Layer->blendNode()->disconnectInput(InputName);
            m_Layer->blendNode()->connectInput(InputName, pNode);
        }
        passEventLoop();
    }

    static QSet<QString> titles()
    {
        QSet<QString> Titles;
        for (const OrvPalette* pPalette : stackPalettes())
            Titles.insert(pPalette->headerTitle());
        return Titles;
    }

    void save() const
    {
        QString Error;
        QVERIFY2(OrvProjectManager::instance().saveProjectAs(
                     m_Directory.filePath(QStringLiteral("Test.orvi")), Error),
            qPrintable(Error));
    }
    void reopen()
    {
        OrvProjectManager::instance().closeProject();
        passEventLoop();
        QString Error;
        QVERIFY2(OrvProjectManager::instance().openProject(
                     m_Directory.filePath(QStringLiteral("Test.orvi")), Error),
            qPrintable(Error));
        m_Channel = OrvShaderInputManager::instance().getShaderInputsFromNetwork(network()).first();
        m_Layer = m_Channel->layerList().first();
    }

    SettingsDirectory m_Directory;
    OrvShaderInput* m_Channel = nullptr;
    OrvLayer* m_Layer = nullptr;
    OrvDebugReports m_Reports;
};

QTEST_MAIN(TstPaletteManager)
#include "TstPaletteManager.moc"
