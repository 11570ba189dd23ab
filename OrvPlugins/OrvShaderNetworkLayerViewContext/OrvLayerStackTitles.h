#pragma once

class OrvLayerStack;
class QString;

/// How the palettes of single stacks are called.
namespace OrvLayerStackTitles {

/// The object's name and the stack's; empty for a stack outside of an object.
QString title(const OrvLayerStack* pLayerStack);
/// Where the stack is in the document, with the groups and masks around it: stacks of one title differ in
/// that. Empty for a stack that is gone.
QString path(const OrvLayerStack* pLayerStack);

} // namespace OrvLayerStackTitles
