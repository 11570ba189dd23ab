#pragma once

class QString;

/// Why what is dragged would not be dropped where it is, in the status line: as long as the drag is there,
/// and for some seconds after it has gone. There is one drag at a time, whatever it passes over; drops word
/// the reasons (OrvLayerDrop::check).
namespace OrvLayerDragRefusal {

/// No reason: it would be dropped.
void show(const QString& Reason);
/// The drag went elsewhere, or came to an end.
void leave();

} // namespace OrvLayerDragRefusal
