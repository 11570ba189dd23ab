#include "Tests/OrvPlugins/DroppedFiles.h"
#include "Tests/OrvPlugins/LayersFixture.h"

#include "OrvCore/Shelf/OrvMaterialPaintManager.h"
#include "OrvCore/Shelf/OrvShelfDirectories.h"
#include "OrvCore/Shelf/OrvSnCustomProceduralNode.h"
#include "OrvCoreModules/Menus/OrvMenu.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerComponentPushButton.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerRowIcons.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerTreeView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextConstants.h"

#include <QtCore/QTemporaryDir>
#include <QtWidgets/QUndoStack>

using namespace DroppedFiles;
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

    void whatCannotBeALayerIsRefusedInABox_data()
    {
        QTest::addColumn<QString>("File");
        QTest::addColumn<QString>("State");
        const auto write = [this](const char* pName, const QByteArray& Text) {
            QFile File(m_Directory.filePath(QString::fromLatin1(pName)));
            return File.open(QIODevice::WriteOnly) && File.write(Text) == Text.size() ? File.fileName()
                                                                                      : QString();
        };
        QTest::newRow("no file") << QStringLiteral("/nowhere/None.orvproc") << QString();
        QTest::newRow("empty") << write("Empty.orvproc", "") << QString();
        QTest::newRow("cut off") << write("Cut.orvproc", "{\"orvproc\": 1, \"name\": \"Cut\", \"nod")
                                 << QString();
        QTest::newRow("other bytes") << write("Bytes.orvproc", QByteArray(4096, '\xfe')) << QString();
        QTest::newRow("itself inside") << write("Self.orvproc",
            "{\"orvproc\": 1, \"name\": \"Self\", \"type\": \"color\", \"nodes\": [{\"id\": \"in\", "
            "\"procedural\": \"Self.orvproc\"}], \"output\": \"in\"}")
                                       << QString();
        const QString Dirt = OrvShelfDirectories::shipped() + QStringLiteral("/Masks/Dirt.orvproc");
        QTest::newRow("locked") << Dirt << QStringLiteral("locked");
        QTest::newRow("cached") << Dirt << QStringLiteral("cached");
    }
    void whatCannotBeALayerIsRefusedInABox()
    {
        QFETCH(QString, File);
        QFETCH(QString, State);
        OrvLayer* pGroup = group(m_pChannel, {addLayer(m_pChannel, "Base")}, "G");
        pGroup->setLocked(State == QStringLiteral("locked"));
        if (State == QStringLiteral("cached"))
            pGroup->cacheLayer();
        refresh();
        OrvUndoManager::instance().clear();
        const std::unique_ptr<QMimeData> pData = dragged(File);
        const QString Title = refusalOf([&] {
            QVERIFY(!model()->dropMimeData(pData.get(), Qt::CopyAction, 0, 0, model()->index(0, 0)));
        });
        QCOMPARE(Title, QStringLiteral("Custom Procedural Layer Creation Failed"));
        QVERIFY(!OrvUndoManager::instance().stack()->canUndo() && !OrvUndoManager::instance().isInMacro());
        QCOMPARE(stackText(m_pChannel), QStringLiteral("G(Base)"));
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
        needCurvature(pLayer->customProceduralNode(), "scalar");
        QVERIFY(shows(LayerKindIcon::CustomProceduralScalarMissingGeoChannel));
    }

    void rowOfAMaskTellsWhatIsMissing()
    {
        QString Error;
        OrvLayer* pLayer = m_pChannel->createCustomProceduralLayer(m_File, nullptr, 30, Error);
        QVERIFY2(pLayer && pLayer->addMaskCustomProcedural(m_File, Error), qPrintable(Error));
        refresh();
        m_pView->resize(400, 700);
        m_pView->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_pView.get()));
        m_pView->treeView()->grab();
        OrvSnCustomProceduralNode* pNode = pLayer->maskCustomProceduralNode();
        const auto icon = [&] {
            for (const auto* pButton : m_pView->findChildren<OrvLayerComponentPushButton*>()) {
                if (pButton->componentNode() == pNode)
                    return pButton->icon().pixmap(16, 16).toImage();
            }
            return QImage();
        };
        const QImage Complete = icon();
        QCOMPARE(Complete, OrvLayerRowIcons::mask(pLayer).pixmap(16, 16).toImage());
        // What the content lacks is told by its own button.
        needCurvature(pLayer->customProceduralNode(), "mask");
        QCOMPARE(icon(), Complete);
        needCurvature(pNode, "mask");
        QTRY_VERIFY(icon() != Complete);
        QCOMPARE(icon(), OrvLayerRowIcons::mask(pLayer).pixmap(16, 16).toImage());
    }

private:
    /// Makes a procedural of another type of it, which reads a channel that the object lacks.
    static void needCurvature(OrvSnCustomProceduralNode* pNode, const QString& Type)
    {
        const QString Attribute = OrvSnCustomProceduralNode::ProceduralAttribute;
        QString Text = pNode->userAttribute(Attribute).value().toString();
        Text.replace("\"type\":\"mask\"",
            QStringLiteral("\"type\":\"%1\",\"channels\":[\"Curvature\"]").arg(Type));
        pNode->setUserAttributeValue(Attribute, Text);
    }
    OrvLayerViewModel* model() const { return m_pView->model(); }
    void refresh()
    {
        m_pView->setLayerStack(m_pChannel);
        m_pView->refresh();
    }

    QTemporaryDir m_Directory;
    OrvShaderInput* m_pChannel = nullptr;
    std::unique_ptr<OrvLayerView> m_pView;
    QString m_File;
};

QTEST_MAIN(TstCustomProcedurals)
#include "TstCustomProcedurals.moc"
