#include "OrvCoreModules/Properties/OrvUserAttributeControletManager.h"

#include "OrvCoreModules/Properties/OrvAttributeBinding.h"
#include "OrvCoreModules/Properties/OrvValueEditor.h"

#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCore/Object/OrvSerializableObject.h"

#include "OrvDdi/Engine/OrvBlendParameters.h"

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>

OrvOperationParameter OrvUserAttributeControletManager::describe(
    const QString& AttributeName, const QVariant& Value)
{
    OrvOperationParameter Description = OrvValueEditor::describe(AttributeName, Value);
    if (AttributeName == OrvMergeAttributes::BlendMode) {
        Description.Type = OrvOperationParameter::Enumeration;
        Description.Choices = Description.ChoiceLabels = OrvBlendParameters::modeNames();
        Description.Description = OrvAttributeBinding::tr("How the layer is blended with what lies below it");
    } else if (AttributeName == OrvMergeAttributes::Amount) {
        Description.Minimum = Description.UiMinimum = 0.0;
        Description.Maximum = Description.UiMaximum = 1.0;
        Description.Step = 0.01;
        Description.Unit = QStringLiteral("percent");
        Description.Description = OrvAttributeBinding::tr("How much of the layer shows");
    }
    return Description;
}

QWidget* OrvUserAttributeControletManager::create(const QString& AttributeName,
    OrvSerializableObject* pObject, QWidget* pParent, int LabelWidth, int Spacing, int MinimumEditorWidth,
    int MaximumEditorWidth, int Style)
{
    if (!pObject || !pObject->exists(AttributeName))
        return nullptr;
    return createBound(AttributeName, new OrvAttributeBinding(pObject, AttributeName, nullptr), pParent,
        LabelWidth, Spacing, MinimumEditorWidth, MaximumEditorWidth, Style);
}

QWidget* OrvUserAttributeControletManager::createBound(const QString& AttributeName,
    OrvAttributeBinding* pBinding, QWidget* pParent, int LabelWidth, int Spacing, int MinimumEditorWidth,
    int MaximumEditorWidth, int Style)
{
    QWidget* pControlet = new QWidget(pParent);
    pControlet->setObjectName(AttributeName);
    QHBoxLayout* pLayout = new QHBoxLayout(pControlet);
    const int Margin = Style & Compact ? 0 : 2;
    pLayout->setContentsMargins(Margin, Margin, Margin, Margin);
    pLayout->setSpacing(Spacing);
    const OrvOperationParameter Description = describe(AttributeName, pBinding->value());
    if (!(Style & NoLabel)) {
        QLabel* pLabel = new QLabel(Description.Label, pControlet);
        pLabel->setMinimumWidth(LabelWidth);
        pLayout->addWidget(pLabel);
    }
    QWidget* pEditor = OrvValueEditor::create(pBinding, Description, false, pControlet);
    pEditor->setMinimumWidth(MinimumEditorWidth);
    pEditor->setMaximumWidth(MaximumEditorWidth);
    pLayout->addWidget(pEditor);
    pControlet->setToolTip(Description.Description);
    pControlet->setFocusProxy(pEditor);
    return pControlet;
}
