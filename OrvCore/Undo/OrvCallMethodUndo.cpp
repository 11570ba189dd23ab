#include "OrvCore/Undo/OrvCallMethodUndo.h"

#include "OrvCore/Object/OrvDebug.h"

#include <QtCore/QMetaMethod>

OrvCallMethodUndo::OrvCallMethodUndo(QObject* pTarget, const QByteArray& Method, const QVariantList& UndoArguments,
    const QVariantList& RedoArguments, int MergeIdentifier, const QString& Text)
    : QUndoCommand(Text)
    , m_pTarget(pTarget)
    , m_Method(QMetaObject::normalizedSignature(Method.constData()))
    , m_UndoArguments(UndoArguments)
    , m_RedoArguments(RedoArguments)
    , m_MergeIdentifier(MergeIdentifier)
{
}

void OrvCallMethodUndo::undo()
{
    call(m_UndoArguments);
}

void OrvCallMethodUndo::redo()
{
    call(m_RedoArguments);
}

void OrvCallMethodUndo::call(QVariantList Arguments) const
{
    if (!m_pTarget)
        return;
    const int Index = m_pTarget->metaObject()->indexOfMethod(m_Method.constData());
    if (Index < 0) {
        OrvDebug("OrvCallMethodUndo", __LINE__,
            QStringLiteral("[ !! ] %1 has no method %2")
                .arg(QLatin1String(m_pTarget->metaObject()->className()), QLatin1String(m_Method)));
        return;
    }
    const QMetaMethod Method = m_pTarget->metaObject()->method(Index);
    QGenericArgument Passed[10];
    for (int Position = 0; Position < qMin(Arguments.size(), 10); ++Position) {
        Arguments[Position].convert(Method.parameterType(Position));
        Passed[Position] = QGenericArgument(Arguments[Position].typeName(), Arguments[Position].constData());
    }
    Method.invoke(m_pTarget, Qt::DirectConnection, Passed[0], Passed[1], Passed[2], Passed[3], Passed[4], Passed[5],
        Passed[6], Passed[7], Passed[8], Passed[9]);
}
