// The files that the library writes, in memory: nothing of the machine's file system is read or
// written.

#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// The files in /data/vendor/camera, the only folder in which the library may open files. Any
/// thread.
class PhoneFiles {
 public:
  /// Opens the file at `path`, which may contain "." and "..", at its start, and keeps its content.
  /// Returns a descriptor of an anonymous file, -1 if the path is outside the folder. The content
  /// is stored when `close` is called.
  int open(std::string_view path);

  /// Closes a descriptor that `open` returned. Returns 0, -1 on error.
  int close(int descriptor);

  /// The paths opened since the last call, as they were passed to `open`.
  std::vector<std::string> takeOpened();

  /// The content of a closed file; empty if there is no such file.
  [[nodiscard]] std::string content(std::string_view path) const;

 private:
  mutable std::mutex mMutex;
  std::vector<std::string> mOpened;
  std::map<int, std::string> mPaths;                          // of open descriptors, resolved
  std::map<std::string, std::string, std::less<>> mContents;  // by resolved path
};

}  // namespace host
