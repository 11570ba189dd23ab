#include "Orvi/OrvTour.h"

#include "Orvi/OrvCanvas.h"
#include "Orvi/OrvCommandLine.h"
#include "Orvi/OrvSampleProject.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Project/OrvProject.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCore/Shaders/OrvFlatShading.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Widgets/OrvEditLabel.h"
#include "OrvCoreModules/Window/OrvApplication.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvCoreModules/Window/OrvPalette.h"
#include "OrvCoreModules/Window/OrvPaletteManager.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QTextStream>
#include <QtCore/QTimer>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QAction>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QTabBar>
#include <QtWidgets/QTreeView>

#include <cmath>
#include <cstdio>

namespace {

const QSize WindowSize(1600, 1000);
const QSize GraphSize(1900, 760);
const QSize ShelfSize(390, 460);
constexpr int ShelfPreviews = 10;
const QSize ObjectsSize(300, 200);
const QSize SelectionsSize(300, 260);
constexpr int QuietTime = 400; // ms without anything left to compute; longer than any refresh timer
constexpr int Patience = 60 * 1000; // ms

void sendMouse(QWidget* pWidget, QEvent::Type Type, const QPointF& Point, Qt::MouseButtons Buttons)
{
    const Qt::MouseButton Button = Type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent Event(Type, Point, pWidget->mapToGlobal(Point.toPoint()), Button, Buttons, Qt::NoModifier);
    QApplication::sendEvent(pWidget, &Event);
}

void click(QWidget* pWidget, const QPointF& Point)
{
    sendMouse(pWidget, QEvent::MouseButtonPress, Point, Qt::LeftButton);
    sendMouse(pWidget, QEvent::MouseButtonRelease, Point, Qt::NoButton);
}

/// The parts of plug-ins are known by name only.
QWidget* childOfClass(const QWidget* pParent, const char* pClass)
{
    for (QWidget* pChild : pParent->findChildren<QWidget*>()) {
        if (pChild->inherits(pClass))
            return pChild;
    }
    return nullptr;
}

} // namespace

OrvTour::OrvTour(OrvCanvas* pCanvas, const QString& Directory, Subject Shown)
    : m_pCanvas(pCanvas)
    , m_Directory(Directory)
    , m_Subject(Shown)
{
}

void OrvTour::settle() const
{
    QElapsedTimer Whole, Quiet;
    Whole.start();
    Quiet.start();
    while (Quiet.elapsed() < QuietTime && Whole.elapsed() < Patience) {
        QApplication::processEvents(QEventLoop::AllEvents, 20);
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        if (!m_pCanvas->isSettled())
            Quiet.restart();
    }
}

void OrvTour::picture(const QString& Name, QWidget* pWidget)
{
    settle();
    if (!pWidget)
        pWidget = &OrvMainWindow::instance();
    const QString Number = QString::number(++m_Pictures).rightJustified(2, QLatin1Char('0'));
    const QString Path = QDir(m_Directory).filePath(QStringLiteral("%1-%2.png").arg(Number, Name));
    if (!pWidget->grab().save(Path))
        m_Failures.append(Path);
}

OrvPalette* OrvTour::palette(const QString& Name)
{
    OrvPalette* pPalette = OrvPaletteManager::find(Name);
    if (!pPalette)
        m_Failures.append(Name);
    return pPalette;
}

void OrvTour::showPalette(const QString& Name)
{
    OrvPalette* pPalette = palette(Name);
    if (!pPalette)
        return;
    pPalette->open();
    picture(QStringLiteral("palette-") + Name.toLower(), pPalette);
}

void OrvTour::showFloating(const QString& Name, const QSize& Size, int Rests)
{
    OrvPalette* pPalette = palette(Name);
    if (!pPalette)
        return;
    pPalette->setFloating(true);
    pPalette->resize(Size);
    pPalette->open();
    for (int Rest = 0; Rest < Rests; ++Rest)
        settle();
    showPalette(Name);
    pPalette->close();
}

bool OrvTour::trigger(const QString& Key)
{
    QAction* pAction = OrvActionTreeManager::instance().findAction(Key);
    if (pAction)
        pAction->trigger();
    else
        m_Failures.append(Key);
    return pAction;
}

void OrvTour::visitDialog(const QString& Key, const std::function<void(QWidget*)>& Visit)
{
    // The dialog runs its own event loop; the visitor acts from inside of it.
    bool Seen = false;
    QTimer::singleShot(QuietTime, m_pCanvas, [&] {
        QWidget* pDialog = QApplication::activeModalWidget();
        if (!pDialog)
            return;
        Seen = true;
        Visit(pDialog);
        pDialog->close();
    });
    OrvApplication::appInstance().setPopupsAllowed(true);
    if (trigger(Key) && !Seen)
        m_Failures.append(Key);
    OrvApplication::appInstance().setPopupsAllowed(false);
}

void OrvTour::drag(const std::function<QPointF(double)>& PicturePoint)
{
    constexpr int Points = 80;
    for (int Point = 0; Point <= Points; ++Point) {
        const QPointF Place = m_pCanvas->toWidget(PicturePoint(double(Point) / Points));
        if (Point == 0)
            sendMouse(m_pCanvas, QEvent::MouseButtonPress, Place, Qt::LeftButton);
        sendMouse(m_pCanvas, QEvent::MouseMove, Place, Qt::LeftButton);
        QApplication::processEvents();
        if (Point == Points)
            sendMouse(m_pCanvas, QEvent::MouseButtonRelease, Place, Qt::NoButton);
    }
}

bool OrvTour::select(const QString& LayerName)
{
    settle();
    OrvPalette* pLayers = OrvPaletteManager::find(QStringLiteral("Layers"));
    const QTreeView* pTree = pLayers ? pLayers->findChild<QTreeView*>() : nullptr;
    QScrollBar* pScrollBar = pTree ? pTree->verticalScrollBar() : nullptr;
    // Only rows in view have labels: look through the tree page by page.
    for (int Top = 0, Shown = -1; pScrollBar && Shown < pScrollBar->maximum();
         Top += qMax(1, pScrollBar->pageStep())) {
        Shown = qMin(Top, pScrollBar->maximum());
        pScrollBar->setValue(Shown);
        settle();
        for (const OrvEditLabel* pLabel : pTree->findChildren<OrvEditLabel*>()) {
            const QPoint Place = pLabel->mapTo(pTree->viewport(), pLabel->rect().center());
            if (pLabel->text() != LayerName || !pLabel->isVisible()
                || !pTree->viewport()->rect().contains(Place))
                continue;
            click(pTree->viewport(), Place);
            settle();
            return true;
        }
    }
    m_Failures.append(LayerName);
    return false;
}

void OrvTour::visitPalettes()
{
    for (const char* pName : {"Layers", "Channels", "History", "Shaders"})
        showPalette(QString::fromLatin1(pName));
    // The shelf's previews are computed one after the other.
    showFloating(QStringLiteral("Shelf"), ShelfSize, ShelfPreviews);
    OrvPalette* pGraph = palette(QStringLiteral("Node Graph"));
    if (!pGraph)
        return;
    pGraph->setFloating(true);
    pGraph->open();
    pGraph->resize(GraphSize);
    settle();
    QMetaObject::invokeMethod(pGraph, "frameAll");
    picture(QStringLiteral("palette-node-graph"), pGraph);
    pGraph->close();
}

void OrvTour::visitLight()
{
    const OrvFlatShading::Light Before = OrvFlatShading::light();
    OrvFlatShading::Light Low = Before;
    Low.Height = 0.22f;
    OrvFlatShading::instance().setLight(Low);
    settle();
    const QSizeF Tile
        = OrvFlatShading::layout(OrvLayerShaderManager::instance().currentLayerShader()).tileSize();
    const QPointF Handle(Low.U * Tile.width(), (1.0 - Low.V) * Tile.height());
    const QPointF Target(0.56 * Tile.width(), 0.42 * Tile.height());
    drag([&](double Part) { return Handle + (Target - Handle) * Part; });
    picture(QStringLiteral("lit"), m_pCanvas);
    OrvFlatShading::instance().setLight(Before);
}

void OrvTour::visitPropertyEditors()
{
    OrvPalette* pLayers = OrvPaletteManager::find(QStringLiteral("Layers"));
    for (const char* pName : {"Grade", "Grime"}) {
        if (select(QString::fromLatin1(pName)) && pLayers)
            picture(QStringLiteral("properties-%1").arg(QString::fromLatin1(pName).toLower()), pLayers);
    }
}

void OrvTour::visitMaskStack()
{
    OrvPalette* pLayers = OrvPaletteManager::find(QStringLiteral("Layers"));
    if (!pLayers || !select(QStringLiteral("Hazard Stripes")))
        return;
    const QList<OrvPalette*> Before = OrvMainWindow::instance().findChildren<OrvPalette*>();
    for (QWidget* pButton : pLayers->findChildren<QWidget*>(QStringLiteral("LayerStackPopupButton"))) {
        if (pButton->isVisible())
            click(pButton, QRectF(pButton->rect()).center());
    }
    settle();
    int Found = 0;
    for (OrvPalette* pPalette : OrvMainWindow::instance().findChildren<OrvPalette*>()) {
        if (Before.contains(pPalette) || !pPalette->isVisible())
            continue;
        ++Found;
        pPalette->resize(340, 520);
        const QString Title = pPalette->windowTitle().section(QLatin1Char('/'), -1).toLower();
        picture(
            QStringLiteral("stack-") + QString(Title).replace(QLatin1Char(' '), QLatin1Char('-')), pPalette);
        pPalette->close();
    }
    if (Found == 0)
        m_Failures.append(QStringLiteral("Mask Stack"));
}

void OrvTour::visitQuickFind()
{
    OrvPalette* pLayers = palette(QStringLiteral("Layers"));
    if (!pLayers)
        return;
    // The command is one of the palette that has the focus.
    QApplication::setActiveWindow(&OrvMainWindow::instance());
    if (QTreeView* pTree = pLayers->findChild<QTreeView*>())
        pTree->setFocus();
    settle();
    visitDialog(QStringLiteral("/Orvi/Layers/Quick Find"), [this](QWidget* pDialog) {
        if (QWidget* pField = pDialog->focusWidget()) {
            for (const char Letter : {'b', 'l', 'u', 'r'}) {
                QKeyEvent Press(QEvent::KeyPress, 0, Qt::NoModifier, QString(QLatin1Char(Letter)));
                QApplication::sendEvent(pField, &Press);
            }
        }
        picture(QStringLiteral("quick-find"), pDialog);
    });
}

void OrvTour::visitBrush()
{
    if (!select(QStringLiteral("Splashes")))
        return;
    drag([](double Part) { return QPointF(260.0 + 1500.0 * Part, 1460.0 + 160.0 * std::sin(Part * 9.0)); });
    picture(QStringLiteral("stroke"));
    showPalette(QStringLiteral("History"));
    trigger(QStringLiteral("/Orvi/Edit/Undo"));
    m_pCanvas->showActualSize();
    picture(QStringLiteral("actual-size"));
    m_pCanvas->fit();
}

void OrvTour::visitSelection()
{
    trigger(QStringLiteral("/Orvi/Select/Lasso Selection"));
    drag([](double Part) {
        const double Angle = 6.2831853 * Part, Radius = 420.0 + 110.0 * std::cos(5.0 * Angle);
        return QPointF(1000.0 + Radius * std::cos(Angle), 1000.0 + Radius * std::sin(Angle));
    });
    visitDialog(QStringLiteral("/Orvi/Select/Save Selection As"), [](QWidget* pDialog) {
        if (auto* pName = pDialog->findChild<QLineEdit*>())
            pName->setText(QStringLiteral("Star"));
        if (auto* pAsking = qobject_cast<QDialog*>(pDialog))
            pAsking->accept();
    });
    showFloating(QStringLiteral("Selections"), SelectionsSize);
    trigger(QStringLiteral("/Orvi/Select/Brush"));
    drag([](double Part) { return QPointF(300.0 + 1400.0 * Part, 1000.0 + 300.0 * std::sin(12.0 * Part)); });
    picture(QStringLiteral("selection"));
    trigger(QStringLiteral("/Orvi/Edit/Undo"));
    trigger(QStringLiteral("/Orvi/Select/None"));
}

void OrvTour::visitConversion()
{
    visitDialog(QStringLiteral("/Orvi/Channels/Convert Channel"),
        [this](QWidget* pDialog) { picture(QStringLiteral("convert-channel"), pDialog); });
}

void OrvTour::visitMaterials()
{
    OrvPalette* pShaders = palette(QStringLiteral("Shaders"));
    QWidget* pView = pShaders ? childOfClass(pShaders, "OrvShaderView") : nullptr;
    QWidget* pLayers = pShaders ? childOfClass(pShaders, "OrvLayerView") : nullptr;
    QTabBar* pTabs = pShaders ? pShaders->findChild<QTabBar*>() : nullptr;
    if (!pView || !pLayers || !pTabs
        || !trigger(QStringLiteral("/Orvi/Layers/Shaders/AddShader/Layered Material")))
        return;
    OrvShaderInputManager& Channels = OrvShaderInputManager::instance();
    const OrvShaderNetwork* pNetwork = OrvShaderNetworkManager::instance().currentShaderNetwork();
    const QList<OrvShaderInput*> Painted = Channels.getShaderInputsFromNetwork(pNetwork);
    pShaders->open();
    settle();
    QMetaObject::invokeMethod(pView, "createMaterialChannel");
    picture(QStringLiteral("palette-shaders-layered"), pShaders);
    pTabs->setCurrentIndex(pTabs->count() - 1);
    settle();
    const OrvShaderInput* pMaterial = Channels.currentShaderInput();
    const auto addLayer = [pLayers, pMaterial](const QString& Name) -> OrvLayerShader* {
        const QList<OrvLayer*> Before = pMaterial ? pMaterial->layerList() : QList<OrvLayer*>();
        QMetaObject::invokeMethod(
            pLayers, "addShaderLayerFromKey", Q_ARG(QString, QStringLiteral("Shader/MetallicRoughness")));
        for (OrvLayer* pLayer : pMaterial ? pMaterial->layerList() : QList<OrvLayer*>()) {
            if (Before.contains(pLayer))
                continue;
            pLayer->setName(Name);
            return OrvLayerShaderManager::instance().getLayerShader(pLayer->shaderNode());
        }
        return nullptr;
    };
    OrvLayerShader *pHull = addLayer(QStringLiteral("Hull")), *pLacquer = addLayer(QStringLiteral("Lacquer"));
    if (!pHull || !pLacquer) {
        m_Failures.append(QStringLiteral("Shader Layers"));
        return;
    }
    for (OrvShaderInput* pChannel : Painted)
        pHull->setInputShaderInput(pChannel->name(), pChannel);
    pLacquer->setInputValue(QStringLiteral("Base Color"), OrvColor(0.3f, 0.02f, 0.02f));
    picture(QStringLiteral("palette-shaders-materials"), pShaders);
    pTabs->setCurrentIndex(0);
}

void OrvTour::visitObjects()
{
    OrvProject* pProject = OrvProjectManager::instance().currentProject();
    if (!pProject)
        return;
    for (const char* pName : {"Hatch", "Antenna"})
        pProject->addGeoEntity(QString::fromLatin1(pName));
    showFloating(QStringLiteral("Objects"), ObjectsSize);
}

void OrvTour::visitChannels()
{
    OrvLayerShaderManager& Shaders = OrvLayerShaderManager::instance();
    Shaders.setCurrentShader(Shaders.getCurrentChannelShader());
    const OrvShaderNetwork* pNetwork = OrvShaderNetworkManager::instance().currentShaderNetwork();
    for (OrvShaderInput* pChannel : OrvShaderInputManager::instance().getShaderInputsFromNetwork(pNetwork)) {
        OrvShaderInputManager::instance().makeShaderInputCurrent(pChannel, true);
        picture(QStringLiteral("channel-") + pChannel->name().toLower());
    }
}

void OrvTour::visitSampleProject()
{
    picture(QStringLiteral("empty"));
    OrvSampleProject::build();
    m_pCanvas->fit();
    picture(QStringLiteral("window"));
    visitPalettes();
    visitLight();
    visitPropertyEditors();
    visitMaskStack();
    visitQuickFind();
    visitBrush();
    visitSelection();
    visitConversion();
    visitMaterials();
    visitObjects();
}

int OrvTour::run()
{
    QTextStream Log(stderr);
    if (!QDir().mkpath(m_Directory)) {
        Log << QStringLiteral("orvi: the directory '%1' cannot be made\n").arg(m_Directory);
        return OrvCommandLine::Failure;
    }
    OrvMainWindow& Window = OrvMainWindow::instance();
    Window.showNormal(); // on a small screen it has all of it
    Window.resize(WindowSize);
    Window.resetLayout();
    if (m_Subject == SampleProject)
        visitSampleProject();
    else
        picture(QStringLiteral("window"));
    visitChannels();
    if (m_Failures.isEmpty())
        return OrvCommandLine::Success;
    Log << QStringLiteral("orvi: the tour missed %1\n").arg(m_Failures.join(QLatin1String(", ")));
    return OrvCommandLine::Failure;
}
