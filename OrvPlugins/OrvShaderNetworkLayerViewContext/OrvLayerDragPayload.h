#pragma once

#include <QtCore/QModelIndex>
#include <QtCore/QStringList>
#include <QtCore/QVector>
#include <QtCore/Qt>

class OrvLayerStack;
class OrvSnBaseNode;
class QMimeData;

/// What a dragged layer, channel or shader carries: the identities of its nodes, and for layers also the
/// stack that they are dragged out of.
namespace OrvLayerDragPayload {

/// The format of the identities.
QString mimeType();
/// All formats that dragged layers carry.
QStringList mimeTypes();
/// What rows carry whose first column has an identity under the role; the caller owns it.
QMimeData* ofRows(const QModelIndexList& Indexes, int IdentityRole);
/// Sets the format even when there is nothing to carry; empty identities are left out.
void write(QMimeData& Mime, const QStringList& Uuids);
/// Each node once; those that are gone are left out.
QVector<OrvSnBaseNode*> read(const QMimeData* pMime);

/// The stack is known by its node and the input that it feeds. Without one, nothing is written.
void writeStack(QMimeData& Mime, const OrvLayerStack* pLayerStack);
/// Null when the data names no stack, or one that is gone.
OrvLayerStack* readStack(const QMimeData* pMime);

/// What the keys held now ask for: Alt copies, Shift links, both with or without Ctrl; anything else moves.
Qt::DropAction actionFromModifiers();
Qt::DropAction actionFromModifiers(Qt::KeyboardModifiers Modifiers);

} // namespace OrvLayerDragPayload
