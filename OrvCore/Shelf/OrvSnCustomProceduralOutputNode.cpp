#include "OrvCore/Shelf/OrvSnCustomProceduralOutputNode.h"

#include "OrvCore/Network/OrvSnOperationNode.h"

#include "OrvDdi/Engine/OrvEngineNode.h"

#include <QtCore/QRect>

void OrvSnCustomProceduralOutputNode::updateEngineNode(OrvEngineNode& Node) const
{
    Node.setExtent(QRect(QPoint(), userAttribute(OrvSnOperationNode::ExtentAttribute).value().toSize()));
}

#include "moc_OrvSnCustomProceduralOutputNode.cpp"
