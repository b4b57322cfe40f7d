#include "tools/camhook/run/DataRoot.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "tools/camhook/input/InputError.h"

namespace camhook {
namespace {

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

DataRoot::DataRoot(const std::string& folder)
    : mPath(folder.empty() ? makeTemporaryFolder() : std::filesystem::path(folder)),
      mIsTemporary(folder.empty()) {
  std::error_code error;
  std::filesystem::create_directories(mPath / "data/vendor/camera", error);
  if (error) throw InputError("camhook: --data-root " + printable(folder) + ": " + error.message());
}

DataRoot::~DataRoot() {
  std::error_code ignored;
  if (mIsTemporary) std::filesystem::remove_all(mPath, ignored);
}

}  // namespace camhook
