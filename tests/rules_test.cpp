// The rules of sensor modes: explained decisions match those of the library, and each rule has
// inputs for which it decides.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "tools/camhook/explain/DecisionText.h"
#include "tools/camhook/explain/RulesCommand.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/show/SensorModeName.h"

namespace {

using namespace camhook;

/// Random inputs: values that a product's rules and the overrides name, an unknown value or none.
class RandomInputs {
 public:
  explicit RandomInputs(const SensorModeTable& table) : mTable(table) {
    for (std::size_t i = kAppType; i < kInputCount; ++i) {
      const auto input = static_cast<InputIndex>(i);
      mValues[i] = namedValues(input, listsOf(&table));
      if (input == kSize) continue;
      mValues[i].push_back(anotherValue(input, mValues[i]));
      mValues[i].emplace_back();
    }
  }

  Inputs next(std::mt19937& random) const {
    const auto drawn = [&](std::size_t count) { return random() % count; };
    Inputs inputs(std::string(mTable.productName) + "-EU", static_cast<std::int32_t>(drawn(3)),
                  drawn(2) == 0);
    for (std::size_t i = kAppType; i < kInputCount; ++i) {
      EXPECT_TRUE(inputs.set(static_cast<InputIndex>(i), mValues[i][drawn(mValues[i].size())]));
    }
    return inputs;
  }

 private:
  const SensorModeTable& mTable;
  std::array<std::vector<std::string>, kInputCount> mValues;
};

/// Returns true if an input meets the condition of a rule in this column.
bool isEqual(const RuleColumn& column, const SensorModeCfg& rule, const Inputs& inputs) {
  const std::string condition = column.conditionOf(rule);
  if (column.input == kAppType) return inputs[kAppType] == condition;
  if (condition.empty() || inputs[column.input].empty()) return false;
  return std::to_string(inputs.numbers(column.input)[column.input == kFps ? 1 : 0]) == condition;
}

/// Checks that the filter of several conditions compares the columns of a rule in order until the
/// required number of conditions is met.
void checkSeveralConditions(const Decision& decision, const FilterRun& run) {
  std::size_t column = 0;
  std::int32_t met = 0;
  for (const Comparison& each : run.comparisons) {
    if (each.column == &ruleColumns().front()) column = 0, met = 0;
    EXPECT_EQ(each.column, &ruleColumns()[column++]);
    met += each.isMet ? 1 : 0;
    const bool isLast = &each == &run.comparisons.back() && run.found == each.row;
    const bool isReached = each.isMet && column > 1;
    EXPECT_EQ(isLast, isReached && met == decision.rules()[each.row].conditionCount);
  }
}

void checkDecision(const Decision& decision) {
  bool isFound = false;
  for (const FilterRun& run : decision.filters) {
    EXPECT_EQ(run.isAsked, !isFound);
    isFound |= run.found.has_value();
    if (run.filter->column == nullptr) checkSeveralConditions(decision, run);
    for (const auto& [row, column, isMet] : run.comparisons) {
      EXPECT_EQ(isMet, isEqual(*column, decision.rules()[row], decision.inputs))
          << run.filter->name << " row " << row + 1 << " " << column->title;
    }
  }
  if (decision.row) {
    EXPECT_EQ(decision.base, decision.rules()[*decision.row].sensorMode);
  }
  EXPECT_EQ(decision.mode, decision.override
                               ? decision.overrides[*decision.override].override->scenario
                               : decision.base);
  for (const OverrideVerdict& verdict : decision.overrides) {
    using Kind = OverrideVerdict::Kind;
    const auto missed = std::ranges::count(verdict.conditions, false, &OverrideCondition::isMet);
    EXPECT_EQ(verdict.kind == Kind::decides || verdict.kind == Kind::overwritten, missed == 0);
  }
}

TEST(Rules, ExplainedDecisionsMatchLibrary) {
  DecidingPhone phone;
  std::mt19937 random(1);
  for (const SensorModeTable& table : hesk::sensorModeTables()) {
    const RandomInputs inputs(table);
    for (int i = 0; i < 500 && !testing::Test::HasFailure(); ++i) {
      const Decision decision = phone.explain(inputs.next(random));
      SCOPED_TRACE(lineOfJson(jsonFromDecision(decision)["inputs"]));
      checkDecision(decision);
    }
  }
}

TEST(Rules, HaveInputsForWhichTheyDecide) {
  DecidingPhone phone;
  for (const SensorModeTable& table : hesk::sensorModeTables()) {
    for (const RuleList& list : kRuleLists) {
      const Rules& rules = table.*list.rules;
      for (std::size_t row = 0; row < rules.size(); ++row) {
        SCOPED_TRACE(std::string(table.productName) + " " + list.name + " row " +
                     std::to_string(row + 1));
        const auto witness =
            witnessOf(phone, rules, row, Inputs(table.productName, list.sensor, list.video));
        ASSERT_TRUE(witness);
        EXPECT_EQ(phone.explain(*witness).row, row);
      }
    }
  }
}

TEST(Rules, VerdictsNameUnmetConditions) {
  DecidingPhone phone;
  std::size_t checked = 0;
  for (const SensorModeTable& table : hesk::sensorModeTables()) {
    for (const RuleList& list : kRuleLists) {
      const Rules& rules = table.*list.rules;
      for (std::size_t row = 0; row < rules.size(); ++row) {
        const Inputs given(table.productName, list.sensor, list.video);
        for (const RuleColumn& column : ruleColumns()) {
          if (column.conditionOf(rules[row]).empty() || !isOfSeveral(rules[row])) continue;
          Inputs inputs = witnessOf(phone, rules, row, given).value_or(given);
          inputs.set(column.input, "");
          const Decision decision = phone.explain(inputs);
          if (decision.row == row || !decision.isAsked(row)) continue;
          EXPECT_NE(rowVerdict(decision, row).find(std::string(column.title) + " is absent"),
                    std::string::npos)
              << decidedByText(decision);
          ++checked;
        }
      }
    }
  }
  EXPECT_GT(checked, 0U);
}

TEST(Rules, UnreachableOnesAreFound) {
  constexpr std::int32_t any = SensorModeCfg::kNoCondition;
  const Rules rules = {{any, "", any, 1, any, any, 5, 1},
                       {any, "", any, 1, any, any, 6, 1},  // same as row 1
                       {any, "QQ", any, any, any, any, 2, 1},
                       {2, "CTS", any, any, any, any, 7, 1},  // hfps is not compared
                       {any, "CTS", any, any, any, any, 8, 1},
                       {any, "", any, 2, any, 7, 8, 3},     // requires an empty app type
                       {any, "a", 30, 1, any, any, 8, 4}};  // only three conditions
  DecidingPhone phone;
  std::vector<std::size_t> never;
  for (std::size_t row = 0; row < rules.size(); ++row) {
    if (!witnessOf(phone, rules, row, Inputs("X", 0, true))) never.push_back(row + 1);
  }
  EXPECT_EQ(never, (std::vector<std::size_t>{2, 5, 7}));
}

/// One line of a matrix, with a cell for each rule list.
struct MatrixRow {
  InputIndex input;
  std::string value;
  std::vector<std::string> cells;
};

std::vector<MatrixRow> matrixOf(const SensorModeTable& table) {
  std::stringstream text;
  writeMatrix(text, table, Style(false));
  std::vector<MatrixRow> rows;
  InputIndex input = kProduct;
  std::string line;
  std::getline(text, line);
  EXPECT_EQ(line, table.productName);
  while (std::getline(text, line) && !line.starts_with("- ")) {
    std::istringstream words(line);
    std::string value;
    words >> value;
    if (value == "APP_TYPE" || value == "APP_NAME" || value == "UI") {
      input = value == "UI" ? kUiModule : value == "APP_TYPE" ? kAppType : kAppName;
      continue;
    }
    MatrixRow& row = rows.emplace_back(MatrixRow{input, value, {}});
    for (std::string cell; words >> cell;) row.cells.push_back(cell);
  }
  return rows;
}

TEST(Rules, MatrixMatchesLibrary) {
  for (const SensorModeTable& table : hesk::sensorModeTables()) {
    const std::vector<MatrixRow> rows = matrixOf(table);
    ASSERT_FALSE(rows.empty()) << table.productName;
    DecidingPhone phone;
    for (const auto& [input, value, cells] : rows) {
      ASSERT_EQ(cells.size(), std::size(kRuleLists));
      for (std::size_t i = 0; i < cells.size(); ++i) {
        Inputs inputs(table.productName, kRuleLists[i].sensor, kRuleLists[i].video);
        if (input != kAppType) inputs.set(kAppType, "another");
        const bool isModule = input == kUiModule && value == "another";
        inputs.set(input, value == "absent" ? "" : isModule ? "1000" : value);
        inputs.set(kSize, "1920x1080");
        const std::int32_t mode = phone.modeFor(inputs);
        inputs.set(kSize, "640x480");
        const std::string name = mode == 255 ? "-" : std::string(sensorModeName(mode));
        EXPECT_EQ(cells[i], name + (phone.modeFor(inputs) == mode ? "" : "*"))
            << table.productName << ' ' << value;
      }
    }
  }
}

}  // namespace
