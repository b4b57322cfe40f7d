// Where a frame's metadata is dumped.

#pragma once

#include <array>
#include <cstdio>

namespace hesk {

/// Room for the path of a dump and its terminating zero.
using MetadataDumpPath = std::array<char, 100>;

/// Writes the path for a label, a frame and a time stamp. Returns the path's length; one that has
/// no room is cut.
inline int formatMetadataDumpPath(MetadataDumpPath& path, const char* label, int frameNumber,
                                  const char* timeStamp) {
  return std::snprintf(path.data(), path.size(), "%s/%s_metadata_[%d]_%s.txt",
                       "/data/vendor/camera", label, frameNumber, timeStamp);
}

}  // namespace hesk
