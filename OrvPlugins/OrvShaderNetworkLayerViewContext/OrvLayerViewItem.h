#pragma once

#include <QtCore/QPointer>
#include <QtGui/QStandardItem>

class OrvLayer;
class OrvLayerViewItemRowWidget;

/// A row of a layer tree. It carries the identity of its layer's blend node; a warning row carries none. It
/// knows its row widget, which the tree owns, so that a refresh needs no look-up to see that a row is still
/// right.
class OrvLayerViewItem : public QStandardItem {
public:
    /// Null makes a warning row.
    explicit OrvLayerViewItem(const OrvLayer* pLayer);

    /// Layer trees have no rows of another kind; null where there is no row.
    static OrvLayerViewItem* inRow(const QStandardItem* pParent, int Row);

    bool namesLayer() const { return m_NamesLayer; }
    OrvLayerViewItemRowWidget* rowWidget() const;
    void setRowWidget(OrvLayerViewItemRowWidget* pRowWidget);

    /// Rows are sorted into the order set here, which counts only while a level is rearranged.
    int order() const { return m_Order; }
    void setOrder(int Order) { m_Order = Order; }
    bool operator<(const QStandardItem& Other) const override;

private:
    QPointer<OrvLayerViewItemRowWidget> m_RowWidget;
    int m_Order = 0;
    bool m_NamesLayer;
};
