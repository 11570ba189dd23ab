#include "OrvCore/Object/OrvSerializableObject.h"

#include "OrvCore/Object/OrvObjectReferenceManager.h"

#include <QtCore/QUuid>

OrvSerializableObject::OrvSerializableObject(QObject* pParent)
    : QObject(pParent)
    , m_Uuid(createUuidString())
{
    enterReferenceTable();
}

OrvSerializableObject::~OrvSerializableObject()
{
    leaveReferenceTable();
}

QString OrvSerializableObject::createUuidString()
{
    return QString::fromLatin1(QUuid::createUuid().toRfc4122().toBase64(
        QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals));
}

void OrvSerializableObject::setUuidString(const QString& Uuid)
{
    leaveReferenceTable();
    m_Uuid = Uuid;
    enterReferenceTable();
}

void OrvSerializableObject::enterReferenceTable()
{
    OrvObjectReferenceManager::instance().enter(m_Uuid, this);
}

void OrvSerializableObject::leaveReferenceTable()
{
    OrvObjectReferenceManager::instance().leave(m_Uuid, this);
}

const QVector<OrvCustomAttribute>& OrvSerializableObject::attributeDefaults() const
{
    static const QVector<OrvCustomAttribute> None;
    return None;
}

int OrvSerializableObject::ownIndex(const QString& Name) const
{
    for (int Index = 0; Index < m_Attributes.size(); ++Index) {
        if (m_Attributes[Index].name() == Name)
            return Index;
    }
    return -1;
}

bool OrvSerializableObject::exists(const QString& Name) const
{
    return !userAttribute(Name).name().isEmpty();
}

OrvCustomAttribute OrvSerializableObject::userAttribute(const QString& Name) const
{
    const int Index = ownIndex(Name);
    if (Index >= 0)
        return m_Attributes[Index];
    for (const OrvCustomAttribute& Default : attributeDefaults()) {
        if (Default.name() == Name)
            return Default;
    }
    return {};
}

QVector<OrvCustomAttribute> OrvSerializableObject::userAttributes() const
{
    QVector<OrvCustomAttribute> All;
    for (const OrvCustomAttribute& Default : attributeDefaults()) {
        const int Index = ownIndex(Default.name());
        All.append(Index >= 0 ? m_Attributes[Index] : Default);
    }
    for (const OrvCustomAttribute& Own : m_Attributes) {
        const bool Listed = std::any_of(attributeDefaults().begin(), attributeDefaults().end(),
            [&](const OrvCustomAttribute& Default) { return Default.name() == Own.name(); });
        if (!Listed)
            All.append(Own);
    }
    return All;
}

void OrvSerializableObject::setUserAttributeValue(const QString& Name, const QVariant& Value)
{
    OrvCustomAttribute Attribute = userAttribute(Name);
    if (Attribute.name().isEmpty() || Attribute.value() == Value)
        return;
    Attribute.setValue(Value);
    applyUserAttribute(Attribute);
}

void OrvSerializableObject::setUserAttributeEnabled(const QString& Name, bool Enabled)
{
    OrvCustomAttribute Attribute = userAttribute(Name);
    if (Attribute.name().isEmpty() || Attribute.isEnabled() == Enabled)
        return;
    Attribute.setEnabled(Enabled);
    applyUserAttribute(Attribute);
}

void OrvSerializableObject::createUserAttribute(const OrvCustomAttribute& Attribute)
{
    if (!Attribute.name().isEmpty())
        applyUserAttribute(Attribute);
}

void OrvSerializableObject::removeUserAttribute(const QString& Name)
{
    if (ownIndex(Name) >= 0)
        applyUserAttributeRemoval(Name);
}

void OrvSerializableObject::applyUserAttribute(const OrvCustomAttribute& Attribute)
{
    const OrvCustomAttribute Before = userAttribute(Attribute.name());
    const int Index = ownIndex(Attribute.name());
    const bool IsDefault = attributeDefaults().contains(Attribute);
    if (IsDefault && Index >= 0)
        m_Attributes.remove(Index);
    else if (!IsDefault && Index >= 0)
        m_Attributes[Index] = Attribute;
    else if (!IsDefault)
        m_Attributes.append(Attribute);

    if (Before.value() != Attribute.value())
        Q_EMIT userAttributeValueChanged(Attribute);
    if (Before.isEnabled() != Attribute.isEnabled())
        Q_EMIT userAttributeEnabledChanged(Attribute, this);
}

void OrvSerializableObject::applyUserAttributeRemoval(const QString& Name)
{
    const int Index = ownIndex(Name);
    if (Index >= 0)
        m_Attributes.remove(Index);
}

#include "moc_OrvSerializableObject.cpp"
