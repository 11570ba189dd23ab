#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include "OrvCore/Network/OrvShaderNetwork.h"

#include <QtCore/QHash>
#include <QtCore/QPointer>
#include <QtWidgets/QGraphicsView>

#include <memory>

class OrvNodeGraphGesture;
class OrvNodeGraphScene;
class OrvNodeTitleEdit;
class OrvSnBaseNode;

/// The canvas of the node graph: zoom, pan and what the mouse does, each drag being a gesture of its own. It
/// remembers per network what was in sight. What is to be edited is decided by gestures and by the palette.
class ORVCOREMODULES_EXPORT OrvNodeGraphView : public QGraphicsView {
    Q_OBJECT

public:
    explicit OrvNodeGraphView(OrvNodeGraphScene* pScene, QWidget* pParent = nullptr);
    ~OrvNodeGraphView() override;

    /// A part of the window that leaves room for a canvas above, however large the graph is.
    QSize sizeHint() const override { return {480, 260}; }
    qreal zoom() const { return transform().m11(); }
    /// Brings all of an area into sight, in the middle; a small one is not magnified.
    void frame(const QRectF& Area);
    void frameAll();
    /// Shows the node at a size at which it can be read.
    void focusOn(OrvSnBaseNode* pNode);
    /// The place under the mouse, or the middle of the canvas when the mouse is elsewhere.
    QPointF pointedPlace() const;
    /// Opens an editor on the node's title.
    void editTitle(OrvSnBaseNode* pNode);

Q_SIGNALS:
    void nodeActivated(OrvSnBaseNode* pNode);
    /// The user selected something else.
    void selectionPublished();
    void menuRequested(QPoint GlobalPosition, QPointF Place);

protected:
    bool event(QEvent* pEvent) override;
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseMoveEvent(QMouseEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;
    void mouseDoubleClickEvent(QMouseEvent* pEvent) override;
    void wheelEvent(QWheelEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    void keyReleaseEvent(QKeyEvent* pEvent) override;
    void contextMenuEvent(QContextMenuEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;
    void scrollContentsBy(int X, int Y) override;
    void dragEnterEvent(QDragEnterEvent* pEvent) override;
    void dragMoveEvent(QDragMoveEvent* pEvent) override;
    void dropEvent(QDropEvent* pEvent) override;
    void drawBackground(QPainter* pPainter, const QRectF& Area) override;
    void drawForeground(QPainter* pPainter, const QRectF& Area) override;

private Q_SLOTS:
    void onNetworkChanged(OrvShaderNetwork* pNetwork);
    void onSynchronized();

private:
    struct Sight {
        qreal Zoom = 1.0;
        QPointF Middle;
    };

    OrvNodeGraphScene* graph() const { return m_pScene; }
    QPointF middle() const { return mapToScene(viewport()->rect().center()); }
    bool showsConnectors() const;
    void setZoom(qreal Zoom, const QPoint& FixedPoint);
    QRectF contentRect() const;
    void fit(const QRectF& Area);
    /// All of a small graph, the surroundings of what is selected in a large one.
    void frameStart();
    void keepSight();
    /// The user has chosen what is in sight: it no longer follows the content.
    void takeOver() { m_FollowsContent = false; }

    void press(QMouseEvent* pEvent);
    void selectOnPress(const QPoint& Position, Qt::KeyboardModifiers Modifiers);
    std::unique_ptr<OrvNodeGraphGesture> gestureFrom(
        const QPoint& Position, Qt::KeyboardModifiers Modifiers) const;
    void leadGesture(const QPoint& Position);
    void endGesture(bool Finish);
    void startPan(const QPoint& Position);
    void updateCursor(bool OnConnector = false);

    OrvNodeGraphScene* m_pScene;
    std::unique_ptr<OrvNodeGraphGesture> m_pGesture;
    QPointer<OrvNodeTitleEdit> m_pTitleEdit;
    QHash<const QObject*, Sight> m_Sights;
    QPointer<OrvShaderNetwork> m_pShown;
    QPoint m_PressedAt, m_PannedAt;
    bool m_Pressed = false;
    bool m_SelectAloneOnRelease = false;
    bool m_Panning = false;
    bool m_SpaceHeld = false;
    bool m_FollowsContent = true;
};
