#include "Orvi/OrvSampleNoise.h"

#include <algorithm>
#include <cmath>

double OrvSampleNoise::hash(qint64 X, qint64 Y, quint32 Seed)
{
    quint64 Bits = quint64(X) * 0x9E3779B97F4A7C15u ^ quint64(Y) * 0xC2B2AE3D27D4EB4Fu ^ quint64(Seed) << 17;
    Bits ^= Bits >> 31;
    Bits *= 0xD6E8FEB86659FD93u;
    Bits ^= Bits >> 32;
    Bits *= 0xD6E8FEB86659FD93u;
    Bits ^= Bits >> 29;
    return double(Bits >> 11) / double(quint64(1) << 53);
}

double OrvSampleNoise::step(double From, double To, double Value)
{
    const double Way = std::clamp((Value - From) / (To - From), 0.0, 1.0);
    return Way * Way * (3.0 - 2.0 * Way);
}

double OrvSampleNoise::clouds(double X, double Y, quint32 Seed, int Octaves)
{
    double Sum = 0.0, Weight = 0.5, Total = 0.0;
    for (int Octave = 0; Octave < Octaves; ++Octave) {
        const double Left = std::floor(X), Top = std::floor(Y);
        const auto Column = qint64(Left), Row = qint64(Top);
        const double Across = step(0.0, 1.0, X - Left), Down = step(0.0, 1.0, Y - Top);
        const quint32 OctaveSeed = Seed + quint32(Octave) * 101;
        const double Upper
            = hash(Column, Row, OctaveSeed) * (1.0 - Across) + hash(Column + 1, Row, OctaveSeed) * Across;
        const double Lower = hash(Column, Row + 1, OctaveSeed) * (1.0 - Across)
            + hash(Column + 1, Row + 1, OctaveSeed) * Across;
        Sum += Weight * (Upper * (1.0 - Down) + Lower * Down);
        Total += Weight;
        Weight *= 0.5;
        X *= 2.03;
        Y *= 2.03;
    }
    return Sum / Total;
}
