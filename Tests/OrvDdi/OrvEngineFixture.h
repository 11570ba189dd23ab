#pragma once

#include "OrvDdi/Engine/OrvEngineNode.h"
#include "OrvDdi/Image/OrvColor.h"

#include <QtCore/QRandomGenerator>

#include <algorithm>
#include <vector>

/// Small pictures and graphs for the engine's tests, made in a line.
namespace OrvEngineFixture {

inline OrvPixelFormat floatColor()
{
    return {GL_FLOAT, OrvPixelFormat::Rgba, OrvPixelFormat::Linear};
}

inline OrvPixelFormat halfColor()
{
    return {GL_HALF_FLOAT, OrvPixelFormat::Rgba, OrvPixelFormat::Linear};
}

/// Opaque noise with smooth parts, so that every filter finds something to do.
inline OrvImageBuffer picture(const QRect& Extent, quint32 Seed, const OrvPixelFormat& Format = floatColor())
{
    QRandomGenerator Random(Seed);
    std::vector<float> Pixels;
    for (int Y = 0; Y < Extent.height(); ++Y) {
        for (int X = 0; X < Extent.width(); ++X) {
            const float Noise = (X / 16 + Y / 16) % 2 ? float(Random.bounded(1.0)) : 0.5f;
            Pixels.insert(Pixels.end(), {Noise, float(X) / Extent.width(), float(Y) / Extent.height(), 1.0f});
        }
    }
    OrvImageBuffer Buffer(Extent, Format);
    Buffer.write(Extent, floatColor(), Pixels.data());
    return Buffer;
}

inline std::unique_ptr<OrvEngineNode> source(const OrvImageBuffer& Buffer)
{
    auto pSource = OrvEngineNode::createSource();
    pSource->setBuffer(Buffer);
    return pSource;
}

inline std::unique_ptr<OrvEngineNode> uniform(const OrvColor& Color, const QRect& Extent)
{
    auto pUniform = OrvEngineNode::createUniform();
    pUniform->setUniform(Color, Extent);
    return pUniform;
}

inline std::unique_ptr<OrvEngineNode> blend(
    OrvEngineNode* pBase, OrvEngineNode* pOver, OrvBlendMode Mode = OrvBlendMode::Normal, float Amount = 1.0f)
{
    auto pBlend = OrvEngineNode::createBlend();
    pBlend->connectInput(OrvEngineNode::Base, pBase);
    pBlend->connectInput(OrvEngineNode::Over, pOver);
    OrvBlendParameters Parameters;
    Parameters.Mode = Mode;
    Parameters.Amount = Amount;
    pBlend->setBlend(Parameters);
    return pBlend;
}

/// An operation above a source, null when the engine has no such operation.
inline std::unique_ptr<OrvEngineNode> operation(const QString& Name, OrvEngineNode* pInput)
{
    auto pOperation = OrvEngineNode::createOperation(Name);
    if (pOperation)
        pOperation->connectInput(OrvEngineNode::Base, pInput);
    return pOperation;
}

inline std::vector<float> rendered(OrvEngineNode& Node, const QRect& Region, double Scale = 1.0)
{
    std::vector<float> Result(size_t(Region.width() * Region.height()) * 4, -99.0f);
    Node.render(Region, Scale, floatColor(), Result.data());
    return Result;
}

/// The same, asked for in small pieces as a canvas does. The engine computes a piece again as a whole when
/// any part of it is stale, so that only pieces show what a cache has kept wrongly.
inline std::vector<float> renderedInPieces(OrvEngineNode& Node, const QRect& Region, int Edge = 8)
{
    std::vector<float> Result(size_t(Region.width() * Region.height()) * 4);
    for (int Y = Region.top(); Y <= Region.bottom(); Y += Edge) {
        for (int X = Region.left(); X <= Region.right(); X += Edge) {
            const size_t First = size_t((Y - Region.top()) * Region.width() + X - Region.left());
            Node.render(QRect(X, Y, Edge, Edge) & Region, 1.0, floatColor(), Result.data() + First * 4,
                Region.width() * 16);
        }
    }
    return Result;
}

inline OrvColor pixelOf(OrvEngineNode& Node, int X, int Y)
{
    const std::vector<float> Pixel = rendered(Node, QRect(X, Y, 1, 1));
    return {Pixel[0], Pixel[1], Pixel[2], Pixel[3]};
}

/// The largest difference of any component.
inline float difference(const std::vector<float>& A, const std::vector<float>& B)
{
    float Largest = A.size() == B.size() ? 0.0f : 1e9f;
    for (size_t Index = 0; Index < std::min(A.size(), B.size()); ++Index) {
        const float Here = A[Index] == B[Index] ? 0.0f : std::abs(A[Index] - B[Index]);
        Largest = Here <= Largest ? Largest : std::max(Here, 1e-9f); // not a number counts as different
    }
    return Largest;
}

} // namespace OrvEngineFixture
