// Fuzzes the choice of a sensor scenario.

#include "fuzz/HookTarget.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::runHooks(fuzz::callFamily("decision"), {data, size});
  return 0;
}
