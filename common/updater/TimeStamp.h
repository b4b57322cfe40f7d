// The local time under which dumps are found.

#pragma once

#include <array>

#include "common/HeskParameterUpdater.h"

namespace hesk {

/// "20210304050607" and its terminating zero, or the empty text.
using TimeStamp = std::array<char, 15>;

inline TimeStamp currentTimeStamp() {
  TimeStamp stamp{};
  HeskParameterUpdater::getCurrentTime(stamp.data());
  return stamp;
}

}  // namespace hesk
