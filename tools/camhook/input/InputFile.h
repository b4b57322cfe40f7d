// The files that the tool is told to read.

#pragma once

#include <cstddef>
#include <string>

namespace camhook {

inline constexpr std::size_t kLongestInput = std::size_t{1} << 30U;

/// What people call the file: "standard input" for "-".
std::string nameOfInput(const std::string& file);

/// What becomes of zero bytes, which no JSON has.
enum class ZeroBytes { refused, kept };

/// The content of a file or pipe, of standard input for "-". Throws InputError, also for what has
/// no end or is longer than `kLongestInput`. Where zero bytes are refused a pipe that
/// has one is not read on.
std::string readInput(const std::string& file, ZeroBytes zeros = ZeroBytes::refused);

}  // namespace camhook
