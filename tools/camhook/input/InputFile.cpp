#include "tools/camhook/input/InputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "tools/camhook/input/InputError.h"

namespace camhook {
namespace {

constexpr const char* kTooLong = "longer than 1 GiB";

[[noreturn]] void failToRead() {
  throw InputError(std::string("cannot be read: ") + std::strerror(errno));
}

/// A file that is closed in the end; standard input stays open.
class OpenFile {
 public:
  explicit OpenFile(const std::string& file)
      : mIsOwn(file != "-"),
        mFile(mIsOwn ? open(file.c_str(), O_RDONLY | O_CLOEXEC) : STDIN_FILENO) {
    if (mFile < 0) failToRead();
  }
  ~OpenFile() {
    if (mIsOwn) close(mFile);
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  /// How long it says it is. Refuses what cannot be read to an end.
  [[nodiscard]] std::size_t length() const {
    struct stat status {};
    if (fstat(mFile, &status) != 0) failToRead();
    if (S_ISDIR(status.st_mode)) throw InputError("is a folder");
    if (S_ISBLK(status.st_mode) || (S_ISCHR(status.st_mode) && isatty(mFile) == 0)) {
      throw InputError("is a device");
    }
    return S_ISREG(status.st_mode) ? static_cast<std::size_t>(status.st_size) : 0;
  }

  /// How many bytes came in; 0: it ends.
  std::size_t read(char* target, std::size_t most) const {
    for (;;) {
      const ssize_t size = ::read(mFile, target, most);
      if (size >= 0) return static_cast<std::size_t>(size);
      if (errno != EINTR) failToRead();
    }
  }

 private:
  bool mIsOwn;
  int mFile;
};

}  // namespace

std::string nameOfInput(const std::string& file) {
  return file == "-" ? "standard input" : printable(file);
}

std::string readInput(const std::string& file, ZeroBytes zeros) {
  constexpr std::size_t kBlock = std::size_t{1} << 16U;
  const OpenFile in(file);
  const std::size_t length = in.length();
  if (length > kLongestInput) throw InputError(kTooLong);
  // A byte more, so that the end is seen at once; what has no length grows.
  std::string text(length > 0 ? length + 1 : kBlock, '\0');
  std::size_t size = 0;
  while (const std::size_t more = in.read(&text[size], text.size() - size)) {
    // A file's are found with their place.
    const bool isRefused = length == 0 && zeros == ZeroBytes::refused;
    if (isRefused && std::memchr(&text[size], 0, more) != nullptr) {
      throw InputError("holds a zero byte");
    }
    size += more;
    if (size > kLongestInput) throw InputError(kTooLong);
    if (size == text.size()) text.resize(std::min(2 * size, kLongestInput + 1));
  }
  text.resize(size);
  return text;
}

}  // namespace camhook
