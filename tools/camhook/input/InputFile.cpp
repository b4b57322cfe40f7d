#include "tools/camhook/input/InputFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "tools/camhook/input/InputError.h"

namespace camhook {
namespace {

[[noreturn]] void failToRead() {
  throw InputError(std::string("cannot be read: ") + std::strerror(errno));
}

struct Closer {
  void operator()(std::FILE* file) const {
    if (file != stdin) std::fclose(file);
  }
};

/// The length of a file; 0 for a pipe or a terminal. Throws InputError for other devices, which may
/// have no end.
std::size_t lengthOf(int file) {
  struct stat status {};
  if (fstat(file, &status) != 0) failToRead();
  if (S_ISDIR(status.st_mode)) throw InputError("is a directory");
  if (S_ISBLK(status.st_mode) || (S_ISCHR(status.st_mode) && isatty(file) == 0)) {
    throw InputError("is a device");
  }
  return S_ISREG(status.st_mode) ? static_cast<std::size_t>(status.st_size) : 0;
}

}  // namespace

std::string nameOfInput(const std::string& file) {
  return file == "-" ? "standard input" : printable(file);
}

std::string readInput(const std::string& file) {
  const std::unique_ptr<std::FILE, Closer> in(file == "-" ? stdin : std::fopen(file.c_str(), "rb"));
  if (in == nullptr) failToRead();
  std::string text;
  text.reserve(std::min(lengthOf(fileno(in.get())), kLongestInput));
  std::array<char, std::size_t{1} << 16U> block{};
  while (const std::size_t size = std::fread(block.data(), 1, block.size(), in.get())) {
    text.append(block.data(), size);
    if (text.size() > kLongestInput) throw InputError("longer than 1 GiB");
  }
  if (std::ferror(in.get()) != 0) failToRead();
  return text;
}

}  // namespace camhook
