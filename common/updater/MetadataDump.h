// The path of a metadata dump.

#pragma once

#include <array>
#include <cstdio>

namespace hesk {

/// The path and its terminating zero.
using MetadataDumpPath = std::array<char, 100>;

/// Writes the path for a label, a frame number and a time stamp; a path that is too long is
/// truncated. Returns the length of the whole path.
inline int formatMetadataDumpPath(MetadataDumpPath& path, const char* label, int frameNumber,
                                  const char* timeStamp) {
  return std::snprintf(path.data(), path.size(), "/data/vendor/camera/%s_metadata_[%d]_%s.txt",
                       label, frameNumber, timeStamp);
}

}  // namespace hesk
