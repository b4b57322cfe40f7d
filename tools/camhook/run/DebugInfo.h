// What the debug information of this process tells about an address in its code.

#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace camhook {

/// A function at an address, and the place in it: inlined functions are functions, too.
struct Frame {
  std::string function;  // the plain name; empty where it is not known
  std::string file;      // from the root of the sources, where it is one of them
  int line = 0;
};

/// Reads what is in the loaded files themselves, and nothing that lies apart from them. A build
/// without libdw knows of no address.
class DebugInfo {
 public:
  DebugInfo();
  ~DebugInfo();
  DebugInfo(const DebugInfo&) = delete;
  DebugInfo& operator=(const DebugInfo&) = delete;

  /// The functions from which the call was made that returns to this address, innermost first; none
  /// where that part of the code has no debug information.
  [[nodiscard]] std::optional<std::vector<Frame>> framesOf(const void* returnAddress) const;

 private:
  struct Files;

  std::unique_ptr<Files> mFiles;
};

}  // namespace camhook
