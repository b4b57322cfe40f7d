// Fuzzes the request hook, behind sessions that teach the updater.

#include "fuzz/HookTarget.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::runHooks(fuzz::callFamily("request"), {data, size});
  return 0;
}
