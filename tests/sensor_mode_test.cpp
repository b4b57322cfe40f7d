// Edge cases of the filters and the overrides of sensor modes. rules_test.cpp checks the rules.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "common/HeskSensorModeControl.h"
#include "common/sensormode/SensorModeInspector.h"
#include "host/Phone.h"
#include "tests/support/TestMetadata.h"
#include "tests/support/TestUpdater.h"

namespace {

struct Configuration {
  std::string product;
  std::string appType;
  int sensor = 0;
  bool video = false;
  std::string meta = {};  // members of the JSON object
  std::string appName = {};
  NSCam::MSize size = {1920, 1080};
};

int decide(const Configuration& configuration) {
  const host::Phone phone(
      phoneWith({{"APP_TYPE", configuration.appType}, {"APP_NAME", configuration.appName}},
                {{"ro.product.model.zdm", configuration.product}}));
  const auto streams = std::make_shared<HeskSensorModeControl::StreamInfo>();
  *streams = {.hasVideoConsumer = configuration.video, .mainOutputSize = configuration.size};
  NSCam::IMetadata meta = metadataOf("{" + configuration.meta + "}");
  HeskSensorModeControl* control = HeskSensorModeControl::createInstance(configuration.sensor);
  const int scenario = control->decideSensorScenario(&meta, streams);
  host::LogSink::enableLevels({});
  EXPECT_EQ(control->decideSensorScenario(&meta, streams), scenario) << "with the log closed";
  const HeskSensorModeControlInspector fields{*control};
  const std::size_t selected = fields.selectedSensorModeCfgs().size();
  control->getSensorModeCfgByMultiCondition(&meta);
  EXPECT_EQ(fields.selectedSensorModeCfgs().size(), selected) << "with a filter run twice";
  return scenario;
}

const std::string kUi = R"("COM_HESK_CURRENTUIMODULE": )";
const std::string kEis = R"("HESK_CONTROL_EISENABLE": )";
const std::string kHfps = R"("MTK_STREAMING_FEATURE_HFPS_MODE": )";
const std::string kAlgo = R"("HESK_CONTROL_VIDEOALGOTYPE": )";
const std::string kFps = R"("MTK_CONTROL_AE_TARGET_FPS_RANGE": )";
const std::string kHdr3 = R"("MTK_HDR_FEATURE_HDR_MODE": 3)";
const std::string kNight = R"("HESK_CONTROL_NIGHTMODE": 1)";

TEST(SensorMode, HasNoRulesForUnknownProductsAndSensors) {
  for (const char* product : {"", "KX010", "kx0105", "XKX0105"}) {
    EXPECT_EQ(decide({product, "QQ"}), 255) << product;
    EXPECT_EQ(decide({product, "QQ", 0, true}), 2) << product;
  }
  EXPECT_EQ(decide({"KX0105" + std::string(60, 'x'), "QQ"}), 5);
  const HeskSensorModeControlInspector fields{*HeskSensorModeControl::createInstance(0)};
  EXPECT_EQ(fields.productName(), "KX0105" + std::string(25, 'x'));
  for (const int sensor : {2, -1}) EXPECT_EQ(decide({"KX0105", "QQ", sensor}), 255);
}

TEST(SensorMode, AcceptsNullMetadataAndStreams) {
  const host::Phone phone(phoneWith({{"APP_TYPE", "a"}, {"APP_NAME", "Dingding"}},
                                    {{"ro.product.model.zdm", "KX0105"}}));
  EXPECT_EQ(HeskSensorModeControl::createInstance(0)->decideSensorScenario(nullptr, nullptr), 255);
}

struct DecisionRow {
  Configuration configuration;
  int scenario;
};

TEST(SensorMode, DependsOnOrderOfFilters) {
  const DecisionRow rows[] = {
      // Any of several conditions can match, also an empty app type.
      {{"KX0107", "", 0, false, kEis + "1"}, 5},
      {{"KX0104", "", 0, true, kHfps + "1"}, 7},
      {{"KX0107", "a", 0, false, kHfps + "-1, " + kFps + "[15, -1]"}, 5},
      {{"KX0107", "a", 0, false, kEis + "1"}, 255},
      // An empty app type matches the first rule without one, before the UI module is compared.
      {{"KX0105", "", 0, false, kUi + "16"}, 2},
      // The EIS filter runs before the HFPS filter, which accepts only 1.
      {{"KX0105", "", 0, true, kEis + "2, " + kHfps + "1"}, 7},
      {{"KX0105", "", 1, true, kHfps + "1"}, 5},
      {{"KX0105", "a", 1, true, kHfps + "2"}, 2},
      // The first filter that finds a rule ends the search.
      {{"KX0104", "", 0, true, kHfps + "1, " + kEis + "-1"}, 7},
      {{"KX0105", "QQ", 0, false, kUi + "53"}, 5},
      {{"KX0105", "QQ", 0, false, kFps + "[1, -1]"}, 5},
      {{"KX0105", "QQ", 0, false, kAlgo + "-1"}, 5},
      // -1 equals the value for "no condition".
      {{"KX0105", "a", 0, false, kEis + "-1"}, 2},
      {{"KX0105", "a", 0, false, kFps + "[15, -1]"}, 2},
      {{"KX0105", "a", 0, false, kAlgo + "-1"}, 2},
      {{"KX0105", "a", 0, false, kUi + "-1"}, 5},
      {{"KX0105", "a", 0, false, kHfps + "-1"}, 255},
      {{"KX0105", "a", 0, false, kHfps + "-1, " + kEis + "1"}, 2},
      {{"KX0105", "a", 0, false, kEis + R"({"type": "float", "items": [1]})"}, 255},
  };
  for (const auto& [configuration, scenario] : rows) {
    EXPECT_EQ(decide(configuration), scenario)
        << configuration.product << configuration.appType << configuration.meta;
  }
}

TEST(SensorMode, LastMatchingOverrideDecides) {
  constexpr NSCam::MSize kVga{640, 480};
  const DecisionRow rows[] = {
      {{"", "mtk_ims", 0, false, "", "", {1280, 720}}, 255},
      {{"", "mtk_ims", 0, false, "", "", kVga}, 0},
      {{"", "mtk_ims", 0, false, "", "", {643, 482}}, 0},  // 160 and 160: integer division
      {{"", "mtk_ims", 0, false, "", "", {644, 482}}, 255},
      {{"", "", 0, false, "", "Dingding", kVga}, 0},  // 1.3333
      {{"", "", 0, false, "", "Dingding", {1334, 1000}},
       0},  // just within the limit, in single precision
      {{"", "", 0, false, "", "Dingding", {1335, 1000}}, 255},
      {{"", "", 0, false, "", "Dingding", {1326, 1000}}, 255},
      {{"", "", 0, false, "", "Dingding", {1327, 1000}}, 0},
      {{"", "", 0, false, "", "Dingding", {1000, 0}}, 255},
      {{"", "", 0, false, "", "Whatsapp"}, 2},
      {{"", "", 0, false, "", "Whatsapp", kVga}, 0},
      {{"", "", 1, true, "", "Facebook", kVga}, 2},
      {{"", "", 1, false, "", "Kuaishou", kVga}, 2},
      {{"", "", 0, false, "", "Instagram", kVga}, 2},
      {{"", "", 1, false, "", "Instagram", kVga}, 255},
      {{"", "", 0, false, "", "Messenger", kVga}, 0},
      {{"", "", 0, false, "", "Messenger", {480, 640}}, 255},
      {{"", "3rd_party", 1, true, "", "", kVga}, 0},
      {{"", "", 1, false, kHdr3}, 5},
      {{"", "", 0, false, kHdr3}, 255},
      {{"", "Wechat", 1, false, kHdr3, "Whatsapp", kVga}, 6},
      {{"", "Wechat", 0, false, "", "", kVga}, 255},
      {{"", "Wechat", 1, false, "", "", {640, 360}}, 255},
      {{"", "Wechat", 1, true, kNight, "", kVga}, 2},
      {{"", "", 0, false, kNight}, 255},
      {{"", "heskCamera", 0, true, kNight, "", kVga}, 5},
      {{"", "heskCamera", 0, false, "", "", kVga}, 255},
      {{"", "heskCamera", 0, true, ""}, 2},
      {{"", "HeskCamera", 0, true, "", "", kVga}, 2},
  };
  for (const auto& [configuration, scenario] : rows) {
    EXPECT_EQ(decide(configuration), scenario)
        << configuration.appType << configuration.appName << " sensor " << configuration.sensor
        << ' ' << configuration.size.w << 'x' << configuration.size.h << configuration.meta;
  }
}

}  // namespace
