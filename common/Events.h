// Access to the event store.

#pragma once

#include <string>
#include <string_view>

#include "common/NumberText.h"
#include "platform/EventStore.h"

namespace hesk {

/// Returns the value of a key, empty if it was never set.
inline std::string eventValue(std::string_view key) {
  std::string value;
  NSCam::ATMsEventMgr::getInstance().get(key, value);
  return value;
}

/// Returns the number at the beginning of a key's value; `fallback` if there is none.
template <typename T>
T eventNumber(std::string_view key, T fallback) {
  return leadingNumber<T>(eventValue(key)).value_or(fallback);
}

/// Replaces the value of a key.
inline void setEvent(std::string_view key, std::string_view value) {
  NSCam::ATMsEventMgr::getInstance().set(key, value);
}

}  // namespace hesk
