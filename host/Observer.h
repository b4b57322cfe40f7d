// Who looks on: every access of the library to the phone is told to the phone's observer, where it
// has one. Without, an access costs the test of one pointer more.
//
//   class Writes : public host::Observer {
//     void onAccess(const host::Access& access) override {
//       if (std::get_if<host::MetadataWrite>(&access)) for (void* each : returnAddresses()) ...
//     }
//   };
//   phone.setObserver(&writes);
//
// It is the operations of `platform/` that tell. Who calls them besides the library, as tests and
// tools do with containers, takes the observer off meanwhile.

#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "host/Effect.h"
#include "platform/IMetadata.h"

namespace host {

/// A tag was looked up in a container, or in a camera metadata buffer made from it. The library
/// keeps containers of its own, too.
struct MetadataRead {
  const NSCam::IMetadata* container = nullptr;
  NSCam::IMetadata::Tag_t tag = NSCam::IMetadata::kNoTag;
};

/// An entry was written to a container; one without items clears the tag. Told before it stands
/// there.
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

/// A value of the event store; empty where there is none. What is set there is an effect.
struct EventRead {
  std::string key;
  std::string value;
};

/// A property; the value is empty where it is unset.
struct PropertyRead {
  std::string name;
  std::string value;
};

/// A service was asked. `place` is the part of the phone that its answer depends on, as the
/// `platform` of a scenario has it: "devices.0.hal3a", "sat.cameras[1].fov", "provider".
struct ServiceRead {
  std::string place;
};

using Access = std::variant<MetadataRead, MetadataWrite, StaticRead, EventRead, PropertyRead,
                            ServiceRead, Effect>;

/// Threads: the library's own, each access on the thread that makes it.
class Observer {
 public:
  virtual void onAccess(const Access& access) = 0;

 protected:
  ~Observer() = default;

  /// In `onAccess`: where the thread will return to, innermost first. What begins it is the host's
  /// and the observer's own, then comes the library. Takes microseconds.
  static std::vector<void*> returnAddresses();

 private:
  friend class Phone;
  template <typename Make>
  friend void observe(Make make);

  static std::atomic<Observer*> sCurrent;  // of the phone that there is
};

/// Tells the observer, if there is one, the access that `make` returns.
template <typename Make>
void observe(Make make) {
  Observer* const observer = Observer::sCurrent.load(std::memory_order_acquire);
  if (observer != nullptr) [[unlikely]]
    observer->onAccess(make());
}

}  // namespace host
