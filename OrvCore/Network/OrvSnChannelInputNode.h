#pragma once

#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"

class OrvImageSet;

/// Holds the images of a paintable layer or mask.
class ORVCORE_EXPORT OrvSnChannelInputNode : public OrvSnBaseNode {
    Q_OBJECT

public:
    OrvSnChannelInputNode();
    ~OrvSnChannelInputNode() override;

    QString typeName() const override { return QStringLiteral("ImageSet"); }
    QString typeLabel() const override;

    OrvImageSet* imageSet() const { return m_pImageSet; }
    /// To be called once, before the node enters a network.
    void setImageSet(std::unique_ptr<OrvImageSet> pImageSet);

    void describe(OrvNodeDescription& Description) const override;
    void adopt(const OrvNodeDescription& Description) override;

protected:
    std::unique_ptr<OrvEngineNode> createEngineNode() const override;
    void updateEngineNode(OrvEngineNode& Node) const override;

private:
    OrvImageSet* m_pImageSet = nullptr;
};
