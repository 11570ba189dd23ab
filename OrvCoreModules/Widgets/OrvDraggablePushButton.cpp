#include "OrvCoreModules/Widgets/OrvDraggablePushButton.h"

#include <QtCore/QMimeData>
#include <QtGui/QDrag>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QApplication>

OrvDraggablePushButton::OrvDraggablePushButton(QWidget* pParent)
    : QPushButton(pParent)
{
    setAcceptDrops(true);
}

QMimeData* OrvDraggablePushButton::mimeData() const
{
    return nullptr;
}

void OrvDraggablePushButton::mousePressEvent(QMouseEvent* pEvent)
{
    m_CanDrag = pEvent->button() == Qt::LeftButton;
    m_Dragged = false;
    m_PressPosition = pEvent->pos();
    QPushButton::mousePressEvent(pEvent);
}

void OrvDraggablePushButton::mouseMoveEvent(QMouseEvent* pEvent)
{
    // What was dragged away is no click any more, wherever the mouse comes back.
    if (m_Dragged)
        return;
    const bool FarEnough
        = (pEvent->pos() - m_PressPosition).manhattanLength() >= QApplication::startDragDistance();
    if (!m_CanDrag || !FarEnough || !(pEvent->buttons() & Qt::LeftButton)) {
        QPushButton::mouseMoveEvent(pEvent);
        return;
    }
    m_CanDrag = false;
    QMimeData* pData = mimeData();
    if (!pData)
        return;
    m_Dragged = true;
    setDown(false);
    runDrag(pData);
}

void OrvDraggablePushButton::runDrag(QMimeData* pData)
{
    QDrag* pDrag = new QDrag(this);
    pDrag->setMimeData(pData);
    if (!icon().isNull()) {
        // window() has a handle: the button was pressed.
        pDrag->setPixmap(icon().pixmap(window()->windowHandle(), iconSize()));
    }
    pDrag->exec(Qt::CopyAction | Qt::MoveAction | Qt::LinkAction);
}

void OrvDraggablePushButton::dragEnterEvent(QDragEnterEvent* pEvent)
{
    pEvent->acceptProposedAction();
}

void OrvDraggablePushButton::dropEvent(QDropEvent* pEvent)
{
    pEvent->acceptProposedAction();
}

#include "moc_OrvDraggablePushButton.cpp"
