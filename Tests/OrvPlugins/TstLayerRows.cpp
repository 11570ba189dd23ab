#include "LayerDrags.h"
#include "LayersFixture.h"
#include "LayersPaletteFixture.h"
#include "SettingsDirectory.h"

#include "Tests/Support/OrvDebugReports.h"

#include "OrvCore/Object/OrvSettings.h"
#include "OrvCoreModules/Widgets/OrvEditLabel.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerComponentPushButton.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragPayload.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDrop.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerPropertyDialog.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerStackPopupButton.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerTreeView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextConstants.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewItemRowWidget.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvSharerListPopup.h"

#include <QtCore/QMimeData>
#include <QtTest/QtTest>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QUndoStack>

#include <memory>

using namespace LayersFixture;
using namespace OrvLayerViewContext;

/// The rows of the Layers palette on a real document, driven by mouse and keys.
class TstLayerRows : public QObject {
    Q_OBJECT

    using Row = OrvLayerViewItemRowWidget;

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_Directory.isValid());
        // Icons are compared below.
        OrvSettings().setValue(QStringLiteral("LayerView/Thumbnails"), false);
        m_View = showLayersPalette(QSize(1000, 800));
        QVERIFY(m_View);
    }

    void init()
    {
        OrvProjectManager::instance().newProject(QStringLiteral("Test"));
        m_Channel = addChannel(QStringLiteral("Diffuse"));
        m_View->setLayerStack(m_Channel);
        m_Reports.Texts.clear();
    }

    void cleanup()
    {
        OrvProjectManager::instance().closeProject();
        m_View->refresh();
        QTest::qWait(10);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void rowsInViewAloneHaveContents()
    {
        for (int i = 0; i < 200; ++i)
            addLayer(m_Channel, QStringLiteral("Layer %1").arg(i));
        refresh();
        const auto rowAt = [this](int Index) { return m_View->rowWidget(m_View->model()->index(Index, 0)); };
        QVERIFY(rowAt(0)->findChild<OrvEditLabel*>());
        QVERIFY(rowAt(199)->children().isEmpty());
        m_View->treeView()->scrollToBottom();
        QTRY_VERIFY(rowAt(199)->findChild<OrvEditLabel*>());
        QCOMPARE(rowAt(199)->findChild<OrvEditLabel*>()->text(), QStringLiteral("Layer 0"));
    }

    void makingRowsIsCheap()
    {
        constexpr int Count = 10000;
        OrvLayer* pLayer = addLayer(m_Channel, QStringLiteral("Dirt"));
        std::vector<std::unique_ptr<Row>> Rows;
        Rows.reserve(Count);
        QElapsedTimer Timer;
        Timer.start();
        for (int i = 0; i < Count; ++i)
            Rows.push_back(std::make_unique<Row>(pLayer, m_View));
        const qint64 Elapsed = Timer.nsecsElapsed();
        qInfo("%d rows: %.1f ms", Count, double(Elapsed) / 1e6);
        QVERIFY(Elapsed < 180 * 1000 * 1000);
        // From behind, as a list of children forgets.
        while (!Rows.empty())
            Rows.pop_back();
    }

    void contentsArePaintedAtOnce()
    {
        OrvLayer* pLayer = addLayer(m_Channel, QStringLiteral("Dirt"));
        pLayer->addMaskImageSet();
        Row Fresh(pLayer, m_View);
        Fresh.resize(300, Row::RowHeight);
        const QImage First = Fresh.grab().toImage();
        QCOMPARE(Fresh.grab().toImage(), First);
        for (const QWidget* pChild : visibleChildren(&Fresh))
            QVERIFY(Fresh.rect().contains(pChild->geometry()));
    }

    void marksStandInColumns()
    {
        OrvLayer* pPlain = addLayer(m_Channel, QStringLiteral("Plain"));
        OrvLayer* pRich = addLayer(
            m_Channel, QStringLiteral("A name that is much longer than the palette is wide, really"));
        pRich->addMaskImageSet();
        addAdjustmentStack(pRich);
        OrvLayer* pStacked = addLayer(m_Channel, QStringLiteral("Stacked"));
        pStacked->addMaskImageSet();
        pStacked->convertMaskToMaskStack();
        refresh();
        QCOMPARE(lockButton(pPlain)->x(), lockButton(pRich)->x());
        QCOMPARE(lockButton(pPlain)->x(), lockButton(pStacked)->x());
        QCOMPARE(paintButton(pPlain)->x(), paintButton(pRich)->x());
        QCOMPARE(maskStackButton(pStacked)->x(), maskButton(pRich)->x());
        QVERIFY(maskButton(pRich)->isVisible() && !maskStackButton(pRich)->isVisible());
        QVERIFY(!maskButton(pStacked)->isVisible() && maskStackButton(pStacked)->isVisible());
        QVERIFY(!maskButton(pPlain)->isVisible() && !maskStackButton(pPlain)->isVisible());
        QVERIFY(adjustmentButton(pRich)->isVisible() && !adjustmentButton(pPlain)->isVisible());
        QCOMPARE(nameLabel(pPlain)->width(), nameLabel(pRich)->width());
        // In a narrow tree names get the room of marks that are not there.
        QWidget Tree;
        Tree.resize(240, Row::RowHeight);
        const auto nameWidth = [&](OrvLayer* pLayer) {
            Row Narrow(pLayer, m_View);
            Narrow.setParent(&Tree);
            Narrow.resize(Tree.size());
            Narrow.show();
            Tree.grab();
            return Narrow.findChild<OrvEditLabel*>()->width();
        };
        QVERIFY(nameWidth(pPlain) > nameWidth(pRich) + 30);
    }

    void iconsTellTheKind()
    {
        OrvLayer* pPaint = addLayer(m_Channel, QStringLiteral("Paint"));
        OrvLayer* pAdjustment
            = m_Channel->createAdjustmentLayer(typeKey("^Filter/"), OrvLayerCreateFlags(30));
        OrvLayer* pProcedural
            = m_Channel->createProceduralLayer(typeKey("^Procedural/"), OrvLayerCreateFlags(30));
        OrvLayer* pGraph = m_Channel->createGraphLayer(OrvLayerCreateFlags(30));
        OrvLayer* pGroup = m_Channel->createGroupLayer(OrvLayerCreateFlags(30));
        refresh();
        const auto shows = [this](const OrvLayer* pLayer, LayerKindIcon Kind) {
            return paintButton(pLayer)->icon().cacheKey() == layerKindIcon(Kind).cacheKey();
        };
        QVERIFY(shows(pPaint, LayerKindIcon::Paintable));
        QVERIFY(shows(pAdjustment, LayerKindIcon::Adjustment));
        QVERIFY(shows(pProcedural, LayerKindIcon::Procedural));
        QVERIFY(shows(pGraph, LayerKindIcon::Graph));
        QVERIFY(shows(pGroup, LayerKindIcon::Group));
    }

    void nameIsEditedInTheRow()
    {
        OrvLayer* pLayer = addLayer(m_Channel, QStringLiteral("Dirt"));
        refresh();
        typeName(pLayer, QStringLiteral("  Rust "));
        QCOMPARE(pLayer->name(), QStringLiteral("Rust"));
        QCOMPARE(nameLabel(pLayer)->text(), QStringLiteral("Rust"));
        OrvUndoManager::instance().undo();
        QCOMPARE(nameLabel(pLayer)->text(), QStringLiteral("Dirt"));
        typeName(pLayer, QStringLiteral("   "));
        QCOMPARE(nameLabel(pLayer)->text(), QStringLiteral("Dirt"));
        pLayer->setLocked(true);
        row(pLayer)->editName();
        QVERIFY(!nameLabel(pLayer)->isEditing());
    }

    void filteredNameIsEditedPlain()
    {
        OrvLayer* pLayer = addLayer(m_Channel, QStringLiteral("Dirt"));
        Row Fresh(pLayer, m_View);
        Fresh.resize(300, Row::RowHeight);
        Fresh.showFilteredName(QStringLiteral("D<b>ir</b>t"), QStringLiteral("Dirt"));
        const QImage Filtered = Fresh.grab().toImage();
        Fresh.showPlainName();
        const QImage Plain = Fresh.grab().toImage();
        QVERIFY(Filtered != Plain);
        Fresh.showFilteredName(QStringLiteral("D<b>ir</b>t"), QStringLiteral("Dirt"));
        QCOMPARE(Fresh.grab().toImage(), Filtered);
        QCOMPARE(Fresh.findChild<OrvEditLabel*>()->text(), QStringLiteral("Dirt"));
    }

    void visibilityTogglesAndFollowsUndo()
    {
        OrvLayer* pLayer = addLayer(m_Channel, QStringLiteral("Dirt"));
        refresh();
        QToolButton* pEye = row(pLayer)->findChildren<QToolButton*>().first();
        const QString ToolTip = pEye->toolTip();
        QTest::mousePress(pEye, Qt::LeftButton);
        QVERIFY(!pLayer->isVisible());
        QTest::mouseRelease(pEye, Qt::LeftButton);
        QVERIFY(!pLayer->isVisible());
        QVERIFY(pEye->toolTip() != ToolTip);
        OrvUndoManager::instance().undo();
        QVERIFY(pLayer->isVisible());
        QCOMPARE(pEye->toolTip(), ToolTip);
    }

    void tagShowsItsColor()
    {
        OrvLayer* pLayer = addLayer(m_Channel, QStringLiteral("Dirt"));
        refresh();
        const QLabel* pTag = row(pLayer)->findChildren<QLabel*>().at(0);
        QCOMPARE(pTag->styleSheet(),
            QStringLiteral("QLabel { border-radius : 3px; background-color : rgba(0,0,0,0); }"));
        pLayer->setColor(QColor(10, 200, 30));
        QCOMPARE(pTag->styleSheet(),
            QStringLiteral("QLabel { border-radius : 3px; background-color : rgb(10,200,30); }"));
        OrvUndoManager::instance().undo();
        QVERIFY(pTag->styleSheet().contains(QStringLiteral("rgba(0,0,0,0)")));
    }

    void costIsBlueWhereACacheSavesIt()
    {
        OrvLayer* pLayer = addLayer(m_Channel, QStringLiteral("Dirt"));
        OrvLayer* pGroup = group(m_Channel, {pLayer}, QStringLiteral("Group"));
        refresh();
        const auto sheet
            = [this](const OrvLayer* pOf) { return row(pOf)->findChildren<QLabel*>().at(1)->styleSheet(); };
        const double Cost = qBound(0.0, pLayer->cost(), 1.0);
        QCOMPARE(sheet(pLayer),
            QStringLiteral("QLabel { background-color : rgb(%1,%2,0); }")
                .arg(int(Cost * 255))
                .arg(int((1 - Cost) * 255)));
        pLayer->blendNode()->setCacheActive(OrvSnCacheActive);
        QCOMPARE(sheet(pLayer), QStringLiteral("QLabel { background-color : rgb(0,0,255); }"));
        pGroup->blendNode()->setCacheActive(OrvSnCacheActive);
        QCOMPARE(sheet(pGroup), QStringLiteral("QLabel { background-color : rgb(0,0,255); }"));
        QCOMPARE(sheet(pLayer), QStringLiteral("QLabel { background-color : rgb(63,127,255); }"));
    }

    void lockAsksNothingForTheLayerAlone()
    {
        OrvLayer* pLayer = addLayer(m_Channel, QStringLiteral("Dirt"));
        refresh();
        const int UndoCount = undoIndex();
        QTest::mouseClick(lockButton(pLayer), Qt::LeftButton);
        QVERIFY(pLayer->isLocked());
        QCOMPARE(undoIndex(), UndoCount + 1);
        OrvUndoManager::instance().undo();
        QVERIFY(!pLayer->isLocked() && !lockButton(pLayer)->isChecked());
        OrvUndoManager::instance().redo();
        QVERIFY(lockButton(pLayer)->isChecked());
        QTest::mouseClick(lockButton(pLayer), Qt::LeftButton);
        QVERIFY(!pLayer->isLocked());
        QCOMPARE(undoIndex(), UndoCount + 2);
    }

    void eyesFollowTheLocksAroundThem()
    {
        OrvLayer* pLayer = addLayer(m_Channel, QStringLiteral("Dirt"));
        OrvLayer* pInside = addLayer(m_Channel, QStringLiteral("Inside"));
        OrvLayer* pGroup = group(m_Channel, {pInside}, QStringLiteral("Group"));
        refresh();
        const auto areFree
            = [&] { return toolButton(pLayer, 0)->isEnabled() && toolButton(pInside, 0)->isEnabled(); };
        QVERIFY(areFree());
        m_Channel->setLocked(true);
        QVERIFY(!toolButton(pLayer, 0)->isEnabled() && !toolButton(pInside, 0)->isEnabled());
        m_Channel->setLocked(false);
        QVERIFY(areFree());
        pGroup->setLocked(true);
        QVERIFY(toolButton(pLayer, 0)->isEnabled() && !toolButton(pInside, 0)->isEnabled());
        OrvUndoManager::instance().undo();
        QVERIFY(areFree());
    }

    void lockAroundTheLayerIsAskedFor_data()
    {
        QTest::addColumn<int>("Button");
        QTest::addColumn<bool>("Unlocked");
        QTest::newRow("yes") << int(QMessageBox::Yes) << true;
        QTest::newRow("no") << int(QMessageBox::No) << false;
        QTest::newRow("cancel") << int(QMessageBox::Cancel) << false;
    }
    void lockAroundTheLayerIsAskedFor()
    {
        QFETCH(int, Button);
        QFETCH(bool, Unlocked);
        OrvLayer* pLayer = addLayer(m_Channel, QStringLiteral("Dirt"));
        OrvLayer* pGroup = group(m_Channel, {pLayer}, QStringLiteral("Group"));
        OrvLayer* pSharer = m_Channel->shareLayer(pLayer, OrvLayerCreateFlags(30));
        QVERIFY(pSharer);
        pGroup->setLocked(true);
        pSharer->setLocked(true);
        pLayer->blendNode()->setCacheActive(OrvSnCacheActive);
        refresh();
        QVERIFY(lockButton(pLayer)->isChecked());
        const int UndoCount = undoIndex();

        QString Title, Text;
        answer(QMessageBox::StandardButton(Button), Title, Text);
        QTest::mouseClick(lockButton(pLayer), Qt::LeftButton);
        QCOMPARE(Title, QStringLiteral("Ancestor Locked"));
        const QStringList Lines = Text.split(QLatin1Char('\n'));
        QCOMPARE(Lines.size(), 5);
        QCOMPARE(Lines.first(), QStringLiteral("This layer is locked due to the following situation:"));
        QVERIFY(Lines.at(1).startsWith(QStringLiteral(" * Ancestors of this layer are locked.")));
        QVERIFY(Lines.at(2).startsWith(QStringLiteral(" * Up to this layer is cached.")));
        QVERIFY(Lines.at(3).startsWith(QStringLiteral(" * One of other shared layers")));
        QCOMPARE(Lines.last(), QStringLiteral("Would you like to unlock this layer?"));

        QCOMPARE(pLayer->isModifiable(), Unlocked);
        QCOMPARE(!pGroup->isLocked(), Unlocked);
        QCOMPARE(!pSharer->isLocked(), Unlocked);
        QCOMPARE(lockButton(pLayer)->isChecked(), !Unlocked);
        QCOMPARE(undoIndex(), UndoCount + (Unlocked ? 1 : 0));
    }

    void rowMayGoWhileTheUserIsAsked()
    {
        OrvLayer* pLayer = addLayer(m_Channel, QStringLiteral("Dirt"));
        OrvLayer* pGroup = group(m_Channel, {pLayer}, QStringLiteral("Group"));
        pGroup->setLocked(true);
        refresh();
        QTimer::singleShot(0, this, [this] {
            m_View->clearAndRefresh();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        });
        QString Title, Text;
        answer(QMessageBox::Yes, Title, Text);
        row(pLayer)->onLockedChanged(false);
        QVERIFY(pLayer->isModifiable());
    }

    void componentButtonsChooseWhatIsPainted()
    {
        OrvLayer* pLayer = addLayer(m_Channel, QStringLiteral("Dirt"));
        pLayer->addMaskImageSet();
        OrvLayer* pAbove = addLayer(m_Channel, QStringLiteral("Rust"));
        refresh();
        const QString Highlight
            = QStringLiteral("QPushButton:flat { background-color: lightgrey; border: none; }");
        const QString Plain = QStringLiteral("QPushButton:flat { border: none; }");

        QTest::mouseClick(maskButton(pLayer), Qt::LeftButton);
        QCOMPARE(OrvLayerManager::instance().currentComponent(), pLayer->maskNode());
        QCOMPARE(maskButton(pLayer)->styleSheet(), Highlight);
        QCOMPARE(paintButton(pLayer)->styleSheet(), Plain);
        QVERIFY(pLayer->isCurrent() && pLayer->isSelected() && !pAbove->isSelected());
        QCOMPARE(undoText(), QStringLiteral("Make 'Dirt' Mask Current"));

        QTest::mouseClick(paintButton(pAbove), Qt::LeftButton);
        QCOMPARE(OrvLayerManager::instance().currentComponent(), pAbove->paintNode());
        QCOMPARE(paintButton(pAbove)->styleSheet(), Highlight);
        QCOMPARE(maskButton(pLayer)->styleSheet(), Plain);
        QCOMPARE(undoText(), QStringLiteral("Make 'Rust' Current"));
        OrvUndoManager::instance().undo();
        QCOMPARE(maskButton(pLayer)->styleSheet(), Highlight);
        // A light icon must not fade into the light ground.
        QVERIFY(lightnessRange(maskButton(pLayer)) > 100);
        QTest::mouseClick(paintButton(pLayer), Qt::LeftButton);
        QVERIFY(lightnessRange(paintButton(pLayer)) > 100);
    }

    void shiftClickSwitchesMaskAndAdjustments()
    {
        OrvLayer* pLayer = addLayer(m_Channel, QStringLiteral("Dirt"));
        pLayer->addMaskImageSet();
        addAdjustmentStack(pLayer);
        OrvLayer* pOther = addLayer(m_Channel, QStringLiteral("Rust"));
        pOther->addMaskImageSet();
        refresh();
        QVERIFY(maskButton(pLayer)->toolTip().contains(QStringLiteral("Shift + Click to Disable")));
        shiftClick(maskButton(pLayer));
        QVERIFY(!pLayer->isMaskEnabled());
        QVERIFY(maskButton(pLayer)->toolTip().contains(QStringLiteral("Shift + Click to Enable")));
        // Too soon after the first, though on another row; and the wait begins anew.
        shiftClick(maskButton(pOther));
        QVERIFY(pOther->isMaskEnabled());
        QTest::qWait(60);
        shiftClick(maskButton(pOther));
        QVERIFY(pOther->isMaskEnabled());
        QTest::qWait(120);
        shiftClick(maskButton(pOther));
        QVERIFY(!pOther->isMaskEnabled());
        // Under a lock the mask stays as it is.
        pOther->setLocked(true);
        QTest::qWait(120);
        const int Count = OrvUndoManager::instance().stack()->index();
        shiftClick(maskButton(pOther));
        QVERIFY(!pOther->isMaskEnabled());
        QCOMPARE(OrvUndoManager::instance().stack()->index(), Count);

        QTest::qWait(120);
        shiftClick(adjustmentButton(pLayer));
        QVERIFY(!pLayer->isAdjustmentStackEnabled());
        QCOMPARE(adjustmentButton(pLayer)->toolTip(), QStringLiteral("Shift + Click to Enable"));
        OrvUndoManager::instance().undo();
        QVERIFY(pLayer->isAdjustmentStackEnabled());
        QCOMPARE(adjustmentButton(pLayer)->toolTip(), QStringLiteral("Shift + Click to Disable"));
    }

    void stackButtonsOpenTheirStacks()
    {
        OrvLayer* pLayer = addLayer(m_Channel, QStringLiteral("Dirt"));
        pLayer->addMaskImageSet();
        pLayer->convertMaskToMaskStack();
        addAdjustmentStack(pLayer);
        refresh();
        QCOMPARE(maskStackButton(pLayer)->objectName(), QStringLiteral("LayerStackPopupButton"));
        QTest::mouseClick(maskStackButton(pLayer), Qt::LeftButton);
        QCOMPARE(shownStacks(), QSet<OrvLayerStack*>{pLayer->maskStack()});
        QTest::mouseClick(adjustmentButton(pLayer), Qt::LeftButton);
        QCOMPARE(shownStacks(), QSet<OrvLayerStack*>({pLayer->maskStack(), pLayer->adjustmentStack()}));
    }

    void draggedLayerOpensTheStackItRestsOn()
    {
        OrvLayer* pLayer = addLayer(m_Channel, QStringLiteral("Dirt"));
        addAdjustmentStack(pLayer);
        OrvLayer* pOther = addLayer(m_Channel, QStringLiteral("Rust"));
        addAdjustmentStack(pOther);
        refresh();
        OrvLayerStackPopupButton* pButton = adjustmentButton(pLayer);
        QCOMPARE(
            LayerDrags::over(pButton, *LayerDrags::ofRows(m_View, {pLayer}), QPoint(3, 3)), Qt::IgnoreAction);
        QVERIFY(shownStacks().isEmpty());
        QTRY_COMPARE(shownStacks(), QSet<OrvLayerStack*>{pLayer->adjustmentStack()});

        QMimeData Text;
        Text.setText(QStringLiteral("Dirt"));
        LayerDrags::over(adjustmentButton(pOther), Text, QPoint(3, 3));
        QTest::qWait(700);
        QCOMPARE(shownStacks(), QSet<OrvLayerStack*>{pLayer->adjustmentStack()});
    }

    void bakePointTellsWhetherItsResultHolds()
    {
        OrvLayer* pBelow = addLayer(m_Channel, QStringLiteral("Dirt"));
        OrvLayer* pLayer = m_Channel->createBakePointLayer(OrvLayerCreateFlags(30));
        refresh();
        const auto color = [&] {
            QCoreApplication::processEvents();
            return bakePointButton(pLayer)
                ->styleSheet()
                .section(QStringLiteral("background-color: "), 1)
                .section(QLatin1Char(';'), 0, 0);
        };
        QVERIFY(bakePointButton(pLayer)->isVisible() && !paintButton(pLayer)->isVisible());
        QVERIFY(!bakePointButton(pBelow)->isVisible() && paintButton(pBelow)->isVisible());
        QCOMPARE(bakePointButton(pLayer)->x(), paintButton(pBelow)->x());
        QCOMPARE(color(), QString());
        QVERIFY(bakePointButton(pLayer)->toolTip().startsWith(QStringLiteral("Not baked")));
        QVERIFY(pLayer->bake());
        QCOMPARE(color(), QStringLiteral("green"));
        pBelow->setVisible(false);
        QCOMPARE(color(), QStringLiteral("red"));
        OrvUndoManager::instance().undo();
        QCOMPARE(color(), QStringLiteral("green"));
        OrvUndoManager::instance().undo();
        QCOMPARE(color(), QString());

        std::unique_ptr<QMimeData> pData(bakePointButton(pLayer)->mimeData());
        QCOMPARE(OrvLayerDragPayload::read(pData.get()), QVector<OrvSnBaseNode*>{pLayer->blendNode()});
        pBelow->makeCurrent(false, true);
        QTest::mouseClick(bakePointButton(pLayer), Qt::LeftButton);
        QCOMPARE(OrvLayerManager::instance().currentLayer(), pLayer);
    }

    void rowWidgetsServeTheNextStack()
    {
        const QList<OrvLayer*> Plain = addLayers(m_Channel, {"A", "B", "C", "D", "E", "F"});
        OrvShaderInput* pOther = addChannel(QStringLiteral("Bump"));
        QList<OrvLayer*> Rich = addLayers(pOther, {"Masked", "Stacked", "Inside", "Locked", "Shared"});
        Rich[0]->addMaskImageSet();
        Rich[0]->setMaskEnabled(false);
        Rich[1]->addMaskImageSet();
        Rich[1]->convertMaskToMaskStack();
        Rich[1]->setVisible(false);
        addAdjustmentStack(Rich[1]);
        OrvLayer* pGroup = group(pOther, {Rich[2]}, QStringLiteral("Group"));
        Rich[3]->setLocked(true);
        Rich[3]->setColor(Qt::red);
        pOther->shareLayer(Rich[4], OrvLayerCreateFlags(30));
        pOther->createAdjustmentLayer(
            typeKey("^Filter/"), OrvLayerCreateFlags(), nullptr, QStringLiteral("Adjustment"));
        Rich[0]->makeCurrent(false, true);

        m_View->setLayerStack(m_Channel);
        refresh();
        for (OrvShaderInput* pChannel : {pOther, m_Channel, pOther}) {
            const QSet<Row*> Before = rowWidgets();
            OrvShaderInputManager::instance().makeShaderInputCurrent(pChannel, true);
            m_View->setLayerStack(pChannel);
            refresh();
            const QSet<Row*> Now = rowWidgets();
            QCOMPARE(Now.size(), pChannel->allLayers().size());
            QVERIFY(Now.contains(Before) || Before.contains(Now));
            const QImage Reused = m_View->treeView()->grab().toImage();
            m_View->clearAndRefresh();
            refresh();
            QCOMPARE(m_View->treeView()->grab().toImage(), Reused);
        }
        // Each row follows its own layer alone.
        Plain[0]->setName(QStringLiteral("Elsewhere"));
        Rich[0]->setName(QStringLiteral("Renamed"));
        QCOMPARE(nameLabel(Rich[0])->text(), QStringLiteral("Renamed"));
        QVERIFY(m_View->treeView()->isExpanded(m_View->model()->indexFromLayer(pGroup)));
        QCOMPARE(m_Reports.Texts.filter(QStringLiteral("NULL")), QStringList());
    }

    void rowWidgetsOutOfViewServeTheNextStack()
    {
        OrvShaderInput* pOther = addChannel(QStringLiteral("Bump"));
        for (int i = 0; i < 100; ++i) {
            addLayer(m_Channel, QStringLiteral("Layer %1").arg(i));
            addLayer(pOther, QStringLiteral("Other %1").arg(i));
        }
        m_View->setLayerStack(m_Channel);
        refresh();
        m_View->treeView()->scrollToBottom();
        m_View->treeView()->grab();
        m_View->setLayerStack(pOther);
        refresh();
        for (const int Index : {99, 0}) {
            const QModelIndex Place = m_View->model()->index(Index, 0);
            m_View->treeView()->scrollTo(Place);
            m_View->treeView()->grab();
            const Row* pRow = m_View->rowWidget(Place);
            QCOMPARE(pRow->findChild<OrvEditLabel*>()->text(), QStringLiteral("Other %1").arg(99 - Index));
            QVERIFY(pRow->isVisible());
        }
        // Fewer rows: no widget stays behind.
        m_View->setLayerStack(addChannel(QStringLiteral("Empty")));
        refresh();
        QVERIFY(rowWidgets().isEmpty());
    }

    void whatARowBeganEndsWithItsStack()
    {
        OrvLayer* pHere = addLayer(m_Channel, QStringLiteral("Here"));
        OrvShaderInput* pOther = addChannel(QStringLiteral("Bump"));
        OrvLayer* pThere = addLayer(pOther, QStringLiteral("There"));
        m_View->setLayerStack(m_Channel);
        refresh();
        QTest::mouseDClick(nameLabel(pHere), Qt::LeftButton);
        QTest::keyClicks(nameLabel(pHere)->findChild<QLineEdit*>(), QStringLiteral("Typed"));
        m_View->setLayerStack(pOther);
        refresh();
        QVERIFY(!nameLabel(pThere)->isEditing());
        QCOMPARE(nameLabel(pThere)->text(), QStringLiteral("There"));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(pThere->name(), QStringLiteral("There"));
        QCOMPARE(pHere->name(), QStringLiteral("Here"));

        // A menu that is still open says nothing of the layer that came.
        QContextMenuEvent Event(QContextMenuEvent::Mouse, QPoint(60, 10), row(pThere)->mapToGlobal({60, 10}));
        QApplication::sendEvent(row(pThere), &Event);
        auto* pMenu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        QVERIFY(pMenu);
        m_View->setLayerStack(m_Channel);
        refresh();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        for (QAction* pAction : pMenu->actions()) {
            if (pAction->text() == QLatin1String("Layer Properties"))
                pAction->trigger();
        }
        QVERIFY(m_View->findChildren<OrvLayerPropertyDialog*>().isEmpty());
        pMenu->close();
    }

    void pressOnAComponentMakesTheViewActive()
    {
        OrvLayer* pLayer = addLayer(m_Channel, QStringLiteral("Dirt"));
        pLayer->addMaskImageSet();
        addAdjustmentStack(pLayer);
        refresh();
        OrvLayerView Other(nullptr, 0);
        for (QWidget* pButton : std::initializer_list<QWidget*>{
                 paintButton(pLayer), maskButton(pLayer), adjustmentButton(pLayer)}) {
            Other.makeActive();
            QCOMPARE(OrvLayerViewContextManager::instance().layerView(), &Other);
            QCOMPARE(OrvLayerManager::instance().currentLayerStack(), nullptr);
            QTest::mousePress(pButton, Qt::LeftButton);
            QCOMPARE(OrvLayerViewContextManager::instance().layerView(), m_View);
            QCOMPARE(OrvLayerManager::instance().currentLayerStack(), m_Channel);
            QTest::mouseRelease(pButton, Qt::LeftButton, Qt::NoModifier, QPoint(-5, -5));
        }
    }

    void componentsCarryTheirNodes()
    {
        OrvLayer* pLayer = addLayer(m_Channel, QStringLiteral("Dirt"));
        pLayer->addMaskImageSet();
        refresh();
        std::unique_ptr<QMimeData> pData(maskButton(pLayer)->mimeData());
        QCOMPARE(OrvLayerDragPayload::read(pData.get()), QVector<OrvSnBaseNode*>{pLayer->maskNode()});
        pData.reset(paintButton(pLayer)->mimeData());
        QCOMPARE(OrvLayerDragPayload::read(pData.get()), QVector<OrvSnBaseNode*>{pLayer->blendNode()});
        const OrvLayerComponentPushButton Lone(nullptr);
        QVERIFY(!Lone.mimeData());
        QCOMPARE(m_Reports.Texts.last(), QStringLiteral("m_ComponentNode is NULL"));
    }

    void groupsRememberWhetherTheyAreUnfolded()
    {
        OrvLayer* pLayer = addLayer(m_Channel, QStringLiteral("Dirt"));
        OrvLayer* pGroup = group(m_Channel, {pLayer}, QStringLiteral("Group"));
        refresh();
        const int UndoCount = undoIndex();
        QVERIFY(row(pGroup)->isExpanded());
        row(pGroup)->setExpanded(true);
        QVERIFY(!pGroup->blendNode()->exists(ExpandLayerGroupKey));
        row(pGroup)->setExpanded(false);
        QVERIFY(!row(pGroup)->isExpanded());
        const OrvCustomAttribute Attribute = pGroup->blendNode()->userAttribute(ExpandLayerGroupKey);
        QVERIFY(!Attribute.isTweakable() && !Attribute.isVisible());
        row(pGroup)->setExpanded(true);
        QVERIFY(row(pGroup)->isExpanded());
        QCOMPARE(undoIndex(), UndoCount);

        QVERIFY(!row(pLayer)->isExpanded());
        QVERIFY(m_Reports.Texts.last().endsWith(
            QStringLiteral("This should not be called for non-layer group Dirt")));
    }

    void sharersAreListedAndReached()
    {
        OrvLayer* pLayer = addLayer(m_Channel, QStringLiteral("Dirt"));
        OrvLayer* pLone = addLayer(m_Channel, QStringLiteral("Rust"));
        OrvLayer* pSharer = m_Channel->shareLayer(pLayer, OrvLayerCreateFlags(30));
        pSharer->setName(QStringLiteral("Twin"));
        refresh();
        QToolButton* pMarker = sharedButton(pLayer);
        QVERIFY(pMarker->isVisible() && !sharedButton(pLone)->isVisible());
        QTest::mouseClick(pMarker, Qt::LeftButton);
        QPointer<QWidget> pPopup = QApplication::activePopupWidget();
        QVERIFY(qobject_cast<OrvSharerListPopup*>(pPopup));
        QListWidget* pList = pPopup->findChild<QListWidget*>();
        QCOMPARE(pList->count(), 2);
        QCOMPARE(pList->item(0)->text(), QStringLiteral("Shares Resources With:"));
        QCOMPARE(pList->item(1)->text(), pSharer->path(true));
        QTest::mouseClick(pList->viewport(), Qt::LeftButton, Qt::NoModifier,
            pList->visualItemRect(pList->item(0)).center());
        QVERIFY(pPopup->isVisible());
        QTest::mouseClick(pList->viewport(), Qt::LeftButton, Qt::NoModifier,
            pList->visualItemRect(pList->item(1)).center());
        QVERIFY(pSharer->isCurrent());
        QTRY_VERIFY(!pPopup);

        row(pLone)->showSharerList();
        QVERIFY(!QApplication::activePopupWidget());
    }

    void sharersOfGroupsAndChannelsAreListed()
    {
        OrvLayer* pLayer = addLayer(m_Channel, QStringLiteral("Dirt"));
        OrvLayer* pGroup = group(m_Channel, {pLayer}, QStringLiteral("Group"));
        OrvLayer* pTwin = m_Channel->shareLayer(pGroup, OrvLayerCreateFlags(30));
        OrvShaderInput* pBump = addChannel(QStringLiteral("Bump"));
        m_View->setLayerStack(m_Channel);
        OrvLayerDrop Drop({pBump->node()}, Qt::LinkAction, nullptr, m_Channel->topNode(), m_Channel);
        const OrvLayerDropResult Dropped = Drop.carryOut();
        QVERIFY2(Dropped.isDone(), qPrintable(Dropped.Message));
        OrvLayer* pOfBump = m_Channel->layerList().first();
        refresh();
        QVERIFY(sharedButton(pLayer)->isVisible() && !sharedChannelButton(pLayer)->isVisible());
        QVERIFY(!sharedButton(pOfBump)->isVisible() && sharedChannelButton(pOfBump)->isVisible());

        row(pLayer)->showSharerList();
        QCOMPARE(popupLines(),
            QStringList({QStringLiteral("Part Of Shared Layer:"), pGroup->path(true), pTwin->path(true)}));
        QTest::mouseClick(sharedChannelButton(pOfBump), Qt::LeftButton);
        QCOMPARE(popupLines(), QStringList({QStringLiteral("Shares Channel :"), pBump->path()}));
    }

    void dragHintTellsWhatTheKeysDo()
    {
        OrvLayer* pLayer = addLayer(m_Channel, QStringLiteral("Dirt"));
        OrvLayer* pTagged = addLayer(m_Channel, QStringLiteral("Rust"));
        pTagged->blendNode()->setUserAttributeValue(OrvMergeAttributes::CrossChannelSharing, true);
        refresh();
        const QString Common
            = QStringLiteral("Use Shift (or Ctrl+Shift) and left-mouse drag to share layers.\n"
                             "Use Alt (or Ctrl+Alt) and left-mouse drag to copy layers.\n"
                             "Use left-mouse drag to move layers.\n\nNote that layers can also be moved");
        QCOMPARE(paintButton(pLayer)->toolTip(),
            Common + QStringLiteral(" and copied\nbetween the stacks of different channels.\n"));
        QCOMPARE(paintButton(pTagged)->toolTip(),
            Common + QStringLiteral(", copied and shared\nbetween the stacks of different channels.\n"));
        QVERIFY(sharedChannelButton(pTagged)->isVisible() && !sharedChannelButton(pLayer)->isVisible());
    }

    void rowOfALostLayerDoesNothing()
    {
        OrvLayer* pLayer = addLayer(m_Channel, QStringLiteral("Dirt"));
        Row Orphan(pLayer, m_View);
        Orphan.resize(300, Row::RowHeight);
        Orphan.grab();
        OrvProjectManager::instance().closeProject();
        QVERIFY(!Orphan.layer());
        m_Reports.Texts.clear();
        Orphan.setName(QStringLiteral("Rust"));
        Orphan.onVisibilityButtonPressed();
        Orphan.makePaintComponentCurrent();
        Orphan.onMaskComponentClicked();
        Orphan.onLockedChanged(true);
        Orphan.setExpanded(true);
        Orphan.showSharerList();
        Orphan.updateCostWidget();
        Orphan.updateBakePointComponentButton();
        QCOMPARE(
            m_Reports.Texts, QStringList::fromVector(QVector<QString>(9, QStringLiteral("m_Layer is NULL"))));
        QVERIFY(!QApplication::activePopupWidget());
    }

    void contextMenuRefreshesTheView()
    {
        OrvLayer* pLayer = addLayer(m_Channel, QStringLiteral("Dirt"));
        refresh();
        const QPointer<Row> pRow = row(pLayer);
        QContextMenuEvent Event(QContextMenuEvent::Mouse, QPoint(60, 10), pRow->mapToGlobal(QPoint(60, 10)));
        QApplication::sendEvent(pRow, &Event);
        QMenu* pMenu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        QVERIFY(pMenu);
        QStringList Texts;
        for (const QAction* pAction : pMenu->actions())
            Texts.append(pAction->text());
        QVERIFY(Texts.indexOf(QStringLiteral("Add New Layer")) >= 0);
        QVERIFY(Texts.indexOf(QStringLiteral("Layer Properties"))
            > Texts.indexOf(QStringLiteral("Add New Layer")));
        QAction* pRefresh = pMenu->actions().last();
        QCOMPARE(pRefresh->text(), QStringLiteral("Refresh Layer View"));
        pRefresh->trigger();
        pMenu->close();
        QTRY_VERIFY(!pRow);
        QVERIFY(row(pLayer));
    }

    void selectedNameStaysReadable()
    {
        OrvLayer* pLayer = addLayer(m_Channel, QStringLiteral("Dirt"));
        OrvLayer* pOther = addLayer(m_Channel, QStringLiteral("Rust"));
        refresh();
        QSignalSpy Spy(row(pOther), SIGNAL(selectedChanged(bool, OrvLayer*)));
        click(pLayer);
        QCOMPARE(nameLabel(pLayer)->foregroundRole(), QPalette::HighlightedText);
        QVERIFY(nameLabel(pOther)->foregroundRole() != QPalette::HighlightedText);
        click(pOther);
        QCOMPARE(nameLabel(pOther)->foregroundRole(), QPalette::HighlightedText);
        QCOMPARE(Spy.last().first().toBool(), true);
    }

private:
    static int undoIndex() { return OrvUndoManager::instance().stack()->index(); }
    static QString undoText() { return OrvUndoManager::instance().stack()->undoText(); }
    static QString typeKey(const char* pPattern)
    {
        return OrvShaderNetworkManager::instance()
            .layerPathKeys()
            .filter(QRegExp(QLatin1String(pPattern)))
            .first();
    }

    static void addAdjustmentStack(OrvLayer* pLayer)
    {
        pLayer->addLayerAdjustmentLayerFromKey(typeKey("^Filter/"));
    }

    void refresh() const
    {
        m_View->refresh();
        m_View->treeView()->expandAll();
        showRows(m_View);
    }
    /// All there are, rid of those that are being deleted.
    QSet<Row*> rowWidgets() const
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        const QList<Row*> Widgets = m_View->treeView()->viewport()->findChildren<Row*>();
        return QSet<Row*>(Widgets.cbegin(), Widgets.cend());
    }
    Row* row(const OrvLayer* pLayer) const { return rowOf(m_View, pLayer); }
    OrvEditLabel* nameLabel(const OrvLayer* pLayer) const { return row(pLayer)->findChild<OrvEditLabel*>(); }
    OrvLayerComponentPushButton* bakePointButton(const OrvLayer* pLayer) const
    {
        return row(pLayer)->findChildren<OrvLayerComponentPushButton*>().at(0);
    }
    OrvLayerComponentPushButton* paintButton(const OrvLayer* pLayer) const
    {
        return row(pLayer)->findChildren<OrvLayerComponentPushButton*>().at(1);
    }
    OrvLayerComponentPushButton* maskButton(const OrvLayer* pLayer) const
    {
        return row(pLayer)->findChildren<OrvLayerComponentPushButton*>().at(2);
    }
    OrvLayerStackPopupButton* maskStackButton(const OrvLayer* pLayer) const
    {
        return row(pLayer)->findChildren<OrvLayerStackPopupButton*>().at(0);
    }
    OrvLayerStackPopupButton* adjustmentButton(const OrvLayer* pLayer) const
    {
        return row(pLayer)->findChildren<OrvLayerStackPopupButton*>().at(1);
    }
    /// The plain tool buttons in their order: eye, shared, shared channel, lock.
    QToolButton* toolButton(const OrvLayer* pLayer, int Index) const
    {
        QList<QToolButton*> Buttons = row(pLayer)->findChildren<QToolButton*>();
        Buttons.erase(
            std::remove_if(Buttons.begin(), Buttons.end(),
                [](QToolButton* pButton) { return qobject_cast<OrvLayerStackPopupButton*>(pButton); }),
            Buttons.end());
        return Buttons.value(Index);
    }
    QToolButton* sharedButton(const OrvLayer* pLayer) const { return toolButton(pLayer, 1); }
    QToolButton* sharedChannelButton(const OrvLayer* pLayer) const { return toolButton(pLayer, 2); }
    QToolButton* lockButton(const OrvLayer* pLayer) const { return toolButton(pLayer, 3); }
    /// Of the open list of sharers, which is closed.
    static QStringList popupLines()
    {
        QStringList Lines;
        QWidget* pPopup = QApplication::activePopupWidget();
        const QListWidget* pList = pPopup ? pPopup->findChild<QListWidget*>() : nullptr;
        for (int Line = 0; pList && Line < pList->count(); ++Line)
            Lines.append(pList->item(Line)->text());
        if (pPopup)
            pPopup->close();
        return Lines;
    }
    static int lightnessRange(QWidget* pWidget)
    {
        const QImage Image = pWidget->grab().toImage().convertToFormat(QImage::Format_Grayscale8);
        int Least = 255, Most = 0;
        for (int Line = 0; Line < Image.height(); ++Line) {
            for (int x = 0; x < Image.width(); ++x) {
                Least = qMin(Least, int(Image.constScanLine(Line)[x]));
                Most = qMax(Most, int(Image.constScanLine(Line)[x]));
            }
        }
        return Most - Least;
    }
    static QList<QWidget*> visibleChildren(const QWidget* pWidget)
    {
        QList<QWidget*> Children = pWidget->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
        Children.erase(std::remove_if(Children.begin(), Children.end(),
                           [](QWidget* pChild) { return pChild->isHidden(); }),
            Children.end());
        return Children;
    }
    static QSet<OrvLayerStack*> shownStacks()
    {
        QSet<OrvLayerStack*> Stacks;
        for (const OrvLayerView* pView : OrvMainWindow::instance().findChildren<OrvLayerView*>()) {
            if (pView != OrvLayerViewContextManager::instance().mainLayerView() && pView->isVisible())
                Stacks.insert(pView->layerStack());
        }
        Stacks.remove(nullptr);
        return Stacks;
    }

    void click(const OrvLayer* pLayer) const
    {
        const QModelIndex Index = m_View->model()->indexFromLayer(pLayer);
        QTest::mouseClick(m_View->treeView()->viewport(), Qt::LeftButton, Qt::NoModifier,
            m_View->treeView()->visualRect(Index).center());
    }
    static void shiftClick(QWidget* pButton)
    {
        QTest::keyPress(pButton, Qt::Key_Shift, Qt::ShiftModifier);
        QTest::mouseClick(pButton, Qt::LeftButton, Qt::ShiftModifier);
        QTest::keyRelease(pButton, Qt::Key_Shift);
    }
    void typeName(const OrvLayer* pLayer, const QString& Text) const
    {
        QTest::mouseDClick(nameLabel(pLayer), Qt::LeftButton);
        QLineEdit* pEdit = nameLabel(pLayer)->findChild<QLineEdit*>();
        QVERIFY(pEdit && pEdit->isVisible());
        pEdit->selectAll();
        QTest::keyClicks(pEdit, Text);
        QTest::keyClick(pEdit, Qt::Key_Return);
    }
    /// Answers the question that the next step brings up.
    static void answer(QMessageBox::StandardButton Button, QString& Title, QString& Text)
    {
        QTimer::singleShot(0, [Button, &Title, &Text] {
            auto* pBox = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!pBox)
                return;
            Title = pBox->windowTitle();
            Text = pBox->text();
            pBox->button(Button)->click();
        });
    }

    SettingsDirectory m_Directory;
    OrvLayerView* m_View = nullptr;
    OrvShaderInput* m_Channel = nullptr;
    OrvDebugReports m_Reports;
};

QTEST_MAIN(TstLayerRows)
#include "TstLayerRows.moc"
