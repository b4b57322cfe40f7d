// Fuzzes the result hook.

#include "fuzz/HookTarget.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::runHooks(fuzz::callFamily("result"), {data, size});
  return 0;
}
