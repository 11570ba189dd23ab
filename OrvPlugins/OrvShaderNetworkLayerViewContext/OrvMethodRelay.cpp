#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvMethodRelay.h"

#include "OrvCore/Object/OrvDebug.h"

#include <QtCore/QMetaObject>
#include <QtCore/QVariant>
#include <QtWidgets/QAction>

#include <array>

void OrvMethodRelay::invoke(QObject* pTarget, const char* pTargetName, const QAction* pAction, const char* pFile)
{
    if (!pTarget) {
        OrvDebug(pFile, __LINE__, QStringLiteral("%1 is NULL").arg(QLatin1String(pTargetName)), false, false);
        return;
    }
    if (!pAction) {
        OrvDebug(pFile, __LINE__, QStringLiteral("pAction is NULL"), false, false);
        return;
    }
    // A text would convert to a list, too.
    const QVariant Record = pAction->data();
    const bool IsList = Record.userType() == QMetaType::QVariantList || Record.userType() == QMetaType::QStringList;
    const QVariantList Arguments = IsList ? Record.toList().mid(1) : QVariantList();
    const QString Method = IsList ? Record.toList().value(0).toString() : Record.toString();

    if (Arguments.size() > MaximumArgumentCount) {
        OrvDebug(pFile, __LINE__,
            QString::asprintf("[ !! ] Relayed method arg count of '%d' exceeds limit of '%d'", Arguments.size(),
                MaximumArgumentCount),
            false, false);
        return;
    }
    if (Method.isEmpty()) {
        OrvDebug(pFile, __LINE__, QStringLiteral("[ !! ] Relayed method name missing"), false, false);
        return;
    }
    std::array<QGenericArgument, MaximumArgumentCount> Passed;
    for (int i = 0; i < Arguments.size(); ++i)
        Passed[size_t(i)] = QGenericArgument(Arguments.at(i).typeName(), Arguments.at(i).constData());
    const bool Invoked = QMetaObject::invokeMethod(pTarget, Method.toLatin1().constData(), Passed[0], Passed[1],
        Passed[2], Passed[3], Passed[4], Passed[5], Passed[6], Passed[7], Passed[8], Passed[9]);
    if (!Invoked) {
        OrvDebug(pFile, __LINE__,
            QStringLiteral("[ !! ] Relayed method '%1' not found in '%2'")
                .arg(Method, QLatin1String(pTarget->metaObject()->className())),
            false, false);
    }
}
