#include "Orvi/OrvCanvasRenderer.h"

#include "OrvDdi/Engine/OrvEngineNode.h"

#include <QtCore/QMetaObject>

#include <algorithm>
#include <vector>

namespace {

/// Between two parts the engine is free for so long: an edit of several steps must not wait for a part before
/// each.
constexpr std::chrono::microseconds Breath(100);
constexpr std::chrono::milliseconds LongestPart(40);
constexpr std::chrono::milliseconds LongestReading(100);
constexpr int SmallestPart = 16, FirstPart = 32; // pixels of the level
constexpr std::size_t Components = 4;
const OrvPixelFormat PixelFormat{GL_FLOAT, OrvPixelFormat::Rgba, OrvPixelFormat::Linear};
/// A region of more rectangles costs more than the pixels between them.
constexpr int MostRectangles = 64;

void unite(QRegion& Region, const QRect& Rect)
{
    Region += Rect;
    if (Region.rectCount() > MostRectangles)
        Region = Region.boundingRect();
}

/// What a piece shows, in pixels of the picture.
QRect pictureRect(const OrvCanvasRenderer::Piece& Piece)
{
    const int Scale = 1 << Piece.Level;
    // Relief is lit by what its neighbours are, which a picture tells of for its full scale alone.
    const int Reach = Piece.Level == 0 ? 0 : Scale;
    return QRect(Piece.Region.topLeft() * Scale, Piece.Region.size() * Scale)
        .adjusted(-Reach, -Reach, Reach, Reach);
}

} // namespace

OrvCanvasRenderer::OrvCanvasRenderer(QObject* pParent)
    : QObject(pParent)
    , m_Thread([this] { work(); })
{
}

OrvCanvasRenderer::~OrvCanvasRenderer()
{
    {
        const std::lock_guard<std::mutex> Lock(m_Mutex);
        m_Quit = true;
    }
    m_Wake.notify_all();
    m_Thread.join();
}

void OrvCanvasRenderer::setSource(
    OrvEngineNode* pResult, OrvDisplayTransform::Meaning Values, const QString& ColorSpace)
{
    {
        const std::lock_guard<std::mutex> Lock(m_Mutex);
        ++m_Epoch;
        m_Wishes.clear();
        m_Deliveries.clear();
        m_Invalidated = QRegion();
        m_Values = Values;
        m_ColorSpace = ColorSpace;
    }
    // Made with the first source: making it starts the image engine.
    if (!m_pShown && pResult) {
        auto pShown = OrvEngineNode::createPass();
        pShown->setInvalidated([this](const QRect& Region) { noteInvalidated(Region); });
        const std::lock_guard<std::mutex> Lock(m_Mutex);
        m_pShown = std::move(pShown);
    }
    if (m_pShown)
        m_pShown->connectInput(OrvEngineNode::Base, pResult);
}

void OrvCanvasRenderer::setWishes(QVector<Piece> Wishes)
{
    {
        const std::lock_guard<std::mutex> Lock(m_Mutex);
        const auto onItsWay = [this](const Piece& Wanted) { return isOnItsWay(Wanted); };
        Wishes.erase(std::remove_if(Wishes.begin(), Wishes.end(), onItsWay), Wishes.end());
        m_Wishes = std::move(Wishes);
    }
    m_Wake.notify_one();
}

bool OrvCanvasRenderer::isOnItsWay(const Piece& Wanted) const
{
    const auto covers = [&Wanted](const Piece& One, const QRegion& Invalidated) {
        return One.Level == Wanted.Level && One.Tile == Wanted.Tile && One.Region.contains(Wanted.Region)
            && !Invalidated.intersects(pictureRect(Wanted));
    };
    // What is computed for a source that is shown no more is thrown away.
    if (m_Computing && m_PresentEpoch == m_Epoch && covers(m_Present, m_InvalidatedMeanwhile))
        return true;
    return std::any_of(m_Deliveries.begin(), m_Deliveries.end(),
        [&](const Delivery& One) { return covers(One.Finished, m_Invalidated); });
}

bool OrvCanvasRenderer::isIdle() const
{
    const std::lock_guard<std::mutex> Lock(m_Mutex);
    return m_Wishes.isEmpty() && !m_Computing && !m_DeliveryPosted;
}

OrvCanvasRenderer::Pause::Pause(OrvCanvasRenderer* pRenderer)
    : m_pRenderer(pRenderer)
{
    if (!m_pRenderer)
        return;
    const std::lock_guard<std::mutex> Lock(m_pRenderer->m_Mutex);
    ++m_pRenderer->m_Pauses;
}

OrvCanvasRenderer::Pause::~Pause()
{
    if (!m_pRenderer)
        return;
    {
        const std::lock_guard<std::mutex> Lock(m_pRenderer->m_Mutex);
        --m_pRenderer->m_Pauses;
    }
    m_pRenderer->m_Wake.notify_all();
}

bool OrvCanvasRenderer::Pause::isReached(std::chrono::milliseconds Patience) const
{
    if (!m_pRenderer)
        return true;
    std::unique_lock<std::mutex> Lock(m_pRenderer->m_Mutex);
    return m_pRenderer->m_PartEnded.wait_for(Lock, Patience, [this] { return !m_pRenderer->m_Evaluating; });
}

bool OrvCanvasRenderer::beginPart()
{
    std::unique_lock<std::mutex> Lock(m_Mutex);
    m_Wake.wait(Lock, [this] { return m_Quit || m_Pauses == 0; });
    m_Evaluating = !m_Quit && m_PresentEpoch == m_Epoch;
    return m_Evaluating;
}

void OrvCanvasRenderer::endPart()
{
    {
        const std::lock_guard<std::mutex> Lock(m_Mutex);
        m_Evaluating = false;
    }
    m_PartEnded.notify_all();
}

bool OrvCanvasRenderer::readPixel(const QPoint& Pixel, float* pRgba)
{
    std::fill(pRgba, pRgba + 4, 0.0f);
    const auto Start = std::chrono::steady_clock::now();
    while (m_pShown && !m_pShown->renderTurn(QRect(Pixel, QSize(1, 1)), 1.0, PixelFormat, pRgba)) {
        if (std::chrono::steady_clock::now() - Start > LongestReading)
            return false;
    }
    return true;
}

void OrvCanvasRenderer::postDelivery()
{
    if (!std::exchange(m_DeliveryPosted, true))
        QMetaObject::invokeMethod(this, "deliver", Qt::QueuedConnection);
}

void OrvCanvasRenderer::noteInvalidated(const QRect& Region)
{
    const std::lock_guard<std::mutex> Lock(m_Mutex);
    unite(m_Invalidated, Region);
    if (m_Computing)
        unite(m_InvalidatedMeanwhile, Region);
    postDelivery();
}

bool OrvCanvasRenderer::computePart(const QRect& Part, int Level, float* pPixels, int Stride)
{
    for (bool Complete = false; !Complete; std::this_thread::sleep_for(Breath)) {
        if (!beginPart())
            return false;
        const auto Start = std::chrono::steady_clock::now();
        Complete = m_pShown->renderTurn(Part, 1.0 / (1 << Level), PixelFormat, pPixels, Stride);
        const auto Time = std::chrono::steady_clock::now() - Start;
        endPart();
        // Edits wait for no more than a part: costly pictures are computed in smaller ones.
        if (Complete && Time > LongestPart)
            m_PartEdge = std::max(SmallestPart, m_PartEdge / 2);
        else if (Complete && Time < LongestPart / 4) // the next has four times the pixels
            m_PartEdge = std::min(TileEdge, m_PartEdge * 2);
    }
    return true;
}

QImage OrvCanvasRenderer::compute(
    const Piece& Wanted, OrvDisplayTransform::Meaning Values, const QString& ColorSpace)
{
    if (m_PartLevel != Wanted.Level || m_PartEpoch != m_PresentEpoch) {
        // Nobody knows yet what a part of this costs.
        m_PartEdge = FirstPart;
        m_PartLevel = Wanted.Level;
        m_PartEpoch = m_PresentEpoch;
    }
    const QRect& Region = Wanted.Region;
    const int Width = Region.width(), Height = Region.height();
    std::vector<float> Pixels(std::size_t(Width) * std::size_t(Height) * Components);
    for (int Y = 0, NextY = 0; Y < Height; Y = NextY) {
        NextY = std::min(Height, Y + m_PartEdge);
        for (int X = 0, NextX = 0; X < Width; X = NextX) {
            NextX = std::min(Width, X + m_PartEdge);
            const QRect Part(Region.left() + X, Region.top() + Y, NextX - X, NextY - Y);
            float* pPixels
                = Pixels.data() + (std::size_t(Y) * std::size_t(Width) + std::size_t(X)) * Components;
            if (!computePart(Part, Wanted.Level, pPixels, Width * int(Components * sizeof(float))))
                return QImage();
        }
    }
    return OrvDisplayTransform::toImage(Pixels.data(), Region.size(), Values, ColorSpace);
}

void OrvCanvasRenderer::work()
{
    std::unique_lock<std::mutex> Lock(m_Mutex);
    while (true) {
        m_Wake.wait(Lock, [this] { return m_Quit || (m_pShown && m_Pauses == 0 && !m_Wishes.isEmpty()); });
        if (m_Quit)
            return;
        const Piece Wanted = m_Wishes.takeFirst();
        const OrvDisplayTransform::Meaning Values = m_Values;
        const QString ColorSpace = m_ColorSpace;
        m_Present = Wanted;
        m_PresentEpoch = m_Epoch;
        m_Computing = true;
        m_InvalidatedMeanwhile = QRegion();
        Lock.unlock();
        const QImage Pixels = compute(Wanted, Values, ColorSpace);
        Lock.lock();
        if (m_Quit)
            return;
        m_Computing = false;
        if (m_PresentEpoch == m_Epoch) {
            m_Deliveries.append({Wanted, Pixels});
            // The piece may show pixels from before an edit that has been announced already.
            m_Invalidated += m_InvalidatedMeanwhile.intersected(pictureRect(Wanted));
        }
        postDelivery();
    }
}

void OrvCanvasRenderer::deliver()
{
    QVector<Delivery> Deliveries;
    QRegion Invalidated;
    {
        const std::lock_guard<std::mutex> Lock(m_Mutex);
        m_DeliveryPosted = false;
        Deliveries.swap(m_Deliveries);
        Invalidated.swap(m_Invalidated);
    }
    for (const Delivery& One : qAsConst(Deliveries))
        Q_EMIT pieceReady(One.Finished, One.Pixels);
    if (!Invalidated.isEmpty())
        Q_EMIT invalidated(Invalidated);
    if (isIdle())
        Q_EMIT becameIdle();
}

#include "moc_OrvCanvasRenderer.cpp"
