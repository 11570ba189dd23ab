#include "OrvCore/Network/OrvContentScale.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Channels/OrvSnShaderInputNode.h"
#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnOperationNode.h"
#include "OrvCore/Network/OrvSnPassNode.h"
#include "OrvCore/Shaders/OrvSnShaderNode.h"
#include "OrvCore/Shelf/OrvSnCustomProceduralNode.h"

#include "OrvDdi/Engine/OrvOperationRegistry.h"
#include "OrvDdi/Image/OrvImageSet.h"

#include <algorithm>
#include <cmath>

namespace {

/// To the smallest size that channels are made in; still smaller ones are too coarse for grain anyway.
constexpr double StrongestReduction = 256.0 / OrvOperation::ReferenceEdge;

bool isProcedural(const OrvSnBaseNode* pNode)
{
    const auto* pOperation = qobject_cast<const OrvSnOperationNode*>(pNode);
    return pOperation ? pOperation->isProcedural()
                      : qobject_cast<const OrvSnCustomProceduralNode*>(pNode) != nullptr;
}

const OrvSnCustomProceduralNode* procedureAround(const OrvSnBaseNode* pNode)
{
    const OrvShaderNetwork* pNetwork = pNode->network();
    return pNetwork ? qobject_cast<const OrvSnCustomProceduralNode*>(pNetwork->container()) : nullptr;
}

OrvUdimLayout layoutAround(const OrvSnBaseNode* pNode)
{
    const OrvShaderNetwork* pNetwork = pNode->network();
    while (pNetwork && pNetwork->container()) {
        pNode = pNetwork->container();
        pNetwork = pNode->network();
    }
    if (const auto* pChannel = qobject_cast<const OrvSnShaderInputNode*>(OrvChainTargets::channel(pNode)))
        return pChannel->layout();
    if (!pNetwork)
        return {};
    const QList<OrvShaderInput*> Channels
        = OrvShaderInputManager::instance().getShaderInputsFromNetwork(pNetwork);
    return Channels.isEmpty() ? OrvUdimLayout() : Channels.first()->layout();
}

/// As images that cover the same plane.
OrvUdimLayout layoutOfProcedural(const OrvSnBaseNode* pNode)
{
    while (const OrvSnCustomProceduralNode* pAround = procedureAround(pNode))
        pNode = pAround;
    const OrvUdimLayout Around = layoutAround(pNode);
    const QSize Plane = pNode->userAttribute(OrvSnOperationNode::ExtentAttribute).value().toSize();
    if (!Around.isValid() || Plane.isEmpty())
        return Around;
    const int Columns = Around.extent().width() / Around.tileSize().width();
    const int Rows = Around.extent().height() / Around.tileSize().height();
    return Around.resized(QSize(qMax(1, Plane.width() / Columns), qMax(1, Plane.height() / Rows)));
}

} // namespace

OrvUdimLayout OrvContentScale::layoutOf(const OrvSnBaseNode* pNode)
{
    if (pNode && procedureAround(pNode))
        return {}; // all inside has one
    // Adjustments leave pixels where they are.
    while (pNode && !pNode->imageSet() && !isProcedural(pNode)
        && (qobject_cast<const OrvSnOperationNode*>(pNode) || qobject_cast<const OrvSnPassNode*>(pNode)))
        pNode = pNode->preferredInputNode();
    if (pNode && pNode->imageSet())
        return pNode->imageSet()->layout();
    if (isProcedural(pNode))
        return layoutOfProcedural(pNode);
    if (const auto* pShader = qobject_cast<const OrvSnShaderNode*>(pNode))
        return pShader->layout();
    const auto* pChannel = qobject_cast<const OrvSnShaderInputNode*>(pNode);
    return pChannel ? pChannel->layout() : OrvUdimLayout();
}

OrvContentScale OrvContentScale::at(const OrvSnBaseNode* pNode)
{
    const OrvSnCustomProceduralNode* pAround = procedureAround(pNode);
    OrvUdimLayout Layout = pAround ? layoutOfProcedural(pAround) : layoutOf(pNode);
    if (!Layout.isValid())
        Layout = layoutAround(pNode);
    OrvContentScale Scale;
    if (!Layout.isValid())
        return Scale;
    Scale.Lengths = double(Layout.tileSize().width()) / OrvOperation::ReferenceEdge;
    if (pAround) {
        Scale.Reduction = std::clamp(Scale.Lengths, StrongestReduction, 1.0);
        Scale.Lengths /= Scale.Reduction;
    }
    return Scale;
}

QRect OrvContentScale::plane(const QSize& Extent) const
{
    return {0, 0, int(std::ceil(Extent.width() / Reduction)), int(std::ceil(Extent.height() / Reduction))};
}
