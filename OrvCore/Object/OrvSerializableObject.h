#pragma once

#include "OrvCore/Object/OrvCustomAttribute.h"

#include <QtCore/QObject>
#include <QtCore/QVector>

/// An object with an identity and user attributes. Base of the nodes of the document; anybody may derive. It records
/// no undo: nodes do.
class ORVCORE_EXPORT OrvSerializableObject : public QObject {
    Q_OBJECT

public:
    explicit OrvSerializableObject(QObject* pParent = nullptr);
    ~OrvSerializableObject() override;

    /// Unique among live objects and kept in the project; Latin-1 without ":".
    QString uuidString() const { return m_Uuid; }
    /// Takes the identity that a stored object had. To be called before anybody else knows the object.
    void setUuidString(const QString& Uuid);
    static QString createUuidString();

    bool exists(const QString& Name) const;
    /// An attribute without name when there is none of that name.
    OrvCustomAttribute userAttribute(const QString& Name) const;
    /// All attributes: those that every object of the class has, then those of this object alone.
    QVector<OrvCustomAttribute> userAttributes() const;
    /// Only those that differ from the defaults of the class: what is worth storing.
    const QVector<OrvCustomAttribute>& ownUserAttributes() const { return m_Attributes; }

    /// No effect on an absent attribute.
    virtual void setUserAttributeValue(const QString& Name, const QVariant& Value);
    virtual void setUserAttributeEnabled(const QString& Name, bool Enabled);
    /// Replaces an attribute of the same name.
    virtual void createUserAttribute(const OrvCustomAttribute& Attribute);
    virtual void removeUserAttribute(const QString& Name);

Q_SIGNALS:
    void userAttributeValueChanged(OrvCustomAttribute Attribute);
    void userAttributeEnabledChanged(OrvCustomAttribute Attribute, QObject* pOriginator);

protected:
    /// Attributes that every object of the class has; shared by all of them.
    virtual const QVector<OrvCustomAttribute>& attributeDefaults() const;
    /// Puts the attribute in place and tells; the plain step without undo. An attribute equal to its default is
    /// not stored.
    virtual void applyUserAttribute(const OrvCustomAttribute& Attribute);
    virtual void applyUserAttributeRemoval(const QString& Name);

    void enterReferenceTable();
    void leaveReferenceTable();

private:
    int ownIndex(const QString& Name) const;

    QString m_Uuid;
    QVector<OrvCustomAttribute> m_Attributes;
};
