// The names under which the updater writes log records and uses platform objects.

#pragma once

#include "common/log/Log.h"

namespace hesk {

inline constexpr log::Source kUpdaterSource{"HeskParameterUpdater",
                                            "common/HeskParameterUpdater.cpp"};

/// The user name with which the updater creates and releases platform objects. Only sensors are
/// created with another name (SensorPdaf.cpp).
inline constexpr const char* kUpdaterUser = kUpdaterSource.tag;

/// Returns the log operation of a member function.
constexpr log::Operation updaterOperation(const char* name) noexcept {
  return {kUpdaterSource, name};
}

// Operations whose steps are in several files.
inline constexpr log::Operation kRequestOperation = updaterOperation("updateRequestMeta");
inline constexpr log::Operation kAppOperation = updaterOperation("update3rdpartyAppControlMeta");

}  // namespace hesk
