#include "tools/camhook/explain/Want.h"

#include <array>

namespace camhook {
namespace {

constexpr std::size_t kMostChangedInputs = 3;

using Values = std::array<std::vector<std::string>, kInputCount>;

/// Tries all changes of `count` inputs from `first` on.
void search(DecidingPhone& phone, const Inputs& inputs, std::int32_t mode, const Values& values,
            std::size_t first, std::size_t count, std::vector<Inputs>& found) {
  if (count == 0) {
    if (phone.modeFor(inputs) == mode) found.push_back(inputs);
    return;
  }
  for (std::size_t i = first; i < kInputCount; ++i) {
    const auto input = static_cast<InputIndex>(i);
    for (const std::string& value : values[i]) {
      Inputs changed = inputs;
      if (value == inputs[input] || !changed.set(input, value)) continue;
      search(phone, changed, mode, values, i + 1, count - 1, found);
    }
  }
}

}  // namespace

std::vector<Decision> smallestChanges(DecidingPhone& phone, const Inputs& inputs,
                                      std::int32_t mode) {
  const auto lists = listsOf(hesk::findSensorModeTable(inputs[kProduct]));
  Values values;
  for (std::size_t i = kAppType; i < kInputCount; ++i) {
    const auto input = static_cast<InputIndex>(i);
    values[i] = namedValues(input, lists);
    values[i].push_back(anotherValue(input, values[i]));
    values[i].emplace_back();
  }
  values[kSize].resize(values[kSize].size() - 2);
  std::vector<Inputs> found;
  for (std::size_t count = 0; count <= kMostChangedInputs && found.empty(); ++count) {
    search(phone, inputs, mode, values, kAppType, count, found);
  }
  std::vector<Decision> decisions;
  decisions.reserve(found.size());
  for (const Inputs& each : found) decisions.push_back(phone.explain(each));
  return decisions;
}

std::vector<std::string> changesText(const Inputs& from, const Inputs& to) {
  std::vector<std::string> texts;
  for (std::size_t i = 0; i < kInputCount; ++i) {
    const auto input = static_cast<InputIndex>(i);
    if (from[input] == to[input]) continue;
    texts.push_back(std::string(inputFields()[i].name) + " " + from.shown(input) + " \u2192 " +
                    to.shown(input));
  }
  return texts;
}

}  // namespace camhook
