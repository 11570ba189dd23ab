#include "OrvCoreModules/Properties/OrvValueBinding.h"

#include "OrvCore/Undo/OrvUndoManager.h"

OrvValueBinding::OrvValueBinding(const QString& UndoText, QObject* pParent)
    : QObject(pParent)
    , m_UndoText(UndoText)
{
}

OrvValueBinding::~OrvValueBinding() = default;

void OrvValueBinding::edit(const QVariant& Value)
{
    const QVariant Present = value();
    if (!Present.isValid() || !isWritable())
        return;
    // The document keeps the types that it has: a check box edits a number where the value is one.
    QVariant Wanted = Value;
    if (Wanted.userType() != Present.userType() && Wanted.canConvert(Present.userType()))
        Wanted.convert(Present.userType());
    if (Present == Wanted)
        return;
    if (m_InGesture) {
        const OrvUndoManager::NoRecording Unrecorded;
        write(Wanted);
    } else {
        record(Wanted);
    }
}

void OrvValueBinding::beginGesture()
{
    if (m_InGesture)
        return;
    m_InGesture = true;
    m_ValueBefore = value();
}

void OrvValueBinding::finishGesture()
{
    if (!m_InGesture)
        return;
    m_InGesture = false;
    const QVariant Reached = value();
    if (!Reached.isValid() || !isWritable() || m_ValueBefore == Reached)
        return;
    {
        // The one step that is recorded leads from where the gesture began.
        const OrvUndoManager::NoRecording Unrecorded;
        write(m_ValueBefore);
    }
    record(Reached);
}

QString OrvValueBinding::undoText(const QVariant&) const
{
    return m_UndoText;
}

void OrvValueBinding::record(const QVariant& Value)
{
    const OrvUndoManager::AutoMacro Macro(undoText(Value));
    write(Value);
}

#include "moc_OrvValueBinding.cpp"
