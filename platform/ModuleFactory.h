// The HAL's modules by number.

#pragma once

#include <cstdint>

namespace NSCam {

/// The sensor list; the factory yields a `HalSensorListGetter`.
inline constexpr std::uint32_t kModuleSensorList = 1;

/// The 3A module; the factory yields an `NS3Av3::Hal3ACreator`.
inline constexpr std::uint32_t kModule3A = 0x10001;

/// The default lens shading; the factory yields a `DefaultShadingCreator`.
inline constexpr std::uint32_t kModuleDefaultShading = 0x10007;

/// The entry function of a module, of the type that the module's constant above names; null where
/// there is no such module. Any thread.
void* getMtkcamModuleFactory(std::uint32_t module);

}  // namespace NSCam
