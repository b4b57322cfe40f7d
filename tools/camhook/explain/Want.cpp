#include "tools/camhook/explain/Want.h"

#include <utility>

namespace camhook {
namespace {

constexpr std::size_t kMostChangedInputs = 3;

using Values = std::vector<std::pair<std::string_view, Json::List>>;

/// One of each kind that overrides distinguish: 640x480 meets every condition of a size, 4:3 is
/// near it and not wider, 2804x2102 is near and wider, 1080x1080 is not near and not wider,
/// 1920x1080 meets none.
constexpr std::int32_t kSizes[][2] = {
    {640, 480}, {1440, 1080}, {2804, 2102}, {1080, 1080}, {1920, 1080}};

/// Tries all changes of `count` inputs from `first` on.
void search(DecidingPhone& phone, const Inputs& inputs, std::int32_t mode, const Values& values,
            std::size_t first, std::size_t count, std::vector<Inputs>& found) {
  if (count == 0) {
    if (phone.modeFor(inputs) == mode) found.push_back(inputs);
    return;
  }
  for (std::size_t i = first; i < values.size(); ++i) {
    const auto& [input, list] = values[i];
    for (const Json& value : list) {
      if (value == inputs[input]) continue;
      Inputs changed = inputs;
      changed[input] = value;
      search(phone, changed, mode, values, i + 1, count - 1, found);
    }
  }
}

}  // namespace

std::vector<Json> smallestChanges(DecidingPhone& phone, const Inputs& inputs, std::int32_t mode) {
  const auto lists = listsOf(hesk::findSensorModeTable(textOf(inputs[kProduct])));
  Values values;
  for (const InputField& field : inputFields()) {
    if (field.name == kProduct || field.name == kSensor || field.name == kVideo) continue;
    Json::List& list = values.emplace_back(field.name, namedValues(field.name, lists)).second;
    if (field.name == kHdr) list = {3};
    if (field.name == kNight) list = {1};
    if (field.name == kSize) list.assign(std::begin(kSizes), std::end(kSizes));
    if (field.name == kSize) continue;
    list.push_back(anotherValue(field.name, list));
    list.emplace_back();
  }
  std::vector<Inputs> found;
  for (std::size_t count = 0; count <= kMostChangedInputs && found.empty(); ++count) {
    search(phone, inputs, mode, values, 0, count, found);
  }
  std::vector<Json> decisions;
  decisions.reserve(found.size());
  for (const Inputs& each : found) decisions.push_back(phone.explain(each));
  return decisions;
}

std::vector<std::string> changesText(const Inputs& from, const Inputs& to) {
  std::vector<std::string> texts;
  for (const auto& [name, value] : to.members()) {
    if (from[name] == value) continue;
    texts.push_back(name + " " + inputText(name, from[name]) + " \u2192 " + inputText(name, value));
  }
  return texts;
}

}  // namespace camhook
