#pragma once

#include "OrvCoreModules/Graph/OrvNodeGraphLayout.h"

#include <QtCore/QRectF>

class OrvShaderNetwork;

/// Keeps what an edit frees of its readers in the user's sight: without a place of their own, nodes that feed
/// nothing any more would go where the layout collects what is loose, far below everything. It lives in the
/// undo macro of the edit, which its maker owns.
class OrvFreedNodePlaces {
public:
    /// Before the edit.
    explicit OrvFreedNodePlaces(OrvShaderNetwork* pNetwork);

    /// After the edit: nodes that lost their last reader stay where they were shown, with all that feeds them
    /// alone, or just below what has moved there.
    void keep() const;

private:
    OrvNodeGraphLayout::Places shownPlaces() const;
    QRectF rectAt(const OrvSnBaseNode* pNode, const QPointF& Place) const;
    QVector<OrvSnBaseNode*> freed() const;
    /// The node and what feeds nothing else.
    static QVector<OrvSnBaseNode*> withSources(OrvSnBaseNode* pNode);

    OrvShaderNetwork* m_pNetwork;
    QVector<OrvSnBaseNode*> m_Read; ///< those that had readers
    QHash<const OrvSnBaseNode*, qreal> m_Heights;
    OrvNodeGraphLayout::Places m_Shown;
};
