#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QString>
#include <QtCore/QVariant>

/// One user attribute: a named value that an object carries besides its own data. A value class; changing a copy
/// changes nothing until the object takes it back.
class ORVCORE_EXPORT OrvCustomAttribute {
public:
    OrvCustomAttribute() = default;
    OrvCustomAttribute(const QString& Name, const QVariant& Value)
        : m_Name(Name)
        , m_Value(Value)
    {
    }

    const QString& name() const { return m_Name; }
    const QVariant& value() const { return m_Value; }
    void setValue(const QVariant& Value) { m_Value = Value; }

    /// A versionable attribute belongs to the picture; others (palette sizes) are state of the view.
    bool isVersionable() const { return m_Versionable; }
    void setNonVersionable() { m_Versionable = false; }
    bool isTweakable() const { return m_Tweakable; } ///< the user may edit it
    void setTweakable(bool Tweakable) { m_Tweakable = Tweakable; }
    bool isVisible() const { return m_Visible; } ///< shown in property editors
    void setVisible(bool Visible) { m_Visible = Visible; }
    bool isEnabled() const { return m_Enabled; }
    void setEnabled(bool Enabled) { m_Enabled = Enabled; }

    /// State of the view rather than of the document: its changes are kept, but are no undo steps.
    bool isViewState() const { return !m_Versionable || (!m_Tweakable && !m_Visible); }

    bool operator==(const OrvCustomAttribute& Other) const
    {
        return m_Name == Other.m_Name && m_Value == Other.m_Value && m_Versionable == Other.m_Versionable
            && m_Tweakable == Other.m_Tweakable && m_Visible == Other.m_Visible && m_Enabled == Other.m_Enabled;
    }

private:
    QString m_Name;
    QVariant m_Value;
    bool m_Versionable = true;
    bool m_Tweakable = true;
    bool m_Visible = true;
    bool m_Enabled = true;
};

Q_DECLARE_METATYPE(OrvCustomAttribute)
