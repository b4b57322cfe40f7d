// Takes the public types that no exported member does, so that the description of a library with
// this function has their layout.

#include "common/sensormode/SensorModeTables.h"
#include "common/sensormode/SensorScenario.h"

extern "C" void takePublicTypes(const SensorModeCfg*, const SensorModeTable*, hesk::SensorScenario);

extern "C" void takePublicTypes(const SensorModeCfg*, const SensorModeTable*,
                                hesk::SensorScenario) {}
