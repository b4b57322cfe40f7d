// The event store's keys and the callers that they name.

#pragma once

#include <string>
#include <string_view>

#include "platform/EventStore.h"

namespace hesk {

/// The value of an event-store key, empty where it was never set.
inline std::string eventValue(const char* key) {
  std::string value;
  NSCam::ATMsEventMgr::getInstance().get(key, value);
  return value;
}

/// The value of "APP_NAME". Every request reads it, and its longest values do not fit into a string
/// without allocation: it stands in a buffer of the calling thread, until the thread's next call.
inline const std::string& appNameEvent() {
  static thread_local std::string name;
  NSCam::ATMsEventMgr::getInstance().get("APP_NAME", name);
  return name;
}

/// Replaces the value of an event-store key.
inline void setEvent(const char* key, std::string_view value) {
  NSCam::ATMsEventMgr::getInstance().set(key, value);
}

/// Whether an "APP_TYPE" is the maker's camera app or the engineering camera app.
inline bool isOwnCameraApp(std::string_view appType) {
  return appType == "heskCamera" || appType == "engcamera";
}

}  // namespace hesk
