#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QPointF>
#include <QtCore/QSizeF>
#include <QtCore/QStringList>
#include <QtGui/QColor>
#include <QtGui/QIcon>

class OrvSnBaseNode;

/// Everything that the item of a node shows, read from the node when that has changed, and where its parts
/// lie. A value: painting needs no node, so that one that is gone can still be on the screen for a moment.
struct ORVCOREMODULES_EXPORT OrvNodeLook {
    static constexpr qreal Width = 164.0;
    static constexpr qreal TitleHeight = 22.0;
    static constexpr qreal RowHeight = 16.0;
    static constexpr qreal Padding = 4.0;

    QString Title;
    QString TypeLabel;
    QStringList Inputs; ///< in the node's order
    QStringList Outputs; ///< one without a name for most nodes
    QStringList Details; ///< second-rank text, one line each
    QColor Color; ///< of the node's kind
    QColor Tag; ///< the layer's, invalid without one
    QIcon Icon;
    bool Enabled = true;
    bool Locked = false;
    bool Cached = false;
    bool HoldsNetwork = false;

    static OrvNodeLook of(OrvSnBaseNode* pNode);
    /// The node's name, or that of its kind where it has none.
    static QString titleOf(const OrvSnBaseNode* pNode);

    /// Details stand beside the inputs below the first one, or under the only one.
    int firstDetailRow() const { return Inputs.isEmpty() ? 0 : 1; }
    bool detailsBesideInputs() const { return Inputs.size() > 1; }
    int rowCount() const;
    QSizeF size() const { return {Width, TitleHeight + 2.0 * Padding + RowHeight * rowCount()}; }
    /// Middle of a row's left or right end, where wires end.
    QPointF inputPoint(int Row) const { return {0.0, rowMiddle(Row)}; }
    QPointF outputPoint(int Row) const { return {Width, rowMiddle(Row)}; }

private:
    static qreal rowMiddle(int Row) { return TitleHeight + Padding + RowHeight * (Row + 0.5); }
};
