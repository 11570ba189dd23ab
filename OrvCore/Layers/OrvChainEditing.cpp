#include "OrvCore/Layers/OrvChainEditing.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnBakePointNode.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Network/OrvSnGraphOutputNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnOperationNode.h"

#include "OrvDdi/Image/OrvImageResampling.h"
#include "OrvDdi/Image/OrvImageSet.h"

#include <QtCore/QSet>

namespace OrvChainEditing {

OrvSnBaseNode* contentOf(const OrvSnMergeNode* pMerge)
{
    OrvSnBaseNode* pOver = pMerge ? pMerge->inputNode(OrvSnNames::Over) : nullptr;
    if (!pOver || !pOver->hasTag(OrvSnNames::AdjustmentStackTopTag))
        return pOver;
    const OrvSnBaseNode* pBottom = chainEnd(pOver);
    return pBottom ? pBottom->preferredInputNode() : nullptr;
}

OrvSnBaseNode* baseOperationOf(const OrvSnMergeNode* pMerge)
{
    OrvSnBaseNode* pLowest = nullptr;
    OrvSnBaseNode* pNode = contentOf(pMerge);
    while (qobject_cast<OrvSnOperationNode*>(pNode) || qobject_cast<OrvSnBakePointNode*>(pNode)) {
        if (pNode->inputs().isEmpty())
            return nullptr;
        pLowest = pNode;
        pNode = pNode->preferredInputNode();
    }
    return !pNode || pNode == pMerge->inputNode(OrvSnNames::Base) ? pLowest : nullptr;
}

OrvSnBaseNode* chainEnd(OrvSnBaseNode* pTop)
{
    while (pTop && !OrvLayerStreamUtils::isChainEnd(pTop))
        pTop = pTop->preferredInputNode();
    return pTop;
}

QVector<OrvSnBaseNode::Consumer> streamReaders(const OrvSnBaseNode* pNode)
{
    QVector<OrvSnBaseNode::Consumer> Readers;
    for (const OrvSnBaseNode::Consumer& Reader : pNode->consumers()) {
        const bool InChain = OrvChainTargets::isTarget(Reader.pNode, Reader.InputName)
            || OrvChainTargets::continuesChain(Reader.pNode, Reader.InputName)
            || qobject_cast<OrvSnGraphOutputNode*>(Reader.pNode);
        if (InChain) {
            Readers.append(Reader);
            continue;
        }
        // An adjustment layer directly above reads through its operation too.
        for (const OrvChainTargets::Target& Target : OrvChainTargets::of(Reader.pNode).Targets) {
            const QVector<OrvSnMergeNode*> Layers = OrvChainTargets::owners(Target);
            const bool IsAdjustment
                = std::any_of(Layers.begin(), Layers.end(), [&](const OrvSnMergeNode* pLayer) {
                      return pLayer->inputNode(OrvSnNames::Base) == pNode
                          && baseOperationOf(pLayer) == Reader.pNode;
                  });
            if (IsAdjustment) {
                Readers.append(Reader);
                break;
            }
        }
    }
    return Readers;
}

OrvSnBaseNode* addNode(OrvShaderNetwork* pNetwork, std::unique_ptr<OrvSnBaseNode> pNode, const QString& Name,
    const OrvSnBaseNode* pReference, int Columns, int Rows)
{
    constexpr qreal ColumnWidth = 180.0;
    constexpr qreal RowHeight = 110.0;
    pNode->setName(Name);
    // Beside a node without a place of its own there is none either: the node graph arranges them.
    if (pReference && !pReference->position().isNull())
        pNode->setPosition(pReference->position() + QPointF(Columns * ColumnWidth, -Rows * RowHeight));
    return pNetwork->addNode(std::move(pNode));
}

OrvSnChannelInputNode* addImageNode(OrvShaderNetwork* pNetwork, const OrvUdimLayout& Layout,
    const OrvPixelFormat& Format, const OrvColor& Fill, const QString& Name, const OrvSnBaseNode* pReference,
    int Columns, int Rows, const OrvImageBuffer& Pixels)
{
    auto pImages = std::make_unique<OrvImageSet>(Layout, Format, Fill);
    if (!Pixels.isNull())
        pImages->replace(Layout, Format, Fill, Pixels);
    auto pNode = std::make_unique<OrvSnChannelInputNode>();
    pNode->setImageSet(std::move(pImages));
    return addNode(pNetwork, std::move(pNode), Name, pReference, Columns, Rows);
}

bool insertAbove(OrvSnMergeNode* pMerge, OrvSnBaseNode* pTarget)
{
    OrvSnBaseNode* pOperation = baseOperationOf(pMerge);
    const QVector<OrvSnBaseNode::Consumer> Readers = streamReaders(pTarget);
    if (!pMerge->connectInput(OrvSnNames::Base, pTarget))
        return false;
    if (pOperation && !pOperation->connectInput(pOperation->preferredInput(), pTarget))
        return false;
    return std::all_of(Readers.begin(), Readers.end(), [pMerge](const OrvSnBaseNode::Consumer& Reader) {
        return Reader.pNode->connectInput(Reader.InputName, pMerge);
    });
}

void takeOut(OrvSnMergeNode* pMerge)
{
    OrvSnBaseNode* pBase = pMerge->inputNode(OrvSnNames::Base);
    if (OrvSnBaseNode* pOperation = baseOperationOf(pMerge))
        pOperation->disconnectInput(pOperation->preferredInput());
    for (const OrvSnBaseNode::Consumer& Reader : streamReaders(pMerge))
        Reader.pNode->connectInput(Reader.InputName, pBase);
    pMerge->disconnectInput(OrvSnNames::Base);
}

bool replaceContent(OrvSnBaseNode* pContent, OrvSnBaseNode* pOther)
{
    const QVector<OrvSnBaseNode::Consumer> Readers = pContent->consumers();
    for (const OrvSnBaseNode::Consumer& Reader : Readers) {
        if (OrvChainTargets::isTarget(Reader.pNode, Reader.InputName)
            && !Reader.pNode->connectInput(Reader.InputName, pOther))
            return false;
    }
    removeUnused(pContent);
    return true;
}

void copyAppearance(const OrvSnMergeNode& From, OrvSnMergeNode& To)
{
    const OrvSnBaseNode* pCommon = From.commonNode();
    for (const OrvCustomAttribute& Attribute : From.ownUserAttributes()) {
        if (Attribute.name() != OrvMergeAttributes::LayerCached && Attribute.name() != OrvMergeAttributes::Stream)
            To.createUserAttribute(Attribute);
    }
    if (pCommon == &From)
        return;
    for (const QString& Name : {OrvMergeAttributes::MaskEnabled, OrvMergeAttributes::ColorTag})
        To.setUserAttributeValue(Name, pCommon->userAttribute(Name).value());
}

void removeUnused(OrvSnBaseNode* pNode)
{
    QVector<OrvSnBaseNode*> Pending{pNode};
    while (!Pending.isEmpty()) {
        OrvSnBaseNode* pUnused = Pending.takeLast();
        const bool Stays = !pUnused || !pUnused->network() || !pUnused->consumers().isEmpty()
            || pUnused->hasTag(OrvSnNames::ShaderInputTag)
            || (pUnused->hasTag(OrvSnNames::ShaderTag) && !pUnused->hasTag(OrvSnNames::StackShaderTag));
        if (Stays)
            continue;
        for (const OrvSnBaseNode::Input& Input : pUnused->inputs())
            Pending.append(Input.pNode);
        if (OrvLayerManager::instance().currentComponent() == pUnused)
            OrvLayerManager::instance().setCurrentComponent(nullptr);
        pUnused->network()->removeNode(pUnused);
    }
}

void fitImages(OrvSnMergeNode* pMerge, const OrvUdimLayout& Layout)
{
    const auto seenElsewhere = [&Layout](const OrvSnBaseNode* pNode) {
        const QList<OrvShaderInput*> Channels = OrvShaderInputUtils::findParents(pNode, QString());
        return std::any_of(Channels.begin(), Channels.end(),
            [&Layout](const OrvShaderInput* pChannel) { return pChannel->layout() != Layout; });
    };
    for (OrvSnBaseNode* pNode : nodesOf({pMerge}, Channels::AreLimits)) {
        auto* pImages = qobject_cast<OrvSnChannelInputNode*>(pNode);
        const bool HasExtent = pNode->exists(OrvSnOperationNode::ExtentAttribute);
        if ((!HasExtent && (!pImages || pImages->imageSet()->layout() == Layout)) || seenElsewhere(pNode))
            continue;
        if (HasExtent) {
            pNode->setUserAttributeValue(OrvSnOperationNode::ExtentAttribute, Layout.extent().size());
            continue;
        }
        const OrvImageSet& Images = *pImages->imageSet();
        pImages->replaceImages(Layout, Images.format(), Images.fillColor(),
            OrvImageResampling::fitted(Images.snapshot(), Images.layout(), Layout));
    }
}

QVector<OrvSnBaseNode*> nodesOf(const QVector<OrvSnMergeNode*>& Merges, Channels Handling)
{
    QVector<OrvSnBaseNode*> Found;
    QSet<const OrvSnBaseNode*> Seen;
    const auto note = [&](OrvSnBaseNode* pNode) {
        const bool Limit
            = Handling == Channels::AreLimits && pNode && pNode->hasTag(OrvSnNames::ShaderInputTag);
        if (pNode && !Limit && !Seen.contains(pNode)) {
            Seen.insert(pNode);
            Found.append(pNode);
        }
    };
    // What lies below the layers is no part of them, however they read it.
    QSet<const OrvSnBaseNode*> Roots, BaseOperations;
    for (OrvSnMergeNode* pMerge : Merges) {
        note(pMerge);
        Roots.insert(pMerge);
        if (const OrvSnBaseNode* pOperation = baseOperationOf(pMerge))
            BaseOperations.insert(pOperation);
    }
    for (int Index = 0; Index < Found.size(); ++Index) {
        const OrvSnBaseNode* pNode = Found[Index];
        if (pNode->hasTag(OrvSnNames::ShaderTag))
            continue; // it is fed by channels, which are never its own
        for (const OrvSnBaseNode::Input& Input : pNode->inputs()) {
            const bool FromBelow
                = BaseOperations.contains(pNode) || (Input.Name == OrvSnNames::Base && Roots.contains(pNode));
            if (!FromBelow)
                note(Input.pNode);
        }
    }
    return Found;
}

} // namespace OrvChainEditing
