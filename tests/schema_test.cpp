// docs/scenario.schema.json beside what the reader's keys give. What it makes of whole scenarios is
// tested in scenario_schema_test.py.

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "tools/camhook/input/ScenarioSchema.h"

namespace {

TEST(ScenarioSchema, IsWrittenOfTheReadersKeys) {
  std::ostringstream stored;
  stored << std::ifstream(CAM_SOURCE_DIR "/docs/scenario.schema.json").rdbuf();
  std::ostringstream made;
  camhook::writeJson(made, camhook::scenarioSchema());
  EXPECT_EQ(stored.str(), made.str() + '\n')
      << "make it anew: ./camhook schema > docs/scenario.schema.json";
}

}  // namespace
