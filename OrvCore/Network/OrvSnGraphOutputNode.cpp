#include "OrvCore/Network/OrvSnGraphOutputNode.h"

OrvSnGraphOutputNode::OrvSnGraphOutputNode()
    : OrvSnBaseNode({OrvSnNames::Input})
{
}

QString OrvSnGraphOutputNode::typeLabel() const
{
    return tr("Output");
}

#include "moc_OrvSnGraphOutputNode.cpp"
