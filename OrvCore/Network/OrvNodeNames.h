#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QHash>
#include <QtCore/QString>

class OrvShaderNetwork;
class OrvSnBaseNode;

/// The names of all nodes of some kind in each network, counted, so that a new one finds a free name without
/// asking every other. Whoever knows the kind owns it and tells it of every node that comes, goes or is
/// renamed.
class ORVCORE_EXPORT OrvNodeNames {
public:
    using Kind = bool (*)(const OrvSnBaseNode* pNode);
    explicit OrvNodeNames(Kind IsOfKind);

    /// The three pass over a node of another kind.
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
    Kind m_IsOfKind;
    QHash<const OrvShaderNetwork*, Table> m_Tables;
};
