#pragma once

#include "OrvCoreModules/Properties/OrvValueBinding.h"

#include <QtCore/QMetaProperty>
#include <QtCore/QPointer>

/// A Qt property. Where it has no signal of its own, any signal of the object makes it look again.
class ORVCOREMODULES_EXPORT OrvPropertyBinding : public OrvValueBinding {
    Q_OBJECT

public:
    OrvPropertyBinding(QObject* pObject, const QMetaProperty& Property, QObject* pParent);
    ~OrvPropertyBinding() override;

    QVariant value() const override;
    bool isWritable() const override;

protected:
    void write(const QVariant& Value) override;
    QString undoText(const QVariant& Value) const override;

private Q_SLOTS:
    void lookAgain();

private:
    void followEverySignal();

    QPointer<QObject> m_pObject;
    QMetaProperty m_Property;
    QVariant m_LastSeen;
};
