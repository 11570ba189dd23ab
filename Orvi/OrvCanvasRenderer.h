#pragma once

#include "Orvi/OrvDisplayTransform.h"

#include <QtCore/QObject>
#include <QtCore/QPoint>
#include <QtCore/QPointer>
#include <QtCore/QRect>
#include <QtCore/QVector>
#include <QtGui/QImage>
#include <QtGui/QRegion>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

class OrvEngineNode;

/// Computes pieces of a picture in one thread of its own, newest wish first, so that the window never waits
/// for the image engine. It owns one engine node to which the shown result is connected: results of the
/// document may go at any time. Created, commanded and destroyed on the GUI thread; it keeps no finished
/// pieces.
class OrvCanvasRenderer : public QObject {
    Q_OBJECT

public:
    /// Edge of a tile, in pixels of its level.
    static constexpr int TileEdge = 256;

    struct Piece {
        int Level = 0; ///< the picture halved so often
        QPoint Tile; ///< column and row of the tile on that level
        QRect Region; ///< in pixels of the level, within the tile
    };

    explicit OrvCanvasRenderer(QObject* pParent = nullptr);
    ~OrvCanvasRenderer() override;

    /// Shows another result, null for none. What was asked for before is forgotten.
    void setSource(OrvEngineNode* pResult, OrvDisplayTransform::Meaning Values, const QString& ColorSpace);
    /// Replaces all wishes; those at the front are computed first. One that is being computed is not computed
    /// again.
    void setWishes(QVector<Piece> Wishes);
    /// Nothing is wished, computed or waiting to be delivered.
    bool isIdle() const;

    /// While one lives, nothing more is evaluated: work that needs the engine again and again, such as
    /// saving, would wait for a part of the picture each time. What is wished meanwhile is computed
    /// afterwards.
    class Pause {
    public:
        /// Returns at once; of no renderer it is reached from the start.
        explicit Pause(OrvCanvasRenderer* pRenderer);
        ~Pause();
        Pause(const Pause&) = delete;
        Pause& operator=(const Pause&) = delete;

        /// The part that was being evaluated is done; waits for that so long.
        bool isReached(std::chrono::milliseconds Patience = std::chrono::milliseconds(0)) const;

    private:
        QPointer<OrvCanvasRenderer> m_pRenderer;
    };

    /// One pixel of the result as straight RGBA, in the source's colour space; waits for the engine. False
    /// when the picture takes too long to compute.
    bool readPixel(const QPoint& Pixel, float* pRgba);

Q_SIGNALS:
    void pieceReady(const OrvCanvasRenderer::Piece& Finished, const QImage& Pixels);
    /// Pixels of the picture are no longer up to date.
    void invalidated(const QRegion& Region);
    void becameIdle();

private:
    struct Delivery {
        Piece Finished;
        QImage Pixels;
    };

    void work();
    /// Null when the renderer ends meanwhile, or another source is to be shown.
    QImage compute(const Piece& Wanted, OrvDisplayTransform::Meaning Values, const QString& ColorSpace);
    bool computePart(const QRect& Part, int Level, float* pPixels, int Stride);
    bool beginPart();
    void endPart();
    void postDelivery();
    bool isOnItsWay(const Piece& Wanted) const;
    void noteInvalidated(const QRect& Region);
    Q_INVOKABLE void deliver();

    std::unique_ptr<OrvEngineNode> m_pShown;

    // The thread's own: how much it computes at once, of what.
    int m_PartEdge = TileEdge;
    int m_PartLevel = 0;
    int m_PartEpoch = -1;

    mutable std::mutex m_Mutex; ///< guards what follows; never held while the engine is asked for anything
    std::condition_variable m_Wake;
    std::condition_variable m_PartEnded;
    QVector<Piece> m_Wishes;
    Piece m_Present; ///< what is computed now
    QVector<Delivery> m_Deliveries;
    QRegion m_Invalidated;
    QRegion m_InvalidatedMeanwhile; ///< while the present piece was computed
    OrvDisplayTransform::Meaning m_Values = OrvDisplayTransform::Light;
    QString m_ColorSpace;
    int m_Epoch = 0; ///< counts the sources
    int m_PresentEpoch = 0;
    int m_Pauses = 0;
    bool m_Computing = false;
    bool m_Evaluating = false; ///< a part of the present piece
    bool m_DeliveryPosted = false;
    bool m_Quit = false;

    std::thread m_Thread;
};
