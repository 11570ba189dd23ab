#pragma once

#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"

#include "OrvDdi/Engine/OrvBlendParameters.h"

class OrvLayer;
class OrvSnMultiChannelMergeNode;

/// Blends what comes in at "Over" above what comes in at "Base", through "Mask": one layer. The layer object that
/// shows it belongs to it.
class ORVCORE_EXPORT OrvSnMergeNode : public OrvSnBaseNode {
    Q_OBJECT

public:
    OrvSnMergeNode();
    ~OrvSnMergeNode() override;

    QString typeName() const override { return QStringLiteral("Merge"); }
    QString typeLabel() const override;
    QString preferredInput() const override { return OrvSnNames::Base; }

    OrvBlendParameters blendParameters() const;
    bool isPassThrough() const;
    /// Over is fed by the top of a chain of its own.
    bool holdsGroup() const;
    /// The chain inside begins with what lies below the group. Never so for a group that others show too: it has more
    /// than one place, and can begin with none of them.
    bool passesThrough() const;

    /// What a layer that stands in several channels has in common with itself in the others; null for one that stands
    /// in one.
    OrvSnMultiChannelMergeNode* multiChannelNode() const;
    /// The node that holds name, lock, visibility, colour and mask of the layer: this one, or the one in common.
    OrvSnBaseNode* commonNode() const;
    /// What feeds the mask, whichever node holds it.
    OrvSnBaseNode* maskSource() const;
    /// The shader's input that a layer in several channels serves here.
    QString stream() const;
    /// Enabled, in this channel and as a whole.
    bool isShown() const;

    OrvLayer* layer() const { return m_pLayer; }

protected:
    const QVector<OrvCustomAttribute>& attributeDefaults() const override;
    void applyUserAttribute(const OrvCustomAttribute& Attribute) override;
    std::unique_ptr<OrvEngineNode> createEngineNode() const override;
    QStringList enginePadInputs() const override;
    void describeInputStep(const QString& InputName, OrvInputStep& Step) const override;
    void updateEngineNode(OrvEngineNode& Node) const override;

private:
    friend class OrvLayerManager;
    OrvLayer* m_pLayer = nullptr;
};
