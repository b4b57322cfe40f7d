// Observation of the library: the functions of `platform/` report every access to the phone's
// observer. Without an observer an access costs one test of a pointer.
//
//   class Writes : public host::Observer {
//     void onAccess(const host::Access& access) override {
//       if (std::get_if<host::MetadataWrite>(&access)) for (void* each : returnAddresses()) ...
//     }
//   };
//   phone.setObserver(&writes);
//
// A test or tool that calls these functions itself removes the observer first.

#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "host/Effect.h"
#include "platform/IMetadata.h"

namespace host {

/// A tag was looked up in a container, possibly a temporary one of the library, or in a camera
/// metadata buffer made from a container.
struct MetadataRead {
  const NSCam::IMetadata* container = nullptr;
  NSCam::IMetadata::Tag_t tag = NSCam::IMetadata::kNoTag;
};

/// An entry is about to be written to a container; an entry without items clears the tag.
struct MetadataWrite {
  const NSCam::IMetadata* container = nullptr;
  NSCam::IMetadata::Tag_t tag = NSCam::IMetadata::kNoTag;
  NSCam::IMetadata::IEntry entry;
};

/// A tag was looked up in the static characteristics of a device.
struct StaticRead {
  std::int32_t device = 0;
  NSCam::IMetadata::Tag_t tag = NSCam::IMetadata::kNoTag;
};

/// A value of the event store was read; empty if not set. Writes are effects.
struct EventRead {
  std::string key;
  std::string value;
};

/// A property was read; the value is empty if it is unset.
struct PropertyRead {
  std::string name;
  std::string value;
};

/// A service was called. `place` is the path, in a scenario's `platform`, of the setting that
/// determines the result: "devices.0.hal3a.available", "sat.cameras[1].fov",
/// "provider".
struct ServiceRead {
  std::string place;
};

/// Returns the path of a device's `part` in a scenario's `platform`.
inline std::string placeOf(std::int32_t device, std::string_view part) {
  return "devices." + std::to_string(device) + '.' + std::string(part);
}

using Access = std::variant<MetadataRead, MetadataWrite, StaticRead, EventRead, PropertyRead,
                            ServiceRead, Effect>;

/// Called on the thread that makes the access.
class Observer {
 public:
  virtual void onAccess(const Access& access) = 0;

 protected:
  ~Observer() = default;

  /// To be called in `onAccess`. Returns the return addresses of the call stack, innermost first:
  /// those of observer and host, then those of the library. Takes microseconds.
  static std::vector<void*> returnAddresses();

 private:
  friend class Phone;
  template <typename Make>
  friend void observe(Make make);

  static std::atomic<Observer*> sCurrent;  // of the current phone
};

/// Reports the access that `make` returns to the observer, if there is one.
template <typename Make>
void observe(Make make) {
  Observer* const observer = Observer::sCurrent.load(std::memory_order_acquire);
  if (observer != nullptr) [[unlikely]]
    observer->onAccess(make());
}

}  // namespace host
