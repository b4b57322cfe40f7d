#include "host/Phone.h"

#include <atomic>
#include <stdexcept>
#include <utility>

namespace host {
namespace {

std::atomic<Phone*> sCurrent = nullptr;

}  // namespace

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

Phone& Phone::current() {
  Phone* phone = sCurrent.load(std::memory_order_acquire);
  if (phone != nullptr) return *phone;
  static Phone bare({}, Kind::bare);
  return bare;
}

}  // namespace host
