// In whose name the updater's records are written.

#pragma once

#include "common/log/Log.h"

namespace hesk {

inline constexpr log::Source kUpdaterSource{"HeskParameterUpdater",
                                            "common/HeskParameterUpdater.cpp"};

/// The operation of the updater with that listed name.
constexpr log::Operation updaterOperation(const char* name) noexcept {
  return {kUpdaterSource, name};
}

}  // namespace hesk
