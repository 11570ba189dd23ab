#pragma once

#include <QtWidgets/QStyledItemDelegate>

class QAbstractItemView;

/// Rows of a view, which owns it, that are widgets: they have their height before they have their widgets,
/// and nothing of their own to paint but the background. It knows nothing of what the rows show.
class OrvRowWidgetDelegate : public QStyledItemDelegate {
public:
    OrvRowWidgetDelegate(const QSize& RowSize, QAbstractItemView* pView);

    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override;
    /// Into the picture under the cursor of a drag the widgets are painted, too.
    void paint(
        QPainter* pPainter, const QStyleOptionViewItem& Option, const QModelIndex& Index) const override;

private:
    QSize m_RowSize;
    QAbstractItemView* m_View;
};
