#include "Orvi/OrvTour.h"

#include "Orvi/OrvCanvas.h"
#include "Orvi/OrvCommandLine.h"
#include "Orvi/OrvSampleProject.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Widgets/OrvEditLabel.h"
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
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QTreeView>

#include <cmath>
#include <cstdio>
#include <functional>

namespace {

const QSize WindowSize(1600, 1000);
const QSize GraphSize(1100, 700);
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

void OrvTour::showPalette(const QString& Name)
{
    OrvPalette* pPalette = OrvPaletteManager::find(Name);
    if (!pPalette) {
        m_Failures.append(Name);
        return;
    }
    pPalette->open();
    picture(QStringLiteral("palette-") + Name.toLower(), pPalette);
}

bool OrvTour::select(const QString& LayerName)
{
    settle();
    OrvPalette* pLayers = OrvPaletteManager::find(QStringLiteral("Layers"));
    const QTreeView* pTree = pLayers ? pLayers->findChild<QTreeView*>() : nullptr;
    QScrollBar* pScrollBar = pTree ? pTree->verticalScrollBar() : nullptr;
    // Only rows in view have labels: look through the tree page by page.
    for (int Top = 0, Shown = -1; pScrollBar && Shown < pScrollBar->maximum(); Top += qMax(1, pScrollBar->pageStep())) {
        Shown = qMin(Top, pScrollBar->maximum());
        pScrollBar->setValue(Shown);
        settle();
        for (const OrvEditLabel* pLabel : pTree->findChildren<OrvEditLabel*>()) {
            const QPoint Place = pLabel->mapTo(pTree->viewport(), pLabel->rect().center());
            if (pLabel->text() != LayerName || !pLabel->isVisible() || !pTree->viewport()->rect().contains(Place))
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
    OrvPalette* pGraph = OrvPaletteManager::find(QStringLiteral("Node Graph"));
    if (!pGraph) {
        m_Failures.append(QStringLiteral("Node Graph"));
        return;
    }
    pGraph->setFloating(true);
    pGraph->open();
    pGraph->resize(GraphSize);
    settle();
    QMetaObject::invokeMethod(pGraph, "frameAll");
    picture(QStringLiteral("palette-node-graph"), pGraph);
    pGraph->close();
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
    for (QWidget* pButton : pLayers->findChildren<QWidget*>()) {
        if (pButton->inherits("OrvLayerStackPopupButton") && pButton->isVisible()) {
            click(pButton, QRectF(pButton->rect()).center());
        }
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
    QAction* pAction = OrvActionTreeManager::instance().findAction(QStringLiteral("/Orvi/Layers/Quick Find"));
    OrvPalette* pLayers = OrvPaletteManager::find(QStringLiteral("Layers"));
    if (!pAction || !pLayers) {
        m_Failures.append(QStringLiteral("Quick Find"));
        return;
    }
    // The command is one of the palette that has the focus.
    QApplication::setActiveWindow(&OrvMainWindow::instance());
    if (QTreeView* pTree = pLayers->findChild<QTreeView*>())
        pTree->setFocus();
    settle();
    // The dialog runs its own event loop; the visitor types from inside of it.
    bool Seen = false;
    QTimer::singleShot(QuietTime, m_pCanvas, [&] {
        QWidget* pDialog = QApplication::activeModalWidget();
        if (!pDialog)
            return;
        Seen = true;
        if (QWidget* pField = pDialog->focusWidget()) {
            for (const char Letter : {'b', 'l', 'u', 'r'}) {
                QKeyEvent Press(QEvent::KeyPress, 0, Qt::NoModifier, QString(QLatin1Char(Letter)));
                QApplication::sendEvent(pField, &Press);
            }
        }
        picture(QStringLiteral("quick-find"), pDialog);
        pDialog->close();
    });
    pAction->trigger();
    if (!Seen)
        m_Failures.append(QStringLiteral("Quick Find"));
}

void OrvTour::visitBrush()
{
    if (!select(QStringLiteral("Splashes")))
        return;
    const auto wave = [this](double Part) {
        return m_pCanvas->toWidget(QPointF(260.0 + 1500.0 * Part, 1460.0 + 160.0 * std::sin(Part * 9.0)));
    };
    constexpr int Points = 60;
    sendMouse(m_pCanvas, QEvent::MouseButtonPress, wave(0.0), Qt::LeftButton);
    for (int Point = 1; Point <= Points; ++Point) {
        sendMouse(m_pCanvas, QEvent::MouseMove, wave(double(Point) / Points), Qt::LeftButton);
        QApplication::processEvents();
    }
    sendMouse(m_pCanvas, QEvent::MouseButtonRelease, wave(1.0), Qt::NoButton);
    picture(QStringLiteral("stroke"));
    showPalette(QStringLiteral("History"));
    QAction* pUndo = OrvActionTreeManager::instance().findAction(QStringLiteral("/Orvi/Edit/Undo"));
    if (pUndo)
        pUndo->trigger();
    m_pCanvas->showActualSize();
    picture(QStringLiteral("actual-size"));
    m_pCanvas->fit();
}

void OrvTour::visitSelection()
{
    const auto run = [this](const char* pKey) {
        QAction* pAction = OrvActionTreeManager::instance().findAction(QString::fromLatin1(pKey));
        if (pAction)
            pAction->trigger();
        else
            m_Failures.append(QString::fromLatin1(pKey));
    };
    const auto drag = [this](const std::function<QPointF(double)>& PicturePoint) {
        constexpr int Points = 80;
        for (int Point = 0; Point <= Points; ++Point) {
            const QPointF Place = m_pCanvas->toWidget(PicturePoint(double(Point) / Points));
            if (Point == 0)
                sendMouse(m_pCanvas, QEvent::MouseButtonPress, Place, Qt::LeftButton);
            sendMouse(m_pCanvas, QEvent::MouseMove, Place, Qt::LeftButton);
            if (Point == Points)
                sendMouse(m_pCanvas, QEvent::MouseButtonRelease, Place, Qt::NoButton);
        }
    };
    run("/Orvi/Select/Lasso Selection");
    drag([](double Part) {
        const double Angle = 6.2831853 * Part, Radius = 420.0 + 110.0 * std::cos(5.0 * Angle);
        return QPointF(1000.0 + Radius * std::cos(Angle), 1000.0 + Radius * std::sin(Angle));
    });
    run("/Orvi/Select/Brush");
    drag([](double Part) { return QPointF(300.0 + 1400.0 * Part, 1000.0 + 300.0 * std::sin(12.0 * Part)); });
    picture(QStringLiteral("selection"));
    run("/Orvi/Edit/Undo");
    run("/Orvi/Select/None");
}

void OrvTour::visitChannels()
{
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
    visitPropertyEditors();
    visitMaskStack();
    visitQuickFind();
    visitBrush();
    visitSelection();
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
