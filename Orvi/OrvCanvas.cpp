#include "Orvi/OrvCanvas.h"

#include "Orvi/OrvBrushTool.h"
#include "Orvi/OrvCanvasOverlay.h"
#include "Orvi/OrvCanvasSelection.h"
#include "Orvi/OrvCanvasTools.h"
#include "Orvi/OrvSelectionTool.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCoreModules/DragAndDrop/OrvDragAndDropManager.h"
#include "OrvCoreModules/Window/OrvGui.h"
#include "OrvCoreModules/Window/OrvStatusManager.h"

#include <QtCore/QMimeData>
#include <QtGui/QDropEvent>
#include <QtGui/QPainter>
#include <QtGui/QTabletEvent>
#include <QtWidgets/QToolTip>

#include <array>
#include <cmath>

namespace {

constexpr double WheelZoom = 1.0 / 480.0; // powers of two a wheel unit: a notch is a quarter
constexpr double ZoomStep = 1.4142135623730951;
constexpr int OutlineInterval = 120; // ms between two steps of the ants
constexpr int MessageDuration = 5000; // ms

QVariantMap dropPlace(const OrvCanvasSource& Source)
{
    QVariantMap Place;
    if (OrvShaderInput* pChannel = Source.channel()) {
        Place.insert(QStringLiteral("LayerStack"), QVariant::fromValue<OrvLayerStack*>(pChannel));
        if (OrvLayer* pLayer = pChannel->currentLayer())
            Place.insert(QStringLiteral("LayerBelow"), QVariant::fromValue(pLayer));
    }
    return Place;
}

} // namespace

OrvCanvas::OrvCanvas(OrvCanvasTools* pTools, QWidget* pParent)
    : QWidget(pParent)
    , m_pTools(pTools)
{
    setObjectName(QStringLiteral("Canvas"));
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    setFocusPolicy(Qt::ClickFocus);
    setAcceptDrops(true);
    connect(&m_Source, &OrvCanvasSource::changed, this, &OrvCanvas::showSource);
    connect(&m_Source, &OrvCanvasSource::descriptionChanged, this, qOverload<>(&QWidget::update));
    connect(&m_Renderer, &OrvCanvasRenderer::pieceReady, this, &OrvCanvas::onPieceReady);
    connect(&m_Renderer, &OrvCanvasRenderer::invalidated, this, &OrvCanvas::onInvalidated);
    connect(&m_Renderer, &OrvCanvasRenderer::becameIdle, this, &OrvCanvas::updateActivity);
    connect(&m_Activity, &OrvCanvasActivity::changed, this,
        [this] { update(toWidgetRect(OrvCanvasActivity::rect(devicePixelRatioF()))); });
    connect(&m_Light, &OrvCanvasLight::changed, this, qOverload<>(&QWidget::update));
    connect(m_pTools->brushTool(), &OrvBrushTool::brushChanged, this, qOverload<>(&QWidget::update));
    connect(m_pTools->selection(), &OrvCanvasSelection::changed, this, &OrvCanvas::updateOutline);
    connect(m_pTools->selectionTool(), &OrvSelectionTool::draftChanged, this, &OrvCanvas::updateOutline);
    connect(m_pTools, &OrvCanvasTools::toolChanged, this, qOverload<>(&QWidget::update));
    m_OutlineTimer.setInterval(OutlineInterval);
    connect(&m_OutlineTimer, &QTimer::timeout, this, &OrvCanvas::stepOutline);
    showSource();
    updateCursor();
}

OrvCanvas::~OrvCanvas()
{
    m_Renderer.setSource(nullptr, OrvDisplayTransform::Light, QString());
}

QSize OrvCanvas::sizeHint() const
{
    return QSize(900, 700);
}

QSize OrvCanvas::minimumSizeHint() const
{
    return QSize(160, 120);
}

QSize OrvCanvas::deviceSize() const
{
    // A part of a pixel at the edge is a whole one to the window system.
    const QSizeF Exact = QSizeF(size()) * devicePixelRatioF();
    return QSize(int(std::ceil(Exact.width())), int(std::ceil(Exact.height())));
}

QRect OrvCanvas::toWidgetRect(const QRectF& DeviceRect) const
{
    const double Ratio = devicePixelRatioF();
    return QRectF(DeviceRect.topLeft() / Ratio, DeviceRect.size() / Ratio).toAlignedRect();
}

QPointF OrvCanvas::toPicture(const QPointF& WidgetPoint) const
{
    return m_View.toPicture(toDevice(WidgetPoint));
}

QPointF OrvCanvas::toWidget(const QPointF& PicturePoint) const
{
    return m_View.toViewport(PicturePoint) / devicePixelRatioF();
}

void OrvCanvas::showSource()
{
    const QRect Extent = m_Source.result() ? m_Source.layout().extent() : QRect();
    // The picture's part that the user looks at stays the same from channel to channel of one size.
    if (!Extent.isEmpty())
        m_View.setContent(Extent);
    m_Tiles.reset(Extent);
    m_Renderer.setSource(m_Source.result(), m_Source.meaning(), m_Source.colorSpace());
    m_Light.setPicture(m_Source.isLit() && !Extent.isEmpty() ? m_Source.layout() : OrvUdimLayout());
    updateOutline();
    requestMissing();
    updateCursor();
    update();
}

void OrvCanvas::onPieceReady(const OrvCanvasRenderer::Piece& Finished, const QImage& Pixels)
{
    m_Tiles.put(Finished, Pixels);
    const int Scale = 1 << Finished.Level;
    const QRectF Picture(QPointF(Finished.Region.topLeft()) * Scale, QSizeF(Finished.Region.size()) * Scale);
    update(toWidgetRect(m_View.toViewport(Picture)).adjusted(-2, -2, 2, 2));
}

void OrvCanvas::onInvalidated(const QRegion& Region)
{
    m_Tiles.invalidate(Region);
    requestMissing();
}

void OrvCanvas::updateActivity()
{
    m_Activity.setBusy(!isSettled());
}

void OrvCanvas::requestMissing()
{
    if (m_Tiles.extent().isEmpty()) {
        updateActivity();
        return;
    }
    const QPointF Focus = m_PointerInside ? toPicture(m_Pointer) : QRectF(m_View.visiblePart()).center();
    m_Renderer.setWishes(m_Tiles.wishes(m_View.mipLevel(), m_View.visiblePart(), Focus));
    updateActivity();
}

bool OrvCanvas::isSettled() const
{
    return m_Renderer.isIdle()
        && (m_Tiles.extent().isEmpty()
            || m_Tiles.wishes(m_View.mipLevel(), m_View.visiblePart(), QPointF()).isEmpty());
}

void OrvCanvas::paintEvent(QPaintEvent* pEvent)
{
    const double Ratio = devicePixelRatioF();
    QPainter Painter(this);
    Painter.setClipRegion(pEvent->region());
    Painter.scale(1.0 / Ratio, 1.0 / Ratio);
    const QRect Viewport(QPoint(0, 0), deviceSize());
    OrvCanvasOverlay::drawBackground(Painter, Viewport);
    if (m_Tiles.extent().isEmpty()) {
        OrvCanvasOverlay::drawHint(Painter, Viewport, Ratio);
    } else {
        Painter.save();
        OrvCanvasOverlay::drawChecker(Painter, m_Source, m_View);
        m_Tiles.draw(Painter, m_View);
        Painter.restore();
        OrvCanvasOverlay::drawTileBorders(Painter, m_Source, m_View, Ratio);
        OrvCanvasOverlay::drawTitle(Painter, m_Source, m_View, Ratio);
        m_Activity.draw(Painter, Ratio);
        m_Outline.draw(Painter, m_View, Viewport, Ratio, m_OutlineStep);
        m_Light.draw(Painter, m_View, Ratio, isOverLight());
        const bool BrushShown = m_PointerInside && m_Gesture != Gesture::Pan
            && m_Gesture != Gesture::MoveLight && !m_SpaceHeld && !isOverLight()
            && m_pTools->tool() == OrvCanvasTools::Brush;
        if (BrushShown) {
            OrvCanvasOverlay::drawBrush(
                Painter, m_pTools->brushTool()->brush(), toDevice(m_Pointer), zoom(), Ratio);
        }
        m_Tiles.trim();
    }
    if (m_DropHovers)
        OrvCanvasOverlay::drawDropFrame(Painter, Viewport, Ratio);
}

void OrvCanvas::resizeEvent(QResizeEvent*)
{
    m_View.setViewport(deviceSize());
    requestMissing();
}

void OrvCanvas::zoomBy(double Factor, const QPointF& WidgetPoint)
{
    m_View.zoomAt(toDevice(WidgetPoint), m_View.zoom() * Factor);
    requestMissing();
    update();
}

void OrvCanvas::fit()
{
    m_View.fit();
    requestMissing();
    update();
}

void OrvCanvas::showActualSize()
{
    const QPointF Anchor = m_PointerInside ? m_Pointer : QRectF(rect()).center();
    zoomBy(1.0 / m_View.zoom(), Anchor);
}

void OrvCanvas::zoomIn()
{
    zoomBy(ZoomStep, m_PointerInside ? m_Pointer : QRectF(rect()).center());
}

void OrvCanvas::zoomOut()
{
    zoomBy(1.0 / ZoomStep, m_PointerInside ? m_Pointer : QRectF(rect()).center());
}

void OrvCanvas::wheelEvent(QWheelEvent* pEvent)
{
    const int Units = pEvent->angleDelta().y();
    if (Units == 0)
        return pEvent->ignore();
    m_Pointer = pEvent->position();
    if (isOverLight() || m_Gesture == Gesture::MoveLight) {
        m_Light.turnWheel(Units, pEvent->modifiers());
        showLightToolTip();
    } else {
        zoomBy(std::exp2(Units * WheelZoom), m_Pointer);
    }
    pEvent->accept();
}

QRect OrvCanvas::brushCursorRect(const QPointF& WidgetPoint) const
{
    const double Reach = m_pTools->brushTool()->brush().size() / 2.0 * zoom() / devicePixelRatioF() + 6.0;
    return QRectF(WidgetPoint.x() - Reach, WidgetPoint.y() - Reach, 2.0 * Reach, 2.0 * Reach).toAlignedRect();
}

void OrvCanvas::pickColor(const QPointF& WidgetPoint)
{
    const QPointF Point = toPicture(WidgetPoint);
    const QPoint Pixel(int(std::floor(Point.x())), int(std::floor(Point.y())));
    if (!m_Tiles.extent().contains(Pixel))
        return;
    std::array<float, 4> Rgba;
    if (!m_Renderer.readPixel(Pixel, Rgba.data())) {
        OrvStatusManager::instance().showMessage(
            tr("The picture is still being computed here: pick the color again in a moment"),
            MessageDuration);
        return;
    }
    if (Rgba[3] <= 0.0f)
        return;
    Rgba[3] = 1.0f;
    OrvBrush Brush = m_pTools->brushTool()->brush();
    Brush.setColor(
        OrvDisplayTransform::toImage(Rgba.data(), QSize(1, 1), m_Source.meaning(), m_Source.colorSpace())
            .pixelColor(0, 0));
    m_pTools->brushTool()->setBrush(Brush);
}

void OrvCanvas::updateOutline()
{
    const bool Shown = !m_Tiles.extent().isEmpty();
    m_Outline.setPaths(Shown ? m_pTools->selection()->area().toPlane(m_Source.layout()) : QPainterPath(),
        Shown ? m_pTools->selectionTool()->draft() : QPainterPath());
    if (m_Outline.isEmpty())
        m_OutlineTimer.stop();
    else if (!m_OutlineTimer.isActive())
        m_OutlineTimer.start();
    update();
}

void OrvCanvas::stepOutline()
{
    if (!isVisible())
        return;
    m_OutlineStep = (m_OutlineStep + 1) % OrvSelectionOutline::Period;
    const double Ratio = devicePixelRatioF();
    QRegion Region;
    for (const QRect& Rect : m_Outline.region(m_View, QRect(QPoint(0, 0), deviceSize()), Ratio))
        Region += toWidgetRect(Rect);
    update(Region);
}

void OrvCanvas::beginTool(const QMouseEvent& Event)
{
    const Qt::KeyboardModifiers Modifiers = Event.modifiers();
    const bool Brush = m_pTools->tool() == OrvCanvasTools::Brush;
    if (Modifiers & Qt::ControlModifier || (Brush && Modifiers & Qt::AltModifier)) {
        m_Gesture = Gesture::PickColor;
        pickColor(m_Pointer);
    } else if (!Brush) {
        m_Gesture = Gesture::Select;
        m_pTools->selectionTool()->begin(toPicture(m_Pointer), m_Source.layout(), Modifiers);
    } else if (m_pTools->brushTool()->begin(
                   toPicture(m_Pointer), Modifiers & Qt::ShiftModifier, m_Source.layout())) {
        m_Gesture = Gesture::Paint;
    }
}

bool OrvCanvas::isOverLight() const
{
    const bool IsFree = m_Gesture == Gesture::None || m_Gesture == Gesture::MoveLight;
    return IsFree && m_PointerInside && !m_SpaceHeld
        && m_Light.isAt(toDevice(m_Pointer), m_View, devicePixelRatioF());
}

void OrvCanvas::showLightToolTip()
{
    QToolTip::showText(mapToGlobal(m_Pointer.toPoint()), m_Light.toolTip(), this);
}

void OrvCanvas::mousePressEvent(QMouseEvent* pEvent)
{
    if (m_PenPaints)
        return;
    m_Pointer = pEvent->localPos();
    if (m_Gesture != Gesture::None || m_Tiles.extent().isEmpty())
        return;
    const bool Left = pEvent->button() == Qt::LeftButton;
    if (pEvent->button() == Qt::MiddleButton || (Left && m_SpaceHeld)) {
        m_Gesture = Gesture::Pan;
    } else if (Left && m_Light.isAt(toDevice(m_Pointer), m_View, devicePixelRatioF())) {
        m_Gesture = Gesture::MoveLight;
        m_Light.beginDrag(toDevice(m_Pointer), m_View, devicePixelRatioF());
    } else if (Left) {
        beginTool(*pEvent);
    }
    updateCursor();
    update();
}

void OrvCanvas::mouseMoveEvent(QMouseEvent* pEvent)
{
    // Some systems send the mouse's events along with the pen's.
    if (!m_PenPaints)
        movePointer(pEvent->localPos(), 1.0);
}

void OrvCanvas::movePointer(const QPointF& WidgetPoint, double Pressure)
{
    const QPointF Before = m_Pointer;
    const bool WasOverLight = isOverLight();
    m_Pointer = WidgetPoint;
    m_PointerInside = rect().contains(m_Pointer.toPoint());
    if (m_Gesture == Gesture::Pan) {
        m_View.panBy(toDevice(m_Pointer) - toDevice(Before));
        requestMissing();
        update();
        return;
    }
    if (m_Gesture == Gesture::Paint)
        m_pTools->brushTool()->moveTo(toPicture(m_Pointer), Pressure);
    else if (m_Gesture == Gesture::PickColor)
        pickColor(m_Pointer);
    else if (m_Gesture == Gesture::Select)
        m_pTools->selectionTool()->moveTo(toPicture(m_Pointer));
    else if (m_Gesture == Gesture::MoveLight)
        m_Light.dragTo(toDevice(m_Pointer), m_View);
    if (isOverLight() != WasOverLight) {
        updateCursor();
        update();
    }
    update(brushCursorRect(Before));
    update(brushCursorRect(m_Pointer));
}

void OrvCanvas::mouseReleaseEvent(QMouseEvent* pEvent)
{
    const bool Ends = m_Gesture == Gesture::Pan
        ? pEvent->button() == Qt::MiddleButton || pEvent->button() == Qt::LeftButton
        : pEvent->button() == Qt::LeftButton;
    if (Ends && !m_PenPaints)
        finishGesture();
}

void OrvCanvas::finishGesture()
{
    if (m_Gesture == Gesture::Paint)
        m_pTools->brushTool()->end();
    else if (m_Gesture == Gesture::Select)
        m_pTools->selectionTool()->end();
    else if (m_Gesture == Gesture::MoveLight)
        m_Light.endDrag();
    m_Gesture = Gesture::None;
    updateCursor();
    update();
}

bool OrvCanvas::startsStroke(const QTabletEvent& Event) const
{
    // The puck of a tablet is a mouse: it has no pressure.
    return Event.button() == Qt::LeftButton && Event.pointerType() != QTabletEvent::Cursor
        && m_pTools->tool() == OrvCanvasTools::Brush
        && !(Event.modifiers() & (Qt::ControlModifier | Qt::AltModifier)) && !m_SpaceHeld
        && m_Gesture == Gesture::None && !m_Tiles.extent().isEmpty()
        && !m_Light.isAt(toDevice(Event.posF()), m_View, devicePixelRatioF());
}

void OrvCanvas::tabletEvent(QTabletEvent* pEvent)
{
    // Strokes alone are the pen's: an event that is not accepted comes again as the mouse's.
    pEvent->setAccepted(pEvent->type() == QEvent::TabletPress ? startsStroke(*pEvent) : m_PenPaints);
    if (!pEvent->isAccepted())
        return;
    if (pEvent->type() == QEvent::TabletPress) {
        m_PenPaints = true;
        setFocus(Qt::MouseFocusReason);
        movePointer(pEvent->posF(), pEvent->pressure());
        if (m_pTools->brushTool()->begin(toPicture(m_Pointer), pEvent->modifiers() & Qt::ShiftModifier,
                m_Source.layout(), pEvent->pressure()))
            m_Gesture = Gesture::Paint;
        updateCursor();
    } else if (pEvent->type() == QEvent::TabletMove) {
        movePointer(pEvent->posF(), pEvent->pressure());
    } else if (pEvent->type() == QEvent::TabletRelease && pEvent->button() == Qt::LeftButton) {
        m_PenPaints = false;
        finishGesture();
    }
}

void OrvCanvas::mouseDoubleClickEvent(QMouseEvent* pEvent)
{
    m_Pointer = pEvent->localPos();
    if (pEvent->button() == Qt::LeftButton && m_Gesture == Gesture::None
        && m_Light.isAt(toDevice(m_Pointer), m_View, devicePixelRatioF())) {
        m_Light.resetLight();
    } else {
        mousePressEvent(pEvent);
    }
}

void OrvCanvas::leaveEvent(QEvent*)
{
    m_PointerInside = false;
    update();
}

void OrvCanvas::keyPressEvent(QKeyEvent* pEvent)
{
    if (pEvent->key() == Qt::Key_Space) {
        m_SpaceHeld = true;
        updateCursor();
        update();
    } else if (pEvent->key() == Qt::Key_Escape && m_Gesture == Gesture::Paint) {
        m_pTools->brushTool()->cancel();
        m_Gesture = Gesture::None;
    } else if (pEvent->key() == Qt::Key_Escape && m_Gesture == Gesture::Select) {
        m_pTools->selectionTool()->cancel();
        m_Gesture = Gesture::None;
    } else if (pEvent->key() == Qt::Key_Escape && m_Gesture == Gesture::MoveLight) {
        m_Light.cancelDrag();
        m_Gesture = Gesture::None;
        updateCursor();
    } else {
        QWidget::keyPressEvent(pEvent);
    }
}

void OrvCanvas::keyReleaseEvent(QKeyEvent* pEvent)
{
    if (pEvent->key() != Qt::Key_Space || pEvent->isAutoRepeat())
        return QWidget::keyReleaseEvent(pEvent);
    m_SpaceHeld = false;
    updateCursor();
    update();
}

void OrvCanvas::focusOutEvent(QFocusEvent* pEvent)
{
    m_SpaceHeld = false;
    updateCursor();
    QWidget::focusOutEvent(pEvent);
}

bool OrvCanvas::event(QEvent* pEvent)
{
    if (pEvent->type() == QEvent::Enter) {
        m_PointerInside = true;
        m_Pointer = static_cast<QEnterEvent*>(pEvent)->localPos();
        // The space bar must reach the canvas while the pointer is over it.
        OrvGui::stealFocusGently(this);
        updateCursor();
    } else if (pEvent->type() == QEvent::ToolTip) {
        if (isOverLight())
            showLightToolTip();
        else
            QToolTip::hideText();
        return true;
    }
    return QWidget::event(pEvent);
}

void OrvCanvas::updateCursor()
{
    if (m_Tiles.extent().isEmpty())
        setCursor(Qt::ArrowCursor);
    else if (m_Gesture == Gesture::Pan || m_Gesture == Gesture::MoveLight)
        setCursor(Qt::ClosedHandCursor);
    else if (m_SpaceHeld || isOverLight())
        setCursor(Qt::OpenHandCursor);
    else
        setCursor(Qt::CrossCursor);
}

void OrvCanvas::dragEnterEvent(QDragEnterEvent* pEvent)
{
    m_DropHovers = OrvDragAndDropManager::instance().acceptDragEnter(
        pEvent->mimeData(), OrvDragAndDropManager::CanvasTarget);
    // Whoever is told of a move deletes what was dragged.
    pEvent->setDropAction(Qt::CopyAction);
    pEvent->setAccepted(m_DropHovers);
    update();
}

void OrvCanvas::dragLeaveEvent(QDragLeaveEvent*)
{
    m_DropHovers = false;
    update();
}

void OrvCanvas::dropEvent(QDropEvent* pEvent)
{
    m_DropHovers = false;
    update();
    pEvent->setDropAction(Qt::CopyAction);
    pEvent->setAccepted(OrvDragAndDropManager::instance().drop(
        pEvent->mimeData(), OrvDragAndDropManager::CanvasTarget, dropPlace(m_Source)));
}

#include "moc_OrvCanvas.cpp"
