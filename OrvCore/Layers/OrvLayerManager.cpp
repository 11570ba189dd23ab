#include "OrvCore/Layers/OrvLayerManager.h"

#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Channels/OrvSnShaderInputNode.h"
#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Layers/OrvLayerCost.h"
#include "OrvCore/Layers/OrvMultiChannelLayer.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnBakePointNode.h"
#include "OrvCore/Network/OrvSnBottomTransparencyNode.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnMultiChannelMergeNode.h"
#include "OrvCore/Network/OrvSnOperationNode.h"
#include "OrvCore/Shelf/OrvSnCustomProceduralNode.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include <QtCore/QVector>
#include <QtWidgets/QUndoCommand>

#include <utility>

/// Another component is painted on.
class OrvCurrentComponentEdit : public QUndoCommand {
public:
    OrvCurrentComponentEdit(OrvSnBaseNode* pBefore, OrvSnBaseNode* pAfter)
        : QUndoCommand(OrvLayerManager::tr("Change Paint Target"))
        , m_pBefore(pBefore)
        , m_pAfter(pAfter)
    {
    }
    void undo() override { OrvLayerManager::instance().applyCurrentComponent(m_pBefore); }
    void redo() override { OrvLayerManager::instance().applyCurrentComponent(m_pAfter); }

private:
    QPointer<OrvSnBaseNode> m_pBefore, m_pAfter;
};

/// Another layer becomes current, as part of an edit: undo brings back the one before, and what was selected.
class OrvCurrentLayerEdit : public QUndoCommand {
public:
    OrvCurrentLayerEdit(OrvShaderNetwork* pNetwork, OrvLayer* pLayer)
        : QUndoCommand(OrvLayerManager::tr("Make Layer Current"))
        , m_pNetwork(pNetwork)
        , m_pBefore(OrvLayerManager::instance().currentLayer(pNetwork))
        , m_pAfter(pLayer)
    {
        for (OrvSnBaseNode* pNode : pNetwork->selectedNodes())
            m_SelectedBefore.append(pNode);
    }
    void undo() override
    {
        OrvLayerManager::instance().setCurrentLayer(m_pNetwork, m_pBefore);
        select(m_pBefore, m_SelectedBefore);
    }
    void redo() override
    {
        OrvLayerManager::instance().setCurrentLayer(m_pNetwork, m_pAfter);
        // The first time, whoever makes the edit selects.
        if (std::exchange(m_Redone, true))
            select(m_pAfter, {});
    }

private:
    /// The nodes, if the current layer is among them; else that one alone.
    void select(OrvLayer* pCurrent, const QVector<QPointer<OrvSnBaseNode>>& Nodes)
    {
        if (!m_pNetwork || !pCurrent || pCurrent->blendNode()->network() != m_pNetwork)
            return;
        QSet<OrvSnBaseNode*> Selected{pCurrent->blendNode()};
        if (Nodes.contains(pCurrent->blendNode())) {
            for (const QPointer<OrvSnBaseNode>& pNode : Nodes) {
                if (pNode && pNode->network() == m_pNetwork)
                    Selected.insert(pNode);
            }
        }
        m_pNetwork->selectNone(Selected);
        for (OrvSnBaseNode* pNode : qAsConst(Selected)) {
            if (OrvLayer* pLayer = OrvLayerManager::instance().getLayer(pNode, true))
                pLayer->setSelected(true);
        }
    }

    QPointer<OrvShaderNetwork> m_pNetwork;
    QPointer<OrvLayer> m_pBefore, m_pAfter;
    QVector<QPointer<OrvSnBaseNode>> m_SelectedBefore;
    bool m_Redone = false;
};

namespace {

/// What of a layer is painted on: what was, if it is the layer's; else its paint, else its mask.
OrvSnBaseNode* componentOf(const OrvLayer* pLayer, OrvSnBaseNode* pBefore)
{
    if (!pLayer)
        return nullptr;
    OrvSnBaseNode* pPaint = pLayer->paintNode();
    OrvSnBaseNode* pMask = pLayer->maskPaintNode();
    if (pBefore && (pBefore == pPaint || pBefore == pMask))
        return pBefore;
    return pPaint ? pPaint : pMask;
}

/// A merge node, or what several of them have in common.
bool namesLayers(const OrvSnBaseNode* pNode)
{
    return qobject_cast<const OrvSnMergeNode*>(pNode) || qobject_cast<const OrvSnMultiChannelMergeNode*>(pNode);
}

} // namespace

OrvLayerManager& OrvLayerManager::instance()
{
    static OrvLayerManager Manager;
    return Manager;
}

OrvLayerManager::OrvLayerManager()
{
    qRegisterMetaType<OrvLayer*>("OrvLayer*");
    qRegisterMetaType<OrvLayerStack*>("OrvLayerStack*");
    qRegisterMetaType<OrvSnBaseNode*>("OrvSnBaseNode*");
    qRegisterMetaType<OrvSnBaseNodeCacheActiveState>("OrvSnBaseNodeCacheActiveState");
    qRegisterMetaType<OrvCustomAttribute>("OrvCustomAttribute");

    OrvShaderNetworkManager* pNetworks = &OrvShaderNetworkManager::instance();
    connect(pNetworks, &OrvShaderNetworkManager::nodeRegistered, this, &OrvLayerManager::onNodeRegistered);
    connect(
        pNetworks, &OrvShaderNetworkManager::nodeDeregistered, this, &OrvLayerManager::onNodeDeregistered);
    connect(pNetworks,
        QOverload<OrvShaderNetwork*, QString, OrvSnBaseNode*, OrvSnBaseNode*, OrvSnBaseNode*>::of(
            &OrvShaderNetworkManager::nodeReconnected),
        this, &OrvLayerManager::onNodeReconnected);
    connect(pNetworks, &OrvShaderNetworkManager::nodeEnabledChanged, this,
        &OrvLayerManager::onNodeEnabledChanged);
    connect(
        pNetworks, &OrvShaderNetworkManager::nodeLockedChanged, this, &OrvLayerManager::onNodeLockedChanged);
    connect(
        pNetworks, &OrvShaderNetworkManager::nodeBlockedChanged, this, &OrvLayerManager::onNodeLockedChanged);
    connect(pNetworks, &OrvShaderNetworkManager::nodeCacheActiveChanged, this,
        &OrvLayerManager::onNodeCacheActiveChanged);
    connect(pNetworks, &OrvShaderNetworkManager::nodeUserAttributeChanged, this,
        &OrvLayerManager::onNodeAttributeChanged);
    connect(pNetworks, &OrvShaderNetworkManager::nodeNameChanged, this, &OrvLayerManager::onNodeNameChanged);
    connect(pNetworks, &OrvShaderNetworkManager::nodeRefreshed, this, &OrvLayerManager::onNodeRefreshed);
    connect(pNetworks, &OrvShaderNetworkManager::currentShaderNetworkChanged, this,
        &OrvLayerManager::onCurrentNetworkChanged);
    connect(
        &OrvUndoManager::instance(), &OrvUndoManager::editFinished, this, &OrvLayerManager::onEditFinished);
}

OrvLayerManager::~OrvLayerManager()
{
    delete m_pDummyBlendNode;
    qDeleteAll(m_Stacks);
}

OrvLayer* OrvLayerManager::currentLayer(OrvShaderNetwork* pNetwork) const
{
    return m_CurrentLayers.value(
        pNetwork ? pNetwork : OrvShaderNetworkManager::instance().currentShaderNetwork());
}

void OrvLayerManager::setCurrentLayer(OrvShaderNetwork* pNetwork, OrvLayer* pLayer, bool Undoable)
{
    if (!pNetwork || (pLayer && !pLayer->blendNode()->network()))
        return;
    if (Undoable && currentLayer(pNetwork) != pLayer) {
        OrvUndoManager::instance().perform(std::make_unique<OrvCurrentLayerEdit>(pNetwork, pLayer));
        return;
    }
    if (pLayer) {
        OrvShaderInputManager& Channels = OrvShaderInputManager::instance();
        const QList<OrvShaderInput*> Parents
            = OrvShaderInputUtils::findParents(pLayer->blendNode(), QString());
        OrvShaderInput* pCurrentChannel = Channels.currentShaderInput(pNetwork);
        if (!Parents.isEmpty())
            Channels.setCurrentLayerOf(
                Parents.contains(pCurrentChannel) ? pCurrentChannel : Parents.first(), pLayer);
    }
    if (m_CurrentLayers.value(pNetwork) == pLayer)
        return;
    if (pLayer)
        m_CurrentLayers.insert(pNetwork, pLayer);
    else
        m_CurrentLayers.remove(pNetwork);
    if (pNetwork != OrvShaderNetworkManager::instance().currentShaderNetwork())
        return;
    setCurrentComponent(componentOf(pLayer, m_pCurrentComponent));
    Q_EMIT currentLayerChanged(pLayer);
}

void OrvLayerManager::setCurrentLayerStack(OrvLayerStack* pStack)
{
    if (m_pCurrentStack == pStack)
        return;
    m_pCurrentStack = pStack;
    Q_EMIT currentLayerStackChanged(pStack);
}

void OrvLayerManager::setCurrentComponent(OrvSnBaseNode* pNode)
{
    if (m_pCurrentComponent == pNode)
        return;
    OrvUndoManager& Undo = OrvUndoManager::instance();
    if (Undo.isInMacro() && !Undo.isRestoring())
        Undo.perform(std::make_unique<OrvCurrentComponentEdit>(m_pCurrentComponent, pNode));
    else
        applyCurrentComponent(pNode);
}

void OrvLayerManager::applyCurrentComponent(OrvSnBaseNode* pNode)
{
    OrvSnBaseNode* pOld = m_pCurrentComponent;
    OrvSnBaseNode* pNew = pNode && pNode->network() ? pNode : nullptr;
    if (pNew == pOld)
        return;
    m_pCurrentComponent = pNew;
    Q_EMIT currentComponentChanged(pNew, pOld);
}

OrvLayer* OrvLayerManager::getLayer(OrvSnBaseNode* pNode, bool Create)
{
    auto* pMerge = qobject_cast<OrvSnMergeNode*>(pNode);
    if (!pMerge)
        return nullptr;
    if (!pMerge->m_pLayer && Create)
        pMerge->m_pLayer = pMerge->multiChannelNode() ? new OrvMultiChannelLayer(pMerge) : new OrvLayer(pMerge);
    return pMerge->m_pLayer;
}

QList<OrvLayer*> OrvLayerManager::layersOf(OrvSnBaseNode* pNode)
{
    QList<OrvLayer*> Layers;
    const auto note = [&Layers](const OrvSnMergeNode* pMerge) {
        if (pMerge && pMerge->layer())
            Layers.append(pMerge->layer());
    };
    note(qobject_cast<OrvSnMergeNode*>(pNode));
    if (const auto* pCommon = qobject_cast<OrvSnMultiChannelMergeNode*>(pNode)) {
        for (const OrvSnMergeNode* pMerge : pCommon->mergeNodes())
            note(pMerge);
    }
    return Layers;
}

bool OrvLayerManager::carriesStack(const OrvSnBaseNode* pNode, const QString& InputName)
{
    if (!pNode || !pNode->network())
        return false;
    if (pNode->hasTag(OrvSnNames::ShaderInputTag))
        return InputName == pNode->preferredInput();
    const OrvSnBaseNode* pSource = pNode->inputNode(InputName);
    if (!pSource || !OrvChainTargets::isTarget(pNode, InputName))
        return false;
    if (InputName == OrvSnNames::Mask) {
        const auto* pOperation = qobject_cast<const OrvSnOperationNode*>(pSource);
        return !qobject_cast<const OrvSnChannelInputNode*>(pSource)
            && !qobject_cast<const OrvSnMultiChannelMergeNode*>(pSource)
            && !qobject_cast<const OrvSnCustomProceduralNode*>(pSource)
            && !(pOperation && pOperation->isProcedural());
    }
    return (InputName == OrvSnNames::Over && pSource->hasTag(OrvSnNames::AdjustmentStackTopTag))
        || qobject_cast<const OrvSnMergeNode*>(pSource)
        || qobject_cast<const OrvSnBottomTransparencyNode*>(pSource);
}

OrvLayerStack* OrvLayerManager::stackLeftIn(const OrvShaderNetwork* pNetwork) const
{
    OrvLayerStack* pStack = m_Left.value(pNetwork).pStack;
    return pStack && pNetwork && pNetwork->contains(pStack->node()) ? pStack : nullptr;
}

OrvLayerStack* OrvLayerManager::getLayerStack(OrvSnBaseNode* pNode, const QString& InputName)
{
    if (!pNode)
        return nullptr;
    if (const auto* pChannel = qobject_cast<OrvSnShaderInputNode*>(pNode))
        return InputName.isEmpty() || InputName == pNode->preferredInput() ? pChannel->shaderInput()
                                                                           : nullptr;
    const StackKey Key(pNode, InputName);
    OrvLayerStack* pStack = m_Stacks.value(Key);
    if (!pStack && carriesStack(pNode, InputName)) {
        pStack = new OrvLayerStack(pNode, InputName);
        m_Stacks.insert(Key, pStack);
    }
    return pStack;
}

OrvSnBaseNode* OrvLayerManager::dummyBlendNode()
{
    if (!m_pDummyBlendNode)
        m_pDummyBlendNode = new OrvSnMergeNode;
    return m_pDummyBlendNode;
}

void OrvLayerManager::onNodeRegistered(OrvShaderNetwork*, OrvSnBaseNode* pNode)
{
    m_StructureChanged = true;
    if (auto* pBakePoint = qobject_cast<OrvSnBakePointNode*>(pNode))
        m_BakePoints.insert(pBakePoint);
    if (namesLayers(pNode))
        m_Names.enter(pNode);
    if (qobject_cast<OrvSnMergeNode*>(pNode))
        m_Dirty.note(pNode, OrvLayerDirtyNodes::Alone);
}

void OrvLayerManager::onNodeDeregistered(OrvShaderNetwork* pNetwork, OrvSnBaseNode* pNode)
{
    m_StructureChanged = true;
    m_Names.leave(pNetwork, pNode);
    m_Dirty.forget(pNode);
    m_BakePoints.remove(qobject_cast<OrvSnBakePointNode*>(pNode));
    dropStacksOf(pNode);
    if (m_pCurrentComponent == pNode)
        applyCurrentComponent(nullptr);
    if (m_pCurrentStack && m_pCurrentStack->node() == pNode)
        setCurrentLayerStack(nullptr);
    OrvLayer* pLayer = getLayer(pNode, false);
    if (!pLayer)
        return;
    pLayer->setSelected(false);
    if (m_CurrentLayers.value(pNetwork) == pLayer) {
        m_CurrentLayers.remove(pNetwork);
        if (pNetwork == OrvShaderNetworkManager::instance().currentShaderNetwork())
            Q_EMIT currentLayerChanged(nullptr);
    }
}

void OrvLayerManager::onNodeReconnected(OrvShaderNetwork*, QString InputName, OrvSnBaseNode* pNode,
    OrvSnBaseNode* pNewInputNode, OrvSnBaseNode* pOldInputNode)
{
    m_StructureChanged = true;
    const bool IsMerge = namesLayers(pNode);
    // A merge node that nothing reads yet, or any more, takes nothing along.
    const bool InChain = OrvChainTargets::continuesChain(pNode, InputName) && !pNode->consumers().isEmpty();
    if (InChain || OrvChainTargets::isTarget(pNode, InputName))
        m_Dirty.noteMoved(pNewInputNode, pOldInputNode);
    if (!IsMerge)
        return;
    m_Dirty.noteLayers(pNode, OrvLayerDirtyNodes::Alone);
    if (InputName == OrvSnNames::Base)
        return;
    m_Dirty.noteContent(pNewInputNode);
    m_Dirty.noteContent(pOldInputNode);
    const auto isStackTop = [](const OrvSnBaseNode* pSource) {
        return pSource && pSource->hasTag(OrvSnNames::AdjustmentStackTopTag);
    };
    for (OrvLayer* pLayer : layersOf(pNode)) {
        if (InputName == OrvSnNames::Mask)
            Q_EMIT pLayer->maskEnabledChanged(pLayer->isMaskEnabled());
        else if (isStackTop(pNewInputNode) || isStackTop(pOldInputNode))
            Q_EMIT pLayer->adjustmentEnabledChanged(pLayer->isAdjustmentStackEnabled());
    }
}

void OrvLayerManager::onNodeEnabledChanged(OrvSnBaseNode* pNode, int Enabled)
{
    OrvLayerCost::invalidate();
    if (namesLayers(pNode)) {
        m_Dirty.noteLayers(pNode, OrvLayerDirtyNodes::Alone);
        for (OrvLayer* pLayer : layersOf(pNode)) {
            Q_EMIT pLayer->enabledAsBoolChanged(pLayer->isVisible());
            Q_EMIT pLayer->nodeEnabledChanged(pNode, Enabled);
        }
        return;
    }
    if (!pNode->hasTag(OrvSnNames::AdjustmentStackTopTag))
        return;
    for (const OrvSnBaseNode::Consumer& Reader : pNode->consumers()) {
        OrvLayer* pLayer = getLayer(Reader.pNode, false);
        if (pLayer && Reader.InputName == OrvSnNames::Over) {
            m_Dirty.note(Reader.pNode, OrvLayerDirtyNodes::Alone);
            Q_EMIT pLayer->adjustmentEnabledChanged(Enabled != 0);
        }
    }
}

void OrvLayerManager::onNodeLockedChanged(OrvSnBaseNode* pNode, bool)
{
    m_Dirty.noteLayers(pNode, OrvLayerDirtyNodes::WithContents);
    for (const OrvSnBaseNode::Input& Input : pNode->inputs()) {
        if (Input.Name != OrvSnNames::Base)
            m_Dirty.noteContent(Input.pNode);
    }
}

void OrvLayerManager::onNodeCacheActiveChanged(OrvSnBaseNode* pNode, OrvSnBaseNodeCacheActiveState)
{
    OrvLayerCost::invalidate();
    m_Dirty.note(pNode, OrvLayerDirtyNodes::WithAllBelow);
    if (OrvLayer* pLayer = getLayer(pNode, false))
        Q_EMIT pLayer->cacheStateChanged();
}

void OrvLayerManager::onNodeAttributeChanged(OrvSnBaseNode* pNode, QString Name)
{
    OrvLayerCost::invalidate();
    if (Name == OrvMergeAttributes::LayerCached)
        m_Dirty.note(pNode, OrvLayerDirtyNodes::WithContents);
    else if (Name == OrvMergeAttributes::PassThrough)
        m_Dirty.note(pNode, OrvLayerDirtyNodes::Alone);
    else if (Name == OrvSnCustomProceduralNode::ProceduralAttribute)
        tellProceduralChanged(pNode);
    for (OrvLayer* pLayer : layersOf(pNode)) {
        if (Name == OrvMergeAttributes::ColorTag)
            Q_EMIT pLayer->colorChanged(pLayer->color());
        else if (Name == OrvMergeAttributes::MaskEnabled)
            Q_EMIT pLayer->maskEnabledChanged(pLayer->isMaskEnabled());
        else if (Name == OrvMergeAttributes::LayerCached)
            Q_EMIT pLayer->cacheStateChanged();
    }
}

void OrvLayerManager::tellProceduralChanged(const OrvSnBaseNode* pNode)
{
    const auto* pProcedural = qobject_cast<const OrvSnCustomProceduralNode*>(pNode);
    if (!pProcedural)
        return;
    const QVector<OrvChainTargets::Target> Targets = OrvChainTargets::of(pNode).Targets;
    for (const OrvChainTargets::Target& Target : Targets) {
        for (OrvSnMergeNode* pOwner : OrvChainTargets::owners(Target)) {
            OrvLayer* pLayer = getLayer(pOwner, false);
            if (!pLayer)
                continue;
            Q_EMIT pLayer->proceduralTypeChanged(pProcedural->procedural().Type);
            Q_EMIT pLayer->missingGeoChannelsRefreshed(
                pLayer->missingGeoChannels().join(QStringLiteral(", ")));
        }
    }
}

void OrvLayerManager::onNodeNameChanged(OrvSnBaseNode* pNode, QString)
{
    if (!namesLayers(pNode))
        return;
    m_Names.rename(pNode);
    for (OrvLayer* pLayer : layersOf(pNode))
        Q_EMIT pLayer->nameChanged(pLayer->name());
}

void OrvLayerManager::onNodeRefreshed(OrvSnBaseNode* pNode)
{
    if (!qobject_cast<OrvSnBakePointNode*>(pNode))
        return;
    for (const OrvSnBaseNode::Consumer& Reader : pNode->consumers()) {
        m_Dirty.note(Reader.pNode, OrvLayerDirtyNodes::Alone);
        if (OrvLayer* pLayer = getLayer(Reader.pNode, false))
            Q_EMIT pLayer->bakePointStateChanged();
    }
}

void OrvLayerManager::onCurrentNetworkChanged(OrvShaderNetwork* pNew, OrvShaderNetwork* pOld)
{
    m_Left.insert(pOld, {m_pCurrentStack, m_pCurrentComponent});
    if (!pNew)
        m_Left.clear(); // the project closes
    OrvLayer* pLayer = currentLayer();
    applyCurrentComponent(componentOf(pLayer, m_Left.value(pNew).pComponent));
    Q_EMIT currentLayerChanged(pLayer);
}

void OrvLayerManager::onEditFinished()
{
    const bool StructureChanged = std::exchange(m_StructureChanged, false);
    if (StructureChanged)
        dropStacksThatNoLongerHold();
    refreshBakePoints();
    refreshDirtyStates();
    if (StructureChanged)
        Q_EMIT structureRefreshed();
}

void OrvLayerManager::refreshBakePoints()
{
    for (OrvSnBakePointNode* pBakePoint : qAsConst(m_BakePoints)) {
        if (pBakePoint->refreshBakedState())
            Q_EMIT OrvShaderNetworkManager::instance().nodeRefreshed(pBakePoint);
    }
}

void OrvLayerManager::drop(OrvLayerStack* pStack)
{
    if (m_pCurrentStack == pStack)
        setCurrentLayerStack(OrvShaderInputManager::instance().currentShaderInput(nullptr));
    pStack->deleteLater();
}

void OrvLayerManager::dropStacksOf(const OrvSnBaseNode* pNode)
{
    for (const OrvSnBaseNode::Input& Input : pNode->inputs()) {
        if (OrvLayerStack* pStack = m_Stacks.take(StackKey(pNode, Input.Name)))
            drop(pStack);
    }
}

void OrvLayerManager::dropStacksThatNoLongerHold()
{
    QList<OrvLayerStack*> Dropped;
    for (auto Stack = m_Stacks.begin(); Stack != m_Stacks.end();) {
        if (carriesStack(Stack.key().first, Stack.key().second)) {
            ++Stack;
        } else {
            Dropped.append(Stack.value());
            Stack = m_Stacks.erase(Stack);
        }
    }
    for (OrvLayerStack* pStack : qAsConst(Dropped))
        drop(pStack);
}

void OrvLayerManager::refreshDirtyStates()
{
    constexpr int Handful = 5;
    if (m_Dirty.isEmpty())
        return;
    QList<QPointer<OrvLayer>> Layers;
    const QSet<OrvSnBaseNode*> Nodes = m_Dirty.take();
    for (OrvSnBaseNode* pNode : Nodes) {
        if (OrvLayer* pLayer = getLayer(pNode, false))
            Layers.append(pLayer);
    }
    m_InBatch = Layers.size() > Handful;
    for (const QPointer<OrvLayer>& pLayer : qAsConst(Layers)) {
        if (!pLayer)
            continue;
        Q_EMIT layerStateRefreshed(pLayer);
        if (pLayer)
            Q_EMIT pLayer->layerStateRefreshed(pLayer);
    }
    if (std::exchange(m_InBatch, false))
        Q_EMIT batchLayerStatesRefreshed();
}

#include "moc_OrvLayerManager.cpp"
