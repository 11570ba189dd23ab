#include "OrvCore/Network/OrvSnMergeNode.h"

#include "OrvCore/Channels/OrvChannelSpace.h"
#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Network/OrvContentScale.h"
#include "OrvCore/Network/OrvNodeEvaluation.h"
#include "OrvCore/Network/OrvInputStep.h"
#include "OrvCore/Network/OrvSnBottomTransparencyNode.h"
#include "OrvCore/Network/OrvSnMultiChannelMergeNode.h"
#include "OrvCore/Shelf/OrvSnCustomProceduralNode.h"

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
            {OrvMergeAttributes::Stream, QString()},
        };
        // The palettes have controls of their own for all of them.
        for (OrvCustomAttribute& Attribute : All)
            Attribute.setVisible(false);
        return All;
    }();
    return Defaults;
}

OrvSnMultiChannelMergeNode* OrvSnMergeNode::multiChannelNode() const
{
    return qobject_cast<OrvSnMultiChannelMergeNode*>(inputNode(OrvSnNames::Mask));
}

OrvSnBaseNode* OrvSnMergeNode::commonNode() const
{
    OrvSnBaseNode* pCommon = multiChannelNode();
    return pCommon ? pCommon : const_cast<OrvSnMergeNode*>(this);
}

OrvSnBaseNode* OrvSnMergeNode::maskSource() const
{
    return commonNode()->inputNode(OrvSnNames::Mask);
}

QString OrvSnMergeNode::stream() const
{
    return userAttribute(OrvMergeAttributes::Stream).value().toString();
}

bool OrvSnMergeNode::isShown() const
{
    return enabledAsBool() && commonNode()->enabledAsBool();
}

OrvBlendParameters OrvSnMergeNode::blendParameters() const
{
    OrvBlendParameters Parameters;
    const OrvSnBaseNode* pCommon = commonNode();
    Parameters.Enabled = enabledAsBool() && pCommon->enabledAsBool();
    if (!pCommon->ownUserAttributes().isEmpty())
        Parameters.MaskEnabled = pCommon->userAttribute(OrvMergeAttributes::MaskEnabled).value().toBool();
    // An adjustment shows what lies below in another way: it replaces it, so that transparent parts stay as they are.
    const bool Adjusts = OrvChainEditing::baseOperationOf(this) != nullptr;
    Parameters.PassThrough = Adjusts || passesThrough();
    if (ownUserAttributes().isEmpty())
        return Parameters;
    Parameters.Mode = OrvBlendParameters::modeFromName(userAttribute(OrvMergeAttributes::BlendMode).value().toString());
    if (userAttribute(OrvMergeAttributes::AmountEnabled).value().toBool())
        Parameters.Amount = userAttribute(OrvMergeAttributes::Amount).value().toFloat();
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
    if (Adjusts && (Parameters.Mode != OrvBlendMode::Normal || Parameters.AdvancedEnabled))
        Parameters.PassThrough = false;
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

bool OrvSnMergeNode::passesThrough() const
{
    return isPassThrough() && holdsGroup()
        && OrvChainTargets::of(inputNode(OrvSnNames::Over)).Targets.size() == 1;
}

void OrvSnMergeNode::applyUserAttribute(const OrvCustomAttribute& Attribute)
{
    OrvSnBaseNode::applyUserAttribute(Attribute);
    if (Attribute.name() == OrvMergeAttributes::LayerCached && network())
        OrvNodeEvaluation::inputStepsChanged(this);
    if (Attribute.name() != OrvMergeAttributes::PassThrough || !network() || !holdsGroup())
        return;
    OrvNodeEvaluation::groupBottomChanged(inputNode(OrvSnNames::Over));
}

std::unique_ptr<OrvEngineNode> OrvSnMergeNode::createEngineNode() const
{
    return OrvEngineNode::createBlend();
}

QStringList OrvSnMergeNode::enginePadInputs() const
{
    return {OrvSnNames::Base, OrvSnNames::Over, OrvSnNames::Mask};
}

void OrvSnMergeNode::describeInputStep(const QString& InputName, OrvInputStep& Step) const
{
    const OrvSnBaseNode* pSource = InputName == OrvSnNames::Mask ? maskSource() : inputNode(InputName);
    if (!pSource)
        return;
    OrvChannelSpace::describeStep(this, InputName, pSource, Step);
    if (InputName == OrvSnNames::Base)
        return;
    // Images need no cache: their pixels are there. Custom procedurals are graphs of noises, far dearer than their
    // pixels: what is painted above or beside them must not compute them again.
    Step.Kept = !pSource->imageSet()
        && (userAttribute(OrvMergeAttributes::LayerCached).value().toBool()
            || qobject_cast<const OrvSnCustomProceduralNode*>(pSource));
    Step.From = OrvContentScale::layoutOf(pSource);
    if (Step.From.isValid()) {
        const OrvShaderInput* pChannel = OrvShaderInputUtils::getShaderInput(OrvChainTargets::channel(this));
        Step.To = pChannel ? pChannel->layout() : OrvUdimLayout();
    }
}

void OrvSnMergeNode::updateEngineNode(OrvEngineNode& Node) const
{
    Node.setBlend(blendParameters());
    Node.setCached(cacheActive() == OrvSnCacheActive);
}

#include "moc_OrvSnMergeNode.cpp"
