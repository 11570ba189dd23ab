#pragma once

#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"

class OrvSnMergeNode;

/// What a layer that stands in several channels of a shader has in common in all of them: name, lock,
/// visibility, colour and mask. In the chain of each channel stands an ordinary merge node, the layer's
/// stream there, whose mask comes from this node. It passes its mask on and never stands in a chain itself.
class ORVCORE_EXPORT OrvSnMultiChannelMergeNode : public OrvSnBaseNode {
    Q_OBJECT

public:
    static const QString ShaderModelAttribute;

    /// For layers of shaders of the model with this key.
    explicit OrvSnMultiChannelMergeNode(const QString& ShaderModelKey = QString());

    QString typeName() const override { return QStringLiteral("MultiChannelMerge"); }
    QString typeLabel() const override;

    QString shaderModelKey() const;
    bool isMaterial() const { return hasTag(OrvSnNames::MaterialTag); }

    /// The merge nodes of all streams.
    QVector<OrvSnMergeNode*> mergeNodes() const;
    QStringList streams() const;
    /// Null for a stream that the layer has none of.
    OrvSnMergeNode* mergeNodeForShaderModelInput(const QString& Stream) const;
    /// Nothing but merge nodes read it, each for a stream of its own.
    bool isRepresentable() const;

    /// Makes the merge node the layer's stream, undoably. False for a cycle.
    bool adopt(OrvSnMergeNode* pMerge, const QString& Stream);
    using OrvSnBaseNode::adopt;

protected:
    const QVector<OrvCustomAttribute>& attributeDefaults() const override;
    bool isEvaluationAlias() const override { return true; }
    OrvSnBaseNode* evaluationAlias() const override { return inputNode(OrvSnNames::Mask); }
};
