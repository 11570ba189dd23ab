#pragma once

#include <QtCore/QList>

class OrvLayerShader;
class OrvShaderInput;
class QString;

/// What feeds an input of a shader, and how, as the user changes it: each change is one undo step, a failed
/// one leaves nothing behind and is explained. Taking away a channel whose multi-channel layers belong to the
/// shader asks first.
namespace OrvShaderInputConnection {

/// The channels that the input can take, those with common names first.
QList<OrvShaderInput*> candidates(const OrvLayerShader* pShader, const QString& InputName);
/// True when the channel feeds the input now.
bool connectChannel(OrvLayerShader* pShader, const QString& InputName, OrvShaderInput* pChannel);
/// A new channel named after the input, of a size and depth that suit it, which becomes the current one;
/// material inputs get a material channel. Null when the user or the host does not want it.
OrvShaderInput* createChannel(OrvLayerShader* pShader, const QString& InputName);
/// True when nothing feeds the input any more.
bool disconnectChannel(OrvLayerShader* pShader, const QString& InputName);
/// An input that is switched off counts as if nothing was set for it.
void setEnabled(OrvLayerShader* pShader, const QString& InputName, bool Enabled);
void setInverted(OrvLayerShader* pShader, const QString& InputName, bool Inverted);

} // namespace OrvShaderInputConnection
