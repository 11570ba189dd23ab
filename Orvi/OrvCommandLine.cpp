#include "Orvi/OrvCommandLine.h"

#include "OrvCore/Project/OrvProjectFile.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFileInfo>

namespace {

const QString ProjectSuffix = QStringLiteral("orvi");

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvCommandLine", pText);
}

} // namespace

bool OrvCommandLine::isProjectPath(const QString& Path)
{
    const QFileInfo File(Path);
    if (File.fileName() == OrvProjectFile::ManifestName)
        return true;
    // A trailing slash, as a shell's completion leaves it, names the same folder.
    const QFileInfo Folder(Path.endsWith(QLatin1Char('/')) ? Path.chopped(1) : Path);
    return Folder.suffix().compare(ProjectSuffix, Qt::CaseInsensitive) == 0;
}

void OrvCommandLine::fail(const QString& Message)
{
    RequestedMode = Invalid;
    Error = Message;
}

void OrvCommandLine::takeFiles(const QStringList& Files)
{
    for (const QString& Path : Files) {
        if (!isProjectPath(Path))
            Images.append(Path);
        else if (Project.isEmpty())
            Project = Path;
        else
            return fail(tr("Only one project can be open: '%1' and '%2' were named").arg(Project, Path));
    }
    if (!Project.isEmpty() && !Images.isEmpty())
        fail(tr("Name either a project or images: '%1' is a project, '%2' is not")
                 .arg(Project, Images.first()));
}

OrvCommandLine OrvCommandLine::parse(const QStringList& Arguments)
{
    OrvCommandLine Line;
    QStringList Files, Options;
    bool OnlyFilesFollow = false;
    for (const QString& Argument : Arguments) {
        if (OnlyFilesFollow || !Argument.startsWith(QLatin1Char('-')) || Argument.size() == 1)
            Files.append(Argument);
        else if (Argument == QLatin1String("--"))
            OnlyFilesFollow = true;
        else
            Options.append(Argument);
    }
    if (Options.contains(QLatin1String("--help")) || Options.contains(QLatin1String("-h"))) {
        Line.RequestedMode = Help;
        return Line;
    }
    if (Options.contains(QLatin1String("--version"))) {
        Line.RequestedMode = Version;
        return Line;
    }
    Options.removeDuplicates();
    if (Options.size() > 1) {
        Line.fail(tr("'%1' and '%2' do not go together").arg(Options[0], Options[1]));
        return Line;
    }
    const QString Option = Options.value(0);
    if (Option.isEmpty()) {
        Line.takeFiles(Files);
    } else if (Option == QLatin1String("--export")) {
        if (Files.size() != 3)
            Line.fail(tr("--export takes a channel, a file and a project"));
        else if (!isProjectPath(Files[2]))
            Line.fail(tr("'%1' is not a project").arg(Files[2]));
        Line.Channel = Files.value(0);
        Line.File = Files.value(1);
        Line.Project = Files.value(2);
        if (Line.RequestedMode != Invalid)
            Line.RequestedMode = Export;
    } else if (Option == QLatin1String("--sample")) {
        Line.RequestedMode = Sample;
        if (!Files.isEmpty())
            Line.fail(tr("--sample takes no file"));
    } else if (Option == QLatin1String("--tour")) {
        Line.RequestedMode = Tour;
        Line.Directory = Files.value(0);
        if (Files.isEmpty())
            Line.fail(tr("--tour takes the directory for its pictures"));
        else
            Line.takeFiles(Files.mid(1));
    } else {
        Line.fail(tr("'%1' is no option of this program").arg(Option));
    }
    return Line;
}

QString OrvCommandLine::helpText()
{
    return tr("Usage:\n"
              "  orvi                                 start with an empty window\n"
              "  orvi PROJECT.orvi                    open a project\n"
              "  orvi IMAGE...                        a new project with one channel per image;\n"
              "                                       the tiles of a UDIM set are one image\n"
              "  orvi --export CHANNEL FILE PROJECT   write a channel to FILE (png, tif, exr), without\n"
              "                                       a window; \"<UDIM>\" in FILE stands for the tile;\n"
              "                                       \"Object/Channel\" where several objects have\n"
              "                                       a channel of that name\n"
              "  orvi --sample                        open the sample project\n"
              "  orvi --tour DIRECTORY [FILE...]      write pictures of the program at work, on the\n"
              "                                       sample project or on what is named\n"
              "  orvi --version | --help\n"
              "\n"
              "Exit codes: 0 done, 1 failed, 2 wrong arguments.\n");
}

QString OrvCommandLine::versionText()
{
    return QStringLiteral("Orvi %1\n").arg(QCoreApplication::applicationVersion());
}
