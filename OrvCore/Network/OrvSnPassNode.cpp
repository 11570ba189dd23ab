#include "OrvCore/Network/OrvSnPassNode.h"

#include "OrvCore/Layers/OrvLayerStreamUtils.h"

OrvSnPassNode::OrvSnPassNode(const QStringList& Tags)
    : OrvSnBaseNode({OrvSnNames::Input}, Tags)
{
}

QString OrvSnPassNode::typeLabel() const
{
    if (hasTag(OrvSnNames::AdjustmentStackTopTag))
        return tr("Adjustment Stack");
    if (hasTag(OrvSnNames::AdjustmentStackBottomTag))
        return tr("Adjustment Stack Input");
    return tr("Pass");
}

OrvSnBaseNode* OrvSnPassNode::evaluationAlias() const
{
    OrvSnBaseNode* pSource = inputNode(OrvSnNames::Input);
    if (enabledAsBool() || !hasTag(OrvSnNames::AdjustmentStackTopTag))
        return pSource;
    // A disabled adjustment stack yields the content that goes into its bottom.
    while (pSource && !OrvLayerStreamUtils::isChainEnd(pSource))
        pSource = pSource->preferredInputNode();
    return pSource ? pSource->preferredInputNode() : nullptr;
}

#include "moc_OrvSnPassNode.cpp"
