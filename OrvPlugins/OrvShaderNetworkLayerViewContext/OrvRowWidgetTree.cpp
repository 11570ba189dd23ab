#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvRowWidgetTree.h"

#include <QtCore/QEvent>

OrvRowWidgetTree::OrvRowWidgetTree(QWidget* pParent)
    : QTreeView(pParent)
{
}

void OrvRowWidgetTree::setRowWidget(const QModelIndex& Index, QWidget* pWidget)
{
    // The base class would show the widget at once, and have it polished for that. Said to be shown already,
    // it is left alone until it really comes into view.
    pWidget->setParent(viewport());
    const bool IsShown = pWidget->isVisible();
    pWidget->setAttribute(Qt::WA_WState_ExplicitShowHide, true);
    pWidget->setAttribute(Qt::WA_WState_Hidden, false);
    setIndexWidget(Index, pWidget);
    pWidget->setAttribute(Qt::WA_WState_Hidden, !IsShown);
}

void OrvRowWidgetTree::releaseRowWidget(QWidget* pWidget)
{
    // The base class forgets a widget without deleting it only if it is told that it is gone already.
    pWidget->removeEventFilter(this);
    editorDestroyed(pWidget);
}

void OrvRowWidgetTree::scheduleRowLayout()
{
    m_RowLayoutPending = true;
    scheduleDelayedItemsLayout();
}

void OrvRowWidgetTree::doItemsLayout()
{
    m_RowLayoutPending = false;
    QTreeView::doItemsLayout();
}

void OrvRowWidgetTree::paintEvent(QPaintEvent* pEvent)
{
    if (m_RowLayoutPending) {
        // Unfolding everything lays the rows out behind the back of doItemsLayout().
        m_RowLayoutPending = false;
        updateEditorGeometries();
    }
    QTreeView::paintEvent(pEvent);
}

bool OrvRowWidgetTree::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    // Qt offers to polish every new widget; those in view were polished when they were shown.
    if (pEvent->type() == QEvent::PolishRequest)
        return true;
    return QTreeView::eventFilter(pWatched, pEvent);
}

void OrvRowWidgetTree::scrollContentsBy(int X, int Y)
{
    QTreeView::scrollContentsBy(X, Y);
    updateEditorGeometries();
}

void OrvRowWidgetTree::updateEditorGeometries()
{
    // Looking for the rows in view would lay them all out at once, for every group that is filled in between.
    if (m_RowLayoutPending)
        return;
    QVector<QPointer<QWidget>> InView;
    const int Bottom = viewport()->height();
    for (QModelIndex Index = indexAt(QPoint(0, 0)); Index.isValid(); Index = indexBelow(Index)) {
        const QRect Place = visualRect(Index);
        if (Place.top() >= Bottom)
            break;
        QWidget* pWidget = indexWidget(Index);
        if (!pWidget)
            continue;
        pWidget->setGeometry(Place);
        pWidget->show();
        InView.append(pWidget);
    }
    for (const QPointer<QWidget>& pWidget : qAsConst(m_RowWidgetsInView)) {
        if (pWidget && !InView.contains(pWidget))
            pWidget->hide();
    }
    m_RowWidgetsInView = InView;
}

#include "moc_OrvRowWidgetTree.cpp"
