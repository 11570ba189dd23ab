#include "Orvi/OrvBatchExport.h"
#include "Orvi/OrvCommandLine.h"
#include "Orvi/OrvProgram.h"
#include "Orvi/OrvTour.h"

#include "OrvCoreModules/Window/OrvApplication.h"

#include <QtCore/QTextStream>

#include <cstdio>

namespace {

QStringList argumentsOf(int ArgumentCount, char** ppArguments)
{
    QStringList Arguments;
    for (int Index = 1; Index < ArgumentCount; ++Index)
        Arguments.append(QString::fromLocal8Bit(ppArguments[Index]));
    return Arguments;
}

void nameProgram()
{
    QCoreApplication::setApplicationName(QStringLiteral("orvi"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ORVI_VERSION));
}

int runWithWindow(int ArgumentCount, char** ppArguments, const OrvCommandLine& Line)
{
    const bool Tour = Line.RequestedMode == OrvCommandLine::Tour;
    if (Tour && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        // That platform's screen is a little dense; pictures are to have whole pixels.
        qputenv("QT_FONT_DPI", "96");
    }
    OrvApplication Application(ArgumentCount, ppArguments);
    nameProgram();
    if (Tour)
        OrvApplication::appInstance().setPopupsAllowed(false);
    OrvProgram Program;
    Program.start(Line);
    if (!Tour)
        return Application.exec();
    const OrvTour::Subject Shown = Line.namesFiles() ? OrvTour::OpenProject : OrvTour::SampleProject;
    return OrvTour(Program.canvas(), Line.Directory, Shown).run();
}

} // namespace

int main(int ArgumentCount, char** ppArguments)
{
    nameProgram();
    const OrvCommandLine Line = OrvCommandLine::parse(argumentsOf(ArgumentCount, ppArguments));
    if (Line.needsWindow())
        return runWithWindow(ArgumentCount, ppArguments, Line);

    QCoreApplication Application(ArgumentCount, ppArguments);
    switch (Line.RequestedMode) {
    case OrvCommandLine::Export:
        return OrvBatchExport::run(Line);
    case OrvCommandLine::Help:
        QTextStream(stdout) << OrvCommandLine::helpText();
        return OrvCommandLine::Success;
    case OrvCommandLine::Version:
        QTextStream(stdout) << OrvCommandLine::versionText();
        return OrvCommandLine::Success;
    default:
        QTextStream(stderr) << QStringLiteral("orvi: ") << Line.Error << "\n\n" << OrvCommandLine::helpText();
        return OrvCommandLine::UsageError;
    }
}
