#include "OrvCoreModules/Graph/OrvNodeGraphView.h"

#include "OrvCoreModules/DragAndDrop/OrvDragAndDropManager.h"
#include "OrvCoreModules/Graph/OrvNodeGraphCommands.h"
#include "OrvCoreModules/Graph/OrvNodeGraphGesture.h"
#include "OrvCoreModules/Graph/OrvNodeGraphScene.h"
#include "OrvCoreModules/Graph/OrvNodeGraphSelection.h"
#include "OrvCoreModules/Graph/OrvNodeItem.h"
#include "OrvCoreModules/Graph/OrvNodeTitleEdit.h"
#include "OrvCoreModules/Graph/OrvWireItem.h"

#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnBaseNode.h"

#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QScrollBar>

#include <cmath>

namespace {

constexpr qreal LeastZoom = 0.03, GreatestZoom = 2.5;
constexpr qreal ReadableZoom = 0.8;
constexpr qreal LegibleZoom = 0.25,
                StartZoom = 0.6; // a graph too large to be read as a whole is entered in its middle
constexpr qreal ConnectorZoom = 0.3; // below this zoom connectors are too small to aim at
constexpr qreal FrameMargin = 40.0;
constexpr qreal GridStep = 100.0;
constexpr int GridStepsPerLine = 5;
constexpr qreal LeastGridPixels = 14.0;

const QColor Ground(0x2a, 0x2a, 0x2a), GridLine(0x30, 0x30, 0x30), StrongGridLine(0x36, 0x36, 0x36);

void drawGrid(QPainter* pPainter, const QRectF& Area, qreal Step, const QColor& Color)
{
    QVector<QLineF> Lines;
    for (qreal X = std::floor(Area.left() / Step) * Step; X <= Area.right(); X += Step)
        Lines.append(QLineF(X, Area.top(), X, Area.bottom()));
    for (qreal Y = std::floor(Area.top() / Step) * Step; Y <= Area.bottom(); Y += Step)
        Lines.append(QLineF(Area.left(), Y, Area.right(), Y));
    QPen Pen(Color, 1.0);
    Pen.setCosmetic(true);
    pPainter->setPen(Pen);
    pPainter->drawLines(Lines);
}

} // namespace

OrvNodeGraphView::OrvNodeGraphView(OrvNodeGraphScene* pScene, QWidget* pParent)
    : QGraphicsView(pScene, pParent)
    , m_pScene(pScene)
{
    setFrameShape(NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTransformationAnchor(NoAnchor);
    setResizeAnchor(AnchorViewCenter);
    setViewportUpdateMode(SmartViewportUpdate);
    setFocusPolicy(Qt::StrongFocus);
    setAcceptDrops(true);
    viewport()->setAcceptDrops(true);
    viewport()->setMouseTracking(true);
    connect(pScene, &OrvNodeGraphScene::networkChanged, this, &OrvNodeGraphView::onNetworkChanged);
    connect(pScene, &OrvNodeGraphScene::synchronized, this, &OrvNodeGraphView::onSynchronized);
}

OrvNodeGraphView::~OrvNodeGraphView() = default;

bool OrvNodeGraphView::showsConnectors() const
{
    return zoom() >= ConnectorZoom;
}

void OrvNodeGraphView::setZoom(qreal Zoom, const QPoint& FixedPoint)
{
    Zoom = qBound(LeastZoom, Zoom, GreatestZoom);
    const QPointF Fixed = mapToScene(FixedPoint);
    setTransform(QTransform::fromScale(Zoom, Zoom));
    // What was under the point is there again.
    const QPoint Drift = mapFromScene(Fixed) - FixedPoint;
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() + Drift.x());
    verticalScrollBar()->setValue(verticalScrollBar()->value() + Drift.y());
}

void OrvNodeGraphView::fit(const QRectF& Area)
{
    if (Area.isEmpty())
        return;
    const QSizeF Room = QSizeF(viewport()->size()) - QSizeF(2.0 * FrameMargin, 2.0 * FrameMargin);
    const qreal Fitting = qMin(Room.width() / Area.width(), Room.height() / Area.height());
    setZoom(qMin(1.0, Fitting), viewport()->rect().center());
    centerOn(Area.center());
}

QRectF OrvNodeGraphView::contentRect() const
{
    QRectF Area;
    for (const OrvNodeItem* pItem : graph()->nodeItems())
        Area |= pItem->sceneBoundingRect();
    return Area;
}

void OrvNodeGraphView::frame(const QRectF& Area)
{
    takeOver();
    fit(Area);
}

void OrvNodeGraphView::frameAll()
{
    frame(contentRect());
}

void OrvNodeGraphView::frameStart()
{
    fit(contentRect());
    const QRectF Selected = graph()->nodesRect(graph()->selectedNodes());
    if (zoom() >= LegibleZoom || Selected.isEmpty())
        return;
    setZoom(StartZoom, viewport()->rect().center());
    centerOn(Selected.center());
}

void OrvNodeGraphView::focusOn(OrvSnBaseNode* pNode)
{
    const OrvNodeItem* pItem = graph()->item(pNode);
    if (!pItem)
        return;
    takeOver();
    if (zoom() < ReadableZoom)
        setZoom(1.0, viewport()->rect().center());
    centerOn(pItem->sceneBoundingRect().center());
}

QPointF OrvNodeGraphView::pointedPlace() const
{
    const QPoint Position = viewport()->mapFromGlobal(QCursor::pos());
    return viewport()->rect().contains(Position) ? mapToScene(Position) : middle();
}

void OrvNodeGraphView::editTitle(OrvSnBaseNode* pNode)
{
    const OrvNodeItem* pItem = graph()->item(pNode);
    if (!pItem)
        return;
    if (m_pTitleEdit)
        m_pTitleEdit->end(true);
    const QRect Area = mapFromScene(pItem->mapRectToScene(pItem->titleBar())).boundingRect();
    const int LeastHeight = fontMetrics().height() + 4;
    const QSize Size = Area.size().expandedTo({120, LeastHeight});
    m_pTitleEdit = new OrvNodeTitleEdit(pItem->look().Title, QRect(Area.topLeft(), Size), viewport());
    connect(m_pTitleEdit, &OrvNodeTitleEdit::committed, this, [this, pNode](const QString& Text) {
        // The node may have gone while its name was edited.
        if (graph()->item(pNode))
            OrvNodeGraphCommands::rename(pNode, Text);
    });
}

void OrvNodeGraphView::keepSight()
{
    if (!m_pShown || m_FollowsContent)
        return;
    if (!m_Sights.contains(m_pShown))
        connect(m_pShown, &QObject::destroyed, this, [this](QObject* pGone) { m_Sights.remove(pGone); });
    m_Sights.insert(m_pShown, {zoom(), middle()});
}

void OrvNodeGraphView::onNetworkChanged(OrvShaderNetwork* pNetwork)
{
    if (m_pTitleEdit)
        m_pTitleEdit->end(false);
    endGesture(false);
    keepSight();
    m_pShown = pNetwork;
    m_FollowsContent = true;
    if (!pNetwork)
        return;
    const auto Known = m_Sights.constFind(pNetwork);
    if (Known == m_Sights.cend()) {
        frameStart();
        return;
    }
    takeOver();
    setZoom(Known->Zoom, viewport()->rect().center());
    centerOn(Known->Middle);
}

void OrvNodeGraphView::onSynchronized()
{
    if (m_FollowsContent)
        frameStart();
}

void OrvNodeGraphView::resizeEvent(QResizeEvent* pEvent)
{
    QGraphicsView::resizeEvent(pEvent);
    if (m_FollowsContent)
        frameStart();
}

void OrvNodeGraphView::scrollContentsBy(int X, int Y)
{
    if (m_pTitleEdit)
        m_pTitleEdit->end(true);
    QGraphicsView::scrollContentsBy(X, Y);
}

bool OrvNodeGraphView::event(QEvent* pEvent)
{
    // Whatever the window does with these keys, they belong to a drag here.
    if (pEvent->type() == QEvent::ShortcutOverride) {
        const int Key = static_cast<QKeyEvent*>(pEvent)->key();
        if ((Key == Qt::Key_Escape && m_pGesture) || Key == Qt::Key_Space)
            pEvent->accept();
    }
    return QGraphicsView::event(pEvent);
}

void OrvNodeGraphView::keyPressEvent(QKeyEvent* pEvent)
{
    if (pEvent->key() == Qt::Key_Escape && m_pGesture) {
        endGesture(false);
        OrvNodeGraphSelection::publish(*graph());
        return;
    }
    if (pEvent->key() == Qt::Key_Space) {
        if (!pEvent->isAutoRepeat()) {
            m_SpaceHeld = true;
            updateCursor();
        }
        return;
    }
    pEvent->ignore();
}

void OrvNodeGraphView::keyReleaseEvent(QKeyEvent* pEvent)
{
    if (pEvent->key() != Qt::Key_Space || pEvent->isAutoRepeat()) {
        pEvent->ignore();
        return;
    }
    m_SpaceHeld = false;
    updateCursor();
}

void OrvNodeGraphView::updateCursor(bool OnConnector)
{
    if (m_Panning)
        viewport()->setCursor(Qt::ClosedHandCursor);
    else if (m_SpaceHeld)
        viewport()->setCursor(Qt::OpenHandCursor);
    else if (OnConnector)
        viewport()->setCursor(Qt::CrossCursor);
    else
        viewport()->unsetCursor();
}

void OrvNodeGraphView::startPan(const QPoint& Position)
{
    takeOver();
    m_Panning = true;
    m_PannedAt = Position;
    updateCursor();
}

void OrvNodeGraphView::wheelEvent(QWheelEvent* pEvent)
{
    takeOver();
    if (m_pTitleEdit)
        m_pTitleEdit->end(true);
    setZoom(zoom() * std::pow(1.0015, pEvent->angleDelta().y()), pEvent->position().toPoint());
    if (m_pGesture)
        leadGesture(pEvent->position().toPoint());
    pEvent->accept();
}

void OrvNodeGraphView::mousePressEvent(QMouseEvent* pEvent)
{
    pEvent->accept();
    if (m_pGesture || m_Panning || m_Pressed)
        return;
    const bool SpacePan = pEvent->button() == Qt::LeftButton && m_SpaceHeld;
    if (pEvent->button() == Qt::MiddleButton || SpacePan)
        startPan(pEvent->pos());
    else if (pEvent->button() == Qt::LeftButton || pEvent->button() == Qt::RightButton)
        press(pEvent);
}

void OrvNodeGraphView::press(QMouseEvent* pEvent)
{
    takeOver();
    m_Pressed = pEvent->button() == Qt::LeftButton;
    m_PressedAt = pEvent->pos();
    selectOnPress(pEvent->pos(), pEvent->modifiers());
    // A menu is for all that is selected.
    if (!m_Pressed)
        m_SelectAloneOnRelease = false;
}

void OrvNodeGraphView::selectOnPress(const QPoint& Position, Qt::KeyboardModifiers Modifiers)
{
    m_SelectAloneOnRelease = false;
    const OrvNodeGraphScene::Spot Spot = graph()->spotAt(mapToScene(Position), showsConnectors());
    if (Spot.Input >= 0 || Spot.Output >= 0)
        return;
    QGraphicsItem* pItem = Spot.pNode ? static_cast<QGraphicsItem*>(Spot.pNode) : Spot.pWire;
    const bool Extends = Modifiers & (Qt::ShiftModifier | Qt::ControlModifier);
    if (!pItem) {
        if (!Extends)
            graph()->clearSelection();
    } else if (Extends) {
        pItem->setSelected(!pItem->isSelected());
    } else if (pItem->isSelected()) {
        // It may be the begin of a drag of all that is selected.
        m_SelectAloneOnRelease = true;
        return;
    } else {
        graph()->clearSelection();
        pItem->setSelected(true);
    }
    OrvNodeGraphSelection::publish(*graph());
    Q_EMIT selectionPublished();
}

std::unique_ptr<OrvNodeGraphGesture> OrvNodeGraphView::gestureFrom(
    const QPoint& Position, Qt::KeyboardModifiers Modifiers) const
{
    const QPointF Place = mapToScene(Position);
    const OrvNodeGraphScene::Spot Spot = graph()->spotAt(Place, showsConnectors());
    if (Spot.Input >= 0 || Spot.Output >= 0)
        return std::make_unique<OrvWireGesture>(graph(), Spot);
    if (Spot.pNode && Spot.pNode->isSelected())
        return std::make_unique<OrvNodeMoveGesture>(graph(), Place);
    const bool Extends = Modifiers & (Qt::ShiftModifier | Qt::ControlModifier);
    return std::make_unique<OrvAreaSelectGesture>(
        graph(), Place, Extends ? graph()->selectedNodes() : QVector<OrvSnBaseNode*>());
}

void OrvNodeGraphView::mouseMoveEvent(QMouseEvent* pEvent)
{
    if (m_Panning) {
        const QPoint Way = pEvent->pos() - m_PannedAt;
        m_PannedAt = pEvent->pos();
        horizontalScrollBar()->setValue(horizontalScrollBar()->value() - Way.x());
        verticalScrollBar()->setValue(verticalScrollBar()->value() - Way.y());
        return;
    }
    if (!m_Pressed || !graph()->network()) {
        const OrvNodeGraphScene::Spot Spot = graph()->spotAt(mapToScene(pEvent->pos()), showsConnectors());
        updateCursor(Spot.Input >= 0 || Spot.Output >= 0);
        return;
    }
    const bool FarEnough
        = (pEvent->pos() - m_PressedAt).manhattanLength() >= QApplication::startDragDistance();
    if (!m_pGesture && FarEnough)
        m_pGesture = gestureFrom(m_PressedAt, pEvent->modifiers());
    if (m_pGesture)
        leadGesture(pEvent->pos());
}

void OrvNodeGraphView::leadGesture(const QPoint& Position)
{
    const QRectF Before = m_pGesture->extent();
    m_pGesture->moveTo(mapToScene(Position));
    graph()->update(Before.adjusted(-4.0, -4.0, 4.0, 4.0));
    graph()->update(m_pGesture->extent().adjusted(-4.0, -4.0, 4.0, 4.0));
}

void OrvNodeGraphView::endGesture(bool Finish)
{
    if (!m_pGesture)
        return;
    // The edit may lead here again, through a change of what is shown.
    const std::unique_ptr<OrvNodeGraphGesture> pEnding = std::move(m_pGesture);
    m_Pressed = false;
    if (Finish)
        pEnding->finish();
    else
        pEnding->cancel();
    viewport()->update();
}

void OrvNodeGraphView::mouseReleaseEvent(QMouseEvent* pEvent)
{
    pEvent->accept();
    if (m_Panning && (pEvent->button() == Qt::MiddleButton || pEvent->button() == Qt::LeftButton)) {
        m_Panning = false;
        updateCursor();
        return;
    }
    if (pEvent->button() != Qt::LeftButton || !m_Pressed)
        return;
    m_Pressed = false;
    const bool Dragged = m_pGesture != nullptr;
    endGesture(true);
    if (!Dragged && !m_SelectAloneOnRelease)
        return;
    if (!Dragged) {
        const OrvNodeGraphScene::Spot Spot = graph()->spotAt(mapToScene(pEvent->pos()), showsConnectors());
        graph()->clearSelection();
        if (QGraphicsItem* pItem = Spot.pNode ? static_cast<QGraphicsItem*>(Spot.pNode) : Spot.pWire)
            pItem->setSelected(true);
    }
    OrvNodeGraphSelection::publish(*graph());
    Q_EMIT selectionPublished();
}

void OrvNodeGraphView::mouseDoubleClickEvent(QMouseEvent* pEvent)
{
    mousePressEvent(pEvent);
    if (pEvent->button() != Qt::LeftButton || m_Panning)
        return;
    const OrvNodeGraphScene::Spot Spot = graph()->spotAt(mapToScene(pEvent->pos()), showsConnectors());
    if (!Spot.pNode || Spot.Input >= 0 || Spot.Output >= 0)
        return;
    m_Pressed = false;
    Q_EMIT nodeActivated(Spot.pNode->node());
}

void OrvNodeGraphView::contextMenuEvent(QContextMenuEvent* pEvent)
{
    pEvent->accept();
    if (graph()->network() && !m_pGesture && !m_Panning)
        Q_EMIT menuRequested(pEvent->globalPos(), mapToScene(pEvent->pos()));
}

void OrvNodeGraphView::dragEnterEvent(QDragEnterEvent* pEvent)
{
    dragMoveEvent(pEvent);
}

void OrvNodeGraphView::dragMoveEvent(QDragMoveEvent* pEvent)
{
    const bool Accepted = graph()->network()
        && OrvDragAndDropManager::instance().acceptDragEnter(
            pEvent->mimeData(), OrvDragAndDropManager::NodeGraphTarget);
    pEvent->setAccepted(Accepted);
}

void OrvNodeGraphView::dropEvent(QDropEvent* pEvent)
{
    const QVariantMap Parameters{
        {QStringLiteral("Network"), QVariant::fromValue<QObject*>(graph()->network())},
        {QStringLiteral("Position"), mapToScene(pEvent->pos())}};
    pEvent->setAccepted(OrvDragAndDropManager::instance().drop(
        pEvent->mimeData(), OrvDragAndDropManager::NodeGraphTarget, Parameters));
}

void OrvNodeGraphView::drawBackground(QPainter* pPainter, const QRectF& Area)
{
    pPainter->fillRect(Area, Ground);
    if (GridStep * zoom() >= LeastGridPixels)
        drawGrid(pPainter, Area, GridStep, GridLine);
    if (GridStep * GridStepsPerLine * zoom() >= LeastGridPixels)
        drawGrid(pPainter, Area, GridStep * GridStepsPerLine, StrongGridLine);
}

void OrvNodeGraphView::drawForeground(QPainter* pPainter, const QRectF&)
{
    if (m_pGesture)
        m_pGesture->paint(pPainter);
    if (!graph()->nodeItems().isEmpty())
        return;
    pPainter->save();
    pPainter->resetTransform();
    pPainter->setPen(palette().color(QPalette::Disabled, QPalette::Text));
    pPainter->drawText(viewport()->rect(), Qt::AlignCenter,
        graph()->network() ? tr("Press Tab to add a node") : tr("No object is open"));
    pPainter->restore();
}

#include "moc_OrvNodeGraphView.cpp"
