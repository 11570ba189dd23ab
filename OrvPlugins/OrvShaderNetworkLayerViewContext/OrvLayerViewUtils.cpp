#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewUtils.h"

#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Object/OrvObjectReferenceManager.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvCoreModules/Window/OrvStatusManager.h"

#include <QtCore/QVector>
#include <QtGui/QStandardItem>
#include <QtWidgets/QMessageBox>

namespace {

/// Visits every node reachable from the start, which comes first, once, until one satisfies the test.
template <class Neighbours, class Test>
bool anyReachable(const OrvSnBaseNode* pStart, Neighbours forEachNeighbour, Test isWanted)
{
    if (!pStart)
        return false;
    QVector<const OrvSnBaseNode*> Open{pStart};
    QSet<const OrvSnBaseNode*> Seen{pStart};
    while (!Open.isEmpty()) {
        const OrvSnBaseNode* pNode = Open.takeLast();
        if (isWanted(pNode))
            return true;
        forEachNeighbour(pNode, [&](const OrvSnBaseNode* pNext) {
            if (!pNext || Seen.contains(pNext))
                return;
            Seen.insert(pNext);
            Open.append(pNext);
        });
    }
    return false;
}

} // namespace

OrvLayer* OrvLayerViewUtils::layerFromItem(const QStandardItem* pItem)
{
    const QString Uuid = pItem ? pItem->data(NodeRole).toString() : QString();
    if (Uuid.isEmpty())
        return nullptr;
    auto* pNode = qobject_cast<OrvSnBaseNode*>(OrvObjectReferenceManager::instance().getPointer(Uuid));
    if (pNode && OrvLayerStreamUtils::isMergeNode(pNode))
        return OrvLayerManager::instance().getLayer(pNode, true);
    OrvDebug("OrvLayerViewUtils", __LINE__,
        QStringLiteral("[ !! ] Invalid uuid '%1' conversion to a blend node").arg(Uuid), false, false);
    return nullptr;
}

const OrvSnBaseNode* OrvLayerViewUtils::nodeInNetwork(
    const OrvSnBaseNode* pNode, const OrvShaderNetwork* pNetwork)
{
    while (pNode && pNode->network() != pNetwork)
        pNode = pNode->network() ? pNode->network()->container() : nullptr;
    return pNode;
}

bool OrvLayerViewUtils::isAnyUpstream(const QSet<const OrvSnBaseNode*>& Nodes, const OrvSnBaseNode* pStart)
{
    return anyReachable(
        pStart,
        [](const OrvSnBaseNode* pAt, const auto& visit) {
            for (const OrvSnBaseNode::Input& Input : pAt->inputs())
                visit(Input.pNode);
        },
        [&Nodes](const OrvSnBaseNode* pAt) { return Nodes.contains(pAt); });
}

bool OrvLayerViewUtils::feedsUserShader(const OrvLayerStack* pLayerStack)
{
    const OrvLayerShaderManager& Shaders = OrvLayerShaderManager::instance();
    return anyReachable(
        pLayerStack->topNode(),
        [](const OrvSnBaseNode* pAt, const auto& visit) {
            for (const OrvSnBaseNode::Consumer& Consumer : pAt->consumers())
                visit(Consumer.pNode);
        },
        [&Shaders](const OrvSnBaseNode* pAt) {
            return pAt->hasTag(OrvSnNames::ShaderTag) && !Shaders.isSystemShaderNode(pAt, false);
        });
}

void OrvLayerViewUtils::warn(const QString& Title, const QString& Error)
{
    if (!Error.isEmpty())
        QMessageBox::warning(&OrvMainWindow::instance(), Title, Error, QMessageBox::Ok);
}

void OrvLayerViewUtils::tell(const QString& Reason)
{
    constexpr int Duration = 6000; // ms
    OrvStatusManager::instance().showMessage(Reason, Duration);
}

void OrvLayerViewUtils::report(int Line, const QString& Message)
{
    OrvDebug("OrvLayerView", Line, Message, false, false);
}

void OrvLayerViewUtils::report(int Line, const char* pMessage)
{
    report(Line, QString::fromLatin1(pMessage));
}
