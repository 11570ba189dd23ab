#include "OrvCoreModules/Menus/OrvShortcutSequence.h"

#include <QtCore/QStringList>
#include <QtGui/QKeySequence>

QString OrvShortcutSequence::toUserFriendlyString(const QString& Combination)
{
#ifdef Q_OS_MACOS
    QString Friendly = Combination;
    Friendly.replace(QLatin1String("Ctrl"), QString(QChar(0x2318)));
    Friendly.replace(QLatin1String("Shift"), QString(QChar(0x21e7)));
    Friendly.replace(QLatin1String("Alt"), QString(QChar(0x2325)));
    Friendly.replace(QLatin1String("Meta"), QString(QChar(0x2303)));
    return Friendly.remove(QLatin1Char('+'));
#else
    QStringList Parts = Combination.split(QLatin1Char('+'), Qt::SkipEmptyParts);
    for (QString& Part : Parts)
        Part = Part.trimmed();
    return Parts.join(QLatin1Char('+'));
#endif
}

QString OrvShortcutSequence::toUserFriendlyString(const QKeySequence& Sequence)
{
    return Sequence.toString(QKeySequence::NativeText);
}
