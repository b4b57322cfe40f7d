// The simulated phone: implements `platform/`.
//
//   host::Phone phone;
//   phone.properties.set("ro.product.model.zdm", "KX0107");
//   phone.config.devices[0].statics = ...;
//
// The library uses the Phone that exists; if none exists, it uses a phone with default values and a
// all log levels disabled.
//
// Threads: `config` and the observer are changed while no hook runs. Any thread may use the other
// members.

#pragma once

#include <atomic>

#include "host/EffectCollector.h"
#include "host/LogSink.h"
#include "host/PhoneConfig.h"
#include "host/PhoneFiles.h"
#include "host/TextStore.h"
#include "host/TuningBuffer.h"

namespace host {

class Phone {
 public:
  /// Enables every log level and makes `effects` the observer. Throws std::logic_error if another
  /// phone exists.
  explicit Phone(PhoneConfig config = {});
  ~Phone();
  Phone(const Phone&) = delete;
  Phone& operator=(const Phone&) = delete;

  /// Returns the phone that the library uses.
  static Phone& current() {
    Phone* phone = sCurrent.load(std::memory_order_acquire);
    return phone != nullptr ? *phone : bare();
  }

  /// Reports every access of the library to `observer`; null disables reporting. Returns the
  /// previous observer.
  Observer* setObserver(Observer* observer);

  PhoneConfig config;  // `properties` and `eventStore` are moved to the stores below
  TextStore properties;
  TextStore eventStore;
  EffectCollector effects;
  PhoneFiles files;
  TuningBuffer tuningBuffer;
  LogSink log;

 private:
  struct MembersOnly {};

  Phone(PhoneConfig config, MembersOnly);

  /// Returns the phone that the library uses if no other exists.
  static Phone& bare();

  static std::atomic<Phone*> sCurrent;
};

}  // namespace host
