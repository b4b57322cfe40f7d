// The event store of the simulated phone.

#include "platform/EventStore.h"

#include "host/Phone.h"

namespace {

class CurrentEventStore final : public NSCam::ATMsEventMgr {
 public:
  void set(std::string_view key, std::string_view value) override {
    host::Phone::current().eventStore.set(key, value);
    host::observe([&] {
      return host::Effect{"eventStore.set",
                          {{"key", std::string(key)}, {"value", std::string(value)}}};
    });
  }

  void get(std::string_view key, std::string& value) const override {
    value = host::Phone::current().eventStore.get(key);
    host::observe([&] { return host::EventRead{std::string(key), value}; });
  }
};

constinit CurrentEventStore sInstance;

}  // namespace

NSCam::ATMsEventMgr& NSCam::ATMsEventMgr::getInstance() { return sInstance; }
