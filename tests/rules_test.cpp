// The rules of sensor modes: explained decisions match those of the library, and each rule has
// inputs for which it decides.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "common/sat/SatTables.h"
#include "common/sensormode/Overrides.h"
#include "tests/support/CamhookProcess.h"
#include "tools/camhook/explain/RulesCommand.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/KnownNames.h"
#include "tools/camhook/run/Replay.h"
#include "tools/camhook/show/SensorModeName.h"

namespace {

using namespace camhook;

/// Random inputs: values that a product's rules and the overrides contain, an unknown value or
/// none.
class RandomInputs {
 public:
  explicit RandomInputs(const SensorModeTable& table) : mTable(table) {
    for (const DecisionInputField& field : decisionInputFields()) {
      Json::List values = namedValues(field.name, &table);
      if (values.empty() || field.name == kProduct) continue;
      const Json another = anotherValue(field.name);
      EXPECT_EQ(std::ranges::count(values, another), 0) << field.name;
      values.push_back(another);
      mValues.emplace_back(field.name, std::move(values));
    }
    // Each meets other conditions of sizes than the next.
    mValues.emplace_back(kSize, parseJson("[[640, 480], [1440, 1080], [2804, 2102], [1080, 1080],"
                                          " [1920, 1080]]")
                                    .items());
    for (auto& [input, values] : mValues) values.emplace_back();
  }

  DecisionInputs next(std::mt19937& random) const {
    DecisionInputs inputs =
        decisionInputsOf(std::string(mTable.productName) + "-EU",
                         static_cast<std::int32_t>(random() % 3), random() % 2 == 0);
    for (const auto& [input, values] : mValues) inputs[input] = values[random() % values.size()];
    return inputs;
  }

 private:
  const SensorModeTable& mTable;
  std::vector<std::pair<std::string_view, Json::List>> mValues;
};

/// Returns true if an input meets the condition of a rule in this column.
bool isEqual(const RuleColumn& column, const SensorModeCfg& rule, const DecisionInputs& inputs) {
  const Json condition = column.conditionOf(rule);
  const Json& value = inputs[column.input];
  if (column.input == kAppType) return value == condition;
  return !condition.isNull() && (value.isList() ? value[1] : value) == condition;
}

bool contains(const Json& list, std::string_view field) {
  return std::ranges::find(list.items(), field) != list.items().end();
}

/// Checks that the filter of several conditions compares the columns of a rule in order until the
/// required number of conditions is met.
void checkSeveralConditions(const Json& filter) {
  for (const Json& row : filter["rows"].items()) {
    std::size_t met = 0;
    bool isReached = false;
    const Json::List& asked = row["asked"].items();
    for (std::size_t i = 0; i < asked.size(); ++i) {
      EXPECT_EQ(asked[i], kRuleColumns[i].field);
      const bool isMet = contains(row["met"], asked[i].text());
      met += isMet ? 1 : 0;
      EXPECT_FALSE(isReached);
      isReached = isMet && i > 0 && row["needed"] == met;
    }
    EXPECT_EQ(filter["found"] == row["row"], isReached);
    EXPECT_TRUE(isReached || asked.size() == std::size(kRuleColumns));
  }
}

void checkDecision(const Json& decision, const Rules& rules) {
  bool isFound = false;
  for (const Json& filter : decision["filters"].items()) {
    EXPECT_EQ(filter["asked"].isTrue(), !isFound);
    isFound |= !filter["found"].isNull();
    if (&filter == &decision["filters"][0]) checkSeveralConditions(filter);
    for (const Json& row : filter["rows"].items()) {
      const SensorModeCfg& rule = rules.at(row["row"].integer<std::size_t>().value() - 1);
      for (const RuleColumn& column : kRuleColumns) {
        if (!contains(row["asked"], column.field)) continue;
        EXPECT_EQ(contains(row["met"], column.field), isEqual(column, rule, decision["inputs"]))
            << lineOfJson(filter["filter"]) << lineOfJson(row) << column.title;
      }
    }
  }
  const Json& base = decision["base"];
  EXPECT_EQ(base["row"].isNull(), !isFound);
  if (isFound) {
    EXPECT_EQ(base["scenario"],
              rules.at(base["row"].integer<std::size_t>().value() - 1).sensorMode);
  }
  Json mode = base["scenario"];
  for (const Json& override : decision["overrides"].items()) {
    const auto isMet = [](const Json& condition) { return condition["met"].isTrue(); };
    const std::string& verdict = override["verdict"].text();
    EXPECT_EQ(verdict == "decides" || verdict == "overwritten",
              std::ranges::all_of(override["conditions"].items(), isMet));
    if (verdict == "decides") mode = override["scenario"];
  }
  EXPECT_EQ(decision["scenario"], mode);
}

/// Replays a scenario with one call that has these inputs.
CallTrace replayOf(const DecisionInputs& inputs) {
  host::PhoneConfig platform;
  platform.properties["ro.product.model.zdm"] = textOf(inputs[kProduct]);
  platform.eventStore["APP_TYPE"] = textOf(inputs[kAppType]);
  platform.eventStore["APP_NAME"] = textOf(inputs[kAppName]);
  const auto streams = streamsOf(inputs);
  return Replay(platform).run({.call = DecideSensorScenario{.sensor = numberOf(inputs[kSensor]),
                                                            .meta = sessionMetadataOf(inputs),
                                                            .video = streams.hasVideoConsumer,
                                                            .width = streams.mainOutputSize.w,
                                                            .height = streams.mainOutputSize.h}});
}

/// Checks a decision by the return value and the log records of a replay.
void checkReplay(const Json& decision) {
  const CallTrace trace = replayOf(decision["inputs"]);
  EXPECT_EQ(trace.result, decision["scenario"]);

  const std::string several = "getSensorModeCfgByMultiCondition";
  std::size_t met = 0;
  Json selecting;  // the filter that found a row
  std::vector<std::string> overrides;
  for (const host::LogRecord& record : trace.logs) {
    const bool isMatch = record.message.find("selected by ") != std::string::npos;
    if (isMatch && record.function == several) ++met;
    if (record.function == several ? record.message.ends_with("selected") : isMatch)
      selecting = record.function;
    if (record.function == "specialCustomize") overrides.push_back(record.format);
  }
  std::size_t claimed = 0;
  Json found;
  for (const Json& filter : decision["filters"].items()) {
    if (!filter["found"].isNull()) found = filter["filter"];
    if (filter["filter"] != several) continue;
    for (const Json& row : filter["rows"].items()) claimed += row["met"].size();
  }
  EXPECT_EQ(claimed, met);
  EXPECT_EQ(found, selecting);
  std::vector<std::string> fired;
  for (std::size_t i = 0; i < hesk::overrides().size(); ++i) {
    const Json& verdict = decision["overrides"][i]["verdict"];
    const hesk::Override& override = hesk::overrides()[i];
    if ((verdict == "decides" || verdict == "overwritten") && override.format != nullptr)
      fired.emplace_back(override.format);
  }
  EXPECT_EQ(fired, overrides);
}

TEST(Rules, ExplainedDecisionsMatchLibrary) {
  std::mt19937 random(1);
  for (const SensorModeTable& table : hesk::sensorModeTables()) {
    const RandomInputs randomInputs(table);
    for (int i = 0; i < 500 && !testing::Test::HasFailure(); ++i) {
      const DecisionInputs inputs = randomInputs.next(random);
      SCOPED_TRACE(lineOfJson(inputs));
      const Json decision = DecidingPhone().explain(inputs);
      Rules rules;
      for (const RuleList& list : kRuleLists) {
        if (decision["list"] == list.name) rules = table.*list.rules;
      }
      checkDecision(decision, rules);
      checkReplay(decision);
    }
  }
}

TEST(Rules, KnownProductsAreThoseOfTables) {
  std::set<std::string_view> known(std::begin(kProductsWithRules), std::end(kProductsWithRules));
  std::set<std::string_view> names;
  for (const SensorModeTable& table : hesk::sensorModeTables()) names.insert(table.productName);
  EXPECT_EQ(known, names);
  known.insert(std::begin(kProductsOfZoomOnly), std::end(kProductsOfZoomOnly));
  for (const hesk::ThresholdOfSat& each : hesk::satThresholds()) names.insert(each.product);
  names.erase("DEFAULT");
  EXPECT_EQ(known, names);
}

TEST(Rules, HaveInputsForWhichTheyDecide) {
  DecidingPhone phone;
  std::size_t unmet = 0;  // verdicts on a condition whose input is absent
  for (const SensorModeTable& table : hesk::sensorModeTables()) {
    for (const RuleList& list : kRuleLists) {
      const Rules& rules = table.*list.rules;
      for (std::size_t row = 0; row < rules.size(); ++row) {
        SCOPED_TRACE(std::string(table.productName) + " " + list.name + " row " +
                     std::to_string(row + 1));
        const DecisionInputs given = decisionInputsOf(table.productName, list.sensor, list.video);
        const auto witness = witnessOf(phone, rules, row, given);
        ASSERT_TRUE(witness);
        EXPECT_EQ(phone.explain(*witness)["base"]["row"], row + 1);
        if (!isOfSeveral(rules[row])) continue;
        for (const RuleColumn& column : kRuleColumns) {
          if (column.conditionOf(rules[row]).isNull()) continue;
          DecisionInputs inputs = *witness;
          inputs[column.input] = nullptr;
          const Json decision = phone.explain(inputs);
          const Json& explained = decision["rows"][row];
          if (explained["taken"].isTrue() || !explained["asked"].isTrue()) continue;
          EXPECT_NE(explained["verdict"].text().find(std::string(column.title) + " is absent"),
                    std::string::npos)
              << lineOfJson(decision);
          ++unmet;
        }
      }
    }
  }
  EXPECT_GT(unmet, 0U);
}

/// The inputs with a change of `why`: `input` has its "kind" and "key".
DecisionInputs changedInputs(DecisionInputs inputs, const Json& input, const Json& to) {
  const std::string& key = input["key"].text();
  if (key == "width" || key == "height") {
    if (inputs[kSize].isNull()) inputs[kSize] = Json::List{0, 0};
    inputs[kSize][key == "width" ? 0U : 1U] = to;
  } else if (const Json* items = to.find("items"); items != nullptr && items->size() == 1) {
    inputs[key] = (*items)[0];
  } else {
    inputs[key] = items != nullptr ? *items : to;
  }
  return inputs;
}

TEST(Rules, ChangesGiveWantedMode) {
  const SensorModeTable& table = hesk::sensorModeTables().front();
  const std::string inputs =
      std::string("decide --app-type a --sensor 0 --video --product ") + table.productName;
  const Outcome none = camhookWith(inputs + " --want NORMAL_CAPTURE");
  EXPECT_EQ(none.status, 1);
  EXPECT_NE(none.output.find("\nno change found that gives NORMAL_CAPTURE; tried "),
            std::string::npos);
  std::set<std::int32_t> modes;
  for (const SensorModeCfg& rule : table.sensor0Video) {
    if (!modes.insert(rule.sensorMode).second) continue;
    const std::string want = std::to_string(rule.sensorMode);
    const std::string words = std::string(inputs).append(" --json --want ").append(want);
    const Json decision = parseJson(camhookWith(words).output);
    std::size_t found = 0;
    for (const Json& input : decision["want"]["inputs"].items()) {
      for (const Json& change : input["changes"].items()) {
        const DecisionInputs changed = changedInputs(decision["inputs"], input, change["to"]);
        EXPECT_EQ(replayOf(changed).result, rule.sensorMode) << lineOfJson(input);
        ++found;
      }
    }
    const Json* const pairs = decision["want"].find("together");
    for (const Json& pair : pairs != nullptr ? pairs->items() : Json::List()) {
      DecisionInputs changed = decision["inputs"];
      for (const Json& change : pair["changes"].items()) {
        changed = changedInputs(changed, change, change["to"]);
      }
      EXPECT_EQ(replayOf(changed).result, rule.sensorMode) << lineOfJson(pair);
      ++found;
    }
    EXPECT_GT(found, 0U) << want;
  }
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
    if (!witnessOf(phone, rules, row, decisionInputsOf("X", 0, true))) never.push_back(row + 1);
  }
  EXPECT_EQ(never, (std::vector<std::size_t>{2, 5, 7}));
}

/// One line of a matrix, with a cell for each rule list.
struct MatrixRow {
  std::string_view input;
  std::string value;
  std::vector<std::string> cells;
};

std::vector<MatrixRow> matrixOf(const SensorModeTable& table) {
  std::stringstream text;
  writeMatrix(text, table, Style(false));
  std::vector<MatrixRow> rows;
  std::string_view input;
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
        DecisionInputs inputs =
            decisionInputsOf(table.productName, kRuleLists[i].sensor, kRuleLists[i].video);
        if (input != kAppType) inputs[kAppType] = "another";
        if (value == "another") {
          inputs[input] = anotherValue(input);
        } else if (value != "absent") {
          inputs[input] = input == kUiModule ? Json(std::stoi(value)) : Json(value);
        }
        const auto nameAt = [&](std::int32_t width, std::int32_t height) {
          inputs[kSize] = Json::List{width, height};
          const std::int32_t mode = phone.modeFor(inputs);
          return mode == hesk::NO_DECISION ? "-" : std::string(sensorModeName(mode));
        };
        const std::string large = nameAt(1920, 1080);
        const std::string small = nameAt(640, 480);
        EXPECT_EQ(cells[i], small == large ? large : std::string(large).append("/") + small)
            << table.productName << ' ' << value;
      }
    }
  }
}

}  // namespace
