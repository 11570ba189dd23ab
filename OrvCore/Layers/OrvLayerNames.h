#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QHash>
#include <QtCore/QString>

class OrvShaderNetwork;
class OrvSnBaseNode;

/// The names of all layers of each network, counted, so that a new layer finds a free one without asking
/// every layer. OrvLayerManager owns it and tells it of every layer that comes, goes or is renamed.
class ORVCORE_EXPORT OrvLayerNames {
public:
    /// Whether a node's name is that of layers: a merge node's, or of what several of them have in common.
    static bool holdsLayerName(const OrvSnBaseNode* pNode);

    /// The three pass over a node whose name is no layer's.
    void enter(const OrvSnBaseNode* pNode);
    void leave(const OrvShaderNetwork* pNetwork, const OrvSnBaseNode* pNode);
    void rename(const OrvSnBaseNode* pNode);

    /// The name itself while it is free, then with a number: "Layer", "Layer 2", "Layer 3".
    QString unique(const OrvShaderNetwork* pNetwork, const QString& Base) const;

private:
    struct Table {
        QHash<const OrvSnBaseNode*, QString> NameOf;
        QHash<QString, int> Count;
        QHash<QString, int> HighestNumber; ///< by name without number; never too low
        void count(const QString& Name);
        void uncount(const QString& Name);
    };
    QHash<const OrvShaderNetwork*, Table> m_Tables;
};
