#include "Orvi/OrvCanvasRenderer.h"

#include "OrvDdi/Engine/OrvEngineNode.h"

#include <QtCore/QMetaObject>

#include <algorithm>
#include <vector>

namespace {

/// Between two parts the engine is free for so long: its lock is not fair, and an edit must not wait for all
/// of the picture.
constexpr std::chrono::microseconds Breath(100);
constexpr std::chrono::milliseconds LongestPart(60);
constexpr int SmallestPart = OrvCanvasRenderer::TileEdge / 2;
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

/// In pixels of the picture.
QRect pictureRect(const OrvCanvasRenderer::Piece& Piece)
{
    const int Scale = 1 << Piece.Level;
    return QRect(Piece.Region.topLeft() * Scale, Piece.Region.size() * Scale);
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
    m_Evaluating = !m_Quit;
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

void OrvCanvasRenderer::readPixel(const QPoint& Pixel, float* pRgba)
{
    std::fill(pRgba, pRgba + 4, 0.0f);
    if (m_pShown)
        m_pShown->render(QRect(Pixel, QSize(1, 1)), 1.0, PixelFormat, pRgba);
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

QImage OrvCanvasRenderer::compute(
    const Piece& Wanted, OrvDisplayTransform::Meaning Values, const QString& ColorSpace)
{
    const QRect& Region = Wanted.Region;
    std::vector<float> Pixels(std::size_t(Region.width()) * std::size_t(Region.height()) * Components);
    const int Stride = Region.width() * int(Components * sizeof(float));
    for (int Top = Region.top(); Top <= Region.bottom(); Top += m_PartEdge) {
        for (int Left = Region.left(); Left <= Region.right(); Left += m_PartEdge) {
            const QRect Part = QRect(Left, Top, m_PartEdge, m_PartEdge).intersected(Region);
            const std::size_t First = std::size_t(Top - Region.top()) * std::size_t(Region.width())
                + std::size_t(Left - Region.left());
            if (!beginPart())
                return QImage();
            const auto Start = std::chrono::steady_clock::now();
            m_pShown->render(
                Part, 1.0 / (1 << Wanted.Level), PixelFormat, Pixels.data() + First * Components, Stride);
            m_Slowest = std::max(m_Slowest, std::chrono::steady_clock::now() - Start);
            endPart();
            std::this_thread::sleep_for(Breath);
        }
    }
    // Edits wait for no more than a part: costly pictures are computed in smaller ones.
    const bool Costly = m_Slowest > (m_PartEdge == TileEdge ? LongestPart : LongestPart / 4);
    m_PartEdge = Costly ? SmallestPart : TileEdge;
    m_Slowest /= 2;
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
