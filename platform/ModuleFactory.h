// The modules of the HAL.

#pragma once

#include <cstdint>

namespace NSCam {

/// The sensor list; its function is a `HalSensorListGetter`.
inline constexpr std::uint32_t kModuleSensorList = 1;

/// The 3A module; its function is an `NS3Av3::Hal3ACreator`.
inline constexpr std::uint32_t kModule3A = 0x10001;

/// The default lens shading; its function is a `DefaultShadingCreator`.
inline constexpr std::uint32_t kModuleDefaultShading = 0x10007;

/// Returns the function of a module, which has the type given above for that module; null if there
/// is no such module. Any thread.
void* getMtkcamModuleFactory(std::uint32_t module);

}  // namespace NSCam
