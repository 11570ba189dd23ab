#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QString>
#include <QtCore/QVector>

class OrvSnBaseNode;
class OrvSnMergeNode;

/// What a layer costs to compute, relative: 1 stands for a tenth of a second per million pixels on two
/// processor cores, which is what a user notices. An estimate from measured costs of the steps involved;
/// nothing is measured when it is asked. Hidden layers, and those inside a cache, cost nothing.
class ORVCORE_EXPORT OrvLayerCost {
public:
    struct Part {
        QString Name;
        double Cost = 0.0;
    };

    /// The layer alone, with all that it holds; what lies below it is not counted. Remembered until an edit.
    static OrvLayerCost of(const OrvSnMergeNode* pBlendNode);
    /// Something that counts here changed without a structural change.
    static void invalidate();

    double total() const;
    const QVector<Part>& parts() const { return m_Parts; }
    /// For a tool tip: the total, then what it is made of.
    QString description() const;

private:
    QVector<Part> m_Parts; ///< blending, content, mask, as far as they cost anything
};
