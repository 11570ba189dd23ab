#include "LayersPaletteFixture.h"
#include "SettingsDirectory.h"
#include "ShadersFixture.h"
#include "Tests/Support/OrvDebugReports.h"

#include "OrvCore/Network/OrvNodeRegistry.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvShaderNetworkUtils.h"
#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCore/Shaders/OrvMultiChannelLayerUtils.h"
#include "OrvCore/Shaders/OrvShadingModel.h"
#include "OrvCore/Shelf/OrvShelfDirectories.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Menus/OrvMenu.h"
#include "OrvCoreModules/Menus/OrvMenuManager.h"
#include "OrvCoreModules/Window/OrvStatusManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerShaderInputs.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerToolBar.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputRow.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderViewActions.h"

#include <QtTest/QtTest>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QUndoStack>

#include <memory>

using namespace ShadersFixture;

namespace {

const QString Path = QStringLiteral("/Orvi/Layers/Shaders/");
const QString EntryPath = Path + QStringLiteral("AddShader/");
const QString ViewsPath = QStringLiteral("/Orvi/Channels/Views");
const char* const Kinds[] = {"none", "system", "plain", "channels", "layered", "multi-channel"};

QAction* action(const QString& Text)
{
    return OrvActionTreeManager::instance().findAction(Path + Text);
}

QStringList entries(const QMenu* pMenu)
{
    QStringList Texts;
    for (const QAction* pEntry : pMenu->actions()) {
        if (pEntry->menu())
            Texts
                += entries(pEntry->menu()).replaceInStrings(QRegExp("^"), pEntry->text() + QLatin1Char('/'));
        else if (!pEntry->isSeparator())
            Texts.append(pEntry->text());
    }
    return Texts;
}

} // namespace

/// The shader commands on every kind of shader: what they do to the document, that undo takes it back, what
/// they ask and tell, and the menus of shader types.
class TstShaderActions : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_Directory.isValid());
        m_LayerView = LayersFixture::showLayersPalette(QSize(900, 700));
        QVERIFY(m_LayerView);
        OrvApplication::appInstance().setPopupsAllowed(false);
        // Whatever is asked is answered, or closed as if by Escape.
        connect(&m_BoxTimer, &QTimer::timeout, this, &TstShaderActions::answer);
        m_BoxTimer.start(0);
    }
    void init()
    {
        m_pProject = std::make_unique<OrvTestProject>();
        m_Reports.Texts.clear();
        m_Answer.clear();
        m_Told.clear();
    }
    void cleanup()
    {
        OrvApplication::appInstance().setPopupsAllowed(false);
        m_pProject.reset();
    }

    void everyTypeHasItsEntryOnce()
    {
        const QMenu* pShaderMenu = action(QStringLiteral("Add New Shader"))->menu();
        const QMenu* pLayerMenu = action(QStringLiteral("Add New Shader Layer"))->menu();
        QStringList Standalone, Layered;
        for (const OrvShadingModel* pModel : OrvShadingModel::all())
            (pModel->isLayered() ? Layered : Standalone).append(pModel->label());
        QVERIFY(Standalone.size() >= 3 && !Layered.isEmpty());
        QCOMPARE(entries(pShaderMenu), Standalone + Layered);
        QCOMPARE(entries(pLayerMenu), Standalone);
        for (const OrvShadingModel* pModel : OrvShadingModel::all()) {
            const QAction* pEntry
                = OrvActionTreeManager::instance().findAction(EntryPath + pModel->menuPath().section('/', 1));
            QVERIFY(pEntry);
            QCOMPARE(pEntry->data().toString(), pModel->key());
        }

        const QString Velvet = QStringLiteral("Cloth/Velvet");
        OrvNodeRegistry::instance().enterShader(QStringLiteral("Shaders/") + Velvet,
            OrvNodeRegistry::StandaloneShader, [] { return std::unique_ptr<OrvSnBaseNode>(); });
        for (int Times = 0; Times < 2; ++Times) {
            Q_EMIT OrvShaderNetworkManager::instance().registeredNodePopulationChanged();
            QCOMPARE(entries(pShaderMenu).filter(QRegExp("Velvet$")).size(), 1);
            QCOMPARE(entries(pShaderMenu).size(), Standalone.size() + Layered.size() + 1);
            QCOMPARE(entries(pLayerMenu).size(), Standalone.size() + 1);
        }
        QCOMPARE(action(QStringLiteral("Add New Shader"))->menu(), pShaderMenu);
        QVERIFY(OrvActionTreeManager::instance().findAction(EntryPath + Velvet)->isEnabled());
        // A type that nothing can be made of leaves nothing.
        const QByteArray Before = OrvTestProject::document();
        trigger(EntryPath + Velvet);
        QCOMPARE(OrvTestProject::document(), Before);
        OrvShaderViewActions::instance().addShaderFromAction();
        QCOMPARE(m_Reports.Texts, QStringList{QStringLiteral("Action is NULL")});
    }

    void menusReachEveryCommand()
    {
        const std::unique_ptr<QMenu> pMenu(
            OrvMenuManager::instance().makeMenu(QStringLiteral("MainWindow"), QStringLiteral("&Shaders")));
        QStringList Texts;
        for (const QAction* pEntry : pMenu->actions()) {
            if (!pEntry->isSeparator())
                Texts.append(pEntry->text());
            if (pEntry->text() == QLatin1String("Remove Shader"))
                QCOMPARE(pEntry->shortcut(), QKeySequence(Qt::Key_Delete));
        }
        QCOMPARE(Texts,
            QStringList({"Add New Shader", "Add New Shader Layer", "Duplicate Shader", "Remove Shader", "Cut",
                "Copy", "Paste", "Recreate System Shaders", "Force Update Shaders"}));
        for (const QString& Text : Texts) {
            QVERIFY2(action(Text), qPrintable(Text));
            const bool IsMaintenance = Text.endsWith(QLatin1String("Shaders"));
            QCOMPARE(action(Text)->icon().isNull(), IsMaintenance);
            QVERIFY(IsMaintenance || !action(Text)->icon().pixmap(16).isNull());
        }
    }

    void commandsAreOnWhileAProjectIsOpen()
    {
        for (const bool Open : {true, false, true}) {
            if (Open && !m_pProject)
                m_pProject = std::make_unique<OrvTestProject>();
            if (!Open)
                m_pProject.reset();
            for (const QString& Key : OrvActionTreeManager::instance().actionKeys(Path))
                QVERIFY2(
                    OrvActionTreeManager::instance().findAction(Key)->isEnabled() == Open, qPrintable(Key));
        }
        // Off or on, they survive being called without an object.
        m_pProject.reset();
        OrvShaderViewActions& Actions = OrvShaderViewActions::instance();
        Actions.removeShader();
        Actions.duplicateShader();
        Actions.cut();
        Actions.copy();
        Actions.paste();
        QCOMPARE(m_Reports.Texts.count(QStringLiteral("LayerShader is NULL")), 4);
        QVERIFY(!OrvUndoManager::instance().isInMacro());
    }

    void shadersAreAddedCopiedAndRemoved()
    {
        trigger(EntryPath + QStringLiteral("Metallic Roughness"));
        QCOMPARE(userNames(), QStringList({"Metallic Roughness"}));
        OrvLayerShader* pFirst = shaders().currentLayerShader();
        QCOMPARE(pFirst->name(), QStringLiteral("Metallic Roughness"));
        pFirst->setInputShaderInput(QStringLiteral("Base Color"), m_pProject->channel());
        pFirst->setInputValue(QStringLiteral("Roughness"), OrvColor(0.3f, 0.3f, 0.3f, 1.0f));

        trigger(Path + QStringLiteral("Duplicate Shader"));
        QCOMPARE(userNames().size(), 2);
        const OrvLayerShader* pCopy = shaders().currentLayerShader();
        QVERIFY(pCopy != pFirst);
        QCOMPARE(pCopy->inputShaderInput(QStringLiteral("Base Color")), m_pProject->channel());
        QVERIFY(OrvTestProject::same(
            pCopy->inputValue(QStringLiteral("Roughness")), OrvColor(0.3f, 0.3f, 0.3f, 1.0f)));

        trigger(Path + QStringLiteral("Copy"));
        trigger(Path + QStringLiteral("Remove Shader"));
        QCOMPARE(OrvUndoManager::instance().stack()->undoText(), QStringLiteral("Remove Shader"));
        QCOMPARE(userNames().size(), 1);
        trigger(Path + QStringLiteral("Paste"));
        QCOMPARE(userNames().size(), 2);
        QCOMPARE(shaders().currentLayerShader()->inputShaderInput(QStringLiteral("Base Color")),
            m_pProject->channel());
        const QByteArray Before = OrvTestProject::document();
        trigger(Path + QStringLiteral("Cut"));
        QCOMPARE(userNames().size(), 1);
        OrvTestProject::undo();
        QCOMPARE(OrvTestProject::document(), Before);
        OrvTestProject::redo();
        trigger(Path + QStringLiteral("Paste"));
        QCOMPARE(userNames().size(), 2);
    }

    void multiChannelLayersForbidCopies()
    {
        makeShader(QStringLiteral("multi-channel"));
        QString Name = shaders().currentLayerShader()->name();
        const QString Line
            = QStringLiteral("[ !! ] Failed to duplicate shader '%1' due to multi-channel layers").arg(Name);
        const QByteArray Before = OrvTestProject::document();
        trigger(Path + QStringLiteral("Duplicate Shader"));
        QCOMPARE(m_Reports.Texts, QStringList{Line});
        QVERIFY(m_Told.isEmpty());
        OrvApplication::appInstance().setPopupsAllowed(true);
        trigger(Path + QStringLiteral("Duplicate Shader"));
        QCOMPARE(m_Reports.Texts, QStringList({Line, Line}));
        QCOMPARE(m_Told.size(), 1);
        QVERIFY(m_Told.first().startsWith(QStringLiteral("Duplication Operation Failed: ")));
        QVERIFY(m_Told.first().contains(Name));
        QCOMPARE(OrvTestProject::document(), Before);
    }

    void removalAsksAboutMultiChannelLayers_data()
    {
        QTest::addColumn<QString>("Command");
        QTest::addColumn<QString>("Answer");
        for (const char* pCommand : {"Remove Shader", "Cut"}) {
            for (const char* pAnswer : {"Disconnect", "Convert", ""})
                QTest::newRow(qPrintable(QStringLiteral("%1, %2").arg(pCommand, pAnswer)))
                    << pCommand << pAnswer;
        }
    }
    void removalAsksAboutMultiChannelLayers()
    {
        QFETCH(QString, Command);
        QFETCH(QString, Answer);
        makeShader(QStringLiteral("multi-channel"));
        OrvApplication::appInstance().setPopupsAllowed(true);
        m_Answer = Answer;
        const QByteArray Before = OrvTestProject::document();
        const int Steps = OrvUndoManager::instance().stack()->count();
        trigger(Path + Command);
        QCOMPARE(m_Told, QStringList{QStringLiteral("Removing a Shader")});
        const int LayerCount = m_pProject->channel()->layerList().size();
        if (Answer.isEmpty()) {
            QCOMPARE(OrvTestProject::document(), Before);
            QCOMPARE(OrvUndoManager::instance().stack()->count(), Steps);
            return;
        }
        QCOMPARE(userNames(), QStringList());
        QCOMPARE(OrvUndoManager::instance().stack()->count(), Steps + 1);
        QCOMPARE(LayerCount, Answer == QLatin1String("Convert") ? 1 : 0);
        QVERIFY(!OrvLayerStreamUtils::containsMultiChannelLayers(m_pProject->channel(), nullptr));
        OrvTestProject::undo();
        QCOMPARE(OrvTestProject::document(), Before);
    }

    void systemShadersAreLeftAlone()
    {
        const QByteArray Before = OrvTestProject::document();
        for (const char* pText : {"Remove Shader", "Duplicate Shader", "Cut", "Copy"}) {
            OrvStatusManager::instance().showMessage(QString());
            trigger(Path + QLatin1String(pText));
            QVERIFY2(OrvStatusManager::instance().text().contains(QStringLiteral("Current Channel")), pText);
        }
        QCOMPARE(OrvTestProject::document(), Before);
        QVERIFY(m_Reports.Texts.isEmpty());
    }

    /// One that stands in a material alone goes with its layers, and stays with those that are kept.
    void aShaderStaysWithALockedLayer()
    {
        OrvLayer* pLayer = addShaderLayer(addMaterialChannel(), QStringLiteral("Varnish"));
        QVERIFY(pLayer);
        shaders().setCurrentShader(pLayer->shaderNode());
        pLayer->setLocked(true);
        const QByteArray Before = OrvTestProject::document();
        for (const char* pText : {"Remove Shader", "Cut"}) {
            trigger(Path + QLatin1String(pText));
            QCOMPARE(OrvStatusManager::instance().text(),
                QStringLiteral("'%1' was not removed: 'Varnish' is locked")
                    .arg(pLayer->shaderNode()->name()));
            QCOMPARE(OrvTestProject::document(), Before);
        }
        pLayer->setLocked(false);
        trigger(Path + QStringLiteral("Remove Shader"));
        QVERIFY(OrvTestProject::document() != Before);
    }

    void shaderLayersComeFromTheMenuOfTypes()
    {
        OrvShaderInput* pMaterial = addMaterialChannel();
        const OrvSnBaseNode* pCurrent = addShader(QStringLiteral("Paper"))->node();
        m_LayerView->setLayerStack(pMaterial);
        m_LayerView->refresh();
        QCOMPARE(toolBarTexts(),
            QStringList({"Add Shader Layer", "Add Layer Mask", "Add Mask Stack", "Remove Shader Layers"}));
        QUndoStack* pHistory = OrvUndoManager::instance().stack();
        const int Steps = pHistory->count();
        const QByteArray Before = OrvTestProject::document();

        chooseFromPopup(QStringLiteral("Unlit"));
        clickTool(QStringLiteral("Add Shader Layer"));
        QCOMPARE(pMaterial->layerList().size(), 1);
        QVERIFY(pMaterial->layerList().first()->shaderNode()->hasTag(OrvSnNames::StackShaderTag));
        QCOMPARE(pHistory->count(), Steps + 1);
        QCOMPARE(pHistory->undoText(), QStringLiteral("Add Shader Layer"));
        QCOMPARE(shaders().currentShaderNode(), pCurrent);
        QVERIFY(!shaders().layerShaderCreating());
        const QAction* pHostAction = action(QStringLiteral("Add New Shader Layer"));
        QCOMPARE(pHostAction->property("OrvLayerView").value<QObject*>(), m_LayerView);
        QCOMPARE(pHostAction->property("OrvCurrentLayerShader").value<OrvLayerShader*>()->node(), pCurrent);
        OrvTestProject::undo();
        QCOMPARE(OrvTestProject::document(), Before);

        // A menu that is closed without a choice leaves nothing.
        chooseFromPopup(QStringLiteral("Nothing of the kind"));
        clickTool(QStringLiteral("Add Shader Layer"));
        QCOMPARE(OrvTestProject::document(), Before);
        QVERIFY(pHistory->canRedo() && !OrvUndoManager::instance().isInMacro());
        QVERIFY(!shaders().layerShaderCreating());

        OrvTestProject::redo();
        m_LayerView->refresh();
        pMaterial->layerList().first()->setSelected(true);
        clickTool(QStringLiteral("Remove Shader Layers"));
        QVERIFY(pMaterial->layerList().isEmpty());
        QCOMPARE(userNames(), QStringList({"Paper"}));
    }

    void theMenuBarAddsLayersToThePaletteInUse()
    {
        OrvShaderInput* pMaterial = addMaterialChannel();
        m_LayerView->setLayerStack(pMaterial);
        m_LayerView->refresh();
        QUndoStack* pHistory = OrvUndoManager::instance().stack();
        const int Steps = pHistory->count();
        const auto choose = [](const QString& Command, const QString& Type) {
            QMenu* pMenu = action(Command)->menu();
            pMenu->popup(QPoint(200, 200));
            for (QAction* pEntry : pMenu->actions()) {
                if (pEntry->text() == Type)
                    QTest::mouseClick(pMenu, Qt::LeftButton, {}, pMenu->actionGeometry(pEntry).center());
            }
        };
        choose(QStringLiteral("Add New Shader Layer"), QStringLiteral("Specular"));
        QCOMPARE(pMaterial->layerList().size(), 1);
        QCOMPARE(pHistory->count(), Steps + 1);
        QCOMPARE(userNames(), QStringList());
        choose(QStringLiteral("Add New Shader"), QStringLiteral("Specular"));
        QCOMPARE(pMaterial->layerList().size(), 1);
        QCOMPARE(userNames().size(), 1);
        QTRY_VERIFY(!QApplication::activePopupWidget());

        // Shaders stand among shaders only.
        m_LayerView->setLayerStack(m_pProject->channel());
        m_LayerView->refresh();
        const QByteArray Before = OrvTestProject::document();
        chooseFromPopup(QStringLiteral("Specular"));
        m_LayerView->addShaderLayer();
        QCOMPARE(OrvTestProject::document(), Before);
        choose(QStringLiteral("Add New Shader Layer"), QStringLiteral("Specular"));
        QCOMPARE(OrvTestProject::document(), Before);
        QVERIFY(OrvStatusManager::instance().text().contains(QStringLiteral("material")));
        QCOMPARE(pHistory->count(), Steps + 2);
    }

    void inputsOfAShaderLayerAreItsProperties()
    {
        OrvShaderInput* pMaterial = addMaterialChannel();
        OrvLayer* pLayer = addShaderLayer(pMaterial, QStringLiteral("Varnish"));
        QVERIFY(pLayer);
        OrvLayerShader* pShader = shaders().getLayerShader(pLayer->shaderNode());
        pLayer->makeCurrent(false, false);
        m_LayerView->setLayerStack(pMaterial);
        m_LayerView->refresh();
        m_LayerView->changeCurrentIndex(pLayer);
        QTRY_COMPARE(m_LayerView->findChildren<OrvShaderInputRow*>().size(), pShader->inputNames().size());
        const OrvShaderInputRow* pRow = m_LayerView->findChild<OrvShaderInputRow*>();
        QTRY_VERIFY(pRow->isVisible());
        QTest::mouseClick(pRow->invertBox(), Qt::LeftButton);
        QVERIFY(pShader->isInputInverted(pRow->inputName()));
        OrvTestProject::undo();
        QVERIFY(!pShader->isInputInverted(pRow->inputName()));
        QTest::mouseClick(pRow->enableBox(), Qt::LeftButton);
        QVERIFY(!pShader->isInputEnabled(pRow->inputName()));
        OrvTestProject::undo();
        QVERIFY(pShader->isInputEnabled(pRow->inputName()));

        // They stand by their shader, above what belongs to the mask.
        QString Error;
        QVERIFY2(pLayer->addMaskCustomProcedural(
                     OrvShelfDirectories::shipped() + QStringLiteral("/Masks/Dirt.orvproc"), Error),
            qPrintable(Error));
        QWidget Holder;
        const auto Editors = m_LayerView->createPropertyWidgets(pLayer, &Holder);
        QVERIFY(Editors.size() > 2);
        QVERIFY(qobject_cast<OrvLayerShaderInputs*>(Editors.at(Editors.size() - 2)));
    }

    /// Whatever a command does is one step that undo takes back.
    void everyCommandOnEveryShader_data()
    {
        QTest::addColumn<QString>("Kind");
        for (const char* pKind : Kinds)
            QTest::newRow(pKind) << pKind;
    }
    void everyCommandOnEveryShader()
    {
        QFETCH(QString, Kind);
        OrvActionTreeManager& Tree = OrvActionTreeManager::instance();
        QUndoStack* pHistory = OrvUndoManager::instance().stack();
        OrvApplication::appInstance().setPopupsAllowed(true);
        for (const QString& Key : Tree.actionKeys(Path) + Tree.actionKeys(ViewsPath)) {
            if (Tree.findAction(Key)->menu())
                continue;
            for (const char* pAnswer : {"Convert", "Disconnect"}) {
                m_pProject.reset();
                m_pProject = std::make_unique<OrvTestProject>();
                makeShader(Kind);
                m_Answer = QString::fromLatin1(pAnswer);
                m_LayerView->setLayerStack(m_pProject->channel());
                const QByteArray Before = OrvTestProject::document();
                const int Steps = pHistory->count();
                trigger(Key);
                QVERIFY2(!OrvUndoManager::instance().isInMacro(), qPrintable(Key));
                QVERIFY2(pHistory->count() <= Steps + 1, qPrintable(Key));
                if (pHistory->count() == Steps)
                    continue;
                const QByteArray After = OrvTestProject::document();
                QVERIFY2(After != Before, qPrintable(Key));
                for (int Times = 0; Times < 2; ++Times) {
                    OrvTestProject::undo();
                    QVERIFY2(OrvTestProject::document() == Before, qPrintable(Key));
                    OrvTestProject::redo();
                    QApplication::processEvents();
                }
                OrvTestProject::undo();
            }
        }
    }

private:
    static void trigger(const QString& Key)
    {
        QAction* pAction = OrvActionTreeManager::instance().findAction(Key);
        QVERIFY2(pAction, qPrintable(Key));
        Q_EMIT pAction->triggered(false);
        QApplication::processEvents();
    }
    QStringList userNames() const
    {
        QStringList Names;
        for (const OrvLayerShader* pShader : shaders().getUserLayerShaders(OrvTestProject::network()))
            Names.append(pShader->name());
        return Names;
    }
    /// The current shader is of that kind.
    void makeShader(const QString& Kind) const
    {
        if (Kind == QLatin1String("none"))
            shaders().setCurrentShader(nullptr);
        else if (Kind == QLatin1String("plain"))
            addShader(Kind);
        else if (Kind == QLatin1String("layered"))
            makeLayeredShader();
        else if (Kind != QLatin1String("system"))
            makeFedShader(Kind == QLatin1String("multi-channel"));
    }
    static void makeLayeredShader()
    {
        OrvShaderInput* pMaterial = addMaterialChannel();
        QVERIFY(addShaderLayer(pMaterial, QStringLiteral("Layer")));
        OrvLayerShader* pShader
            = addShader(QStringLiteral("Layered"), QStringLiteral("Shader/LayeredMaterial"));
        QVERIFY(pShader->setInputShaderInput(QStringLiteral("Material 1"), pMaterial));
    }
    void makeFedShader(bool WithMultiChannelLayers) const
    {
        OrvLayerShader* pShader
            = addShader(QStringLiteral("Fed"), QStringLiteral("Shader/MetallicRoughness"));
        OrvShaderInput* pRoughness = OrvTestProject::addChannel(QStringLiteral("Roughness"));
        QVERIFY(pShader->setInputShaderInput(QStringLiteral("Base Color"), m_pProject->channel()));
        QVERIFY(pShader->setInputShaderInput(QStringLiteral("Roughness"), pRoughness));
        if (!WithMultiChannelLayers)
            return;
        QString Error;
        QVERIFY2(OrvMultiChannelLayerUtils::createMultiChannelGroupLayer(pShader, nullptr, Error),
            qPrintable(Error));
    }
    QStringList toolBarTexts() const
    {
        QStringList Texts;
        for (const QAction* pAction : m_LayerView->toolBar()->actions()) {
            if (pAction->isVisible() && !pAction->text().isEmpty())
                Texts.append(pAction->text());
        }
        return Texts;
    }
    void clickTool(const QString& Text) const
    {
        for (QAction* pAction : m_LayerView->toolBar()->actions()) {
            if (pAction->text() == Text)
                pAction->trigger();
        }
        QApplication::processEvents();
    }
    void answer()
    {
        auto* pDialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!pDialog)
            return;
        const auto* pBox = qobject_cast<QMessageBox*>(pDialog);
        m_Told.append(
            pBox ? pBox->windowTitle() + QStringLiteral(": ") + pBox->text() : pDialog->windowTitle());
        for (QPushButton* pButton : pDialog->findChildren<QPushButton*>()) {
            if (pButton->text().remove(QLatin1Char('&')) == m_Answer) {
                QTest::mouseClick(pButton, Qt::LeftButton);
                return;
            }
        }
        pDialog->reject();
    }

    SettingsDirectory m_Directory;
    OrvDebugReports m_Reports{{QStringLiteral("OrvShaderViewActions")}};
    QStringList m_Told;
    QString m_Answer;
    QTimer m_BoxTimer;
    std::unique_ptr<OrvTestProject> m_pProject;
    OrvLayerView* m_LayerView = nullptr;
};

QTEST_MAIN(TstShaderActions)
#include "TstShaderActions.moc"
