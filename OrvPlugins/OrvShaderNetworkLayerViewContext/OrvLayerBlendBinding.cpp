#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerBlendBinding.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCoreModules/Properties/OrvValueEditor.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerEditScope.h"

namespace {

bool allows(const OrvLayer* pLayer, const QString& AttributeName)
{
    const OrvSnMergeNode* pNode = pLayer->blendNode();
    if (!pLayer->isBlendingModifiable() || !pNode->exists(AttributeName)
        || OrvLayerStreamUtils::isLayerGroupPassThrough(pNode))
        return false;
    return AttributeName != OrvMergeAttributes::Amount
        || (pLayer->isBlendingAmountModifiable()
            && pNode->userAttribute(OrvMergeAttributes::AmountEnabled).value().toBool());
}

} // namespace

OrvLayerBlendBinding::OrvLayerBlendBinding(OrvSnBaseNode* pBlendNode, const QString& AttributeName,
    OrvLayer* pLayer, const OrvLayerStack* pLayerStack)
    : OrvAttributeBinding(pBlendNode, AttributeName, nullptr)
    , m_AttributeName(AttributeName)
    , m_Layer(pLayer)
    , m_LayerStack(pLayerStack)
{
}

OrvLayerBlendBinding::~OrvLayerBlendBinding()
{
    // As long as the others are known.
    OrvLayerBlendBinding::finishGesture();
}

QVector<OrvLayerBlendBinding::NodeValue> OrvLayerBlendBinding::others() const
{
    QVector<NodeValue> Others;
    for (const OrvLayer* pLayer : OrvLayerEditScope::of(m_Layer, m_LayerStack)) {
        if (pLayer != m_Layer && allows(pLayer, m_AttributeName))
            Others.append({pLayer->blendNode(), pLayer->blendNode()->userAttribute(m_AttributeName).value()});
    }
    return Others;
}

void OrvLayerBlendBinding::beginGesture()
{
    if (!m_FollowsGesture) {
        m_FollowsGesture = true;
        m_Start = value();
        m_OthersAtStart = others();
    }
    OrvAttributeBinding::beginGesture();
}

void OrvLayerBlendBinding::finishGesture()
{
    OrvAttributeBinding::finishGesture();
    m_FollowsGesture = false;
    m_OthersAtStart.clear();
}

void OrvLayerBlendBinding::write(const QVariant& Value)
{
    OrvAttributeBinding::write(Value);
    // A gesture that is back where it began, or is taken back, has changed nothing.
    const bool AtStart = m_FollowsGesture && Value == m_Start;
    for (const NodeValue& Other : m_FollowsGesture ? m_OthersAtStart : others()) {
        if (Other.pNode)
            Other.pNode->setUserAttributeValue(m_AttributeName, AtStart ? Other.Value : Value);
    }
}

QString OrvLayerBlendBinding::undoText(const QVariant& Value) const
{
    return others().isEmpty() ? OrvAttributeBinding::undoText(Value)
                              : tr("Set %1 of Layers").arg(OrvValueEditor::labelFromName(m_AttributeName));
}

#include "moc_OrvLayerBlendBinding.cpp"
