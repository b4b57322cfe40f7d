#include "host/Modules.h"

#include "host/Phone.h"
#include "platform/ModuleFactory.h"

void* NSCam::getMtkcamModuleFactory(std::uint32_t module) {
  const host::PhoneConfig& config = host::Phone::current().config;
  switch (module) {
    case kModuleSensorList: return reinterpret_cast<void*>(&host::sensorList);
    case kModule3A:
      host::observe([] { return host::ServiceRead{"hal3aModule"}; });
      return config.hal3AModule ? reinterpret_cast<void*>(&host::createHal3A) : nullptr;
    case kModuleDefaultShading:
      host::observe([] { return host::ServiceRead{"defaultShadingModule"}; });
      return config.defaultShadingModule ? reinterpret_cast<void*>(&host::createDefaultShading)
                                         : nullptr;
    default: return nullptr;
  }
}
