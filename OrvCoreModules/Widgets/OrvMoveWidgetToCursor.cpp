#include "OrvCoreModules/Widgets/OrvMoveWidgetToCursor.h"

#include <QtGui/QCursor>
#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>
#include <QtWidgets/QWidget>

void OrvMoveWidgetToCursor(QWidget* pWidget, const QPoint& Offset)
{
    OrvMoveWidgetToPoint(pWidget, QCursor::pos() + Offset);
}

void OrvMoveWidgetToPoint(QWidget* pWidget, const QPoint& GlobalPosition)
{
    if (!pWidget)
        return;
    const QScreen* pScreen = QGuiApplication::screenAt(GlobalPosition);
    if (!pScreen)
        pScreen = QGuiApplication::primaryScreen();
    const QRect Room = pScreen->availableGeometry();
    // A widget that was never shown has not got its size yet.
    const QSize Size = pWidget->testAttribute(Qt::WA_Resized)
        ? pWidget->size()
        : pWidget->sizeHint().expandedTo(pWidget->minimumSize());
    const int Left = qMax(Room.left(), qMin(GlobalPosition.x(), Room.right() + 1 - Size.width()));
    const int Top = qMax(Room.top(), qMin(GlobalPosition.y(), Room.bottom() + 1 - Size.height()));
    pWidget->move(Left, Top);
}
