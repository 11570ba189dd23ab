#pragma once

#include "OrvCore/Object/OrvSerializableObject.h"

/// A named object of the scene.
class ORVCORE_EXPORT OrvEntity : public OrvSerializableObject {
    Q_OBJECT

public:
    explicit OrvEntity(const QString& Name, QObject* pParent = nullptr)
        : OrvSerializableObject(pParent)
        , m_Name(Name)
    {
    }

    const QString& name() const { return m_Name; }

protected:
    QString m_Name;
};
