#include "Tests/OrvCoreModules/WidgetsWindow.h"
#include "Tests/OrvPlugins/SettingsDirectory.h"

#include "OrvCore/Network/OrvNodeRegistry.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnOperationNode.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Project/OrvProject.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvCoreModules/Properties/OrvAdvancedBlendingOptionsPopup.h"
#include "OrvCoreModules/Properties/OrvColorSpaceControlet.h"
#include "OrvCoreModules/Properties/OrvNodePropertyEditor.h"
#include "OrvCoreModules/Properties/OrvNodePropertyEditors.h"
#include "OrvCoreModules/Properties/OrvPropertyView.h"
#include "OrvCoreModules/Properties/OrvUserAttributeControletManager.h"
#include "OrvCoreModules/Properties/OrvValueEditor.h"
#include "OrvCoreModules/Widgets/OrvColorPicker.h"
#include "OrvCoreModules/Widgets/OrvColorSwatch.h"
#include "OrvCoreModules/Widgets/OrvExpandableListWidget.h"
#include "OrvCoreModules/Widgets/OrvRangeSlider.h"
#include "OrvCoreModules/Widgets/OrvSliderSpinBox.h"
#include "OrvDdi/Color/OrvColorManager.h"
#include "OrvDdi/Color/OrvColorSpaceConfig.h"
#include "OrvDdi/Engine/OrvBlendParameters.h"
#include "OrvDdi/Engine/OrvOperationRegistry.h"
#include "OrvDdi/Image/OrvImageSet.h"

#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QUndoStack>

namespace {

constexpr int ControletStyle = 17;
constexpr int EditorOptions = 9792;
constexpr int PanelFlags = 1938;
constexpr int DialogFlags = 272;

/// An object of no document, with a property that tells and one that does not.
class Brush : public QObject {
    Q_OBJECT
    Q_PROPERTY(double brushSize READ size WRITE setSize NOTIFY sizeChanged)
    Q_PROPERTY(int dabCount READ dabCount)
    Q_PROPERTY(Shape tipShape READ shape WRITE setShape)
    Q_PROPERTY(QString secret READ secret)
    Q_PROPERTY(QString internal READ secret DESIGNABLE false)

public:
    enum Shape { RoundTip, SquareTip };
    Q_ENUM(Shape)

    double size() const { return m_Size; }
    void setSize(double Size)
    {
        m_Size = Size;
        Q_EMIT sizeChanged();
    }
    int dabCount() const { return m_DabCount; }
    void dab()
    {
        ++m_DabCount;
        Q_EMIT dabbed(m_DabCount);
    }
    Shape shape() const { return m_Shape; }
    void setShape(Shape Tip) { m_Shape = Tip; }
    QString secret() const { return QStringLiteral("secret"); }

Q_SIGNALS:
    void sizeChanged();
    void dabbed(int Count);

private:
    double m_Size = 10.0;
    int m_DabCount = 0;
    Shape m_Shape = RoundTip;
};

void drag(QWidget* pWidget, const QList<int>& Xs, bool Release = true)
{
    const int Y = pWidget->height() / 2;
    QTest::mousePress(pWidget, Qt::LeftButton, {}, QPoint(Xs.first(), Y));
    for (const int X : Xs) {
        QMouseEvent Move(QEvent::MouseMove, QPoint(X, Y), Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(pWidget, &Move);
    }
    if (Release)
        QTest::mouseRelease(pWidget, Qt::LeftButton, {}, QPoint(Xs.last(), Y));
}

void typeText(QLineEdit* pEdit, const QString& Text)
{
    pEdit->selectAll();
    QTest::keyClicks(pEdit, Text);
    QTest::keyClick(pEdit, Qt::Key_Return);
}

void typeNumber(OrvSliderSpinBox* pSlider, const QString& Text)
{
    pSlider->type();
    typeText(pSlider->findChild<QLineEdit*>(), Text);
}

} // namespace

/// Property editors on a real document: what they show, what they write, and how many undo steps that makes.
class TstProperties : public QObject, protected WidgetsWindow {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        OrvProjectManager::instance().newProject(QStringLiteral("Test"));
        openWindow(QSize(500, 600));
    }

    void cleanup()
    {
        closeWindow();
        OrvProjectManager::instance().closeProject();
    }

    void blendModeControlet()
    {
        OrvSnMergeNode* pNode = add<OrvSnMergeNode>("Merge");
        QVERIFY(!OrvUserAttributeControletManager::create(
            QStringLiteral("Nothing"), pNode, m_pWindow, 32, 1, 130, 140, ControletStyle));
        QVERIFY(!OrvUserAttributeControletManager::create(
            QStringLiteral("Amount"), nullptr, m_pWindow, 32, 1, 130, 140, ControletStyle));
        QWidget* pControlet = shown(controlet("BlendMode", pNode));
        QComboBox* pCombo = pControlet->findChild<QComboBox*>();
        QCOMPARE(pCombo->count(), OrvBlendParameters::modeNames().size());
        QVERIFY(pCombo->width() >= 130 && pCombo->width() <= 140);
        QVERIFY(!pControlet->findChild<QLabel*>());
        const int Steps = undoCount();

        pCombo->setFocus();
        QTest::keyClick(pCombo, Qt::Key_Down);
        QCOMPARE(value(pNode, "BlendMode"), QVariant(OrvBlendParameters::modeNames().at(1)));
        QCOMPARE(undoCount(), Steps + 1);
        OrvUndoManager::instance().undo();
        QCOMPARE(pCombo->currentIndex(), 0);
        QVERIFY(OrvUndoManager::instance().stack()->canRedo()); // following is no edit

        // A mode of a newer version stays until the user chooses another.
        pNode->setUserAttributeValue(QStringLiteral("BlendMode"), QStringLiteral("Sparkle"));
        QCOMPARE(pCombo->currentIndex(), -1);
        QCOMPARE(value(pNode, "BlendMode"), QVariant(QStringLiteral("Sparkle")));
    }

    void aDragIsOneUndoStep()
    {
        OrvSnMergeNode* pNode = add<OrvSnMergeNode>("Merge");
        OrvSliderSpinBox* pSlider = shown(controlet("Amount", pNode))->findChild<OrvSliderSpinBox*>();
        const int Steps = undoCount();
        QStringList Seen;
        connect(pNode, &OrvSerializableObject::userAttributeValueChanged, this,
            [&Seen](const OrvCustomAttribute& Attribute) { Seen.append(Attribute.value().toString()); });
        drag(pSlider, {100, 80, 60, 40}, false);
        QVERIFY(Seen.size() >= 3); // the canvas follows the drag
        QVERIFY(value(pNode, "Amount").toDouble() < 0.7);
        QCOMPARE(undoCount(), Steps);
        QTest::mouseRelease(pSlider, Qt::LeftButton, {}, QPoint(40, 5));
        QCOMPARE(undoCount(), Steps + 1);
        const double Reached = value(pNode, "Amount").toDouble();
        OrvUndoManager::instance().undo();
        QCOMPARE(value(pNode, "Amount").toDouble(), 1.0);
        QCOMPARE(pSlider->value(), 1.0);
        OrvUndoManager::instance().redo();
        QCOMPARE(value(pNode, "Amount").toDouble(), Reached);
        OrvUndoManager::instance().undo();

        // There and back is no edit at all: what could be redone stays.
        drag(pSlider, {100, 50, 100});
        QVERIFY(OrvUndoManager::instance().stack()->canRedo());

        typeNumber(pSlider, QStringLiteral("25"));
        QCOMPARE(value(pNode, "Amount").toDouble(), 0.25);

        // An editor that goes in the middle of a drag leaves one whole step.
        const int Before = undoCount();
        drag(pSlider, {30, 60, 90}, false);
        delete pSlider->parentWidget();
        QCOMPARE(undoCount(), Before + 1);
        OrvUndoManager::instance().undo();
        QCOMPARE(value(pNode, "Amount").toDouble(), 0.25);
    }

    void nodesOutsideTheDocumentAreNotEdited()
    {
        OrvSnMergeNode* pNode = add<OrvSnMergeNode>("Merge");
        QWidget* pControlet = shown(controlet("Amount", pNode));
        OrvSliderSpinBox* pSlider = pControlet->findChild<OrvSliderSpinBox*>();
        network()->removeNode(pNode);
        QVERIFY(!pSlider->isEnabled());
        OrvUndoManager::instance().undo();
        QVERIFY(pSlider->isEnabled());

        // A disabled attribute cannot be edited, and a gone node neither.
        pNode->setUserAttributeEnabled(QStringLiteral("Amount"), false);
        QVERIFY(!pSlider->isEnabled());
        pNode->setUserAttributeEnabled(QStringLiteral("Amount"), true);
        QVERIFY(pSlider->isEnabled());
        drag(pSlider, {100, 60}, false);
        OrvProjectManager::instance().closeProject();
        QTest::mouseRelease(pSlider, Qt::LeftButton, {}, QPoint(60, 5));
        QVERIFY(!pSlider->isEnabled());
    }

    void everyParameterOfEveryOperationCanBeEdited()
    {
        for (const OrvOperation& Operation : OrvOperationRegistry::instance().operations()) {
            OrvSnOperationNode* pNode = add<OrvSnOperationNode>("Operation/" + Operation.Name.toLatin1());
            const std::unique_ptr<QWidget> pEditor(
                OrvNodePropertyEditors::create(pNode, Operation.MenuPath, EditorOptions, nullptr));
            QCOMPARE(pEditor->objectName(), pNode->name() + QStringLiteral("/Node"));
            for (const OrvOperationParameter& Parameter : Operation.Parameters) {
                QWidget* pRow = pEditor->findChild<QWidget*>(Parameter.Name);
                QVERIFY2(pRow, qPrintable(Operation.Name + QLatin1Char(' ') + Parameter.Name));
                const QVariant Default = pNode->userAttribute(Parameter.Name).value();
                const int Steps = undoCount();
                if (!edit(pRow))
                    continue;
                const QVariant Edited = pNode->userAttribute(Parameter.Name).value();
                QVERIFY2(Edited != Default, qPrintable(Operation.Name + QLatin1Char(' ') + Parameter.Name));
                QCOMPARE(Edited.userType(), Default.userType());
                QVERIFY2(OrvUndoManager::instance().stack()->undoText().contains(Parameter.Label),
                    qPrintable(OrvUndoManager::instance().stack()->undoText()));
                QCOMPARE(undoCount(), Steps + 1);
                OrvUndoManager::instance().undo();
                QVERIFY(pNode->userAttribute(Parameter.Name).value() == Default);
                QVERIFY(pNode->ownUserAttributes().isEmpty());
            }
        }
    }

    void colorRowsPickAsOneStep()
    {
        OrvSnMergeNode* pNode = add<OrvSnMergeNode>("Merge");
        pNode->createUserAttribute({QStringLiteral("tint"), QVariant::fromValue(OrvColor::black())});
        OrvColorSwatch* pSwatch = shownEditor(pNode)->findChild<OrvColorSwatch*>();
        const int Steps = undoCount();
        QTest::mouseClick(pSwatch, Qt::LeftButton);
        OrvSliderSpinBox* pRed = pSwatch->picker()->findChildren<OrvSliderSpinBox*>().first();
        drag(pRed, {5, 20, 40, 60});
        QCOMPARE(undoCount(), Steps + 1);
        QVERIFY(value(pNode, "tint").value<OrvColor>().red() > 0.0f);
        OrvUndoManager::instance().undo();
        QCOMPARE(value(pNode, "tint").value<OrvColor>(), OrvColor::black());
        QCOMPARE(pRed->value(), 0.0); // the open picker follows
    }

    void nodeEditorsFollowTheirNode()
    {
        OrvSnMergeNode* pNode = add<OrvSnMergeNode>("Merge");
        pNode->setName(QStringLiteral("Rust"));
        QVERIFY(!OrvNodePropertyEditors::create(nullptr, QString(), EditorOptions, m_pWindow));
        QWidget* pEditor = shownEditor(pNode);
        // The palettes have controls of their own for all that a merge node has.
        QVERIFY(!pEditor->isVisible());
        pNode->createUserAttribute({QStringLiteral("wearAmount"), 3});
        QTRY_VERIFY(pEditor->isVisible());
        OrvSliderSpinBox* pSlider = pEditor->findChild<OrvSliderSpinBox*>(QStringLiteral("wearAmount"));
        QCOMPARE(pEditor->findChild<QLabel*>()->text(), QStringLiteral("Wear Amount"));
        typeNumber(pSlider, QStringLiteral("4.6"));
        QCOMPARE(value(pNode, "wearAmount"), QVariant(5));
        OrvUndoManager::instance().undo();
        OrvUndoManager::instance().undo();
        QTRY_VERIFY(!pEditor->isVisible());

        // Where a title promises settings that there are not, it says so.
        OrvSnMergeNode* pBare = add<OrvSnMergeNode>("Merge");
        const auto* pTitled = shown(
            OrvNodePropertyEditors::create(pBare, QStringLiteral("Adjustment"), EditorOptions, m_pWindow));
        const QList<QLabel*> Words = pTitled->findChildren<QLabel*>();
        QVERIFY(std::any_of(Words.begin(), Words.end(), [](const QLabel* pWord) {
            return pWord->text() == QLatin1String("No settings") && pWord->isVisible();
        }));

        // An image node shows what its images are, and changes nothing.
        auto pImageNode = std::make_unique<OrvSnChannelInputNode>();
        OrvPixelFormat Format;
        Format.Depth = GL_HALF_FLOAT;
        pImageNode->setImageSet(std::make_unique<OrvImageSet>(
            OrvUdimLayout(QSize(512, 256), {1001, 1002}), Format, OrvColor::black()));
        OrvSnChannelInputNode* pImages = network()->addNode(std::move(pImageNode));
        QWidget* pImageEditor = shownEditor(pImages);
        const QLabel* pImageSize = pImageEditor->findChild<QLabel*>(QStringLiteral("imageSetSize"));
        QCOMPARE(pImageSize->text(), QStringLiteral("512 x 256"));
        QCOMPARE(pImageEditor->findChild<QLabel*>(QStringLiteral("tileCount"))->text(), QStringLiteral("2"));
        QVERIFY(!pImageEditor->findChild<QLineEdit*>());
        pImages->imageSet()->replace(
            OrvUdimLayout(QSize(64, 64)), Format, OrvColor::black(), OrvImageBuffer());
        QCOMPARE(pImageSize->text(), QStringLiteral("64 x 64"));

        // Any node at all can be renamed.
        OrvSnBaseNode* pGraph = add<OrvSnBaseNode>("Graph");
        QLineEdit* pName = shownEditor(pGraph)->findChild<QLineEdit*>();
        typeText(pName, QStringLiteral("Grunge"));
        QCOMPARE(pGraph->name(), QStringLiteral("Grunge"));
        OrvUndoManager::instance().undo();
        QCOMPARE(pName->text(), pGraph->name());
        QTest::keyClicks(pName, QStringLiteral("xyz"));
        QTest::keyClick(pName, Qt::Key_Escape);
        QTest::keyClick(pName, Qt::Key_Return);
        QCOMPARE(pName->text(), pGraph->name());
        QVERIFY(OrvUndoManager::instance().stack()->canRedo());
    }

    void classesCanHaveEditorsOfTheirOwn()
    {
        OrvNodePropertyEditors::enter(OrvSnMergeNode::staticMetaObject,
            [](OrvSnBaseNode*, const QString& Title, int, QWidget* pParent) {
                return new QLabel(Title, pParent);
            });
        QWidget* pEditor
            = OrvNodePropertyEditors::create(add<OrvSnMergeNode>("Merge"), QStringLiteral("T"), 0, m_pWindow);
        QVERIFY(qobject_cast<QLabel*>(pEditor));
        OrvNodePropertyEditors::enter(OrvSnMergeNode::staticMetaObject,
            [](OrvSnBaseNode* pNode, const QString& Title, int Options, QWidget* pParent) {
                return new OrvNodePropertyEditor(pNode, Title, Options, {}, pParent);
            });
    }

    void propertyViewOfAPlainObject()
    {
        auto* pBrush = new Brush;
        OrvPropertyView* pView = shown(new OrvPropertyView(pBrush, m_pWindow,
            {{QString(), QStringLiteral("Brush")}}, 1, PanelFlags, {QStringLiteral("secret")}, false));
        QCOMPARE(labels(pView), QStringList({"Brush Size", "Dab Count", "Tip Shape"}));
        QCOMPARE(pView->findChild<OrvExpandableListWidget*>()->title(), QStringLiteral("Brush"));
        QVERIFY(!pView->findChild<QScrollArea*>());

        const int Steps = undoCount();
        OrvSliderSpinBox* pSize = pView->findChild<OrvSliderSpinBox*>(QStringLiteral("brushSize"));
        drag(pSize, {50, 60, 70});
        QVERIFY(pBrush->size() > 10.0);
        QCOMPARE(undoCount(), Steps + 1);
        OrvUndoManager::instance().undo();
        QCOMPARE(pBrush->size(), 10.0);
        QCOMPARE(pSize->value(), 10.0);

        QComboBox* pShape = pView->findChild<QComboBox*>(QStringLiteral("tipShape"));
        QCOMPARE(pShape->itemText(1), QStringLiteral("Square Tip"));
        QTest::keyClick(pShape, Qt::Key_Down);
        QCOMPARE(pBrush->shape(), Brush::SquareTip);
        OrvUndoManager::instance().undo();
        QCOMPARE(pBrush->shape(), Brush::RoundTip);

        // A property without a signal is looked at again when the object says anything.
        pBrush->dab();
        QCOMPARE(pView->findChild<QLabel*>(QStringLiteral("dabCount"))->text(), QStringLiteral("1"));

        OrvUndoManager::instance().redo();
        delete pBrush;
        QVERIFY(labels(pView).isEmpty());
        OrvUndoManager::instance().undo();
        QVERIFY(!pView->object());
    }

    void propertyViewFlags()
    {
        Brush Painted;
        const auto view = [&](int Flags, bool ReadOnly = false) {
            return shown(new OrvPropertyView(
                &Painted, m_pWindow, {}, 1, Flags, {QStringLiteral("secret")}, ReadOnly));
        };
        // Without the flag for it nothing is left out, and there is a scroll area.
        const OrvPropertyView* pDialogView = view(DialogFlags);
        QVERIFY(labels(pDialogView).contains(QStringLiteral("Secret")));
        QVERIFY(!labels(pDialogView).contains(QStringLiteral("Internal")));
        QVERIFY(pDialogView->findChild<QScrollArea*>());
        QVERIFY(!pDialogView->findChild<OrvExpandableListWidget*>());
        QVERIFY(pDialogView->findChild<OrvSliderSpinBox*>());
        QVERIFY(!view(DialogFlags, true)->findChild<OrvSliderSpinBox*>());
        QVERIFY(!view(DialogFlags & ~0x10)->findChild<OrvSliderSpinBox*>());
        const OrvPropertyView* pStill = view(DialogFlags & ~0x100);
        Painted.setSize(77.0);
        QCOMPARE(pStill->findChild<OrvSliderSpinBox*>()->value(), 10.0);
        QCOMPARE(pDialogView->findChild<OrvSliderSpinBox*>()->value(), 77.0);
    }

    void propertyViewOfANode()
    {
        OrvSnBaseNode* pNode = add<OrvSnBaseNode>("Graph");
        pNode->createUserAttribute({QStringLiteral("_state"), 1});
        OrvPropertyView* pView = shown(new OrvPropertyView(
            pNode, m_pWindow, {{QString(), QStringLiteral("Node")}}, 1, PanelFlags, {}, false));
        QCOMPARE(labels(pView), QStringList{"Name"});
        const int Steps = undoCount();
        QLineEdit* pName = pView->findChild<QLineEdit*>();
        typeText(pName, QStringLiteral("Renamed"));
        QTest::keyClick(pName, Qt::Key_Return);
        QCOMPARE(pNode->name(), QStringLiteral("Renamed"));
        QCOMPARE(undoCount(), Steps + 1);
        QCOMPARE(OrvUndoManager::instance().stack()->undoText(), QStringLiteral("Rename 'Graph' to 'Renamed'"));

        pNode->createUserAttribute({QStringLiteral("note"), QStringLiteral("wet")});
        QTRY_COMPARE(labels(pView), QStringList({"Name", "Note"}));
        OrvUndoManager::instance().undo();
        QTRY_COMPARE(labels(pView), QStringList{"Name"});
        OrvProjectManager::instance().closeProject();
        QVERIFY(labels(pView).isEmpty());
    }

    void labelsReadWell()
    {
        QCOMPARE(OrvValueEditor::labelFromName(QStringLiteral("BlendMode")), QStringLiteral("Blend Mode"));
        QCOMPARE(OrvValueEditor::labelFromName(QStringLiteral("std-dev_x2")), QStringLiteral("Std Dev X 2"));
        QCOMPARE(OrvValueEditor::labelFromName(QStringLiteral("useUDIM")), QStringLiteral("Use UDIM"));
        QCOMPARE(OrvValueEditor::labelFromName(QString()), QString());
        QCOMPARE(OrvValueEditor::labelFromName(QStringLiteral("imageSetDepthString")), QStringLiteral("Depth"));
    }

    void advancedBlendingPopup()
    {
        OrvSnMergeNode* pNode = add<OrvSnMergeNode>("Merge");
        OrvAdvancedBlendingOptionsPopup Popup(m_pWindow);
        QSignalSpy Advanced(&Popup, SIGNAL(advancedBlendingChanged(bool))),
            Amount(&Popup, SIGNAL(blendAmountChanged(bool)));
        const QList<QCheckBox*> Boxes = Popup.findChildren<QCheckBox*>();
        OrvRangeSlider* pOver = Popup.findChildren<OrvRangeSlider*>().first();
        Popup.popup();
        QVERIFY(!Boxes[0]->isEnabled() && !Boxes[1]->isEnabled());

        Popup.setBlendNode(pNode);
        QVERIFY(!pOver->isEnabled());
        const int Steps = undoCount();
        QTest::mouseClick(Boxes[1], Qt::LeftButton, {}, QPoint(8, Boxes[1]->height() / 2));
        QCOMPARE(Advanced.size(), 1);
        QCOMPARE(value(pNode, "AdvancedEnabled"), QVariant(1));
        QVERIFY(pOver->isEnabled());
        QTest::mouseClick(Boxes[0], Qt::LeftButton, {}, QPoint(8, Boxes[0]->height() / 2));
        QCOMPARE(Amount.takeFirst().first().toBool(), false);
        QVERIFY(!value(pNode, "AmountEnabled").toBool());

        drag(pOver, {pOver->handlePosition(0).x(), pOver->width() / 4, pOver->width() / 2});
        QCOMPARE(undoCount(), Steps + 3);
        QVERIFY(qAbs(pNode->blendParameters().OverRange[1] - 0.5f) < 0.05f);
        QToolButton* pGreen = Popup.findChildren<QToolButton*>().at(1);
        QTest::mouseClick(pGreen, Qt::LeftButton);
        QVERIFY(!pNode->blendParameters().WriteGreen && pNode->blendParameters().WriteBlue);
        QTest::mouseClick(Popup.findChild<QPushButton*>(), Qt::LeftButton);
        QCOMPARE(undoCount(), Steps + 5);
        QVERIFY(pNode->blendParameters().WriteGreen);
        QCOMPARE(pOver->range()[1], 0.0);
        OrvUndoManager::instance().undo();
        QVERIFY(pOver->range()[1] > 0.4);
        QVERIFY(!pGreen->isChecked());

        // Undo speaks through the node, not as the user.
        for (int Step = 0; Step < 4; ++Step)
            OrvUndoManager::instance().undo();
        QVERIFY(!Boxes[1]->isChecked());
        QCOMPARE(Advanced.size(), 1);

        network()->removeNode(pNode);
        QVERIFY(!Popup.blendNode());
        QVERIFY(!Boxes[1]->isEnabled());
        OrvUndoManager::instance().undo();
        Popup.setBlendNode(pNode);
        OrvProjectManager::instance().closeProject();
        QVERIFY(!Popup.blendNode());
        Popup.setBlendNode(nullptr);
    }

    void colorSpaceControlet()
    {
        OrvColorSpaceConfig Config(false, GL_UNSIGNED_BYTE);
        Config.setColorSpaceVisible(OrvColorSpaceConfig::WorkingSpace, false);
        OrvColorSpaceControlet* pControlet = shown(new OrvColorSpaceControlet(Config));
        QSignalSpy Spy(pControlet, SIGNAL(colorSpaceChanged()));
        QComboBox* pStored = pControlet->findChildren<QComboBox*>().first();
        QVERIFY(!pControlet->findChildren<QComboBox*>().last()->isVisible());
        QCOMPARE(pStored->currentIndex(), 0);
        QVERIFY(pStored->currentText().contains(OrvColorManager::srgb()));
        Config.setAutomaticType(OrvColorSpaceConfig::NativeSpace, GL_FLOAT);
        pControlet->refresh();
        QVERIFY(pStored->currentText().contains(OrvColorManager::linear()));

        pStored->setFocus();
        QTest::keyClick(pStored, Qt::Key_End);
        QVERIFY(!Config.isAutomatic(OrvColorSpaceConfig::NativeSpace));
        QCOMPARE(Config.colorSpace(), OrvColorManager::colorSpaces().last());
        QTest::keyClick(pStored, Qt::Key_Home);
        QVERIFY(Config.isAutomatic(OrvColorSpaceConfig::NativeSpace));
        QCOMPARE(Spy.size(), 2);

        // A space of somebody else's configuration is shown and kept.
        Config.setColorSpace(OrvColorSpaceConfig::NativeSpace, QStringLiteral("Studio Log"));
        pControlet->refresh();
        QCOMPARE(pStored->currentText(), QStringLiteral("Studio Log"));
        QCOMPARE(Config.colorSpace(), QStringLiteral("Studio Log"));
    }

private:
    static OrvShaderNetwork* network()
    {
        return OrvProjectManager::instance().currentProject()->currentGeoEntity()->shaderNetwork();
    }
    template <class Node>
    static Node* add(const QByteArray& Type)
    {
        return qobject_cast<Node*>(
            network()->addNode(OrvNodeRegistry::instance().create(QLatin1String(Type))));
    }
    static int undoCount() { return OrvUndoManager::instance().stack()->index(); }
    static QVariant value(const OrvSnBaseNode* pNode, const char* pName)
    {
        return pNode->userAttribute(QLatin1String(pName)).value();
    }
    QWidget* controlet(const char* pName, OrvSnBaseNode* pNode) const
    {
        return OrvUserAttributeControletManager::create(
            QLatin1String(pName), pNode, m_pWindow, 32, 1, 130, 140, ControletStyle);
    }
    QWidget* shownEditor(OrvSnBaseNode* pNode)
    {
        return shown(OrvNodePropertyEditors::create(pNode, QString(), EditorOptions, m_pWindow));
    }
    static QStringList labels(const QWidget* pView)
    {
        QStringList Texts;
        for (const QFormLayout* pForm : pView->findChildren<QFormLayout*>()) {
            for (int Row = 0; Row < pForm->rowCount(); ++Row) {
                if (QLayoutItem* pItem = pForm->itemAt(Row, QFormLayout::LabelRole))
                    Texts.append(qobject_cast<QLabel*>(pItem->widget())->text());
            }
        }
        return Texts;
    }
    /// Sets a row's editor to another value as a user would; false for kinds that open a window.
    static bool edit(QWidget* pRow)
    {
        OrvSliderSpinBox* pSlider = qobject_cast<OrvSliderSpinBox*>(pRow);
        if (!pSlider)
            pSlider = pRow->findChild<OrvSliderSpinBox*>();
        if (pSlider) {
            const double Middle = (pSlider->minimum() + pSlider->maximum()) / 2.0;
            const bool AtTop = pSlider->value() > Middle;
            typeNumber(pSlider, QString::number(AtTop ? pSlider->minimum() : pSlider->maximum(), 'g', 9));
            return true;
        }
        if (QCheckBox* pBox = qobject_cast<QCheckBox*>(pRow)) {
            pBox->click();
            return true;
        }
        if (QComboBox* pCombo = qobject_cast<QComboBox*>(pRow)) {
            if (pCombo->count() < 2)
                return false;
            pCombo->setCurrentIndex(pCombo->currentIndex() == 0 ? 1 : 0);
            return true;
        }
        if (QLineEdit* pEdit = qobject_cast<QLineEdit*>(pRow)) {
            typeText(pEdit, pEdit->text() + QLatin1Char('x'));
            return true;
        }
        return false;
    }

    SettingsDirectory m_Directory;
};

QTEST_MAIN(TstProperties)
#include "TstProperties.moc"
