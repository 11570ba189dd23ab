#include "OrvCore/Network/OrvSnChannelInputNode.h"

#include "OrvCore/Channels/OrvSnShaderInputNode.h"
#include "OrvCore/Network/OrvNodeDescription.h"
#include "OrvCore/Network/OrvNodeEvaluation.h"

#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Engine/OrvEngineNode.h"
#include "OrvDdi/Image/OrvImageSet.h"

#include <QtWidgets/QUndoCommand>

/// The images of a node are replaced as a whole.
class OrvImagesEdit : public QUndoCommand {
public:
    struct Images {
        OrvUdimLayout Layout;
        OrvPixelFormat Format;
        OrvColor Fill;
        OrvImageBuffer Pixels;
    };

    OrvImagesEdit(OrvSnChannelInputNode* pNode, const Images& After)
        : QUndoCommand(OrvSnChannelInputNode::tr("Replace Images of '%1'").arg(pNode->name()))
        , m_pNode(pNode)
        , m_Before{pNode->imageSet()->layout(), pNode->imageSet()->format(), pNode->imageSet()->fillColor(),
              pNode->imageSet()->snapshot()}
        , m_After(After)
    {
    }
    void undo() override { put(m_Before); }
    void redo() override { put(m_After); }

private:
    void put(const Images& Wanted)
    {
        // The set writes into what it gets; the history keeps its own.
        m_pNode->imageSet()->replace(Wanted.Layout, Wanted.Format, Wanted.Fill,
            Wanted.Pixels.isNull() ? OrvImageBuffer() : Wanted.Pixels.snapshot());
    }

    OrvSnChannelInputNode* m_pNode;
    Images m_Before, m_After;
};

OrvSnChannelInputNode::OrvSnChannelInputNode() = default;

OrvSnChannelInputNode::~OrvSnChannelInputNode() = default;

QString OrvSnChannelInputNode::typeLabel() const
{
    return tr("Image");
}

void OrvSnChannelInputNode::setImageSet(std::unique_ptr<OrvImageSet> pImageSet)
{
    m_pImageSet = pImageSet.release();
    m_pImageSet->setParent(this);
    connect(m_pImageSet, &OrvImageSet::replaced, this, [this] { OrvNodeEvaluation::replaced(this); });
    connect(m_pImageSet, &OrvImageSet::pixelsChanged, this, [this](const QRect& Region) {
        OrvNodeEvaluation::pixelsWritten(this, Region);
    });
}

void OrvSnChannelInputNode::replaceImages(const OrvUdimLayout& Layout, const OrvPixelFormat& Format,
    const OrvColor& Fill, const OrvImageBuffer& Pixels)
{
    if (!m_pImageSet)
        return;
    auto pEdit = std::make_unique<OrvImagesEdit>(this, OrvImagesEdit::Images{Layout, Format, Fill, Pixels});
    if (network())
        OrvUndoManager::instance().perform(std::move(pEdit));
    else
        pEdit->redo();
}

void OrvSnChannelInputNode::describe(OrvNodeDescription& Description) const
{
    if (m_pImageSet)
        Description.setImages(*m_pImageSet);
}

void OrvSnChannelInputNode::adopt(const OrvNodeDescription& Description)
{
    if (std::unique_ptr<OrvImageSet> pImages = Description.makeImages())
        setImageSet(std::move(pImages));
}

void OrvSnChannelInputNode::applyUserAttribute(const OrvCustomAttribute& Attribute)
{
    OrvSnBaseNode::applyUserAttribute(Attribute);
    if (network() && Attribute.name() == OrvSnShaderInputNode::ColorSpaceAttribute)
        OrvNodeEvaluation::layoutChanged(this);
}

void OrvSnChannelInputNode::applyUserAttributeRemoval(const QString& Name)
{
    OrvSnBaseNode::applyUserAttributeRemoval(Name);
    if (network() && Name == OrvSnShaderInputNode::ColorSpaceAttribute)
        OrvNodeEvaluation::layoutChanged(this);
}

std::unique_ptr<OrvEngineNode> OrvSnChannelInputNode::createEngineNode() const
{
    const bool Uniform = !m_pImageSet || m_pImageSet->isUniform();
    return Uniform ? OrvEngineNode::createUniform() : OrvEngineNode::createSource();
}

void OrvSnChannelInputNode::updateEngineNode(OrvEngineNode& Node) const
{
    if (!m_pImageSet)
        return;
    if (m_pImageSet->isUniform())
        Node.setUniform(m_pImageSet->fillColor(), m_pImageSet->extent());
    else
        Node.setBuffer(m_pImageSet->buffer());
}

#include "moc_OrvSnChannelInputNode.cpp"
