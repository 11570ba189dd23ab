#include "OrvCoreModules/Widgets/OrvVerticalScrollArea.h"

#include <QtCore/QEvent>
#include <QtWidgets/QScrollBar>

OrvVerticalScrollArea::OrvVerticalScrollArea(QWidget* pParent)
    : QScrollArea(pParent)
{
    setWidgetResizable(true);
    setFrameShape(NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

QSize OrvVerticalScrollArea::sizeHint() const
{
    if (!widget())
        return QScrollArea::sizeHint();
    const int Frame = 2 * frameWidth();
    const QSize Content = widget()->sizeHint();
    return {Content.width() + verticalScrollBar()->sizeHint().width() + Frame, Content.height() + Frame};
}

void OrvVerticalScrollArea::followContentWidth()
{
    if (widget())
        setMinimumWidth(
            widget()->minimumSizeHint().width() + verticalScrollBar()->sizeHint().width() + 2 * frameWidth());
}

bool OrvVerticalScrollArea::event(QEvent* pEvent)
{
    if (pEvent->type() == QEvent::Polish)
        followContentWidth();
    return QScrollArea::event(pEvent);
}

bool OrvVerticalScrollArea::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    const bool Handled = QScrollArea::eventFilter(pWatched, pEvent);
    if (pWatched == widget() && pEvent->type() == QEvent::LayoutRequest) {
        followContentWidth();
        updateGeometry();
    }
    return Handled;
}

#include "moc_OrvVerticalScrollArea.cpp"
