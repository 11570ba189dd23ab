#include "OrvCoreModules/Properties/OrvAttributeBinding.h"

#include "OrvCoreModules/Properties/OrvValueEditor.h"

#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnBaseNode.h"

namespace {

QString nameOfEdit(const OrvSerializableObject* pObject, const QString& Label)
{
    const auto* pNode = qobject_cast<const OrvSnBaseNode*>(pObject);
    return pNode && !pNode->name().isEmpty()
        ? OrvAttributeBinding::tr("Set %1 of '%2'").arg(Label, pNode->name())
        : OrvAttributeBinding::tr("Set %1").arg(Label);
}

} // namespace

OrvAttributeBinding::OrvAttributeBinding(
    OrvSerializableObject* pObject, const QString& Name, QObject* pParent, const QString& Label)
    : OrvValueBinding(
        nameOfEdit(pObject, Label.isEmpty() ? OrvValueEditor::labelFromName(Name) : Label), pParent)
    , m_pObject(pObject)
    , m_Name(Name)
{
    if (!pObject)
        return;
    connect(pObject, &OrvSerializableObject::userAttributeValueChanged, this,
        &OrvAttributeBinding::onAttributeChanged);
    connect(pObject, &OrvSerializableObject::userAttributeEnabledChanged, this,
        &OrvAttributeBinding::onAttributeEnabledChanged);
    connect(pObject, &QObject::destroyed, this, &OrvValueBinding::writableChanged);
    if (!qobject_cast<OrvSnBaseNode*>(pObject))
        return;
    const OrvShaderNetworkManager& Manager = OrvShaderNetworkManager::instance();
    connect(&Manager, &OrvShaderNetworkManager::nodeRegistered, this,
        [this](OrvShaderNetwork*, OrvSnBaseNode* pNode) { setOutsideDocument(pNode, false); });
    connect(&Manager, &OrvShaderNetworkManager::nodeDeregistered, this,
        [this](OrvShaderNetwork*, OrvSnBaseNode* pNode) { setOutsideDocument(pNode, true); });
}

OrvAttributeBinding::~OrvAttributeBinding()
{
    // An editor that goes in the middle of a drag leaves one whole edit.
    finishGesture();
}

QVariant OrvAttributeBinding::value() const
{
    return m_pObject ? m_pObject->userAttribute(m_Name).value() : QVariant();
}

bool OrvAttributeBinding::isWritable() const
{
    // What undo keeps in reserve must come back as it was.
    if (!m_pObject || m_OutsideDocument)
        return false;
    const OrvCustomAttribute Attribute = m_pObject->userAttribute(m_Name);
    return !Attribute.name().isEmpty() && Attribute.isTweakable() && Attribute.isEnabled();
}

void OrvAttributeBinding::write(const QVariant& Value)
{
    m_pObject->setUserAttributeValue(m_Name, Value);
}

void OrvAttributeBinding::setOutsideDocument(const QObject* pNode, bool Outside)
{
    if (pNode != m_pObject || m_OutsideDocument == Outside)
        return;
    m_OutsideDocument = Outside;
    Q_EMIT writableChanged();
}

void OrvAttributeBinding::onAttributeChanged(OrvCustomAttribute Attribute)
{
    if (Attribute.name() == m_Name)
        Q_EMIT valueChanged();
}

void OrvAttributeBinding::onAttributeEnabledChanged(OrvCustomAttribute Attribute, QObject*)
{
    if (Attribute.name() == m_Name)
        Q_EMIT writableChanged();
}

#include "moc_OrvAttributeBinding.cpp"
