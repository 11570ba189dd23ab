#include "OrvCoreModules/Graph/OrvFreedNodePlaces.h"

#include "OrvCoreModules/Graph/OrvNodeLook.h"

#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"

#include <algorithm>

OrvFreedNodePlaces::OrvFreedNodePlaces(OrvShaderNetwork* pNetwork)
    : m_pNetwork(pNetwork)
{
    for (OrvSnBaseNode* pNode : pNetwork->nodes()) {
        m_Heights.insert(pNode, OrvNodeLook::of(pNode).size().height());
        if (!pNode->consumers().isEmpty())
            m_Read.append(pNode);
    }
    m_Shown = shownPlaces();
}

OrvNodeGraphLayout::Places OrvFreedNodePlaces::shownPlaces() const
{
    return OrvNodeGraphLayout::shownPlaces(
        m_pNetwork->nodes(), [this](const OrvSnBaseNode* pNode) { return m_Heights.value(pNode); });
}

QRectF OrvFreedNodePlaces::rectAt(const OrvSnBaseNode* pNode, const QPointF& Place) const
{
    return {Place, QSizeF(OrvNodeLook::Width, m_Heights.value(pNode))};
}

QVector<OrvSnBaseNode*> OrvFreedNodePlaces::freed() const
{
    QVector<OrvSnBaseNode*> Freed;
    for (OrvSnBaseNode* pNode : m_Read) {
        if (pNode->network() == m_pNetwork && pNode->consumers().isEmpty() && pNode->position().isNull()
            && !pNode->hasTag(OrvSnNames::ShaderInputTag))
            Freed.append(pNode);
    }
    return Freed;
}

QVector<OrvSnBaseNode*> OrvFreedNodePlaces::withSources(OrvSnBaseNode* pNode)
{
    QVector<OrvSnBaseNode*> Together{pNode};
    for (int Index = 0; Index < Together.size(); ++Index) {
        for (const OrvSnBaseNode::Input& Input : Together[Index]->inputs()) {
            OrvSnBaseNode* pSource = Input.pNode;
            if (!pSource || Together.contains(pSource) || !pSource->position().isNull()
                || pSource->hasTag(OrvSnNames::ShaderInputTag))
                continue;
            const auto& Readers = pSource->consumers();
            if (std::all_of(Readers.begin(), Readers.end(),
                    [&](const OrvSnBaseNode::Consumer& Reader) { return Together.contains(Reader.pNode); }))
                Together.append(pSource);
        }
    }
    return Together;
}

qreal OrvFreedNodePlaces::freeHeightBelow(const QVector<QRectF>& Wanted, const QVector<QRectF>& Taken)
{
    qreal Down = 0.0;
    bool Moved = true;
    // Each step passes a rectangle for good.
    while (Moved) {
        Moved = false;
        for (const QRectF& Rect : Wanted) {
            for (const QRectF& Other : Taken) {
                if (!Rect.translated(0.0, Down).intersects(Other))
                    continue;
                Down = Other.bottom() + OrvNodeGraphLayout::RowGap - Rect.top();
                Moved = true;
            }
        }
    }
    return Down;
}

void OrvFreedNodePlaces::keep() const
{
    const QVector<OrvSnBaseNode*> Freed = freed();
    if (Freed.isEmpty())
        return;
    OrvNodeGraphLayout::Places Now = shownPlaces();
    for (OrvSnBaseNode* pFreed : Freed) {
        const QVector<OrvSnBaseNode*> Together = withSources(pFreed);
        QVector<QRectF> Wanted, Taken;
        for (const OrvSnBaseNode* pNode : Together) {
            Wanted.append(rectAt(pNode, m_Shown.value(pNode)));
            Now.remove(pNode);
        }
        for (auto Place = Now.cbegin(); Place != Now.cend(); ++Place)
            Taken.append(rectAt(Place.key(), *Place));
        const QPointF Down(0.0, freeHeightBelow(Wanted, Taken));
        for (OrvSnBaseNode* pNode : Together) {
            const QPointF Place = m_Shown.value(pNode) + Down;
            Now.insert(pNode, Place);
            // The origin stands for no place at all.
            pNode->setPosition(Place.isNull() ? QPointF(1.0, 0.0) : Place);
        }
    }
}
