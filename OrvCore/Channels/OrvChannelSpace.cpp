#include "OrvCore/Channels/OrvChannelSpace.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvSnShaderInputNode.h"
#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Network/OrvInputStep.h"
#include "OrvCore/Network/OrvNodeEvaluation.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnOperationNode.h"
#include "OrvCore/Shaders/OrvSnShaderNode.h"
#include "OrvCore/Shelf/OrvSnCustomProceduralNode.h"

#include "OrvDdi/Color/OrvColorManager.h"
#include "OrvDdi/Image/OrvImageSet.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QSet>

namespace {

/// Says once that a channel's space is none that can be converted.
void tellLost(const QString& Space, const QString& Text)
{
    static QSet<QString> Told;
    if (Told.contains(Space))
        return;
    Told.insert(Space);
    // Whoever is being evaluated is not to be disturbed.
    QMetaObject::invokeMethod(
        &OrvLayerManager::instance(), [Text] { Q_EMIT OrvLayerManager::instance().refused(Text); },
        Qt::QueuedConnection);
}

bool isLost(const QString& Space, const QString& Computed)
{
    return Computed != Space && Space != OrvColorManager::srgb();
}

/// In which space a channel's images are; linear for none.
QString storedIn(const OrvSnShaderInputNode* pChannel)
{
    if (!pChannel)
        return OrvColorManager::linear();
    const QString Stored = pChannel->storedColorSpace();
    const QString Computed = OrvColorManager::computedSpace(Stored);
    if (isLost(Stored, Computed))
        tellLost(Stored,
            QCoreApplication::translate("OrvChannelSpace",
                "The color space '%1' of '%2' is not available; its values are taken for linear light")
                .arg(Stored, pChannel->name()));
    return Computed;
}

/// In which space a channel's layers are blended; linear for none.
QString workingIn(const OrvSnShaderInputNode* pChannel)
{
    if (!pChannel)
        return OrvColorManager::linear();
    const QString Working = pChannel->workingColorSpace();
    const QString Computed = OrvColorManager::computedSpace(Working);
    if (isLost(Working, Computed))
        tellLost(Working,
            QCoreApplication::translate("OrvChannelSpace",
                "The color space '%1' of '%2' is not available; its layers are blended in linear light")
                .arg(Working, pChannel->name()));
    // Numbers that mean no colour are blended as they are stored, and so is what is to be blended as numbers.
    const QString Stored = storedIn(pChannel);
    return OrvColorManager::isIdentity(Stored, Computed) ? Stored : Computed;
}

/// Where the pixels of a result come from when they are no layer's: images, or what has a space of its own.
/// Null else, and for what adjustments make of images, which they read as everything around them does.
const OrvSnBaseNode* originOf(const OrvSnBaseNode* pNode)
{
    bool Adjusted = false;
    while (pNode && !qobject_cast<const OrvSnMergeNode*>(pNode)) {
        const auto* pOperation = qobject_cast<const OrvSnOperationNode*>(pNode);
        if (qobject_cast<const OrvSnShaderInputNode*>(pNode) || qobject_cast<const OrvSnShaderNode*>(pNode)
            || qobject_cast<const OrvSnCustomProceduralNode*>(pNode)
            || (pOperation && pOperation->isProcedural()))
            return pNode;
        if (pNode->imageSet()) // of paint, or baked as paint is stored
            return Adjusted ? nullptr : pNode;
        const OrvSnBaseNode* pShown = OrvNodeEvaluation::standIn(pNode);
        if (pShown == pNode && !pOperation)
            return nullptr;
        Adjusted |= pShown == pNode;
        pNode = pShown == pNode ? pNode->preferredInputNode() : pShown;
    }
    return nullptr;
}

/// The channel whose colours a node yields; null in masks and outside channels. Of several that show the same
/// layers always the same one, in whichever order they came to do so.
const OrvSnShaderInputNode* channelAround(const OrvSnBaseNode* pNode)
{
    const OrvSnShaderInputNode* pChosen = nullptr;
    QVector<const OrvSnBaseNode*> Pending{pNode};
    QSet<const OrvSnBaseNode*> Seen; // groups that are shared in groups that are shared lead to few, in many ways
    while (!Pending.isEmpty()) {
        const OrvSnBaseNode* pNext = Pending.takeLast();
        // What a custom procedural is made of knows no channel.
        if (pNext && pNext->network()
            && qobject_cast<const OrvSnCustomProceduralNode*>(pNext->network()->container()))
            continue;
        const QVector<OrvChainTargets::Target> Targets = OrvChainTargets::of(pNext).Targets;
        for (const OrvChainTargets::Target& Target : Targets) {
            const auto* pChannel = qobject_cast<const OrvSnShaderInputNode*>(Target.pNode);
            if (pChannel && (!pChosen || pChannel->uuidString() < pChosen->uuidString()))
                pChosen = pChannel;
            if (Target.InputName == OrvSnNames::Mask)
                continue;
            for (const OrvSnMergeNode* pLayer : OrvChainTargets::owners(Target)) {
                if (!Seen.contains(pLayer)) {
                    Seen.insert(pLayer);
                    Pending.append(pLayer);
                }
            }
        }
    }
    return pChosen;
}

/// The channel whose colours a node takes in. Light is computed in one space, whatever the channels are in.
const OrvSnShaderInputNode* channelOfReader(const OrvSnBaseNode* pReader)
{
    if (qobject_cast<const OrvSnShaderNode*>(pReader))
        return nullptr;
    const auto* pChannel = qobject_cast<const OrvSnShaderInputNode*>(pReader);
    return pChannel ? pChannel : channelAround(pReader);
}

/// The space of what comes from there when it is read in a channel, or in none.
QString spaceOfOrigin(const OrvSnBaseNode* pOrigin, const OrvSnShaderInputNode* pReadIn)
{
    if (const auto* pChannel = qobject_cast<const OrvSnShaderInputNode*>(pOrigin))
        return workingIn(pChannel);
    if (!pOrigin->imageSet())
        return OrvColorManager::linear();
    const QString Kept = OrvChannelSpace::keptSpace(pOrigin);
    return Kept.isEmpty() ? storedIn(pReadIn) : OrvColorManager::computedSpace(Kept);
}

void convert(const QString& From, const QString& To, OrvInputStep& Step)
{
    if (OrvColorManager::isIdentity(From, To))
        return;
    Step.FromSpace = From;
    Step.ToSpace = To;
}

} // namespace

QString OrvChannelSpace::ofChannel(const OrvShaderInput* pChannel)
{
    return workingIn(pChannel ? pChannel->channelNode() : nullptr);
}

QString OrvChannelSpace::ofNode(const OrvSnBaseNode* pNode)
{
    const OrvSnBaseNode* pOrigin = originOf(pNode);
    if (!pOrigin)
        return around(pNode);
    return spaceOfOrigin(pOrigin, pOrigin->imageSet() ? channelAround(pNode) : nullptr);
}

QString OrvChannelSpace::around(const OrvSnBaseNode* pNode)
{
    return workingIn(channelAround(pNode));
}

QString OrvChannelSpace::ofInput(const OrvSnBaseNode* pReader, const QString& InputName)
{
    return InputName == OrvSnNames::Mask ? OrvColorManager::linear() : workingIn(channelOfReader(pReader));
}

QString OrvChannelSpace::storedIn(const OrvShaderInput* pChannel)
{
    return ::storedIn(pChannel ? pChannel->channelNode() : nullptr);
}

QString OrvChannelSpace::storedAround(const OrvSnBaseNode* pNode)
{
    return ::storedIn(channelAround(pNode));
}

QString OrvChannelSpace::ofImages(const OrvImageSet& Images)
{
    if (Images.format().Curve == OrvPixelFormat::Srgb)
        return OrvColorManager::srgb();
    return ofNode(qobject_cast<const OrvSnBaseNode*>(Images.parent()));
}

QString OrvChannelSpace::keptSpace(const OrvSnBaseNode* pImageNode)
{
    // Hardly any node has attributes of its own.
    if (!pImageNode || !pImageNode->imageSet() || pImageNode->ownUserAttributes().isEmpty())
        return QString();
    return pImageNode->userAttribute(OrvSnShaderInputNode::ColorSpaceAttribute).value().toString();
}

void OrvChannelSpace::keepSpace(OrvSnBaseNode* pImageNode, const QString& Space)
{
    if (keptSpace(pImageNode) == Space)
        return;
    OrvCustomAttribute Attribute(OrvSnShaderInputNode::ColorSpaceAttribute, Space);
    Attribute.setVisible(false);
    pImageNode->createUserAttribute(Attribute);
}

void OrvChannelSpace::describeStep(
    const OrvSnBaseNode* pReader, const QString& InputName, const OrvSnBaseNode* pSource, OrvInputStep& Step)
{
    const OrvSnBaseNode* pOrigin = originOf(pSource);
    if (InputName == OrvSnNames::Mask) {
        // What images of paint hold is taken for numbers, unless it is known what they mean.
        if (pOrigin && !(pOrigin->imageSet() && keptSpace(pOrigin).isEmpty()))
            convert(spaceOfOrigin(pOrigin, nullptr), OrvColorManager::linear(), Step);
        return;
    }
    // Adjustments work in the space of what they adjust, but for images.
    if (pOrigin && !pOrigin->imageSet() && qobject_cast<const OrvSnOperationNode*>(pReader))
        return;
    if (pOrigin) {
        const OrvSnShaderInputNode* pChannel = channelOfReader(pReader);
        convert(spaceOfOrigin(pOrigin, pChannel), workingIn(pChannel), Step);
        return;
    }
    // Layers that several channels show are blended as one of them does. Of a chain all are.
    while (pSource && OrvNodeEvaluation::standIn(pSource) != pSource)
        pSource = OrvNodeEvaluation::standIn(pSource);
    if (pSource && OrvChainTargets::of(pSource).Targets != OrvChainTargets::of(pReader).Targets)
        convert(around(pSource), ofInput(pReader, InputName), Step);
}
