#pragma once

#include "OrvDdi/Image/OrvPixelFormat.h"

#include <QtCore/QJsonObject>
#include <QtCore/QMetaType>
#include <QtCore/QString>
#include <QtCore/QVariant>

/// The colour-space settings of a channel, one value for its colour data and one for its scalar (mask) data.
/// Each role has a space of its own or follows the depth automatically. It names spaces and never converts
/// anything; OrvColorManager does.
class ORVDDI_EXPORT OrvColorSpaceConfig {
public:
    enum Role {
        NativeSpace = 0, ///< how pixels are stored
        WorkingSpace = 1 ///< where they are blended
    };
    static constexpr int RoleCount = 2;

    /// Both roles automatic. Automatic native spaces: sRGB for 8-bit colour, linear for half and float
    /// colour, raw for scalar data; automatic working spaces: linear for colour, raw for scalar data.
    explicit OrvColorSpaceConfig(bool Scalar = false, GLenum Depth = GL_UNSIGNED_BYTE);

    bool scalar() const { return m_Scalar; }
    void setScalar(bool Scalar) { m_Scalar = Scalar; }

    /// The name of the role's space, chosen or automatic; never empty.
    QString colorSpace(int Role = NativeSpace) const;
    /// Chooses a space by name; an empty name goes back to the automatic choice.
    void setColorSpace(int Role, const QString& Name);
    bool isAutomatic(int Role) const;
    /// The depth that the automatic choice of a role looks at.
    void setAutomaticType(int Role, GLenum Depth);
    GLenum automaticType(int Role) const;
    static QString automaticColorSpace(bool Scalar, int Role, GLenum Depth);

    /// How pixels of a depth are stored under this configuration. An automatic native space is chosen for
    /// this depth, not for the automatic type.
    OrvPixelFormat::Encoding encoding(GLenum Depth) const;
    OrvPixelFormat pixelFormat(GLenum Depth) const;

    /// What editors of the configuration show: the entry of colour space 0 (native) or 1 (working).
    void setColorSpaceVisible(int Role, bool Visible);
    bool isColorSpaceVisible(int Role) const;
    /// Whether property views show the pretty name of the data.
    void setDataPrettyNameDesignable(bool Designable) { m_DataPrettyNameDesignable = Designable; }
    bool isDataPrettyNameDesignable() const { return m_DataPrettyNameDesignable; }
    /// Such as "sRGB (automatic)".
    QString dataPrettyName() const;

    /// All settings by property name.
    QVariantMap propertyMap() const;

    /// What a project stores: scalar flag, chosen spaces and automatic types.
    QJsonObject toJson() const;
    /// Absent or unusable entries keep their automatic default.
    static OrvColorSpaceConfig fromJson(const QJsonObject& Json);

    /// Compares what a project stores; what editors show is no part of it.
    bool operator==(const OrvColorSpaceConfig& Other) const;
    bool operator!=(const OrvColorSpaceConfig& Other) const { return !(*this == Other); }

private:
    struct Space {
        QString Name; ///< empty: automatic
        GLenum AutomaticType = GL_UNSIGNED_BYTE;
        bool Visible = true;
    };
    static bool isRole(int Role) { return Role >= 0 && Role < RoleCount; }

    bool m_Scalar = false;
    bool m_DataPrettyNameDesignable = true;
    Space m_Spaces[RoleCount];
};

Q_DECLARE_METATYPE(OrvColorSpaceConfig)
