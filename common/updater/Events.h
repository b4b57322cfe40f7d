// The event store's keys and the callers that they name.

#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "platform/EventStore.h"

namespace hesk {

/// A key as a template argument: eventValue<"APP_TYPE">().
template <std::size_t Size>
struct EventKey {
  // Implicit, so that a literal is a key.
  consteval EventKey(const char (&literal)[Size]) { std::copy_n(literal, Size, text); }

  char text[Size];
};

/// The value of an event-store key, empty where it was never set. It ends with a zero and stands
/// until the thread reads the same key again: every request reads some, and each has a buffer of
/// the thread, so that values too long for a string's own room cost no allocation.
template <EventKey kKey>
std::string_view eventValue() {
  static thread_local std::string value;
  NSCam::ATMsEventMgr::getInstance().get({kKey.text, sizeof kKey.text - 1}, value);
  return value;
}

/// Replaces the value of an event-store key.
inline void setEvent(std::string_view key, std::string_view value) {
  NSCam::ATMsEventMgr::getInstance().set(key, value);
}

/// Whether an "APP_TYPE" is the maker's camera app or the engineering camera app.
inline bool isOwnCameraApp(std::string_view appType) {
  return appType == "heskCamera" || appType == "engcamera";
}

}  // namespace hesk
