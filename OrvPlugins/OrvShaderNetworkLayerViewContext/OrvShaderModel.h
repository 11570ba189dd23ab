#pragma once

#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvNodeRowModel.h"

/// The rows of the Shaders palette, which owns and fills it: one per listed shader, with the name, the icon
/// and the identity of its node. Dropped shader layers become shaders of their own here; the model makes no
/// rows itself.
class OrvShaderModel : public OrvNodeRowModel {
    Q_OBJECT

public:
    /// Where the row was put in; rows stay in this order.
    static constexpr int PositionRole = Qt::UserRole + 2;

    explicit OrvShaderModel(QObject* pParent);

    /// Moves shader layers out of their stacks. Always false: views must not remove the dragged rows.
    bool dropMimeData(const QMimeData* pMimeData, Qt::DropAction Action, int Row, int Column,
        const QModelIndex& Parent) override;

    /// Null for a row whose node is gone.
    OrvSnBaseNode* nodeFromItem(const QStandardItem* pItem) const;

    /// A last row of the node's name.
    QStandardItem* appendNode(const OrvSnBaseNode* pNode, const QIcon& Icon, bool Editable);
    /// After rows went, so that rows to come are still the last ones. Says nothing of it: no view shows
    /// positions.
    void renumber();

Q_SIGNALS:
    /// A shader that came from a dropped layer.
    void addShaderNode(OrvSnBaseNode* Node);
};
