#pragma once

#include <QtCore/QList>
#include <QtCore/QString>

class OrvLayer;
class OrvLayerStack;

/// What of a node graph a layer stack cannot represent, in words for the user. A text is empty exactly where
/// all is well.
namespace OrvLayerStackWarnings {

/// A group that holds layers which cannot stand in one.
QString ofGroup(const OrvLayer* pGroup, const OrvLayerStack* pGroupStack);
/// What the lowest of the layers stands on; without layers, what the stack begins with.
QString below(const QList<OrvLayer*>& Layers, const OrvLayerStack* pLayerStack);

} // namespace OrvLayerStackWarnings
