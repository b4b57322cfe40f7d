#include "host/Phone.h"

#include <atomic>
#include <stdexcept>
#include <utility>

namespace host {

constinit std::atomic<Phone*> Phone::sCurrent = nullptr;

Phone::Phone(PhoneConfig phoneConfig) : Phone(std::move(phoneConfig), MembersOnly()) {
  Phone* none = nullptr;
  if (!sCurrent.compare_exchange_strong(none, this)) {
    throw std::logic_error("a process has one simulated phone at a time");
  }
  setObserver(&effects);
  LogSink::enableLevels({'D', 'E', 'I'});
}

Phone::Phone(PhoneConfig phoneConfig, MembersOnly)
    : config(std::move(phoneConfig)),
      properties(std::exchange(config.properties, {})),
      eventStore(std::exchange(config.eventStore, {})) {}

Phone::~Phone() {
  if (sCurrent != this) return;  // the bare phone, or a second one that threw
  LogSink::enableLevels({});
  setObserver(nullptr);
  sCurrent = nullptr;
}

Observer* Phone::setObserver(Observer* observer) {
  return Observer::sCurrent.exchange(observer, std::memory_order_acq_rel);
}

Phone& Phone::bare() {
  static Phone bare({}, MembersOnly());
  return bare;
}

}  // namespace host
