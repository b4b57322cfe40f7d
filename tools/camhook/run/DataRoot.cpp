#include "tools/camhook/run/DataRoot.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include "tools/camhook/input/InputError.h"

namespace camhook {
namespace {

void makeDataFolder(const std::filesystem::path& root) {
  constexpr std::size_t kMostOfName = 100;
  std::error_code error;
  std::filesystem::create_directories(root / "data/vendor/camera", error);
  if (!error) return;
  throw InputError("camhook: the data root " + cutInFront(printable(root.string()), kMostOfName) +
                   " cannot be made: " + error.message());
}

/// Returns when nobody has the other end of the pipe open any longer.
void waitForEnd(int pipe) {
  char nothing = 0;
  while (read(pipe, &nothing, 1) < 0 && errno == EINTR) {
  }
}

std::filesystem::path makeTemporaryFolder() {
  std::error_code error;
  std::string path = (std::filesystem::temp_directory_path(error) / "camhook-XXXXXX").string();
  if (mkdtemp(path.data()) == nullptr) {
    throw InputError("camhook: no temporary folder can be made: " +
                     std::string(std::strerror(errno)));
  }
  return path;
}

}  // namespace

DataRoot::DataRoot(const std::string& folder) : mPath(folder), mIsTemporary(folder.empty()) {
  if (!mIsTemporary) makeDataFolder(mPath);
}

DataRoot::~DataRoot() {
  if (!mIsTemporary || mPath.empty()) return;
  std::error_code ignored;
  std::filesystem::remove_all(mPath, ignored);
  if (mWatcher.process < 0) return;
  close(mWatcher.pipe);
  waitpid(mWatcher.process, nullptr, 0);
}

const std::filesystem::path& DataRoot::path() const {
  if (!mPath.empty()) return mPath;
  mPath = makeTemporaryFolder();
  if (mIsWatched) mWatcher = startWatcher();
  makeDataFolder(mPath);
  return mPath;
}

/// Children that are forked later have the pipe open, too: they may be about to make a file.
DataRoot::Watcher DataRoot::startWatcher() const {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw InputError("camhook: no pipe can be made");
  // What a terminal sends to end the process reaches the watcher, too.
  sigset_t all{};
  sigset_t before{};
  sigfillset(&all);
  sigprocmask(SIG_SETMASK, &all, &before);
  const pid_t process = fork();
  if (process == 0) {
    close(ends[1]);
    waitForEnd(ends[0]);
    std::error_code ignored;
    std::filesystem::remove_all(mPath, ignored);
    _exit(0);
  }
  sigprocmask(SIG_SETMASK, &before, nullptr);
  close(ends[0]);
  if (process < 0) throw InputError("camhook: no process can be started");
  return {.process = process, .pipe = ends[1]};
}

}  // namespace camhook
