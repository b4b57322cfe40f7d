// Fuzzes the readers of scenarios and of dumps: an invalid text causes a few printable lines of
// errors, and a scenario written from a dump can be read.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "tools/camhook/input/DumpScenario.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/PlainText.h"
#include "tools/camhook/input/ScenarioReader.h"

namespace {

void check(std::string_view lines) {
  for (std::size_t count = 0; !lines.empty(); ++count) {
    const std::string_view line = lines.substr(0, lines.find('\n'));
    lines.remove_prefix(std::min(line.size() + 1, lines.size()));
    const bool isFit = camhook::printable(line, camhook::Faults::kMaxColumns) == line;
    if (!isFit || count > camhook::Faults::kMaxShown) std::abort();
  }
}

std::string scenarioOf(std::string_view text) {
  std::vector<camhook::DumpFile> files;
  files.push_back(camhook::dumpFile("-", text));
  check(files.front().found.warnings.lines("-"));
  return camhook::brokenJson(camhook::scenarioOfDumps(files, {}));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  try {
    (void)camhook::readScenario(text);
  } catch (const camhook::InputError& error) {
    check(error.what());
  }
  std::string scenario;
  try {
    scenario = scenarioOf(text);
  } catch (const camhook::InputError& error) {
    check(error.what());
    return 0;
  }
  (void)camhook::readScenario(scenario);
  return 0;
}
