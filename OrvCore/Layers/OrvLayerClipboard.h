#pragma once

#include "OrvCore/Layers/OrvLayerSnapshot.h"
#include "OrvCore/OrvCoreExport.h"

/// Layers on the system's clipboard. Within the program the snapshot itself is passed on, pixels and all, at
/// no cost; only another process makes it become bytes.
class ORVCORE_EXPORT OrvLayerClipboard {
public:
    static const QString MimeType;

    static void put(const OrvLayerSnapshot& Snapshot);
    static bool holdsLayers();
    /// False, with a message, when there are none or they cannot be read.
    static bool get(OrvLayerSnapshot& Snapshot, QString& Error);
};
