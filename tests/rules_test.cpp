// The rules of sensor scenarios as an open book: every case that they tell apart is decided as the
// library does, what is proved of them is so, and what changes is told in few lines.

#include <gtest/gtest.h>

#include <ctime>
#include <optional>
#include <set>
#include <sstream>
#include <string>

#include "common/HeskSensorModeControl.h"
#include "common/sensormode/SensorModeInspector.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/rules/Proof.h"
#include "tools/camhook/rules/RulesCommand.h"
#include "tools/camhook/rules/Verdicts.h"
#include "tools/camhook/rules/Want.h"
#include "tools/camhook/show/SensorScenarioName.h"

namespace {

using namespace camhook;

/// The rule that the library's latest decision took; none where no rule was.
std::optional<SensorModeCfg> takenRule() {
  const HeskSensorModeControlInspector fields{*HeskSensorModeControl::createInstance(0)};
  const Rules& selected = fields.selectedSensorModeCfgs();
  return selected.empty() ? std::nullopt : std::optional(selected.back());
}

/// What is wrong with the tool's decision, the library's being right; empty where nothing is.
std::string disagreement(Library& library, const RuleSet& rules, const Inputs& inputs) {
  const Decision decision = decide(rules, inputs);
  const std::int32_t scenario = library.decide(inputs);
  const auto taken = takenRule();
  const bool isSameRow = decision.selection.has_value() == taken.has_value() &&
                         (!taken || decision.rules()[decision.selection->row] == *taken);
  if (scenario == decision.scenario && isSameRow) return "";
  return "the library decides " + std::to_string(scenario) + " for " +
         jsonFromInputs(inputs).dump() + ", not " + resultText(rules, decision);
}

TEST(Rules, AreDecidedAsTheLibraryDecidesInEveryCase) {
  const RuleSet rules = rulesOfLibrary();
  Library library;
  std::size_t count = 0;
  std::string problem;
  const auto compare = [&](const Inputs& inputs, const Case& /*values*/) {
    ++count;
    if (problem.empty()) problem = disagreement(library, rules, inputs);
  };
  [[maybe_unused]] const std::clock_t start = std::clock();
  for (const SensorModeTable& table : rules.tables) {
    for (const RuleList& list : kRuleLists) {
      Axes axes = axesOfRules({table.*list.rules});
      for (Axis& axis : axes) {
        // The mark of no condition, too: it matches.
        if (axis.input != kAppType) axis.values.emplace_back(axis.input == kFps ? "15,-1" : "-1");
      }
      forEachCase(axes,
                  plainInputs(std::string(table.productName) + "-EU", list.sensor, list.video),
                  compare);
    }
  }
  forEachCase(axesOfOverrides({rules.overrides}), plainInputs("KX0105", 0, false), compare);
  EXPECT_EQ(problem, "");
  EXPECT_GT(count, 80000U);
#ifndef CAM_COUNTS_LINES
  EXPECT_LT(std::clock() - start, 10 * CLOCKS_PER_SEC);
#endif
}

TEST(Rules, CanAllDecideAsTheirWitnessesShow) {
  const RuleSet rules = rulesOfLibrary();
  Library library;
  std::size_t rowCount = 0;
  for (const ListProof& proof : proveRules(rules, {})) {
    for (std::size_t row = 0; row < proof.rows.size(); ++row) {
      SCOPED_TRACE((proof.list != nullptr ? proof.list->name : "overrides") + std::string(" row ") +
                   std::to_string(row + 1));
      ASSERT_TRUE(proof.rows[row].witness);
      EXPECT_FALSE(proof.rows[row].isRedundant);
      const Inputs& witness = *proof.rows[row].witness;
      EXPECT_EQ(disagreement(library, rules, witness), "");
      const Decision decision = decide(rules, witness);
      if (proof.list != nullptr) {
        ASSERT_TRUE(decision.selection);
        EXPECT_EQ(decision.selection->row, row);
        ++rowCount;
      } else {
        EXPECT_EQ(decision.override, row);
      }
    }
  }
  EXPECT_EQ(rowCount, 121U);
}

TEST(Rules, AreRedundantWhereAnAppTypeIsAlwaysSet) {
  const RuleSet rules = rulesOfLibrary();
  std::vector<std::string> redundant;
  for (const ListProof& proof : proveRules(rules, {.isAppTypeSet = true})) {
    for (std::size_t row = 0; row < proof.rows.size(); ++row) {
      if (!proof.rows[row].isRedundant) continue;
      redundant.push_back(std::string(proof.table->productName) + " " + proof.list->name + " " +
                          std::to_string(row + 1));
    }
  }
  EXPECT_EQ(redundant, std::vector<std::string>{"KX0104 sensor0Video 1"});
}

constexpr std::int32_t any = SensorModeCfg::kNoCondition;

/// One product, whose sensor 0 has these rules for video.
RuleSet ruleSetOf(Rules rules) {
  RuleSet set = rulesOfLibrary();
  set.tables = {{"X", {}, std::move(rules), {}, {}}};
  return set;
}

TEST(Rules, AreFoundThatNeverDecideOrAreRedundant) {
  const RuleSet rules = ruleSetOf({{any, "", any, 1, any, any, 5, 1},
                                   {any, "", any, 1, any, any, 6, 1},      // row 1 has its cases
                                   {any, "QQ", any, any, any, any, 2, 1},  // what video gets anyway
                                   {2, "CTS", any, any, any, any, 7, 1},
                                   {any, "CTS", any, any, any, any, 8, 1},
                                   {any, "", any, 2, any, 7, 8, 3}});  // has two conditions
  std::ostringstream out;
  EXPECT_EQ(checkRules(out, rules, {}, Style(false)), 1);
  const std::string text = out.str();
  const std::string list = text.substr(text.find("X sensor0Video"));
  EXPECT_EQ(list.substr(0, list.find("X sensor1")), R"(X sensor0Video  768 cases
   1  nothing is given
   2  never decides: rows 1, 6 before it
   3  redundant  --app-type QQ
   4  --app-type CTS
   5  never decides: rows 1, 4 before it
   6  --eis 2 --ui-module 7
)");
}

std::string comparison(const RuleSet& old, const RuleSet& fresh) {
  std::ostringstream out;
  const int status = compareRules(out, old, fresh, Style(false));
  EXPECT_EQ(status, out.str().empty() ? 0 : 1);
  return out.str();
}

TEST(Rules, AreComparedInFewLines) {
  const RuleSet old = rulesOfLibrary();
  RuleSet fresh = rulesFromJson(jsonFromRules(old));
  EXPECT_EQ(comparison(old, fresh), "");

  // KX0102
  fresh.tables.back().sensor1Video.front().sensorMode = 6;
  EXPECT_EQ(comparison(old, fresh),
            "KX0102, sensor 1, video, app-type absent: 6 CUSTOM2, was 5 CUSTOM1\n"
            "KX0102, sensor 1, video, hfps 1: 6 CUSTOM2, was 5 CUSTOM1\n");

  fresh = rulesFromJson(jsonFromRules(old));
  for (SensorModeTable& table : fresh.tables) {
    table.sensor0Preview.push_back({any, "New", any, any, any, any, 8, 1});
  }
  fresh.overrides[8].scenario = hesk::CUSTOM4;
  const std::string was = "8 CUSTOM4, was 2 NORMAL_VIDEO or 5 CUSTOM1 or 255 no decision";
  EXPECT_EQ(comparison(old, fresh),
            "KX0105, KX0107, KX0106, sensor 0, no video, app-type New: " + was +
                ", unless ui-module 53\n"
                "KX0105, KX0107, KX0106, sensor 0, no video, app-type New: " +
                was + ", unless eis 1\nKX0104, KX0102, sensor 0, no video, app-type New: " + was +
                "\noverrides, video yes, app-type heskCamera, size 640x480: 8 CUSTOM4, was 5 "
                "CUSTOM1\n");
}

TEST(Rules, AreComparedByEachOfTheirFields) {
  RuleSet old = rulesOfLibrary();
  old.tables.resize(1);
  old.tables.front().sensor0Video = {{1, "a", 30, 1, 0, 8, 5, 6}};
  const auto changed = [&](auto change) {
    RuleSet fresh = old;
    change(fresh.tables.front().sensor0Video.front());
    return comparison(old, fresh);
  };
  EXPECT_NE(changed([](SensorModeCfg& rule) { rule.isHfpsMode = 0; }), "");
  EXPECT_NE(changed([](SensorModeCfg& rule) { rule.appType = "b"; }), "");
  EXPECT_NE(changed([](SensorModeCfg& rule) { rule.fps = 60; }), "");
  EXPECT_NE(changed([](SensorModeCfg& rule) { rule.eisMode = 0; }), "");
  EXPECT_NE(changed([](SensorModeCfg& rule) { rule.videoAlgoType = 1; }), "");
  EXPECT_NE(changed([](SensorModeCfg& rule) { rule.uiMode = 9; }), "");
  EXPECT_NE(changed([](SensorModeCfg& rule) { rule.sensorMode = 6; }), "");
  EXPECT_NE(changed([](SensorModeCfg& rule) { rule.conditionCount = 5; }), "");
}

TEST(Rules, CannotBeReadFromWhatIsNone) {
  const std::pair<const char*, const char*> rows[] = {
      {"[]", "must be an object"},
      {R"({"tables": 1})", "tables: must be a list"},
      {R"({"tables": [], "overrides": [{"when": 1}]})", "overrides[0].when: must be a text"},
      {R"({"tables": [{"product": "X", "sensor0Preview": [{}]}]})",
       "tables[0].sensor0Preview[0].isHfpsMode: missing"},
  };
  for (const auto& [text, problem] : rows) {
    try {
      rulesFromJson(parseJson(text));
      ADD_FAILURE() << text;
    } catch (const InputError& error) {
      EXPECT_STREQ(error.what(), problem);
    }
  }
}

TEST(Rules, GiveAMatrixAsTheLibraryDecides) {
  const RuleSet rules = rulesOfLibrary();
  Library library;
  // What the library decides for a word of a matrix, as the matrix says it.
  const auto cellOf = [&](Inputs inputs, const std::string& heading, const std::string& value) {
    const bool isByAppType = heading == "APP_TYPE";
    if (!isByAppType) inputs.appType = "another";
    const InputIndex input = isByAppType ? kAppType : heading == "APP_NAME" ? kAppName : kUiModule;
    const std::string text = value == "another" && input == kUiModule ? "1000" : value;
    EXPECT_TRUE(inputField(input).set(inputs, text)) << heading << value;
    const std::int32_t scenario = library.decide(inputs);
    inputs.size = {.w = 640, .h = 480};
    const char* const mark = library.decide(inputs) == scenario ? "" : "*";
    return (scenario == 255 ? "-" : std::string(scenarioName(scenario))) + mark;
  };
  for (const SensorModeTable& table : rules.tables) {
    std::ostringstream out;
    writeMatrix(out, rules, table, Style(false));
    std::istringstream lines(out.str());
    std::string heading;
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(line, table.productName);
    while (std::getline(lines, line) && !line.starts_with("- ")) {
      std::istringstream words(line);
      std::string value;
      words >> value;
      if (value.starts_with("APP_") || value == "UI") {
        heading = value;
        continue;
      }
      for (const RuleList& list : kRuleLists) {
        std::string cell;
        words >> cell;
        const Inputs plain = plainInputs(table.productName, list.sensor, list.video);
        EXPECT_EQ(cell, cellOf(plain, heading, value)) << table.productName << ' ' << line;
      }
    }
  }
}

TEST(Rules, TellTheSmallestChangesThatGiveAScenario) {
  const RuleSet rules = rulesOfLibrary();
  Library library;
  for (const RuleList& list : kRuleLists) {
    Inputs inputs = plainInputs("KX0105", list.sensor, list.video);
    inputs.appType = "QQ";
    inputs.appName = "Instagram";
    for (const std::int32_t scenario : {0, 1, 2, 5, 6, 7, 8, 255}) {
      const std::vector<Inputs> found = smallestChanges(rules, inputs, scenario);
      EXPECT_EQ(found.empty(), !isReachable(rules, inputs, scenario)) << list.name << scenario;
      std::set<std::size_t> sizes;
      for (const Inputs& changed : found) {
        EXPECT_EQ(library.decide(changed), scenario);
        sizes.insert(changesText(inputs, changed).size());
      }
      EXPECT_LE(sizes.size(), 1U);
    }
  }
  Inputs video = plainInputs("KX0105", 0, true);
  EXPECT_FALSE(isReachable(rules, video, 8));
  video.appType = "a";
  std::vector<std::string> changes;
  for (const Inputs& changed : smallestChanges(rules, video, 6)) {
    for (const std::string& text : changesText(video, changed)) changes.push_back(text);
  }
  EXPECT_EQ(changes, (std::vector<std::string>{"MTK_STREAMING_FEATURE_HFPS_MODE absent → 1",
                                               "APP_TYPE a → absent"}));
}

}  // namespace
