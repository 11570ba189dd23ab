#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragPayload.h"

#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Object/OrvObjectReferenceManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextConstants.h"

#include <QtCore/QMimeData>
#include <QtCore/QSet>
#include <QtGui/QGuiApplication>

namespace {

const QLatin1Char Separator(':');

OrvSnBaseNode* nodeOf(const QString& Uuid)
{
    return qobject_cast<OrvSnBaseNode*>(OrvObjectReferenceManager::instance().getPointer(Uuid));
}

void writeText(QMimeData& Mime, const QString& Format, const QString& Text)
{
    if (!Text.isEmpty())
        Mime.setData(Format, Text.toLatin1());
}

} // namespace

QString OrvLayerDragPayload::mimeType()
{
    return OrvLayerViewContext::LayerMimeType;
}

QStringList OrvLayerDragPayload::mimeTypes()
{
    return {mimeType(), OrvLayerViewContext::LayerStackNodeMimeType,
        OrvLayerViewContext::LayerStackTargetInputMimeType};
}

QMimeData* OrvLayerDragPayload::ofRows(const QModelIndexList& Indexes, int IdentityRole)
{
    QStringList Uuids;
    for (const QModelIndex& Index : Indexes) {
        if (Index.column() == 0)
            Uuids.append(Index.data(IdentityRole).toString());
    }
    QMimeData* pMimeData = new QMimeData;
    write(*pMimeData, Uuids);
    return pMimeData;
}

void OrvLayerDragPayload::write(QMimeData& Mime, const QStringList& Uuids)
{
    QStringList Carried = Uuids;
    Carried.removeAll(QString());
    Mime.setData(mimeType(), Carried.join(Separator).toLatin1());
}

QVector<OrvSnBaseNode*> OrvLayerDragPayload::read(const QMimeData* pMime)
{
    QVector<OrvSnBaseNode*> Nodes;
    QSet<OrvSnBaseNode*> Known;
    if (!pMime)
        return Nodes;
    const QStringList Uuids
        = QString::fromLatin1(pMime->data(mimeType())).split(Separator, Qt::SkipEmptyParts);
    for (const QString& Uuid : Uuids) {
        OrvSnBaseNode* pNode = nodeOf(Uuid);
        if (!pNode || Known.contains(pNode))
            continue;
        Known.insert(pNode);
        Nodes.append(pNode);
    }
    return Nodes;
}

void OrvLayerDragPayload::writeStack(QMimeData& Mime, const OrvLayerStack* pLayerStack)
{
    if (!pLayerStack || !pLayerStack->node())
        return;
    writeText(Mime, OrvLayerViewContext::LayerStackNodeMimeType, pLayerStack->node()->uuidString());
    writeText(Mime, OrvLayerViewContext::LayerStackTargetInputMimeType, pLayerStack->targetInputName());
}

OrvLayerStack* OrvLayerDragPayload::readStack(const QMimeData* pMime)
{
    if (!pMime)
        return nullptr;
    OrvSnBaseNode* pNode
        = nodeOf(QString::fromLatin1(pMime->data(OrvLayerViewContext::LayerStackNodeMimeType)));
    const QString InputName
        = QString::fromLatin1(pMime->data(OrvLayerViewContext::LayerStackTargetInputMimeType));
    return pNode ? OrvLayerStack::getLayerStack(pNode, InputName) : nullptr;
}

Qt::DropAction OrvLayerDragPayload::actionFromModifiers()
{
    return actionFromModifiers(QGuiApplication::keyboardModifiers());
}

Qt::DropAction OrvLayerDragPayload::actionFromModifiers(Qt::KeyboardModifiers Modifiers)
{
    if (Modifiers == Qt::AltModifier || Modifiers == (Qt::AltModifier | Qt::ControlModifier))
        return Qt::CopyAction;
    if (Modifiers == Qt::ShiftModifier || Modifiers == (Qt::ShiftModifier | Qt::ControlModifier))
        return Qt::LinkAction;
    return Qt::MoveAction;
}
