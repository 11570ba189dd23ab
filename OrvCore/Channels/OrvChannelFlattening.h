#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <functional>

class OrvShaderInput;
class QString;

/// Makes one paint layer of all layers of a channel. What is hidden or locked would be lost with that, so it
/// asks first, through whoever the user sits in front of.
namespace OrvChannelFlattening {

/// Shows a question with the answers "Flatten" and "Cancel"; true for the first.
using Question = std::function<bool(const QString& Title, const QString& Text)>;
/// Who asks; an empty function for nobody. With nobody to ask, such a channel is not flattened.
ORVCORE_EXPORT void setQuestion(const Question& Ask);

/// One undo step. False, with nothing changed, when it was refused (see OrvLayerManager::refused) or
/// cancelled.
ORVCORE_EXPORT bool flatten(OrvShaderInput* pChannel);

} // namespace OrvChannelFlattening
