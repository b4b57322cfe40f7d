#include "tools/camhook/run/DataRoot.h"

#include <pthread.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <thread>

#include "tools/camhook/input/InputError.h"

namespace camhook {
namespace {

/// Held by whoever removes a folder. After a signal nobody else ends the process.
std::mutex sRemoval;

void makeDataFolder(const std::filesystem::path& root) {
  constexpr std::size_t kMostOfName = 100;
  std::error_code error;
  std::filesystem::create_directories(root / "data/vendor/camera", error);
  if (!error) return;
  throw InputError("camhook: the data root " + cutInFront(printable(root.string()), kMostOfName) +
                   " cannot be made: " + error.message());
}

/// The signals by which users end the process, but for those that it was started to ignore.
sigset_t endingSignals() {
  sigset_t signals{};
  sigemptyset(&signals);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction before {};
    sigaction(signal, nullptr, &before);
    if (before.sa_handler != SIG_IGN) sigaddset(&signals, signal);
  }
  return signals;
}

/// Waits for a signal in place of everybody else, who may be anywhere in a call: a handler could
/// not remove files.
void removeWhenSignalled(const std::filesystem::path& folder, const sigset_t& signals) {
  int signal = 0;
  if (sigwait(&signals, &signal) != 0) return;
  const std::scoped_lock lock(sRemoval);
  // Under another name the library opens no further file in it.
  std::error_code error;
  const std::filesystem::path gone = folder.string() + "-gone";
  std::filesystem::rename(folder, gone, error);
  // It may have been about to make one.
  constexpr int kMostTrials = 3;
  for (int i = 0; i < kMostTrials && std::filesystem::exists(gone, error); ++i) {
    std::filesystem::remove_all(gone, error);
  }
  std::signal(signal, SIG_DFL);
  pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
  kill(getpid(), signal);
  pause();
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
  const std::scoped_lock lock(sRemoval);
  std::error_code ignored;
  std::filesystem::remove_all(mPath, ignored);
}

const std::filesystem::path& DataRoot::path() const {
  if (!mPath.empty()) return mPath;
  const sigset_t signals = endingSignals();
  if (mRemovesOnSignals) pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  mPath = makeTemporaryFolder();
  if (mRemovesOnSignals) std::thread(removeWhenSignalled, mPath, signals).detach();
  makeDataFolder(mPath);
  return mPath;
}

}  // namespace camhook
