#include "OrvCore/Shaders/OrvLayerShaderUtils.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Layers/OrvEditObstacle.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Layers/OrvSnapshotClipboard.h"
#include "OrvCore/Network/OrvNodeDescription.h"
#include "OrvCore/Network/OrvNodeRegistry.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCore/Shaders/OrvMultiChannelLayerUtils.h"
#include "OrvCore/Shaders/OrvSnSystemShaderNode.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QJsonDocument>
#include <QtCore/QPointer>
#include <QtCore/QRegularExpression>
#include <QtWidgets/QUndoCommand>

/// Another shader becomes current and another one of the user's the chosen one, as a part of an edit that
/// makes or removes shaders: its undo brings both back.
class OrvCurrentShaderEdit : public QUndoCommand {
public:
    OrvCurrentShaderEdit(OrvShaderNetwork* pNetwork, OrvSnBaseNode* pCurrent, OrvSnBaseNode* pSelected)
        : m_pNetwork(pNetwork)
        , m_Before(now())
        , m_After(stateOf(pCurrent, pSelected))
    {
    }
    void undo() override { put(m_Before); }
    void redo() override { put(m_After); }

private:
    struct State {
        QPointer<OrvSnBaseNode> pCurrent, pSelected;
        QString SystemKind; ///< of the current one; system shaders may be made anew
    };

    static State stateOf(OrvSnBaseNode* pCurrent, OrvSnBaseNode* pSelected)
    {
        const auto* pSystem = qobject_cast<const OrvSnSystemShaderNode*>(pCurrent);
        return {pCurrent, pSelected, pSystem ? pSystem->kind() : QString()};
    }

    State now() const
    {
        const OrvLayerShaderManager& Manager = OrvLayerShaderManager::instance();
        const OrvLayerShader* pCurrent = Manager.currentLayerShader(m_pNetwork);
        return stateOf(pCurrent ? pCurrent->node() : nullptr, Manager.selectedUserShaderNode(m_pNetwork));
    }

    void put(const State& Wanted)
    {
        if (!m_pNetwork)
            return;
        OrvLayerShaderManager& Manager = OrvLayerShaderManager::instance();
        Manager.select(m_pNetwork, Wanted.pSelected);
        OrvSnBaseNode* pSystem = Manager.systemShaderOfKind(m_pNetwork, Wanted.SystemKind);
        OrvLayerShader* pCurrent = Manager.getLayerShader(pSystem ? pSystem : Wanted.pCurrent.data());
        Manager.makeCurrent(m_pNetwork,
            pCurrent ? pCurrent : Manager.getLayerShader(Manager.getCurrentChannelShader(m_pNetwork)));
    }

    QPointer<OrvShaderNetwork> m_pNetwork;
    State m_Before, m_After;
};

namespace {

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvLayerShaderUtils", pText);
}

/// A shader detached from its network: its node alone.
struct ShaderSnapshot {
    OrvNodeSubgraph Nodes;

    QByteArray toBytes() const { return QJsonDocument(Nodes.toJson()).toJson(QJsonDocument::Compact); }
    static bool fromBytes(const QByteArray& Bytes, ShaderSnapshot& Snapshot, QString& Error)
    {
        OrvNodeSubgraph Read;
        const QJsonDocument Json = QJsonDocument::fromJson(Bytes);
        if (!Json.isArray() || !OrvNodeSubgraph::fromJson(Json.array(), Read, Error)
            || Read.nodes().size() != 1) {
            Error = tr("The shader on the clipboard is damaged");
            return false;
        }
        Snapshot.Nodes = Read;
        return true;
    }
};

const OrvSnapshotClipboard<ShaderSnapshot>& clipboard()
{
    static const OrvSnapshotClipboard<ShaderSnapshot> Shaders(
        QStringLiteral("application/x-orvi-shader-clipboard"));
    return Shaders;
}

void makeCurrent(OrvSnBaseNode* pShaderNode)
{
    OrvUndoManager::instance().perform(
        std::make_unique<OrvCurrentShaderEdit>(pShaderNode->network(), pShaderNode, pShaderNode));
}

/// What the shader was current or chosen for falls to others, before it leaves. Whether it was either.
bool resign(OrvSnBaseNode* pShaderNode)
{
    const OrvLayerShaderManager& Manager = OrvLayerShaderManager::instance();
    OrvShaderNetwork* pNetwork = pShaderNode->network();
    const OrvLayerShader* pCurrent = Manager.currentLayerShader(pNetwork);
    OrvSnBaseNode* pCurrentNode = pCurrent ? pCurrent->node() : nullptr;
    OrvSnBaseNode* pSelected = Manager.selectedUserShaderNode(pNetwork);
    if (pCurrentNode != pShaderNode && pSelected != pShaderNode)
        return false;
    OrvUndoManager::instance().perform(std::make_unique<OrvCurrentShaderEdit>(pNetwork,
        pCurrentNode == pShaderNode ? Manager.getCurrentChannelShader(pNetwork) : pCurrentNode,
        pSelected == pShaderNode ? nullptr : pSelected));
    return true;
}

/// Whoever was told of the removal may have chosen another one, which redo chooses again.
void keepSuccessor(OrvShaderNetwork* pNetwork)
{
    const OrvLayerShaderManager& Manager = OrvLayerShaderManager::instance();
    const OrvLayerShader* pCurrent = Manager.currentLayerShader(pNetwork);
    OrvUndoManager::instance().perform(std::make_unique<OrvCurrentShaderEdit>(
        pNetwork, pCurrent ? pCurrent->node() : nullptr, Manager.selectedUserShaderNode(pNetwork)));
}

/// The nodes of a subgraph that holds one shader, in the network; it stands alone there.
OrvLayerShader* instantiate(const OrvNodeSubgraph& Subgraph, OrvShaderNetwork* pNetwork)
{
    const QVector<OrvSnBaseNode*> Made = Subgraph.instantiate(pNetwork);
    OrvLayerShader* pShader
        = Made.isEmpty() ? nullptr : OrvLayerShaderManager::instance().getLayerShader(Made.first());
    if (!pShader)
        return nullptr;
    OrvSnBaseNode* pNode = pShader->node();
    pNode->removeTag(OrvSnNames::StackShaderTag);
    // Another one of that name is there when it was copied within its network.
    const QString Name = pNode->name();
    pNode->setName(QString());
    pNode->setName(OrvLayerShaderUtils::generateUniqueName(pNetwork, Name));
    makeCurrent(pNode);
    return pShader;
}

bool holdMultiChannelLayers(const QList<OrvShaderInput*>& Channels, const OrvShadingModel* pModel)
{
    return pModel && std::any_of(Channels.begin(), Channels.end(), [pModel](OrvShaderInput* pChannel) {
        return OrvLayerStreamUtils::containsMultiChannelLayers(pChannel, pModel);
    });
}

/// What becomes of the multi-channel layers of channels that leave a shader.
bool releaseMultiChannelLayers(
    const QList<OrvShaderInput*>& Channels, const OrvShadingModel* pModel, bool Disconnect)
{
    if (!holdMultiChannelLayers(Channels, pModel))
        return true;
    if (!Disconnect)
        return OrvMultiChannelLayerUtils::convertToStandardLayers(Channels, pModel);
    OrvMultiChannelLayerUtils::removeFromChannels(Channels, pModel);
    return true;
}

QList<OrvLayer*> layersThatShow(const OrvSnBaseNode* pShaderNode)
{
    QList<OrvLayer*> Layers;
    for (const OrvSnBaseNode::Consumer& Reader : pShaderNode->consumers()) {
        if (OrvLayer* pLayer = OrvLayerManager::instance().getLayer(Reader.pNode, true))
            Layers.append(pLayer);
    }
    return Layers;
}

bool deleteLayers(const QList<OrvLayer*>& Layers)
{
    for (OrvLayer* pLayer : Layers) {
        for (OrvLayerStack* pStack : pLayer->stacks())
            pStack->deleteLayers({pLayer});
        if (pLayer->blendNode()->network())
            return false;
    }
    return true;
}

} // namespace

namespace OrvLayerShaderUtils {

QString generateUniqueName(const OrvShaderNetwork* pNetwork, const QString& Base)
{
    QStringList Taken;
    for (const OrvSnBaseNode* pNode : OrvLayerShaderManager::instance().getShaderNodes(pNetwork, true))
        Taken.append(pNode->name());
    if (!Taken.contains(Base))
        return Base;
    // The copy of a numbered one bears the next number.
    const QRegularExpressionMatch Numbered
        = QRegularExpression(QStringLiteral("^(.*\\S) (\\d{1,6})$")).match(Base);
    const QString Stem = Numbered.hasMatch() ? Numbered.captured(1) : Base;
    int Number = Numbered.hasMatch() ? Numbered.captured(2).toInt() : 1;
    QString Name;
    do
        Name = QStringLiteral("%1 %2").arg(Stem).arg(++Number);
    while (Taken.contains(Name));
    return Name;
}

OrvLayerShader* createShaderFromKey(const QString& Key, bool MakeCurrent)
{
    OrvShaderNetwork* pNetwork = OrvShaderNetworkManager::instance().currentShaderNetwork();
    std::unique_ptr<OrvSnBaseNode> pMade = OrvNodeRegistry::instance().create(Key);
    if (!pNetwork || !pMade || !pMade->hasTag(OrvSnNames::ShaderTag))
        return nullptr;
    OrvLayerShaderManager& Manager = OrvLayerShaderManager::instance();
    const OrvUndoManager::AutoMacro Macro(tr("Add Shader"));
    const QString Label = pMade->typeLabel();
    if (Manager.layerShaderCreating())
        pMade->addTag(OrvSnNames::StackShaderTag);
    OrvSnBaseNode* pNode = OrvChainEditing::addNode(
        pNetwork, std::move(pMade), generateUniqueName(pNetwork, Label), nullptr, 0, 0);
    if (MakeCurrent && !Manager.layerShaderCreating())
        makeCurrent(pNode);
    return Manager.getLayerShader(pNode);
}

OrvLayerShader* duplicateLayerShader(OrvLayerShader* pShader, QString& Error)
{
    Error.clear();
    if (!pShader || !pShader->node()->network()
        || OrvLayerShaderManager::instance().isSystemShader(pShader)) {
        Error = tr("There is no shader to duplicate");
        return nullptr;
    }
    if (holdMultiChannelLayers(pShader->inputShaderInputs(), pShader->shaderModel())) {
        Error = tr(
            "'%1' cannot be duplicated: its channels hold multi-channel layers, which belong to one shader")
                    .arg(pShader->name());
        return nullptr;
    }
    const OrvUndoManager::AutoMacro Macro(tr("Duplicate Shader '%1'").arg(pShader->name()));
    return instantiate(OrvNodeSubgraph::capture({pShader->node()}), pShader->node()->network());
}

bool destroy(OrvLayerShader* pShader, bool DisconnectMultiChannelLayers)
{
    OrvSnBaseNode* pNode = pShader ? pShader->node() : nullptr;
    OrvShaderNetwork* pNetwork = pNode ? pNode->network() : nullptr;
    OrvLayerShaderManager& Manager = OrvLayerShaderManager::instance();
    if (!pNetwork || Manager.isSystemShader(pShader))
        return false;
    OrvUndoManager::AutoMacro Macro(tr("Remove Shader '%1'").arg(pShader->name()));
    if (!releaseMultiChannelLayers(
            pShader->inputShaderInputs(), pShader->shaderModel(), DisconnectMultiChannelLayers)) {
        Macro.cancel();
        return false;
    }
    const bool WasCurrentOrChosen = resign(pNode);
    const QList<OrvLayer*> Layers = layersThatShow(pNode);
    if (!Layers.isEmpty() && Manager.isListed(pShader)) {
        pNode->addTag(OrvSnNames::StackShaderTag);
        return true;
    }
    if (!deleteLayers(Layers)) {
        Macro.cancel();
        return false;
    }
    if (pNode->network())
        pNetwork->removeNode(pNode);
    if (WasCurrentOrChosen)
        keepSuccessor(pNetwork);
    return true;
}

QString obstacleToRemoval(const OrvLayerShader* pShader)
{
    if (!pShader || OrvLayerShaderManager::instance().isListed(pShader))
        return QString();
    QStringList Obstacles;
    for (const OrvLayer* pLayer : layersThatShow(pShader->node()))
        Obstacles.append(OrvEditObstacle::of(pLayer));
    return OrvEditObstacle::several(Obstacles);
}

bool disconnectInput(OrvLayerShader* pShader, const QString& InputName, bool DisconnectMultiChannelLayers)
{
    OrvShaderInput* pChannel = pShader ? pShader->inputShaderInput(InputName) : nullptr;
    if (!pChannel)
        return pShader && pShader->setInputShaderInput(InputName, nullptr);
    OrvUndoManager::AutoMacro Macro(tr("Disconnect %1 of '%2'").arg(InputName, pShader->name()));
    if (releaseMultiChannelLayers({pChannel}, pShader->shaderModel(), DisconnectMultiChannelLayers)
        && pShader->setInputShaderInput(InputName, nullptr))
        return true;
    Macro.cancel();
    return false;
}

void copyToClipboard(const OrvLayerShader* pShader)
{
    if (pShader && !OrvLayerShaderManager::instance().isSystemShader(pShader))
        clipboard().put({OrvNodeSubgraph::capture({pShader->node()})});
}

bool cutToClipboard(OrvLayerShader* pShader, bool DisconnectMultiChannelLayers)
{
    copyToClipboard(pShader);
    OrvUndoManager::AutoMacro Macro(tr("Cut Shader"));
    return destroy(pShader, DisconnectMultiChannelLayers);
}

OrvLayerShader* pasteFromClipboard(QString& Error, OrvShaderNetwork* pNetwork)
{
    Error.clear();
    if (!clipboard().holds())
        return nullptr;
    if (!pNetwork) {
        Error = tr("There is no object to paste the shader into");
        return nullptr;
    }
    ShaderSnapshot Copied;
    if (!clipboard().get(Copied, Error))
        return nullptr;
    OrvUndoManager::AutoMacro Macro(tr("Paste Shader"));
    OrvLayerShader* pShader = instantiate(Copied.Nodes, pNetwork);
    if (pShader)
        return pShader;
    Error = tr("What is on the clipboard is no shader");
    Macro.cancel();
    return nullptr;
}

} // namespace OrvLayerShaderUtils
