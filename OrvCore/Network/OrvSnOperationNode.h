#pragma once

#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"

struct OrvOperation;

/// An operation of the image engine: an adjustment (with input "Input") or a procedural. Its parameters are user
/// attributes named as the engine names them.
class ORVCORE_EXPORT OrvSnOperationNode : public OrvSnBaseNode {
    Q_OBJECT

public:
    explicit OrvSnOperationNode(const OrvOperation& Operation);

    QString typeName() const override;
    QString typeLabel() const override;
    const OrvOperation& operation() const { return m_Operation; }
    bool isProcedural() const;

    /// A size (QSize) from the origin to which the result is cropped: a procedural covers its channel's plane as an
    /// image of that size would. Absent for adjustments, which are as large as what they read.
    static const QString ExtentAttribute;

protected:
    const QVector<OrvCustomAttribute>& attributeDefaults() const override;
    /// Switched off, an adjustment passes its input on and a procedural yields nothing.
    bool isEvaluationAlias() const override { return !enabledAsBool(); }
    OrvSnBaseNode* evaluationAlias() const override { return preferredInputNode(); }
    std::unique_ptr<OrvEngineNode> createEngineNode() const override;
    void describeInputStep(const QString& InputName, OrvInputStep& Step) const override;
    void applyUserAttribute(const OrvCustomAttribute& Attribute) override;
    void updateEngineNode(OrvEngineNode& Node) const override;

private:
    const OrvOperation& m_Operation;
};
