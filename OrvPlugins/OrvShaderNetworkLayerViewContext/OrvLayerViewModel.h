#pragma once

#include <QtCore/QHash>
#include <QtCore/QItemSelection>
#include <QtCore/QSet>
#include <QtGui/QStandardItemModel>

class OrvLayer;
class OrvLayerDrop;
class OrvLayerView;
class OrvLayerViewItem;
class OrvSnBaseNode;

/// The rows of a layer tree, one per layer, nested as groups are. The owning palette fills and orders them;
/// the model answers drags and drops and finds rows. It holds nothing of the document but identities.
class OrvLayerViewModel : public QStandardItemModel {
    Q_OBJECT

public:
    OrvLayerViewModel(OrvLayerView* pLayerView, QObject* pParent);

    QStringList mimeTypes() const override;
    QMimeData* mimeData(const QModelIndexList& Indexes) const override;
    bool canDropMimeData(const QMimeData* pData, Qt::DropAction Action, int Row, int Column,
        const QModelIndex& Parent) const override;
    bool dropMimeData(const QMimeData* pData, Qt::DropAction Action, int Row, int Column,
        const QModelIndex& Parent) override;
    Qt::DropActions supportedDropActions() const override;

    /// The node above which content dropped there is inserted; null where nothing can be.
    OrvSnBaseNode* dropTargetNode(int Row, const QModelIndex& Parent) const;
    /// What dropping the dragged layers there would be.
    OrvLayerDrop layerDrop(
        const QMimeData* pData, Qt::DropAction Action, int Row, const QModelIndex& Parent) const;

    /// Null for an index without a layer.
    OrvLayer* layerFromIndex(const QModelIndex& Index) const;
    /// Every row that shows the layer: a layer in a shared group has several.
    QList<OrvLayerViewItem*> itemsFromLayer(const OrvLayer* pLayer) const;
    /// Invalid for a layer without a row.
    QModelIndex indexFromLayer(const OrvLayer* pLayer) const;
    /// The other rows that show paint or a mask of one of the layers.
    QItemSelection rowsSharingContentWith(const QSet<OrvLayer*>& Layers) const;

private Q_SLOTS:
    void enterRows(const QModelIndex& Parent, int First, int Last);
    void leaveRows(const QModelIndex& Parent, int First, int Last);

private:
    bool dropHostContent(const QMimeData* pData, int Row, const QModelIndex& Parent) const;
    bool dropCustomProcedural(const QMimeData* pData, int Row, const QModelIndex& Parent) const;
    bool dropLayers(const QMimeData* pData, int Row, const QModelIndex& Parent) const;

    OrvLayerView* m_LayerView;
    QMultiHash<QString, OrvLayerViewItem*> m_Items; ///< by the identity that they carry
};
