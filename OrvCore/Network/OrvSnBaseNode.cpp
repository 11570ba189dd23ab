#include "OrvCore/Network/OrvSnBaseNode.h"

#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Network/OrvInputStep.h"
#include "OrvCore/Network/OrvNodeDescription.h"
#include "OrvCore/Network/OrvNodeEdits.h"
#include "OrvCore/Network/OrvNodeEvaluation.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Engine/OrvEngineNode.h"

namespace {

bool isSystemNode(const OrvSnBaseNode* pNode)
{
    const OrvShaderNetwork* pNetwork = pNode->network();
    return pNetwork && pNetwork->systemNodes().contains(const_cast<OrvSnBaseNode*>(pNode));
}

/// A node that no network holds has no history, and neither has one that is no part of the document.
bool hasHistory(const OrvSnBaseNode* pNode)
{
    return pNode->network() && !isSystemNode(pNode);
}

} // namespace

OrvSnBaseNode::OrvSnBaseNode(const QStringList& InputNames, const QStringList& Tags)
    : m_Tags(Tags)
{
    // A node is found by its identity from the moment it enters a network.
    leaveReferenceTable();
    for (const QString& InputName : InputNames)
        m_Inputs.append({InputName, nullptr, QString()});
}

OrvSnBaseNode::~OrvSnBaseNode() = default;

QString OrvSnBaseNode::typeLabel() const
{
    return typeName();
}

bool OrvSnBaseNode::hasInput(const QString& InputName) const
{
    return std::any_of(
        m_Inputs.begin(), m_Inputs.end(), [&](const Input& Candidate) { return Candidate.Name == InputName; });
}

OrvSnBaseNode* OrvSnBaseNode::inputNode(const QString& InputName) const
{
    for (const Input& Candidate : m_Inputs) {
        if (Candidate.Name == InputName)
            return Candidate.pNode;
    }
    return nullptr;
}

QString OrvSnBaseNode::inputOutputName(const QString& InputName) const
{
    for (const Input& Candidate : m_Inputs) {
        if (Candidate.Name == InputName)
            return Candidate.OutputName;
    }
    return {};
}

bool OrvSnBaseNode::addInput(const QString& InputName, int Index)
{
    if (hasInput(InputName))
        return false;
    m_Inputs.insert(qBound(0, Index, m_Inputs.size()), {InputName, nullptr, QString()});
    return true;
}

QString OrvSnBaseNode::preferredInput() const
{
    return m_Inputs.isEmpty() ? QString() : m_Inputs.first().Name;
}

std::unique_ptr<OrvEngineNode> OrvSnBaseNode::createEngineNode() const
{
    return nullptr;
}

void OrvSnBaseNode::describeInputStep(const QString&, OrvInputStep&) const { }

QStringList OrvSnBaseNode::enginePadInputs() const
{
    return m_Inputs.isEmpty() ? QStringList() : QStringList{m_Inputs.first().Name};
}

QVariant OrvSnBaseNode::field(Field Which) const
{
    switch (Which) {
    case Field::Name:
        return m_Name;
    case Field::Locked:
        return m_Locked;
    case Field::Blocked:
        return m_Blocked;
    case Field::Enabled:
        return m_Enabled;
    case Field::CacheActive:
        return int(m_CacheActive);
    case Field::Position:
        return m_Position;
    }
    return {};
}

void OrvSnBaseNode::editField(Field Which, const QVariant& Value, const QString& Text, bool Undoable)
{
    if (field(Which) == Value)
        return;
    if (hasHistory(this) && Undoable)
        OrvUndoManager::instance().perform(std::make_unique<OrvNodeFieldEdit>(this, Which, Value, Text));
    else
        applyField(Which, Value);
}

void OrvSnBaseNode::applyField(Field Which, const QVariant& Value)
{
    OrvShaderNetworkManager& Manager = OrvShaderNetworkManager::instance();
    switch (Which) {
    case Field::Name:
        m_Name = Value.toString();
        if (!m_pNetwork)
            return;
        Q_EMIT nameChanged(m_Name);
        Q_EMIT Manager.nodeNameChanged(this, m_Name);
        break;
    case Field::Locked:
        m_Locked = Value.toBool();
        if (m_pNetwork)
            Q_EMIT Manager.nodeLockedChanged(this, m_Locked);
        break;
    case Field::Blocked:
        m_Blocked = Value.toBool();
        if (m_pNetwork)
            Q_EMIT Manager.nodeBlockedChanged(this, m_Blocked);
        break;
    case Field::Enabled:
        applyEnabled(Value.toBool());
        if (m_pNetwork)
            Q_EMIT Manager.nodeEnabledChanged(this, m_Enabled ? 1 : 0);
        break;
    case Field::CacheActive:
        m_CacheActive = OrvSnBaseNodeCacheActiveState(Value.toInt());
        if (!m_pNetwork)
            return;
        OrvChainTargets::invalidate();
        OrvNodeEvaluation::parametersChanged(this);
        Q_EMIT Manager.nodeCacheActiveChanged(this, m_CacheActive);
        break;
    case Field::Position:
        m_Position = Value.toPointF();
        if (m_pNetwork)
            Q_EMIT Manager.nodePositionChanged(this);
        break;
    }
}

void OrvSnBaseNode::applyTags(const QStringList& Tags)
{
    const QStringList Before = std::exchange(m_Tags, Tags);
    if (!m_pNetwork)
        return;
    OrvShaderNetworkManager& Manager = OrvShaderNetworkManager::instance();
    Manager.structureChanged();
    for (const QString& Tag : Before + m_Tags) {
        if (Before.contains(Tag) != m_Tags.contains(Tag))
            Q_EMIT Manager.nodeTagsChanged(this, Tag);
    }
}

void OrvSnBaseNode::editTag(const QString& Tag, bool Carried, const QString& Text, bool Undoable)
{
    if (Tag.isEmpty() || hasTag(Tag) == Carried)
        return;
    auto pEdit = std::make_unique<OrvNodeTagEdit>(this, Tag, Carried, Text);
    if (hasHistory(this) && Undoable)
        OrvUndoManager::instance().perform(std::move(pEdit));
    else
        pEdit->redo();
}

void OrvSnBaseNode::applyEnabled(bool Enabled)
{
    const bool StoodForAnother = isEvaluationAlias();
    m_Enabled = Enabled;
    if (!m_pNetwork)
        return;
    if (isEvaluationAlias() == StoodForAnother) {
        OrvNodeEvaluation::parametersChanged(this);
        return;
    }
    // An operation that is switched off stands for what it reads: its readers read past it, or read it again.
    for (const Consumer& Reader : qAsConst(m_Consumers))
        OrvNodeEvaluation::inputReconnected(Reader.pNode, Reader.InputName);
    if (!StoodForAnother)
        OrvNodeEvaluation::removed(this);
}

void OrvSnBaseNode::setName(const QString& Name)
{
    const QString Known = m_Name.isEmpty() ? typeLabel() : m_Name;
    editField(Field::Name, Name, tr("Rename '%1' to '%2'").arg(Known, Name));
}

void OrvSnBaseNode::addTag(const QString& Tag, bool Undoable)
{
    editTag(Tag, true, tr("Tag '%1'").arg(m_Name), Undoable);
}

void OrvSnBaseNode::removeTag(const QString& Tag, bool Undoable)
{
    editTag(Tag, false, tr("Untag '%1'").arg(m_Name), Undoable);
}

void OrvSnBaseNode::setLocked(bool Locked)
{
    editField(Field::Locked, Locked, (Locked ? tr("Lock '%1'") : tr("Unlock '%1'")).arg(m_Name));
}

void OrvSnBaseNode::setBlocked(bool Blocked)
{
    editField(Field::Blocked, Blocked, (Blocked ? tr("Block '%1'") : tr("Unblock '%1'")).arg(m_Name));
}

void OrvSnBaseNode::setEnabledAsBool(bool Enabled)
{
    editField(Field::Enabled, Enabled, (Enabled ? tr("Show '%1'") : tr("Hide '%1'")).arg(m_Name));
}

void OrvSnBaseNode::setCacheActive(OrvSnBaseNodeCacheActiveState State)
{
    editField(Field::CacheActive, int(State), (State ? tr("Cache '%1'") : tr("Uncache '%1'")).arg(m_Name));
}

void OrvSnBaseNode::setPosition(const QPointF& Position)
{
    editField(Field::Position, Position, tr("Move '%1'").arg(m_Name));
}

bool OrvSnBaseNode::connectInput(const QString& InputName, OrvSnBaseNode* pNode, const QString& OutputName)
{
    if (!hasInput(InputName))
        return false;
    if (inputNode(InputName) == pNode && inputOutputName(InputName) == OutputName)
        return true;
    if (pNode && (pNode->m_pNetwork != m_pNetwork || isSystemNode(pNode)))
        return false;
    if (m_pNetwork && m_pNetwork->wouldConnectionBreakDAG(pNode, this))
        return false;
    auto pEdit = std::make_unique<OrvNodeConnectionEdit>(this, InputName, pNode, OutputName);
    if (m_pNetwork)
        OrvUndoManager::instance().perform(std::move(pEdit));
    else
        pEdit->redo();
    return true;
}

void OrvSnBaseNode::disconnectOutputs()
{
    const QVector<Consumer> Fed = m_Consumers;
    for (const Consumer& One : Fed)
        One.pNode->disconnectInput(One.InputName);
}

void OrvSnBaseNode::applyConnection(const QString& InputName, OrvSnBaseNode* pNode, const QString& OutputName)
{
    for (Input& Candidate : m_Inputs) {
        if (Candidate.Name != InputName)
            continue;
        OrvSnBaseNode* pOld = std::exchange(Candidate.pNode, pNode);
        Candidate.OutputName = OutputName;
        if (pOld)
            pOld->m_Consumers.removeOne({this, InputName});
        if (pNode)
            pNode->m_Consumers.append({this, InputName});
        if (!m_pNetwork)
            return;
        OrvShaderNetworkManager& Manager = OrvShaderNetworkManager::instance();
        Manager.structureChanged();
        OrvNodeEvaluation::inputReconnected(this, InputName, pOld);
        Q_EMIT inputNodeChanged(InputName, pNode, OutputName);
        Q_EMIT Manager.nodeReconnected(m_pNetwork, InputName, pNode, this);
        Q_EMIT Manager.nodeReconnected(m_pNetwork, InputName, this, pNode, pOld);
        return;
    }
}

void OrvSnBaseNode::dropInputs()
{
    for (Input& Dropped : m_Inputs) {
        if (OrvSnBaseNode* pOld = std::exchange(Dropped.pNode, nullptr))
            pOld->m_Consumers.removeOne({this, Dropped.Name});
    }
}

void OrvSnBaseNode::setLayout(int LayoutType, OrvSnBaseNode* pReference, bool, bool Undoable)
{
    constexpr int DownstreamOfReference = 9;
    constexpr qreal ColumnWidth = 180.0;
    // A node without a place of its own is where the node graph arranges it, and so is what stands beside it.
    if (!pReference || pReference->position().isNull() || LayoutType != DownstreamOfReference)
        return;
    editField(Field::Position, pReference->position() + QPointF(ColumnWidth, 0.0), tr("Move '%1'").arg(m_Name),
        Undoable);
}

void OrvSnBaseNode::propagateDeleteCache(bool)
{
    const OrvUndoManager::AutoMacro Macro(tr("Delete Caches"));
    QSet<OrvSnBaseNode*> Seen{this};
    QVector<OrvSnBaseNode*> Pending{this};
    while (!Pending.isEmpty()) {
        OrvSnBaseNode* pNode = Pending.takeLast();
        pNode->setCacheActive(OrvSnCacheInactive);
        pNode->setUserAttributeValue(OrvMergeAttributes::LayerCached, false);
        for (const Consumer& One : pNode->consumers()) {
            if (!Seen.contains(One.pNode)) {
                Seen.insert(One.pNode);
                Pending.append(One.pNode);
            }
        }
    }
}

void OrvSnBaseNode::editAttribute(const OrvCustomAttribute& Before, const OrvCustomAttribute& After)
{
    const bool ViewState = (After.name().isEmpty() ? Before : After).isViewState();
    auto pEdit = std::make_unique<OrvNodeAttributeEdit>(this, Before, After);
    if (hasHistory(this) && !ViewState)
        OrvUndoManager::instance().perform(std::move(pEdit));
    else
        pEdit->redo();
}

void OrvSnBaseNode::setUserAttributeValue(const QString& Name, const QVariant& Value)
{
    const OrvCustomAttribute Before = userAttribute(Name);
    if (Before.name().isEmpty() || Before.value() == Value)
        return;
    OrvCustomAttribute After = Before;
    After.setValue(Value);
    editAttribute(Before, After);
}

void OrvSnBaseNode::setUserAttributeEnabled(const QString& Name, bool Enabled)
{
    const OrvCustomAttribute Before = userAttribute(Name);
    if (Before.name().isEmpty() || Before.isEnabled() == Enabled)
        return;
    OrvCustomAttribute After = Before;
    After.setEnabled(Enabled);
    editAttribute(Before, After);
}

void OrvSnBaseNode::createUserAttribute(const OrvCustomAttribute& Attribute)
{
    if (!Attribute.name().isEmpty() && !(userAttribute(Attribute.name()) == Attribute))
        editAttribute(userAttribute(Attribute.name()), Attribute);
}

void OrvSnBaseNode::removeUserAttribute(const QString& Name)
{
    const OrvCustomAttribute Before = userAttribute(Name);
    if (!Before.name().isEmpty())
        editAttribute(Before, OrvCustomAttribute());
}

void OrvSnBaseNode::applyUserAttribute(const OrvCustomAttribute& Attribute)
{
    const bool Created = !exists(Attribute.name());
    OrvSerializableObject::applyUserAttribute(Attribute);
    if (!m_pNetwork)
        return;
    OrvNodeEvaluation::parametersChanged(this);
    OrvShaderNetworkManager& Manager = OrvShaderNetworkManager::instance();
    if (Created)
        Q_EMIT Manager.nodeUserAttributeCreated(this, Attribute.name());
    Q_EMIT Manager.nodeUserAttributeChanged(this, Attribute.name());
}

void OrvSnBaseNode::applyUserAttributeRemoval(const QString& Name)
{
    OrvSerializableObject::applyUserAttributeRemoval(Name);
    if (!m_pNetwork)
        return;
    OrvNodeEvaluation::parametersChanged(this);
    Q_EMIT OrvShaderNetworkManager::instance().nodeUserAttributeRemoved(this, Name);
}

void OrvSnBaseNode::enterNetwork(OrvShaderNetwork* pNetwork)
{
    m_pNetwork = pNetwork;
    setReferenced(pNetwork != nullptr);
}

void OrvSnBaseNode::setReferenced(bool Referenced)
{
    if (Referenced)
        enterReferenceTable();
    else
        leaveReferenceTable();
    // What it holds comes and goes with it.
    if (const OrvShaderNetwork* pNested = nestedNetwork()) {
        for (OrvSnBaseNode* pNode : pNested->nodes())
            pNode->setReferenced(Referenced);
    }
}

void OrvSnBaseNode::describe(OrvNodeDescription&) const { }

void OrvSnBaseNode::adopt(const OrvNodeDescription&) { }

#include "moc_OrvSnBaseNode.cpp"
