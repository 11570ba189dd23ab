#include "Orvi/OrvBatchExport.h"

#include "Orvi/OrvChannelExport.h"
#include "Orvi/OrvCommandLine.h"

#include "OrvCore/Channels/OrvShaderInput.h"
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

/// By "Object/Channel", or by the channel's name where only one object has such a channel. Null with the
/// reason.
OrvShaderInput* findChannel(const OrvProject& Project, const OrvCommandLine& Line, QString& Error)
{
    QList<OrvShaderInput*> Addressed, Named;
    QStringList Addresses, Known;
    for (const OrvGeoEntity* pEntity : Project.geoEntities()) {
        for (OrvShaderInput* pChannel : OrvChannelExport::channelsOf(pEntity)) {
            const QString Address = pEntity->name() + QLatin1Char('/') + pChannel->name();
            if (Address == Line.Channel)
                Addressed.append(pChannel);
            if (pChannel->name() == Line.Channel) {
                Named.append(pChannel);
                Addresses.append(Address);
            }
            Known.append(Project.geoEntities().size() > 1 ? Address : pChannel->name());
        }
    }
    if (Addressed.size() == 1)
        return Addressed.first();
    if (Addressed.isEmpty() && Named.size() == 1)
        return Named.first();
    if (Known.isEmpty())
        Error = tr("'%1' has no channels").arg(Line.Project);
    else if (Addressed.isEmpty() && Named.isEmpty())
        Error = tr("'%1' has no channel \"%2\"; it has %3")
                    .arg(Line.Project, Line.Channel, Known.join(QLatin1String(", ")));
    else
        Error = tr("Several channels are \"%1\": name one of %2")
                    .arg(Line.Channel, (Named.isEmpty() ? Known : Addresses).join(QLatin1String(", ")));
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
    OrvShaderInput* pChannel = findChannel(*Projects.currentProject(), Line, Error);
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
