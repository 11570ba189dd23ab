#include "OrvCore/Network/OrvShaderNetwork.h"

#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Network/OrvNodeEvaluation.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvShaderNetworkUtils.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include <QtCore/QPointer>
#include <QtWidgets/QUndoCommand>

/// A node comes or goes; while it is out, the command owns it.
class OrvNodePopulationEdit : public QUndoCommand {
public:
    OrvNodePopulationEdit(OrvShaderNetwork* pNetwork, std::unique_ptr<OrvSnBaseNode> pNode)
        : QUndoCommand(OrvShaderNetwork::tr("Add Node"))
        , m_pNetwork(pNetwork)
        , m_pNode(pNode.get())
        , m_pParked(std::move(pNode))
        , m_Index(pNetwork->nodes().size())
        , m_Adds(true)
    {
    }
    OrvNodePopulationEdit(OrvShaderNetwork* pNetwork, OrvSnBaseNode* pNode)
        : QUndoCommand(OrvShaderNetwork::tr("Remove '%1'").arg(pNode->name()))
        , m_pNetwork(pNetwork)
        , m_pNode(pNode)
        , m_Index(pNetwork->nodes().lastIndexOf(pNode))
        , m_Adds(false)
    {
    }
    void undo() override { m_Adds ? takeOut() : putIn(); }
    void redo() override { m_Adds ? putIn() : takeOut(); }

private:
    void putIn()
    {
        if (m_pNetwork)
            m_pNetwork->applyAddition(std::move(m_pParked), m_Index);
    }
    void takeOut()
    {
        if (m_pNetwork)
            m_pParked = m_pNetwork->applyRemoval(m_pNode);
    }

    QPointer<OrvShaderNetwork> m_pNetwork;
    OrvSnBaseNode* m_pNode;
    std::unique_ptr<OrvSnBaseNode> m_pParked;
    int m_Index;
    bool m_Adds;
};

namespace {

/// What views graphs listens from the first node on.
void startListeners()
{
    OrvLayerManager::instance();
    OrvShaderInputManager::instance();
    OrvLayerShaderManager::instance();
}

} // namespace

OrvShaderNetwork::OrvShaderNetwork(OrvGeoEntity* pGeoEntity, QObject* pParent)
    : QObject(pParent)
    , m_pGeoEntity(pGeoEntity)
{
    startListeners();
    OrvLayerShaderManager::instance().makeSystemShaders(this);
}

OrvShaderNetwork::OrvShaderNetwork(OrvSnBaseNode* pContainer)
    : QObject(pContainer)
    , m_pContainer(pContainer)
{
    startListeners();
}

OrvShaderNetwork::~OrvShaderNetwork()
{
    clear();
}

void OrvShaderNetwork::clear()
{
    // Engine nodes refer to each other across nodes; they go before any node does, readers before what they read.
    for (OrvSnBaseNode* pNode : OrvShaderNetworkUtils::readersFirst(this)) {
        OrvNodeEvaluation::removed(pNode);
        if (OrvShaderNetwork* pNested = pNode->nestedNetwork())
            pNested->clear();
    }
    // Who hears of the first that goes may walk through those that are still there.
    for (OrvSnBaseNode* pNode : qAsConst(m_Nodes))
        pNode->dropInputs();
    while (!m_Nodes.isEmpty())
        applyRemoval(m_Nodes.last());
    OrvLayerShaderManager::instance().forget(this);
}

OrvGeoEntity* OrvShaderNetwork::geoEntity() const
{
    if (m_pGeoEntity)
        return m_pGeoEntity;
    const OrvShaderNetwork* pParent = parentNetwork();
    return pParent ? pParent->geoEntity() : nullptr;
}

OrvShaderNetwork* OrvShaderNetwork::parentNetwork() const
{
    return m_pContainer ? m_pContainer->network() : nullptr;
}

bool OrvShaderNetwork::contains(const OrvSnBaseNode* pNode) const
{
    const OrvShaderNetwork* pNetwork = pNode ? pNode->network() : nullptr;
    while (pNetwork && pNetwork != this)
        pNetwork = pNetwork->parentNetwork();
    return pNetwork != nullptr;
}

OrvSnBaseNode* OrvShaderNetwork::addNode(std::unique_ptr<OrvSnBaseNode> pNode)
{
    OrvSnBaseNode* pAdded = pNode.get();
    OrvUndoManager::instance().perform(std::make_unique<OrvNodePopulationEdit>(this, std::move(pNode)));
    return pAdded;
}

void OrvShaderNetwork::removeNode(OrvSnBaseNode* pNode)
{
    if (!pNode || pNode->network() != this)
        return;
    const OrvUndoManager::AutoMacro Macro(tr("Remove '%1'").arg(pNode->name()));
    pNode->disconnectOutputs();
    for (const OrvSnBaseNode::Input& Input : QVector<OrvSnBaseNode::Input>(pNode->inputs()))
        pNode->disconnectInput(Input.Name);
    OrvUndoManager::instance().perform(std::make_unique<OrvNodePopulationEdit>(this, pNode));
}

void OrvShaderNetwork::applyAddition(std::unique_ptr<OrvSnBaseNode> pNode, int Index)
{
    OrvSnBaseNode* pAdded = pNode.release();
    m_Nodes.insert(qBound(0, Index, m_Nodes.size()), pAdded);
    pAdded->enterNetwork(this);
    OrvShaderNetworkManager& Manager = OrvShaderNetworkManager::instance();
    Manager.structureChanged();
    Q_EMIT Manager.nodeRegistered(this, pAdded);
}

std::unique_ptr<OrvSnBaseNode> OrvShaderNetwork::applyRemoval(OrvSnBaseNode* pNode)
{
    setSelected(pNode, false);
    // Nodes are mostly removed young: search from the end.
    m_Nodes.remove(m_Nodes.lastIndexOf(pNode));
    OrvNodeEvaluation::removed(pNode);
    OrvShaderNetworkManager& Manager = OrvShaderNetworkManager::instance();
    Manager.structureChanged();
    Q_EMIT Manager.nodeDeregistered(this, pNode);
    pNode->enterNetwork(nullptr);
    return std::unique_ptr<OrvSnBaseNode>(pNode);
}

OrvSnBaseNode* OrvShaderNetwork::addSystemNode(std::unique_ptr<OrvSnBaseNode> pNode)
{
    OrvSnBaseNode* pAdded = pNode.release();
    m_SystemNodes.append(pAdded);
    pAdded->enterNetwork(this);
    return pAdded;
}

void OrvShaderNetwork::releaseSystemNode(OrvSnBaseNode* pNode)
{
    pNode->enterNetwork(nullptr);
    pNode->deleteLater();
}

bool OrvShaderNetwork::wouldConnectionBreakDAG(const OrvSnBaseNode* pSource, const OrvSnBaseNode* pTarget) const
{
    if (!pSource || !pTarget)
        return false;
    if (pSource == pTarget)
        return true;
    // What feeds the target already lies above it, and need not be walked through: putting a node into a chain, or
    // taking one out, is decided here at once.
    QSet<const OrvSnBaseNode*> SeenAbove{pSource};
    for (const OrvSnBaseNode::Input& Direct : pTarget->inputs()) {
        if (!Direct.pNode)
            continue;
        SeenAbove.insert(Direct.pNode);
        for (const OrvSnBaseNode::Input& Indirect : Direct.pNode->inputs()) {
            if (Indirect.pNode)
                SeenAbove.insert(Indirect.pNode);
            if (Indirect.pNode == pSource)
                return false;
        }
        if (Direct.pNode == pSource)
            return false;
    }
    // Walk up from the source and down from the target in turns: whichever side is exhausted first decides, so that an
    // edit near either end of a long chain costs little.
    QSet<const OrvSnBaseNode*> SeenBelow{pTarget};
    QVector<const OrvSnBaseNode*> Above{pSource}, Below{pTarget};
    while (!Above.isEmpty() && !Below.isEmpty()) {
        for (const OrvSnBaseNode::Input& Input : Above.takeLast()->inputs()) {
            if (Input.pNode == pTarget)
                return true;
            if (Input.pNode && !SeenAbove.contains(Input.pNode)) {
                SeenAbove.insert(Input.pNode);
                Above.append(Input.pNode);
            }
        }
        for (const OrvSnBaseNode::Consumer& Consumer : Below.takeLast()->consumers()) {
            if (Consumer.pNode == pSource)
                return true;
            if (!SeenBelow.contains(Consumer.pNode)) {
                SeenBelow.insert(Consumer.pNode);
                Below.append(Consumer.pNode);
            }
        }
    }
    return false;
}

void OrvShaderNetwork::setSelected(OrvSnBaseNode* pNode, bool Selected)
{
    if (Selected)
        m_Selected.insert(pNode);
    else
        m_Selected.remove(pNode);
}

void OrvShaderNetwork::selectNone(const QSet<OrvSnBaseNode*>& Keep)
{
    const QSet<OrvSnBaseNode*> Dropped = QSet<OrvSnBaseNode*>(m_Selected).subtract(Keep);
    for (OrvSnBaseNode* pNode : Dropped) {
        m_Selected.remove(pNode);
        if (OrvLayer* pLayer = OrvLayerManager::instance().getLayer(pNode, false))
            pLayer->setSelected(false, true);
    }
}

#include "moc_OrvShaderNetwork.cpp"
