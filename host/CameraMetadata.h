// The camera metadata buffers of the simulated phone.

#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/CameraMetadata.h"
#include "platform/IMetadata.h"

/// A buffer made from a metadata container, its entries ordered by tag. A rectangle becomes four
/// int32 values.
struct camera_metadata {
  struct Entry {
    std::uint32_t tag = 0;
    std::uint8_t type = 0;
    std::size_t count = 0;
    std::vector<std::uint64_t> words;  // the values, padded with zeros
  };

  explicit camera_metadata(const NSCam::IMetadata& metadata);

  const NSCam::IMetadata* source;  // reported to the observer; never dereferenced
  std::vector<Entry> entries;
};
