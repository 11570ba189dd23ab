#include "Tests/Support/OrvTestProject.h"

#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderUtils.h"
#include "OrvCore/Shelf/OrvMaterialPaintManager.h"
#include "OrvCore/Shelf/OrvShelfDirectories.h"
#include "OrvCore/Shelf/OrvShelfThumbnailer.h"
#include "OrvCore/Shelf/OrvSnCustomProceduralNode.h"
#include "OrvCoreModules/Menus/OrvMenu.h"
#include "OrvCoreModules/Properties/OrvNodePropertyEditor.h"
#include "OrvCoreModules/Properties/OrvNodePropertyEditors.h"
#include "OrvCoreModules/Shelf/OrvShelfModel.h"
#include "OrvCoreModules/Shelf/OrvShelfPalette.h"

#include <QtCore/QDir>
#include <QtCore/QMimeData>
#include <QtCore/QStandardPaths>
#include <QtCore/QTimer>
#include <QtCore/QUrl>
#include <QtTest/QtTest>
#include <QtWidgets/QAbstractSpinBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListView>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QUndoStack>

/// The palette with the shelf, and the editor of what is taken from it.
class TstShelfPalette : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_pPalette = std::make_unique<OrvShelfPalette>();
        m_pPalette->resize(460, 520);
        m_pPalette->show();
        QTRY_VERIFY(m_pPalette->model()->rowCount() > 0);
    }
    void cleanup() { m_pPalette.reset(); }

    void thumbnailsReplaceTheIconsOfTheKinds()
    {
        QTRY_VERIFY_WITH_TIMEOUT(m_pPalette->model()->thumbnailer()->isIdle(), 60000);
        const QModelIndex Index = find("Camouflage");
        const QImage Thumbnail = Index.data(Qt::DecorationRole).value<QIcon>().pixmap(64, 64).toImage();
        QSet<QRgb> Colors;
        for (int Place = 4; Place < Thumbnail.width(); ++Place)
            Colors.insert(Thumbnail.pixel(Place, Place));
        QVERIFY(Colors.size() >= 4);
        // Menus have them too.
        const auto Procedurals = OrvMaterialPaintManager::instance().customProceduralsFromShelf();
        QCOMPARE(Procedurals.value("Pattern/Camouflage").second.pixmap(64, 64).toImage(), Thumbnail);
        // Another palette finds them made.
        OrvShelfModel Second;
        Second.open();
        QVERIFY(Second.thumbnailer()->isIdle());
    }

    void searchingFindsNamesFoldersAndDescriptions()
    {
        QListView* pView = m_pPalette->view();
        const int All = pView->model()->rowCount();
        for (const char* pText : {"camou", "PATTERN", " four flat "}) {
            m_pPalette->searchField()->setText(pText);
            QVERIFY2(pView->model()->rowCount() >= 1 && pView->model()->rowCount() < All, pText);
            QVERIFY(find("Camouflage").isValid());
        }
        m_pPalette->searchField()->setText("no such thing");
        QVERIFY(!pView->isVisible());
        m_pPalette->searchField()->clear();
        QVERIFY(pView->isVisible());
        QCOMPARE(pView->model()->rowCount(), All);
    }

    void aDoubleClickAddsALayer()
    {
        OrvTestProject Project;
        OrvLayerManager::instance().setCurrentLayerStack(Project.channel());
        doubleClick(find("Camouflage"));
        OrvLayer* pLayer = Project.layer("Camouflage");
        QVERIFY(pLayer && pLayer->isCurrent() && pLayer->isSelected());
        QCOMPARE(OrvUndoManager::instance().stack()->count(), 1);
        doubleClick(find("Worn Leather")); // a material needs a shader
        QCOMPARE(OrvUndoManager::instance().stack()->count(), 1);
        QVERIFY(!menuAction(find("Worn Leather"), 0)->isEnabled());
        OrvLayerShader* pShader
            = OrvLayerShaderUtils::createShaderFromKey(QStringLiteral("Shader/MetallicRoughness"), true);
        QVERIFY(pShader->setInputShaderInput(QStringLiteral("Roughness"), Project.channel()));
        OrvUndoManager::instance().clear();
        doubleClick(find("Worn Leather"));
        QVERIFY(Project.layer("Worn Leather") && Project.layer("Worn Leather")->isCurrent());
        QVERIFY(menuAction(find("Worn Leather"), 0)->isEnabled());
        OrvLayerManager::instance().setCurrentLayerStack(nullptr);
        doubleClick(find("Camouflage"));
        QCOMPARE(OrvUndoManager::instance().stack()->count(), 1);
    }

    void aDoubleClickOnADamagedFileTellsWhatIsWrong()
    {
        QStandardPaths::setTestModeEnabled(true);
        QDir Shelf(OrvShelfDirectories::user());
        QVERIFY(Shelf.mkpath(QStringLiteral(".")));
        QFile File(Shelf.filePath(QStringLiteral("Torn.orvproc")));
        QVERIFY(File.open(QIODevice::WriteOnly));
        File.write("{ torn");
        File.close();
        OrvMaterialPaintManager::instance().reload();
        QTRY_VERIFY(find(QStringLiteral("Torn")).isValid());
        QString Told;
        QTimer::singleShot(100, this, [&Told] {
            auto* pBox = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            Told = pBox ? pBox->text() : QString();
            if (pBox)
                pBox->accept();
        });
        doubleClick(find(QStringLiteral("Torn")));
        QVERIFY2(Told.contains(QStringLiteral("Torn")), qPrintable(Told));
        QVERIFY(File.remove());
        QStandardPaths::setTestModeEnabled(false);
        OrvMaterialPaintManager::instance().reload();
    }

    void theMenuMakesLayersAndMasks()
    {
        OrvTestProject Project;
        OrvLayerManager::instance().setCurrentLayerStack(Project.channel());
        OrvLayer* pLayer = Project.paint("Painted", OrvColor::white());
        pLayer->makeCurrent(false, true);
        chooseFromMenu(find("Dirt"), 1);
        QVERIFY(pLayer->hasMaskCustomProcedural());
        QVERIFY(!menuAction(find("Dirt"), 1)->isEnabled()); // it has one now
        chooseFromMenu(find("Dirt"), 0);
        QCOMPARE(Project.tree(), QStringLiteral("Dirt Painted"));
        QVERIFY(!menuAction(find("Worn Leather"), 0)->isEnabled());
    }

    void entriesAreDraggedAsFiles()
    {
        const QModelIndex Index = find("Camouflage");
        const std::unique_ptr<QMimeData> pData(m_pPalette->view()->model()->mimeData({Index}));
        QVERIFY(OrvMaterialPaintManager::isMimeDataCustomProceduralFile(pData.get()));
        QVERIFY(QFileInfo(pData->urls().first().toLocalFile()).isFile());
        QVERIFY(Index.flags() & Qt::ItemIsDragEnabled);
    }

    void theEditorShowsWhatTheProceduralExposes()
    {
        OrvTestProject Project;
        QString Error;
        OrvLayer* pLayer
            = Project.channel()->createCustomProceduralLayer("Metal/Rusted Metal", nullptr, 30, Error);
        QVERIFY2(pLayer, qPrintable(Error));
        OrvSnCustomProceduralNode* pNode = pLayer->customProceduralNode();
        const std::unique_ptr<QWidget> pEditor(OrvNodePropertyEditors::create(
            pNode, "Rusted Metal", OrvNodePropertyEditor::UserAttributes, nullptr));
        pEditor->resize(320, 240);
        pEditor->show();
        QStringList Labels;
        for (const QLabel* pLabel : pEditor->findChildren<QLabel*>())
            Labels.append(pLabel->text());
        for (const char* pLabel : {"Metal", "Rust", "Patch Density", "Seed"})
            QVERIFY2(
                Labels.filter(QRegularExpression(QStringLiteral("^%1:?$").arg(pLabel))).size() >= 1, pLabel);
        for (const QString& Label : qAsConst(Labels))
            QVERIFY2(!Label.contains("Procedural") && !Label.contains("Extent"), qPrintable(Label));
    }

private:
    QModelIndex find(const QString& Name) const
    {
        const QAbstractItemModel* pModel = m_pPalette->view()->model();
        for (int Row = 0; Row < pModel->rowCount(); ++Row) {
            if (pModel->index(Row, 0).data().toString() == Name)
                return pModel->index(Row, 0);
        }
        return {};
    }

    void doubleClick(const QModelIndex& Index)
    {
        QListView* pView = m_pPalette->view();
        pView->scrollTo(Index);
        const QPoint Place = pView->visualRect(Index).center();
        QTest::mouseClick(pView->viewport(), Qt::LeftButton, {}, Place);
        QTest::mouseDClick(pView->viewport(), Qt::LeftButton, {}, Place);
    }

    QAction* menuAction(const QModelIndex& Index, int Entry)
    {
        for (OrvMenu* pOld : m_pPalette->findChildren<OrvMenu*>())
            delete pOld;
        m_pPalette->view()->scrollTo(Index);
        Q_EMIT m_pPalette->view()->customContextMenuRequested(m_pPalette->view()->visualRect(Index).center());
        return m_pPalette->findChild<OrvMenu*>()->actions().value(Entry);
    }
    void chooseFromMenu(const QModelIndex& Index, int Entry) { menuAction(Index, Entry)->trigger(); }

    std::unique_ptr<OrvShelfPalette> m_pPalette;
};

QTEST_MAIN(TstShelfPalette)
#include "TstShelfPalette.moc"
