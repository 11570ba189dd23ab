#include "OrvCoreModules/Graph/OrvNodeGraphCommands.h"

#include "OrvCoreModules/Graph/OrvFreedNodePlaces.h"
#include "OrvCoreModules/Graph/OrvNodeLook.h"
#include "OrvCoreModules/Window/OrvStatusManager.h"

#include "OrvCore/Layers/OrvEditObstacle.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Network/OrvNodeDescription.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnGraphOutputNode.h"
#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCore/Network/OrvSnOperationNode.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QSet>

namespace {

constexpr int MessageTime = 6000; // ms
constexpr QPointF DuplicateOffset(30.0, 30.0);

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvNodeGraphCommands", pText);
}

/// "Delete 'Rust'" for one node, "Delete 3 Nodes" for several.
QString macroText(const QString& One, const QString& Many, const QVector<OrvSnBaseNode*>& Nodes)
{
    return Nodes.size() == 1 ? One.arg(OrvNodeLook::titleOf(Nodes.first())) : Many.arg(Nodes.size());
}

bool isChannel(const OrvSnBaseNode* pNode)
{
    return pNode->hasTag(OrvSnNames::ShaderInputTag);
}

QString frozenText(const OrvSnBaseNode* pNode)
{
    return OrvEditObstacle::ofNode(pNode, OrvNodeLook::titleOf(pNode));
}

/// Where switching off is seen in the picture.
bool canBeDisabled(const OrvSnBaseNode* pNode)
{
    return OrvLayerUtils::isLayer(pNode) || qobject_cast<const OrvSnOperationNode*>(pNode)
        || pNode->hasTag(OrvSnNames::AdjustmentStackTopTag);
}

QString removalRefusal(const OrvSnBaseNode* pNode)
{
    const QString Title = OrvNodeLook::titleOf(pNode);
    if (isChannel(pNode))
        return tr("'%1' is a channel: channels are removed in the Channels palette").arg(Title);
    if (qobject_cast<const OrvSnGraphOutputNode*>(pNode))
        return tr("'%1' is the output of the graph and stays").arg(Title);
    if (OrvNodeGraphCommands::isFrozen(pNode))
        return frozenText(pNode);
    return {};
}

/// What feeds the readers of a node that goes: the source of its preferred input, past others that go too.
OrvSnBaseNode::Input survivingSource(const OrvSnBaseNode* pNode, const QSet<OrvSnBaseNode*>& Going)
{
    OrvSnBaseNode::Input Source;
    do {
        const QString Preferred = pNode->preferredInput();
        Source.pNode = pNode->inputNode(Preferred);
        Source.OutputName = pNode->inputOutputName(Preferred);
        pNode = Source.pNode;
    } while (pNode && Going.contains(Source.pNode));
    return Source;
}

void bridge(OrvSnBaseNode* pNode, const QSet<OrvSnBaseNode*>& Going)
{
    const OrvSnBaseNode::Input Source = survivingSource(pNode, Going);
    for (const OrvSnBaseNode::Consumer& Reader : QVector<OrvSnBaseNode::Consumer>(pNode->consumers())) {
        if (!Going.contains(Reader.pNode))
            Reader.pNode->connectInput(Reader.InputName, Source.pNode, Source.OutputName);
    }
}

} // namespace

namespace OrvNodeGraphCommands {

void refuse(const QString& Reason)
{
    OrvStatusManager::instance().showMessage(Reason, MessageTime);
}

bool isFrozen(const OrvSnBaseNode* pNode)
{
    return pNode->locked() || pNode->blocked() || pNode->cacheActive() == OrvSnCacheActive
        || !OrvLayerUtils::isModificationAllowedAt(pNode);
}

QString refusal(const Link& Wanted)
{
    if (!Wanted.pSource || !Wanted.pTarget || !Wanted.pTarget->hasInput(Wanted.InputName))
        return tr("There is nothing to connect to");
    const OrvShaderNetwork* pNetwork = Wanted.pTarget->network();
    if (!pNetwork || Wanted.pSource->network() != pNetwork)
        return tr("Nodes of different graphs cannot be connected");
    if (isFrozen(Wanted.pTarget))
        return frozenText(Wanted.pTarget);
    if (pNetwork->wouldConnectionBreakDAG(Wanted.pSource, Wanted.pTarget)) {
        return tr("'%1' cannot feed '%2', which it depends on itself")
            .arg(OrvNodeLook::titleOf(Wanted.pSource), OrvNodeLook::titleOf(Wanted.pTarget));
    }
    return {};
}

bool connect(const Link& Wanted)
{
    const QString Reason = refusal(Wanted);
    if (!Reason.isEmpty()) {
        refuse(Reason);
        return false;
    }
    const OrvUndoManager::AutoMacro Macro(tr("Connect '%1'").arg(OrvNodeLook::titleOf(Wanted.pTarget)));
    const OrvFreedNodePlaces Places(Wanted.pTarget->network());
    const bool Connected = Wanted.pTarget->connectInput(Wanted.InputName, Wanted.pSource, Wanted.OutputName);
    Places.keep();
    return Connected;
}

bool disconnect(const QVector<OrvSnBaseNode::Consumer>& Inputs)
{
    QVector<OrvSnBaseNode::Consumer> Free;
    for (const OrvSnBaseNode::Consumer& Input : Inputs) {
        if (!Input.pNode->inputNode(Input.InputName))
            continue;
        if (isFrozen(Input.pNode))
            refuse(frozenText(Input.pNode));
        else
            Free.append(Input);
    }
    if (Free.isEmpty())
        return false;
    const OrvUndoManager::AutoMacro Macro(Free.size() == 1
            ? tr("Disconnect '%1'").arg(OrvNodeLook::titleOf(Free.first().pNode))
            : tr("Disconnect %1 Wires").arg(Free.size()));
    const OrvFreedNodePlaces Places(Free.first().pNode->network());
    for (const OrvSnBaseNode::Consumer& Input : qAsConst(Free))
        Input.pNode->disconnectInput(Input.InputName);
    Places.keep();
    return true;
}

bool reconnect(const OrvSnBaseNode::Consumer& From, const Link& To)
{
    if (From == OrvSnBaseNode::Consumer{To.pTarget, To.InputName})
        return true;
    if (isFrozen(From.pNode)) {
        refuse(frozenText(From.pNode));
        return false;
    }
    OrvUndoManager::AutoMacro Macro(tr("Connect '%1'").arg(OrvNodeLook::titleOf(To.pTarget)));
    const OrvFreedNodePlaces Places(From.pNode->network());
    From.pNode->disconnectInput(From.InputName);
    const QString Reason = refusal(To);
    if (!Reason.isEmpty()) {
        Macro.cancel();
        refuse(Reason);
        return false;
    }
    const bool Connected = To.pTarget->connectInput(To.InputName, To.pSource, To.OutputName);
    Places.keep();
    return Connected;
}

void remove(const QVector<OrvSnBaseNode*>& Nodes, const QVector<OrvSnBaseNode::Consumer>& Wires)
{
    QVector<OrvSnBaseNode*> Removable;
    for (OrvSnBaseNode* pNode : Nodes) {
        const QString Reason = removalRefusal(pNode);
        if (!Reason.isEmpty())
            refuse(Reason);
        else if (!Removable.contains(pNode))
            Removable.append(pNode);
    }
    if (Removable.isEmpty()) {
        disconnect(Wires);
        return;
    }
    const OrvUndoManager::AutoMacro Macro(macroText(tr("Delete '%1'"), tr("Delete %1 Nodes"), Removable));
    const OrvFreedNodePlaces Places(Removable.first()->network());
    disconnect(Wires);
    const QSet<OrvSnBaseNode*> Going(Removable.begin(), Removable.end());
    for (OrvSnBaseNode* pNode : qAsConst(Removable))
        bridge(pNode, Going);
    for (OrvSnBaseNode* pNode : qAsConst(Removable))
        pNode->network()->removeNode(pNode);
    Places.keep();
}

QVector<OrvSnBaseNode*> duplicate(const QVector<OrvSnBaseNode*>& Nodes)
{
    QVector<OrvSnBaseNode*> Originals;
    for (OrvSnBaseNode* pNode : Nodes) {
        if (isChannel(pNode))
            refuse(tr("'%1' is a channel: channels are duplicated in the Channels palette")
                       .arg(OrvNodeLook::titleOf(pNode)));
        else if (!qobject_cast<OrvSnGraphOutputNode*>(pNode))
            Originals.append(pNode);
    }
    if (Originals.isEmpty())
        return {};
    const OrvUndoManager::AutoMacro Macro(
        macroText(tr("Duplicate '%1'"), tr("Duplicate %1 Nodes"), Originals));
    const QVector<OrvSnBaseNode*> Copies
        = OrvNodeSubgraph::capture(Originals).instantiate(Originals.first()->network());
    for (OrvSnBaseNode* pCopy : Copies) {
        pCopy->setLocked(false);
        if (!pCopy->position().isNull())
            pCopy->setPosition(pCopy->position() + DuplicateOffset);
    }
    return Copies;
}

void rename(OrvSnBaseNode* pNode, const QString& Name)
{
    const QString Trimmed = Name.trimmed();
    if (Trimmed.isEmpty() || Trimmed == OrvNodeLook::titleOf(pNode))
        return;
    if (pNode->locked() || pNode->blocked()) {
        refuse(frozenText(pNode));
        return;
    }
    const OrvUndoManager::AutoMacro Macro(
        tr("Rename '%1' to '%2'").arg(OrvNodeLook::titleOf(pNode), Trimmed));
    pNode->setName(Trimmed);
}

void toggleEnabled(const QVector<OrvSnBaseNode*>& Nodes)
{
    QVector<OrvSnBaseNode*> Switched;
    for (OrvSnBaseNode* pNode : Nodes) {
        if (!canBeDisabled(pNode))
            refuse(tr("'%1' cannot be switched off").arg(OrvNodeLook::titleOf(pNode)));
        else if (isFrozen(pNode))
            refuse(frozenText(pNode));
        else
            Switched.append(pNode);
    }
    if (Switched.isEmpty())
        return;
    const bool Enable = std::any_of(
        Switched.begin(), Switched.end(), [](const OrvSnBaseNode* pNode) { return !pNode->enabledAsBool(); });
    const OrvUndoManager::AutoMacro Macro(Enable
            ? macroText(tr("Enable '%1'"), tr("Enable %1 Nodes"), Switched)
            : macroText(tr("Disable '%1'"), tr("Disable %1 Nodes"), Switched));
    for (OrvSnBaseNode* pNode : qAsConst(Switched))
        pNode->setEnabledAsBool(Enable);
}

void toggleLocked(const QVector<OrvSnBaseNode*>& Nodes)
{
    if (Nodes.isEmpty())
        return;
    const bool Lock = std::any_of(
        Nodes.begin(), Nodes.end(), [](const OrvSnBaseNode* pNode) { return !pNode->locked(); });
    const OrvUndoManager::AutoMacro Macro(Lock ? macroText(tr("Lock '%1'"), tr("Lock %1 Nodes"), Nodes)
                                               : macroText(tr("Unlock '%1'"), tr("Unlock %1 Nodes"), Nodes));
    for (OrvSnBaseNode* pNode : Nodes)
        pNode->setLocked(Lock);
}

void move(const Places& NewPlaces)
{
    if (NewPlaces.isEmpty())
        return;
    const QVector<OrvSnBaseNode*> Nodes = NewPlaces.keys().toVector();
    const OrvUndoManager::AutoMacro Macro(macroText(tr("Move '%1'"), tr("Move %1 Nodes"), Nodes));
    for (auto Place = NewPlaces.begin(); Place != NewPlaces.end(); ++Place) {
        // The origin stands for no place at all.
        Place.key()->setPosition(Place.value().isNull() ? QPointF(1.0, 0.0) : Place.value());
    }
}

void arrangeAll(OrvShaderNetwork* pNetwork)
{
    if (!pNetwork)
        return;
    const OrvUndoManager::AutoMacro Macro(tr("Arrange Nodes"));
    for (OrvSnBaseNode* pNode : pNetwork->nodes())
        pNode->setPosition(QPointF());
}

} // namespace OrvNodeGraphCommands
