#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragPayload.h"

#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Object/OrvObjectReferenceManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextConstants.h"

#include <QtCore/QMimeData>
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

void OrvLayerDragPayload::write(QMimeData& Mime, const QStringList& Uuids)
{
    QStringList Carried = Uuids;
    Carried.removeAll(QString());
    Mime.setData(mimeType(), Carried.join(Separator).toLatin1());
}

QVector<OrvSnBaseNode*> OrvLayerDragPayload::read(const QMimeData* pMime)
{
    QVector<OrvSnBaseNode*> Nodes;
    if (!pMime)
        return Nodes;
    const QStringList Uuids
        = QString::fromLatin1(pMime->data(mimeType())).split(Separator, Qt::SkipEmptyParts);
    for (const QString& Uuid : Uuids) {
        if (OrvSnBaseNode* pNode = nodeOf(Uuid))
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
