#include "OrvCoreModules/Graph/OrvNodeGraphScene.h"

#include "OrvCoreModules/Graph/OrvNodeGraphLayout.h"
#include "OrvCoreModules/Graph/OrvNodeItem.h"
#include "OrvCoreModules/Graph/OrvWireItem.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnBaseNode.h"

namespace {

constexpr int RefreshDelay = 15; // ms; a burst of edits is one refresh
constexpr qreal HalfExtent = 1e6; // the canvas has no edge that anybody would meet
constexpr qreal SpotReach = 10.0;

} // namespace

OrvNodeGraphScene::OrvNodeGraphScene(QObject* pParent)
    : QGraphicsScene(-HalfExtent, -HalfExtent, 2.0 * HalfExtent, 2.0 * HalfExtent, pParent)
{
    m_Timer.setSingleShot(true);
    m_Timer.setInterval(RefreshDelay);
    connect(&m_Timer, &QTimer::timeout, this, &OrvNodeGraphScene::synchronize);
    listen();
}

OrvNodeGraphScene::~OrvNodeGraphScene()
{
    forgetItems();
}

void OrvNodeGraphScene::listen()
{
    const auto* pManager = &OrvShaderNetworkManager::instance();
    connect(pManager, &OrvShaderNetworkManager::nodeRegistered, this, &OrvNodeGraphScene::onNodeRegistered);
    connect(
        pManager, &OrvShaderNetworkManager::nodeDeregistered, this, &OrvNodeGraphScene::onNodeDeregistered);
    connect(pManager,
        QOverload<OrvShaderNetwork*, QString, OrvSnBaseNode*, OrvSnBaseNode*, OrvSnBaseNode*>::of(
            &OrvShaderNetworkManager::nodeReconnected),
        this, &OrvNodeGraphScene::onNodeReconnected);
    connect(pManager, &OrvShaderNetworkManager::nodePositionChanged, this,
        &OrvNodeGraphScene::onNodePositionChanged);
    connect(pManager, &OrvShaderNetworkManager::nodeNameChanged, this, &OrvNodeGraphScene::noteNode);
    connect(pManager, &OrvShaderNetworkManager::nodeTagsChanged, this, &OrvNodeGraphScene::noteNode);
    connect(pManager, &OrvShaderNetworkManager::nodeLockedChanged, this, &OrvNodeGraphScene::noteNode);
    connect(pManager, &OrvShaderNetworkManager::nodeBlockedChanged, this, &OrvNodeGraphScene::noteNode);
    connect(pManager, &OrvShaderNetworkManager::nodeCacheActiveChanged, this, &OrvNodeGraphScene::noteNode);
    connect(pManager, &OrvShaderNetworkManager::nodeEnabledChanged, this, &OrvNodeGraphScene::noteNode);
    connect(pManager, &OrvShaderNetworkManager::nodeUserAttributeChanged, this, &OrvNodeGraphScene::noteNode);
    connect(pManager, &OrvShaderNetworkManager::nodeRefreshed, this, &OrvNodeGraphScene::noteNode);
    connect(pManager, &OrvShaderNetworkManager::nodeInputOrderChanged, this,
        [this](OrvShaderNetwork*, OrvSnBaseNode* pNode) { noteNode(pNode); });
}

void OrvNodeGraphScene::setNetwork(OrvShaderNetwork* pNetwork)
{
    if (m_pNetwork == pNetwork && (pNetwork || m_Items.isEmpty()))
        return;
    forgetItems();
    m_pNetwork = pNetwork;
    m_StructureNoted = true;
    if (m_Active)
        synchronize();
    Q_EMIT networkChanged(pNetwork);
}

void OrvNodeGraphScene::setActive(bool Active)
{
    if (std::exchange(m_Active, Active) == Active)
        return;
    if (Active) {
        m_StructureNoted = true;
        synchronize();
    } else {
        forgetItems();
    }
}

bool OrvNodeGraphScene::shows(const OrvSnBaseNode* pNode) const
{
    return m_Active && m_pNetwork && pNode && pNode->network() == m_pNetwork;
}

void OrvNodeGraphScene::request()
{
    // Not started anew: a stream of edits is shown while it goes on.
    if (!m_Timer.isActive())
        m_Timer.start();
}

void OrvNodeGraphScene::forgetItems()
{
    m_Timer.stop();
    m_Items.clear();
    m_Leaving.clear();
    m_Noted.clear();
    m_Held = false;
    clear();
}

void OrvNodeGraphScene::onNodeRegistered(OrvShaderNetwork*, OrvSnBaseNode* pNode)
{
    if (!shows(pNode))
        return;
    m_StructureNoted = true;
    request();
}

void OrvNodeGraphScene::onNodeDeregistered(OrvShaderNetwork*, OrvSnBaseNode* pNode)
{
    m_Noted.remove(pNode);
    // At once, because the node may be deleted before the next refresh.
    if (OrvNodeItem* pItem = m_Items.take(pNode)) {
        pItem->forgetNode();
        m_Leaving.append(pItem);
        m_StructureNoted = true;
        request();
    }
}

void OrvNodeGraphScene::onNodeReconnected(OrvShaderNetwork*, QString, OrvSnBaseNode* pNode,
    OrvSnBaseNode* pNewInputNode, OrvSnBaseNode* pOldInputNode)
{
    if (!shows(pNode))
        return;
    m_StructureNoted = true;
    for (OrvSnBaseNode* pTouched : {pNode, pNewInputNode, pOldInputNode})
        noteNode(pTouched);
}

void OrvNodeGraphScene::onNodePositionChanged(OrvSnBaseNode* pNode)
{
    if (!shows(pNode))
        return;
    m_PlacesNoted = true;
    request();
}

void OrvNodeGraphScene::noteNode(OrvSnBaseNode* pNode)
{
    if (!shows(pNode))
        return;
    m_Noted.insert(pNode);
    request();
}

void OrvNodeGraphScene::noteSelection()
{
    if (!m_Active)
        return;
    m_SelectionNoted = true;
    request();
}

void OrvNodeGraphScene::synchronize()
{
    m_Timer.stop();
    if (!m_Active || !m_pNetwork)
        return;
    qDeleteAll(std::exchange(m_Leaving, {}));
    if (m_StructureNoted)
        addMissingItems();
    const QSet<OrvSnBaseNode*> Noted = std::exchange(m_Noted, {});
    for (OrvSnBaseNode* pNode : Noted) {
        if (OrvNodeItem* pItem = item(pNode)) {
            pItem->refresh();
            updateWires(pItem);
        }
    }
    if (m_StructureNoted || m_PlacesNoted)
        applyPlaces();
    const bool Selected = m_StructureNoted || m_SelectionNoted;
    m_StructureNoted = m_PlacesNoted = m_SelectionNoted = false;
    if (Selected)
        readSelection();
    Q_EMIT synchronized();
}

void OrvNodeGraphScene::addMissingItems()
{
    OrvLayerManager& Layers = OrvLayerManager::instance();
    for (OrvSnBaseNode* pNode : m_pNetwork->nodes()) {
        if (m_Items.contains(pNode))
            continue;
        auto* pItem = new OrvNodeItem(pNode);
        addItem(pItem);
        m_Items.insert(pNode, pItem);
        m_Noted.insert(pNode);
        // Other nodes are selected here alone, layers in the palettes too.
        if (const OrvLayer* pLayer = Layers.getLayer(pNode, true))
            connect(pLayer, &OrvLayer::selectedChanged, this, &OrvNodeGraphScene::noteSelection,
                Qt::UniqueConnection);
    }
}

void OrvNodeGraphScene::updateWires(OrvNodeItem* pItem)
{
    QVector<OrvWireItem*> Wrong;
    for (OrvWireItem* pWire : pItem->wires()) {
        if (pWire->target() == pItem)
            Wrong.append(pWire);
    }
    for (const OrvSnBaseNode::Input& Input : pItem->node()->inputs()) {
        OrvNodeItem* pSource = item(Input.pNode);
        if (!pSource)
            continue;
        const auto Fitting = std::find_if(Wrong.begin(), Wrong.end(), [&](const OrvWireItem* pWire) {
            return pWire->source() == pSource && pWire->inputName() == Input.Name
                && pWire->outputName() == Input.OutputName;
        });
        if (Fitting != Wrong.end())
            Wrong.erase(Fitting);
        else
            addItem(new OrvWireItem(pSource, Input.OutputName, pItem, Input.Name));
    }
    qDeleteAll(Wrong);
}

void OrvNodeGraphScene::applyPlaces()
{
    if (m_Held)
        return;
    const auto heightOf = [this](const OrvSnBaseNode* pNode) { return item(pNode)->look().size().height(); };
    const OrvNodeGraphLayout::Places Places = OrvNodeGraphLayout::shownPlaces(m_pNetwork->nodes(), heightOf);
    for (auto Place = Places.begin(); Place != Places.end(); ++Place)
        item(Place.key())->setPos(Place.value());
}

void OrvNodeGraphScene::setItemsHeld(bool Held)
{
    m_Held = Held;
    if (!Held && m_pNetwork && m_Active) {
        m_PlacesNoted = true;
        synchronize();
    }
}

void OrvNodeGraphScene::readSelection()
{
    if (!m_pNetwork)
        return;
    const QSet<OrvSnBaseNode*>& Selected = m_pNetwork->selectedNodes();
    for (OrvNodeItem* pItem : qAsConst(m_Items))
        pItem->setSelected(Selected.contains(pItem->node()));
    Q_EMIT selectionRead();
}

QVector<OrvSnBaseNode*> OrvNodeGraphScene::selectedNodes() const
{
    QVector<OrvSnBaseNode*> Nodes;
    for (const QGraphicsItem* pItem : selectedItems()) {
        const auto* pNodeItem = qgraphicsitem_cast<const OrvNodeItem*>(pItem);
        if (pNodeItem && pNodeItem->node())
            Nodes.append(pNodeItem->node());
    }
    return Nodes;
}

QVector<OrvWireItem*> OrvNodeGraphScene::selectedWires() const
{
    QVector<OrvWireItem*> Wires;
    for (QGraphicsItem* pItem : selectedItems()) {
        if (auto* pWire = qgraphicsitem_cast<OrvWireItem*>(pItem))
            Wires.append(pWire);
    }
    return Wires;
}

QRectF OrvNodeGraphScene::nodesRect(const QVector<OrvSnBaseNode*>& Nodes) const
{
    QRectF Rect;
    for (const OrvSnBaseNode* pNode : Nodes) {
        if (const OrvNodeItem* pItem = item(pNode))
            Rect |= pItem->body().translated(pItem->pos());
    }
    return Rect;
}

OrvNodeGraphScene::Spot OrvNodeGraphScene::spotAt(const QPointF& Place, bool WithConnectors) const
{
    Spot Under;
    OrvWireItem* pWire = nullptr;
    const QRectF Around(Place - QPointF(SpotReach, SpotReach), QSizeF(2.0 * SpotReach, 2.0 * SpotReach));
    for (QGraphicsItem* pItem : items(Around, Qt::IntersectsItemBoundingRect)) {
        auto* pNode = qgraphicsitem_cast<OrvNodeItem*>(pItem);
        if (!pNode) {
            auto* pCandidate = qgraphicsitem_cast<OrvWireItem*>(pItem);
            if (!pWire && pCandidate && pCandidate->shape().contains(Place))
                pWire = pCandidate;
            continue;
        }
        if (!pNode->node())
            continue;
        const QPointF Inside = pNode->mapFromScene(Place);
        const int Output = WithConnectors ? pNode->outputAt(Inside) : -1;
        const int Input = WithConnectors && Output < 0 ? pNode->inputAt(Inside) : -1;
        if (Output >= 0 || Input >= 0)
            return {pNode, nullptr, Input, Output};
        if (!Under.pNode && pNode->body().contains(Inside))
            Under.pNode = pNode;
    }
    if (!Under.pNode)
        Under.pWire = pWire;
    return Under;
}

#include "moc_OrvNodeGraphScene.cpp"
