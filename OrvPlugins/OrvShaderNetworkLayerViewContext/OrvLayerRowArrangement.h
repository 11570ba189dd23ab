#pragma once

#include <QtCore/QVector>

class OrvLayerViewItem;
class QStandardItem;

/// Brings the rows of one level of a layer tree into the order wanted, in a few steps of the model however
/// many rows go, come and move. Made for one arrangement of a level; it knows nothing of layers and row
/// widgets.
class OrvLayerRowArrangement {
public:
    /// Rows of the level that are not among those wanted go; those that belong to no model yet are inserted.
    OrvLayerRowArrangement(QStandardItem* pParent, const QVector<OrvLayerViewItem*>& Wanted);

    bool isDone() const;
    QVector<OrvLayerViewItem*> goingRows() const;
    void carryOut();

    /// Which of the rows, given by their former places in their new order, can stay while the others move
    /// around them: the members of a longest ascending subsequence.
    static QVector<bool> unmoved(const QVector<int>& FormerPlaces);

private:
    /// Returns whether those that stay are in their order after it.
    bool removeGoingRows();
    /// In one block, at their place where they belong together. Returns whether they do.
    bool insertNewRows();

    QStandardItem* m_pParent;
    QVector<OrvLayerViewItem*> m_Wanted;
};
