#include "OrvCoreModules/Properties/OrvPropertyBinding.h"

#include "OrvCoreModules/Properties/OrvValueEditor.h"

#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include <QtWidgets/QUndoCommand>

namespace {

/// A property of an object that records no undo by itself.
class PropertyEdit : public QUndoCommand {
public:
    PropertyEdit(QObject* pObject, const QMetaProperty& Property, const QVariant& Value)
        : m_pObject(pObject)
        , m_Property(Property)
        , m_Before(Property.read(pObject))
        , m_After(Value)
    {
    }
    void undo() override { put(m_Before); }
    void redo() override { put(m_After); }

private:
    void put(const QVariant& Value)
    {
        if (m_pObject)
            m_Property.write(m_pObject, Value);
    }

    QPointer<QObject> m_pObject;
    QMetaProperty m_Property;
    QVariant m_Before, m_After;
};

} // namespace

OrvPropertyBinding::OrvPropertyBinding(QObject* pObject, const QMetaProperty& Property, QObject* pParent)
    : OrvValueBinding(
        tr("Set %1").arg(OrvValueEditor::labelFromName(QLatin1String(Property.name()))), pParent)
    , m_pObject(pObject)
    , m_Property(Property)
{
    if (!pObject)
        return;
    m_LastSeen = value();
    const QMetaMethod LookAgain = metaObject()->method(metaObject()->indexOfSlot("lookAgain()"));
    if (Property.hasNotifySignal())
        connect(pObject, Property.notifySignal(), this, LookAgain);
    else
        followEverySignal();
    connect(pObject, &QObject::destroyed, this, &OrvValueBinding::writableChanged);
}

OrvPropertyBinding::~OrvPropertyBinding()
{
    finishGesture();
}

void OrvPropertyBinding::followEverySignal()
{
    const QMetaMethod LookAgain = metaObject()->method(metaObject()->indexOfSlot("lookAgain()"));
    const QMetaObject* pClass = m_pObject->metaObject();
    for (int Index = QObject::staticMetaObject.methodCount(); Index < pClass->methodCount(); ++Index) {
        const QMetaMethod Method = pClass->method(Index);
        if (Method.methodType() == QMetaMethod::Signal)
            connect(m_pObject, Method, this, LookAgain);
    }
}

QVariant OrvPropertyBinding::value() const
{
    if (!m_pObject)
        return {};
    const QVariant Value = m_Property.read(m_pObject);
    // Editors choose enumerators by name.
    if (m_Property.isEnumType() && !m_Property.isFlagType())
        return QString::fromLatin1(m_Property.enumerator().valueToKey(Value.toInt()));
    return Value;
}

bool OrvPropertyBinding::isWritable() const
{
    return m_pObject && m_Property.isWritable();
}

void OrvPropertyBinding::write(const QVariant& Value)
{
    if (qobject_cast<OrvSnBaseNode*>(m_pObject.data()))
        m_Property.write(m_pObject, Value);
    else
        OrvUndoManager::instance().perform(std::make_unique<PropertyEdit>(m_pObject, m_Property, Value));
}

QString OrvPropertyBinding::undoText(const QVariant& Value) const
{
    const auto* pNode = qobject_cast<const OrvSnBaseNode*>(m_pObject.data());
    if (!pNode)
        return OrvValueBinding::undoText(Value);
    const QString Known = pNode->name().isEmpty() ? pNode->typeLabel() : pNode->name();
    if (qstrcmp(m_Property.name(), "name") == 0)
        return tr("Rename '%1' to '%2'").arg(Known, Value.toString());
    return tr("%1 of '%2'").arg(OrvValueBinding::undoText(Value), Known);
}

void OrvPropertyBinding::lookAgain()
{
    const QVariant Present = value();
    if (Present == m_LastSeen)
        return;
    m_LastSeen = Present;
    Q_EMIT valueChanged();
}

#include "moc_OrvPropertyBinding.cpp"
