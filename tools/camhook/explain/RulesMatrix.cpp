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

std::string_view nameOfMode(std::int32_t mode) {
  return mode == hesk::NO_DECISION ? std::string_view("-") : sensorModeName(mode);
}

/// One app or UI module a row, on each sensor without and with video.
class Matrix {
 public:
  explicit Matrix(const SensorModeTable& table) : mTable(table) {}

  /// A row for each value of an input that the rules or overrides name, for absent and for another.
  void addRows(const std::string& heading, InputIndex input, std::string_view appType = "") {
    mColumns.add({heading, "back preview", "back video", "front preview", "front video"});
    const std::vector<std::string> named = namedValues(input, listsOf(&mTable));
    const auto add = [&](const std::string& name, const std::string& value) {
      const auto set = [&](Inputs& inputs) {
        inputs.set(kAppType, appType);
        inputs.set(input, value);
      };
      addRow(name, set);
    };
    add("absent", "");
    for (const std::string& value : named) add(value, value);
    add("another", anotherValue(input, named));
  }

  void write(std::ostream& out) const {
    mColumns.write(out, 0);
    out << "- no decision. By name and by module: with an app type that no rule knows.\n";
    for (const auto& [what, names] : mNotes) {
      out << "* " << joined(names, ", ") << ' ' << what << '\n';
    }
  }

 private:
  template <typename Set>
  void addRow(const std::string& name, Set set) {
    std::vector<std::string> row{name};
    for (const RuleList& list : kRuleLists) {
      Inputs inputs(mTable.productName, list.sensor, list.video);
      set(inputs);
      inputs.set(kSize, "1920x1080");
      const std::int32_t mode = mPhone.modeFor(inputs);
      inputs.set(kSize, "640x480");
      const std::int32_t small = mPhone.modeFor(inputs);
      row.emplace_back(nameOfMode(mode));
      if (small == mode) continue;
      row.back() += '*';
      auto& names = mNotes["at 640x480: " + std::string(nameOfMode(small))];
      if (std::ranges::find(names, name) == names.end()) names.push_back(name);
    }
    mColumns.add(std::move(row));
  }

  const SensorModeTable& mTable;
  DecidingPhone mPhone;
  Columns mColumns;
  std::map<std::string, std::vector<std::string>> mNotes;
};

}  // namespace

void writeMatrix(std::ostream& out, const SensorModeTable& table, Style style) {
  Matrix matrix(table);
  out << style.title(table.productName) << '\n';
  matrix.addRows(style.heading("APP_TYPE"), kAppType);
  matrix.addRows(style.heading("APP_NAME"), kAppName, "another");
  matrix.addRows(style.heading("UI module"), kUiModule, "another");
  matrix.write(out);
}

}  // namespace camhook
