#pragma once

class OrvNodeGraphScene;
class OrvSnBaseNode;

/// What is selected on the canvas becomes the network's selection, that of its layers included. A merge node
/// selected alone makes its layer current, a channel's node its channel.
namespace OrvNodeGraphSelection {

void publish(const OrvNodeGraphScene& Scene);
void makeCurrent(OrvSnBaseNode* pNode);

} // namespace OrvNodeGraphSelection
