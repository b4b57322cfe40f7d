// Access to the event store.

#pragma once

#include <string>
#include <string_view>

#include "platform/EventStore.h"

namespace hesk {

/// Returns the value of a key, empty if it was never set.
inline std::string eventValue(std::string_view key) {
  std::string value;
  NSCam::ATMsEventMgr::getInstance().get(key, value);
  return value;
}

/// Replaces the value of a key.
inline void setEvent(std::string_view key, std::string_view value) {
  NSCam::ATMsEventMgr::getInstance().set(key, value);
}

}  // namespace hesk
