// The constants of the library's own code: what it may compare its inputs with.

#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace camhook {

struct LibraryConstants {
  std::vector<std::string> texts;
  std::vector<std::int64_t> numbers;
  std::vector<float> floats;
};

/// Those of the library that is loaded into this process, in no order, each once. What is not
/// found: texts that a table keeps without their zero, numbers that the compiler has taken apart.
/// On other processors than x86-64 and 64-bit Arm no numbers are found.
LibraryConstants libraryConstants();

}  // namespace camhook
