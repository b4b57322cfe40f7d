// The files of the simulated phone, in memory. The machine's file system is not used.

#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// Writes all of `text` to a descriptor. Returns false on error.
bool writeAll(int descriptor, std::string_view text);

/// The files in /data/vendor/camera, the only directory in which files can be opened. Any
/// thread.
class PhoneFiles {
 public:
  /// Opens the file at `path`, which may contain "." and "..". The content is kept; the position is
  /// 0. Returns a descriptor of an anonymous file, -1 if the path is outside the directory. `close`
  /// stores the content.
  int open(std::string_view path);

  /// Closes a descriptor that `open` returned. Returns 0, or -1 on error.
  int close(int descriptor);

  /// Returns and removes the paths passed to successful calls of `open`.
  std::vector<std::string> takeOpened();

  /// Returns the content stored for a file; empty if there is none.
  [[nodiscard]] std::string content(std::string_view path) const;

 private:
  mutable std::mutex mMutex;
  std::vector<std::string> mOpened;
  std::map<int, std::string> mPaths;                          // of open descriptors, resolved
  std::map<std::string, std::string, std::less<>> mContents;  // by resolved path
};

}  // namespace host
