#pragma once

#include "OrvDdi/Engine/OrvGegl.h"
#include "OrvDdi/Engine/OrvOperationRegistry.h"

/// What an operation's parameters become when its pixels are smaller or larger than those that its lengths
/// are meant for, so that it yields the same picture at another resolution. Belongs to an operation's engine
/// node; it knows the values as they are meant, and sets the engine's.
class OrvOperationScale {
public:
    /// Null for an operation whose parameters measure nothing.
    explicit OrvOperationScale(const OrvOperation* pOperation)
        : m_pOperation(pOperation)
    {
    }

    /// How a parameter is measured in pixels.
    static OrvOperationParameter::Measure measureOf(
        const char* pOperation, const OrvOperationParameter& Parameter);

    enum Outcome { Refused, Unchanged, Changed };
    Outcome setValue(GeglNode* pNode, const QString& Name, const QVariant& Value);
    /// Pixels for one that lengths are meant for. False when nothing changed.
    bool setScale(GeglNode* pNode, double Scale);
    /// By how much the result is to be enlarged: what is drawn on whole pixels, or in one size alone, is
    /// drawn as large as that goes and brought to its size then.
    double enlargement() const;

private:
    double drawnScale() const;
    bool isDrawnOnWholePixels() const;
    bool fitsPixels() const;
    void setScaledValues(GeglNode* pNode) const;

    const OrvOperation* m_pOperation;
    QHash<QString, QVariant> m_Values;
    double m_Scale = 1.0;
};
