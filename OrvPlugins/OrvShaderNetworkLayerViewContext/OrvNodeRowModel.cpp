#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvNodeRowModel.h"

#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Object/OrvObjectReferenceManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragPayload.h"

#include <QtCore/QMimeData>

OrvNodeRowModel::OrvNodeRowModel(QObject* pParent)
    : QStandardItemModel(pParent)
{
}

QStringList OrvNodeRowModel::mimeTypes() const
{
    return {OrvLayerDragPayload::mimeType()};
}

QMimeData* OrvNodeRowModel::mimeData(const QModelIndexList& Indexes) const
{
    return OrvLayerDragPayload::ofRows(Indexes, NodeRole);
}

Qt::DropActions OrvNodeRowModel::supportedDropActions() const
{
    return Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
}

OrvSnBaseNode* OrvNodeRowModel::nodeFromIndex(const QModelIndex& Index) const
{
    const QString Uuid = Index.data(NodeRole).toString();
    if (Uuid.isEmpty())
        return nullptr;
    return qobject_cast<OrvSnBaseNode*>(OrvObjectReferenceManager::instance().getPointer(Uuid));
}

QModelIndex OrvNodeRowModel::indexFromNode(const OrvSnBaseNode* pNode) const
{
    if (!pNode)
        return {};
    const QString Uuid = pNode->uuidString();
    for (int Row = 0; Row < rowCount(); ++Row) {
        const QModelIndex Index = index(Row, 0);
        if (Index.data(NodeRole).toString() == Uuid)
            return Index;
    }
    return {};
}

#include "moc_OrvNodeRowModel.cpp"
