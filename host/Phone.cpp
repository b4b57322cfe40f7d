#include "host/Phone.h"

#include <atomic>
#include <stdexcept>
#include <utility>

namespace host {

constinit std::atomic<Phone*> Phone::sCurrent = nullptr;

const DeviceConfig& PhoneConfig::deviceOrDefault(std::int32_t id) const {
  static const DeviceConfig kUnlisted = [] {
    DeviceConfig device;
    device.hasProvider = false;
    return device;
  }();
  const auto found = devices.find(id);
  return found != devices.end() ? found->second : kUnlisted;
}

Phone::Phone(PhoneConfig phoneConfig) : Phone(std::move(phoneConfig), Kind::simulated) {
  Phone* none = nullptr;
  if (!sCurrent.compare_exchange_strong(none, this)) {
    throw std::logic_error("a process has one simulated phone at a time");
  }
  LogSink::openLevels({'D', 'E', 'I'});
}

Phone::Phone(PhoneConfig phoneConfig, Kind kind)
    : config(std::move(phoneConfig)),
      properties(std::exchange(config.properties, {})),
      eventStore(std::exchange(config.eventStore, {})),
      mKind(kind) {
  effects.setRecording(kind == Kind::simulated);  // nobody takes the effects on a bare phone
}

Phone::~Phone() {
  if (mKind == Kind::bare || sCurrent != this) return;
  LogSink::openLevels({});
  sCurrent = nullptr;
}

Phone& Phone::bare() {
  static Phone bare({}, Kind::bare);
  return bare;
}

}  // namespace host
