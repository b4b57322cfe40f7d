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

  /// Has a fresh folder go, too, when the process ends in any other way: a signal, an abort. For
  /// this a process is forked when the folder is made; there must be no thread but this one.
  void removeAtAnyEnd() { mIsWatched = true; }

 private:
  /// Removes the folder when the process that started it has ended.
  struct Watcher {
    int process = -1;
    int pipe = -1;  // whose other end tells the watcher
  };

  [[nodiscard]] Watcher startWatcher() const;

  mutable std::filesystem::path mPath;  // empty until it is made
  mutable Watcher mWatcher;
  bool mIsTemporary;
  bool mIsWatched = false;
};

}  // namespace camhook
