// The files that the tool is told to read.

#pragma once

#include <cstddef>
#include <string>

namespace camhook {

inline constexpr std::size_t kLongestInput = std::size_t{1} << 30U;

/// What people call the file: "standard input" for "-".
std::string nameOfInput(const std::string& file);

/// The content of a file or pipe, of standard input for "-". Throws InputError, also for a device
/// and for what is longer than `kLongestInput`.
std::string readInput(const std::string& file);

}  // namespace camhook
