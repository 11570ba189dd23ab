#include "OrvCore/Network/OrvSnMergeNode.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvNodeEvaluation.h"
#include "OrvCore/Network/OrvSnBottomTransparencyNode.h"

#include "OrvDdi/Engine/OrvEngineNode.h"

OrvSnMergeNode::OrvSnMergeNode()
    : OrvSnBaseNode({OrvSnNames::Base, OrvSnNames::Over, OrvSnNames::Mask})
{
}

OrvSnMergeNode::~OrvSnMergeNode()
{
    delete m_pLayer;
}

QString OrvSnMergeNode::typeLabel() const
{
    return tr("Merge");
}

const QVector<OrvCustomAttribute>& OrvSnMergeNode::attributeDefaults() const
{
    static const QVector<OrvCustomAttribute> Defaults = [] {
        const QVariantList WholeRange{0.0, 0.0, 1.0, 1.0};
        QVector<OrvCustomAttribute> All{
            {OrvMergeAttributes::BlendMode, OrvBlendParameters::modeNames().first()},
            {OrvMergeAttributes::Amount, 1.0},
            {OrvMergeAttributes::AmountEnabled, true},
            {OrvMergeAttributes::AdvancedEnabled, 0},
            {OrvMergeAttributes::BlendOverRange, WholeRange},
            {OrvMergeAttributes::BlendBaseRange, WholeRange},
            {OrvMergeAttributes::BlendChannels, 15},
            {OrvMergeAttributes::PassThrough, false},
            {OrvMergeAttributes::MaskEnabled, true},
            {OrvMergeAttributes::ColorTag, QString()},
            {OrvMergeAttributes::LayerCached, false},
            {OrvMergeAttributes::CrossChannelSharing, false},
        };
        // The palettes have controls of their own for all of them.
        for (OrvCustomAttribute& Attribute : All)
            Attribute.setVisible(false);
        return All;
    }();
    return Defaults;
}

OrvBlendParameters OrvSnMergeNode::blendParameters() const
{
    OrvBlendParameters Parameters;
    Parameters.Enabled = enabledAsBool();
    Parameters.PassThrough = isPassThrough() && holdsGroup();
    if (ownUserAttributes().isEmpty())
        return Parameters;
    Parameters.Mode = OrvBlendParameters::modeFromName(userAttribute(OrvMergeAttributes::BlendMode).value().toString());
    if (userAttribute(OrvMergeAttributes::AmountEnabled).value().toBool())
        Parameters.Amount = userAttribute(OrvMergeAttributes::Amount).value().toFloat();
    Parameters.MaskEnabled = userAttribute(OrvMergeAttributes::MaskEnabled).value().toBool();
    Parameters.AdvancedEnabled = userAttribute(OrvMergeAttributes::AdvancedEnabled).value().toInt() != 0;
    const int Channels = userAttribute(OrvMergeAttributes::BlendChannels).value().toInt();
    Parameters.WriteRed = Channels & 1;
    Parameters.WriteGreen = Channels & 2;
    Parameters.WriteBlue = Channels & 4;
    Parameters.WriteAlpha = Channels & 8;
    const auto readRange = [this](const QString& Name, float (&Range)[4]) {
        const QVariantList Values = userAttribute(Name).value().toList();
        for (int Index = 0; Index < qMin(4, Values.size()); ++Index)
            Range[Index] = Values[Index].toFloat();
    };
    readRange(OrvMergeAttributes::BlendOverRange, Parameters.OverRange);
    readRange(OrvMergeAttributes::BlendBaseRange, Parameters.BaseRange);
    return Parameters;
}

bool OrvSnMergeNode::isPassThrough() const
{
    return userAttribute(OrvMergeAttributes::PassThrough).value().toBool();
}

bool OrvSnMergeNode::holdsGroup() const
{
    const OrvSnBaseNode* pOver = inputNode(OrvSnNames::Over);
    return qobject_cast<const OrvSnMergeNode*>(pOver) || qobject_cast<const OrvSnBottomTransparencyNode*>(pOver);
}

void OrvSnMergeNode::applyUserAttribute(const OrvCustomAttribute& Attribute)
{
    OrvSnBaseNode::applyUserAttribute(Attribute);
    if (Attribute.name() != OrvMergeAttributes::PassThrough || !network() || !holdsGroup())
        return;
    // What stands for the group's bottom changed: whatever reads it is connected anew.
    const OrvSnBaseNode* pEnd = inputNode(OrvSnNames::Over);
    while (pEnd && !OrvLayerStreamUtils::isChainEnd(pEnd))
        pEnd = pEnd->preferredInputNode();
    if (!pEnd)
        return;
    for (const Consumer& One : pEnd->consumers())
        OrvNodeEvaluation::inputReconnected(One.pNode, One.InputName);
}

std::unique_ptr<OrvEngineNode> OrvSnMergeNode::createEngineNode() const
{
    return OrvEngineNode::createBlend();
}

QStringList OrvSnMergeNode::enginePadInputs() const
{
    return {OrvSnNames::Base, OrvSnNames::Over, OrvSnNames::Mask};
}

void OrvSnMergeNode::updateEngineNode(OrvEngineNode& Node) const
{
    Node.setBlend(blendParameters());
    Node.setCached(cacheActive() == OrvSnCacheActive);
}

#include "moc_OrvSnMergeNode.cpp"
