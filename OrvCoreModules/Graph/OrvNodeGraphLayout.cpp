#include "OrvCoreModules/Graph/OrvNodeGraphLayout.h"

#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"

#include <QtCore/QSet>

#include <cmath>

namespace {

constexpr qreal BlockGap = 70.0; // between channels
constexpr qreal WireHeight = 60.0; // kept free where the wire of a row passes by
constexpr QPointF CascadeStep(24.0, 24.0);

/// One run of the layout. Columns come from the depth of the nodes, each node as far right as what it feeds
/// allows; rows from walking down the chains and keeping, per column, what is taken so far.
class Arrangement {
public:
    Arrangement(const QVector<OrvSnBaseNode*>& Nodes, const OrvNodeGraphLayout::Height& HeightOf);
    OrvNodeGraphLayout::Places places() const;

private:
    static constexpr int NoNode = -1;
    struct Member {
        const OrvSnBaseNode* pNode = nullptr;
        QVector<int> Sources; ///< the one at the preferred input first, NoNode where that is free
        QVector<int> Readers;
        int Column = 0;
        qreal Top = 0.0;
        bool Placed = false;
    };
    struct Branch {
        int Node;
        qreal Top;
    };

    void connectMembers(const QHash<const OrvSnBaseNode*, int>& Indices);
    void assignColumns();
    void placeBlock(int Terminal);
    QVector<int> chainFrom(int Node) const;
    void placeChain(const QVector<int>& Chain, qreal Top);
    void placeLoose(const QVector<int>& Loose);
    bool isLoose(const Member& One) const;

    QVector<Member> m_Members;
    QVector<qreal> m_Heights;
    QVector<qreal> m_Taken; ///< by column: where the next row can begin
};

Arrangement::Arrangement(const QVector<OrvSnBaseNode*>& Nodes, const OrvNodeGraphLayout::Height& HeightOf)
{
    QHash<const OrvSnBaseNode*, int> Indices;
    Indices.reserve(Nodes.size());
    m_Members.resize(Nodes.size());
    for (int Index = 0; Index < Nodes.size(); ++Index) {
        m_Members[Index].pNode = Nodes[Index];
        m_Heights.append(HeightOf(Nodes[Index]));
        Indices.insert(Nodes[Index], Index);
    }
    connectMembers(Indices);
    assignColumns();
    QVector<int> Loose;
    for (int Index = 0; Index < m_Members.size(); ++Index) {
        if (isLoose(m_Members[Index]))
            Loose.append(Index);
        else if (m_Members[Index].Readers.isEmpty())
            placeBlock(Index);
    }
    placeLoose(Loose);
}

void Arrangement::connectMembers(const QHash<const OrvSnBaseNode*, int>& Indices)
{
    for (int Index = 0; Index < m_Members.size(); ++Index) {
        Member& One = m_Members[Index];
        const QString Preferred = One.pNode->preferredInput();
        One.Sources.append(Indices.value(One.pNode->preferredInputNode(), NoNode));
        for (const OrvSnBaseNode::Input& Input : One.pNode->inputs()) {
            const int Source = Input.Name == Preferred ? NoNode : Indices.value(Input.pNode, NoNode);
            if (Source != NoNode)
                One.Sources.append(Source);
        }
        for (const int Source : qAsConst(One.Sources)) {
            if (Source != NoNode)
                m_Members[Source].Readers.append(Index);
        }
    }
}

bool Arrangement::isLoose(const Member& One) const
{
    return One.Readers.isEmpty() && One.Sources == QVector<int>{NoNode}
    && !One.pNode->hasTag(OrvSnNames::ShaderInputTag);
}

void Arrangement::assignColumns()
{
    // From what is fed by nothing: one column right of the rightmost source.
    QVector<int> Unmet(m_Members.size(), 0), Order;
    Order.reserve(m_Members.size());
    for (int Index = 0; Index < m_Members.size(); ++Index) {
        for (const int Source : qAsConst(m_Members[Index].Sources))
            Unmet[Index] += Source != NoNode;
        if (Unmet[Index] == 0)
            Order.append(Index);
    }
    for (int Next = 0; Next < Order.size(); ++Next) {
        const Member& One = m_Members[Order[Next]];
        for (const int Reader : One.Readers) {
            m_Members[Reader].Column = qMax(m_Members[Reader].Column, One.Column + 1);
            if (--Unmet[Reader] == 0)
                Order.append(Reader);
        }
    }
    // And back: close to the leftmost reader.
    int LastColumn = 0;
    for (auto Index = Order.rbegin(); Index != Order.rend(); ++Index) {
        Member& One = m_Members[*Index];
        int Leftmost = INT_MAX;
        for (const int Reader : qAsConst(One.Readers))
            Leftmost = qMin(Leftmost, m_Members[Reader].Column - 1);
        if (!One.Readers.isEmpty())
            One.Column = qMax(One.Column, Leftmost);
        LastColumn = qMax(LastColumn, One.Column);
    }
    m_Taken.fill(0.0, LastColumn + 1);
}

QVector<int> Arrangement::chainFrom(int Node) const
{
    QVector<int> Chain;
    while (Node != NoNode && !m_Members[Node].Placed) {
        Chain.append(Node);
        Node = m_Members[Node].Sources.first();
    }
    return Chain;
}

void Arrangement::placeChain(const QVector<int>& Chain, qreal Top)
{
    const int Last = m_Members[Chain.first()].Column, First = m_Members[Chain.last()].Column;
    for (int Column = First; Column <= Last; ++Column)
        Top = qMax(Top, m_Taken[Column]);
    for (int Column = First; Column <= Last; ++Column)
        m_Taken[Column] = Top + WireHeight;
    for (const int Index : Chain) {
        Member& One = m_Members[Index];
        One.Top = Top;
        One.Placed = true;
        m_Taken[One.Column] = Top + m_Heights[Index] + OrvNodeGraphLayout::RowGap;
    }
}

void Arrangement::placeBlock(int Terminal)
{
    qreal Top = 0.0;
    for (const qreal Taken : qAsConst(m_Taken))
        Top = qMax(Top, Taken);
    if (Top > 0.0)
        Top += BlockGap;
    m_Taken.fill(Top);
    // Everything under one branch is placed before the next branch to the right: it stays together. Without
    // recursion, chains can be nested as deeply as they are long.
    QVector<Branch> Pending{{Terminal, Top}};
    while (!Pending.isEmpty()) {
        const Branch Next = Pending.takeLast();
        const QVector<int> Chain = chainFrom(Next.Node);
        if (Chain.isEmpty())
            continue;
        placeChain(Chain, Next.Top);
        for (const int Index : Chain) {
            const Member& One = m_Members[Index];
            for (int Input = One.Sources.size() - 1; Input > 0; --Input)
                Pending.append({One.Sources[Input], One.Top});
        }
    }
}

void Arrangement::placeLoose(const QVector<int>& Loose)
{
    qreal Top = 0.0;
    for (const qreal Taken : qAsConst(m_Taken))
        Top = qMax(Top, Taken);
    if (Top > 0.0)
        Top += BlockGap;
    const int ColumnCount = qMax(4, int(std::ceil(std::sqrt(qreal(Loose.size())))));
    qreal RowHeight = 0.0;
    for (int Number = 0; Number < Loose.size(); ++Number) {
        const int Column = Number % ColumnCount;
        if (Column == 0) {
            Top += RowHeight;
            RowHeight = 0.0;
        }
        Member& One = m_Members[Loose[Number]];
        One.Column = Column;
        One.Top = Top;
        RowHeight = qMax(RowHeight, m_Heights[Loose[Number]] + OrvNodeGraphLayout::RowGap);
    }
}

OrvNodeGraphLayout::Places Arrangement::places() const
{
    OrvNodeGraphLayout::Places Result;
    Result.reserve(m_Members.size());
    for (const Member& One : m_Members)
        Result.insert(One.pNode, QPointF(One.Column * OrvNodeGraphLayout::ColumnWidth, One.Top));
    return Result;
}

} // namespace

OrvNodeGraphLayout::Places OrvNodeGraphLayout::arrange(
    const QVector<OrvSnBaseNode*>& Nodes, const Height& HeightOf)
{
    return Arrangement(Nodes, HeightOf).places();
}

OrvNodeGraphLayout::Places OrvNodeGraphLayout::shownPlaces(
    const QVector<OrvSnBaseNode*>& Nodes, const Height& HeightOf)
{
    Places Result = arrange(Nodes, HeightOf);
    QSet<QPair<int, int>> Taken;
    for (const OrvSnBaseNode* pNode : Nodes) {
        QPointF Place = pNode->position();
        if (Place.isNull())
            continue;
        while (Taken.contains({qRound(Place.x()), qRound(Place.y())}))
            Place += CascadeStep;
        Taken.insert({qRound(Place.x()), qRound(Place.y())});
        Result.insert(pNode, Place);
    }
    return Result;
}
