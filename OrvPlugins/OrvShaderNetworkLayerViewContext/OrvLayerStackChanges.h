#pragma once

#include <QtCore/QHash>
#include <QtCore/QObject>
#include <QtCore/QPointer>

class OrvLayerView;
class OrvSnBaseNode;

/// Finds out whether nodes that change concern the stack that a Layers palette shows, and asks the palette,
/// which owns it, for a refresh then. A burst of changes costs one walk over the graph, none at all while a
/// refresh is pending.
class OrvLayerStackChanges : public QObject {
    Q_OBJECT

public:
    explicit OrvLayerStackChanges(OrvLayerView* pLayerView);

    void noteReconnection(const QString& InputName, OrvSnBaseNode* pNode, OrvSnBaseNode* pNewInputNode,
        OrvSnBaseNode* pOldInputNode);
    void noteChange(OrvSnBaseNode* pNode);
    /// The palette shows everything as it is now.
    void forget() { m_ChangedNodes.clear(); }

private Q_SLOTS:
    void look();

private:
    OrvLayerView* m_LayerView;
    /// Each once; a node can be gone by the time of the look.
    QHash<OrvSnBaseNode*, QPointer<OrvSnBaseNode>> m_ChangedNodes;
};
