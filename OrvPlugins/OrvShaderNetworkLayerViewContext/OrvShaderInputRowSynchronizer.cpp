#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputRowSynchronizer.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputModel.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputTreeView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputViewItemRowWidget.h"

#include <QtCore/QSet>

#include <algorithm>

OrvShaderInputRowSynchronizer::OrvShaderInputRowSynchronizer(OrvShaderInputView* pView)
    : QObject(pView)
    , m_View(pView)
    , m_Model(pView->model())
    , m_TreeView(pView->treeView())
{
}

void OrvShaderInputRowSynchronizer::synchronize()
{
    const OrvShaderNetwork* pNetwork = OrvShaderNetworkManager::instance().currentShaderNetwork();
    showNodes(pNetwork ? listedNodes(pNetwork) : QList<OrvSnBaseNode*>());
    showCurrent();
}

QList<OrvSnBaseNode*> OrvShaderInputRowSynchronizer::listedNodes(const OrvShaderNetwork* pNetwork) const
{
    QList<OrvSnBaseNode*> Nodes;
    for (OrvSnBaseNode* pNode : pNetwork->nodes()) {
        if (!pNode->hasTag(OrvSnNames::ShaderInputTag))
            continue;
        const OrvShaderInput* pShaderInput = OrvShaderInputUtils::find(pNode, QString());
        if (pShaderInput && !pShaderInput->isMaterialStack())
            Nodes.append(pNode);
    }
    std::sort(Nodes.begin(), Nodes.end(), [](const OrvSnBaseNode* pLeft, const OrvSnBaseNode* pRight) {
        return pLeft->name() < pRight->name();
    });
    return Nodes;
}

void OrvShaderInputRowSynchronizer::showNodes(const QList<OrvSnBaseNode*>& Nodes)
{
    QStringList Uuids;
    Uuids.reserve(Nodes.size());
    for (const OrvSnBaseNode* pNode : Nodes)
        Uuids.append(pNode->uuidString());
    removeRowsBut(Uuids);
    QSet<QString> Shown;
    const auto rowUuid
        = [this](int Row) { return m_Model->index(Row, 0).data(OrvShaderInputModel::NodeRole).toString(); };
    for (int Row = 0; Row < m_Model->rowCount(); ++Row)
        Shown.insert(rowUuid(Row));
    for (int Row = 0; Row < Uuids.size(); ++Row) {
        if (rowUuid(Row) == Uuids.at(Row))
            continue;
        // The layout waits for the last row; the tree would lay all of them out for each that comes.
        m_TreeView->scheduleRowLayout();
        if (!Shown.contains(Uuids.at(Row)) || Row >= m_Model->rowCount())
            m_Model->insertRow(Row, new QStandardItem);
        m_Model->item(Row)->setData(Uuids.at(Row), OrvShaderInputModel::NodeRole);
    }
    m_Model->removeRows(Uuids.size(), m_Model->rowCount() - Uuids.size());

    // All rows first: a widget placed between two insertions would cost a layout of its own.
    for (int Row = 0; Row < Nodes.size(); ++Row)
        showRowWidget(Row, Nodes.at(Row));
}

void OrvShaderInputRowSynchronizer::removeRowsBut(const QStringList& Uuids)
{
    const QSet<QString> Listed(Uuids.cbegin(), Uuids.cend());
    for (int Row = m_Model->rowCount() - 1; Row >= 0; --Row) {
        if (Listed.contains(m_Model->index(Row, 0).data(OrvShaderInputModel::NodeRole).toString()))
            continue;
        m_TreeView->scheduleRowLayout();
        m_Model->removeRow(Row);
    }
}

void OrvShaderInputRowSynchronizer::showRowWidget(int Row, OrvSnBaseNode* pNode)
{
    const QModelIndex Index = m_Model->index(Row, 0);
    OrvShaderInput* pShaderInput = OrvShaderInputUtils::find(pNode, QString());
    auto* pRowWidget = qobject_cast<OrvShaderInputViewItemRowWidget*>(m_TreeView->indexWidget(Index));
    if (pRowWidget && pRowWidget->shaderInput() == pShaderInput) {
        pRowWidget->refresh();
    } else {
        m_TreeView->scheduleRowLayout();
        m_TreeView->setRowWidget(Index, new OrvShaderInputViewItemRowWidget(m_View, pShaderInput));
    }
    connect(pNode, &OrvSnBaseNode::nameChanged, this, &OrvShaderInputRowSynchronizer::channelRenamed,
        Qt::UniqueConnection);
}

void OrvShaderInputRowSynchronizer::showCurrent()
{
    const OrvShaderInput* pCurrent = OrvShaderInputManager::instance().currentShaderInput(nullptr);
    const QModelIndex Index = pCurrent ? m_Model->indexFromShaderInput(pCurrent) : QModelIndex();
    if (Index != m_TreeView->currentIndex())
        m_TreeView->setCurrentIndex(Index);
}

#include "moc_OrvShaderInputRowSynchronizer.cpp"
