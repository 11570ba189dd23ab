#include "Tests/Orvi/OrvTestCanvas.h"
#include "Tests/Orvi/OrvTestDocument.h"

#include "Orvi/OrvCommandLine.h"
#include "Orvi/OrvProgram.h"

#include "OrvCore/Network/OrvNodeEvaluation.h"
#include "OrvCore/Shaders/OrvFlatShading.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCoreModules/Widgets/OrvEditLabel.h"
#include "OrvCoreModules/Window/OrvApplication.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvCoreModules/Window/OrvPalette.h"
#include "OrvCoreModules/Window/OrvPaletteManager.h"

#include "OrvDdi/Engine/OrvEngineNode.h"

#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QToolButton>

using namespace OrvTestCanvas;

namespace {

constexpr int Patience = 20000; // ms
const QSize ChannelSize(512, 512);
const QString Material = QStringLiteral("Rusted Steel");

/// Where a stroke of a test runs: from side to side, away from the light's handle.
struct Stripe {
    const char* pInput;
    double Height; ///< from the top of the picture, a part of it
    double Seen; ///< the part of it that must be seen: roughness shows where the light is reflected
};
constexpr Stripe Stripes[] = {{"Base Color", 0.55, 0.95}, {"Metallic", 0.8, 0.95}, {"Roughness", 0.3, 0.1}};
constexpr double StripeReach = 0.1, Left = 0.3, Right = 0.7;

OrvShaderNetwork* network()
{
    const OrvProject* pProject = OrvProjectManager::instance().currentProject();
    return pProject ? pProject->currentGeoEntity()->shaderNetwork() : nullptr;
}

QList<OrvShaderInput*> channels()
{
    return OrvShaderInputManager::instance().getShaderInputsFromNetwork(network());
}

OrvShaderInput* channel(const QString& Name)
{
    for (OrvShaderInput* pChannel : channels()) {
        if (pChannel->name() == Name)
            return pChannel;
    }
    return nullptr;
}

int shaderCount()
{
    return OrvLayerShaderManager::instance().getUserLayerShaders(network()).size();
}

QVector<float> pixels(const OrvShaderInput* pChannel)
{
    QVector<float> Pixels(ChannelSize.width() * ChannelSize.height() * 4);
    OrvNodeEvaluation::result(pChannel->node())
        ->render(pChannel->layout().extent(), 1.0, {GL_FLOAT, OrvPixelFormat::Rgba, OrvPixelFormat::Linear},
            Pixels.data());
    return Pixels;
}

QVector<QVector<float>> allPixels()
{
    QVector<QVector<float>> All;
    for (const Stripe& One : Stripes)
        All.append(pixels(channel(QString::fromLatin1(One.pInput))));
    return All;
}

OrvLayer* layerOf(const OrvShaderInput* pChannel, const QString& Name)
{
    for (OrvLayer* pLayer : pChannel->layerList()) {
        if (pLayer->name() == Name)
            return pLayer;
    }
    return nullptr;
}

QWidget* palette(const char* pName)
{
    return OrvPaletteManager::find(QString::fromLatin1(pName));
}

/// The first one to be seen of which that holds, as soon as there is one.
template <class Widget, class Condition>
Widget* waitFor(const QWidget* pParent, Condition Holds)
{
    Widget* pFound = nullptr;
    (void)QTest::qWaitFor(
        [&] {
            for (Widget* pWidget : pParent->findChildren<Widget*>()) {
                if (pWidget->isVisible() && pWidget->isEnabled() && Holds(pWidget))
                    pFound = pWidget;
            }
            return pFound != nullptr;
        },
        Patience);
    return pFound;
}

void click(QWidget* pWidget, Qt::KeyboardModifiers Modifiers = Qt::NoModifier)
{
    QTest::mouseClick(pWidget, Qt::LeftButton, Modifiers, pWidget->rect().center());
}

/// Clicks the button that a user knows by its tool tip.
bool press(const QWidget* pParent, const QString& ToolTip, Qt::KeyboardModifiers Modifiers = Qt::NoModifier)
{
    auto* pButton = waitFor<QAbstractButton>(
        pParent, [&ToolTip](const QAbstractButton* p) { return p->toolTip().startsWith(ToolTip); });
    if (pButton)
        click(pButton, Modifiers);
    return pButton;
}

QString plain(const QAction* pAction)
{
    return QString(pAction->text()).remove(QLatin1Char('&')).remove(QChar(0x2026));
}

/// Clicks through the entries of the menu that is open, one per level.
bool choose(const QStringList& Entries)
{
    for (const QString& Entry : Entries) {
        QMenu* pMenu = nullptr;
        QAction* pFound = nullptr;
        const bool IsThere = QTest::qWaitFor(
            [&] {
                pMenu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
                for (QAction* pAction : pMenu ? pMenu->actions() : QList<QAction*>()) {
                    if (plain(pAction) == Entry && pAction->isEnabled())
                        pFound = pAction;
                }
                return pFound != nullptr;
            },
            Patience);
        if (!IsThere)
            return false;
        QTest::mouseClick(pMenu, Qt::LeftButton, Qt::NoModifier, pMenu->actionGeometry(pFound).center());
    }
    return true;
}

bool chooseFromMenuBar(const QStringList& Entries)
{
    QMenuBar* pBar = OrvMainWindow::instance().menuBar();
    for (QAction* pAction : pBar->actions()) {
        if (plain(pAction) != Entries.first())
            continue;
        QTest::mouseClick(pBar, Qt::LeftButton, Qt::NoModifier, pBar->actionGeometry(pAction).center());
        return choose(Entries.mid(1));
    }
    return false;
}

void type(const QKeySequence& Keys)
{
    // A menu that was open took the keys away.
    OrvMainWindow::instance().activateWindow();
    (void)QTest::qWaitForWindowActive(&OrvMainWindow::instance());
    QTest::keySequence(&OrvMainWindow::instance(), Keys);
    QApplication::processEvents();
}

} // namespace

/// What a user does to paint a material of three channels, from the empty window to the project opened again,
/// by mouse and keys alone: the whole program with its plug-ins.
class TstMaterialPainting : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        OrvApplication::appInstance().setPopupsAllowed(false);
        m_pProgram = std::make_unique<OrvProgram>();
        m_pProgram->start(OrvCommandLine());
        m_pCanvas = m_pProgram->canvas();
        OrvMainWindow& Window = OrvMainWindow::instance();
        Window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&Window));
        arrange();
        OrvFlatShading::instance().resetLight();
    }
    void cleanupTestCase() { m_pProgram.reset(); }

    void newProjectWithAShader()
    {
        type(QKeySequence::New);
        QTRY_VERIFY(network());
        QVERIFY(channels().isEmpty() && shaderCount() == 0);
        QVERIFY(chooseFromMenuBar({"Shaders", "Add New Shader", "Metallic Roughness"}));
        QTRY_COMPARE(shaderCount(), 1);
        const OrvLayerShader* pCurrent = OrvLayerShaderManager::instance().currentLayerShader();
        QVERIFY(pCurrent && pCurrent->name() == QStringLiteral("Metallic Roughness"));
    }

    void channelsFromTheInputs()
    {
        // Channels are made as large as the current one.
        OrvShaderInput* pSmall
            = OrvShaderInputUtils::create(network(), QStringLiteral("Small"), ChannelSize, GL_UNSIGNED_BYTE);
        OrvShaderInputManager::instance().makeShaderInputCurrent(pSmall, true);
        for (const Stripe& One : Stripes) {
            const QString Input = QString::fromLatin1(One.pInput);
            QVERIFY2(press(palette("Shaders"),
                         QStringLiteral("Choose, create or disconnect the channel of '%1'").arg(Input)),
                One.pInput);
            QVERIFY2(choose({"New Channel"}), One.pInput);
            QTRY_VERIFY2(channel(Input), One.pInput);
            QCOMPARE(OrvShaderInputManager::instance().currentShaderInput(), channel(Input));
        }
        QCOMPARE(channels().size(), 4);
        QCOMPARE(channel("Roughness")->imageSetSize(), ChannelSize);
        QVERIFY(!channel("Base Color")->isScalar() && channel("Metallic")->isScalar());
    }

    void strokesChangeTheLitPictureWhereTheyAre()
    {
        // Where the colour is transparent there is nothing to light.
        QVERIFY(showChannel(QStringLiteral("Base Color")));
        QVERIFY(press(palette("Layers"), QStringLiteral("Add Procedural Layer")));
        QVERIFY(choose({"Metal", "Brushed Metal"}));
        QTRY_COMPARE(channel("Base Color")->layerList().size(), 1);
        for (const Stripe& One : Stripes) {
            const QString Input = QString::fromLatin1(One.pInput);
            QVERIFY(showChannel(Input));
            QVERIFY(press(palette("Layers"), QStringLiteral("Add New Layer")));
            QTRY_COMPARE(channel(Input)->layerList().size(), Input == QStringLiteral("Base Color") ? 2 : 1);
            arrange();
            const QImage Before = shownPicture();
            stroke(One.Height);
            const QImage After = shownPicture();
            const QRect Changed = changedPart(Before, After);
            QVERIFY2(!Changed.isEmpty(), One.pInput);
            const double Edge = Before.width();
            QVERIFY2(QRectF(Left - StripeReach, One.Height - StripeReach, Right - Left + 2 * StripeReach,
                         2 * StripeReach)
                         .contains(QRectF(Changed.x() / Edge, Changed.y() / Edge, Changed.width() / Edge,
                             Changed.height() / Edge)),
                One.pInput);
            QVERIFY2(Changed.width() > One.Seen * (Right - Left) * Edge, One.pInput);
        }
    }

    void materialFromTheShelf()
    {
        m_Painted = allPixels();
        QVERIFY(showChannel(QStringLiteral("Base Color")));
        QVERIFY(press(palette("Layers"), QStringLiteral("Add Multi-Channel Layer")));
        QVERIFY(choose({"Materials", Material}));
        for (const Stripe& One : Stripes) {
            const OrvShaderInput* pChannel = channel(QString::fromLatin1(One.pInput));
            QTRY_VERIFY2(layerOf(pChannel, Material), One.pInput);
        }
        const QVector<QVector<float>> Covered = allPixels();
        for (int Index = 0; Index < Covered.size(); ++Index)
            QVERIFY2(Covered[Index] != m_Painted[Index], Stripes[Index].pInput);
    }

    void shiftClickOnTheEyeHidesOneStream()
    {
        const QVector<QVector<float>> Covered = allPixels();
        const QImage Before = shownPicture();
        QVERIFY(pressEye(Qt::ShiftModifier));
        QTRY_VERIFY(!layerOf(channel("Base Color"), Material)->isVisibleHere());
        const QVector<QVector<float>> Hidden = allPixels();
        QVERIFY(Hidden[0] == m_Painted[0]);
        QVERIFY(Hidden[1] == Covered[1] && Hidden[2] == Covered[2]);
        QVERIFY(!areAlike(shownPicture(), Before));

        // The eye itself is that of all channels.
        QVERIFY(pressEye(Qt::ShiftModifier));
        QTRY_VERIFY(layerOf(channel("Base Color"), Material)->isVisibleHere());
        QVERIFY(pressEye(Qt::NoModifier));
        QTRY_VERIFY(!layerOf(channel("Roughness"), Material)->isVisible());
        QCOMPARE(allPixels(), m_Painted);
        QVERIFY(pressEye(Qt::NoModifier, false));
        QVERIFY(pressEye(Qt::ShiftModifier));
        QTRY_VERIFY(!layerOf(channel("Base Color"), Material)->isVisibleHere());
        QCOMPARE(allPixels(), Hidden);
    }

    void undoBackToNothingAndRedo()
    {
        const QVector<QVector<float>> Pixels = allPixels();
        arrange();
        const QImage Picture = shownPicture();
        QUndoStack* pHistory = OrvUndoManager::instance().stack();
        const int Steps = pHistory->index();
        QVERIFY(Steps >= 12);
        for (int Step = 0; Step < Steps; ++Step)
            type(QKeySequence::Undo);
        QCOMPARE(pHistory->index(), 0);
        QVERIFY(channels().isEmpty() && shaderCount() == 0);
        QVERIFY(isSettled(m_pCanvas));
        for (int Step = 0; Step < Steps; ++Step)
            type(QKeySequence::Redo);
        QCOMPARE(pHistory->index(), Steps);
        QCOMPARE(channels().size(), 4);
        QCOMPARE(allPixels(), Pixels);
        arrange();
        QVERIFY(OrvShaderInputManager::instance().currentShaderInput());
        QVERIFY(areAlike(shownPicture(), Picture));
    }

    void savedAndOpenedAgain()
    {
        const QVector<QVector<float>> Pixels = allPixels();
        arrange();
        const QImage Picture = shownPicture();
        const QString Path = m_Document.filePath(QStringLiteral("Steel.orvi"));
        QTimer::singleShot(0, this, [&Path] {
            auto* pDialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            auto* pName = pDialog ? pDialog->findChild<QLineEdit*>() : nullptr;
            if (!pName)
                return;
            pName->selectAll();
            QTest::keyClicks(pName, Path);
            QTest::keyClick(pName, Qt::Key_Return);
        });
        type(QKeySequence::Save);
        QVERIFY(QFileInfo::exists(Path) && !OrvProjectManager::instance().isModified());
        type(QKeySequence::Close);
        QTRY_VERIFY(!OrvProjectManager::instance().currentProject());

        OrvCommandLine Line;
        Line.Project = Path;
        m_pProgram->start(Line);
        QTRY_VERIFY(network());
        QCOMPARE(channels().size(), 4);
        QCOMPARE(allPixels(), Pixels);
        arrange();
        QVERIFY(areAlike(shownPicture(), Picture));
    }

private:
    /// The window as it was in the beginning, whatever room the palettes have taken since.
    void arrange()
    {
        OrvMainWindow& Window = OrvMainWindow::instance();
        Window.showNormal(); // on a small screen it has all of it
        Window.resize(1200, 800);
        Window.resetLayout();
        QApplication::processEvents();
        type(QKeySequence(Qt::Key_F));
    }

    /// By its button in the inputs pane; waits until the Layers palette has followed.
    bool showChannel(const QString& Name)
    {
        if (!press(palette("Shaders"), Name + QLatin1Char('\n')))
            return false;
        const QWidget* pLayers = palette("Layers");
        return QTest::qWaitFor(
            [&] {
                return OrvShaderInputManager::instance().currentShaderInput()->name() == Name
                    && pLayers->windowTitle().endsWith(Name);
            },
            Patience);
    }

    /// Of the material's row, where it is shown or not.
    bool pressEye(Qt::KeyboardModifiers Modifiers, bool Shown = true)
    {
        // Clicks with Shift that follow one another at once count as one, and the palette collects changes.
        QTest::qWait(250);
        auto* pLabel = waitFor<OrvEditLabel>(
            palette("Layers"), [](const OrvEditLabel* p) { return p->text() == Material; });
        const QWidget* pRow = pLabel;
        while (pRow && !pRow->inherits("OrvLayerViewItemRowWidget"))
            pRow = pRow->parentWidget();
        const QString Tip = Shown ? QStringLiteral("Hide the layer") : QStringLiteral("Show the layer");
        return pRow && press(pRow, Tip, Modifiers);
    }

    void stroke(double Height)
    {
        const QSizeF Size
            = OrvFlatShading::layout(OrvLayerShaderManager::instance().currentLayerShader()).tileSize();
        const auto place = [&](double Part) {
            return m_pCanvas
                ->toWidget(QPointF((Left + (Right - Left) * Part) * Size.width(), Height * Size.height()))
                .toPoint();
        };
        constexpr int Points = 20;
        QTest::mousePress(m_pCanvas, Qt::LeftButton, Qt::NoModifier, place(0.0));
        for (int Point = 1; Point <= Points; ++Point)
            movePressed(*m_pCanvas, place(double(Point) / Points), Qt::LeftButton);
        QTest::mouseRelease(m_pCanvas, Qt::LeftButton, Qt::NoModifier, place(1.0));
    }

    /// The part of the canvas that the picture takes, when nothing is left to compute, without the brush's
    /// outline.
    QImage shownPicture()
    {
        QEvent Leave(QEvent::Leave);
        QApplication::sendEvent(m_pCanvas, &Leave);
        isSettled(m_pCanvas);
        const QSizeF Size
            = OrvFlatShading::layout(OrvLayerShaderManager::instance().currentLayerShader()).tileSize();
        const QRect Picture(m_pCanvas->toWidget(QPointF()).toPoint(),
            m_pCanvas->toWidget(QPointF(Size.width(), Size.height())).toPoint());
        return m_pCanvas->grab(Picture).toImage();
    }

    static QRect changedPart(const QImage& Before, const QImage& After)
    {
        QRect Changed;
        for (int Row = 0; Row < qMin(Before.height(), After.height()); ++Row) {
            for (int Column = 0; Column < qMin(Before.width(), After.width()); ++Column) {
                if (!isNear(Before.pixelColor(Column, Row), After.pixelColor(Column, Row)))
                    Changed |= QRect(Column, Row, 1, 1);
            }
        }
        return Changed;
    }

    OrvTestDocument m_Document;
    std::unique_ptr<OrvProgram> m_pProgram;
    OrvCanvas* m_pCanvas = nullptr;
    QVector<QVector<float>> m_Painted; ///< the channels before the material
};

QTEST_MAIN(TstMaterialPainting)
#include "TstMaterialPainting.moc"
