#include "host/PhoneFiles.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <utility>

namespace host {
namespace {

std::string resolved(std::string_view path) {
  return std::filesystem::path(path).lexically_normal().string();
}

}  // namespace

PhoneFiles::~PhoneFiles() {
  for (const auto& [path, file] : mFiles) ::close(file);
}

int PhoneFiles::open(std::string_view path) {
  std::string place = resolved(path);
  if (!place.starts_with("/data/vendor/camera/")) return -1;
  const std::lock_guard lock(mMutex);
  auto found = mFiles.find(place);
  if (found == mFiles.end()) {
    const int file = ::memfd_create("phone file", MFD_CLOEXEC);
    if (file < 0) return -1;
    found = mFiles.emplace(std::move(place), file).first;
  }
  // Opened again, so that the caller has an offset of its own.
  const std::string again = "/proc/self/fd/" + std::to_string(found->second);
  const int descriptor = ::open(again.c_str(), O_RDWR | O_CLOEXEC);
  if (descriptor >= 0) mOpened.emplace_back(path);
  return descriptor;
}

std::vector<std::string> PhoneFiles::takeOpened() {
  const std::lock_guard lock(mMutex);
  return std::exchange(mOpened, {});
}

std::string PhoneFiles::content(std::string_view path) const {
  const std::lock_guard lock(mMutex);
  const auto found = mFiles.find(resolved(path));
  if (found == mFiles.end()) return {};
  const auto size = std::max<off_t>(::lseek(found->second, 0, SEEK_END), 0);
  std::string text(static_cast<std::size_t>(size), '\0');
  const ssize_t read = ::pread(found->second, text.data(), text.size(), 0);
  text.resize(static_cast<std::size_t>(std::max<ssize_t>(read, 0)));
  return text;
}

}  // namespace host
