#include "OrvCore/Layers/OrvLayer.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Layers/OrvLayerCost.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnBakePointNode.h"
#include "OrvCore/Network/OrvSnBottomTransparencyNode.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Network/OrvSnGraphNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnMultiChannelMergeNode.h"
#include "OrvCore/Network/OrvSnOperationNode.h"
#include "OrvCore/Project/OrvEntity.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Image/OrvImageSet.h"

#include <QtGui/QColor>

OrvLayer::OrvLayer(OrvSnMergeNode* pBlendNode)
    : m_pBlendNode(pBlendNode)
{
}

OrvLayer::~OrvLayer() = default;

OrvSnBaseNode* OrvLayer::commonNode() const
{
    return m_pBlendNode->commonNode();
}

bool OrvLayer::isMultiChannelLayer() const
{
    return m_pBlendNode->multiChannelNode() != nullptr;
}

QList<OrvLayer*> OrvLayer::inAllChannels() const
{
    QList<OrvLayer*> Layers{const_cast<OrvLayer*>(this)};
    const OrvSnMultiChannelMergeNode* pCommon = m_pBlendNode->multiChannelNode();
    for (OrvSnMergeNode* pMerge : pCommon ? pCommon->mergeNodes() : QVector<OrvSnMergeNode*>()) {
        if (pMerge != m_pBlendNode)
            Layers.append(OrvLayerManager::instance().getLayer(pMerge, true));
    }
    return Layers;
}

QString OrvLayer::name() const
{
    return commonNode()->name();
}

void OrvLayer::setName(const QString& Name)
{
    if (!Name.isEmpty())
        commonNode()->setName(Name);
}

QString OrvLayer::path(bool WithEntity) const
{
    QStringList Parts{name()};
    const OrvSnBaseNode* pNode = m_pBlendNode;
    while (pNode) {
        const QVector<OrvChainTargets::Target> Targets = OrvChainTargets::of(pNode).Targets;
        if (Targets.isEmpty())
            break;
        const OrvChainTargets::Target& Outer = Targets.first();
        const QVector<OrvSnMergeNode*> Owners = OrvChainTargets::owners(Outer);
        const OrvSnMergeNode* pOwner = Owners.isEmpty() ? nullptr : Owners.first();
        if (Outer.InputName == OrvSnNames::Mask)
            Parts.prepend(tr("Mask"));
        Parts.prepend(pOwner ? pOwner->commonNode()->name() : Outer.pNode->name());
        pNode = pOwner;
    }
    const OrvShaderNetwork* pNetwork = m_pBlendNode->network();
    if (WithEntity && pNetwork && pNetwork->geoEntity())
        Parts.prepend(pNetwork->geoEntity()->name());
    return Parts.join(QLatin1Char('/'));
}

QColor OrvLayer::color() const
{
    const QString Tag = commonNode()->userAttribute(OrvMergeAttributes::ColorTag).value().toString();
    const QMap<QString, QColor>& Known = OrvLayerUtils::validLayerColors();
    return Known.contains(Tag) ? Known.value(Tag) : QColor(Tag);
}

void OrvLayer::setColor(const QColor& Color)
{
    const QString Tag
        = Color.isValid() ? OrvLayerUtils::validLayerColors().key(Color, Color.name()) : QString();
    const OrvUndoManager::AutoMacro Macro(tr("Set Color of '%1'").arg(name()));
    commonNode()->setUserAttributeValue(OrvMergeAttributes::ColorTag, Tag);
}

OrvSnBaseNode* OrvLayer::contentNode() const
{
    return OrvChainEditing::contentOf(m_pBlendNode);
}

OrvSnBaseNode* OrvLayer::overNode() const
{
    return m_pBlendNode->inputNode(OrvSnNames::Over);
}

OrvSnBaseNode* OrvLayer::maskNode() const
{
    return m_pBlendNode->maskSource();
}

OrvSnBaseNode* OrvLayer::paintNode() const
{
    return qobject_cast<OrvSnChannelInputNode*>(contentNode());
}

OrvSnBaseNode* OrvLayer::maskPaintNode() const
{
    return qobject_cast<OrvSnChannelInputNode*>(maskNode());
}

OrvImageSet* OrvLayer::paintImageSet() const
{
    const auto* pImages = qobject_cast<OrvSnChannelInputNode*>(contentNode());
    return pImages ? pImages->imageSet() : nullptr;
}

OrvImageSet* OrvLayer::maskImageSet() const
{
    const auto* pImages = qobject_cast<OrvSnChannelInputNode*>(maskNode());
    return pImages ? pImages->imageSet() : nullptr;
}

OrvSnBaseNode* OrvLayer::adjustmentNode() const
{
    // The lowest of the operations that follow each other.
    OrvSnBaseNode* pLowest = nullptr;
    auto* pOperation = qobject_cast<OrvSnOperationNode*>(contentNode());
    while (pOperation && !pOperation->isProcedural()) {
        pLowest = pOperation;
        pOperation = qobject_cast<OrvSnOperationNode*>(pOperation->preferredInputNode());
    }
    return pLowest;
}

OrvSnBaseNode* OrvLayer::secondaryAdjustmentNode() const
{
    OrvSnBaseNode* pLowest = adjustmentNode();
    OrvSnBaseNode* pContent = contentNode();
    return pLowest && pLowest != pContent ? pContent : nullptr;
}

OrvSnBaseNode* OrvLayer::graphNode() const
{
    return qobject_cast<OrvSnGraphNode*>(contentNode());
}

OrvSnBaseNode* OrvLayer::proceduralNode() const
{
    auto* pOperation = qobject_cast<OrvSnOperationNode*>(contentNode());
    return pOperation && pOperation->isProcedural() ? pOperation : nullptr;
}

OrvSnBakePointNode* OrvLayer::bakePointNode() const
{
    return qobject_cast<OrvSnBakePointNode*>(contentNode());
}

bool OrvLayer::isBakePointLayer() const
{
    return bakePointNode() != nullptr;
}

OrvSnBaseNode* OrvLayer::shaderNode() const
{
    OrvSnBaseNode* pContent = contentNode();
    return pContent && pContent->hasTag(OrvSnNames::ShaderTag) ? pContent : nullptr;
}

OrvShaderInput* OrvLayer::sharedShaderInput() const
{
    return OrvShaderInputUtils::getShaderInput(contentNode());
}

bool OrvLayer::isGroupLayer() const
{
    OrvSnBaseNode* pContent = contentNode();
    return qobject_cast<OrvSnMergeNode*>(pContent) || qobject_cast<OrvSnBottomTransparencyNode*>(pContent);
}

bool OrvLayer::canHaveAdjustmentStack() const
{
    return contentNode() && !isAdjustmentLayer() && !isShaderLayer() && !isBakePointLayer();
}

bool OrvLayer::isVisible() const
{
    return commonNode()->enabledAsBool();
}

void OrvLayer::setVisible(bool Visible)
{
    commonNode()->setEnabledAsBool(Visible);
}

bool OrvLayer::isVisibleHere() const
{
    return m_pBlendNode->isShown();
}

void OrvLayer::setVisibleHere(bool Visible)
{
    const OrvUndoManager::AutoMacro Macro((Visible ? tr("Show Layer '%1'") : tr("Hide Layer '%1'")).arg(name()));
    if (Visible || !isMultiChannelLayer())
        setVisible(Visible);
    if (isMultiChannelLayer())
        m_pBlendNode->setEnabledAsBool(Visible);
}

bool OrvLayer::isVisibilityChangeable() const
{
    const QList<OrvLayer*> Everywhere = inAllChannels();
    return std::all_of(Everywhere.begin(), Everywhere.end(),
        [](const OrvLayer* pLayer) { return OrvLayerUtils::isModificationAllowedAt(pLayer->blendNode()); });
}

bool OrvLayer::isLocked() const
{
    return commonNode()->locked() || m_pBlendNode->locked();
}

void OrvLayer::setLocked(bool Locked)
{
    commonNode()->setLocked(Locked);
    // One channel's part has no lock of its own that the user could open.
    if (!Locked)
        m_pBlendNode->setLocked(false);
}

bool OrvLayer::isDownstreamLocked() const
{
    const QVector<OrvSnBaseNode*> Containers = OrvChainTargets::containers(m_pBlendNode);
    return std::any_of(Containers.begin(), Containers.end(),
        [](const OrvSnBaseNode* pContainer) { return pContainer->locked() || pContainer->blocked(); });
}

void OrvLayer::unlockLockedAncestorLayers()
{
    OrvLayerUtils::unlockLockedAncestorLayers(m_pBlendNode);
}

bool OrvLayer::isModifiable() const
{
    const QList<OrvLayer*> Affected = inAllChannels() + getOtherSharers();
    return std::all_of(Affected.begin(), Affected.end(),
        [](const OrvLayer* pLayer) { return OrvLayerUtils::isLayerModifiable(pLayer); });
}

bool OrvLayer::isBlendingModifiable() const
{
    return OrvLayerUtils::isLayerModifiable(this);
}

bool OrvLayer::isBlendingAmountModifiable() const
{
    return isBlendingModifiable();
}

bool OrvLayer::isMoveable() const
{
    return OrvLayerUtils::isLayerModifiable(this);
}

void OrvLayer::setSelected(bool Selected, bool Notify)
{
    if (m_Selected == Selected)
        return;
    m_Selected = Selected;
    if (OrvShaderNetwork* pNetwork = m_pBlendNode->network())
        pNetwork->setSelected(m_pBlendNode, Selected);
    if (Notify)
        Q_EMIT selectedChanged(Selected, this);
}

bool OrvLayer::isCurrent() const
{
    return OrvLayerManager::instance().currentLayer(m_pBlendNode->network()) == this;
}

void OrvLayer::makeCurrent(bool Undoable, bool WithStack)
{
    OrvShaderNetwork* pNetwork = m_pBlendNode->network();
    if (!pNetwork)
        return;
    OrvLayerManager& Manager = OrvLayerManager::instance();
    if (WithStack) {
        // The stack that is current stays so when the layer stands in it.
        const QList<OrvLayerStack*> Stacks = stacks();
        OrvShaderInputManager& Channels = OrvShaderInputManager::instance();
        const QList<OrvShaderInput*> Parents = OrvShaderInputUtils::findParents(m_pBlendNode, QString());
        if (!Parents.isEmpty() && !Parents.contains(Channels.currentShaderInput(pNetwork)))
            Channels.makeShaderInputCurrent(Parents.first(), true);
        if (!Stacks.isEmpty() && parentGroup() == nullptr && !Stacks.contains(Manager.currentLayerStack()))
            Manager.setCurrentLayerStack(Stacks.first());
    }
    Manager.setCurrentLayer(pNetwork, this, Undoable);
    if (WithStack) {
        pNetwork->selectNone({m_pBlendNode});
        setSelected(true);
    }
}

double OrvLayer::cost() const
{
    return OrvLayerCost::of(m_pBlendNode).total();
}

QString OrvLayer::costDescription() const
{
    return OrvLayerCost::of(m_pBlendNode).description();
}

OrvLayer* OrvLayer::parentGroup() const
{
    const QVector<OrvChainTargets::Target> Targets = OrvChainTargets::of(m_pBlendNode).Targets;
    for (const OrvChainTargets::Target& Target : Targets) {
        const OrvSnBaseNode* pTop = Target.pNode->inputNode(Target.InputName);
        if (Target.InputName == OrvSnNames::Mask || !pTop || pTop->hasTag(OrvSnNames::AdjustmentStackTopTag))
            continue;
        const QVector<OrvSnMergeNode*> Owners = OrvChainTargets::owners(Target);
        if (!Owners.isEmpty())
            return OrvLayerManager::instance().getLayer(Owners.first(), true);
    }
    return nullptr;
}

QList<OrvLayerStack*> OrvLayer::stacks() const
{
    QList<OrvLayerStack*> Stacks;
    const QVector<OrvChainTargets::Target> Targets = OrvChainTargets::of(m_pBlendNode).Targets;
    for (const OrvChainTargets::Target& Target : Targets) {
        if (OrvLayerStack* pStack = OrvLayerStack::getLayerStack(Target.pNode, Target.InputName))
            Stacks.append(pStack);
    }
    return Stacks;
}

#include "moc_OrvLayer.cpp"
