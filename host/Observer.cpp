#include "host/Observer.h"

#include <execinfo.h>

namespace host {

constinit std::atomic<Observer*> Observer::sCurrent = nullptr;

std::vector<void*> Observer::returnAddresses() {
  constexpr int kMaxDepth = 128;
  std::vector<void*> addresses(kMaxDepth);
  addresses.resize(static_cast<std::size_t>(backtrace(addresses.data(), kMaxDepth)));
  return addresses;
}

}  // namespace host
