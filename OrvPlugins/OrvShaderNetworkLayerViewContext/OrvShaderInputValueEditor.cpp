#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputValueEditor.h"

#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvShadingModel.h"
#include "OrvCore/Shaders/OrvSnShaderNode.h"
#include "OrvCoreModules/Properties/OrvAttributeBinding.h"
#include "OrvCoreModules/Properties/OrvValueEditor.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QPointer>

namespace {

constexpr int StepsPerRange = 100;

/// Colour or number of an input, as one editor shows it.
class InputValueBinding : public OrvAttributeBinding {
public:
    InputValueBinding(OrvLayerShader* pShader, const OrvShadingModel::Input& Input)
        : OrvAttributeBinding(
            pShader->node(), OrvSnShaderNode::valueAttribute(Input.Name), nullptr, Input.Name)
        , m_pShader(pShader)
        , m_InputName(Input.Name)
        , m_IsColor(Input.IsColor)
    {
    }
    /// A gesture still open ends while the value is read and written as here.
    ~InputValueBinding() override { finishGesture(); }

    QVariant value() const override
    {
        if (!m_pShader)
            return {};
        const OrvColor Value = m_pShader->inputValue(m_InputName);
        return m_IsColor ? QVariant::fromValue(Value) : QVariant(double(Value.red()));
    }
    bool isWritable() const override { return m_pShader && OrvAttributeBinding::isWritable(); }

protected:
    void write(const QVariant& Value) override
    {
        const float Number = Value.toFloat();
        m_pShader->setInputValue(
            m_InputName, m_IsColor ? Value.value<OrvColor>() : OrvColor(Number, Number, Number));
    }

private:
    QPointer<OrvLayerShader> m_pShader;
    QString m_InputName;
    bool m_IsColor;
};

OrvOperationParameter descriptionOf(const OrvShadingModel::Input& Input)
{
    OrvOperationParameter Description;
    Description.Name = Input.Name;
    Description.Label = Input.Name;
    Description.Description = QCoreApplication::translate(
        "OrvShaderInputValueEditor", "The value of '%1' while no channel feeds it")
                                  .arg(Input.Name);
    Description.Type = Input.IsColor ? OrvOperationParameter::Color : OrvOperationParameter::Real;
    Description.Minimum = Description.UiMinimum = Input.Minimum;
    Description.Maximum = Description.UiMaximum = Input.Maximum;
    Description.Step = (Input.Maximum - Input.Minimum) / StepsPerRange;
    return Description;
}

} // namespace

QWidget* OrvShaderInputValueEditor::create(
    OrvLayerShader* pShader, const QString& InputName, QWidget* pParent)
{
    const OrvShadingModel* pModel = pShader->shaderModel();
    const OrvShadingModel::Input* pInput = pModel ? pModel->input(InputName) : nullptr;
    if (!pInput || !pInput->hasValue())
        return nullptr;
    return OrvValueEditor::create(
        new InputValueBinding(pShader, *pInput), descriptionOf(*pInput), false, pParent);
}
