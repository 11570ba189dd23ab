#pragma once

#include "OrvCore/Layers/OrvLayerSnapshot.h"
#include "OrvCore/OrvCoreExport.h"

/// Layers, or a layer's mask, on the system's clipboard. Within the program the snapshot itself is passed on,
/// pixels and all, at no cost; only another process makes it become bytes.
class ORVCORE_EXPORT OrvLayerClipboard {
public:
    enum Contents { Layers, Mask };
    static QString mimeType(Contents What);

    static void put(Contents What, const OrvLayerSnapshot& Snapshot);
    static bool holds(Contents What);
    /// False, with a message, when there is nothing of the kind or it cannot be read.
    static bool get(Contents What, OrvLayerSnapshot& Snapshot, QString& Error);
};
