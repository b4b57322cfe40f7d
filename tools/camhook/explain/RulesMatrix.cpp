#include <algorithm>
#include <map>
#include <ostream>
#include <utility>

#include "common/sensormode/SensorScenario.h"
#include "tools/camhook/explain/RulesCommand.h"
#include "tools/camhook/input/Joined.h"
#include "tools/camhook/show/SensorModeName.h"

namespace camhook {
namespace {

/// The texts of the footnotes, each with the names of its rows.
using Notes = std::map<std::string, std::vector<std::string>>;

std::string nameOfMode(std::int32_t mode) {
  return mode == hesk::NO_DECISION ? "-" : std::string(sensorModeName(mode));
}

/// A row of the matrix: the sensor modes for one value of an input.
std::vector<std::string> rowOf(const SensorModeTable& table, const std::string& name,
                               std::string_view input, const Json& value, Notes& notes) {
  DecidingPhone phone;
  std::vector<std::string> row{name};
  for (const RuleList& list : kRuleLists) {
    Inputs inputs = inputsOf(table.productName, list.sensor, list.video);
    if (input != kAppType) inputs[kAppType] = "another";
    inputs[input] = value;
    inputs[kSize] = Json::List{1920, 1080};
    const std::int32_t mode = phone.modeFor(inputs);
    inputs[kSize] = Json::List{640, 480};
    const std::int32_t small = phone.modeFor(inputs);
    row.push_back(nameOfMode(mode) + (small == mode ? "" : "*"));
    if (small == mode) continue;
    auto& names = notes["at 640x480: " + nameOfMode(small)];
    if (std::ranges::find(names, name) == names.end()) names.push_back(name);
  }
  return row;
}

}  // namespace

void writeMatrix(std::ostream& out, const SensorModeTable& table, Style style) {
  constexpr std::pair<const char*, std::string_view> kParts[] = {
      {"APP_TYPE", kAppType}, {"APP_NAME", kAppName}, {"UI module", kUiModule}};
  Columns columns;
  Notes notes;
  for (const auto& [heading, input] : kParts) {
    columns.add(
        {style.heading(heading), "back preview", "back video", "front preview", "front video"});
    const Json::List named = namedValues(input, listsOf(&table));
    columns.add(rowOf(table, "absent", input, {}, notes));
    for (const Json& value : named) {
      columns.add(rowOf(table, inputText(input, value), input, value, notes));
    }
    columns.add(rowOf(table, "another", input, anotherValue(input, named), notes));
  }
  out << style.title(table.productName) << '\n';
  columns.write(out, 0);
  out << "- means no decision. The APP_NAME and UI module rows use an app type without rules.\n";
  for (const auto& [what, names] : notes) out << "* " << joined(names, ", ") << ' ' << what << '\n';
}

}  // namespace camhook
