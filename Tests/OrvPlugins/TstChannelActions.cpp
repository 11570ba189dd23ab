#include "Tests/OrvPlugins/SettingsDirectory.h"
#include "Tests/Orvi/OrvTestAnswers.h"
#include "Tests/Support/OrvDebugReports.h"
#include "Tests/Support/OrvTestProject.h"

#include "OrvCore/Channels/OrvSnShaderInputNode.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCore/Shaders/OrvLayerShaderUtils.h"
#include "OrvCore/Shaders/OrvMultiChannelLayerUtils.h"
#include "OrvCoreModules/Menus/OrvAction.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Menus/OrvMenu.h"
#include "OrvCoreModules/Menus/OrvMenuManager.h"
#include "OrvCoreModules/Properties/OrvColorSpaceControlet.h"
#include "OrvCoreModules/Widgets/OrvExpandableListWidget.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvCoreModules/Window/OrvStatusManager.h"
#include "OrvDdi/Color/OrvColorManager.h"
#include "OrvDdi/Image/OrvChannel.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputActions.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputActionsConvertDialog.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputTreeView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputView.h"

#include <QtCore/QMimeData>
#include <QtGui/QClipboard>
#include <QtTest/QtTest>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QUndoStack>

#include <functional>
#include <memory>

namespace {

const QString Path = QStringLiteral("/Orvi/Channels/");

OrvShaderInputManager& channels()
{
    return OrvShaderInputManager::instance();
}

QAction* action(const QString& Text)
{
    return OrvActionTreeManager::instance().findAction(Path + Text);
}

QAction* sizeAction(const QSize& Size)
{
    return action(QStringLiteral("Resize Channel/%1 x %2").arg(Size.width()).arg(Size.height()));
}

QUndoStack& history()
{
    return *OrvUndoManager::instance().stack();
}

QStringList buttonsOf(const QDialog* pDialog)
{
    QStringList Texts;
    for (const QPushButton* pButton : pDialog->findChildren<QPushButton*>())
        Texts.append(pButton->text());
    return Texts;
}

void press(QDialog* pDialog, const QString& Button)
{
    for (QPushButton* pButton : pDialog->findChildren<QPushButton*>()) {
        if (pButton->text().remove(QLatin1Char('&')) == Button)
            return QTest::mouseClick(pButton, Qt::LeftButton);
    }
    QFAIL(qPrintable("no button " + Button));
}

/// A user who, in the dialog that the command opens, chooses and presses.
void convertAs(const std::function<void(OrvShaderInputActionsConvertDialog&)>& Use)
{
    QTimer::singleShot(0, [Use] {
        auto* pDialog = qobject_cast<OrvShaderInputActionsConvertDialog*>(QApplication::activeModalWidget());
        QVERIFY(pDialog);
        Use(*pDialog);
        if (pDialog->isVisible())
            pDialog->reject();
    });
    action("Convert Channel")->trigger();
}

void chooseType(const OrvShaderInputActionsConvertDialog& Dialog, GLenum Depth)
{
    auto* pType = Dialog.findChild<QComboBox*>(QString(), Qt::FindDirectChildrenOnly);
    pType->setCurrentIndex(pType->findData(uint(Depth)));
}

QStringList labelsOf(const OrvShaderInputActionsConvertDialog& Dialog)
{
    QStringList Labels;
    for (const QLabel* pLabel : Dialog.findChildren<QLabel*>())
        Labels.append(pLabel->text());
    return Labels;
}

void convertTo(GLenum Depth, const QString& Button = QStringLiteral("Convert"))
{
    convertAs([=](OrvShaderInputActionsConvertDialog& Dialog) {
        chooseType(Dialog, Depth);
        press(&Dialog, Button);
    });
}

/// The warnings that come up, "Title: text", and are agreed to.
QStringList warnings(const std::function<void()>& Run)
{
    QString Title;
    QTimer Look;
    QObject::connect(&Look, &QTimer::timeout, [&Title] {
        if (const QWidget* pBox = QApplication::activeModalWidget())
            Title = pBox->windowTitle();
    });
    Look.start(1);
    QStringList Texts = answering("OK", Run);
    for (QString& Text : Texts)
        Text.prepend(Title + ": ");
    return Texts;
}

/// What a channel is like when a command meets it.
enum Kind { Empty, Painted, Material, Locked, LayerLocked, Shared, Hidden, None };

} // namespace

/// The commands of the channels, as menus and keys give them.
class TstChannelActions : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_Directory.isValid());
        OrvShaderInputActions::instance();
        OrvMainWindow::instance().show();
    }
    void init() { m_Project = std::make_unique<OrvTestProject>(QSize(16, 16), GL_UNSIGNED_BYTE); }
    void cleanup() { m_Project.reset(); }

    void everyCommandHasItsPlaceAndFollowsTheProject()
    {
        const QStringList Texts{"Add Channel", "Add Material Channel", "Add Material Channel to Material Shader",
            "Convert Channel", "Remove Channel", "Flatten", "Cut", "Copy", "Paste"};
        const std::unique_ptr<OrvMenu> pMenu(OrvMenuManager::instance().makeMenu("MainWindow", "&Channels"));
        QStringList Shown;
        for (const QAction* pAction : pMenu->actions()) {
            if (!pAction->isSeparator() && !pAction->menu())
                Shown.append(pAction->text());
        }
        QCOMPARE(Shown, Texts);
        const QList<QAction*> Sizes
            = OrvMenuManager::instance().menuActions("MainWindow/&Channels/Resi&ze");
        QCOMPARE(Sizes.size(), OrvChannel::supportedTextureSizes().size());
        for (const QString& Text : Texts)
            QVERIFY2(action(Text)->isEnabled() && !action(Text)->icon().isNull(), qPrintable(Text));
        m_Project.reset();
        for (const QString& Text : Texts)
            QVERIFY2(!action(Text)->isEnabled(), qPrintable(Text));
        for (const char* pMenuPath : {"&Import", "&Export", "Export &Flattened", "Resi&ze"}) {
            QVERIFY(!OrvMenuManager::instance().isMenuEnabled(
                QStringLiteral("MainWindow/&Channels/") + QLatin1String(pMenuPath)));
        }
    }

    void channelsOfBothKindsAreAdded()
    {
        action("Add Channel")->trigger();
        QVERIFY(OrvTestProject::channel("Channel"));
        QCOMPARE(channels().currentShaderInput(), OrvTestProject::channel("Channel"));
        QCOMPARE(history().undoText(), QString("Add Channel"));
        action("Add Material Channel")->trigger();
        QCOMPARE(history().undoText(), QString("Add Material Channel"));
        QVERIFY(OrvTestProject::channel("Material")->isMaterialStack());
        QVERIFY(OrvStatusManager::instance().text().contains("'Material' was added"));
    }

    void freeMaterialInputsGetChannels()
    {
        const OrvDebugReports Told;
        OrvLayerShaderManager::instance().setCurrentShader(nullptr);
        action("Add Material Channel to Material Shader")->trigger();
        QCOMPARE(Told.Texts, QStringList("ShaderLayer is NULL"));

        OrvLayerShader* pShader = OrvLayerShaderUtils::createShaderFromKey("Shader/LayeredMaterial", true);
        QVERIFY(pShader);
        OrvLayerShaderManager::instance().setCurrentShader(pShader->node());
        action("Add Material Channel")->trigger();
        OrvShaderInput* pOwn = OrvTestProject::channel("Material");
        const QStringList Inputs = pShader->inputNames(OrvLayerShader::MaterialInputs);
        QVERIFY(pShader->setInputShaderInput(Inputs[1], pOwn));
        const QByteArray Document = OrvTestProject::document();

        action("Add Material Channel to Material Shader")->trigger();
        for (const QString& Input : Inputs)
            QVERIFY(pShader->inputShaderInput(Input) && pShader->inputShaderInput(Input)->isMaterialStack());
        QCOMPARE(pShader->inputShaderInput(Inputs[1]), pOwn);
        for (const QString& Input : pShader->inputNames(OrvLayerShader::ChannelInputs))
            QVERIFY(!pShader->inputShaderInput(Input));
        const int Steps = history().count();
        OrvTestProject::undo();
        QCOMPARE(OrvTestProject::document(), Document);
        OrvTestProject::redo();
        // Nothing is left to be done.
        action("Add Material Channel to Material Shader")->trigger();
        QCOMPARE(history().count(), Steps);
        QVERIFY(OrvStatusManager::instance().text().contains(pShader->name()));
    }

    void convertDialogSaysWhatItFinds_data()
    {
        QTest::addColumn<bool>("WithLocked");
        QTest::addColumn<bool>("WithShared");
        QTest::addColumn<QStringList>("Buttons");
        QTest::addColumn<QString>("Text");
        const QString Before("\nThe selected channel contains ");
        const QString After(".\n\nWould you like to change these as well?\n");
        const QStringList Three{"Convert Channel Only", "Convert All", "Cancel"};
        QTest::newRow("free") << false << false << QStringList{"Convert", "Cancel"} << QString();
        QTest::newRow("locked") << true << false << Three << Before + "locked layers" + After;
        QTest::newRow("shared") << false << true << Three
                                << Before + "shared layers that are used by other channels" + After;
        QTest::newRow("both") << true << true << Three
                              << Before + "locked layers and shared layers that are used by other channels"
                + After;
    }
    void convertDialogSaysWhatItFinds()
    {
        QFETCH(bool, WithLocked);
        QFETCH(bool, WithShared);
        QFETCH(QStringList, Buttons);
        QFETCH(QString, Text);
        m_Project->paint("Free");
        OrvLayer* pLocked = m_Project->paint("Locked");
        OrvLayer* pShared = m_Project->paint("Shared");
        OrvShaderInput* pOther = OrvTestProject::addChannel("Other");
        if (WithShared)
            pShared->addSharedLayerAfter(pOther->bottomNode(), QString(), true);
        pLocked->setLocked(WithLocked);
        const int Steps = history().count();
        bool Used = false;
        convertAs([&](OrvShaderInputActionsConvertDialog& Dialog) {
            Used = true;
            QCOMPARE(Dialog.windowTitle(), QString("Convert Channel"));
            QCOMPARE(buttonsOf(&Dialog), Buttons);
            const QStringList Labels = labelsOf(Dialog);
            QVERIFY(Labels.contains("Select the texel format to convert the channel to:\n"));
            QCOMPARE(!Text.isEmpty(), !Labels.filter("Would you like").isEmpty());
            QVERIFY(Text.isEmpty() || Labels.contains(Text));
            QCOMPARE(Dialog.depth(), GLenum(GL_UNSIGNED_BYTE));
            QVERIFY(!Dialog.findChild<OrvExpandableListWidget*>()->isExpanded());
            QCOMPARE(Dialog.findChildren<OrvColorSpaceControlet*>().size(), 2);
            chooseType(Dialog, GL_FLOAT);
            QCOMPARE(Dialog.colorSpaceConfig().colorSpace(), OrvColorManager::linear());
            QCOMPARE(Dialog.scalarColorSpaceConfig().automaticType(1), GLenum(GL_FLOAT));
            press(&Dialog, "Cancel");
        });
        QVERIFY(Used);
        QCOMPARE(history().count(), Steps);
        QCOMPARE(m_Project->channel()->imageSetDepth(), GLenum(GL_UNSIGNED_BYTE));
    }

    void convertingIsOneStepAndKeepsThePicture_data()
    {
        QTest::addColumn<int>("From");
        QTest::addColumn<int>("To");
        QTest::newRow("8 bits to half") << int(GL_UNSIGNED_BYTE) << int(GL_HALF_FLOAT);
        QTest::newRow("half to float") << int(GL_HALF_FLOAT) << int(GL_FLOAT);
        QTest::newRow("half to 8 bits") << int(GL_HALF_FLOAT) << int(GL_UNSIGNED_BYTE);
        QTest::newRow("float to 8 bits") << int(GL_FLOAT) << int(GL_UNSIGNED_BYTE);
        QTest::newRow("the same") << int(GL_FLOAT) << int(GL_FLOAT);
    }
    void convertingIsOneStepAndKeepsThePicture()
    {
        QFETCH(int, From);
        QFETCH(int, To);
        OrvShaderInput* pChannel = OrvTestProject::addChannel("Converted", QSize(16, 16), GLenum(From));
        OrvImageSet* pImages = m_Project->paint("Paint", OrvColor::clear(), pChannel)->paintImageSet();
        OrvTestProject::fill(pImages, QRect(0, 0, 16, 16), OrvColor(0.5f, 0.1f, 0.9f, 0.5f));
        channels().makeShaderInputCurrent(pChannel, true);
        const OrvColor Before = OrvTestProject::pixel(pChannel->node());
        const QByteArray Document = OrvTestProject::document();
        const int Steps = history().count();
        convertTo(GLenum(To));
        QCOMPARE(pChannel->imageSetDepth(), GLenum(To));
        QCOMPARE(pImages->format(), pChannel->paintFormat());
        QVERIFY(pChannel->colorSpaceConfig().isAutomatic(0));
        QCOMPARE(pChannel->colorSpaceConfig().colorSpace(),
            OrvColorSpaceConfig::automaticColorSpace(false, 0, GLenum(To)));
        QVERIFY(OrvTestProject::same(OrvTestProject::pixel(pChannel->node()), Before, 0.006f));
        QVERIFY(history().count() <= Steps + 1);
        history().setIndex(Steps);
        QCOMPARE(OrvTestProject::document(), Document);
    }

    /// Precision is widened before, and narrowed after, the colour space changes.
    void depthsComeFirstOrLast_data()
    {
        QTest::addColumn<int>("From");
        QTest::addColumn<int>("To");
        QTest::addColumn<QString>("First");
        QTest::newRow("8 bits to half") << int(GL_UNSIGNED_BYTE) << int(GL_HALF_FLOAT) << "depth";
        QTest::newRow("half to float") << int(GL_HALF_FLOAT) << int(GL_FLOAT) << "depth";
        QTest::newRow("half to 8 bits") << int(GL_HALF_FLOAT) << int(GL_UNSIGNED_BYTE) << "space";
        QTest::newRow("float to half") << int(GL_FLOAT) << int(GL_HALF_FLOAT) << "space";
    }
    void depthsComeFirstOrLast()
    {
        QFETCH(int, From);
        QFETCH(int, To);
        QFETCH(QString, First);
        OrvShaderInput* pChannel = OrvTestProject::addChannel("Converted", QSize(16, 16), GLenum(From));
        m_Project->paint("Paint", OrvColor::white(), pChannel);
        channels().makeShaderInputCurrent(pChannel, true);
        QStringList Order;
        connect(pChannel, &OrvShaderInput::imageSetDepthChanged, this, [&Order] { Order.append("depth"); });
        connect(pChannel, &OrvShaderInput::colorSpaceConfigChanged, this, [&Order, pChannel] {
            if (pChannel->colorSpaceConfig().colorSpace() == OrvColorManager::acesCg())
                Order.append("space");
        });
        convertAs([&](OrvShaderInputActionsConvertDialog& Dialog) {
            const QWidget* pColors = Dialog.findChildren<OrvColorSpaceControlet*>().first();
            auto* pStored = pColors->findChildren<QComboBox*>().first();
            pStored->setCurrentIndex(pStored->findData(OrvColorManager::acesCg()));
            Q_EMIT pStored->activated(pStored->currentIndex());
            chooseType(Dialog, GLenum(To));
            press(&Dialog, "Convert");
        });
        QCOMPARE(pChannel->imageSetDepth(), GLenum(To));
        QCOMPARE(pChannel->colorSpaceConfig().colorSpace(), OrvColorManager::acesCg());
        QCOMPARE(Order.count("depth"), 1);
        QCOMPARE(Order.first(), First);
    }

    void unknownDepthsAreReportedAndLeft()
    {
        constexpr GLenum UnknownDepth = 0x1403;
        m_Project->channel()->channelNode()->setDepth(int(UnknownDepth));
        const OrvDebugReports Told;
        convertAs([](OrvShaderInputActionsConvertDialog& Dialog) { press(&Dialog, "Convert"); });
        QCOMPARE(m_Project->channel()->imageSetDepth(), UnknownDepth);
        convertTo(GL_HALF_FLOAT);
        QCOMPARE(m_Project->channel()->imageSetDepth(), GLenum(GL_HALF_FLOAT));
        QCOMPARE(Told.Texts.filter("[ !! ] Unknown type : 0x1403").size(), 2);
    }

    void convertDialogTellsOfABrokenColorConfiguration()
    {
        const auto told = [] {
            QStringList Labels;
            convertAs([&Labels](OrvShaderInputActionsConvertDialog& Dialog) { Labels = labelsOf(Dialog); });
            return Labels.filter("color configuration");
        };
        QVERIFY(told().isEmpty());
        const QString File = m_Directory.filePath("missing.ocio");
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("missing\\.ocio"));
        qputenv("OCIO", QFile::encodeName(File));
        OrvColorManager::reloadConfiguration();
        const QStringList Texts = told();
        qunsetenv("OCIO");
        OrvColorManager::reloadConfiguration();
        QCOMPARE(Texts.size(), 1);
        QVERIFY(Texts.first().contains(File));
    }

    void convertAllTakesLockedLayersAlong()
    {
        OrvLayer* pLocked = m_Project->paint("Locked");
        pLocked->setLocked(true);
        convertTo(GL_HALF_FLOAT, "Convert Channel Only");
        QCOMPARE(pLocked->paintImageSet()->format().Depth, GLenum(GL_UNSIGNED_BYTE));
        convertTo(GL_FLOAT, "Convert All");
        QCOMPARE(pLocked->paintImageSet()->format().Depth, GLenum(GL_FLOAT));
        QCOMPARE(history().undoText(), QString("Convert Channel : %1").arg(m_Project->channel()->path()));
    }

    void removingASharedChannelAsks_data()
    {
        QTest::addColumn<QString>("Button");
        QTest::addColumn<QString>("Tree");
        QTest::newRow("cancel") << "Cancel" << "Shows Base";
        QTest::newRow("delete") << "Delete All" << "Base";
        QTest::newRow("group") << "Layer Group" << "Shows[Inside] Base";
        QTest::newRow("close") << QString() << "Shows[Inside] Base";
    }
    void removingASharedChannelAsks()
    {
        QFETCH(QString, Button);
        QFETCH(QString, Tree);
        OrvShaderInput* pShared = OrvTestProject::addChannel("Dirt");
        m_Project->paint("Inside", OrvColor::white(), pShared);
        m_Project->paint("Base");
        m_Project->paint("Shows")->blendNode()->connectInput(OrvSnNames::Over, pShared->node());
        channels().makeShaderInputCurrent(pShared, true);
        const QByteArray Document = OrvTestProject::document();
        const int Steps = history().count();
        if (Button.isEmpty())
            QTimer::singleShot(50, [] { QApplication::activeModalWidget()->close(); });
        QStringList Questions = answering(Button, [] { action("Remove Channel")->trigger(); });
        Questions.removeDuplicates();
        QCOMPARE(Questions, QStringList("The channel to remove is shared as a layer elsewhere."));
        QCOMPARE(m_Project->tree(), Tree);
        QCOMPARE(OrvTestProject::channel("Dirt") == nullptr, Button != "Cancel");
        if (Button == "Cancel") {
            QCOMPARE(history().count(), Steps);
            return;
        }
        QCOMPARE(channels().currentShaderInput(), m_Project->channel());
        QCOMPARE(history().undoText(), QString("Remove Channel"));
        OrvTestProject::undo();
        QCOMPARE(OrvTestProject::document(), Document);
    }

    void lockedChannelStaysAndSaysSo()
    {
        // Nobody is asked what becomes of layers that share what stays.
        m_Project->paint("Shows", OrvColor(), OrvTestProject::addChannel("Other"))
            ->blendNode()
            ->connectInput(OrvSnNames::Over, m_Project->channel()->node());
        m_Project->channel()->setLocked(true);
        QSignalSpy Refused(&OrvLayerManager::instance(), &OrvLayerManager::refused);
        for (const char* pCommand : {"Remove Channel", "Cut", "Flatten"}) {
            action(pCommand)->trigger();
            QCOMPARE(Refused.takeFirst().first().toString(), QString("'Diffuse' is locked"));
            QVERIFY(Refused.isEmpty());
        }
        QCOMPARE(channels().currentShaderInput(), m_Project->channel());
    }

    void keysOfTheTreeCutCopyAndPaste()
    {
        OrvShaderInputView* pView = OrvLayerViewContextManager::instance().shaderInputView();
        for (QWidget* pWidget = pView; pWidget; pWidget = pWidget->parentWidget())
            pWidget->show();
        pView->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(pView->window()));
        m_Project->paint("Paint", OrvColor::white());
        pView->refresh();
        OrvShaderInputTreeView* pTree = pView->treeView();
        pTree->setFocus();
        const QByteArray Document = OrvTestProject::document();

        QTest::keyClick(pTree, Qt::Key_C, Qt::ControlModifier);
        QTest::keyClick(pTree, Qt::Key_V, Qt::ControlModifier);
        OrvShaderInput* pPasted = OrvTestProject::channel("Diffuse 2");
        QVERIFY(pPasted);
        QCOMPARE(OrvTestProject::tree(pPasted), QString("Paint"));
        QCOMPARE(channels().currentShaderInput(), pPasted);
        QTest::keyClick(pTree, Qt::Key_X, Qt::ControlModifier);
        QVERIFY(!OrvTestProject::channel("Diffuse 2"));
        QCOMPARE(channels().currentShaderInput(), m_Project->channel());
        QCOMPARE(OrvTestProject::document(), Document);
        QTest::keyClick(pTree, Qt::Key_V, Qt::ControlModifier);
        QVERIFY(OrvTestProject::channel("Diffuse 2"));
        for (int Step = 0; Step < 3; ++Step)
            OrvTestProject::undo();
        QCOMPARE(OrvTestProject::document(), Document);
    }

    void layersOfSeveralChannelsStayWhereTheyAre()
    {
        OrvShaderInput* pRoughness = OrvTestProject::addChannel("Roughness", QSize(16, 16), GL_UNSIGNED_BYTE);
        OrvLayerShader* pShader = OrvLayerShaderUtils::createShaderFromKey("Shader/MetallicRoughness", true);
        QVERIFY(pShader && pShader->setInputShaderInput("Base Color", m_Project->channel()));
        QVERIFY(pShader->setInputShaderInput("Roughness", pRoughness));
        QString Error;
        QVERIFY2(OrvMultiChannelLayerUtils::createMultiChannelGroupLayer(
                     pShader, m_Project->channel()->bottomNode(), Error),
            qPrintable(Error));
        QGuiApplication::clipboard()->clear();
        const QByteArray Document = OrvTestProject::document();
        const QString Warning("This Channel contains Multi-Channel Layers and cannot be cut, copied or pasted. Please "
                              "convert all Multi-Channel Layers to standard Layers first.");
        QCOMPARE(warnings([] { action("Cut")->trigger(); }), QStringList("Cut Operation Failed: " + Warning));
        QCOMPARE(warnings([] { action("Copy")->trigger(); }), QStringList("Copy Operation Failed: " + Warning));
        QVERIFY(answering("Flatten", [] { action("Flatten")->trigger(); }).isEmpty());
        action("Paste")->trigger();
        QCOMPARE(OrvTestProject::document(), Document);
        // Their common mask follows a depth only together with the other channel.
        convertAs([](OrvShaderInputActionsConvertDialog& Dialog) {
            chooseType(Dialog, GL_FLOAT);
            press(&Dialog, buttonsOf(&Dialog).first());
        });
        QCOMPARE(m_Project->channel()->imageSetDepth(), GLenum(GL_FLOAT));
        QCOMPARE(pRoughness->imageSetDepth(), GLenum(GL_UNSIGNED_BYTE));
        OrvTestProject::undo();
        QCOMPARE(OrvTestProject::document(), Document);
    }

    void failedPasteTellsWhy()
    {
        auto* pData = new QMimeData;
        pData->setData("application/x-orvi-channel-clipboard", "rubbish");
        QGuiApplication::clipboard()->setMimeData(pData);
        QCOMPARE(warnings([] { action("Paste")->trigger(); }),
            QStringList("Layer Operation Failed: The channel on the clipboard is damaged"));
        QGuiApplication::clipboard()->clear();
        QVERIFY(answering("OK", [] { action("Paste")->trigger(); }).isEmpty());
    }

    void flattenAsksAboutHiddenLayers()
    {
        m_Project->paint("Hidden")->blendNode()->setEnabledAsBool(false);
        m_Project->paint("Shown", OrvColor::white());
        QCOMPARE(answering("Cancel", [] { action("Flatten")->trigger(); }).size(), 1);
        QCOMPARE(m_Project->tree(), QString("Shown Hidden"));
        QCOMPARE(answering("Flatten", [] { action("Flatten")->trigger(); }).size(), 1);
        QCOMPARE(m_Project->tree(), QString("Diffuse"));
    }

    void resizeTakesTheActionsWidth()
    {
        m_Project->paint("Paint");
        const QSize Size = OrvChannel::supportedTextureSizes().first();
        sizeAction(Size)->trigger();
        QCOMPARE(m_Project->channel()->imageSetSize(), Size);
        QCOMPARE(m_Project->layer("Paint")->paintImageSet()->imageSetSize(), Size);
        const auto checked = [] {
            QStringList Texts;
            for (const QSize& One : OrvChannel::supportedTextureSizes()) {
                const QAction* pAction = sizeAction(One);
                if (pAction->isChecked())
                    Texts.append(pAction->text());
            }
            return Texts;
        };
        const QStringList Present{QString("%1 x %2").arg(Size.width()).arg(Size.height())};
        QCOMPARE(checked(), Present);
        sizeAction(Size)->trigger();
        QCOMPARE(checked(), Present);
        const QSize Largest = OrvChannel::supportedTextureSizes().last();
        channels().makeShaderInputCurrent(OrvTestProject::addChannel("Large", Largest), true);
        QCOMPARE(checked(), QStringList(QString("%1 x %2").arg(Largest.width()).arg(Largest.height())));
        channels().makeShaderInputCurrent(m_Project->channel(), true);
        m_Project->channel()->setLocked(true);
        sizeAction(Largest)->trigger();
        QCOMPARE(checked(), Present);
        m_Project->channel()->setLocked(false);

        const OrvDebugReports Told;
        QAction Wrong("Odd");
        Wrong.setData("wide");
        OrvShaderInputActions::instance().resizeShaderInput(&Wrong);
        QCOMPARE(Told.Texts, QStringList("Action 'Odd' contains invalid data type of 'QString'"));
        QCOMPARE(m_Project->channel()->imageSetSize(), Size);
    }

    void facesSayWhyNoSizeCanBeChosen()
    {
        OrvProject* pProject = OrvProjectManager::instance().currentProject();
        OrvGeoEntity* pHead = pProject->currentGeoEntity();
        OrvGeoEntity* pScales = pProject->addGeoEntity(QStringLiteral("Scales"));
        pScales->setPtex(true);
        pProject->setCurrentGeoEntity(pScales);
        const QAction* pAction = sizeAction({1024, 1024});
        QCOMPARE(pAction->toolTip(), QString("The channels of 'Scales' are as large as its faces"));
        pProject->setCurrentGeoEntity(pHead);
        QCOMPARE(pAction->toolTip(), QString("1024 x 1024"));
    }

    void relayReportsWhatItCannotDo()
    {
        const OrvDebugReports Told;
        const auto relay = [](const QVariant& Data) {
            QAction Relayed("Relayed");
            Relayed.setData(Data);
            OrvShaderInputActions::instance().invokeShaderInputMethod(&Relayed);
        };
        relay(QVariant());
        QVariantList Many{QString("flattenUI")};
        for (int Number = 0; Number < 11; ++Number)
            Many.append(Number);
        relay(Many);
        channels().makeShaderInputCurrent(OrvTestProject::network(), nullptr, true);
        relay(QString("flattenUI"));
        QCOMPARE(Told.Texts,
            QStringList({"[ !! ] Relayed method name missing",
                "[ !! ] Relayed method arg count of '11' exceeds limit of '10'", "pCurrentShaderInput is NULL"}));
    }

    void everyCommandOnEveryKindOfChannel_data()
    {
        QTest::addColumn<QString>("Text");
        QTest::addColumn<int>("ChannelKind");
        const char* const Kinds[]
            = {"empty", "painted", "material", "locked", "layer locked", "shared", "hidden", "none"};
        for (const QString& Key : OrvActionTreeManager::instance().actionKeys(Path)) {
            const QString Text = Key.mid(Path.size());
            if (Text.contains('/'))
                continue;
            for (int Index = Empty; Index <= None; ++Index)
                QTest::newRow(qPrintable(Text + ", " + Kinds[Index])) << Text << Index;
        }
    }
    void everyCommandOnEveryKindOfChannel()
    {
        QFETCH(QString, Text);
        QFETCH(int, ChannelKind);
        OrvShaderInput* pChannel = m_Project->channel();
        if (ChannelKind == Material)
            channels().makeShaderInputCurrent(pChannel = OrvShaderInputUtils::createShaderInput(true), true);
        else if (ChannelKind != Empty)
            m_Project->paint("Paint", OrvColor(0.5f, 0.5f, 0.5f));
        if (ChannelKind == Shared) {
            OrvShaderInput* pOther = OrvTestProject::addChannel("Other");
            m_Project->paint("Shows", OrvColor(), pOther)
                ->blendNode()
                ->connectInput(OrvSnNames::Over, pChannel->node());
        }
        if (ChannelKind == Hidden)
            m_Project->layer("Paint")->blendNode()->setEnabledAsBool(false);
        if (ChannelKind == LayerLocked)
            m_Project->layer("Paint")->setLocked(true);
        if (ChannelKind == Locked)
            pChannel->setLocked(true);
        if (ChannelKind == None)
            channels().makeShaderInputCurrent(OrvTestProject::network(), nullptr, true);
        OrvUndoManager::instance().clear();
        const QByteArray Document = OrvTestProject::document();

        // A user who presses Return in whatever comes up.
        QTimer Answer;
        connect(&Answer, &QTimer::timeout, [] {
            if (QWidget* pDialog = QApplication::activeModalWidget())
                QTest::keyClick(pDialog, Qt::Key_Return);
        });
        Answer.start(5);
        action(Text)->trigger();
        Answer.stop();
        QVERIFY(!OrvUndoManager::instance().isInMacro());
        QVERIFY(history().count() <= 1);
        if (ChannelKind == Locked && !Text.startsWith("Add") && Text != "Paste")
            QCOMPARE(OrvTestProject::document(), Document);
        const QByteArray After = OrvTestProject::document();
        if (!history().count())
            return;
        OrvTestProject::undo();
        QCOMPARE(OrvTestProject::document(), Document);
        OrvTestProject::redo();
        QCOMPARE(OrvTestProject::document(), After);
    }

private:
    SettingsDirectory m_Directory;
    std::unique_ptr<OrvTestProject> m_Project;
};

QTEST_MAIN(TstChannelActions)
#include "TstChannelActions.moc"
