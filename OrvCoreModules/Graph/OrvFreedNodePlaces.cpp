#include "OrvCoreModules/Graph/OrvFreedNodePlaces.h"

#include "OrvCoreModules/Graph/OrvNodeLook.h"

#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"

#include <QtCore/QSet>

#include <algorithm>
#include <cmath>

namespace {

/// Where nodes stand, by the columns that they touch: those of other columns need not be compared.
class TakenRects {
public:
    void add(const QRectF& Rect)
    {
        for (int Column = columnAt(Rect.left()); Column <= columnAt(Rect.right()); ++Column)
            m_Columns[Column].append(Rect);
    }
    /// How far rectangles have to go down, all together, to touch none of these.
    qreal freeHeightBelow(const QVector<QRectF>& Wanted) const
    {
        qreal Down = 0.0;
        bool Moved = true;
        // Each step passes a rectangle for good.
        while (Moved) {
            Moved = false;
            for (const QRectF& Rect : Wanted) {
                for (int Column = columnAt(Rect.left()); Column <= columnAt(Rect.right()); ++Column)
                    Moved = pass(m_Columns.value(Column), Rect, Down) || Moved;
            }
        }
        return Down;
    }

private:
    static int columnAt(qreal X) { return int(std::floor(X / OrvNodeGraphLayout::ColumnWidth)); }
    static bool pass(const QVector<QRectF>& Others, const QRectF& Rect, qreal& Down)
    {
        bool Moved = false;
        for (const QRectF& Other : Others) {
            if (!Rect.translated(0.0, Down).intersects(Other))
                continue;
            Down = Other.bottom() + OrvNodeGraphLayout::RowGap - Rect.top();
            Moved = true;
        }
        return Moved;
    }

    QHash<int, QVector<QRectF>> m_Columns;
};

} // namespace

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
    QSet<const OrvSnBaseNode*> Members{pNode};
    for (int Index = 0; Index < Together.size(); ++Index) {
        for (const OrvSnBaseNode::Input& Input : Together[Index]->inputs()) {
            OrvSnBaseNode* pSource = Input.pNode;
            if (!pSource || Members.contains(pSource) || !pSource->position().isNull()
                || pSource->hasTag(OrvSnNames::ShaderInputTag))
                continue;
            const auto& Readers = pSource->consumers();
            if (!std::all_of(Readers.begin(), Readers.end(),
                    [&](const OrvSnBaseNode::Consumer& Reader) { return Members.contains(Reader.pNode); }))
                continue;
            Together.append(pSource);
            Members.insert(pSource);
        }
    }
    return Together;
}

void OrvFreedNodePlaces::keep() const
{
    const QVector<OrvSnBaseNode*> Freed = freed();
    if (Freed.isEmpty())
        return;
    OrvNodeGraphLayout::Places Standing = shownPlaces();
    QVector<QVector<OrvSnBaseNode*>> Groups;
    for (OrvSnBaseNode* pFreed : Freed) {
        Groups.append(withSources(pFreed));
        for (const OrvSnBaseNode* pNode : qAsConst(Groups.last()))
            Standing.remove(pNode);
    }
    TakenRects Taken;
    for (auto Place = Standing.cbegin(); Place != Standing.cend(); ++Place)
        Taken.add(rectAt(Place.key(), *Place));
    for (const QVector<OrvSnBaseNode*>& Group : qAsConst(Groups)) {
        QVector<QRectF> Wanted;
        for (const OrvSnBaseNode* pNode : Group)
            Wanted.append(rectAt(pNode, m_Shown.value(pNode)));
        const QPointF Down(0.0, Taken.freeHeightBelow(Wanted));
        for (OrvSnBaseNode* pNode : Group) {
            const QPointF Place = m_Shown.value(pNode) + Down;
            Taken.add(rectAt(pNode, Place));
            // The origin stands for no place at all.
            pNode->setPosition(Place.isNull() ? QPointF(1.0, 0.0) : Place);
        }
    }
}
