#pragma once

#include "OrvCore/OrvCoreExport.h"

#include "OrvDdi/Color/OrvColorSpaceConfig.h"

#include <QtCore/QList>
#include <QtCore/QSize>
#include <QtCore/QString>

#include <qopengl.h>

class OrvShaderInput;
class OrvShaderNetwork;
class OrvSnBaseNode;
class OrvUdimLayout;

/// Finding and making channels.
namespace OrvShaderInputUtils {

/// The channel of a stack node, or null.
ORVCORE_EXPORT OrvShaderInput* getShaderInput(const OrvSnBaseNode* pNode);
/// The same with an input name; empty: the default input.
ORVCORE_EXPORT OrvShaderInput* find(const OrvSnBaseNode* pNode, const QString& InputName);
/// Channels downstream of a node, that is, those whose stack contains it.
ORVCORE_EXPORT QList<OrvShaderInput*> findParents(const OrvSnBaseNode* pNode, const QString& InputName);
ORVCORE_EXPORT QString generateUniqueName(const OrvShaderNetwork* pNetwork, const QString& Base);

/// A new, empty channel in one undo step, or null. An object whose faces carry their own resolution gives the size,
/// whatever was asked for; of others an invalid one is the usual size, and their other channels give the tiles.
/// Without a configuration the depth and the scalar flag choose one.
ORVCORE_EXPORT OrvShaderInput* create(OrvShaderNetwork* pNetwork, const QString& Name, const QSize& Size,
    GLenum Depth, const OrvColorSpaceConfig* pConfig = nullptr, bool Scalar = false);
/// A new channel with default settings in the current network, or null.
ORVCORE_EXPORT OrvShaderInput* createShaderInput(bool Material);
/// Null when the channel cannot be copied. An empty name: one is chosen.
ORVCORE_EXPORT OrvShaderInput* createDuplicate(OrvShaderInput* pInput, const QString& Name);
/// A copy of an image node with its pixels, fed into nothing, in the network; they are brought to the layout where that
/// is valid. Null for another node.
ORVCORE_EXPORT OrvSnBaseNode* duplicateImageSetNode(
    const OrvSnBaseNode* pNode, OrvShaderNetwork* pNetwork, const OrvUdimLayout& Layout);

/// The channel with its layers, and with the channels that these share; pixels and all.
ORVCORE_EXPORT bool copyToClipboard(OrvShaderInput* pInput);
/// The strategy is one of OrvShaderInputManager::destroy(). False, with nothing changed, for a channel that is
/// locked.
ORVCORE_EXPORT bool cutToClipboard(OrvShaderInput* pInput, int Strategy);
/// The pasted channel, which becomes the network's current one. Null without a text when no channel is on the
/// clipboard, null with one when it cannot be pasted.
ORVCORE_EXPORT OrvShaderInput* pasteFromClipboard(QString& Error, OrvShaderNetwork* pNetwork);

} // namespace OrvShaderInputUtils
