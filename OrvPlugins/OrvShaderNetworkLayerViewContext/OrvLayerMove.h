#pragma once

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QVector>

#include <functional>

class OrvLayer;
class OrvLayerStack;
class OrvSnBaseNode;

/// Moves layers by a single place, made for one move. Each move is one undo step for all the layers, and none
/// at all when one of them may not go where it should.
class OrvLayerMove {
public:
    /// The layer, and those that are selected together with it; what a group among them holds stays inside
    /// it.
    OrvLayerMove(OrvLayer* pLayer, OrvLayerStack* pLayerStack);

    /// Layers that are at an end already stay there, those next to them too.
    void up();
    void down();
    /// On top of what the group just below the layers holds, else below what the one just above them holds.
    /// The group, or null when nothing was moved.
    OrvLayer* intoGroup();
    /// To just above the group that holds them.
    void outOfGroup();

private:
    struct Level {
        OrvLayer* pGroup = nullptr; ///< none: the top of the stack
        QList<OrvLayer*> Layers; ///< all that stand there
    };
    QVector<Level> levels() const;
    /// Those of the layers that stand on the level, in order.
    QList<OrvLayer*> moving(const Level& On) const;
    bool placeAbove(const QList<OrvLayer*>& Layers, OrvSnBaseNode* pTarget, OrvLayer* pGroup) const;
    bool inUndoStep(const QString& Text, const std::function<bool()>& Work) const;

    OrvLayerStack* m_pLayerStack;
    QList<OrvLayer*> m_Layers;
};
