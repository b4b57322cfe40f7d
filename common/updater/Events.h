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

/// Whether an "APP_TYPE" is the maker's camera app or the engineering camera app.
inline bool isOwnCameraApp(std::string_view appType) {
  return appType == "heskCamera" || appType == "engcamera";
}

}  // namespace hesk
