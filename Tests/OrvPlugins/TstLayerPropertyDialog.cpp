#include "LayersFixture.h"
#include "SettingsDirectory.h"

#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCore/Shaders/OrvLayerShaderUtils.h"
#include "OrvCore/Shelf/OrvShelfDirectories.h"
#include "OrvCoreModules/Properties/OrvPropertyView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerPropertyDialog.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputRow.h"

#include <QtTest/QtTest>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QUndoStack>

#include <memory>

using namespace LayersFixture;

/// The dialog behind "Layer Properties", opened from a row.
class TstLayerPropertyDialog : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_Directory.isValid()); }

    void init()
    {
        OrvProjectManager::instance().newProject(QStringLiteral("Test"));
        m_Channel = addChannel(QStringLiteral("Diffuse"));
        m_View = std::make_unique<OrvLayerView>(nullptr, 0);
        m_View->setLayerStack(m_Channel);
        m_View->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_View.get()));
    }

    void cleanup()
    {
        m_View.reset();
        OrvProjectManager::instance().closeProject();
    }

    void eachImageSetHasATab()
    {
        OrvLayer* pLayer = addLayer(m_Channel, QStringLiteral("Rust"));
        QCOMPARE(tabs(*open(pLayer)), QStringList({"Paint"}));
        pLayer->addMaskImageSet();
        QCOMPARE(tabs(*open(pLayer)), QStringList({"Paint", "Mask"}));
        pLayer->convertMaskToMaskStack();
        QCOMPARE(tabs(*open(pLayer)), QStringList({"Paint"}));
        QCOMPARE(tabs(*open(group(m_Channel, {pLayer}, QStringLiteral("Group")))), QStringList());
    }

    void everyKindShowsWhatItIsMadeOf()
    {
        OrvLayer* pPaint = addLayer(m_Channel, QStringLiteral("Rust"));
        QString Error;
        const QString Dirt = OrvShelfDirectories::shipped() + QStringLiteral("/Masks/Dirt.orvproc");
        OrvLayer* pCustom
            = m_Channel->createCustomProceduralLayer(Dirt, nullptr, OrvLayerCreateFlags(), Error);
        OrvLayer* pAdjustment
            = m_Channel->createAdjustmentLayer(anyKey("Filter/Adjust/"), OrvLayerCreateFlags());
        const int Plain = nodeViews(*open(pPaint));
        QCOMPARE(Plain, 1);
        QCOMPARE(nodeViews(*open(pCustom)), Plain + 1);
        QCOMPARE(nodeViews(*open(m_Channel->createBakePointLayer(OrvLayerCreateFlags()))), Plain + 1);
        QCOMPARE(nodeViews(*open(m_Channel->createGraphLayer(OrvLayerCreateFlags()))), Plain + 1);
        QCOMPARE(nodeViews(*open(pAdjustment)), Plain + 1);
        pAdjustment->addSecondaryAdjustmentLayerFromKey(anyKey("Filter/Blur/"));
        QCOMPARE(nodeViews(*open(pAdjustment)), Plain + 2);
        QVERIFY(pPaint->addMaskCustomProcedural(Dirt, Error));
        const OrvLayerPropertyDialog* pDialog = open(pPaint);
        QCOMPARE(nodeViews(*pDialog), Plain + 1);
        QCOMPARE(tabs(*pDialog), QStringList({"Paint"}));
        QCOMPARE(pDialog->windowTitle(), QStringLiteral("Layer Properties"));
    }

    void editsGoToTheDocument()
    {
        OrvLayer* pLayer = addLayer(m_Channel, QStringLiteral("Rust"));
        OrvUndoManager::instance().clear();
        OrvLayerPropertyDialog* pDialog = open(pLayer);
        QLineEdit* pName = nameEdit(*pDialog, QStringLiteral("Rust"));
        QVERIFY(pName && pName->isEnabled());
        pName->selectAll();
        QTest::keyClicks(pName, QStringLiteral("Dust"));
        QTest::keyClick(pName, Qt::Key_Return);
        QCOMPARE(pLayer->name(), QStringLiteral("Dust"));
        QCOMPARE(OrvUndoManager::instance().stack()->index(), 1);
        OrvUndoManager::instance().undo();
        QCOMPARE(pName->text(), QStringLiteral("Rust"));

        // A lock is respected, whenever it comes.
        pLayer->setLocked(true);
        QTRY_VERIFY(!pName->isEnabled());
        QVERIFY(!nameEdit(*open(pLayer), QStringLiteral("Rust"))->isEnabled());
        pLayer->setLocked(false);
        QTRY_VERIFY(
            nameEdit(*m_View->findChild<OrvLayerPropertyDialog*>(), QStringLiteral("Rust"))->isEnabled());
    }

    void shaderLayersShowTheirInputs()
    {
        OrvShaderInput* pMaterial = OrvShaderInputUtils::createShaderInput(true);
        OrvLayerShaderManager::instance().setLayerShaderCreating(true);
        OrvLayerShader* pShader
            = OrvLayerShaderUtils::createShaderFromKey(QStringLiteral("Shader/MetallicRoughness"), false);
        OrvLayer* pLayer = pMaterial->createShaderLayer(pShader, OrvLayerCreateFlags());
        OrvLayerShaderManager::instance().setLayerShaderCreating(false);
        m_View->setLayerStack(pMaterial);
        const OrvLayerPropertyDialog* pDialog = open(pLayer);
        const QList<OrvShaderInputRow*> Rows = pDialog->findChildren<OrvShaderInputRow*>();
        QCOMPARE(Rows.size(), pShader->inputNames().size());
        QTest::mouseClick(Rows.first()->invertBox(), Qt::LeftButton);
        QVERIFY(pShader->isInputInverted(Rows.first()->inputName()));
        QTest::mouseClick(Rows.first()->enableBox(), Qt::LeftButton);
        QVERIFY(!pShader->isInputEnabled(Rows.first()->inputName()));
        pLayer->setLocked(true);
        QTRY_VERIFY(!Rows.first()->isEnabled());
        pLayer->setLocked(false);
        QTRY_VERIFY(Rows.first()->isEnabled());
    }

    void dialogGoesWithTheUserOrWithItsLayer()
    {
        OrvLayer* pLayer = addLayer(m_Channel, QStringLiteral("Rust"));
        for (const bool LayerGoes : {false, true}) {
            const QPointer<OrvLayerPropertyDialog> pDialog = open(pLayer);
            // The row may go first.
            m_View->clearAndRefresh();
            QVERIFY(pDialog && pDialog->isVisible());
            if (LayerGoes)
                m_Channel->deleteLayers({pLayer});
            else
                pDialog->findChild<QPushButton*>()->click();
            QTRY_VERIFY(!pDialog);
        }
    }

private:
    /// As the user does, in the row's menu.
    OrvLayerPropertyDialog* open(const OrvLayer* pLayer)
    {
        qDeleteAll(m_View->findChildren<OrvLayerPropertyDialog*>());
        m_View->refresh();
        QWidget* pRow = rowOf(m_View.get(), pLayer);
        QContextMenuEvent Event(QContextMenuEvent::Mouse, QPoint(5, 5), pRow->mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(pRow, &Event);
        auto* pMenu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        for (QAction* pAction : pMenu ? pMenu->actions() : QList<QAction*>()) {
            if (pAction->text() == QStringLiteral("Layer Properties"))
                pAction->trigger();
        }
        if (pMenu)
            pMenu->close();
        return m_View->findChild<OrvLayerPropertyDialog*>();
    }
    static QStringList tabs(const OrvLayerPropertyDialog& Dialog)
    {
        const auto* pTabs = Dialog.findChild<QTabWidget*>();
        QStringList Titles;
        for (int Index = 0; Index < pTabs->count(); ++Index)
            Titles.append(pTabs->tabText(Index));
        return Titles;
    }
    /// Of the layer's nodes, below the tabs.
    static int nodeViews(const OrvLayerPropertyDialog& Dialog)
    {
        return Dialog.findChildren<OrvPropertyView*>().size()
            - Dialog.findChild<QTabWidget*>()->findChildren<OrvPropertyView*>().size();
    }
    static QLineEdit* nameEdit(const OrvLayerPropertyDialog& Dialog, const QString& Name)
    {
        for (QLineEdit* pEdit : Dialog.findChildren<QLineEdit*>()) {
            if (pEdit->text() == Name)
                return pEdit;
        }
        return nullptr;
    }

    SettingsDirectory m_Directory;
    std::unique_ptr<OrvLayerView> m_View;
    OrvShaderInput* m_Channel = nullptr;
};

QTEST_MAIN(TstLayerPropertyDialog)
#include "TstLayerPropertyDialog.moc"
