// Reads input files.

#pragma once

#include <cstddef>
#include <string>

namespace camhook {

inline constexpr std::size_t kLongestInput = std::size_t{1} << 30U;

/// The name for messages; "standard input" for "-".
std::string nameOfInput(const std::string& file);

/// Reads a file or pipe, or standard input for "-". Throws InputError, also for an input longer
/// than `kLongestInput`.
std::string readInput(const std::string& file);

}  // namespace camhook
