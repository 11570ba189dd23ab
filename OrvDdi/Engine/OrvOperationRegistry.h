#pragma once

#include "OrvDdi/OrvDdiExport.h"

#include <QtCore/QHash>
#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtCore/QVector>

/// One parameter of an operation, as property editors need it.
struct OrvOperationParameter {
    enum Kind { Real, Integer, Boolean, Enumeration, Color, Text, FilePath, Angle };
    QString Name; ///< as the engine knows it
    QString Label;
    QString Description;
    Kind Type = Real;
    QVariant Default; ///< double, int, bool, QString (enumerations by nick) or OrvColor
    double Minimum = 0.0, Maximum = 1.0; ///< hard limits
    double UiMinimum = 0.0, UiMaximum = 1.0, Step = 0.01;
    double UiGamma = 1.0; ///< above 1, sliders give small values more room
    int Decimals = 3;
    QString Unit; ///< "pixel-distance", "degree", ... or empty
    /// In pixels of a tile of OrvOperation::ReferenceEdge: lengths and places, how often something comes back within a
    /// length, what grows as a square's area does.
    enum Measure { Unmeasured, Length, Frequency, Area };
    Measure Measured = Unmeasured;
    QStringList Choices, ChoiceLabels; ///< enumerations: nicks and what is shown
};

/// One operation that can be a layer.
struct OrvOperation {
    /// What an operation measures in pixels is meant for tiles of this edge, and looks the same on others.
    static constexpr int ReferenceEdge = 2048;
    QString Name; ///< the engine's name, stored in projects
    QString MenuPath; ///< key of the layer node type: "Filter/Blur/Gaussian Blur", "Procedural/Noise/Cell Noise"
    QString Description;
    bool Procedural = false; ///< needs no input
    bool HasSecondInput = false;
    QVector<OrvOperationParameter> Parameters;
};

/// The operations of the image engine that make sense as adjustment and procedural layers, with the parameters that
/// the engine describes and menu paths of ours. Read once, on first use; it never changes afterwards.
class ORVDDI_EXPORT OrvOperationRegistry {
public:
    static const OrvOperationRegistry& instance();
    /// All menu paths, in menu order, without waiting for the engine: a path whose operation this machine's engine
    /// lacks is among them.
    static QStringList menuPaths();

    /// In menu order.
    const QVector<OrvOperation>& operations() const { return m_Operations; }
    /// Null when unknown.
    const OrvOperation* find(const QString& Name) const;
    const OrvOperation* findByMenuPath(const QString& MenuPath) const;

private:
    OrvOperationRegistry();
    QVector<OrvOperation> m_Operations;
    QHash<QString, int> m_ByName, m_ByMenuPath;
};
