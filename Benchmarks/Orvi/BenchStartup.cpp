// How long the program takes from the start of its process until the layers of the sample project are on the screen
// (off screen here), next to a floor: the same for a Qt program that shows an empty window.

#include "Benchmarks/RatioReporter.h"


#include <QtCore/QProcess>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMainWindow>

namespace {

const QByteArray ShownMark("First layers shown");

/// Starts a program and waits until its log has the mark.
bool startUntil(const QString& Program, const QStringList& Arguments, const QByteArray& Mark)
{
    QProcess Process;
    Process.setProcessChannelMode(QProcess::MergedChannels);
    Process.start(Program, Arguments);
    QByteArray Log;
    while (!Log.contains(Mark)) {
        if (!Process.waitForReadyRead(30000))
            return false;
        Log += Process.readAll();
    }
    Process.kill();
    Process.waitForFinished();
    return true;
}

void start(benchmark::State& State, const QString& Program, const QStringList& Arguments)
{
    for (auto _ : State) {
        if (!startUntil(Program, Arguments, ShownMark)) {
            State.SkipWithError("the program did not show its layers");
            return;
        }
    }
}

int showEmptyWindow(int ArgumentCount, char** pArguments)
{
    class Window : public QMainWindow {
        void paintEvent(QPaintEvent*) override
        {
            std::puts(ShownMark.constData());
            std::fflush(stdout);
        }
    };
    QApplication Application(ArgumentCount, pArguments);
    Window Empty;
    Empty.resize(1600, 1000);
    Empty.show();
    return Application.exec();
}

} // namespace

int main(int ArgumentCount, char** pArguments)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    if (ArgumentCount > 1 && qstrcmp(pArguments[1], "--empty-window") == 0)
        return showEmptyWindow(ArgumentCount, pArguments);
    benchmark::Initialize(&ArgumentCount, pArguments);
    const QCoreApplication Application(ArgumentCount, pArguments);
    const QString Here = QCoreApplication::applicationDirPath();
    const QString Orvi = Here + QStringLiteral("/../bin/orvi");

    // The first start makes the sample project.
    if (!startUntil(Orvi, {QStringLiteral("--sample")}, ShownMark)) {
        std::fputs("orvi does not start\n", stderr);
        return EXIT_FAILURE;
    }
    RatioReporter::measure("floor: start", [](benchmark::State& State) {
        start(State, QCoreApplication::applicationFilePath(), {QStringLiteral("--empty-window")});
    }, 0.01);
    RatioReporter::measure("start", [&Orvi](benchmark::State& State) {
        start(State, Orvi, {QStringLiteral("--sample")});
    }, 0.01);
    RatioReporter Reporter;
    benchmark::RunSpecifiedBenchmarks(&Reporter);
    Reporter.printRatios();
    return EXIT_SUCCESS;
}
