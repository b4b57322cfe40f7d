// What the tool writes to standard output: through one buffer, and no write that fails goes
// unnoticed.

#pragma once

#include <array>
#include <stdexcept>
#include <streambuf>

namespace camhook {

/// Standard output takes no more.
class OutputError : public std::runtime_error {
 public:
  explicit OutputError(int error);

  /// Whether nobody reads it any longer, who need not be told.
  [[nodiscard]] bool isUnheard() const;

 private:
  int mError;
};

/// Stands behind std::cout as long as it lives. Whoever writes to it gets OutputError where that
/// fails. A closed pipe no longer ends the process.
class StandardOutput final : public std::streambuf {
 public:
  StandardOutput();
  ~StandardOutput() override;
  StandardOutput(const StandardOutput&) = delete;
  StandardOutput& operator=(const StandardOutput&) = delete;

 private:
  int_type overflow(int_type letter) override;
  int sync() override;

  std::array<char, 1 << 16> mBuffer{};
  std::streambuf* mBefore;
};

}  // namespace camhook
