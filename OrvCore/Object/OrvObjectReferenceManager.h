#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QHash>
#include <QtCore/QString>

class QObject;

/// The table of all objects with an identity. Objects enter and leave it by themselves; a node that undo keeps in
/// reserve is not found.
class ORVCORE_EXPORT OrvObjectReferenceManager {
public:
    static OrvObjectReferenceManager& instance();

    /// The live object of that identity, or null.
    QObject* getPointer(const QString& Uuid) const { return m_Objects.value(Uuid); }

    void enter(const QString& Uuid, QObject* pObject);
    void leave(const QString& Uuid, const QObject* pObject);

private:
    QHash<QString, QObject*> m_Objects;
};
