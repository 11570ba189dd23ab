#include "LayersFixture.h"
#include "SettingsDirectory.h"

#include "Tests/Support/OrvDebugReports.h"
#include "Tests/Support/OrvTestProject.h"

#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCore/Shaders/OrvLayerShaderUtils.h"
#include "OrvCore/Shaders/OrvMultiChannelLayerUtils.h"
#include "OrvCore/Shelf/OrvShelfDirectories.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Menus/OrvLateBindAction.h"
#include "OrvCoreModules/Menus/OrvMenu.h"
#include "OrvCoreModules/Menus/OrvMenuManager.h"
#include "OrvCoreModules/Menus/OrvShortcutManager.h"
#include "OrvCoreModules/Window/OrvApplication.h"
#include "OrvCoreModules/Window/OrvStatusManager.h"
#include "OrvDdi/Image/OrvImage.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerActions.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerTreeView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputActions.h"

#include <QtCore/QTimer>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <QtTest/QtTest>
#include <QtWidgets/QDialog>
#include <QtWidgets/QUndoStack>

using namespace LayersFixture;

namespace {

const QString Path = QStringLiteral("/Orvi/Layers/");
const char* const Kinds[] = {"paint", "adjustment", "procedural", "custom procedural", "group", "graph",
    "shared", "shared channel", "bake point", "multi-channel group", "material", "shader"};
const char* const Stacks[] = {"channel", "group", "mask", "adjustment", "material"};
const char* const States[] = {"plain", "masked", "mask off", "mask stack", "mask procedural", "adjusted",
    "stack off", "second", "baked", "locked", "masked, locked", "locked around", "cached", "masked, cached",
    "cached up to here"};

QAction* action(const QString& Text)
{
    return OrvActionTreeManager::instance().findAction(Path + Text);
}

} // namespace

/// The layer commands on every kind of layer wherever it can stand: what they relay, when they can be used,
/// and that whatever they do is one step that undo takes back.
class TstLayerActions : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_Directory.isValid());
        OrvApplication::appInstance().setInitialized(true);
        OrvShaderInputActions::instance();
        OrvLayerActions::instance();
        m_View = OrvLayerViewContextManager::instance().mainLayerView();
        // Whatever a command asks or tells is closed as if by Escape.
        connect(&m_BoxTimer, &QTimer::timeout, this, [] {
            if (auto* pDialog = qobject_cast<QDialog*>(QApplication::activeModalWidget()))
                pDialog->reject();
        });
        m_BoxTimer.start(0);
    }
    void init() { m_Reports.Texts.clear(); }

    void relayRefusesWhatItCannotPass()
    {
        const auto relay = [this](const QVariant& Data) {
            m_Reports.Texts.clear();
            QAction Action;
            Action.setData(Data);
            OrvLayerActions::instance().invokeLayerMethod(&Action);
            return m_Reports.Texts.value(0);
        };
        QCOMPARE(relay("deleteMask"), QStringLiteral("pCurrentLayer is NULL"));
        const OrvTestProject Project;
        OrvLayer* pLayer = addLayer(Project.channel(), QStringLiteral("A"));
        pLayer->makeCurrent(false, true);
        QVariantList TooMany{"setMaskEnabled"};
        for (int Count = 0; Count < 11; ++Count)
            TooMany.append(Count % 2 == 0);
        pLayer->addMaskImageSet();
        QCOMPARE(
            relay(TooMany), QStringLiteral("[ !! ] Relayed method arg count of '11' exceeds limit of '10'"));
        QVERIFY(pLayer->isMaskEnabled());
        for (const QVariant& Nameless : {QVariant(), QVariant(QString()), QVariant(QVariantList())})
            QCOMPARE(relay(Nameless), QStringLiteral("[ !! ] Relayed method name missing"));
        QVERIFY(relay("noSuchMethod").startsWith(QStringLiteral("[ !! ] ")));
        QVERIFY(relay(QVariantList{"setMaskEnabled", false}).isEmpty());
        QVERIFY(!pLayer->isMaskEnabled());
        QVERIFY(relay(QStringList{"deleteMask"}).isEmpty());
        QVERIFY(!pLayer->hasMask());
    }

    void numbersAreCheckedBeforeTheyAreUsed()
    {
        QAction Action(QStringLiteral("Halve Size"));
        OrvLayerActions& Actions = OrvLayerActions::instance();
        Actions.maskResizeCurrent(&Action);
        QCOMPARE(m_Reports.Texts.takeLast(), QStringLiteral("pLayer is NULL"));
        OrvTestProject Project(QSize(64, 64), GL_UNSIGNED_BYTE);
        OrvLayer* pLayer = addLayer(Project.channel(), QStringLiteral("A"));
        pLayer->addMaskImageSet();
        pLayer->makeCurrent(false, true);
        for (auto pSlot : {&OrvLayerActions::maskConvertCurrent, &OrvLayerActions::maskResizeCurrent,
                 &OrvLayerActions::layerResizeCurrent}) {
            Action.setData(QStringLiteral("64"));
            (Actions.*pSlot)(&Action);
            QCOMPARE(m_Reports.Texts.takeLast(),
                QStringLiteral("Action 'Halve Size' contains invalid data type of 'QString'"));
            Action.setData(QVariant());
            (Actions.*pSlot)(&Action);
            QCOMPARE(m_Reports.Texts.takeLast(),
                QStringLiteral("Action 'Halve Size' contains invalid data type of ''"));
        }
        const auto edge = [](const OrvImageSet* pImages) { return pImages->layout().tileSize().width(); };
        trigger(Path + QStringLiteral("Mask/Resize Mask/Halve Size"));
        QCOMPARE(edge(pLayer->maskImageSet()), 32);
        trigger(Path + QStringLiteral("Mask/Resize Mask/Double Size"));
        trigger(Path + QStringLiteral("Mask/Resize Mask/Double Size"));
        QCOMPARE(edge(pLayer->maskImageSet()), 128);
        trigger(Path + QStringLiteral("Mask/Resize Mask/256 x 256"));
        QCOMPARE(edge(pLayer->maskImageSet()), 256);
        QCOMPARE(edge(pLayer->paintImageSet()), 64);
        for (const auto& Depth : OrvImage::sortedSupportedDepths()) {
            trigger(Path + QStringLiteral("Mask/Convert Mask/") + Depth.first);
            QCOMPARE(pLayer->maskImageSet()->format().Depth, Depth.second);
        }
        Action.setData(-1);
        Actions.layerResizeCurrent(&Action);
        QCOMPARE(edge(pLayer->paintImageSet()), 32);
        QCOMPARE(OrvUndoManager::instance().stack()->undoText(), QStringLiteral("Resize Layer"));
    }

    void newNodeTypesGetTheirActionsOnce()
    {
        const OrvActionTreeManager& Tree = OrvActionTreeManager::instance();
        const QStringList Keys = Tree.actionKeys(Path);
        Q_EMIT OrvShaderNetworkManager::instance().registeredNodePopulationChanged();
        QCOMPARE(Tree.actionKeys(Path), Keys);
        QVERIFY2(m_Reports.Texts.isEmpty(), qPrintable(m_Reports.Texts.join('\n')));
        for (const QString& Key : OrvShaderNetworkManager::instance().layerPathKeys()) {
            const bool Filter = Key.startsWith(QStringLiteral("Filter/"));
            QCOMPARE(Tree.hasAction(Path + QStringLiteral("Adjustment/") + Key), Filter);
            QCOMPARE(Tree.hasAction(Path + QStringLiteral("Secondary Adjustment/") + Key), Filter);
            QCOMPARE(Tree.hasAction(Path + QStringLiteral("Adjustment Stack/") + Key), Filter);
            QCOMPARE(Tree.hasAction(Path + QStringLiteral("Procedural/") + Key),
                Key.startsWith(QStringLiteral("Procedural/")));
        }
    }

    void shortcutsAreFreeAndTabFindsTheView()
    {
        const OrvShortcutManager& Shortcuts = OrvShortcutManager::instance();
        QStringList Bound;
        for (const QString& Key : OrvActionTreeManager::instance().actionKeys(Path)) {
            const QKeySequence Keys = Shortcuts.shortcut(Key);
            if (Keys.isEmpty())
                continue;
            Bound.append(Key);
            QVERIFY2(Shortcuts.conflicts(Key, Keys).isEmpty(), qPrintable(Key));
        }
        QCOMPARE(Bound.size(), 5);
        // Those that only the tree answers to are shown beside the commands, and are nobody else's.
        for (const char* pText : {"Cut", "Copy", "Paste", "Remove Layers"}) {
            const OrvLateBindAction Entry(Path + QLatin1String(pText));
            QVERIFY2(!Entry.shortcut().isEmpty(), pText);
            QVERIFY2(Shortcuts
                         .conflicts(QStringLiteral("/Orvi/Palettes/Layers/") + QLatin1String(pText),
                             Entry.shortcut())
                         .isEmpty(),
                pText);
        }
        const OrvTestProject Project;
        m_View->setLayerStack(Project.channel());
        QTRY_VERIFY(action(QStringLiteral("Quick Find"))->isEnabled());
        OrvLayerTreeView* pTree = m_View->treeView();
        for (const bool Inside : {true, false}) {
            QEvent Crossing(Inside ? QEvent::Enter : QEvent::Leave);
            QCoreApplication::sendEvent(pTree, &Crossing);
            m_Reports.Texts.clear();
            QTest::keyClick(pTree, Qt::Key_Tab);
            QCOMPARE(m_Reports.Texts.filter(QStringLiteral("[ -- ] quickfind ")).size(), Inside ? 1 : 0);
        }
        action(QStringLiteral("Quick Find"))->trigger();
        QVERIFY(m_Reports.Texts.value(0).startsWith(QStringLiteral("[ -- ] quickfind ")));
        QVERIFY(m_Reports.Texts.value(0).endsWith(QStringLiteral(" Diffuse")));
    }

    /// Of the commands for layers; those for stacks, and the ones named here, are on.
    void layerCommandsFollowTheLayer_data()
    {
        QTest::addColumn<QString>("Kind");
        QTest::addColumn<QString>("State");
        QTest::addColumn<QStringList>("Expected");
        const QStringList Base{"Mask/Paste", "Open Layer Contents in Node Graph", "Share Layer",
            "Share Layers As Channel", "Cache Up To Here"};
        const QStringList NewMask{"Mask/Reveal All", "Mask/Hide All", "Mask/From Alpha",
            "Mask/From Selection", "Mask/From Selection Group"};
        const QStringList Mask{"Mask/Cut", "Mask/Copy", "Remove Mask", "Disable Mask"};
        const QStringList MaskImages{"Make Mask Stack",
            "Mask/Convert Mask/" + OrvImage::depthName(GL_HALF_FLOAT), "Mask/Resize Mask/Halve Size",
            "Mask/Resize Mask/256 x 256"};
        const QStringList TakesStack{"Adjustment Stack/" + anyKey("Filter/Adjust/")};
        const QStringList Stack{
            "Adjustment Stack/Remove Adjustment Stack", "Adjustment Stack/Disable Adjustment Stack"};
        const QString Bake = QStringLiteral("Adjustment Stack/Bake Adjustment Stack");
        const QString Second = "Secondary Adjustment/" + anyKey("Filter/Adjust/");
        const auto row = [](const char* pKind, const char* pState, const QStringList& Expected) {
            QTest::addRow("%s, %s", pKind, pState)
                << QString::fromLatin1(pKind) << QString::fromLatin1(pState) << Expected;
        };
        row("paint", "plain", Base + NewMask + TakesStack);
        row("paint", "masked", Base + Mask + MaskImages + TakesStack + QStringList{"Bake Mask"});
        row("paint", "mask stack",
            Base + Mask + TakesStack + QStringList{"Bake Mask", "Convert To Paintable Mask"});
        row("paint", "adjusted", Base + NewMask + TakesStack + Stack + QStringList{Bake});
        row("paint", "mask off",
            Base + QStringList{"Mask/Cut", "Mask/Copy", "Remove Mask", "Enable Mask", "Bake Mask"}
                + MaskImages + TakesStack);
        row("paint", "stack off",
            Base + NewMask + TakesStack
                + QStringList{Bake, "Adjustment Stack/Remove Adjustment Stack",
                    "Adjustment Stack/Enable Adjustment Stack"});
        row("paint", "locked", {"Open Layer Contents in Node Graph", "Cache Up To Here"});
        row("paint", "cached up to here", {"Open Layer Contents in Node Graph", "Uncache Up To Here"});
        row("procedural", "adjusted",
            Base + NewMask + TakesStack + Stack + QStringList{"Convert To Paintable"});
        row("graph", "masked", Base + Mask + MaskImages + TakesStack + QStringList{"Convert To Paintable"});
        row("group", "plain",
            Base + NewMask + TakesStack + QStringList{"Flatten Layer Group", "Ungroup Layers"});
        row("adjustment", "plain", Base + NewMask + QStringList{Second});
        row("adjustment", "second",
            Base + NewMask + QStringList{"Secondary Adjustment/Remove Secondary Adjustment"});
        row("custom procedural", "plain", Base + NewMask + TakesStack + QStringList{"Convert To Paintable"});
        row("paint", "mask procedural",
            Base + Mask + TakesStack
                + QStringList{"Bake Mask", "Make Mask Stack", "Convert To Paintable Mask"});
        row("paint", "masked, locked",
            {"Open Layer Contents in Node Graph", "Cache Up To Here", "Mask/Copy"});
        row("paint", "masked, cached",
            {"Open Layer Contents in Node Graph", "Cache Up To Here", "Mask/Copy"});
        row("group", "locked", {"Open Layer Contents in Node Graph", "Cache Up To Here"});
        row("bake point", "baked", {"Open Layer Contents in Node Graph", "Cache Up To Here"});
        row("bake point", "plain", {"Open Layer Contents in Node Graph", "Cache Up To Here"});
        row("shared", "plain", Base + NewMask + TakesStack + QStringList{"Unshare Layer"});
        row("shared channel", "plain",
            Base + NewMask + TakesStack + QStringList{"Make Shared Channel Current"});
    }

    void layerCommandsFollowTheLayer()
    {
        QFETCH(QString, Kind);
        QFETCH(QString, State);
        QFETCH(QStringList, Expected);
        const OrvTestProject Project(QSize(16, 16), GL_UNSIGNED_BYTE);
        OrvLayer* pLayer = makeLayer(Kind, Project.channel());
        QVERIFY(pLayer);
        pLayer->makeCurrent(false, true);
        QGuiApplication::clipboard()->clear();
        QCoreApplication::processEvents();
        QVERIFY(!action(QStringLiteral("Mask/Paste"))->isEnabled());
        OrvLayer* pMasked = addLayer(Project.channel(), QStringLiteral("Masked"));
        pMasked->addMaskImageSet();
        pMasked->copyMaskToClipboard();
        Project.channel()->deleteLayers({pMasked});
        bring(pLayer, State);
        QCoreApplication::processEvents();
        QStringList Enabled;
        for (const QString& Key : layerCommands()) {
            const QAction* pAction = action(Key);
            if (pAction->isEnabled())
                Enabled.append(Key);
            // Commands of a set are off with their menu.
            const bool SaysWhyNot = pAction->toolTip() != pAction->text();
            const bool OfSet = Key.contains(QStringLiteral("/Convert Mask/")) || Key.contains("/Resize Mask/")
                || Key.endsWith(anyKey("Filter/Adjust/"));
            QVERIFY2(
                OfSet || SaysWhyNot != pAction->isEnabled(), qPrintable(Key + ": " + pAction->toolTip()));
        }
        if (State == QStringLiteral("locked"))
            QVERIFY(action("Bake Mask")->toolTip().endsWith(QStringLiteral("' is locked")));
        Enabled.sort();
        Expected.sort();
        QCOMPARE(Enabled, Expected);
        for (const QString& Text : stackCommands())
            QVERIFY2(action(Text)->isEnabled(), qPrintable(Text));
        const OrvMenuManager& Menus = OrvMenuManager::instance();
        const QString Menu = QStringLiteral("MainWindow/&Layers/");
        QCOMPARE(Menus.isMenuEnabled(Menu + "Layer Mask"), Expected.contains(QStringLiteral("Mask/Paste")));
        QCOMPARE(Menus.isMenuEnabled(Menu + "Layer Mask/Convert Mask"),
            Expected.contains(QStringLiteral("Mask/Resize Mask/Halve Size")));
        QCOMPARE(Menus.isMenuEnabled(Menu + "Secondary Adjustment"), Kind == QStringLiteral("adjustment"));
        QVERIFY(Menus.isMenuEnabled(Menu + "Add Adjustment Layer") && Menus.isMenuEnabled(Menu + "Caching"));
        const std::unique_ptr<QMenu> pMenu(OrvMenuManager::instance().makeMenu("MainWindow", "&Layers"));
        for (const QMenu* pSubMenu : pMenu->findChildren<QMenu*>()) {
            const QAction* pEntry = pSubMenu->menuAction();
            QVERIFY2(
                (pEntry->toolTip() != pEntry->iconText()) != pEntry->isEnabled(), qPrintable(pEntry->text()));
        }
    }

    void withoutAProjectNothingCanBeUsed()
    {
        {
            const OrvTestProject Project;
            addLayer(Project.channel(), QStringLiteral("A"))->makeCurrent(false, true);
            QCoreApplication::processEvents();
            QVERIFY(action("Cut")->isEnabled() && action("Share Layer")->isEnabled());
        }
        QCoreApplication::processEvents();
        for (const QString& Key : OrvActionTreeManager::instance().actionKeys(Path)) {
            if (!Key.startsWith(Path + QStringLiteral("Shaders/")))
                QVERIFY2(!OrvActionTreeManager::instance().findAction(Key)->isEnabled()
                        || !OrvActionTreeManager::instance().findAction(Key)->isVisible(),
                    qPrintable(Key));
        }
        QVERIFY(!OrvMenuManager::instance().isMenuEnabled(QStringLiteral("MainWindow/&Layers/Sharing")));
    }

    void sharedChannelsAreReachedAndRefusalsTold()
    {
        const OrvTestProject Project;
        OrvLayer* pLayer = makeLayer(QStringLiteral("shared channel"), Project.channel());
        makeCurrent(pLayer, Project.channel());
        trigger(Path + QStringLiteral("Bake Mask"));
        QVERIFY(OrvStatusManager::instance().text().contains(pLayer->name()));
        OrvTestProject::network()->selectNone();
        trigger(Path + QStringLiteral("Share Layers As Channel"));
        QVERIFY(OrvStatusManager::instance().text().startsWith(QStringLiteral("Select")));
        trigger(Path + QStringLiteral("Make Shared Channel Current"));
        QCOMPARE(OrvShaderInputManager::instance().currentShaderInput()->name(), QStringLiteral("Other"));
    }

    void maskCommandsFollowTheMask()
    {
        OrvTestProject Project;
        OrvLayer* pLayer = makeLayer(QStringLiteral("paint"), Project.channel());
        makeCurrent(pLayer, Project.channel());
        const auto offered = [this] {
            QTest::qWait(1);
            return QStringLiteral("%1%2%3")
                .arg(int(action(QStringLiteral("Enable Mask"))->isEnabled()))
                .arg(int(action(QStringLiteral("Disable Mask"))->isEnabled()))
                .arg(int(action(QStringLiteral("Remove Mask"))->isEnabled()));
        };
        QCOMPARE(offered(), QStringLiteral("000"));
        trigger(Path + QStringLiteral("Mask/Hide All"));
        QCOMPARE(offered(), QStringLiteral("011"));
        trigger(Path + QStringLiteral("Disable Mask"));
        QCOMPARE(offered(), QStringLiteral("101"));
        QCOMPARE(OrvUndoManager::instance().stack()->undoText(),
            QStringLiteral("Disable Mask of '%1'").arg(pLayer->name()));
        Project.undo();
        QCOMPARE(offered(), QStringLiteral("011"));
        Project.redo();
        QCOMPARE(offered(), QStringLiteral("101"));
        trigger(Path + QStringLiteral("Remove Mask"));
        QCOMPARE(offered(), QStringLiteral("000"));
    }

    void exportFollowsTheLayer()
    {
        QAction Entry(QStringLiteral("Current Layer"));
        OrvActionTreeManager::instance().registerAction(Path + QStringLiteral("Images"), &Entry);
        OrvMenuManager::instance().registerAction(QStringLiteral("MainWindow"), QStringLiteral("&Layers"),
            QStringLiteral("&Export"),
            new OrvLateBindAction(Path + QStringLiteral("Images/Current Layer"), &Entry));
        OrvLayerActions::instance().switchActionsEnabled();
        QVERIFY(!Entry.isEnabled());
        const OrvTestProject Project;
        addLayer(Project.channel(), QStringLiteral("A"))->makeCurrent(false, true);
        QTRY_VERIFY(Entry.isEnabled());
    }

    void everyCommandOnEveryLayerIsOneStepBack_data()
    {
        QTest::addColumn<QString>("Kind");
        QTest::addColumn<QString>("Stack");
        QTest::addColumn<QString>("State");
        for (const char* pKind : Kinds) {
            for (const char* pStack : Stacks) {
                for (const char* pState : States) {
                    const QString Kind = QString::fromLatin1(pKind), Stack = QString::fromLatin1(pStack),
                                  State = QString::fromLatin1(pState);
                    const bool IsPlain
                        = (State == QStringLiteral("baked") && Kind != QStringLiteral("bake point"))
                        || (State == QStringLiteral("locked around") && Stack == QStringLiteral("channel"));
                    if (!IsPlain && canStandIn(Stack, Kind))
                        QTest::addRow("%s, %s stack, %s", pKind, pStack, pState) << Kind << Stack << State;
                }
            }
        }
    }

    /// Also those that are switched off: a key or a script may be faster than the queue.
    void everyCommandOnEveryLayerIsOneStepBack()
    {
        QFETCH(QString, Kind);
        QFETCH(QString, Stack);
        QFETCH(QString, State);
        OrvTestProject Project(QSize(8, 8), GL_UNSIGNED_BYTE);
        OrvLayerStack* pStack = makeStack(Project, Stack);
        QVERIFY(pStack);
        OrvLayer* pLayer = makeLayer(Kind, pStack);
        QVERIFY(pLayer);
        bring(pLayer, State);
        if (State == QStringLiteral("locked around")) {
            for (OrvLayer* pAround : Project.channel()->layerList())
                pAround->setLocked(true);
        }
        const bool IsFixed = !pLayer->isModifiable();
        const QPointer<OrvSnBaseNode> pNode = pLayer->blendNode();
        m_View->setLayerStack(pStack);
        QUndoStack* pHistory = OrvUndoManager::instance().stack();

        for (const QString& Key : everyCommand()) {
            makeCurrent(pLayer, pStack);
            const QByteArray Before = OrvTestProject::document();
            const QString Enabled = enabledText();
            const int Index = pHistory->index();
            m_Reports.Texts.clear();
            trigger(Key);
            const QByteArray Place = QTest::currentDataTag() + QByteArray(": ") + Key.toUtf8();
            QVERIFY2(!OrvUndoManager::instance().isInMacro(), Place);
            QVERIFY2(m_Reports.Texts.filter(QStringLiteral("[ !! ]")).isEmpty(),
                Place + ' ' + m_Reports.Texts.join('\n').toUtf8());
            QVERIFY2(pHistory->index() <= Index + 1, Place);
            const QByteArray After = OrvTestProject::document();
            // Whatever may be done around it: a locked or cached layer's own commands leave it alone.
            QVERIFY2(!IsFixed || After == Before || !changesLayers(Key), Place);
            if (pHistory->index() == Index) {
                QVERIFY2(After == Before, Place);
                continue;
            }
            OrvTestProject::undo();
            QVERIFY2(OrvTestProject::document() == Before, Place);
            OrvTestProject::redo();
            QVERIFY2(OrvTestProject::document() == After, Place);
            OrvTestProject::undo();
            QVERIFY2(OrvTestProject::document() == Before, Place);
            pLayer = OrvLayerManager::instance().getLayer(pNode);
            QVERIFY2(pLayer && pLayer->stacks().contains(pStack), Place);
            makeCurrent(pLayer, pStack);
            QVERIFY2(
                enabledText() == Enabled, Place + ' ' + enabledText().toUtf8() + " was " + Enabled.toUtf8());
        }
    }

private:
    static bool canStandIn(const QString& Stack, const QString& Kind)
    {
        const bool IsShared
            = Kind == QStringLiteral("material") || Kind == QStringLiteral("multi-channel group");
        if (Stack == QStringLiteral("material") || Kind == QStringLiteral("shader"))
            return Stack == QStringLiteral("material") && Kind == QStringLiteral("shader");
        return !IsShared || Stack == QStringLiteral("channel") || Stack == QStringLiteral("group");
    }

    /// For the channel and another one.
    OrvLayer* makeMultiChannelLayer(bool IsMaterial, const OrvLayerStack* pStack)
    {
        OrvShaderInput* pOther
            = OrvTestProject::addChannel(QStringLiteral("Other"), QSize(8, 8), GL_UNSIGNED_BYTE);
        OrvLayerShader* pShader
            = OrvLayerShaderUtils::createShaderFromKey(QStringLiteral("Shader/MetallicRoughness"), false);
        pShader->setInputShaderInput(
            QStringLiteral("Base Color"), OrvTestProject::channel(QStringLiteral("Diffuse")));
        pShader->setInputShaderInput(QStringLiteral("Roughness"), pOther);
        QString Error;
        const QString Steel
            = OrvShelfDirectories::shipped() + QStringLiteral("/Materials/Rusted Steel.orvmat");
        return IsMaterial
            ? OrvMultiChannelLayerUtils::createMaterialLayer(Steel, pShader, pStack->topNode(), Error)
            : OrvMultiChannelLayerUtils::createMultiChannelGroupLayer(pShader, pStack->topNode(), Error);
    }

    static OrvLayer* makeShaderLayer(OrvLayerStack* pStack)
    {
        OrvLayerShaderManager& Shaders = OrvLayerShaderManager::instance();
        Shaders.setLayerShaderCreating(true);
        OrvLayer* pLayer = pStack->createShaderLayer(
            OrvLayerShaderUtils::createShaderFromKey(QStringLiteral("Shader/Unlit"), false), 0);
        Shaders.setLayerShaderCreating(false);
        return pLayer;
    }

    OrvLayer* makeLayer(const QString& Kind, OrvLayerStack* pStack)
    {
        if (Kind == QStringLiteral("adjustment"))
            return pStack->createAdjustmentLayer(anyKey("Filter/Adjust/"), 0);
        if (Kind == QStringLiteral("procedural"))
            return pStack->createProceduralLayer(anyKey("Procedural/"), 0);
        if (Kind == QStringLiteral("material") || Kind == QStringLiteral("multi-channel group"))
            return makeMultiChannelLayer(Kind == QStringLiteral("material"), pStack);
        if (Kind == QStringLiteral("shader"))
            return makeShaderLayer(pStack);
        QString Error;
        if (Kind == QStringLiteral("custom procedural"))
            return pStack->createCustomProceduralLayer(dirtMask(), nullptr, 0, Error);
        if (Kind == QStringLiteral("group"))
            return group(pStack, addLayers(pStack, {"B", "C"}), QStringLiteral("G"));
        if (Kind == QStringLiteral("graph"))
            return pStack->createGraphLayer(0);
        if (Kind == QStringLiteral("bake point"))
            return pStack->createBakePointLayer(0);
        OrvLayer* pPaint = addLayer(pStack, QStringLiteral("A"));
        if (Kind == QStringLiteral("shared"))
            return pStack->shareLayer(pPaint, 0);
        if (Kind != QStringLiteral("shared channel"))
            return pPaint;
        OrvShaderInput* pOther
            = OrvTestProject::addChannel(QStringLiteral("Other"), QSize(8, 8), GL_UNSIGNED_BYTE);
        return OrvLayerManager::instance().getLayer(OrvLayerStreamUtils::createLayerNodeAfter(
            pPaint->blendNode(), pOther->node(), QStringLiteral("S"), QString(), true));
    }

    OrvLayerStack* makeStack(OrvTestProject& Project, const QString& Kind)
    {
        if (Kind == QStringLiteral("material"))
            return OrvShaderInputUtils::createShaderInput(true);
        OrvLayer* pBase = Project.paint(QStringLiteral("Base"), OrvColor(0.5f, 0.25f, 0.0f, 1.0f));
        if (Kind == QStringLiteral("channel"))
            return Project.channel();
        if (Kind == QStringLiteral("group"))
            return OrvLayerStreamUtils::groupStack(Project.group(QStringLiteral("Around"), {pBase}));
        if (Kind == QStringLiteral("adjustment")) {
            pBase->addLayerAdjustmentLayerFromKey(anyKey("Filter/Adjust/"));
            return pBase->adjustmentStack();
        }
        pBase->addMaskImageSet();
        return pBase->convertMaskToMaskStack();
    }

    void bring(OrvLayer* pLayer, const QString& State)
    {
        QString Error;
        if (State == QStringLiteral("mask procedural"))
            pLayer->addMaskCustomProcedural(dirtMask(), Error);
        else if (State.startsWith(QStringLiteral("mask")))
            pLayer->addMaskImageSet();
        if (State == QStringLiteral("baked"))
            pLayer->bake();
        if (State == QStringLiteral("mask stack"))
            pLayer->convertMaskToMaskStack();
        if (State == QStringLiteral("mask off"))
            pLayer->setMaskEnabled(false);
        if (State == QStringLiteral("adjusted") || State == QStringLiteral("stack off"))
            pLayer->addLayerAdjustmentLayerFromKey(anyKey("Filter/Adjust/"));
        if (State == QStringLiteral("stack off"))
            pLayer->setAdjustmentStackEnabled(false);
        if (State == QStringLiteral("second"))
            pLayer->addSecondaryAdjustmentLayerFromKey(anyKey("Filter/Blur/"));
        if (State.endsWith(QStringLiteral("locked")))
            pLayer->setLocked(true);
        if (State.endsWith(QStringLiteral("cached")))
            pLayer->cacheLayer();
        if (State == QStringLiteral("cached up to here"))
            pLayer->cacheUpToHere();
    }

    static void makeCurrent(OrvLayer* pLayer, OrvLayerStack* pStack)
    {
        OrvLayerManager::instance().setCurrentLayerStack(pStack);
        pLayer->makeCurrent(false, false);
        OrvTestProject::select({pLayer});
        QCoreApplication::processEvents();
    }

    /// As a click would, but also when the action is off.
    static void trigger(const QString& Key)
    {
        QAction* pAction = OrvActionTreeManager::instance().findAction(Key);
        QVERIFY2(pAction, qPrintable(Key));
        Q_EMIT pAction->triggered(false);
    }

    /// Without the node types, which differ by their key alone: one of each family will do.
    static QStringList everyCommand()
    {
        QStringList Keys;
        for (const QString& Key : OrvActionTreeManager::instance().actionKeys(Path)) {
            const bool IsLayerType
                = Key.contains(QStringLiteral("/Filter/")) || Key.contains(QStringLiteral("/Procedural/"));
            const bool IsLargeSize
                = Key.contains(QStringLiteral(" x ")) && !Key.endsWith(QStringLiteral("256"));
            if (!IsLayerType && !IsLargeSize && !Key.contains(QStringLiteral("/Shaders/"))
                && !Key.endsWith(QStringLiteral("/Quick Find")))
                Keys.append(Key);
        }
        for (const char* pFamily : {"Adjustment/", "Secondary Adjustment/", "Adjustment Stack/"})
            Keys.append(Path + QString::fromLatin1(pFamily) + anyKey("Filter/Blur/"));
        Keys.append(Path + QStringLiteral("Procedural/") + anyKey("Procedural/"));
        return Keys;
    }

    static QStringList stackCommands()
    {
        return {"Add New Layer", "Cut", "Copy", "Paste", "Remove Layers", "Merge Layers",
            "Add Empty Layer Group", "Group Layers", "Cache Layers", "Uncache Layers",
            "Adjustment/" + anyKey("Filter/Adjust/"), "Procedural/" + anyKey("Procedural/")};
    }

    static QStringList layerCommands()
    {
        return {"Flatten Layer Group", "Ungroup Layers", "Mask/Reveal All", "Mask/Hide All",
            "Mask/From Alpha", "Mask/From Selection", "Mask/From Selection Group", "Mask/Cut", "Mask/Copy",
            "Mask/Paste", "Make Mask Stack", "Convert To Paintable Mask", "Bake Mask", "Remove Mask",
            "Enable Mask", "Disable Mask", "Mask/Convert Mask/" + OrvImage::depthName(GL_HALF_FLOAT),
            "Mask/Resize Mask/Halve Size", "Mask/Resize Mask/256 x 256",
            "Secondary Adjustment/" + anyKey("Filter/Adjust/"),
            "Secondary Adjustment/Remove Secondary Adjustment",
            "Adjustment Stack/" + anyKey("Filter/Adjust/"), "Adjustment Stack/Bake Adjustment Stack",
            "Adjustment Stack/Remove Adjustment Stack", "Adjustment Stack/Enable Adjustment Stack",
            "Adjustment Stack/Disable Adjustment Stack", "Convert To Paintable",
            "Open Layer Contents in Node Graph", "Share Layers As Channel", "Share Layer", "Unshare Layer",
            "Make Shared Channel Current", "Cache Up To Here", "Uncache Up To Here"};
    }

    /// Caches are there for fixed layers, too, and who shares them changes nothing in them.
    static bool changesLayers(const QString& Key)
    {
        static const QStringList Others{
            "Cache Up To Here", "Uncache Up To Here", "Share Layer", "Share Layers As Channel"};
        const QString Command = Key.mid(Path.size());
        return layerCommands().contains(Command) && !Others.contains(Command);
    }
    static QString dirtMask()
    {
        return OrvShelfDirectories::shipped() + QStringLiteral("/Masks/Dirt.orvproc");
    }

    /// Without what the clipboard has a say in, which undo leaves as it is.
    static QString enabledText()
    {
        QStringList Enabled;
        for (const QString& Key : layerCommands() + stackCommands()) {
            if (action(Key)->isEnabled() && Key != QStringLiteral("Mask/Paste"))
                Enabled.append(Key);
        }
        return Enabled.join(QLatin1Char(','));
    }

    SettingsDirectory m_Directory;
    QTimer m_BoxTimer;
    OrvDebugReports m_Reports;
    OrvLayerView* m_View = nullptr;
};

QTEST_MAIN(TstLayerActions)
#include "TstLayerActions.moc"
