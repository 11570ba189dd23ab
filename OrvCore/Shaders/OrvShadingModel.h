#pragma once

#include "OrvCore/OrvCoreExport.h"

#include "OrvDdi/Engine/OrvShadingParameters.h"
#include "OrvDdi/Image/OrvColor.h"

#include <QtCore/QStringList>
#include <QtCore/QVector>

/// What a kind of shader is: its inputs with their meaning, range and default, and how they are lit. One
/// constant object per model, so that pointers compare; the shader nodes hold the values. A model knows no
/// document.
class ORVCORE_EXPORT OrvShadingModel {
public:
    struct Input {
        QString Name;
        OrvShadingParameters::Slot Slot = OrvShadingParameters::Color; ///< that it fills in the engine
        bool IsColor = false; ///< else a number, a direction or a material, which no colour editor suits
        bool Scalar = false; ///< channels for it have one component
        OrvColor Default; ///< a number is grey
        double Minimum = 0.0;
        double Maximum = 1.0;
        QStringList Tags;

        bool isForMaterialStacks() const;
        /// A colour or a number counts while no channel feeds the input.
        bool hasValue() const { return IsColor || Scalar; }
    };

    OrvShadingModel(const OrvShadingModel&) = delete;
    OrvShadingModel& operator=(const OrvShadingModel&) = delete;

    /// The type name of its nodes, stored in projects.
    const QString& key() const { return m_Key; }
    const QString& label() const { return m_Label; }
    const QString& menuPath() const { return m_MenuPath; }
    OrvShadingParameters::Model evaluation() const { return m_Evaluation; }
    /// Made of layers: its inputs take material channels. The others stand alone, and in material stacks as
    /// layers.
    bool isLayered() const { return m_Evaluation == OrvShadingParameters::Layered; }

    /// In display order.
    const QVector<Input>& inputs() const { return m_Inputs; }
    QStringList inputNames() const;
    /// Null for an unknown name.
    const Input* input(const QString& Name) const;

    /// Null for an unknown key.
    static const OrvShadingModel* find(const QString& Key);
    /// In menu order.
    static const QVector<const OrvShadingModel*>& all();

private:
    OrvShadingModel(const QString& Key, const QString& Label, const QString& MenuPath,
        OrvShadingParameters::Model Evaluation, const QVector<Input>& Inputs);

    QString m_Key, m_Label, m_MenuPath;
    OrvShadingParameters::Model m_Evaluation;
    QVector<Input> m_Inputs;
};
