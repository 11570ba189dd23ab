#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QString>

class OrvLayerShader;
class OrvShaderNetwork;

/// Making, copying and removing shaders. Each is one undo step; a failed one leaves nothing behind.
namespace OrvLayerShaderUtils {

/// A new shader of a type (a shading model's key) in the current network, or null. While a layer's shader is
/// being made (OrvLayerShaderManager::layerShaderCreating()), it is meant for a stack: it is not listed, nor
/// made current.
ORVCORE_EXPORT OrvLayerShader* createShaderFromKey(const QString& Key, bool MakeCurrent);
/// A copy with the same values, fed by the same channels, that becomes current. Null, with the reason, when
/// those channels hold multi-channel layers of the shader's model.
ORVCORE_EXPORT OrvLayerShader* duplicateLayerShader(OrvLayerShader* pShader, QString& Error);

/// Removes a shader that the user made. Its channels stay; the multi-channel layers that they hold for it are
/// taken apart into ordinary layers, or removed from them where they are to be disconnected. Layers that show
/// a listed shader keep it, and then it is theirs alone; one that is theirs alone takes them with it. False,
/// with nothing changed, when one of those layers stays or it was cancelled.
ORVCORE_EXPORT bool destroy(OrvLayerShader* pShader, bool DisconnectMultiChannelLayers);
/// Which layers would stay, and why; empty when none would.
ORVCORE_EXPORT QString obstacleToRemoval(const OrvLayerShader* pShader);
/// No channel feeds the input any more; what becomes of multi-channel layers as above.
ORVCORE_EXPORT bool disconnectInput(
    OrvLayerShader* pShader, const QString& InputName, bool DisconnectMultiChannelLayers);

/// A unique name for a shader of the network.
ORVCORE_EXPORT QString generateUniqueName(const OrvShaderNetwork* pNetwork, const QString& Base);

// The clipboard holds a shader with its values. Pasted into a network that has its channels, it is fed by
// them again.
ORVCORE_EXPORT void copyToClipboard(const OrvLayerShader* pShader);
ORVCORE_EXPORT bool cutToClipboard(OrvLayerShader* pShader, bool DisconnectMultiChannelLayers = false);
/// The pasted shader, which becomes current. Null with a text on failure, without one when the clipboard
/// holds none.
ORVCORE_EXPORT OrvLayerShader* pasteFromClipboard(QString& Error, OrvShaderNetwork* pNetwork);

} // namespace OrvLayerShaderUtils
