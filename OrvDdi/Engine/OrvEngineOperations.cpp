#include "OrvDdi/Engine/OrvEngineOperations.h"

#include "OrvDdi/Engine/OrvBlendOperation.h"
#include "OrvDdi/Engine/OrvColorOperation.h"
#include "OrvDdi/Engine/OrvDelivery.h"
#include "OrvDdi/Engine/OrvFitOperation.h"
#include "OrvDdi/Engine/OrvOutputOperation.h"
#include "OrvDdi/Engine/OrvPointOperations.h"
#include "OrvDdi/Engine/OrvShadingOperation.h"
#include "OrvDdi/Engine/OrvSourceOperations.h"

void OrvEngineOperations::registerAll()
{
    OrvBlendOperation::registerType();
    OrvSourceOperations::registerTypes();
    OrvOutputOperation::registerType();
    OrvDelivery::registerType();
    OrvPointOperations::registerTypes();
    OrvFitOperation::registerType();
    OrvColorOperation::registerType();
    OrvShadingOperation::registerType();
}

void OrvEngineOperations::release()
{
    OrvDelivery::release();
}
