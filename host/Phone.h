// The simulated phone behind `platform/`.
//
//   host::Phone phone;
//   phone.properties.set("ro.product.model.zdm", "KX0107");
//   phone.config.devices[0].statics = ...;
//
// From its construction to its end it is the phone that the library runs on; then everything that
// was set on it is gone. Outside any Phone the library runs on a bare one, with nothing set and the
// log closed.
//
// Threads: properties, event store, effects, files, tuning buffers and log records may be
// used from any thread while hooks run. `config` is filled before.

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
  /// Every log level is open, effects and records are kept: `effects` observes. A process has one
  /// phone at a time; a second one throws std::logic_error.
  explicit Phone(PhoneConfig config = {});
  ~Phone();
  Phone(const Phone&) = delete;
  Phone& operator=(const Phone&) = delete;

  /// The phone that the library runs on.
  static Phone& current() {
    Phone* phone = sCurrent.load(std::memory_order_acquire);
    return phone != nullptr ? *phone : bare();
  }

  /// Has every access of the library told to `observer`, null: to nobody. Returns who was told
  /// until now. While no hook runs.
  Observer* setObserver(Observer* observer);

  PhoneConfig config;  // its `properties` and `eventStore` have moved into the stores below
  TextStore properties;
  TextStore eventStore;
  EffectCollector effects;
  PhoneFiles files;
  TuningBuffer tuningBuffer;
  LogSink log;

 private:
  enum class Kind { simulated, bare };

  Phone(PhoneConfig config, Kind kind);

  /// The phone that there is outside any other.
  static Phone& bare();

  static std::atomic<Phone*> sCurrent;

  Kind mKind;
};

}  // namespace host
