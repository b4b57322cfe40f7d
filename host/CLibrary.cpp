// The clock and the files of the simulated phone.

#include "platform/CLibrary.h"

#include "host/Phone.h"

std::tm* cam::localtime_r(const std::time_t* time, std::tm* out) {
  host::observe([] { return host::ServiceRead{"clock"}; });
  const host::PhoneConfig& config = host::Phone::current().config;
  if (!config.clock) return ::localtime_r(time, out);
  *out = *config.clock;
  return out;
}

int cam::open(const char* path, int /*flags*/, unsigned int /*mode*/) {
  return host::Phone::current().files.open(path);
}

int cam::close(int descriptor) { return host::Phone::current().files.close(descriptor); }
