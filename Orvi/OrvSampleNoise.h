#pragma once

#include <QtCore/QtGlobal>

/// Smooth random values for painting: the same everywhere and each time, unlike the system's generators.
namespace OrvSampleNoise {

/// 0 to 1, for whole coordinates.
double hash(qint64 X, qint64 Y, quint32 Seed);
/// Several octaves of value noise, 0 to 1; coordinates in cells of the coarsest octave.
double clouds(double X, double Y, quint32 Seed, int Octaves = 5);

/// A row of random numbers.
class Sequence {
public:
    explicit Sequence(quint32 Seed)
        : m_Seed(Seed)
    {
    }
    double next() { return hash(m_Count++, 0, m_Seed); }
    double next(double From, double To) { return From + (To - From) * next(); }

private:
    quint32 m_Seed;
    qint64 m_Count = 0;
};

/// 0 below, 1 above, smooth between.
double step(double From, double To, double Value);

} // namespace OrvSampleNoise
