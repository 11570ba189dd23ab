#include "Tests/OrvPlugins/LayersFixture.h"

#include "OrvCore/Shelf/OrvMaterialPaintManager.h"
#include "OrvCore/Shelf/OrvShelfDirectories.h"
#include "OrvCore/Shelf/OrvSnCustomProceduralNode.h"
#include "OrvCoreModules/Menus/OrvMenu.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerRowIcons.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextConstants.h"

#include <QtCore/QMimeData>
#include <QtCore/QUrl>
#include <QtTest/QtTest>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QUndoStack>

using namespace LayersFixture;

/// Custom procedurals in a Layers palette: dropped files, the menu, the icons of rows.
class TstCustomProcedurals : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        OrvProjectManager::instance().newProject(QStringLiteral("Test"), QStringLiteral("Head"));
        m_pChannel = addChannel(QStringLiteral("Diffuse"));
        m_pView = std::make_unique<OrvLayerView>(nullptr, 0);
        m_File = OrvShelfDirectories::shipped() + QStringLiteral("/Masks/Dirt.orvproc");
    }
    void cleanup()
    {
        m_pView.reset();
        OrvProjectManager::instance().closeProject();
    }

    void filesAreDroppedWhereLayersCanStand()
    {
        addLayers(m_pChannel, {"Top", "Base"});
        refresh();
        const std::unique_ptr<QMimeData> pData = dragged(m_File);
        QVERIFY(model()->canDropMimeData(pData.get(), Qt::CopyAction, 1, 0, QModelIndex()));
        QVERIFY(model()->dropMimeData(pData.get(), Qt::CopyAction, 1, 0, QModelIndex()));
        QCOMPARE(stackText(m_pChannel), QStringLiteral("Top Dirt Base"));
        QVERIFY(model()->dropMimeData(pData.get(), Qt::CopyAction, -1, 0, QModelIndex()));
        QCOMPARE(stackText(m_pChannel), QStringLiteral("Top Dirt Base Dirt 2"));
        OrvUndoManager::instance().undo();
        OrvUndoManager::instance().undo();
        QCOMPARE(stackText(m_pChannel), QStringLiteral("Top Base"));
    }

    void aFileThatIsNoneIsRefusedInABox()
    {
        addLayer(m_pChannel, "Base");
        refresh();
        OrvUndoManager::instance().clear();
        const std::unique_ptr<QMimeData> pData = dragged(QStringLiteral("/nowhere/None.orvproc"));
        QString Title;
        QTimer::singleShot(0, [&Title] {
            auto* pBox = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            QVERIFY(pBox);
            Title = pBox->windowTitle();
            pBox->accept();
        });
        QVERIFY(!model()->dropMimeData(pData.get(), Qt::CopyAction, 0, 0, QModelIndex()));
        QCOMPARE(Title, QStringLiteral("Custom Procedural Layer Creation Failed"));
        QVERIFY(!OrvUndoManager::instance().stack()->canUndo());
    }

    void theMenuOffersWhatIsOnTheShelf()
    {
        QMenu Root;
        QHash<QString, QMenu*> Menus{{"Noise", Root.addMenu("Noise")}};
        m_pView->createCustomProceduralLayerMenu(
            &Root, Menus, {{"Noise/Soft", {"Soft Noise", QIcon()}}, {"Masks/Dirt", {"Dirt", QIcon()}}});
        QCOMPARE(Root.actions().size(), 2); // "Noise" was used again
        QCOMPARE(Menus.value("Noise")->actions().size(), 1);
        QAction* pDirt = Menus.value("Masks")->actions().first();
        QCOMPARE(pDirt->toolTip(), QStringLiteral("Add Custom Procedural Layer Dirt"));
        refresh();
        pDirt->trigger();
        QCOMPARE(stackText(m_pChannel), QStringLiteral("Dirt"));
        QVERIFY(m_pChannel->layerList().first()->isCustomProceduralLayer());
    }

    void rowsTellTheTypeAndWhatIsMissing()
    {
        using namespace OrvLayerViewContext;
        QString Error;
        OrvLayer* pLayer = m_pChannel->createCustomProceduralLayer(m_File, nullptr, 30, Error);
        QVERIFY2(pLayer, qPrintable(Error));
        const auto shows = [&](LayerKindIcon Kind) {
            return OrvLayerRowIcons::content(pLayer, m_pChannel).pixmap(16, 16).toImage()
                == layerKindIcon(Kind).pixmap(16, 16).toImage();
        };
        QVERIFY(shows(LayerKindIcon::CustomProceduralMask));
        OrvSnCustomProceduralNode* pNode = pLayer->customProceduralNode();
        const QString Attribute = OrvSnCustomProceduralNode::ProceduralAttribute;
        QString Text = pNode->userAttribute(Attribute).value().toString();
        Text.replace("\"type\":\"mask\"", "\"type\":\"scalar\",\"channels\":[\"Curvature\"]");
        pNode->setUserAttributeValue(Attribute, Text);
        QVERIFY(shows(LayerKindIcon::CustomProceduralScalarMissingGeoChannel));
    }

private:
    static std::unique_ptr<QMimeData> dragged(const QString& Path)
    {
        auto pData = std::make_unique<QMimeData>();
        pData->setUrls({QUrl::fromLocalFile(Path)});
        return pData;
    }
    OrvLayerViewModel* model() const { return m_pView->model(); }
    void refresh()
    {
        m_pView->setLayerStack(m_pChannel);
        m_pView->refresh();
    }

    OrvShaderInput* m_pChannel = nullptr;
    std::unique_ptr<OrvLayerView> m_pView;
    QString m_File;
};

QTEST_MAIN(TstCustomProcedurals)
#include "TstCustomProcedurals.moc"
