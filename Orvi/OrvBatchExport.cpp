#include "Orvi/OrvBatchExport.h"

#include "Orvi/OrvChannelExport.h"
#include "Orvi/OrvCommandLine.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Project/OrvProject.h"
#include "OrvCore/Project/OrvProjectManager.h"

#include <QtCore/QFileInfo>
#include <QtCore/QTextStream>

#include <cstdio>

namespace {

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvBatchExport", pText);
}

int fail(const QString& Message)
{
    QTextStream(stderr) << QStringLiteral("orvi: ") << Message << '\n';
    return OrvCommandLine::Failure;
}

/// By name, or by "Object/Channel" where several objects have one of that name.
OrvShaderInput* findChannel(const OrvProject& Project, const QString& Name, QStringList& Known)
{
    for (const OrvGeoEntity* pEntity : Project.geoEntities()) {
        for (OrvShaderInput* pChannel :
            OrvShaderInputManager::instance().getShaderInputsFromNetwork(pEntity->shaderNetwork())) {
            if (pChannel->name() == Name || pEntity->name() + QLatin1Char('/') + pChannel->name() == Name)
                return pChannel;
            Known.append(pChannel->name());
        }
    }
    return nullptr;
}

} // namespace

int OrvBatchExport::run(const OrvCommandLine& Line)
{
    OrvProjectManager& Projects = OrvProjectManager::instance();
    QString Error;
    if (!QFileInfo::exists(Line.Project))
        return fail(tr("'%1' does not exist").arg(Line.Project));
    if (!Projects.openProject(Line.Project, Error))
        return fail(Error);
    QStringList Known;
    OrvShaderInput* pChannel = findChannel(*Projects.currentProject(), Line.Channel, Known);
    if (!pChannel) {
        Error = Known.isEmpty() ? tr("'%1' has no channels").arg(Line.Project)
                                : tr("'%1' has no channel \"%2\"; it has %3")
                                      .arg(Line.Project, Line.Channel, Known.join(QLatin1String(", ")));
    }
    const bool Written = pChannel && OrvChannelExport::writeChannel(pChannel, Line.File, {}, Error);
    if (Written) {
        // Of several tiles each has a file, whose name is not the one that was asked for.
        QTextStream Out(stdout);
        for (const QString& File : OrvChannelExport::filesOf(pChannel, Line.File))
            Out << File << '\n';
    }
    Projects.closeProject();
    return Written ? int(OrvCommandLine::Success) : fail(Error);
}
