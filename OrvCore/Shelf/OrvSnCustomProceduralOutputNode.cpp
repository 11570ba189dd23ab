#include "OrvCore/Shelf/OrvSnCustomProceduralOutputNode.h"

#include "OrvCore/Network/OrvContentScale.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnOperationNode.h"

#include "OrvDdi/Engine/OrvEngineNode.h"

#include <QtCore/QRect>

std::unique_ptr<OrvEngineNode> OrvSnCustomProceduralOutputNode::createEngineNode() const
{
    return OrvEngineNode::createZoom();
}

void OrvSnCustomProceduralOutputNode::updateEngineNode(OrvEngineNode& Node) const
{
    const OrvContentScale Around = OrvContentScale::at(network() ? network()->container() : this);
    Node.setScale(OrvContentScale::at(this).Reduction / Around.Reduction);
    Node.setExtent(Around.plane(userAttribute(OrvSnOperationNode::ExtentAttribute).value().toSize()));
}

#include "moc_OrvSnCustomProceduralOutputNode.cpp"
