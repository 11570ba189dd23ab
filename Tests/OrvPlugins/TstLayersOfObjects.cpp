#include "LayerDrags.h"
#include "LayersFixture.h"
#include "LayersPaletteFixture.h"
#include "MessageBoxes.h"
#include "SettingsDirectory.h"
#include "StackPalettes.h"

#include "Tests/Support/OrvTestProject.h"

#include "OrvCoreModules/Window/OrvStatusManager.h"
#include "OrvDdi/Files/OrvDataBlockManager.h"

#include <QtCore/QTimer>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMenu>
#include <QtWidgets/QUndoStack>

#include <memory>

using namespace LayersFixture;
using namespace StackPalettes;

/// Two objects whose channels and layers have the same names, side by side in two pinned palettes: what is
/// dragged from one into the other, what commands change, and what becomes of the palettes when their object
/// is renamed, left or removed.
class TstLayersOfObjects : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_Directory.isValid());
        OrvDataBlockManager::instance().setCacheRoots({m_Directory.filePath(QStringLiteral("cache"))});
        m_pMain = showLayersPalette(QSize(1000, 700));
        QVERIFY(m_pMain);
    }

    void init()
    {
        m_pProject = std::make_unique<OrvTestProject>();
        m_pHead = project()->currentGeoEntity();
        m_pBody = project()->addGeoEntity(QStringLiteral("Body"));
        m_pHeadChannel = m_pProject->channel();
        m_pBodyChannel = OrvShaderInputUtils::create(
            m_pBody->shaderNetwork(), QStringLiteral("Diffuse"), QSize(32, 32), GL_FLOAT);
        for (OrvShaderInput* pChannel : {m_pHeadChannel, m_pBodyChannel}) {
            const bool IsHead = pChannel == m_pHeadChannel;
            m_pProject->paint(QStringLiteral("Base"), OrvColor(IsHead, 0.0f, !IsHead), pChannel);
            m_pProject->paint(QStringLiteral("Dirt"), OrvColor(0.0f, IsHead, 0.0f, 0.5f), pChannel);
            OrvShaderInputManager::instance().makeShaderInputCurrent(pChannel, true);
            manager().openLayerStackPalette(pChannel, false);
        }
        QCOMPARE(stackPalettes().size(), 2);
        m_pHeadView = viewOf(m_pHeadChannel);
        m_pBodyView = viewOf(m_pBodyChannel);
        for (OrvLayerView* pView : {m_pHeadView, m_pBodyView}) {
            pView->refresh();
            QVERIFY(QTest::qWaitForWindowExposed(pView->window()));
        }
        OrvUndoManager::instance().clear();
        m_Boxes.take();
    }
    void cleanup()
    {
        m_pProject.reset();
        QTest::qWait(20);
        QVERIFY(stackPalettes().isEmpty());
    }

    void layersBetweenObjectsAreRefusedInWords_data()
    {
        QTest::addColumn<int>("Modifiers");
        QTest::addColumn<QString>("Message");
        QTest::newRow("move") << int(Qt::NoModifier)
                              << "Could not move layer 'Dirt'. Moving layers between objects isn't allowed.";
        QTest::newRow("share")
            << int(Qt::ShiftModifier)
            << "Could not add a shared layer for 'Dirt'. Sharing layers between objects isn't allowed.";
    }
    void layersBetweenObjectsAreRefusedInWords()
    {
        QFETCH(int, Modifiers);
        QFETCH(QString, Message);
        const QByteArray Head = documentOf(m_pHead), Body = documentOf(m_pBody);
        const std::unique_ptr<QMimeData> pDirt = rows(m_pHeadView, {"Dirt"});
        // While the drag is there, in the status line.
        QVERIFY(!dragOver(m_pBodyView, *pDirt, "Base", Qt::KeyboardModifiers(Modifiers)));
        QCOMPARE(OrvStatusManager::instance().text(), Message);
        // Keys let go, or pressed, between the last move and the drop: in a box.
        QVERIFY(dragOver(m_pBodyView, *pDirt, "Base", Qt::AltModifier));
        QCOMPARE(OrvStatusManager::instance().text(), QString());
        dropOn(m_pBodyView, *pDirt, "Base", Qt::KeyboardModifiers(Modifiers));
        QCOMPARE(m_Boxes.take(), QStringList{QStringLiteral("Layer Operation Failed: ") + Message});
        QCOMPARE(documentOf(m_pHead), Head);
        QCOMPARE(documentOf(m_pBody), Body);
        QCOMPARE(OrvUndoManager::instance().stack()->count(), 0);
    }

    void layersGoToOtherObjectsAsCopies()
    {
        const QByteArray Head = documentOf(m_pHead), Body = documentOf(m_pBody);
        const std::unique_ptr<QMimeData> pBoth = rows(m_pHeadView, {"Base", "Dirt"});
        QVERIFY(dragOver(m_pBodyView, *pBoth, "Base", Qt::AltModifier));
        dropOn(m_pBodyView, *pBoth, "Base", Qt::AltModifier);
        QVERIFY(m_Boxes.isEmpty());
        QCOMPARE(stackText(m_pBodyChannel), QStringLiteral("Dirt Dirt Base Base"));
        QCOMPARE(documentOf(m_pHead), Head);
        OrvLayer* pCopy = m_pBodyChannel->layerList()[2];
        QCOMPARE(pCopy->blendNode()->network(), m_pBody->shaderNetwork());
        QVERIFY(OrvTestProject::same(OrvTestProject::pixel(pCopy->paintNode()), OrvColor(1, 0, 0)));
        m_pBodyView->refresh();
        QCOMPARE(rowText(m_pBodyView), QStringLiteral("Dirt Dirt Base Base"));
        QCOMPARE(rowText(m_pHeadView), QStringLiteral("Dirt Base"));
        OrvTestProject::undo();
        QCOMPARE(documentOf(m_pBody), Body);
        // Within its object a layer moves, whichever object is current.
        const std::unique_ptr<QMimeData> pBase = rows(m_pBodyView, {"Base"});
        QVERIFY(dragOver(m_pBodyView, *pBase, "Dirt", Qt::NoModifier));
        dropOn(m_pBodyView, *pBase, "Dirt", Qt::NoModifier);
        QCOMPARE(stackText(m_pBodyChannel), QStringLiteral("Base Dirt"));
        QCOMPARE(stackText(m_pHeadChannel), QStringLiteral("Dirt Base"));
    }

    void commandsWorkOnTheObjectShown()
    {
        // The tool bar of a pinned palette, whichever object is current.
        project()->setCurrentGeoEntity(m_pHead);
        OrvLayer* pDirt = OrvTestProject::layer(QStringLiteral("Dirt"), m_pBodyChannel);
        pDirt->makeCurrent(false, false);
        OrvTestProject::layer(QStringLiteral("Base"), m_pHeadChannel)->makeCurrent(false, true);
        const QByteArray Head = documentOf(m_pHead);
        m_pBodyView->addLayerMask();
        QVERIFY(pDirt->hasMaskImageSet());
        m_pBodyView->addMaskStack();
        QVERIFY(pDirt->hasMaskStack());
        QTimer::singleShot(0, [] {
            auto* pMenu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            QVERIFY(pMenu);
            while (pMenu->actions().first()->menu())
                pMenu = pMenu->actions().first()->menu();
            pMenu->actions().first()->trigger();
        });
        m_pBodyView->addAdjustmentStack();
        QTRY_VERIFY(pDirt->hasAdjustmentStack());
        QCOMPARE(documentOf(m_pHead), Head);
        if (QWidget* pMenu = QApplication::activePopupWidget())
            pMenu->close();
    }

    /// Its palette is there a little longer.
    void commandsOfARemovedStackChangeNoOther()
    {
        project()->setCurrentGeoEntity(m_pHead);
        OrvTestProject::layer(QStringLiteral("Base"), m_pHeadChannel)->makeCurrent(false, true);
        OrvShaderInputManager::instance().destroy(m_pBodyChannel, OrvShaderInputManager::SharersBecomeGroups);
        QVERIFY(m_pBodyView->layerStack() && !m_pBodyView->layerStack()->network());
        const QByteArray Head = documentOf(m_pHead);
        m_pBodyView->addLayerMask();
        QCOMPARE(documentOf(m_pHead), Head);
    }

    void palettesFollowTheirObjects()
    {
        QCOMPARE(titles(), QStringList({"Body/Diffuse", "Head/Diffuse"}));
        m_pBody->setName(QStringLiteral("Torso"));
        QCOMPARE(titles(), QStringList({"Head/Diffuse", "Torso/Diffuse"}));
        // The main palette shows the object that is worked on; pinned ones stay with theirs.
        project()->setCurrentGeoEntity(m_pBody);
        QTRY_COMPARE(m_pMain->layerStack(), static_cast<OrvLayerStack*>(m_pBodyChannel));
        QCOMPARE(m_pHeadView->layerStack(), static_cast<OrvLayerStack*>(m_pHeadChannel));
        project()->setCurrentGeoEntity(m_pHead);
        QTRY_COMPARE(m_pMain->layerStack(), static_cast<OrvLayerStack*>(m_pHeadChannel));

        QVERIFY(project()->removeGeoEntity(m_pBody));
        QTRY_COMPARE(titles(), QStringList{"Head/Diffuse"});
        QCOMPARE(m_pMain->layerStack(), static_cast<OrvLayerStack*>(m_pHeadChannel));
        OrvTestProject::undo();
        manager().openLayerStackPalette(m_pBodyChannel, false);
        QCOMPARE(titles(), QStringList({"Head/Diffuse", "Torso/Diffuse"}));
        viewOf(m_pBodyChannel)->refresh();
        QCOMPARE(rowText(viewOf(m_pBodyChannel)), QStringLiteral("Dirt Base"));

        // The one that the main palette shows goes, too.
        QVERIFY(project()->removeGeoEntity(m_pHead));
        QTRY_COMPARE(titles(), QStringList{"Torso/Diffuse"});
        QTRY_COMPARE(m_pMain->layerStack(), static_cast<OrvLayerStack*>(m_pBodyChannel));
        OrvTestProject::undo();
        QTRY_COMPARE(m_pMain->layerStack(), static_cast<OrvLayerStack*>(m_pHeadChannel));
    }

    void palettesOfBothObjectsComeBackWithTheProject()
    {
        QString Error;
        const QString Path = m_Directory.filePath(QStringLiteral("two.orvi"));
        QVERIFY2(OrvProjectManager::instance().saveProjectAs(Path, Error), qPrintable(Error));
        const QStringList Before = titles();
        QVERIFY2(OrvProjectManager::instance().openProject(Path, Error), qPrintable(Error));
        QTRY_COMPARE(titles(), Before);
        QVERIFY(Before.size() == 2);
        QSet<const OrvShaderNetwork*> Shown;
        for (const OrvPalette* pPalette : stackPalettes())
            Shown.insert(layerViewOf(pPalette)->layerStack()->network());
        QCOMPARE(Shown.size(), 2);
    }

private:
    static OrvProject* project() { return OrvProjectManager::instance().currentProject(); }
    static OrvLayerViewContextManager& manager() { return OrvLayerViewContextManager::instance(); }
    static QStringList titles()
    {
        QStringList Titles;
        for (const OrvPalette* pPalette : stackPalettes())
            Titles.append(pPalette->headerTitle());
        Titles.sort();
        return Titles;
    }
    static OrvLayerView* viewOf(const OrvLayerStack* pStack) { return layerViewOf(paletteOf(pStack)); }
    static QByteArray documentOf(const OrvGeoEntity* pEntity)
    {
        QByteArray Bytes;
        for (const OrvSnBaseNode* pNode : pEntity->shaderNetwork()->nodes())
            Bytes += QJsonDocument(OrvNodeSubgraph::describe(pNode).toJson()).toJson();
        return Bytes;
    }
    static std::unique_ptr<QMimeData> rows(const OrvLayerView* pView, const QStringList& Names)
    {
        QList<OrvLayer*> Layers;
        for (const QString& Name : Names)
            Layers.append(OrvTestProject::layer(Name, pView->layerStack()));
        return LayerDrags::ofRows(pView, Layers);
    }
    /// The gap above a row.
    static QPoint above(const OrvLayerView* pView, const char* pName)
    {
        return LayerDrags::above(pView, OrvTestProject::layer(QLatin1String(pName), pView->layerStack()));
    }
    static bool dragOver(
        const OrvLayerView* pView, const QMimeData& Data, const char* pRow, Qt::KeyboardModifiers Keys)
    {
        return LayerDrags::over(pView->treeView()->viewport(), Data, above(pView, pRow), Keys)
            != Qt::IgnoreAction;
    }
    static void dropOn(
        const OrvLayerView* pView, const QMimeData& Data, const char* pRow, Qt::KeyboardModifiers Keys)
    {
        const Qt::Key Key = Keys & Qt::AltModifier ? Qt::Key_Alt : Qt::Key_Shift;
        if (Keys)
            QTest::keyPress(pView->treeView(), Key, Keys);
        LayerDrags::drop(pView->treeView()->viewport(), Data, above(pView, pRow), Keys);
        QTest::keyRelease(pView->treeView(), Key);
    }

    SettingsDirectory m_Directory;
    MessageBoxes m_Boxes;
    std::unique_ptr<OrvTestProject> m_pProject;
    OrvGeoEntity *m_pHead = nullptr, *m_pBody = nullptr;
    OrvShaderInput *m_pHeadChannel = nullptr, *m_pBodyChannel = nullptr;
    OrvLayerView *m_pMain = nullptr, *m_pHeadView = nullptr, *m_pBodyView = nullptr;
};

int main(int ArgumentCount, char** pArguments)
{
    OrvApplication Application(ArgumentCount, pArguments);
    TstLayersOfObjects Test;
    return QTest::qExec(&Test, ArgumentCount, pArguments);
}

#include "TstLayersOfObjects.moc"
