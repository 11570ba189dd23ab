#include "Tests/OrvPlugins/LayersPaletteFixture.h"
#include "Tests/OrvPlugins/SettingsDirectory.h"
#include "Tests/Support/OrvDebugReports.h"
#include "Tests/Support/OrvTestProject.h"

#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCore/Shaders/OrvLayerShaderUtils.h"
#include "OrvCoreModules/Window/OrvStatusManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputChannelButton.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputRow.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputsPane.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderMaterialsView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderView.h"

#include <QtCore/QMimeData>
#include <QtGui/QDragMoveEvent>
#include <QtTest/QtTest>
#include <QtWidgets/QTabBar>

#include <memory>

/// The tabs of the Shaders palette, which follow the current shader and the material channels that feed it.
class TstMaterialsView : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_Directory.isValid());
        QVERIFY(LayersFixture::showLayersPalette(QSize(900, 700)));
        // With room for all tabs.
        OrvPalette* pPalette = OrvPaletteManager::find(QStringLiteral("Shaders"));
        pPalette->open();
        pPalette->setFloating(true);
        pPalette->resize(400, 900);
        m_View = qobject_cast<OrvShaderMaterialsView*>(
            OrvLayerViewContextManager::instance().shaderView()->parentWidget());
        QVERIFY(m_View);
        m_Tabs = m_View->tabBar();
    }

    void init()
    {
        m_Project = std::make_unique<OrvTestProject>();
        m_Shader = addShader("Shader/LayeredMaterial");
        m_Reports.Texts.clear();
    }

    void cleanup()
    {
        shaders().setLayerShaderCreating(false);
        m_Project.reset();
    }

    void tabsStandForConnectedMaterials()
    {
        QCOMPARE(tabs(), QStringList({"Shaders"}));
        OrvShaderInput* pSkin = connectMaterial(1);
        QCOMPARE(tabs(), QStringList({"Shaders", "Shader Layers"}));
        QCOMPARE(object(1), pSkin);
        OrvShaderInput* pCloth = connectMaterial(3);
        QCOMPARE(m_Tabs->count(), 3);
        QCOMPARE(object(2), pCloth);

        // An ordinary channel gets no tab, a channel in two places one.
        QVERIFY(m_Shader->setInputShaderInput(QStringLiteral("Displacement"), m_Project->channel()));
        QVERIFY(m_Shader->setInputShaderInput(QStringLiteral("Material 2"), pSkin));
        QCOMPARE(m_Tabs->count(), 3);
        QVERIFY(m_Shader->setInputShaderInput(QStringLiteral("Material 2"), nullptr));
        QCOMPARE(m_Tabs->count(), 3);

        QVERIFY(m_Shader->setInputShaderInput(QStringLiteral("Material 1"), nullptr));
        QCOMPARE(m_Tabs->count(), 2);
        QCOMPARE(object(1), pCloth);
        OrvTestProject::undo();
        QCOMPARE(m_Tabs->count(), 3);
        QVERIFY(tabOf(pSkin) > 0);
    }

    void tabShowsTheLayersOfItsChannel()
    {
        OrvShaderInput* pSkin = connectMaterial(1);
        OrvShaderInput* pCloth = connectMaterial(2);
        QVERIFY(m_View->shaderView()->isVisible());
        QVERIFY(!m_View->layerView()->isVisible());
        QVERIFY(!m_View->layerView()->layerStack());

        clickTab(tabOf(pCloth));
        QCOMPARE(m_View->layerView()->layerStack(), pCloth);
        QVERIFY(m_View->layerView()->isVisible());
        QVERIFY(!m_View->shaderView()->isVisible());
        clickTab(tabOf(pSkin));
        QCOMPARE(m_View->layerView()->layerStack(), pSkin);

        // The open tab goes with its channel, another one opens.
        m_Shader->setInputShaderInput(QStringLiteral("Material 1"), nullptr);
        QVERIFY(tabOf(pSkin) < 0);
        QVERIFY(m_View->layerView()->layerStack() != pSkin);
        clickTab(0);
        QVERIFY(m_View->shaderView()->isVisible());
        QVERIFY(!m_View->layerView()->isVisible());
        QVERIFY(!m_View->layerView()->layerStack());
        m_View->onTabChanged(tabOf(pCloth));
        m_View->onTabChanged(-1);
        QVERIFY(!m_View->layerView()->layerStack());
    }

    /// As long as it is open: a palette without layers has no use for commands.
    void menuCommandsAreForTheTabThatTheUserOpened()
    {
        OrvLayerViewContextManager& Palettes = OrvLayerViewContextManager::instance();
        Palettes.setActiveLayerView(Palettes.mainLayerView());
        OrvShaderInput* pSkin = connectMaterial(1);
        clickTab(tabOf(pSkin));
        QCOMPARE(Palettes.layerView(), m_View->layerView());
        QCOMPARE(OrvLayerManager::instance().currentLayerStack(), pSkin);
        clickTab(0);
        QCOMPARE(Palettes.layerView(), Palettes.mainLayerView());

        clickTab(tabOf(pSkin));
        Palettes.setActiveLayerView(Palettes.mainLayerView());
        OrvShaderInput* pCloth = connectMaterial(2);
        m_Shader->setInputShaderInput(QStringLiteral("Material 1"), nullptr);
        QCOMPARE(m_View->layerView()->layerStack(), pCloth);
        QCOMPARE(Palettes.layerView(), Palettes.mainLayerView());
        clickTab(tabOf(pCloth));
        QCOMPARE(Palettes.layerView(), m_View->layerView());
        addShader("Shader/Unlit");
        QCOMPARE(Palettes.layerView(), Palettes.mainLayerView());
    }

    void materialIsReachedFromItsInput()
    {
        OrvShaderInput* pSkin = connectMaterial(1);
        OrvShaderInput* pCloth = connectMaterial(2);
        QTRY_VERIFY(m_View->shaderView()->inputsPane()->row(QStringLiteral("Material 2")));
        QTest::mouseClick(
            m_View->shaderView()->inputsPane()->row(QStringLiteral("Material 2"))->channelButton(),
            Qt::LeftButton);
        QCOMPARE(OrvShaderInputManager::instance().currentShaderInput(), pCloth);
        QCOMPARE(m_Tabs->currentIndex(), tabOf(pCloth));
        QCOMPARE(m_View->layerView()->layerStack(), pCloth);
        QVERIFY(tabOf(pSkin) > 0);
    }

    void titlesStayAsTheyAre()
    {
        OrvShaderInput* pSkin = connectMaterial(1);
        OrvShaderInput* pCloth = connectMaterial(2);
        const QStringList Titles({"Shaders", "Shader Layers", "Shader Layers"});
        const auto spoil = [this] {
            for (int Index = 1; Index < m_Tabs->count(); ++Index)
                m_Tabs->setTabText(Index, QStringLiteral("?"));
        };
        spoil();
        pSkin->node()->setName(QStringLiteral("Leather"));
        QCOMPARE(m_Tabs->tabText(tabOf(pSkin)), QStringLiteral("Shader Layers"));
        QCOMPARE(m_Tabs->tabText(tabOf(pCloth)), QStringLiteral("?"));
        m_View->onShaderInputNameChanged(pCloth, QStringLiteral("Linen"));
        QCOMPARE(tabs(), Titles);

        spoil();
        m_Shader->node()->setName(QStringLiteral("Armour"));
        QCOMPARE(tabs(), Titles);
        m_View->onShaderInputRenamed(m_Project->channel());
        m_View->onShaderInputRenamed(nullptr);
        QCOMPARE(tabs(), Titles);
        m_Reports.Texts.clear();
        m_View->onShaderRenamed();
        QCOMPARE(m_Reports.Texts, QStringList({"Shader is NULL"}));
    }

    void toolTipsTellTheTabsApart()
    {
        OrvShaderInput* pSkin = connectMaterial(1);
        OrvShaderInput* pCloth = connectMaterial(3);
        const auto toolTip
            = [this](const OrvShaderInput* pChannel) { return m_Tabs->tabToolTip(tabOf(pChannel)); };
        pSkin->node()->setName(QStringLiteral("Leather"));
        QCOMPARE(toolTip(pSkin), QStringLiteral("Leather, which feeds Material 1"));
        QCOMPARE(toolTip(pCloth), pCloth->name() + QStringLiteral(", which feeds Material 3"));
        QVERIFY(m_Shader->setInputShaderInput(QStringLiteral("Material 1"), nullptr));
        QVERIFY(m_Shader->setInputShaderInput(QStringLiteral("Material 4"), pSkin));
        QCOMPARE(toolTip(pSkin), QStringLiteral("Leather, which feeds Material 4"));
    }

    void aDragThatRestsOnATabOpensIt()
    {
        OrvShaderInput* pSkin = connectMaterial(1);
        clickTab(tabOf(pSkin));
        QMimeData Mime;
        Mime.setText(QStringLiteral("Layer"));
        QDragEnterEvent Enter(
            m_Tabs->tabRect(0).center(), Qt::MoveAction, &Mime, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_Tabs, &Enter);
        QDragMoveEvent Move(
            m_Tabs->tabRect(0).center(), Qt::MoveAction, &Mime, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_Tabs, &Move);
        QTRY_VERIFY(m_View->shaderView()->isVisible());
    }

    void aMaskWithoutALayerIsExplained()
    {
        clickTab(tabOf(connectMaterial(1)));
        OrvStatusManager::instance().showMessage(QString());
        m_View->layerView()->addLayerMask();
        QVERIFY(!OrvStatusManager::instance().text().isEmpty());
    }

    void currentShaderIsFollowed()
    {
        OrvShaderInput* pSkin = connectMaterial(1);
        m_Reports.Texts.clear();
        OrvLayerShader* pOther = addShader("Shader/LayeredMaterial");
        QCOMPARE(tabs(), QStringList({"Shaders"}));
        QVERIFY(m_Reports.Texts.filter(QStringLiteral("Removed old shader connection")).size() == 1);
        QVERIFY(m_Reports.Texts.filter(QStringLiteral("Added shader connection")).size() == 1);
        // What happens at a shader that is not current shows when it is.
        m_Shader->setInputShaderInput(
            QStringLiteral("Material 4"), OrvShaderInputUtils::createShaderInput(true));
        QCOMPARE(m_Tabs->count(), 1);
        shaders().setCurrentShader(m_Shader->node());
        QCOMPARE(m_Tabs->count(), 3);
        QVERIFY(tabOf(pSkin) > 0);

        shaders().setCurrentShader(pOther->node());
        pOther->setInputShaderInput(QStringLiteral("Material 2"), pSkin);
        QCOMPARE(m_Tabs->count(), 2);
        QVERIFY(OrvLayerShaderUtils::destroy(pOther, false));
        shaders().setCurrentShader(m_Shader->node());
        QCOMPARE(m_Tabs->count(), 3);
        shaders().setCurrentShader(shaders().getCurrentChannelShader(OrvTestProject::network()));
        QCOMPARE(m_Tabs->count(), 1);
    }

    void removedChannelTakesItsTabAlong()
    {
        OrvShaderInput* pSkin = connectMaterial(1);
        clickTab(1);
        OrvShaderInputManager::instance().destroy(pSkin, OrvShaderInputManager::SharersBecomeGroups);
        QCOMPARE(tabs(), QStringList({"Shaders"}));
        QVERIFY(m_View->shaderView()->isVisible());
        QVERIFY(!m_View->layerView()->layerStack());
        OrvTestProject::undo();
        QCOMPARE(m_Tabs->count(), 2);
    }

    void onlyShadersThatTakeMaterialsHaveTabs()
    {
        connectMaterial(1);
        OrvLayerShader* pPlain = addShader("Shader/MetallicRoughness");
        QCOMPARE(tabs(), QStringList({"Shaders"}));
        QVERIFY(pPlain->setInputShaderInput(QStringLiteral("Base Color"), m_Project->channel()));
        QCOMPARE(tabs(), QStringList({"Shaders"}));
    }

    /// A tab that is out of step shows whether the tabs were looked through.
    void inputsOfSystemShadersDoNotMatter()
    {
        OrvShaderInput* pSkin = connectMaterial(1);
        const auto rebuildsAfterInputOf = [this, pSkin](OrvSnBaseNode* pNode) {
            shaders().setCurrentShader(pNode);
            const int Count = m_Tabs->count();
            m_Tabs->setTabData(
                m_Tabs->addTab(QString()), QVariant::fromValue(QPointer<QObject>(m_Project->channel())));
            Q_EMIT pNode->inputNodeChanged(QStringLiteral("Any"), pSkin->node(), QString());
            const bool IsRebuilt = m_Tabs->count() == Count;
            m_View->onShaderTagsChanged(QString(), nullptr);
            return IsRebuilt;
        };
        QVERIFY(rebuildsAfterInputOf(m_Shader->node()));
        QVERIFY(!rebuildsAfterInputOf(shaders().getCurrentChannelShader(OrvTestProject::network())));
        QCOMPARE(tabs(), QStringList({"Shaders"}));
    }

    void rebuildWaitsForShadersThatAreBeingMade()
    {
        shaders().setLayerShaderCreating(true);
        connectMaterial(1);
        QCOMPARE(m_Tabs->count(), 1);
        shaders().setLayerShaderCreating(false);
        m_View->onShaderChanged(nullptr);
        QCOMPARE(m_Tabs->count(), 1);
        m_View->onShaderTagsChanged(QStringLiteral("Any"), m_Shader);
        QCOMPARE(m_Tabs->count(), 2);
    }

    void closedProjectLeavesTheFirstTab()
    {
        connectMaterial(1);
        clickTab(1);
        m_Reports.Texts.clear();
        m_Project.reset();
        QCOMPARE(m_Reports.Texts.filter(QStringLiteral("Removed old shader connection")).size(), 1);
        QCOMPARE(tabs(), QStringList({"Shaders"}));
        QVERIFY(!m_View->layerView()->layerStack());
        m_Project = std::make_unique<OrvTestProject>();
        m_Shader = addShader("Shader/LayeredMaterial");
        connectMaterial(2);
        QCOMPARE(m_Tabs->count(), 2);
    }

private:
    static OrvLayerShaderManager& shaders() { return OrvLayerShaderManager::instance(); }
    static OrvLayerShader* addShader(const char* pModel)
    {
        return OrvLayerShaderUtils::createShaderFromKey(QLatin1String(pModel), true);
    }
    OrvShaderInput* connectMaterial(int Number) const
    {
        OrvShaderInput* pChannel = OrvShaderInputUtils::createShaderInput(true);
        m_Shader->setInputShaderInput(QStringLiteral("Material %1").arg(Number), pChannel);
        return pChannel;
    }
    QStringList tabs() const
    {
        QStringList Titles;
        for (int Index = 0; Index < m_Tabs->count(); ++Index)
            Titles.append(m_Tabs->tabText(Index));
        return Titles;
    }
    QObject* object(int Index) const { return m_Tabs->tabData(Index).value<QObject*>(); }
    int tabOf(const QObject* pChannel) const
    {
        for (int Index = 0; Index < m_Tabs->count(); ++Index) {
            if (object(Index) == pChannel)
                return Index;
        }
        return -1;
    }
    void clickTab(int Index) const
    {
        QTest::mouseClick(m_Tabs, Qt::LeftButton, Qt::NoModifier, m_Tabs->tabRect(Index).center());
        QCOMPARE(m_Tabs->currentIndex(), Index);
    }

    SettingsDirectory m_Directory;
    std::unique_ptr<OrvTestProject> m_Project;
    OrvShaderMaterialsView* m_View = nullptr;
    OrvLayerShader* m_Shader = nullptr;
    QTabBar* m_Tabs = nullptr;
    OrvDebugReports m_Reports{{QStringLiteral("OrvShaderMaterialsView")}};
};

QTEST_MAIN(TstMaterialsView)
#include "TstMaterialsView.moc"
