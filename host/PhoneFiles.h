// The files that the library writes, in memory: no file of the machine is read or written.

#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// The files in /data/vendor/camera, the only directory in which the library may open files. Any
/// thread.
class PhoneFiles {
 public:
  PhoneFiles() = default;
  ~PhoneFiles();
  PhoneFiles(const PhoneFiles&) = delete;
  PhoneFiles& operator=(const PhoneFiles&) = delete;

  /// Opens the file at `path`, which may contain "." and "..", at its start, and keeps its content.
  /// Returns a descriptor that the caller closes, -1 if the path is outside the directory.
  int open(std::string_view path);

  /// Returns the paths opened since the last call, as they were passed to `open`.
  std::vector<std::string> takeOpened();

  /// Returns the content of a file, empty if there is no such file.
  [[nodiscard]] std::string content(std::string_view path) const;

 private:
  mutable std::mutex mMutex;
  std::vector<std::string> mOpened;
  std::map<std::string, int, std::less<>> mFiles;  // descriptors of anonymous files, by path
};

}  // namespace host
