// Reads the debug information of this process.

#pragma once

#include <optional>
#include <string>
#include <vector>

namespace camhook {

/// A function at an address, and the place in it. Inlined functions are listed, too.
struct Frame {
  std::string function;  // without namespace and arguments; empty if not known
  std::string file;      // relative to the root of the sources if it is one of them
  int line = 0;
};

/// Returns the functions that contain the call before this return address, innermost first; nullopt
/// if that code has no debug information. Reads the loaded files only, not separate debug files. A
/// build without libdw always returns nullopt. Not thread-safe.
std::optional<std::vector<Frame>> framesOf(const void* returnAddress);

}  // namespace camhook
