// The platform's default lens-shading tables.

#pragma once

#include <cstdint>
#include <memory>

#include "platform/IMetadata.h"

namespace NSCam {

/// The default shading of one sensor. Must be used by one thread at a time.
class IDefaultShading {
 public:
  virtual ~IDefaultShading() = default;

  /// Returns the shading metadata for a frame with this HAL and app metadata; either may be null.
  [[nodiscard]] virtual IMetadata query(const IMetadata* halMeta, const IMetadata* appMeta) = 0;
};

/// The type of module `kModuleDefaultShading`. Creates the provider of a sensor for the caller
/// named `user`; returns null on failure.
using DefaultShadingCreator = std::unique_ptr<IDefaultShading> (*)(const char* user,
                                                                   std::int32_t sensorIndex);

}  // namespace NSCam
