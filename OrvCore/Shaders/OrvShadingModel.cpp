#include "OrvCore/Shaders/OrvShadingModel.h"

#include "OrvCore/Network/OrvSnNames.h"

#include <QtCore/QCoreApplication>

namespace {

using Slot = OrvShadingParameters::Slot;
using Input = OrvShadingModel::Input;

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvShadingModel", pText);
}

Input colorInput(const QString& Name, Slot Which, const OrvColor& Default)
{
    Input Made;
    Made.Name = Name;
    Made.Slot = Which;
    Made.IsColor = true;
    Made.Default = Default;
    return Made;
}

Input numberInput(const QString& Name, Slot Which, float Default, double Minimum = 0.0, double Maximum = 1.0)
{
    Input Made;
    Made.Name = Name;
    Made.Slot = Which;
    Made.Scalar = true;
    Made.Default = OrvColor(Default, Default, Default);
    Made.Minimum = Minimum;
    Made.Maximum = Maximum;
    return Made;
}

/// Straight up, as normal maps have it.
Input normalInput(const QString& Name)
{
    Input Made;
    Made.Name = Name;
    Made.Slot = OrvShadingParameters::Normal;
    Made.Default = OrvColor(0.5f, 0.5f, 1.0f);
    return Made;
}

/// Below all materials there is grey; where another one is missing, what lies below it is seen.
Input materialInput(const QString& Name, Slot Which, const OrvColor& Default)
{
    Input Made;
    Made.Name = Name;
    Made.Slot = Which;
    Made.Default = Default;
    Made.Tags = QStringList{OrvSnNames::MaterialShaderInputTag};
    return Made;
}

} // namespace

bool OrvShadingModel::Input::isForMaterialStacks() const
{
    return Tags.contains(OrvSnNames::MaterialShaderInputTag);
}

OrvShadingModel::OrvShadingModel(const QString& Key, const QString& Label, const QString& MenuPath,
    OrvShadingParameters::Model Evaluation, const QVector<Input>& Inputs)
    : m_Key(Key)
    , m_Label(Label)
    , m_MenuPath(MenuPath)
    , m_Evaluation(Evaluation)
    , m_Inputs(Inputs)
{
}

QStringList OrvShadingModel::inputNames() const
{
    QStringList Names;
    for (const Input& One : m_Inputs)
        Names.append(One.Name);
    return Names;
}

const OrvShadingModel::Input* OrvShadingModel::input(const QString& Name) const
{
    for (const Input& One : m_Inputs) {
        if (One.Name == Name)
            return &One;
    }
    return nullptr;
}

const OrvShadingModel* OrvShadingModel::find(const QString& Key)
{
    for (const OrvShadingModel* pModel : all()) {
        if (pModel->key() == Key)
            return pModel;
    }
    return nullptr;
}

const QVector<const OrvShadingModel*>& OrvShadingModel::all()
{
    using P = OrvShadingParameters;
    const OrvColor Grey = OrvColor::grey50();
    static const OrvShadingModel Unlit(QStringLiteral("Shader/Unlit"), tr("Unlit"),
        QStringLiteral("Shaders/Unlit"), P::Unlit, {colorInput(QStringLiteral("Color"), P::Color, Grey)});
    static const OrvShadingModel MetallicRoughness(QStringLiteral("Shader/MetallicRoughness"),
        tr("Metallic Roughness"), QStringLiteral("Shaders/Metallic Roughness"), P::MetallicRoughness,
        {
            colorInput(QStringLiteral("Base Color"), P::Color, Grey),
            numberInput(QStringLiteral("Metallic"), P::Metallic, 0.0f),
            numberInput(QStringLiteral("Roughness"), P::Roughness, 0.5f),
            normalInput(QStringLiteral("Normal")),
            numberInput(QStringLiteral("Occlusion"), P::Occlusion, 1.0f),
            colorInput(QStringLiteral("Emissive"), P::Emissive, OrvColor::black()),
            numberInput(QStringLiteral("Displacement"), P::Height, 0.0f, -1.0),
        });
    static const OrvShadingModel Specular(QStringLiteral("Shader/Specular"), tr("Specular"),
        QStringLiteral("Shaders/Specular"), P::SpecularGloss,
        {
            colorInput(QStringLiteral("Diffuse"), P::Color, Grey),
            colorInput(QStringLiteral("Specular"), P::Specular, OrvColor(0.04f, 0.04f, 0.04f)),
            numberInput(QStringLiteral("Roughness"), P::Roughness, 0.5f),
            numberInput(QStringLiteral("Bump"), P::Normal, 0.0f, -1.0),
            numberInput(QStringLiteral("Displacement"), P::Height, 0.0f, -1.0),
        });
    static const OrvShadingModel LayeredMaterial(QStringLiteral("Shader/LayeredMaterial"),
        tr("Layered Material"), QStringLiteral("Shaders/Layered Material"), P::Layered,
        {
            materialInput(QStringLiteral("Material 1"), P::Color, Grey),
            materialInput(QStringLiteral("Material 2"), P::Metallic, OrvColor::clear()),
            materialInput(QStringLiteral("Material 3"), P::Roughness, OrvColor::clear()),
            materialInput(QStringLiteral("Material 4"), P::Specular, OrvColor::clear()),
            numberInput(QStringLiteral("Displacement"), P::Height, 0.0f, -1.0),
        });
    static const QVector<const OrvShadingModel*> Models{
        &MetallicRoughness, &Specular, &Unlit, &LayeredMaterial};
    return Models;
}
