#include "Tests/OrvPlugins/SettingsDirectory.h"
#include "Tests/Support/OrvDebugReports.h"
#include "Tests/Support/OrvTestProject.h"

#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCore/Shaders/OrvLayerShaderUtils.h"
#include "OrvCore/Shaders/OrvMultiChannelLayerUtils.h"
#include "OrvCoreModules/Widgets/OrvColorSwatch.h"
#include "OrvCoreModules/Widgets/OrvEditLabel.h"
#include "OrvCoreModules/Widgets/OrvSliderSpinBox.h"
#include "OrvCoreModules/Window/OrvApplication.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragPayload.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputChannelButton.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputConnection.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputDisconnectDialog.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputRow.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputsPane.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderListView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderView.h"

#include <QtCore/QMimeData>
#include <QtCore/QTimer>
#include <QtGui/QDropEvent>
#include <QtTest/QtTest>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QUndoStack>

#include <memory>

namespace {

const QString Unlit = QStringLiteral("Shader/Unlit");
const QString Metal = QStringLiteral("Shader/MetallicRoughness");
const QString Specular = QStringLiteral("Shader/Specular");
const QString Layered = QStringLiteral("Shader/LayeredMaterial");

} // namespace

/// The inputs of the current shader in the Shaders palette, driven by mouse, keys and drops on a real
/// document.
class TstShaderInputs : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_Directory.isValid());
        OrvApplication::appInstance().setPopupsAllowed(true);
    }

    void init()
    {
        m_Project = std::make_unique<OrvTestProject>(QSize(64, 64), GL_UNSIGNED_BYTE);
        m_View = std::make_unique<OrvShaderView>(nullptr);
        m_View->resize(300, 640);
        m_View->show();
        m_View->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_View.get()));
        m_Pane = m_View->inputsPane();
    }

    void cleanup()
    {
        m_View.reset();
        m_Project.reset();
    }

    void everyModelHasItsRows_data()
    {
        QTest::addColumn<QString>("Model");
        QTest::addColumn<QStringList>("Colors");
        QTest::addColumn<QStringList>("Numbers");
        QTest::addColumn<QStringList>("ChannelsOnly");
        QTest::newRow("unlit") << Unlit << QStringList({"Color"}) << QStringList() << QStringList();
        QTest::newRow("metal") << Metal << QStringList({"Base Color", "Emissive"})
                               << QStringList({"Metallic", "Roughness", "Occlusion", "Displacement"})
                               << QStringList({"Normal"});
        QTest::newRow("specular") << Specular << QStringList({"Diffuse", "Specular"})
                                  << QStringList({"Roughness", "Bump", "Displacement"}) << QStringList();
        QTest::newRow("layered") << Layered << QStringList() << QStringList({"Displacement"})
                                 << QStringList({"Material 1", "Material 2", "Material 3", "Material 4"});
    }
    void everyModelHasItsRows()
    {
        QFETCH(QString, Model);
        QFETCH(QStringList, Colors);
        QFETCH(QStringList, Numbers);
        QFETCH(QStringList, ChannelsOnly);
        OrvLayerShader* pShader = addShader(Model);
        QTRY_COMPARE(names(), pShader->inputNames());
        QCOMPARE(names().size(), Colors.size() + Numbers.size() + ChannelsOnly.size());
        QVERIFY(m_Pane->message().isEmpty());
        for (const OrvShaderInputRow* pRow : m_Pane->rows()) {
            const QString& Name = pRow->inputName();
            QCOMPARE(qobject_cast<OrvColorSwatch*>(pRow->valueEditor()) != nullptr, Colors.contains(Name));
            QCOMPARE(qobject_cast<OrvSliderSpinBox*>(pRow->valueEditor()) != nullptr, Numbers.contains(Name));
            QCOMPARE(pRow->channelButton()->isVisible(), ChannelsOnly.contains(Name));
            QCOMPARE(pRow->invertBox()->isVisible(), !pShader->isInputForMaterialsStacks(Name));
            QVERIFY(pRow->enableBox()->isChecked());
            QVERIFY(!pRow->invertBox()->isChecked());
        }
    }

    void withoutInputsItSaysWhatIsShown()
    {
        using Manager = OrvLayerShaderManager;
        QSet<QString> Messages;
        for (const QString& Tag :
            {Manager::nodeTagCurrentChannelShader(), Manager::nodeTagCurrentLayerAndBelowShader(),
                Manager::nodeTagCurrentLayerShader(), Manager::nodeTagCurrentComponentShader()}) {
            for (OrvSnBaseNode* pNode : shaders().getShaderNodes(OrvTestProject::network(), true)) {
                if (pNode->hasTag(Tag))
                    shaders().setCurrentShader(pNode);
            }
            QVERIFY(shaders().currentShaderNode()->hasTag(Tag));
            m_Pane->refresh();
            QVERIFY(m_Pane->rows().isEmpty());
            QVERIFY(!m_Pane->message().isEmpty());
            Messages.insert(m_Pane->message());
        }
        QCOMPARE(Messages.size(), 4);

        addShader(Metal);
        QTRY_VERIFY(m_Pane->message().isEmpty());
        m_Project.reset();
        QTRY_VERIFY(!m_Pane->message().isEmpty());
        QVERIFY(m_Pane->rows().isEmpty());
        QVERIFY(!Messages.contains(m_Pane->message()));
    }

    void channelIsChosenFromTheMenu()
    {
        OrvLayerShader* pShader = addShader(Metal);
        OrvTestProject::addChannel(QStringLiteral("Rust & Dirt"));
        OrvShaderInput* pMaterial = OrvShaderInputUtils::createShaderInput(true);
        QTRY_VERIFY(row("Roughness"));
        OrvUndoManager::instance().clear();

        QTest::mouseClick(row("Roughness")->menuButton(), Qt::LeftButton);
        QStringList Offered = menuTexts();
        // Names that are usual for channels stand first, and materials go elsewhere.
        QCOMPARE(Offered.mid(0, 2), QStringList({"Diffuse", "Rust && Dirt"}));
        QVERIFY(!Offered.contains(pMaterial->name()));
        QVERIFY(Offered.contains(QStringLiteral("New Channel")));
        QTest::keyClick(menu(), Qt::Key_Down);
        QTest::keyClick(menu(), Qt::Key_Down);
        QTest::keyClick(menu(), Qt::Key_Return);
        QCOMPARE(pShader->inputShaderInput(QStringLiteral("Roughness")), channel("Rust & Dirt"));
        QCOMPARE(row("Roughness")->channelButton()->channelName(), QStringLiteral("Rust & Dirt"));
        QVERIFY(!row("Roughness")->valueEditor());
        QVERIFY(!row("Metallic")->channelButton()->isVisible());
        QCOMPARE(steps(), 1);

        openMenu("Roughness");
        QVERIFY(!menuAction("Diffuse")->isChecked());
        QVERIFY(menuAction("Rust && Dirt")->isChecked());
        choose("Diffuse");
        QCOMPARE(pShader->inputShaderInput(QStringLiteral("Roughness")), m_Project->channel());
        OrvTestProject::undo();
        OrvTestProject::undo();
        QVERIFY(!pShader->inputShaderInput(QStringLiteral("Roughness")));
        QVERIFY(row("Roughness")->valueEditor());
        OrvTestProject::redo();
        QCOMPARE(row("Roughness")->channelButton()->channelName(), QStringLiteral("Rust & Dirt"));
    }

    void materialInputsTakeMaterialsAlone()
    {
        OrvLayerShader* pShader = addShader(Layered);
        QTRY_VERIFY(row("Material 2"));
        OrvUndoManager::instance().clear();
        // With nothing to go to, a click on the name offers what there is.
        QTest::mouseClick(row("Material 2")->channelButton(), Qt::LeftButton);
        QVERIFY(menu());
        QVERIFY(!menuAction("Diffuse"));
        QVERIFY(!menuAction("New Channel"));
        QVERIFY(!menuAction("Disconnect")->isEnabled());
        choose("New Material Channel");
        OrvShaderInput* pMaterial = pShader->inputShaderInput(QStringLiteral("Material 2"));
        QVERIFY(pMaterial && pMaterial->isMaterialStack());
        QCOMPARE(pMaterial->name(), QStringLiteral("Material 2"));
        QCOMPARE(steps(), 1);

        openMenu("Displacement");
        QVERIFY(menuAction("Diffuse"));
        QVERIFY(!menuAction("Material 2"));
        closeMenu();
        OrvTestProject::undo();
        QVERIFY(!channel("Material 2"));
        QVERIFY(!pShader->inputShaderInput(QStringLiteral("Material 2")));
    }

    void newChannelSuitsTheInput_data()
    {
        QTest::addColumn<QString>("InputName");
        QTest::addColumn<bool>("Scalar");
        QTest::addColumn<int>("Depth");
        QTest::newRow("colour") << "Base Color" << false << GL_UNSIGNED_BYTE;
        QTest::newRow("number") << "Roughness" << true << GL_UNSIGNED_BYTE;
        QTest::newRow("direction") << "Normal" << true << GL_HALF_FLOAT;
        QTest::newRow("height") << "Displacement" << true << GL_HALF_FLOAT;
    }
    void newChannelSuitsTheInput()
    {
        QFETCH(QString, InputName);
        QFETCH(bool, Scalar);
        QFETCH(int, Depth);
        OrvLayerShader* pShader = addShader(Metal);
        OrvTestProject::addChannel(InputName);
        QTRY_VERIFY(row(InputName));
        OrvUndoManager::instance().clear();
        const QByteArray Before = OrvTestProject::document();
        openMenu(InputName);
        choose("New Channel");
        OrvShaderInput* pChannel = pShader->inputShaderInput(InputName);
        QVERIFY(pChannel);
        QCOMPARE(pChannel->name(), InputName + QStringLiteral(" 2"));
        QCOMPARE(pChannel->colorSpaceConfig().scalar(), Scalar);
        QCOMPARE(int(pChannel->imageSetDepth()), Depth);
        QCOMPARE(pChannel->imageSetSize(), QSize(64, 64));
        QCOMPARE(OrvShaderInputManager::instance().currentShaderInput(), pChannel);
        QCOMPARE(steps(), 1);
        OrvTestProject::undo();
        QCOMPARE(OrvTestProject::document(), Before);
    }

    void failedCreationLeavesNothing()
    {
        OrvLayerShader* pShader = addShader(Metal);
        const QByteArray Before = OrvTestProject::document();
        const int Steps = steps();
        QString Said;
        QTimer::singleShot(0, this, [&Said] {
            if (auto* pBox = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
                Said = pBox->windowTitle();
                pBox->reject();
            }
        });
        QVERIFY(!OrvShaderInputConnection::createChannel(pShader, QStringLiteral("No Such Input")));
        QCOMPARE(OrvTestProject::document(), Before);
        QCOMPARE(steps(), Steps);
        QVERIFY(!Said.isEmpty());
    }

    void channelIsDisconnectedByMenuAndByKey()
    {
        OrvLayerShader* pShader = addShader(Metal);
        QTRY_VERIFY(row("Metallic"));
        pShader->setInputShaderInput(QStringLiteral("Metallic"), m_Project->channel());
        OrvUndoManager::instance().clear();
        openMenu("Metallic");
        choose("Disconnect");
        QVERIFY(!pShader->inputShaderInput(QStringLiteral("Metallic")));
        QVERIFY(row("Metallic")->valueEditor());
        QCOMPARE(steps(), 1);
        OrvTestProject::undo();

        row("Metallic")->channelButton()->setFocus();
        QTest::keyClick(row("Metallic")->channelButton(), Qt::Key_Delete);
        QVERIFY(!pShader->inputShaderInput(QStringLiteral("Metallic")));
        // Nothing more to take away.
        const int Steps = steps();
        QTest::keyClick(row("Metallic")->menuButton(), Qt::Key_Delete);
        QCOMPARE(steps(), Steps);
    }

    void draggedChannelIsDropped_data()
    {
        QTest::addColumn<QString>("Model");
        QTest::addColumn<QString>("InputName");
        QTest::addColumn<bool>("Material");
        QTest::addColumn<bool>("Taken");
        QTest::newRow("channel on colour") << Metal << "Base Color" << false << true;
        QTest::newRow("channel on number") << Metal << "Roughness" << false << true;
        QTest::newRow("material on colour") << Metal << "Base Color" << true << false;
        QTest::newRow("material on material") << Layered << "Material 1" << true << true;
        QTest::newRow("channel on material") << Layered << "Material 1" << false << false;
    }
    void draggedChannelIsDropped()
    {
        QFETCH(QString, Model);
        QFETCH(QString, InputName);
        QFETCH(bool, Material);
        QFETCH(bool, Taken);
        OrvLayerShader* pShader = addShader(Model);
        OrvShaderInput* pChannel
            = Material ? OrvShaderInputUtils::createShaderInput(true) : m_Project->channel();
        QTRY_VERIFY(row(InputName));
        OrvUndoManager::instance().clear();
        QCOMPARE(drop(InputName, {pChannel->node()->uuidString()}), Taken);
        QCOMPARE(pShader->inputShaderInput(InputName), Taken ? pChannel : nullptr);
        QCOMPARE(steps(), Taken ? 1 : 0);
        // What is there already, a layer and what is gone change nothing.
        drop(InputName, {pChannel->node()->uuidString()});
        const OrvLayer* pLayer = m_Project->paint(QStringLiteral("Rust"));
        const int Steps = steps();
        QVERIFY(!drop(InputName, {pLayer->blendNode()->uuidString()}));
        QVERIFY(!drop(InputName, {QStringLiteral("gone")}));
        QCOMPARE(steps(), Steps);
    }

    void sliderDragIsOneStepAndSurvivesRefreshes()
    {
        OrvLayerShader* pShader = addShader(Metal);
        QTRY_VERIFY(row("Roughness"));
        OrvUndoManager::instance().clear();
        auto* pSlider = qobject_cast<OrvSliderSpinBox*>(row("Roughness")->valueEditor());
        const QPoint Start = pSlider->rect().center();
        QTest::mousePress(pSlider, Qt::LeftButton, Qt::NoModifier, Start);
        for (int Step = 1; Step <= 5; ++Step) {
            moveMouse(pSlider, Start + QPoint(4 * Step, 0));
            // Meanwhile the palette refreshes, and channels come and go.
            m_View->refreshShaderProperties();
        }
        OrvTestProject::addChannel(QStringLiteral("Other"));
        QTest::qWait(200);
        QCOMPARE(row("Roughness")->valueEditor(), pSlider);
        moveMouse(pSlider, Start + QPoint(24, 0));
        const float Reached = pShader->inputValue(QStringLiteral("Roughness")).red();
        QVERIFY(Reached > 0.5f);
        QTest::mouseRelease(pSlider, Qt::LeftButton, Qt::NoModifier, Start + QPoint(24, 0));
        // One for the channel, one for the whole drag.
        QCOMPARE(steps(), 2);
        OrvTestProject::undo();
        QCOMPARE(pShader->inputValue(QStringLiteral("Roughness")).red(), 0.5f);
        QCOMPARE(pSlider->value(), 0.5);
        OrvTestProject::redo();
        QCOMPARE(pShader->inputValue(QStringLiteral("Roughness")), OrvColor(Reached, Reached, Reached));
    }

    void valuesAreTypedPickedAndReset()
    {
        OrvLayerShader* pShader = addShader(Metal);
        QTRY_VERIFY(row("Displacement"));
        OrvUndoManager::instance().clear();
        QWidget* pSlider = row("Displacement")->valueEditor();
        pSlider->setFocus();
        QTest::keyClick(pSlider, Qt::Key_Return);
        QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("-0.25"));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QCOMPARE(pShader->inputValue(QStringLiteral("Displacement")).red(), -0.25f);

        auto* pSwatch = qobject_cast<OrvColorSwatch*>(row("Base Color")->valueEditor());
        QCOMPARE(pSwatch->target(), OrvColorSpaceDefaults::Working);
        const OrvColor Red(0.8f, 0.1f, 0.1f);
        Q_EMIT pSwatch->editBegun();
        Q_EMIT pSwatch->colorEdited(OrvColor(0.4f, 0.2f, 0.2f));
        Q_EMIT pSwatch->colorEdited(Red);
        Q_EMIT pSwatch->editFinished();
        QCOMPARE(pShader->inputValue(QStringLiteral("Base Color")), Red);
        QCOMPARE(pSwatch->color(), Red);
        QCOMPARE(steps(), 2);

        openMenu("Emissive");
        QVERIFY(!menuAction("Reset Value")->isEnabled());
        closeMenu();
        openMenu("Base Color");
        choose("Reset Value");
        QCOMPARE(pShader->inputValue(QStringLiteral("Base Color")), OrvColor::grey50());
        QCOMPARE(pSwatch->color(), OrvColor::grey50());
        OrvTestProject::undo();
        QCOMPARE(pSwatch->color(), Red);
    }

    void inputsAreInvertedAndSwitchedOff()
    {
        OrvLayerShader* pShader = addShader(Metal);
        const QString Name = QStringLiteral("Occlusion");
        QTRY_VERIFY(row(Name));
        OrvUndoManager::instance().clear();
        QCheckBox* pInvert = row(Name)->invertBox();
        QCheckBox* pEnable = row(Name)->enableBox();
        QCOMPARE(pInvert->property("InputName").toString(), Name);
        QCOMPARE(pInvert->property("ShaderNode").value<OrvSnBaseNode*>(), pShader->node());
        clickBox(pInvert);
        clickBox(pEnable);
        QVERIFY(pShader->isInputInverted(Name));
        QVERIFY(!pShader->isInputEnabled(Name));
        QVERIFY(!pShader->isInputInverted(QStringLiteral("Metallic")));
        QCOMPARE(steps(), 2);
        OrvTestProject::undo();
        QVERIFY(pEnable->isChecked());
        QVERIFY(pInvert->isChecked());
        OrvTestProject::undo();
        QVERIFY(!pInvert->isChecked());
        OrvTestProject::redo();
        QVERIFY(pInvert->isChecked());

        // The palette's own slots speak of the row that is in use.
        row("Metallic")->menuButton()->setFocus();
        m_View->onToggledInvertShaderInput(true);
        QVERIFY(row("Metallic")->invertBox()->isChecked());
        m_View->onSwitchInputEnabledChanged(false);
        QVERIFY(!row("Metallic")->enableBox()->isChecked());
        m_View->createChannel();
        QCOMPARE(row("Metallic")->channelButton()->channelName(), QStringLiteral("Metallic"));
        m_View->listView()->setFocus();
        m_View->createChannel();
        QCOMPARE(row("Base Color")->channelButton()->channelName(), QStringLiteral("Base Color"));
        const OrvDebugReports Told;
        m_View->createMaterialChannel();
        m_View->onToggledInvertShaderInput(true);
        QCOMPARE(Told.Texts.size(), 2);
    }

    void channelsAreFollowed()
    {
        OrvLayerShader* pShader = addShader(Metal);
        const QString Name = QStringLiteral("Base Color");
        OrvShaderInput* pOther = OrvTestProject::addChannel(QStringLiteral("Other"));
        pShader->setInputShaderInput(Name, m_Project->channel());
        QTRY_VERIFY(row(Name));
        const OrvShaderInputRow* pRow = row(Name);
        QCOMPARE(pRow->channelButton()->channelName(), QStringLiteral("Diffuse"));
        m_Project->channel()->node()->setName(QStringLiteral("Albedo"));
        QTRY_COMPARE(pRow->channelButton()->channelName(), QStringLiteral("Albedo"));

        OrvShaderInputManager::instance().makeShaderInputCurrent(pOther, true);
        QVERIFY(!pRow->channelButton()->font().bold());
        QTest::mouseClick(pRow->channelButton(), Qt::LeftButton);
        QCOMPARE(OrvShaderInputManager::instance().currentShaderInput(), m_Project->channel());
        QVERIFY(pRow->channelButton()->font().bold());

        OrvShaderInputManager::instance().destroy(
            m_Project->channel(), OrvShaderInputManager::SharersBecomeGroups);
        QTRY_VERIFY(pRow->valueEditor());
        QCOMPARE(row(Name), pRow);
        OrvTestProject::undo();
        QTRY_COMPARE(pRow->channelButton()->channelName(), QStringLiteral("Albedo"));

        // Another shader, other rows; the old ones again for the old shader.
        OrvLayerShader* pUnlit = addShader(Unlit);
        QTRY_COMPARE(names(), QStringList({"Color"}));
        shaders().setCurrentShader(pShader->node());
        QTRY_COMPARE(names().size(), 7);
        OrvLayerShaderUtils::destroy(pUnlit, false);
        OrvLayerShaderUtils::destroy(pShader, false);
        QTRY_VERIFY(!m_Pane->rows().size());
        OrvTestProject::undo();
        shaders().setCurrentShader(shaders().getUserLayerShaders(OrvTestProject::network()).first()->node());
        QTRY_COMPARE(names().size(), 7);
        QCOMPARE(row(Name)->channelButton()->channelName(), QStringLiteral("Albedo"));
    }

    void displacementWarnsOfItsCost()
    {
        OrvLayerShader* pShader = addShader(Metal);
        QTRY_VERIFY(row("Displacement"));
        QVERIFY(m_Pane->note().isEmpty());
        pShader->setInputShaderInput(QStringLiteral("Displacement"), m_Project->channel());
        QTRY_VERIFY(m_Pane->note().contains(QStringLiteral("Displacement")));
        clickBox(row("Displacement")->enableBox());
        QTRY_VERIFY(m_Pane->note().isEmpty());
    }

    void nothingIsClipped_data()
    {
        QTest::addColumn<int>("Width");
        for (int Width : {200, 240, 320, 700})
            QTest::addRow("%d px", Width) << Width;
    }
    void nothingIsClipped()
    {
        QFETCH(int, Width);
        OrvLayerShader* pShader = addShader(Metal);
        pShader->setInputShaderInput(QStringLiteral("Roughness"),
            OrvTestProject::addChannel(QStringLiteral("Roughness of the second layer of varnish")));
        QTRY_VERIFY(row("Roughness"));
        QScrollArea Area;
        Area.setWidgetResizable(true);
        auto* pPane = new OrvShaderInputsPane(&Area);
        Area.setWidget(pPane);
        Area.resize(Width, 400);
        Area.show();
        QVERIFY(QTest::qWaitForWindowExposed(&Area));
        QVERIFY(pPane->width() <= Area.viewport()->width());
        const OrvShaderInputRow* pFirst = pPane->rows().first();
        for (const OrvShaderInputRow* pRow : pPane->rows()) {
            QVERIFY(pRow->mapTo(pPane, QPoint(pRow->width(), 0)).x() <= Area.viewport()->width());
            for (const QWidget* pPart : pRow->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
                QVERIFY(pPart->isHidden() || pRow->rect().contains(pPart->geometry()));
            QCOMPARE(pRow->menuButton()->x(), pFirst->menuButton()->x());
            QCOMPARE(pRow->invertBox()->x(), pFirst->invertBox()->x());
            const QWidget* pFeed
                = pRow->valueEditor() ? pRow->valueEditor() : static_cast<QWidget*>(pRow->channelButton());
            const QWidget* pFirstFeed = pFirst->valueEditor();
            QCOMPARE(pFeed->x(), pFirstFeed->x());
            QCOMPARE(pFeed->width(), pFirstFeed->width());
            QVERIFY(pFeed->width() >= 40);
        }
    }

    /// Names that differ at their end alone are whole before there is much room for what feeds them.
    void namesComeFirstInANarrowPalette()
    {
        addShader("Shader/LayeredMaterial");
        QTRY_VERIFY(row("Material 4"));
        OrvShaderInputsPane Pane(nullptr);
        Pane.resize(240, 300);
        Pane.show();
        QVERIFY(QTest::qWaitForWindowExposed(&Pane));
        for (const OrvShaderInputRow* pRow : Pane.rows()) {
            const auto* pName = pRow->findChild<OrvEditLabel*>();
            if (pRow->inputName().startsWith(QLatin1String("Material")))
                QVERIFY2(pName->width() >= pName->sizeHint().width(), qPrintable(pRow->inputName()));
        }
    }

    void tabVisitsThePartsInOrder()
    {
        addShader(Unlit);
        QTRY_VERIFY(row("Color"));
        OrvShaderInputRow* pRow = row("Color");
        pRow->enableBox()->setFocus();
        for (const QWidget* pNext : std::initializer_list<const QWidget*>{
                 pRow->valueEditor(), pRow->menuButton(), pRow->invertBox()}) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget(), pNext);
        }
    }

    void disconnectingAsksAboutMultiChannelLayers_data()
    {
        QTest::addColumn<QString>("Answer");
        QTest::addColumn<bool>("Disconnected");
        QTest::addColumn<int>("LayersLeft");
        QTest::newRow("disconnect") << "Disconnect" << true << 0;
        QTest::newRow("convert") << "Convert" << true << 1;
        QTest::newRow("escape") << "" << false << 1;
    }
    void disconnectingAsksAboutMultiChannelLayers()
    {
        QFETCH(QString, Answer);
        QFETCH(bool, Disconnected);
        QFETCH(int, LayersLeft);
        OrvLayerShader* pShader = addShader(Metal);
        OrvShaderInput* pRough = OrvTestProject::addChannel(QStringLiteral("Rough"), QSize(64, 64));
        pShader->setInputShaderInput(QStringLiteral("Base Color"), m_Project->channel());
        pShader->setInputShaderInput(QStringLiteral("Roughness"), pRough);
        QString Error;
        QVERIFY2(OrvMultiChannelLayerUtils::createMultiChannelGroupLayer(pShader, nullptr, Error),
            qPrintable(Error));
        QVERIFY(pRough->containsMultiChannelLayerOfShaderModel(pShader->shaderModel()));
        QTRY_VERIFY(row("Roughness"));
        const QByteArray Before = OrvTestProject::document();
        OrvUndoManager::instance().clear();

        const bool Asked = answer(Answer, [this] { row("Roughness")->disconnectChannel(); });
        QVERIFY(Asked);
        QCOMPARE(pShader->inputShaderInput(QStringLiteral("Roughness")), Disconnected ? nullptr : pRough);
        QCOMPARE(pRough->containsMultiChannelLayerOfShaderModel(pShader->shaderModel()), !Disconnected);
        QCOMPARE(pRough->layerList().size(), LayersLeft);
        QCOMPARE(m_Project->channel()->layerList().size(), 1);
        QCOMPARE(steps(), Disconnected ? 1 : 0);
        if (Disconnected)
            OrvTestProject::undo();
        QCOMPARE(OrvTestProject::document(), Before);
        QCOMPARE(pShader->inputShaderInput(QStringLiteral("Roughness")), pRough);

        // Another channel in its place, or a new one, takes it away as well.
        QVERIFY(answer(QString(), [&] {
            OrvShaderInputConnection::connectChannel(
                pShader, QStringLiteral("Roughness"), m_Project->channel());
        }));
        QVERIFY(answer(QString(),
            [&] { OrvShaderInputConnection::createChannel(pShader, QStringLiteral("Roughness")); }));
        QCOMPARE(OrvTestProject::document(), Before);
    }

    void rowOutlivesItsShader()
    {
        OrvShaderInputRow Row(addShader(Metal), QStringLiteral("Roughness"), nullptr);
        Row.show();
        QVERIFY(Row.invertBox()->property("ShaderNode").isValid());
        m_Project.reset();
        QTRY_VERIFY(!Row.shader());
        QVERIFY(!Row.invertBox()->property("ShaderNode").isValid());
        QTest::mouseClick(Row.invertBox(), Qt::LeftButton);
        QTest::keyClick(&Row, Qt::Key_Delete);
        Row.refresh();
    }

    void dialogSpeaksOfWhatIsGoingOn()
    {
        using Dialog = OrvShaderInputDisconnectDialog;
        const Dialog Removing(m_View.get(), Dialog::Occasion::RemovingShader);
        const Dialog Disconnecting(m_View.get(), Dialog::Occasion::DisconnectingChannel);
        QCOMPARE(Removing.windowTitle(), QStringLiteral("Removing a Shader"));
        QCOMPARE(Disconnecting.windowTitle(), QStringLiteral("Disconnecting a Channel"));
        const auto texts = [](const QWidget& Shown) {
            QStringList Texts;
            for (const QLabel* pLabel : Shown.findChildren<QLabel*>())
                Texts.append(pLabel->text());
            return Texts;
        };
        QVERIFY(texts(Removing).contains(QStringLiteral(
            "This Shader is connected to one or more Channels containing Multi - Channel Layers. On "
            "removing the Shader, depending on the chosen option, the following shall occur:")));
        QVERIFY(texts(Disconnecting)
                    .contains(QStringLiteral(
                        "This Channel contains Multi - Channel Layers. On disconnecting the Channel from the "
                        "Shader, depending on the chosen option, the following shall occur:")));
        QVERIFY(texts(Removing).contains(QStringLiteral("Option 'Disconnect':")));
        QVERIFY(texts(Removing).contains(QStringLiteral("Option 'Convert':")));

        for (const bool ByKey : {true, false}) {
            Dialog Left(m_View.get(), Dialog::Occasion::DisconnectingChannel);
            QVERIFY(texts(Left).contains(QStringLiteral("Close this window to leave everything as it is.")));
            QSignalSpy Rejected(&Left, &QDialog::rejected);
            Left.show();
            if (ByKey)
                QTest::keyClick(&Left, Qt::Key_Escape);
            else
                Left.close();
            QCOMPARE(Rejected.size(), 1);
            QVERIFY(!Left.isVisible());
        }
    }

private:
    static OrvLayerShaderManager& shaders() { return OrvLayerShaderManager::instance(); }
    static OrvLayerShader* addShader(const QString& Model)
    {
        return OrvLayerShaderUtils::createShaderFromKey(Model, true);
    }
    static OrvShaderInput* channel(const char* pName)
    {
        return OrvTestProject::channel(QLatin1String(pName));
    }
    static int steps() { return OrvUndoManager::instance().stack()->index(); }

    QStringList names() const
    {
        QStringList Names;
        for (const OrvShaderInputRow* pRow : m_Pane->rows())
            Names.append(pRow->inputName());
        return Names;
    }
    OrvShaderInputRow* row(const QString& InputName) const { return m_Pane->row(InputName); }
    OrvShaderInputRow* row(const char* pInputName) const { return row(QLatin1String(pInputName)); }

    static QMenu* menu() { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); }
    static QStringList menuTexts()
    {
        QStringList Texts;
        for (const QAction* pAction : menu() ? menu()->actions() : QList<QAction*>())
            Texts.append(pAction->text());
        return Texts;
    }
    static QAction* menuAction(const QString& Text)
    {
        for (QAction* pAction : menu() ? menu()->actions() : QList<QAction*>()) {
            if (pAction->text() == Text)
                return pAction;
        }
        return nullptr;
    }
    static QAction* menuAction(const char* pText) { return menuAction(QLatin1String(pText)); }
    void openMenu(const QString& InputName) const
    {
        row(InputName)->menuButton()->setFocus();
        QTest::keyClick(row(InputName)->menuButton(), Qt::Key_Space);
        QVERIFY(menu());
    }
    void openMenu(const char* pInputName) const { openMenu(QLatin1String(pInputName)); }
    static void choose(const char* pText)
    {
        QAction* pAction = menuAction(pText);
        QVERIFY(pAction && pAction->isEnabled());
        QTest::mouseClick(menu(), Qt::LeftButton, Qt::NoModifier, menu()->actionGeometry(pAction).center());
        QVERIFY(!menu());
    }
    static void closeMenu() { QTest::keyClick(menu(), Qt::Key_Escape); }

    static void clickBox(QCheckBox* pBox)
    {
        QTest::mouseClick(pBox, Qt::LeftButton, Qt::NoModifier, QPoint(8, pBox->height() / 2));
    }
    /// With the button held, which QTest::mouseMove leaves out.
    static void moveMouse(QWidget* pWidget, const QPoint& Position)
    {
        QMouseEvent Move(QEvent::MouseMove, Position, pWidget->mapToGlobal(Position), Qt::NoButton,
            Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(pWidget, &Move);
    }
    bool drop(const QString& InputName, const QStringList& Uuids) const
    {
        QMimeData Mime;
        OrvLayerDragPayload::write(Mime, Uuids);
        // What lies under the mouse is asked first: a slider, a swatch that takes colours, a button.
        QWidget* pPart = row(InputName)->valueEditor();
        if (!pPart)
            pPart = row(InputName)->channelButton();
        if (QWidget* pInside = pPart->childAt(pPart->rect().center()))
            pPart = pInside;
        const QPoint Position = pPart->rect().center();
        constexpr Qt::DropActions Actions = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
        QDragEnterEvent Enter(Position, Actions, &Mime, Qt::LeftButton, Qt::NoModifier);
        Enter.ignore();
        QApplication::sendEvent(pPart, &Enter);
        if (!Enter.isAccepted())
            return false;
        QDropEvent Drop(Position, Actions, &Mime, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(pPart, &Drop);
        // A move would take the row out of the list that it comes from.
        return Drop.isAccepted() && Drop.dropAction() == Qt::LinkAction;
    }
    /// Runs the command and presses the dialog's button of that text, or Escape; whether it was asked.
    template <class Command>
    bool answer(const QString& Button, Command command) const
    {
        bool Asked = false;
        QTimer Timer;
        connect(&Timer, &QTimer::timeout, this, [&] {
            auto* pDialog = qobject_cast<OrvShaderInputDisconnectDialog*>(QApplication::activeModalWidget());
            if (!pDialog)
                return;
            Asked = true;
            Timer.stop();
            for (QPushButton* pButton : pDialog->findChildren<QPushButton*>()) {
                if (pButton->text() == Button) {
                    QTest::mouseClick(pButton, Qt::LeftButton);
                    return;
                }
            }
            QTest::keyClick(pDialog, Qt::Key_Escape);
        });
        Timer.start(0);
        command();
        return Asked;
    }

    SettingsDirectory m_Directory;
    std::unique_ptr<OrvTestProject> m_Project;
    std::unique_ptr<OrvShaderView> m_View;
    OrvShaderInputsPane* m_Pane = nullptr;
};

QTEST_MAIN(TstShaderInputs)
#include "TstShaderInputs.moc"
