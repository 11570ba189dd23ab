#pragma once

#include "OrvCore/OrvCoreExport.h"

/// The animation clock. Orvi paints still textures: it stands at frame 1 until an animated source moves it.
class ORVCORE_EXPORT OrvClock {
public:
    static int currentFrame();
    static void setCurrentFrame(int Frame);
};
