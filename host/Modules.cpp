#include "host/Modules.h"

#include "host/Phone.h"
#include "platform/ModuleFactory.h"

void* NSCam::getMtkcamModuleFactory(std::uint32_t module) {
  if (host::Phone::current().config.missingModules.contains(module)) return nullptr;
  switch (module) {
    case kModuleSensorList: return reinterpret_cast<void*>(&host::sensorList);
    case kModule3A: return reinterpret_cast<void*>(&host::createHal3A);
    case kModuleDefaultShading: return reinterpret_cast<void*>(&host::createDefaultShading);
    default: return nullptr;
  }
}
