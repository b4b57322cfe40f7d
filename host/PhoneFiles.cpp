#include "host/PhoneFiles.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <utility>

namespace host {
namespace {

constexpr std::string_view kDirectory = "/data/vendor/camera/";

std::string resolved(std::string_view path) {
  return std::filesystem::path(path).lexically_normal().string();
}

std::string readAll(int descriptor) {
  std::string text(static_cast<std::size_t>(std::max<off_t>(::lseek(descriptor, 0, SEEK_END), 0)),
                   '\0');
  const ssize_t size = ::pread(descriptor, text.data(), text.size(), 0);
  text.resize(static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
  return text;
}

}  // namespace

bool writeAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(descriptor, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

int PhoneFiles::open(std::string_view path) {
  std::string resolvedPath = resolved(path);
  if (!resolvedPath.starts_with(kDirectory)) return -1;
  const std::lock_guard lock(mMutex);
  const int descriptor = ::memfd_create("phone file", MFD_CLOEXEC);
  if (descriptor < 0) return -1;
  if (!writeAll(descriptor, mContents[resolvedPath]) || ::lseek(descriptor, 0, SEEK_SET) != 0) {
    ::close(descriptor);
    return -1;
  }
  mOpened.emplace_back(path);
  mPaths[descriptor] = std::move(resolvedPath);
  return descriptor;
}

int PhoneFiles::close(int descriptor) {
  const std::lock_guard lock(mMutex);
  const auto open = mPaths.find(descriptor);
  if (open == mPaths.end()) return -1;
  mContents[open->second] = readAll(descriptor);
  mPaths.erase(open);
  return ::close(descriptor);
}

std::vector<std::string> PhoneFiles::takeOpened() {
  const std::lock_guard lock(mMutex);
  return std::exchange(mOpened, {});
}

std::string PhoneFiles::content(std::string_view path) const {
  const std::lock_guard lock(mMutex);
  const auto found = mContents.find(resolved(path));
  return found != mContents.end() ? found->second : std::string();
}

}  // namespace host
