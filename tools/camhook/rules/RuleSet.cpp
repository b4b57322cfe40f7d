#include "tools/camhook/rules/RuleSet.h"

#include <algorithm>
#include <string>
#include <utility>

#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/MetadataJson.h"

namespace camhook {
namespace {

using hesk::Override;

constexpr std::pair<const char*, std::int32_t SensorModeCfg::*> kRuleNumbers[] = {
    {"isHfpsMode", &SensorModeCfg::isHfpsMode},
    {"fps", &SensorModeCfg::fps},
    {"eisMode", &SensorModeCfg::eisMode},
    {"videoAlgoType", &SensorModeCfg::videoAlgoType},
    {"uiMode", &SensorModeCfg::uiMode},
    {"sensorMode", &SensorModeCfg::sensorMode},
    {"conditionCount", &SensorModeCfg::conditionCount},
};

constexpr const char* kSensorWords[] = {"any", "front", "notFront"};
constexpr const char* kSizeWords[] = {"any", "notWiderThan4To3", "near4To3", "640x480"};

Json jsonFromOverride(const Override& override) {
  Json names = Json::array();
  for (const std::string_view name : override.appNames) {
    if (!name.empty()) names.push_back(name);
  }
  return {{"when", override.when},
          {"appType", override.appType},
          {"appNames", std::move(names)},
          {"sensor", kSensorWords[static_cast<std::size_t>(override.sensor)]},
          {"hdrMode", override.hdrMode},
          {"nightMode", override.nightMode},
          {"needsVideo", override.needsVideo},
          {"size", kSizeWords[static_cast<std::size_t>(override.size)]},
          {"scenario", override.scenario}};
}

/// A value of rules that are read, and its place among them.
struct RuleValue {
  const Json& json;
  Place place;

  RuleValue operator[](const char* key) const {
    if (!json.is_object()) place.fail("must be an object");
    if (!json.contains(key)) place[key].fail("missing");
    return {json.at(key), place[key]};
  }

  template <typename Use>
  void forEach(Use use) const {
    if (!json.is_array()) place.fail("must be a list");
    for (std::size_t i = 0; i < json.size(); ++i) use(RuleValue{json[i], place[i]});
  }

  [[nodiscard]] std::int32_t number() const { return integerFromJson<std::int32_t>(json, place); }

  [[nodiscard]] bool flag() const {
    if (!json.is_boolean()) place.fail("must be true or false");
    return json.get<bool>();
  }

  /// Stays where it is as long as the document.
  [[nodiscard]] const std::string& text() const {
    if (!json.is_string()) place.fail("must be a text");
    return json.get_ref<const std::string&>();
  }

  template <typename Enum, std::size_t Size>
  [[nodiscard]] Enum word(const char* const (&words)[Size]) const {
    const auto* const found = std::ranges::find(
        words, std::string_view(text()), [](const char* word) { return std::string_view(word); });
    if (found == std::end(words)) place.fail("unknown word " + jsonText(text()));
    return static_cast<Enum>(found - std::begin(words));
  }
};

SensorModeCfg ruleFrom(const RuleValue& value) {
  SensorModeCfg rule{};
  for (const auto& [name, member] : kRuleNumbers) rule.*member = value[name].number();
  rule.appType = value["appType"].text();
  return rule;
}

Override overrideFrom(const RuleValue& value) {
  Override override{.when = value["when"].text().c_str(),
                    .appType = value["appType"].text(),
                    .appNames = {},
                    .sensor = value["sensor"].word<Override::Sensor>(kSensorWords),
                    .hdrMode = value["hdrMode"].number(),
                    .nightMode = value["nightMode"].number(),
                    .needsVideo = value["needsVideo"].flag(),
                    .size = value["size"].word<Override::Size>(kSizeWords),
                    .scenario = static_cast<hesk::SensorScenario>(value["scenario"].number()),
                    .level = nullptr,
                    .format = nullptr};
  std::size_t count = 0;
  value["appNames"].forEach([&](const RuleValue& name) {
    if (count == override.appNames.size()) name.place.fail("one name too many");
    override.appNames.at(count++) = name.text();
  });
  return override;
}

}  // namespace

const RuleList* findRuleList(std::int32_t sensor, bool video) {
  const auto* const found = std::ranges::find_if(kRuleLists, [&](const RuleList& list) {
    return list.sensor == sensor && list.video == video;
  });
  return found != std::end(kRuleLists) ? found : nullptr;
}

const SensorModeTable* RuleSet::tableFor(std::string_view product) const {
  // The library keeps no more of the name.
  constexpr std::size_t kLongestName = 31;
  const auto begins = [&](const SensorModeTable& table) {
    return product.substr(0, kLongestName).starts_with(table.productName);
  };
  const auto found = std::find_if(tables.rbegin(), tables.rend(), begins);
  return found != tables.rend() ? &*found : nullptr;
}

RuleSet rulesOfLibrary() {
  const auto overrides = hesk::overrides();
  return {hesk::sensorModeTables(), {overrides.begin(), overrides.end()}, nullptr};
}

Json jsonFromRule(const SensorModeCfg& rule) {
  return {{"isHfpsMode", rule.isHfpsMode},
          {"appType", rule.appType},
          {"fps", rule.fps},
          {"eisMode", rule.eisMode},
          {"videoAlgoType", rule.videoAlgoType},
          {"uiMode", rule.uiMode},
          {"sensorMode", rule.sensorMode},
          {"conditionCount", rule.conditionCount}};
}

Json jsonFromRules(const RuleSet& rules) {
  Json tables = Json::array();
  for (const SensorModeTable& table : rules.tables) {
    Json json{{"product", table.productName}};
    for (const RuleList& list : kRuleLists) {
      Json rows = Json::array();
      for (const SensorModeCfg& rule : table.*list.rules) rows.push_back(jsonFromRule(rule));
      json[list.name] = std::move(rows);
    }
    tables.push_back(std::move(json));
  }
  Json overrides = Json::array();
  for (const Override& override : rules.overrides) {
    overrides.push_back(jsonFromOverride(override));
  }
  return {{"tables", std::move(tables)}, {"overrides", std::move(overrides)}};
}

RuleSet rulesFromJson(Json json) {
  RuleSet rules;
  rules.texts = std::make_shared<const Json>(std::move(json));
  const RuleValue document{*rules.texts, Place()};
  document["tables"].forEach([&](const RuleValue& value) {
    SensorModeTable& table = rules.tables.emplace_back();
    table.productName = value["product"].text().c_str();
    for (const RuleList& list : kRuleLists) {
      value[list.name].forEach(
          [&](const RuleValue& rule) { (table.*list.rules).push_back(ruleFrom(rule)); });
    }
  });
  document["overrides"].forEach(
      [&](const RuleValue& value) { rules.overrides.push_back(overrideFrom(value)); });
  return rules;
}

}  // namespace camhook
