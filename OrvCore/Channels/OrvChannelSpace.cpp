#include "OrvCore/Channels/OrvChannelSpace.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvSnShaderInputNode.h"
#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Network/OrvInputStep.h"
#include "OrvCore/Network/OrvSnBakePointNode.h"
#include "OrvCore/Network/OrvSnGraphNode.h"
#include "OrvCore/Network/OrvSnGraphOutputNode.h"
#include "OrvCore/Network/OrvSnOperationNode.h"
#include "OrvCore/Network/OrvSnPassNode.h"
#include "OrvCore/Shaders/OrvSnShaderNode.h"
#include "OrvCore/Shelf/OrvSnCustomProceduralNode.h"

#include "OrvDdi/Color/OrvColorManager.h"
#include "OrvDdi/Image/OrvImageSet.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QSet>

namespace {

/// Says once that a channel's space is none that can be converted.
void tellLost(const OrvSnShaderInputNode* pChannel)
{
    static QSet<QString> Told;
    const QString Space = pChannel->storedColorSpace();
    if (Told.contains(Space))
        return;
    Told.insert(Space);
    const QString Text = QCoreApplication::translate("OrvChannelSpace",
        "The color space '%1' of '%2' is not available; its values are taken for linear light")
                             .arg(Space, pChannel->name());
    // Whoever is being evaluated is not to be disturbed.
    QMetaObject::invokeMethod(
        &OrvLayerManager::instance(), [Text] { Q_EMIT OrvLayerManager::instance().refused(Text); },
        Qt::QueuedConnection);
}

/// Of a channel, or of what has a space of its own.
QString spaceOf(const OrvSnBaseNode* pNode)
{
    const auto* pChannel = qobject_cast<const OrvSnShaderInputNode*>(pNode);
    if (!pChannel) {
        const QString Kept = OrvChannelSpace::keptSpace(pNode);
        return Kept.isEmpty() ? OrvColorManager::linear() : OrvColorManager::computedSpace(Kept);
    }
    const QString Stored = pChannel->storedColorSpace();
    const QString Computed = OrvColorManager::computedSpace(Stored);
    if (Computed != Stored && Stored != OrvColorManager::srgb())
        tellLost(pChannel);
    return Computed;
}

/// Where the pixels of a result come from when they have a space of their own; else null.
const OrvSnBaseNode* originWithSpace(const OrvSnBaseNode* pNode)
{
    while (pNode) {
        if (qobject_cast<const OrvSnShaderInputNode*>(pNode) || qobject_cast<const OrvSnShaderNode*>(pNode)
            || qobject_cast<const OrvSnCustomProceduralNode*>(pNode))
            return pNode;
        if (pNode->imageSet()) // of paint, or baked as paint is stored
            return OrvChannelSpace::keptSpace(pNode).isEmpty() ? nullptr : pNode;
        if (const auto* pOperation = qobject_cast<const OrvSnOperationNode*>(pNode)) {
            if (pOperation->isProcedural())
                return pNode;
        } else if (const auto* pGraph = qobject_cast<const OrvSnGraphNode*>(pNode)) {
            pNode = pGraph->outputNode();
            continue;
        } else if (!qobject_cast<const OrvSnPassNode*>(pNode) && !qobject_cast<const OrvSnGraphOutputNode*>(pNode)
            && !qobject_cast<const OrvSnBakePointNode*>(pNode)) {
            return nullptr;
        }
        pNode = pNode->preferredInputNode();
    }
    return nullptr;
}

bool isMask(const OrvSnBaseNode* pNode)
{
    const QVector<OrvChainTargets::Target>& Targets = OrvChainTargets::of(pNode).Targets;
    return !Targets.isEmpty() && OrvChainTargets::isWithinMask(Targets.first());
}

} // namespace

QString OrvChannelSpace::ofChannel(const OrvShaderInput* pChannel)
{
    return spaceOf(pChannel ? pChannel->node() : nullptr);
}

QString OrvChannelSpace::ofNode(const OrvSnBaseNode* pNode)
{
    if (const OrvSnBaseNode* pOrigin = originWithSpace(pNode))
        return spaceOf(pOrigin);
    return around(pNode);
}

QString OrvChannelSpace::around(const OrvSnBaseNode* pNode)
{
    return isMask(pNode) ? OrvColorManager::linear() : spaceOf(OrvChainTargets::channel(pNode));
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

void OrvChannelSpace::describeStep(const OrvSnBaseNode* pSource, const QString& ReaderSpace, OrvInputStep& Step)
{
    const OrvSnBaseNode* pOrigin = originWithSpace(pSource);
    const QString Space = spaceOf(pOrigin);
    if (!pOrigin || OrvColorManager::isIdentity(Space, ReaderSpace))
        return;
    Step.FromSpace = Space;
    Step.ToSpace = ReaderSpace;
}

void OrvChannelSpace::describeMergeStep(
    const OrvSnBaseNode* pMerge, const QString& InputName, const OrvSnBaseNode* pSource, OrvInputStep& Step)
{
    // Where the reader stands is asked for few: layers of images, and groups, have no origin.
    if (!originWithSpace(pSource))
        return;
    describeStep(
        pSource, InputName == OrvSnNames::Mask ? OrvColorManager::linear() : around(pMerge), Step);
}
