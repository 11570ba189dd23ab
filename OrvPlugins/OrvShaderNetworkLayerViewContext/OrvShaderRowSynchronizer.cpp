#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderRowSynchronizer.h"

#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderListView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderLook.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderModel.h"

#include <QtCore/QSet>

OrvShaderRowSynchronizer::OrvShaderRowSynchronizer(
    OrvShaderModel* pModel, OrvShaderListView* pListView, QObject* pParent)
    : QObject(pParent)
    , m_Model(pModel)
    , m_ListView(pListView)
{
}

void OrvShaderRowSynchronizer::synchronize()
{
    const OrvShaderNetwork* pNetwork = OrvShaderNetworkManager::instance().currentShaderNetwork();
    if (!pNetwork) {
        clear();
        return;
    }
    showNodes(listedNodes(pNetwork));
    showCurrent(OrvLayerShaderManager::instance().currentShaderNode());
}

QList<OrvSnBaseNode*> OrvShaderRowSynchronizer::listedNodes(const OrvShaderNetwork* pNetwork) const
{
    QList<OrvSnBaseNode*> Nodes;
    for (OrvSnBaseNode* pNode : OrvLayerShaderManager::instance().getShaderNodes(pNetwork, true)) {
        const bool IsLeftOut = !pNode || pNode->hasTag(OrvLayerShaderManager::nodeTagCurrentMaterialShader())
            || pNode->hasTag(OrvSnNames::StackShaderTag);
        if (!IsLeftOut)
            Nodes.append(pNode);
    }
    return Nodes;
}

void OrvShaderRowSynchronizer::showNodes(const QList<OrvSnBaseNode*>& Nodes)
{
    const QSet<OrvSnBaseNode*> Listed(Nodes.cbegin(), Nodes.cend());
    QSet<OrvSnBaseNode*> Shown;
    const int FormerRowCount = m_Model->rowCount();
    for (int Row = FormerRowCount - 1; Row >= 0; --Row) {
        OrvSnBaseNode* pNode = m_Model->nodeFromItem(m_Model->item(Row));
        if (!Listed.contains(pNode)) {
            m_Model->removeRow(Row);
            continue;
        }
        Shown.insert(pNode);
        if (m_Model->item(Row)->text() != pNode->name())
            m_Model->item(Row)->setText(pNode->name());
    }
    if (m_Model->rowCount() < FormerRowCount)
        m_Model->renumber();
    if (Shown.size() == Listed.size())
        return;
    for (OrvSnBaseNode* pNode : Nodes) {
        if (!Shown.contains(pNode))
            addRow(pNode);
    }
    m_Model->sort(0, Qt::AscendingOrder);
}

QStandardItem* OrvShaderRowSynchronizer::addRow(OrvSnBaseNode* pNode)
{
    if (pNode->hasTag(OrvSnNames::StackShaderTag))
        return nullptr;
    connect(pNode, &OrvSnBaseNode::nameChanged, this, &OrvShaderRowSynchronizer::shaderRenamed,
        Qt::UniqueConnection);
    const bool IsSystemShader = OrvLayerShaderManager::instance().isSystemShaderNode(pNode, false);
    return m_Model->appendNode(pNode, OrvShaderLook::icon(pNode), !IsSystemShader);
}

void OrvShaderRowSynchronizer::showCurrent(const OrvSnBaseNode* pNode)
{
    const QModelIndex Index = m_Model->indexFromNode(pNode);
    if (Index != m_ListView->currentIndex())
        m_ListView->setCurrentIndex(Index);
}

void OrvShaderRowSynchronizer::clear()
{
    m_Model->removeRows(0, m_Model->rowCount());
}

#include "moc_OrvShaderRowSynchronizer.cpp"
