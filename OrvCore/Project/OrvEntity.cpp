#include "OrvCore/Project/OrvEntity.h"

#include "moc_OrvEntity.cpp"
