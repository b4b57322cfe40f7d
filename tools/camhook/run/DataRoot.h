// The folder on the host that stands for the root of the phone's file system.

#pragma once

#include <filesystem>
#include <string>

namespace camhook {

class DataRoot {
 public:
  /// `folder`, which is made where it is missing and stays; for the empty text a fresh folder that
  /// goes with this object. The phone's data folder is in it. Throws InputError.
  explicit DataRoot(const std::string& folder);
  ~DataRoot();
  DataRoot(const DataRoot&) = delete;
  DataRoot& operator=(const DataRoot&) = delete;

  /// A fresh folder is made when this is first asked for. Throws InputError.
  [[nodiscard]] const std::filesystem::path& path() const;

  /// Has a fresh folder go, too, when SIGINT, SIGTERM or SIGHUP ends the process. Called once, and
  /// before there are other threads: they must not take the signal.
  void removeOnSignals() { mRemovesOnSignals = true; }

 private:
  mutable std::filesystem::path mPath;  // empty until it is made
  bool mIsTemporary;
  bool mRemovesOnSignals = false;
};

}  // namespace camhook
