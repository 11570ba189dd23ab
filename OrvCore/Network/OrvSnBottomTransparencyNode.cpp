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
    for (const OrvChainTargets::Target& Target : OrvChainTargets::of(this).Targets) {
        const auto* pGroup = qobject_cast<const OrvSnMergeNode*>(Target.pNode);
        if (pGroup && Target.InputName == OrvSnNames::Over && pGroup->isPassThrough())
            return pGroup->inputNode(OrvSnNames::Base);
    }
    return nullptr;
}

#include "moc_OrvSnBottomTransparencyNode.cpp"
