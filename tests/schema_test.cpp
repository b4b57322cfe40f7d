// docs/scenario.schema.json beside the reader's keys and the catalogue of tags. What it makes of
// whole scenarios is tested in scenario_schema_test.py.

#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <string>

#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/ScenarioKeys.h"

namespace {

using camhook::Json;
using Names = std::set<std::string>;

Json schemaDefinitions() {
  std::ifstream file(CAM_SOURCE_DIR "/docs/scenario.schema.json");
  return Json::parse(file).at("definitions");
}

Names propertiesOf(const Json& definition) {
  Names names;
  for (const auto& [name, value] : definition.at("properties").items()) names.insert(name);
  return names;
}

template <typename Keys>
Names namesOf(const Keys& keys) {
  return Names(keys.begin(), keys.end());
}

TEST(ScenarioSchema, DescribesTheKeysThatTheReaderKnows) {
  const Json definitions = schemaDefinitions();
  for (const auto& [object, keys] : camhook::scenarioObjects()) {
    ASSERT_TRUE(definitions.contains(object)) << object;
    EXPECT_EQ(propertiesOf(definitions.at(std::string(object))), namesOf(keys)) << object;
  }
  Names calls;
  for (const auto& alternative : definitions.at("call").at("oneOf")) {
    const auto reference = alternative.at("$ref").get<std::string>();
    calls.insert(reference.substr(reference.rfind('/') + 1));
  }
  for (const auto& [call, keys] : camhook::scenarioCalls()) {
    EXPECT_EQ(calls.erase(std::string(call)), 1U) << call;
    Names expected = namesOf(keys);
    expected.insert("call");
    const Json& definition = definitions.at(std::string(call));
    EXPECT_EQ(propertiesOf(definition), expected) << call;
    EXPECT_EQ(namesOf(definition.at("required")), expected) << call;
  }
  EXPECT_EQ(calls, Names{});
}

TEST(ScenarioSchema, ListsTheTagsOfTheCatalogue) {
  Names expected;
#define TAG(name, value, type, count, meaning) expected.insert(#name);
#include "common/tags/Tags.def"
#undef TAG
  EXPECT_EQ(propertiesOf(schemaDefinitions().at("metadata")), expected);
}

}  // namespace
