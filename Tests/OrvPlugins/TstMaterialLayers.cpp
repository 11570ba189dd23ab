#include "SettingsDirectory.h"

#include "Tests/OrvPlugins/DroppedFiles.h"
#include "Tests/OrvPlugins/LayersFixture.h"

#include "Tests/Support/OrvTestProject.h"

#include "OrvCore/Network/OrvSnMultiChannelMergeNode.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderUtils.h"
#include "OrvCore/Shaders/OrvMultiChannelLayerUtils.h"
#include "OrvCore/Shelf/OrvMaterialPaintManager.h"
#include "OrvCore/Shelf/OrvShelfDirectories.h"
#include "OrvCoreModules/Menus/OrvMenu.h"
#include "OrvCoreModules/Widgets/OrvExpandableListWidget.h"
#include "OrvCoreModules/Window/OrvApplication.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerBlendRow.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragPayload.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerTreeView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewItemRowWidget.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvMultiChannelLayerCommands.h"

#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QAction>
#include <QtWidgets/QInputDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QUndoStack>

using namespace DroppedFiles;
using namespace LayersFixture;

/// Layers of several channels in a Layers palette: the menu, dropped materials, their rows.
class TstMaterialLayers : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_Directory.isValid());
        OrvApplication::appInstance().setInitialized(true);
        OrvMultiChannelLayerCommands::installShaderChooser();
        m_Steel = OrvShelfDirectories::shipped() + QStringLiteral("/Materials/Rusted Steel.orvmat");
    }

    void init()
    {
        OrvProjectManager::instance().newProject(QStringLiteral("Test"), QStringLiteral("Head"));
        m_pRough = addChannel(QStringLiteral("Rough"));
        m_pBase = addChannel(QStringLiteral("Base"));
        addLayer(m_pRough, QStringLiteral("Bottom"));
        addLayers(m_pBase, {"Top", "Bottom"});
        m_pShader
            = OrvLayerShaderUtils::createShaderFromKey(QStringLiteral("Shader/MetallicRoughness"), true);
        m_pShader->setInputShaderInput(QStringLiteral("Base Color"), m_pBase);
        m_pShader->setInputShaderInput(QStringLiteral("Roughness"), m_pRough);
        m_pView = std::make_unique<OrvLayerView>(nullptr, 0);
        m_pView->resize(420, 700);
        m_pView->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_pView.get()));
        show(m_pBase);
        OrvUndoManager::instance().clear();
    }
    void cleanup()
    {
        m_pView.reset();
        OrvProjectManager::instance().closeProject();
    }

    void theActionNeedsAShaderDownstream()
    {
        QVERIFY(action()->isEnabled());
        show(addChannel(QStringLiteral("Free")));
        QVERIFY(!action()->isEnabled());
        show(m_pRough);
        QVERIFY(action()->isEnabled());
        QVERIFY(OrvLayerShaderUtils::destroy(m_pShader, false));
        show(m_pBase);
        QTRY_VERIFY(!action()->isEnabled());
    }

    void theMenuMakesGroupsAndMaterials()
    {
        m_pBase->layerList().last()->makeCurrent(false, true);
        m_pView->refresh();
        OrvMenu* pMenu = openMenu();
        QVERIFY(pMenu);
        const QList<QAction*> Entries = pMenu->actions();
        QCOMPARE(Entries.size(), 2);
        QCOMPARE(Entries[0]->toolTip(), QStringLiteral("Add Multi-Channel Group"));
        QCOMPARE(Entries[1]->text(), QStringLiteral("Materials"));
        Entries[0]->trigger();
        pMenu->close();
        QCOMPARE(stackText(m_pBase), QStringLiteral("Top Group() Bottom"));
        QCOMPARE(stackText(m_pRough), QStringLiteral("Group() Bottom"));
        // Into the group that is current and unfolded, in both channels.
        OrvLayer* pGroup = OrvLayerManager::instance().currentLayer();
        QTRY_COMPARE(rowText(m_pView.get()), stackText(m_pBase));
        row(pGroup)->setExpanded(true);
        pMenu = openMenu();
        QAction* pSteel = nullptr;
        for (QAction* pAction : pMenu->actions()[1]->menu()->actions()) {
            if (pAction->text() == QStringLiteral("Rusted Steel"))
                pSteel = pAction;
        }
        QVERIFY(pSteel && !pSteel->icon().isNull());
        QCOMPARE(pSteel->toolTip(), QStringLiteral("Add Material Layer Rusted Steel"));
        pSteel->trigger();
        pMenu->close();
        QCOMPARE(stackText(m_pBase), QStringLiteral("Top Group(Rusted Steel) Bottom"));
        QCOMPARE(stackText(m_pRough), QStringLiteral("Group(Rusted Steel) Bottom"));
        QCOMPARE(OrvUndoManager::instance().stack()->count(), 2);
        QTRY_COMPARE(rowText(m_pView.get()), stackText(m_pBase)); // no row warns
        OrvUndoManager::instance().undo();
        OrvUndoManager::instance().undo();
        QCOMPARE(stackText(m_pRough), QStringLiteral("Bottom"));
    }

    void materialsAreDroppedWhereLayersCanStand()
    {
        const std::unique_ptr<QMimeData> pData = dragged(m_Steel);
        QVERIFY(m_pView->model()->canDropMimeData(pData.get(), Qt::CopyAction, 1, 0, QModelIndex()));
        QVERIFY(dropOnTree(*pData,
            m_pView->treeView()->visualRect(m_pView->model()->index(1, 0)).topLeft() + QPoint(60, 1)));
        QCOMPARE(stackText(m_pBase), QStringLiteral("Top Rusted Steel Bottom"));
        QCOMPARE(stackText(m_pRough), QStringLiteral("Rusted Steel Bottom"));
        QCOMPARE(OrvUndoManager::instance().stack()->count(), 1);
        // Nothing but a channel takes one.
        m_pBase->layerList().first()->addMaskImageSet();
        show(m_pBase->layerList().first()->convertMaskToMaskStack());
        QVERIFY(!m_pView->model()->canDropMimeData(pData.get(), Qt::CopyAction, -1, 0, QModelIndex()));
        // A channel without a shader: nothing happens.
        OrvShaderInput* pFree = addChannel(QStringLiteral("Free"));
        show(pFree);
        OrvUndoManager::instance().clear();
        QVERIFY(!m_pView->model()->dropMimeData(pData.get(), Qt::CopyAction, -1, 0, QModelIndex()));
        QVERIFY(pFree->isEmpty() && OrvUndoManager::instance().stack()->count() == 0);
    }

    void whatCannotBeALayerIsToldInABox()
    {
        QFile File(m_Directory.filePath("Alien.orvmat"));
        QVERIFY(File.open(QIODevice::WriteOnly));
        File.write("{\"orvmat\": 1, \"name\": \"Alien\", \"streams\": {\"Slime\": {\"value\": 1}}}");
        File.close();
        const std::unique_ptr<QMimeData> pData = dragged(File.fileName());
        const QString Title = refusalOf([&] {
            QVERIFY(!m_pView->model()->dropMimeData(pData.get(), Qt::CopyAction, -1, 0, QModelIndex()));
        });
        QCOMPARE(Title, QStringLiteral("Material Layer Creation Failed"));
        QCOMPARE(OrvUndoManager::instance().stack()->count(), 0);
    }

    void theUserChoosesAmongShaders()
    {
        OrvLayerShader* pFlat
            = OrvLayerShaderUtils::createShaderFromKey(QStringLiteral("Shader/Unlit"), false);
        pFlat->setInputShaderInput(QStringLiteral("Color"), m_pBase);
        for (const bool Accepted : {false, true}) {
            QTimer::singleShot(0, [Accepted, pFlat] {
                auto* pDialog = qobject_cast<QInputDialog*>(QApplication::activeModalWidget());
                QVERIFY(pDialog);
                QCOMPARE(pDialog->comboBoxItems().size(), 2);
                pDialog->setTextValue(pFlat->name());
                Accepted ? pDialog->accept() : pDialog->reject();
            });
            m_pView->addMultiChannelGroup();
            QCOMPARE(m_pBase->layerList().size(), Accepted ? 3 : 2);
            QCOMPARE(m_pRough->layerList().size(), 1);
        }
    }

    void rowsShowOneChannelOfTheLayer()
    {
        OrvLayer* pLayer = addMaterial();
        QWidget* pEye = row(pLayer)->childAt(eye(pLayer));
        QVERIFY(pEye);
        // With Shift in this channel alone.
        QTest::mouseClick(pEye, Qt::LeftButton, Qt::ShiftModifier);
        QVERIFY(pLayer->isVisible() && !pLayer->isVisibleHere());
        QVERIFY(pLayer->inAllChannels().last()->isVisibleHere());
        QTest::qWait(QApplication::doubleClickInterval() + 50);
        QTest::mouseClick(pEye, Qt::LeftButton, Qt::ShiftModifier);
        QVERIFY(pLayer->isVisibleHere());
        OrvUndoManager::instance().undo();
        QVERIFY(!pLayer->isVisibleHere());
        OrvUndoManager::instance().redo();
        QTest::mouseClick(pEye, Qt::LeftButton);
        QVERIFY(!pLayer->isVisible() && !pLayer->inAllChannels().last()->isVisibleHere());
        OrvUndoManager::instance().undo();

        // The blend controls are of this channel, the editor shows what the material has for it.
        pLayer->blendNode()->setUserAttributeValue(OrvMergeAttributes::Amount, 0.25);
        const OrvSnMergeNode* pElsewhere = pLayer->inAllChannels().last()->blendNode();
        QCOMPARE(pElsewhere->userAttribute(OrvMergeAttributes::Amount).value().toDouble(), 1.0);
        QWidget Parent;
        QStringList Titles;
        for (const QPointer<QWidget>& pEditor : m_pView->createPropertyWidgets(pLayer, &Parent)) {
            for (const auto* pGroup : pEditor->findChildren<OrvExpandableListWidget*>())
                Titles.append(pGroup->title());
        }
        QCOMPARE(Titles.filter(QStringLiteral("Material : ")).size(), 1);
        QVERIFY(Titles.filter(QStringLiteral("Procedural : ")).isEmpty());
    }

    void draggedAnywhereTheyStayWhole()
    {
        m_pView->addMultiChannelGroup();
        OrvLayer* pGroup = OrvLayerManager::instance().currentLayer();
        m_pBase->layerList().last()->makeCurrent(false, true);
        OrvLayer* pMaterial = addMaterial();
        OrvLayer* pFolder
            = group(m_pBase, {addLayer(m_pBase, QStringLiteral("Inner"))}, QStringLiteral("Folder"));
        QVERIFY(pGroup && pMaterial && pFolder);
        pMaterial->addMaskImageSet();
        pFolder->addMaskImageSet();
        OrvLayerStack* pMasks = pFolder->convertMaskToMaskStack();
        OrvUndoManager::instance().clear();
        const QByteArray Before = OrvTestProject::document();
        int Changes = 0;
        for (OrvLayerStack* pStack : QList<OrvLayerStack*>{m_pBase, m_pRough, pMasks}) {
            show(pStack);
            QVector<QPair<int, QModelIndex>> Places{{-1, QModelIndex()}};
            for (int Row = 0; Row < m_pView->model()->rowCount(); ++Row) {
                Places.append({Row, QModelIndex()});
                Places.append({-1, m_pView->model()->index(Row, 0)});
            }
            for (const OrvLayer* pDragged : {pMaterial, pGroup, pGroup->inAllChannels().last()}) {
                for (const auto& Place : qAsConst(Places)) {
                    for (const Qt::Key Key : {Qt::Key_unknown, Qt::Key_Alt, Qt::Key_Shift}) {
                        QMimeData Data;
                        OrvLayerDragPayload::write(Data, {pDragged->blendNode()->uuidString()});
                        if (dropLayers(Data, Place, Key)) {
                            const QByteArray After = OrvTestProject::document();
                            OrvUndoManager::instance().undo();
                            OrvUndoManager::instance().redo();
                            QVERIFY(OrvTestProject::document() == After);
                            for (const OrvLayer* pStream :
                                pMaterial->inAllChannels() + pGroup->inAllChannels())
                                QVERIFY(!pStream->stacks().isEmpty());
                            QVERIFY(pMaterial->blendNode()->multiChannelNode()->isRepresentable());
                            OrvUndoManager::instance().undo();
                            ++Changes;
                        }
                        QVERIFY(OrvTestProject::document() == Before);
                    }
                }
            }
        }
        QVERIFY(Changes > 20);
    }

    void connectionsThatNoStackShowsAreToldOf()
    {
        OrvLayer* pLayer = addMaterial();
        pLayer->commonNode()->setName(QStringLiteral("Steel"));
        // What the streams have in common stands in a chain.
        OrvLayer* pBottom = m_pBase->layerList().last();
        pBottom->blendNode()->connectInput(OrvSnNames::Base, nullptr);
        OrvLayer* pFree = addLayer(addChannel(QStringLiteral("Free")), QStringLiteral("Layer"));
        QVERIFY(pFree->blendNode()->connectInput(OrvSnNames::Base, pLayer->commonNode()));
        show(OrvShaderInputManager::instance().currentShaderInput());
        QString Warnings;
        for (int Row = 0; Row < m_pView->model()->rowCount(); ++Row)
            Warnings += textOfRow(Row) + QLatin1Char('\n');
        QVERIFY2(Warnings.contains("Node 'Steel' is unrepresentable, only Merge nodes and Multi-Channel Merge nodes "
                                   "can be represented in the layer stack."),
            qPrintable(Warnings));
    }

private:
    void show(OrvLayerStack* pStack)
    {
        m_pView->setLayerStack(pStack);
        m_pView->refresh();
        QCoreApplication::processEvents();
    }
    QAction* action() const
    {
        for (QAction* pAction : m_pView->findChildren<QAction*>()) {
            if (pAction->text() == QStringLiteral("Add Multi-Channel Layer"))
                return pAction;
        }
        return nullptr;
    }
    OrvMenu* openMenu()
    {
        action()->trigger();
        return qobject_cast<OrvMenu*>(QApplication::activePopupWidget());
    }
    OrvLayer* addMaterial()
    {
        QString Error;
        OrvLayer* pLayer = OrvMultiChannelLayerUtils::createMaterialLayer(m_Steel, m_pShader, nullptr, Error);
        m_pView->refresh();
        QCoreApplication::processEvents();
        return pLayer;
    }
    OrvLayerViewItemRowWidget* row(const OrvLayer* pLayer) const
    {
        return m_pView->rowWidget(m_pView->model()->indexFromLayer(pLayer));
    }
    QPoint eye(const OrvLayer* pLayer) const
    {
        row(pLayer)->grab(); // rows get their parts when they are painted
        return row(pLayer)->eyeGeometry().center();
    }
    QString textOfRow(int Row) const
    {
        const QWidget* pWidget = m_pView->treeView()->indexWidget(m_pView->model()->index(Row, 0));
        QStringList Texts;
        for (const auto* pButton :
            pWidget ? pWidget->findChildren<QAbstractButton*>() : QList<QAbstractButton*>())
            Texts << pButton->text() << pButton->toolTip();
        for (const auto* pLabel : pWidget ? pWidget->findChildren<QLabel*>() : QList<QLabel*>())
            Texts << pLabel->text() << pLabel->toolTip();
        if (const auto* pButton = qobject_cast<const QAbstractButton*>(pWidget))
            Texts << pButton->text() << pButton->toolTip();
        return Texts.join(QLatin1Char(' '));
    }
    /// Whether the document changed; the user says yes to whatever is told.
    bool dropLayers(const QMimeData& Data, const QPair<int, QModelIndex>& Place, Qt::Key Key)
    {
        QTimer Answer;
        connect(&Answer, &QTimer::timeout, this, [] {
            if (auto* pBox = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
                pBox->accept();
        });
        Answer.start(0);
        const int Steps = OrvUndoManager::instance().stack()->index();
        const Qt::KeyboardModifiers Modifiers = Key == Qt::Key_Alt ? Qt::AltModifier
            : Key == Qt::Key_Shift                                 ? Qt::ShiftModifier
                                                                   : Qt::NoModifier;
        if (Modifiers)
            QTest::keyPress(m_pView->treeView(), Key, Modifiers);
        m_pView->model()->dropMimeData(&Data, Qt::CopyAction, Place.first, 0, Place.second);
        if (Modifiers)
            QTest::keyRelease(m_pView->treeView(), Key);
        return OrvUndoManager::instance().stack()->index() > Steps;
    }
    bool dropOnTree(const QMimeData& Data, const QPoint& Place)
    {
        QWidget* pViewport = m_pView->treeView()->viewport();
        QDragEnterEvent Enter(Place, Qt::CopyAction, &Data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(pViewport, &Enter);
        QDragMoveEvent Move(Place, Qt::CopyAction, &Data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(pViewport, &Move);
        if (!Move.isAccepted())
            return false;
        QDropEvent Drop(Place, Qt::CopyAction, &Data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(pViewport, &Drop);
        return Drop.isAccepted();
    }

    SettingsDirectory m_Directory;
    QString m_Steel;
    OrvShaderInput *m_pBase = nullptr, *m_pRough = nullptr;
    OrvLayerShader* m_pShader = nullptr;
    std::unique_ptr<OrvLayerView> m_pView;
};

QTEST_MAIN(TstMaterialLayers)
#include "TstMaterialLayers.moc"
