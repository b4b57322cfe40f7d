// The families of hooks that are fuzzed together: those that read what others leave behind.

#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace fuzz {

struct CallFamily {
  std::string_view name;
  std::vector<std::size_t> kinds;  // places in the variant camhook::Call; two of them at least
};

/// All of them.
std::span<const CallFamily> callFamilies();

/// The one of that name, which there must be.
const CallFamily& callFamily(std::string_view name);

}  // namespace fuzz
