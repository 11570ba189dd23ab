#pragma once

#include <QtGui/QStandardItemModel>

class OrvSnBaseNode;

/// Flat rows that stand for nodes, each by the identity of its node: what the models of the Channels and of
/// the Shaders palette have in common. It finds nodes for rows and rows for nodes, and puts rows into drags;
/// it makes no rows itself and holds no node.
class OrvNodeRowModel : public QStandardItemModel {
    Q_OBJECT

public:
    /// Identity of the row's node.
    static constexpr int NodeRole = Qt::UserRole + 1;

    QStringList mimeTypes() const override;
    QMimeData* mimeData(const QModelIndexList& Indexes) const override;
    Qt::DropActions supportedDropActions() const override;

    /// Null for a row whose node is gone.
    OrvSnBaseNode* nodeFromIndex(const QModelIndex& Index) const;
    /// Invalid for a node that is not listed.
    QModelIndex indexFromNode(const OrvSnBaseNode* pNode) const;

protected:
    explicit OrvNodeRowModel(QObject* pParent);
};
