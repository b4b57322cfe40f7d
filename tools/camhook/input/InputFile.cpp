#include "tools/camhook/input/InputFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <system_error>

#include "tools/camhook/input/InputError.h"

namespace camhook {
namespace {

constexpr std::size_t kLongestInput = std::size_t{1} << 30U;

[[noreturn]] void failToRead() {
  throw InputError(std::string("cannot be read: ") + std::strerror(errno));
}

struct Closer {
  void operator()(std::FILE* file) const {
    if (file != stdin) std::fclose(file);
  }
};

}  // namespace

std::string nameOfInput(const std::string& file) {
  return file == "-" ? "standard input" : printable(file);
}

std::string readInput(const std::string& file) {
  const std::unique_ptr<std::FILE, Closer> in(file == "-" ? stdin : std::fopen(file.c_str(), "rb"));
  if (in == nullptr) failToRead();
  std::string text;
  std::error_code failed;  // for a pipe and for standard input
  const auto length = std::filesystem::file_size(file, failed);
  if (!failed) text.reserve(std::min<std::size_t>(length, kLongestInput));
  std::array<char, std::size_t{1} << 16U> block{};
  while (const std::size_t size = std::fread(block.data(), 1, block.size(), in.get())) {
    if (size > kLongestInput - text.size()) throw InputError("longer than 1 GiB");
    text.append(block.data(), size);
  }
  if (std::ferror(in.get()) != 0) failToRead();
  return text;
}

}  // namespace camhook
