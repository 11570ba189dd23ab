#pragma once

#include "OrvCore/Network/OrvSnBaseNode.h"

#include "OrvDdi/Engine/OrvShadingParameters.h"
#include "OrvDdi/Image/OrvColor.h"

class OrvShadingModel;

/// A shader that the user made: channels feed the inputs of its model, and the result is their lit picture.
/// Values, inversion and switches of the inputs are user attributes, which generic editors leave out. How it
/// is lit is none of its business: the light is a state of the view.
class ORVCORE_EXPORT OrvSnShaderNode : public OrvSnBaseNode {
    Q_OBJECT

public:
    explicit OrvSnShaderNode(const OrvShadingModel& Model);

    QString typeName() const override;
    QString typeLabel() const override;
    const OrvShadingModel* model() const { return m_pModel; }

    /// What the input has where no channel feeds it; the model's default where the attribute is damaged.
    OrvColor inputValue(const QString& InputName) const;
    bool isInputInverted(const QString& InputName) const;
    bool isInputEnabled(const QString& InputName) const;
    // Undoable. False, with nothing changed, for an input that the model does not have.
    bool setInputValue(const QString& InputName, const OrvColor& Value);
    bool setInputInverted(const QString& InputName, bool Inverted);
    bool setInputEnabled(const QString& InputName, bool Enabled);

    /// Everything that the engine needs to light it, with the light of now.
    OrvShadingParameters shadingParameters() const;
    /// The largest of the channels that feed it; the others are brought to its size. Invalid without
    /// channels.
    OrvUdimLayout layout() const;

    /// Gives it the inputs that its model has and it has not, in their order, and defaults instead of
    /// attributes of the wrong kind; it loses none. Whether there was anything to do. The attributes are
    /// undoable edits.
    bool renew();

    void describe(OrvNodeDescription& Description) const override;
    /// An input that another version stored stays, with what feeds it, though nothing comes of it.
    void adopt(const OrvNodeDescription& Description) override;

    static QString valueAttribute(const QString& InputName);
    static QString invertedAttribute(const QString& InputName);
    static QString enabledAttribute(const QString& InputName);

protected:
    const QVector<OrvCustomAttribute>& attributeDefaults() const override;
    void applyUserAttribute(const OrvCustomAttribute& Attribute) override;
    std::unique_ptr<OrvEngineNode> createEngineNode() const override;
    QStringList enginePadInputs() const override;
    void describeInputStep(const QString& InputName, OrvInputStep& Step) const override;
    void updateEngineNode(OrvEngineNode& Node) const override;

private:
    const OrvShadingModel* m_pModel;
};
