#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvRowWidgetDelegate.h"

#include <QtGui/QPainter>
#include <QtWidgets/QAbstractItemView>

OrvRowWidgetDelegate::OrvRowWidgetDelegate(const QSize& RowSize, QAbstractItemView* pView)
    : QStyledItemDelegate(pView)
    , m_RowSize(RowSize)
    , m_View(pView)
{
}

QSize OrvRowWidgetDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const
{
    return m_RowSize;
}

void OrvRowWidgetDelegate::paint(
    QPainter* pPainter, const QStyleOptionViewItem& Option, const QModelIndex& Index) const
{
    QStyledItemDelegate::paint(pPainter, Option, Index);
    // The picture under the cursor of a drag has no widgets of its own.
    if (pPainter->device()->devType() != QInternal::Pixmap)
        return;
    pPainter->fillRect(Option.rect, Option.palette.brush(QPalette::Active, QPalette::Highlight));
    if (QWidget* pRowWidget = m_View->indexWidget(Index))
        pRowWidget->render(pPainter, Option.rect.topLeft(), QRegion(), QWidget::DrawChildren);
}
