// Fuzzes tuning data, result regions and dumps.

#include "fuzz/HookTarget.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::runHooks(fuzz::callFamily("diagnostics"), {data, size});
  return 0;
}
