#include "tools/camhook/show/StandardOutput.h"

#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <iostream>
#include <string>

namespace camhook {

OutputError::OutputError(int error)
    : std::runtime_error(std::string("the output cannot be written: ") + std::strerror(error)),
      mError(error) {}

bool OutputError::isUnheard() const { return mError == EPIPE; }

StandardOutput::StandardOutput() : mBefore(std::cout.rdbuf(this)) {
  std::signal(SIGPIPE, SIG_IGN);
  setp(mBuffer.data(), mBuffer.data() + mBuffer.size());
  std::cout.exceptions(std::ios::badbit);
  std::cerr.tie(nullptr);  // what failed is not written once more before it is told
}

/// What is left in the buffer is that of a command that failed.
StandardOutput::~StandardOutput() {
  std::cout.exceptions(std::ios::goodbit);
  std::cout.rdbuf(mBefore);
}

StandardOutput::int_type StandardOutput::overflow(int_type letter) {
  sync();
  if (!traits_type::eq_int_type(letter, traits_type::eof())) {
    sputc(traits_type::to_char_type(letter));
  }
  return traits_type::not_eof(letter);
}

int StandardOutput::sync() {
  const char* from = pbase();
  const char* const end = pptr();
  setp(mBuffer.data(), mBuffer.data() + mBuffer.size());
  while (from < end) {
    const ssize_t written = write(STDOUT_FILENO, from, static_cast<std::size_t>(end - from));
    if (written < 0 && errno != EINTR) throw OutputError(errno);
    if (written > 0) from += written;
  }
  return 0;
}

}  // namespace camhook
