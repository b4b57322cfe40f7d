// The clock and the files of the phone that the library runs on.

#include "platform/CLibrary.h"

#include <fcntl.h>

#include <filesystem>

#include "host/Phone.h"

std::tm* cam::localtime_r(const std::time_t* time, std::tm* out) {
  host::observe([] { return host::ServiceRead{"clock"}; });
  const host::PhoneConfig& config = host::Phone::current().config;
  if (!config.clock) return ::localtime_r(time, out);
  *out = *config.clock;
  return out;
}

int cam::open(const char* path, int flags, unsigned int mode) {
  host::Phone& phone = host::Phone::current();
  if (phone.config.dataRoot.empty()) return -1;
  // Of an absolute path nothing is left that leads out of the root.
  const std::filesystem::path inside = std::filesystem::path(path).lexically_normal();
  const std::string onHost = phone.config.dataRoot + inside.string();
  const int file = ::open(onHost.c_str(), flags, mode);
  if (file >= 0) phone.openedFiles.add(path);
  return file;
}
