#include "OrvCore/Layers/OrvSelectionProvider.h"

namespace {

OrvSelectionProvider* pInstalled = nullptr;

}

OrvSelectionProvider::~OrvSelectionProvider()
{
    if (pInstalled == this)
        pInstalled = nullptr;
}

void OrvSelectionProvider::install(OrvSelectionProvider* pProvider)
{
    pInstalled = pProvider;
}

OrvSelectionProvider* OrvSelectionProvider::instance()
{
    return pInstalled;
}
