// In whose name the updater's records are written, and platform objects borrowed.

#pragma once

#include "common/log/Log.h"

namespace hesk {

inline constexpr log::Source kUpdaterSource{"HeskParameterUpdater",
                                            "common/HeskParameterUpdater.cpp"};

/// The name under which the updater borrows what belongs to the platform.
inline constexpr const char* kUpdaterUser = "HeskParameterUpdater";

/// The operation of the updater with that listed name.
constexpr log::Operation updaterOperation(const char* name) noexcept {
  return {kUpdaterSource, name};
}

}  // namespace hesk
