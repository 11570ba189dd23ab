#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerRowArrangement.h"

#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewItem.h"

#include <QtCore/QSet>

#include <algorithm>

namespace {

constexpr int GoingRow = -1; ///< the order of a row that goes: it sorts to the front

} // namespace

OrvLayerRowArrangement::OrvLayerRowArrangement(
    QStandardItem* pParent, const QVector<OrvLayerViewItem*>& Wanted)
    : m_pParent(pParent)
    , m_Wanted(Wanted)
{
}

bool OrvLayerRowArrangement::isDone() const
{
    for (int Row = 0; Row < m_Wanted.size(); ++Row) {
        if (m_pParent->child(Row) != m_Wanted[Row])
            return false;
    }
    return m_pParent->rowCount() == m_Wanted.size();
}

QVector<OrvLayerViewItem*> OrvLayerRowArrangement::goingRows() const
{
    const QSet<OrvLayerViewItem*> Staying(m_Wanted.cbegin(), m_Wanted.cend());
    QVector<OrvLayerViewItem*> Going;
    for (int Row = 0; Row < m_pParent->rowCount(); ++Row) {
        OrvLayerViewItem* pItem = OrvLayerViewItem::inRow(m_pParent, Row);
        if (!Staying.contains(pItem))
            Going.append(pItem);
    }
    return Going;
}

void OrvLayerRowArrangement::carryOut()
{
    for (int Row = 0; Row < m_pParent->rowCount(); ++Row)
        OrvLayerViewItem::inRow(m_pParent, Row)->setOrder(GoingRow);
    for (int Row = 0; Row < m_Wanted.size(); ++Row)
        m_Wanted[Row]->setOrder(Row);
    const bool KeptAreInOrder = removeGoingRows();
    const bool NewAreInPlace = insertNewRows();
    if (!KeptAreInOrder || !NewAreInPlace)
        m_pParent->sortChildren(0);
    for (OrvLayerViewItem* pItem : qAsConst(m_Wanted))
        pItem->setOrder(0);
}

bool OrvLayerRowArrangement::removeGoingRows()
{
    int Count = 0, First = 0, Last = 0;
    bool Ascending = true;
    for (int Row = 0, Before = GoingRow; Row < m_pParent->rowCount(); ++Row) {
        const int Order = OrvLayerViewItem::inRow(m_pParent, Row)->order();
        if (Order != GoingRow) {
            Ascending = Ascending && Order > Before;
            Before = Order;
            continue;
        }
        First = Count == 0 ? Row : First;
        Last = Row;
        ++Count;
    }
    if (Count == 0)
        return Ascending;
    // All in one step: scattered ones are sorted to the front first.
    const bool Scattered = Last - First + 1 != Count;
    if (Scattered)
        m_pParent->sortChildren(0);
    m_pParent->removeRows(Scattered ? 0 : First, Count);
    return Ascending || Scattered;
}

bool OrvLayerRowArrangement::insertNewRows()
{
    QList<QStandardItem*> New;
    int First = 0, Last = 0;
    for (int Row = 0; Row < m_Wanted.size(); ++Row) {
        if (m_Wanted[Row]->model())
            continue;
        First = New.isEmpty() ? Row : First;
        Last = Row;
        New.append(m_Wanted[Row]);
    }
    if (New.isEmpty())
        return true;
    const bool InOnePlace = Last - First + 1 == New.size();
    m_pParent->insertRows(InOnePlace ? qMin(First, m_pParent->rowCount()) : m_pParent->rowCount(), New);
    return InOnePlace;
}

QVector<bool> OrvLayerRowArrangement::unmoved(const QVector<int>& FormerPlaces)
{
    QVector<int> Tails, Previous(FormerPlaces.size(), -1); // positions in FormerPlaces
    for (int At = 0; At < FormerPlaces.size(); ++At) {
        const auto Tail = std::lower_bound(Tails.begin(), Tails.end(), At,
            [&](int Left, int Right) { return FormerPlaces[Left] < FormerPlaces[Right]; });
        if (Tail != Tails.begin())
            Previous[At] = *std::prev(Tail);
        if (Tail == Tails.end())
            Tails.append(At);
        else
            *Tail = At;
    }
    QVector<bool> Unmoved(FormerPlaces.size(), false);
    for (int At = Tails.isEmpty() ? -1 : Tails.last(); At >= 0; At = Previous[At])
        Unmoved[At] = true;
    return Unmoved;
}
