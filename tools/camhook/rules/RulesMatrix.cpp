#include <algorithm>
#include <map>
#include <ostream>

#include "common/sensormode/SensorScenario.h"
#include "tools/camhook/input/Joined.h"
#include "tools/camhook/rules/RulesCommand.h"
#include "tools/camhook/show/SensorScenarioName.h"

namespace camhook {
namespace {

/// One app or module, on each sensor without and with video.
using Change = std::pair<InputIndex, std::string>;

std::string_view nameOf(std::int32_t scenario) {
  return scenario == hesk::NO_DECISION ? std::string_view("-") : scenarioName(scenario);
}

class Matrix {
 public:
  Matrix(const RuleSet& rules, const SensorModeTable& table) : mRules(rules), mTable(table) {}

  /// A row for each value of an input. `given` is what is set besides.
  void addRows(const std::string& heading, const Axis& axis, const std::vector<Change>& given) {
    mColumns.add({heading, "back preview", "back video", "front preview", "front video"});
    for (std::size_t i = 0; i < axis.values.size(); ++i) {
      std::vector<Change> changes = given;
      changes.emplace_back(axis.input, axis.values[i]);
      addRow(axis.nameOf(i), changes);
    }
  }

  void write(std::ostream& out) const {
    mColumns.write(out, 0);
    writeNotes(out);
  }

 private:
  void writeNotes(std::ostream& out) const {
    out << "- no decision. By name and by module: with an app type that no rule knows.\n";
    for (const auto& [what, names] : mNotes) {
      out << "* " << joined(names, ", ") << ' ' << what << '\n';
    }
  }

  void addRow(const std::string& name, const std::vector<Change>& changes) {
    std::vector<std::string> row{name};
    for (const RuleList& list : kRuleLists) {
      Inputs inputs = plainInputs(mTable.productName, list.sensor, list.video);
      for (const auto& [input, value] : changes) inputField(input).set(inputs, value);
      const std::int32_t scenario = decide(mRules, inputs).scenario;
      inputs.size = {.w = 640, .h = 480};
      const std::int32_t small = decide(mRules, inputs).scenario;
      row.emplace_back(nameOf(scenario));
      if (small == scenario) continue;
      row.back() += '*';
      addNote("at 640x480: " + std::string(nameOf(small)), name);
    }
    mColumns.add(std::move(row));
  }

  void addNote(const std::string& what, const std::string& name) {
    std::vector<std::string>& names = mNotes[what];
    if (std::ranges::find(names, name) == names.end()) names.push_back(name);
  }

  const RuleSet& mRules;
  const SensorModeTable& mTable;
  Columns mColumns;
  std::map<std::string, std::vector<std::string>> mNotes;
};

}  // namespace

void writeMatrix(std::ostream& out, const RuleSet& rules, const SensorModeTable& table,
                 Style style) {
  const Axes axes = axesOf(
      rules, {table.sensor0Preview, table.sensor0Video, table.sensor1Preview, table.sensor1Video});
  const auto axisOf = [&](InputIndex input) {
    return *std::ranges::find(axes, input, &Axis::input);
  };
  Matrix matrix(rules, table);
  out << style.title(table.productName) << '\n';
  matrix.addRows(style.heading("APP_TYPE"), axisOf(kAppType), {});
  matrix.addRows(style.heading("APP_NAME"), axisOf(kAppName), {{kAppType, "another"}});
  matrix.addRows(style.heading("UI module"), axisOf(kUiModule), {{kAppType, "another"}});
  matrix.write(out);
}

}  // namespace camhook
