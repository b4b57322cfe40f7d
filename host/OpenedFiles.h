// Which of the phone's files were opened.

#pragma once

#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace host {

/// Keeps paths until they are taken. Any thread.
class OpenedFiles {
 public:
  void add(std::string_view path) {
    const std::lock_guard lock(mMutex);
    mPaths.emplace_back(path);
  }

  /// The paths, as the phone has them, that were opened since the last call.
  std::vector<std::string> take() {
    const std::lock_guard lock(mMutex);
    return std::exchange(mPaths, {});
  }

 private:
  std::mutex mMutex;
  std::vector<std::string> mPaths;
};

}  // namespace host
