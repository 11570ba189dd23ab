#include "OrvCoreModules/Window/OrvContextHelp.h"

#include "OrvCoreModules/Window/OrvResourceInfo.h"

#include <QtCore/QFile>
#include <QtCore/QHash>
#include <QtWidgets/QWhatsThis>

namespace {

QHash<QString, QString>& registeredTexts()
{
    static QHash<QString, QString> Texts;
    return Texts;
}

} // namespace

void OrvContextHelp::registerText(const QString& Key, const QString& RichText)
{
    registeredTexts().insert(Key, RichText);
}

QString OrvContextHelp::text(const QString& Key)
{
    const QString Registered = registeredTexts().value(Key);
    if (!Registered.isEmpty() || Key.isEmpty())
        return Registered;
    QFile File(OrvResourceInfo::helpPath() + QStringLiteral("/%1.html").arg(Key));
    return File.open(QIODevice::ReadOnly) ? QString::fromUtf8(File.readAll()) : QString();
}

bool OrvContextHelp::show(const QString& Key, const QPoint& GlobalPosition, QWidget* pWidget)
{
    const QString Text = text(Key);
    if (Text.isEmpty())
        return false;
    QWhatsThis::showText(GlobalPosition, Text, pWidget);
    return true;
}
