#pragma once

/// The operations of ours that the image engine learns when it starts.
namespace OrvEngineOperations {

void registerAll();
/// Lets go what they hold, before the engine ends.
void release();

} // namespace OrvEngineOperations
