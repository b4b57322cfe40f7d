// Fuzzes the scenario reader: it takes a text or names, on one line, the place of what is wrong.

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/ScenarioReader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    (void)camhook::readScenario({reinterpret_cast<const char*>(data), size});
  } catch (const camhook::InputError& error) {
    if (std::string_view(error.what()).find('\n') != std::string_view::npos) std::abort();
  }
  return 0;
}
