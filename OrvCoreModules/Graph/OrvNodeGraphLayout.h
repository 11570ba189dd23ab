#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QHash>
#include <QtCore/QPointF>
#include <QtCore/QVector>

#include <functional>

class OrvSnBaseNode;

/// Tidy places for nodes, read from their connections alone: every wire leads rightwards, the chain of a
/// stack runs in one row, and what feeds a layer stands below the chain and just left of its layer. Linear in
/// the nodes; the same graph always gets the same places. It changes nothing.
class ORVCOREMODULES_EXPORT OrvNodeGraphLayout {
public:
    using Places = QHash<const OrvSnBaseNode*, QPointF>;
    using Height = std::function<qreal(const OrvSnBaseNode* pNode)>;

    static constexpr qreal ColumnWidth = 214.0;
    static constexpr qreal RowGap = 24.0;

    /// Among themselves: connections to other nodes count for nothing. The first corner is the origin.
    static Places arrange(const QVector<OrvSnBaseNode*>& Nodes, const Height& HeightOf);

    /// What the node graph shows: nodes stand where the document says, the others where arrange() puts them.
    /// Nodes that were given the very same place are shown one behind the other.
    static Places shownPlaces(const QVector<OrvSnBaseNode*>& Nodes, const Height& HeightOf);
};
