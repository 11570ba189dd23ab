#pragma once

#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"

class OrvColor;
class OrvImageBuffer;
class OrvUdimLayout;
struct OrvPixelFormat;

/// Holds the images of a paintable layer or mask.
class ORVCORE_EXPORT OrvSnChannelInputNode : public OrvSnBaseNode {
    Q_OBJECT

public:
    OrvSnChannelInputNode();
    ~OrvSnChannelInputNode() override;

    QString typeName() const override { return QStringLiteral("ImageSet"); }
    QString typeLabel() const override;

    OrvImageSet* imageSet() const override { return m_pImageSet; }
    /// To be called once, before the node enters a network.
    void setImageSet(std::unique_ptr<OrvImageSet> pImageSet);
    /// Puts other images in place of those that are there, of another layout or format even. Undoable; a null
    /// buffer is the fill colour everywhere.
    void replaceImages(const OrvUdimLayout& Layout, const OrvPixelFormat& Format, const OrvColor& Fill,
        const OrvImageBuffer& Pixels);

    void describe(OrvNodeDescription& Description) const override;
    void adopt(const OrvNodeDescription& Description) override;

protected:
    void applyUserAttribute(const OrvCustomAttribute& Attribute) override;
    void applyUserAttributeRemoval(const QString& Name) override;
    std::unique_ptr<OrvEngineNode> createEngineNode() const override;
    void updateEngineNode(OrvEngineNode& Node) const override;

private:
    OrvImageSet* m_pImageSet = nullptr;
};
