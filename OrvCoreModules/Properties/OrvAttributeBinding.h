#pragma once

#include "OrvCoreModules/Properties/OrvValueBinding.h"

#include "OrvCore/Object/OrvCustomAttribute.h"

#include <QtCore/QPointer>

class OrvSerializableObject;

/// A user attribute. One of a node that has left its document (an undone creation) is not writable until it
/// is back.
class ORVCOREMODULES_EXPORT OrvAttributeBinding : public OrvValueBinding {
    Q_OBJECT

public:
    /// The undo history names the value by the label; without one, by what its name says.
    OrvAttributeBinding(OrvSerializableObject* pObject, const QString& Name, QObject* pParent,
        const QString& Label = QString());
    ~OrvAttributeBinding() override;

    QVariant value() const override;
    bool isWritable() const override;

protected:
    void write(const QVariant& Value) override;

private Q_SLOTS:
    void onAttributeChanged(OrvCustomAttribute Attribute);
    void onAttributeEnabledChanged(OrvCustomAttribute Attribute, QObject* pOriginator);

private:
    void setOutsideDocument(const QObject* pNode, bool Outside);

    QPointer<OrvSerializableObject> m_pObject;
    QString m_Name;
    bool m_OutsideDocument = false;
};
