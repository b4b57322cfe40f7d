// The choice of a sensor scenario: every rule of the tables, what is odd about the filters, and the
// overrides. Records and whole decisions are in the shipped scenarios.

#include <gtest/gtest.h>

#include <memory>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "common/HeskSensorModeControl.h"
#include "common/sensormode/SensorModeInspector.h"
#include "common/tags/Metadata.h"
#include "host/Phone.h"
#include "tests/support/TestMetadata.h"

namespace {

using namespace hesk;
using NSCam::IMetadata;

std::shared_ptr<HeskSensorModeControl::StreamInfo> streams(bool video, NSCam::MSize size) {
  auto info = std::make_shared<HeskSensorModeControl::StreamInfo>();
  *info = {.hasVideoConsumer = video, .mainOutputSize = size};
  return info;
}

constexpr NSCam::MSize kFullHd{1920, 1080};

struct Phone : host::Phone {
  explicit Phone(const std::string& product, const std::string& appType = "",
                 const std::string& appName = "") {
    properties.set("ro.product.model.zdm", product);
    eventStore.set("APP_TYPE", appType);
    eventStore.set("APP_NAME", appName);
  }
};

int decide(int sensor, bool video, const std::string& meta) {
  IMetadata metadata = metadataOf(meta);
  return HeskSensorModeControl::createInstance(sensor)->decideSensorScenario(
      &metadata, streams(video, kFullHd));
}

const std::vector<SensorModeCfg>& selectedRules() {
  return HeskSensorModeControlInspector{*HeskSensorModeControl::createInstance(0)}
      .selectedSensorModeCfgs();
}

/// The rules of a list in order: their conditions and what they yield, "eis1+ui53>2". A condition
/// that is no number is an app type.
struct RuleList {
  std::string product;
  int sensor;
  bool video;
  std::string rules;
};

const RuleList kRuleLists[] = {
    // clang-format off
    {"KX0105", 0, false, "ui26>2 ui16>5 ui53>2 QQ>5 CTS>1 Wechat>5 3rd_party>2 TikTok>2 eis1+ui53>2"},
    {"KX0105", 0, true, "hfps1>6 eis2>7 eis1+algo0>5 hfps1+eis1+algo0>6"},
    {"KX0105", 1, false, "FaceUnlock>8 Wechat>2 3rd_party>2 TikTok>2 QQ>0 CTS>1 mtk_ims>0 Messenger>2 ui29>1 ui24>0 ui53>2 ui26>2"},
    {"KX0105", 1, true, "hfps1>5"},
    {"KX0107", 0, false, "ui26>2 ui16>5 ui31>5 ui53>2 QQ>5 CTS>1 Wechat>5 TikTok>2 TikTokExternal>2 eis1+ui53>5"},
    {"KX0107", 0, true, "hfps1>6 eis2>8 eis1+algo0>5 hfps1+eis1+algo0>6"},
    {"KX0107", 1, false, "FaceUnlock>8 Wechat>6 TikTok>2 QQ>0 CTS>1 mtk_ims>0 Messenger>2 ui29>1 ui24>0 ui53>2 ui26>2"},
    {"KX0107", 1, true, "hfps1>5"},
    {"KX0106", 0, false, "ui26>2 ui16>5 ui31>5 ui53>2 QQ>5 CTS>1 Wechat>5 TikTok>2 TikTokExternal>2 eis1+ui53>5"},
    {"KX0106", 0, true, "hfps1>6 eis2>8 eis1+algo0>5 hfps1+eis1+algo0>6"},
    {"KX0106", 1, false, "FaceUnlock>8 Wechat>6 TikTok>2 QQ>0 CTS>1 mtk_ims>0 Messenger>2 ui29>1 ui24>0 ui53>2 ui26>2"},
    {"KX0106", 1, true, "hfps1>5"},
    {"KX0104", 0, false, "ui26>2 ui16>5 ui53>2 QQ>5 Wechat>5 3rd_party>2 TikTok>2"},
    {"KX0104", 0, true, "eis1>2 hfps1>6 hfps1+eis1>6 hfps1+eis2>7"},
    {"KX0104", 1, false, "FaceUnlock>8 Wechat>6 3rd_party>2 TikTok>2 QQ>0 CTS>0 ui29>1 ui24>0 ui53>2 ui26>2"},
    {"KX0104", 1, true, "hfps1>5"},
    {"KX0102", 0, false, "ui26>2 ui16>5 ui53>2 QQ>2 Wechat>2 3rd_party>2 TikTok>2"},
    {"KX0102", 0, true, "hfps1>6 eis1+algo0>5 eis2+algo0>5"},
    {"KX0102", 1, false, "FaceUnlock>8 Wechat>6 3rd_party>2 TikTok>2 QQ>2 CTS>2 ui29>1 ui24>0 ui53>2 ui26>2"},
    {"KX0102", 1, true, "hfps1>5"},
    // clang-format on
};

SensorModeCfg ruleFrom(const std::string& text) {
  SensorModeCfg rule{.isHfpsMode = -1,
                     .appType = "",
                     .fps = -1,
                     .eisMode = -1,
                     .videoAlgoType = -1,
                     .uiMode = -1,
                     .sensorMode = std::stoi(text.substr(text.find('>') + 1)),
                     .conditionCount = 0};
  std::istringstream conditions(text.substr(0, text.find('>')));
  for (std::string condition; std::getline(conditions, condition, '+'); ++rule.conditionCount) {
    std::smatch match;
    if (!std::regex_match(condition, match, std::regex("(hfps|eis|algo|ui)([0-9]+)"))) {
      rule.appType = condition;
      continue;
    }
    const int value = std::stoi(match[2]);
    if (match[1] == "hfps") rule.isHfpsMode = value;
    if (match[1] == "eis") rule.eisMode = value;
    if (match[1] == "algo") rule.videoAlgoType = value;
    if (match[1] == "ui") rule.uiMode = value;
  }
  return rule;
}

/// A configuration that has what the rule asks for and nothing else.
IMetadata metadataFor(const SensorModeCfg& rule) {
  IMetadata meta;
  const std::pair<Tag<std::int32_t>, std::int32_t> values[] = {
      {tags::MTK_STREAMING_FEATURE_HFPS_MODE, rule.isHfpsMode},
      {tags::HESK_CONTROL_EISENABLE, rule.eisMode},
      {tags::HESK_CONTROL_VIDEOALGOTYPE, rule.videoAlgoType},
      {tags::COM_HESK_CURRENTUIMODULE, rule.uiMode},
  };
  for (const auto& [tag, value] : values) {
    if (value != -1) write(&meta, tag, value);
  }
  return meta;
}

TEST(SensorModeRules, EveryRuleDecidesWhereItAloneIsMet) {
  std::size_t count = 0;
  for (const auto& [product, sensor, video, rules] : kRuleLists) {
    std::istringstream texts(rules);
    std::size_t inList = 0;
    for (std::string text; texts >> text; ++count, ++inList) {
      SCOPED_TRACE(testing::Message()
                   << product << " sensor " << sensor << " video " << video << ' ' << text);
      const SensorModeCfg rule = ruleFrom(text);
      const Phone phone(product + "-X", rule.appType.empty() ? "none of them" : rule.appType);
      IMetadata meta = metadataFor(rule);
      HeskSensorModeControl* control = HeskSensorModeControl::createInstance(sensor);
      EXPECT_EQ(control->decideSensorScenario(&meta, streams(video, kFullHd)), rule.sensorMode);
      EXPECT_EQ(selectedRules(), std::vector{rule});
    }
    const HeskSensorModeControlInspector fields{*HeskSensorModeControl::createInstance(sensor)};
    EXPECT_EQ(fields.sensorModeTable().size() + fields.multiConditionTable().size(), inList);
  }
  EXPECT_EQ(count, 121U);
}

TEST(SensorModeRules, BelongToProductsByTheBeginningOfTheirNames) {
  const std::string longName = "KX0105" + std::string(60, 'x');
  const Phone phone(longName, "QQ");
  EXPECT_EQ(decide(0, false, "{}"), 5);
  const HeskSensorModeControlInspector fields{*HeskSensorModeControl::createInstance(0)};
  EXPECT_EQ(fields.productName(), longName.substr(0, 31));
}

TEST(SensorModeRules, NoneForOtherProductsAndSensors) {
  for (const char* product : {"", "KX010", "kx0105", "XKX0105"}) {
    const Phone phone(product, "QQ");
    EXPECT_EQ(decide(0, false, "{}"), 255) << product;
    EXPECT_EQ(decide(0, true, "{}"), 2) << product;
  }
  const Phone phone("KX0105", "QQ");
  EXPECT_EQ(decide(0, false, "{}"), 5);
  for (const int sensor : {2, -1}) {
    EXPECT_EQ(decide(sensor, false, "{}"), 255);
    EXPECT_TRUE(selectedRules().empty());
  }
}

struct FilterRow {
  std::string product;
  std::string appType;
  int sensor;
  bool video;
  std::string meta;
  int scenario;
};

TEST(SensorModeFilters, DecideInTheirOrder) {
  const FilterRow rows[] = {
      // The last rule of several conditions that is met, before every rule of one.
      {"KX0105", "a", 0, true,
       R"({"MTK_STREAMING_FEATURE_HFPS_MODE": 1, "HESK_CONTROL_EISENABLE": 1,
           "HESK_CONTROL_VIDEOALGOTYPE": 0})",
       6},
      {"KX0105", "a", 0, true,
       R"({"MTK_STREAMING_FEATURE_HFPS_MODE": 0, "HESK_CONTROL_EISENABLE": 1,
           "HESK_CONTROL_VIDEOALGOTYPE": 0})",
       5},
      // Any conditions do, the empty app type among them; another value does not.
      {"KX0107", "", 0, false, R"({"HESK_CONTROL_EISENABLE": 1})", 5},
      {"KX0107", "", 0, false, R"({"COM_HESK_CURRENTUIMODULE": 53})", 5},
      {"KX0104", "", 0, true, R"({"MTK_STREAMING_FEATURE_HFPS_MODE": 1})", 7},
      {"KX0107", "a", 0, false,
       R"({"MTK_STREAMING_FEATURE_HFPS_MODE": -1, "MTK_CONTROL_AE_TARGET_FPS_RANGE": [15, -1]})",
       5},
      {"KX0107", "a", 0, false, R"({"HESK_CONTROL_EISENABLE": 1})", 255},
      {"KX0107", "a", 0, false, R"({"COM_HESK_CURRENTUIMODULE": 53})", 2},
      // The empty app type matches the first rule without one, before the UI module is asked.
      {"KX0105", "", 0, false, R"({"COM_HESK_CURRENTUIMODULE": 16})", 2},
      {"KX0105", "a", 0, false, R"({"COM_HESK_CURRENTUIMODULE": 16})", 5},
      // EIS before high frame rate before app type; of high frame rate 1 alone counts.
      {"KX0104", "a", 0, true, R"({"HESK_CONTROL_EISENABLE": 1})", 2},
      {"KX0105", "", 0, true,
       R"({"HESK_CONTROL_EISENABLE": 2, "MTK_STREAMING_FEATURE_HFPS_MODE": 1})", 7},
      {"KX0105", "", 1, true, R"({"MTK_STREAMING_FEATURE_HFPS_MODE": 1})", 5},
      {"KX0105", "a", 1, true, R"({"MTK_STREAMING_FEATURE_HFPS_MODE": 2})", 2},
      {"KX0105", "QQ", 0, false, R"({"COM_HESK_CURRENTUIMODULE": 53})", 5},
      // A value of -1 is equal to the mark of what is no condition.
      {"KX0105", "a", 0, false, R"({"HESK_CONTROL_EISENABLE": -1})", 2},
      {"KX0105", "a", 0, false, R"({"MTK_CONTROL_AE_TARGET_FPS_RANGE": [15, -1]})", 2},
      {"KX0105", "a", 0, false, R"({"HESK_CONTROL_VIDEOALGOTYPE": -1})", 2},
      {"KX0105", "a", 0, false, R"({"COM_HESK_CURRENTUIMODULE": -1})", 5},
      {"KX0105", "a", 0, false, R"({"MTK_STREAMING_FEATURE_HFPS_MODE": -1})", 255},
      {"KX0105", "a", 0, false,
       R"({"MTK_STREAMING_FEATURE_HFPS_MODE": -1, "HESK_CONTROL_EISENABLE": 1})", 2},
      {"KX0105", "a", 0, false, R"({"HESK_CONTROL_EISENABLE": {"type": "float", "items": [1]}})",
       255},
  };
  for (const FilterRow& row : rows) {
    const Phone phone(row.product, row.appType);
    EXPECT_EQ(decide(row.sensor, row.video, row.meta), row.scenario) << row.appType << row.meta;
  }
}

TEST(SensorModeFilters, DoNothingOnceARuleIsSelected) {
  Phone phone("KX0105", "QQ");
  EXPECT_EQ(decide(0, false, "{}"), 5);
  phone.log.take();
  IMetadata meta = metadataOf(R"({"MTK_CONTROL_AE_TARGET_FPS_RANGE": [1, -1],
    "HESK_CONTROL_EISENABLE": -1, "MTK_STREAMING_FEATURE_HFPS_MODE": 1,
    "HESK_CONTROL_VIDEOALGOTYPE": -1, "COM_HESK_CURRENTUIMODULE": 53})");
  HeskSensorModeControl* control = HeskSensorModeControl::createInstance(0);
  control->getSensorModeCfgByMultiCondition(&meta);
  control->getSensorModeCfgByEisMode(&meta);
  control->getSensorModeCfgByIsHfpsMode(&meta);
  control->getSensorModeCfgByApptype();
  control->getSensorModeCfgByFps(&meta);
  control->getSensorModeCfgByVideoAlgoType(&meta);
  control->getSensorModeCfgByUiMode(&meta);
  EXPECT_EQ(selectedRules().size(), 1U);
  EXPECT_TRUE(phone.log.take().empty());
}

TEST(SensorModeControl, TakesNullMetadataAndStreams) {
  const Phone phone("KX0105", "a", "Dingding");
  EXPECT_EQ(HeskSensorModeControl::createInstance(0)->decideSensorScenario(nullptr, nullptr), 255);
  EXPECT_EQ(HeskSensorModeControl::createInstance(0)->decideSensorScenario(nullptr,
                                                                           streams(true, kFullHd)),
            2);
}

TEST(SensorModeControl, IsOneForAllSensors) {
  EXPECT_EQ(HeskSensorModeControl::createInstance(0), HeskSensorModeControl::createInstance(-7));
}

struct OverrideRow {
  std::string appType;
  std::string appName;
  int sensor;
  bool video;
  NSCam::MSize size;
  int scenario;
  std::string meta = "{}";
};

TEST(SensorModeOverrides, LastThatFiresHolds) {
  constexpr NSCam::MSize kVga{640, 480};
  const std::string hdr = R"({"MTK_HDR_FEATURE_HDR_MODE": 3})";
  const std::string night = R"({"HESK_CONTROL_NIGHTMODE": 1})";
  const OverrideRow rows[] = {
      {"mtk_ims", "", 0, false, {1280, 720}, 255},
      {"mtk_ims", "", 0, false, kVga, 0},
      {"mtk_ims", "", 0, false, {643, 482}, 0},  // 160 and 160: the divisions cut
      {"mtk_ims", "", 0, false, {0, 0}, 0},
      {"wechat", "", 0, false, kVga, 255},
      {"", "Dingding", 0, false, {1330, 1000}, 0},
      {"", "Dingding", 0, false, {640, 480}, 0},    // 1.3333
      {"", "Dingding", 0, false, {1334, 1000}, 0},  // just within 0.004, in single precision
      {"", "Dingding", 0, false, {1335, 1000}, 255},
      {"", "Dingding", 0, false, {1326, 1000}, 255},
      {"", "Dingding", 0, false, {1327, 1000}, 0},
      {"", "Dingding", 0, false, {1000, 0}, 255},
      {"", "Whatsapp", 0, false, kFullHd, 2},
      {"", "Whatsapp", 0, false, kVga, 0},
      {"", "Facebook", 1, true, kVga, 2},
      {"", "Kuaishou", 1, false, kVga, 2},
      {"", "Instagram", 0, false, kVga, 2},
      {"", "Instagram", 1, false, kVga, 255},
      {"", "Messenger", 0, false, kVga, 0},
      {"", "Messenger", 0, false, {480, 640}, 255},
      {"3rd_party", "", 1, true, kVga, 0},
      {"", "", 1, false, kFullHd, 5, hdr},
      {"", "", 0, false, kFullHd, 255, hdr},
      {"", "", 1, false, kFullHd, 255, R"({"MTK_HDR_FEATURE_HDR_MODE": 1})"},
      {"Wechat", "", 1, false, kVga, 6},
      {"Wechat", "Whatsapp", 1, false, kVga, 6, hdr},
      {"Wechat", "", 0, false, kVga, 255},
      {"", "", 0, true, kFullHd, 2, night},
      {"", "", 0, false, kFullHd, 255, night},
      {"Wechat", "", 1, true, kVga, 2, night},
      {"heskCamera", "", 0, true, kVga, 5, night},
      {"heskCamera", "", 0, false, kVga, 255, night},
      {"heskCamera", "", 0, true, kFullHd, 255},
      {"HeskCamera", "", 0, true, kVga, 255},
  };
  for (const OverrideRow& row : rows) {
    const Phone phone("", row.appType, row.appName);
    IMetadata meta = metadataOf(row.meta);
    EXPECT_EQ(HeskSensorModeControl::createInstance(row.sensor)
                  ->specialCustomize(&meta, streams(row.video, row.size)),
              row.scenario)
        << row.appType << row.appName << " sensor " << row.sensor << ' ' << row.size.w << 'x'
        << row.size.h << row.meta;
  }
}

}  // namespace
