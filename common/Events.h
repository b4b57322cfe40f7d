// The event store, key by key.

#pragma once

#include <string>
#include <string_view>

#include "platform/EventStore.h"

namespace hesk {

/// The value of a key, empty where it was never set.
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
