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

/// Those of the library that is loaded into this process, in no order, each once, and what the
/// rules of its sensor modes ask for. What is not found: texts that the compiler has made part of
/// its instructions, numbers that it has taken apart. On other processors than x86-64 and 64-bit
/// Arm of the code's numbers none is found. While there is no phone.
LibraryConstants libraryConstants();

}  // namespace camhook
