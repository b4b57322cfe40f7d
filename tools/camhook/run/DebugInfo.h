// Reads the debug information of this process.

#pragma once

#include <optional>
#include <string>
#include <vector>

namespace camhook {

/// A function of the library and a place in it; "?" and line 0 if not known.
struct Step {
  std::string name = "?";  // of the function, without namespace and arguments
  std::string file = "?";  // relative to the root of the sources: "common/updater/RequestMeta.cpp"
  int line = 0;

  friend bool operator==(const Step&, const Step&) = default;
};

/// Returns the functions that contain the call before this return address, innermost first; also
/// inlined ones. A name or file that is not known is empty. Returns nullopt if that code has no
/// debug information. Reads the loaded files only, not separate debug files. A build without libdw
/// always returns nullopt. Not thread-safe.
std::optional<std::vector<Step>> framesOf(const void* returnAddress);

}  // namespace camhook
