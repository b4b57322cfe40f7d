#include "host/Observer.h"

#include <execinfo.h>

namespace host {

constinit std::atomic<Observer*> Observer::sCurrent = nullptr;

std::vector<void*> Observer::returnAddresses() {
  constexpr int kMost = 128;
  std::vector<void*> addresses(kMost);
  addresses.resize(static_cast<std::size_t>(backtrace(addresses.data(), kMost)));
  return addresses;
}

}  // namespace host
