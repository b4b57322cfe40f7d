// The names under which the updater writes log records and uses platform objects.

#pragma once

#include "common/log/Log.h"

namespace hesk {

inline constexpr log::Source kUpdaterSource{"HeskParameterUpdater",
                                            "common/HeskParameterUpdater.cpp"};

/// The user name with which the updater creates and releases platform objects.
inline constexpr const char* kUpdaterUser = "HeskParameterUpdater";

/// Returns the operation of the updater with this name.
constexpr log::Operation updaterOperation(const char* name) noexcept {
  return {kUpdaterSource, name};
}

}  // namespace hesk
