// How long a dab on the mask of a costly material takes in a lit picture of 2048 x 2048: on the GUI thread,
// and until the canvas has shown all that the stroke changed; next to a floor in the same run, the same
// strokes in a project that has nothing but an evenly coloured layer below the light.

#include "Orvi/OrvBrushTool.h"
#include "Orvi/OrvCanvas.h"
#include "Orvi/OrvCanvasTools.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Project/OrvProject.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderUtils.h"
#include "OrvCore/Shaders/OrvMultiChannelLayerUtils.h"
#include "OrvCore/Shelf/OrvShelfDirectories.h"

#include "OrvDdi/Image/OrvColor.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QTemporaryDir>
#include <QtCore/QThread>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QApplication>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <vector>

namespace {

const QSize PictureSize(2048, 2048);
constexpr int Dabs = 20;
constexpr int FrameTime = 16; // ms between two movements of the pointer

double milliseconds(const QElapsedTimer& Timer)
{
    return double(Timer.nsecsElapsed()) / 1e6;
}

/// A project with a lit shader, and a layer with a mask that is ready to be painted on.
bool openProject(bool Costly)
{
    OrvShaderNetwork* pNetwork = OrvProjectManager::instance()
                                     .newProject(QStringLiteral("Painting"))
                                     ->currentGeoEntity()
                                     ->shaderNetwork();
    OrvLayerShader* pShader
        = OrvLayerShaderUtils::createShaderFromKey(QStringLiteral("Shader/MetallicRoughness"), true);
    OrvShaderInput* pFirst = nullptr;
    for (const QString& Name :
        {QStringLiteral("Roughness"), QStringLiteral("Metallic"), QStringLiteral("Base Color")}) {
        pFirst = OrvShaderInputUtils::create(
            pNetwork, Name, PictureSize, GL_UNSIGNED_BYTE, nullptr, Name != QStringLiteral("Base Color"));
        if (!pShader || !pShader->setInputShaderInput(Name, pFirst))
            return false;
        pFirst->createPaintableLayer(OrvColor(0.5f, 0.5f, 0.5f), OrvLayerMakeCurrent);
    }
    OrvShaderInputManager::instance().makeShaderInputCurrent(pFirst, true);
    QString Error;
    OrvLayer* pLayer = Costly ? OrvMultiChannelLayerUtils::createMaterialLayer(
                           OrvShelfDirectories::shipped() + QStringLiteral("/Materials/Rusted Steel.orvmat"),
                           pShader, nullptr, Error)
                              : pFirst->createPaintableLayer(
                                  OrvColor(0.2f, 0.3f, 0.1f), OrvLayerAboveCurrent | OrvLayerMakeCurrent);
    if (!pLayer)
        return false;
    pLayer->addMaskImageSet();
    pLayer->makeCurrent(false, true);
    OrvLayerManager::instance().setCurrentComponent(pLayer->maskPaintNode());
    return true;
}

/// Handles events as a program does that sleeps in between: what is computed meanwhile needs all processors.
void handleEvents()
{
    QApplication::processEvents();
    QThread::msleep(1);
}

bool waitUntilSettled(OrvCanvas& Canvas)
{
    QElapsedTimer Timer;
    Timer.start();
    while (!Canvas.isSettled() && Timer.elapsed() < 120000)
        handleEvents();
    return Canvas.isSettled();
}

void send(OrvCanvas& Canvas, QEvent::Type Type, const QPoint& Where)
{
    const bool Moves = Type == QEvent::MouseMove;
    QMouseEvent Event(Type, Where, Moves ? Qt::NoButton : Qt::LeftButton,
        Type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&Canvas, &Event);
}

/// A stroke from side to side at a height of the widget, at a pointer's pace.
void paint(OrvCanvas& Canvas, const char* pWhen, int Height)
{
    std::vector<double> Times;
    const auto take = [&](QEvent::Type Type, int Step) {
        QElapsedTimer Timer;
        Timer.start();
        send(Canvas, Type, QPoint(150 + Step * 25, Height));
        Times.push_back(milliseconds(Timer));
        while (Timer.elapsed() < FrameTime)
            handleEvents();
    };
    QElapsedTimer Stroke;
    Stroke.start();
    take(QEvent::MouseButtonPress, 0);
    for (int Step = 1; Step < Dabs; ++Step)
        take(QEvent::MouseMove, Step);
    QElapsedTimer Shown;
    Shown.start();
    take(QEvent::MouseButtonRelease, Dabs);
    std::sort(Times.begin(), Times.end());
    std::printf(
        "  %-20s dab %7.2f ms (median), %8.2f (longest)", pWhen, Times[Times.size() / 2], Times.back());
    std::fflush(stdout);
    const bool Settled = waitUntilSettled(Canvas);
    std::printf(
        "; all shown %8.1f ms after the last%s\n", milliseconds(Shown), Settled ? "" : " (NOT COMPLETE)");
    std::fflush(stdout);
}

bool measure(const char* pName, bool Costly)
{
    std::printf("%s\n", pName);
    if (!openProject(Costly))
        return false;
    {
        OrvCanvasTools Tools;
        OrvBrush Brush;
        Brush.setSize(80);
        Brush.setColor(Qt::black);
        Tools.brushTool()->setBrush(Brush);
        OrvCanvas Canvas(&Tools);
        Canvas.resize(900, 700);
        QElapsedTimer Opening;
        Opening.start();
        Canvas.show();
        QApplication::processEvents();
        paint(Canvas, "while it is computed", 250);
        std::printf("  %-20s %8.1f ms\n", "complete after", milliseconds(Opening));
        paint(Canvas, "when it is complete", 450);
        Canvas.showActualSize();
        waitUntilSettled(Canvas);
        paint(Canvas, "at actual size", 350);
    }
    OrvProjectManager::instance().closeProject();
    return true;
}

} // namespace

int main(int ArgumentCount, char** pArguments)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir Settings;
    qputenv("ORV_SETTINGS", Settings.filePath(QStringLiteral("settings.ini")).toLocal8Bit());
    const QApplication Application(ArgumentCount, pArguments);
    const bool Done = measure("floor: an even colour", false) && measure("Rusted Steel", true);
    if (!Done)
        std::fputs("the project could not be made\n", stderr);
    return Done ? EXIT_SUCCESS : EXIT_FAILURE;
}
