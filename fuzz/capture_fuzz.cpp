// Fuzzes the capture hook, behind sessions and with previews.

#include "fuzz/HookTarget.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::runHooks(fuzz::callFamily("capture"), {data, size});
  return 0;
}
