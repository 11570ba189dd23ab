#include "OrvCore/Network/OrvSnBottomTransparencyNode.h"

#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Network/OrvSnMergeNode.h"

OrvSnBottomTransparencyNode::OrvSnBottomTransparencyNode() = default;

QString OrvSnBottomTransparencyNode::typeLabel() const
{
    return tr("Bottom Transparency");
}

OrvSnBaseNode* OrvSnBottomTransparencyNode::evaluationAlias() const
{
    const QVector<OrvChainTargets::Target>& Targets = OrvChainTargets::of(this).Targets;
    if (Targets.size() != 1 || Targets.first().InputName != OrvSnNames::Over)
        return nullptr;
    const auto* pGroup = qobject_cast<const OrvSnMergeNode*>(Targets.first().pNode);
    return pGroup && pGroup->passesThrough() ? pGroup->inputNode(OrvSnNames::Base) : nullptr;
}

#include "moc_OrvSnBottomTransparencyNode.cpp"
