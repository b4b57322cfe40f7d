// Makes the recorded ABI include public types that no exported function of the library uses.

#include "common/sensormode/SensorModeCfg.h"
#include "common/sensormode/SensorScenario.h"

extern "C" void takePublicTypes(const SensorModeCfg*, hesk::SensorScenario);

extern "C" void takePublicTypes(const SensorModeCfg*, hesk::SensorScenario) {}
