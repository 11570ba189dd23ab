#include "OrvCore/Object/OrvClock.h"

namespace {
int s_CurrentFrame = 1;
}

int OrvClock::currentFrame()
{
    return s_CurrentFrame;
}

void OrvClock::setCurrentFrame(int Frame)
{
    s_CurrentFrame = Frame;
}
