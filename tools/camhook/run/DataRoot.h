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

  [[nodiscard]] const std::filesystem::path& path() const { return mPath; }

 private:
  std::filesystem::path mPath;
  bool mIsTemporary;
};

}  // namespace camhook
