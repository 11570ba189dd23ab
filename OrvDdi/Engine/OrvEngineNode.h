#pragma once

#include "OrvDdi/Engine/OrvBlendParameters.h"
#include "OrvDdi/Image/OrvImageBuffer.h"

#include <QtCore/QString>
#include <QtCore/QVariant>

#include <functional>
#include <memory>

class OrvUdimLayout;
struct OrvShadingParameters;
struct _GeglNode;

/// One step of an evaluation: a thin owner of one sub-graph of the image engine. The document's nodes own these and
/// connect them as they are connected themselves. Every call takes the engine's lock; nothing here knows the document.
class ORVDDI_EXPORT OrvEngineNode {
public:
    /// The shading step has all of them, in the order of OrvShadingParameters::Slot; others have up to three.
    enum Pad { Base, Over, Mask, Input3, Input4, Input5, Input6, Input7 };
    static constexpr int PadCount = Input7 + 1;

    /// Blends over above base through mask; any of the three may be missing.
    static std::unique_ptr<OrvEngineNode> createBlend();
    /// Shows a buffer; empty until setBuffer().
    static std::unique_ptr<OrvEngineNode> createSource();
    /// One colour everywhere within a rectangle, without pixel memory.
    static std::unique_ptr<OrvEngineNode> createUniform();
    /// An operation of the registry; its image inputs are Base and, where it has a second one, Over. Null when the
    /// engine does not know the name.
    static std::unique_ptr<OrvEngineNode> createOperation(const QString& OperationName);
    /// Brings what is connected from one layout to another: averaged when it shrinks, interpolated when it grows, as
    /// OrvImageResampling does.
    static std::unique_ptr<OrvEngineNode> createFit(const OrvUdimLayout& From, const OrvUdimLayout& To);
    /// Brings what is connected from one colour space to another; both must be known.
    static std::unique_ptr<OrvEngineNode> createColorConversion(const QString& From, const QString& To);
    /// The picture of a flat texture under a light; any input may be missing.
    static std::unique_ptr<OrvEngineNode> createShading();
    /// Passes Base on, enlarged or reduced about the plane's origin; reduced pixels are averages.
    static std::unique_ptr<OrvEngineNode> createZoom();
    /// Passes Base on unchanged; nothing connected reads as transparent.
    static std::unique_ptr<OrvEngineNode> createPass();
    ~OrvEngineNode();

    /// Null disconnects. A pad that the node does not have is ignored.
    void connectInput(Pad Input, OrvEngineNode* pSource);
    /// What is connected there; null: nothing is, or the node has no such pad.
    bool readsFrom(Pad Input, const OrvEngineNode* pSource) const;

    void setBlend(const OrvBlendParameters& Parameters); ///< blend nodes
    void setShading(const OrvShadingParameters& Parameters); ///< shading nodes
    void setBuffer(const OrvImageBuffer& Buffer); ///< source nodes
    void setUniform(const OrvColor& Color, const QRect& Extent); ///< uniform nodes
    /// Operation nodes. Values as OrvOperationRegistry describes the parameter; false for an unknown name or a value
    /// that cannot be converted.
    bool setParameter(const QString& Name, const QVariant& Value);
    /// Operation nodes: how many pixels take the place of one that the operation's lengths are meant for. Zoom nodes:
    /// by how much they enlarge.
    void setScale(double Scale);
    /// Crops the result of an operation, zoom or pass node; an empty rectangle lifts the crop.
    void setExtent(const QRect& Extent);
    /// Keeps the result so that what is above can change without computing it again.
    void setCached(bool Cached);

    /// Source nodes: pixels of the buffer were written; invalidates the region here and, widened by the reach of the
    /// operations downstream, everything that depends on it.
    void pixelsWritten(const QRect& Region);

    QRect boundingBox() const;
    /// Computes a region. Scale below 1 shrinks (the region is in scaled pixels).
    void render(const QRect& Region, double Scale, const OrvPixelFormat& Format, void* pPixels, int Stride = 0);
    /// One turn of render(), which takes as many as it needs: the engine's lock is held for one piece of the work. True
    /// when the pixels are there; otherwise something that they are computed from has come further.
    bool renderTurn(const QRect& Region, double Scale, const OrvPixelFormat& Format, void* pPixels, int Stride = 0);
    /// Called, from whichever thread caused it, with the region that became stale. One callback a node.
    void setInvalidated(std::function<void(const QRect&)> Callback);

    _GeglNode* handle() const; ///< the output

private:
    friend class OrvEngineRewiring;
    struct SubGraph;
    explicit OrvEngineNode(std::unique_ptr<SubGraph> pGraph);
    std::unique_ptr<SubGraph> m_pGraph;
};
