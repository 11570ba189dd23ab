#include "OrvDdi/Color/OrvColorSpaceConfig.h"

#include "OrvDdi/Color/OrvColorManager.h"

#include <QtCore/QCoreApplication>

namespace {

const QString RoleKeys[OrvColorSpaceConfig::RoleCount]
    = {QStringLiteral("native"), QStringLiteral("working")};

bool isDepth(int Depth)
{
    return Depth == GL_UNSIGNED_BYTE || Depth == GL_HALF_FLOAT || Depth == GL_FLOAT;
}

} // namespace

OrvColorSpaceConfig::OrvColorSpaceConfig(bool Scalar, GLenum Depth)
    : m_Scalar(Scalar)
{
    for (Space& One : m_Spaces)
        One.AutomaticType = Depth;
}

QString OrvColorSpaceConfig::automaticColorSpace(bool Scalar, int Role, GLenum Depth)
{
    if (Scalar)
        return OrvColorManager::raw();
    return Role == NativeSpace && Depth == GL_UNSIGNED_BYTE ? OrvColorManager::srgb()
                                                            : OrvColorManager::linear();
}

QString OrvColorSpaceConfig::colorSpace(int Role) const
{
    const Space& One = m_Spaces[isRole(Role) ? Role : NativeSpace];
    return One.Name.isEmpty() ? automaticColorSpace(m_Scalar, Role, One.AutomaticType) : One.Name;
}

void OrvColorSpaceConfig::setColorSpace(int Role, const QString& Name)
{
    if (isRole(Role))
        m_Spaces[Role].Name = Name;
}

bool OrvColorSpaceConfig::isAutomatic(int Role) const
{
    return isRole(Role) && m_Spaces[Role].Name.isEmpty();
}

void OrvColorSpaceConfig::setAutomaticType(int Role, GLenum Depth)
{
    if (isRole(Role))
        m_Spaces[Role].AutomaticType = Depth;
}

GLenum OrvColorSpaceConfig::automaticType(int Role) const
{
    return m_Spaces[isRole(Role) ? Role : NativeSpace].AutomaticType;
}

OrvPixelFormat::Encoding OrvColorSpaceConfig::encoding(GLenum Depth) const
{
    const QString Name = isAutomatic(NativeSpace) ? automaticColorSpace(m_Scalar, NativeSpace, Depth)
                                                  : colorSpace(NativeSpace);
    return !m_Scalar && Name == OrvColorManager::srgb() ? OrvPixelFormat::Srgb : OrvPixelFormat::Linear;
}

OrvPixelFormat OrvColorSpaceConfig::pixelFormat(GLenum Depth) const
{
    return {Depth, m_Scalar ? OrvPixelFormat::Scalar : OrvPixelFormat::Rgba, encoding(Depth)};
}

void OrvColorSpaceConfig::setColorSpaceVisible(int Role, bool Visible)
{
    if (isRole(Role))
        m_Spaces[Role].Visible = Visible;
}

bool OrvColorSpaceConfig::isColorSpaceVisible(int Role) const
{
    return isRole(Role) && m_Spaces[Role].Visible;
}

QString OrvColorSpaceConfig::dataPrettyName() const
{
    const QString Name = colorSpace(NativeSpace);
    return isAutomatic(NativeSpace)
        ? QCoreApplication::translate("OrvColorSpaceConfig", "%1 (automatic)").arg(Name)
        : Name;
}

QVariantMap OrvColorSpaceConfig::propertyMap() const
{
    return {{QStringLiteral("scalar"), m_Scalar}, {QStringLiteral("colorSpace"), colorSpace(NativeSpace)},
        {QStringLiteral("colorSpaceAutomatic"), isAutomatic(NativeSpace)},
        {QStringLiteral("workingColorSpace"), colorSpace(WorkingSpace)},
        {QStringLiteral("workingColorSpaceAutomatic"), isAutomatic(WorkingSpace)},
        {QStringLiteral("dataPrettyName"), dataPrettyName()}};
}

QJsonObject OrvColorSpaceConfig::toJson() const
{
    QJsonObject Json{{QStringLiteral("scalar"), m_Scalar}};
    for (int Role = 0; Role < RoleCount; ++Role) {
        QJsonObject One{{QStringLiteral("automaticType"), int(m_Spaces[Role].AutomaticType)}};
        if (!isAutomatic(Role))
            One.insert(QStringLiteral("space"), m_Spaces[Role].Name);
        Json.insert(RoleKeys[Role], One);
    }
    return Json;
}

OrvColorSpaceConfig OrvColorSpaceConfig::fromJson(const QJsonObject& Json)
{
    OrvColorSpaceConfig Config(Json.value(QLatin1String("scalar")).toBool());
    for (int Role = 0; Role < RoleCount; ++Role) {
        const QJsonObject One = Json.value(RoleKeys[Role]).toObject();
        const int Depth = One.value(QLatin1String("automaticType")).toInt();
        if (isDepth(Depth))
            Config.setAutomaticType(Role, GLenum(Depth));
        Config.setColorSpace(Role, One.value(QLatin1String("space")).toString());
    }
    return Config;
}

bool OrvColorSpaceConfig::operator==(const OrvColorSpaceConfig& Other) const
{
    if (m_Scalar != Other.m_Scalar)
        return false;
    for (int Role = 0; Role < RoleCount; ++Role) {
        if (m_Spaces[Role].Name != Other.m_Spaces[Role].Name
            || m_Spaces[Role].AutomaticType != Other.m_Spaces[Role].AutomaticType)
            return false;
    }
    return true;
}
