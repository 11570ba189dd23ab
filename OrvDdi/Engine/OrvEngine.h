#pragma once

#include "OrvDdi/OrvDdiExport.h"

/// The image engine as a whole: when it runs, and the one lock around it. Nothing happens while the program
/// loads; the first lock starts the engine. It never knows what is being evaluated.
class ORVDDI_EXPORT OrvEngine {
public:
    /// Starts the engine and returns when it runs. Any thread; further calls return at once.
    static void start();
    /// Starts the engine and lists its operations in a thread of its own, so that the first picture and the
    /// first menu need not wait.
    static void warmUp();
    static bool isStarted();
    /// Ends the engine for good, when the last buffer and node are gone. Returns how many buffers were left
    /// behind.
    static int shutdown();

    /// Held around every write, edit and render; fair and recursive, so that a caller can keep several calls
    /// together.
    class ORVDDI_EXPORT Lock {
    public:
        Lock();
        ~Lock();
        Lock(const Lock&) = delete;
        Lock& operator=(const Lock&) = delete;
    };
};
