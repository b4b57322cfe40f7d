// What the calling app and the camera app's mode make of a request. The shipped scenarios show
// every UI module and the records.

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "common/tags/Metadata.h"
#include "host/Phone.h"
#include "tests/support/TestMetadata.h"
#include "tests/support/TestUpdater.h"

namespace {

using namespace hesk;
using NSCam::IMetadata;

/// A request as far as its tuning depends on it; what is not there is absent.
struct Request {
  std::string appType;
  std::optional<std::int32_t> uiModule;
  std::optional<std::int64_t> mode;
  std::optional<std::int32_t> video;
  std::optional<std::int32_t> night;
  std::int32_t detail;  // of scene type, moon mode, native mode, second snapshot and test item

  [[nodiscard]] std::int64_t modeBits() const { return mode.value_or(-1); }
  [[nodiscard]] bool hasMode(std::int64_t mask) const { return (modeBits() & mask) != 0; }
};

/// What tuning leaves behind.
struct Tuning {
  std::string appName;
  std::string appMode;
  int sceneMode = -1;
  bool isSuperNightOn = false;

  friend bool operator==(const Tuning&, const Tuning&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Tuning& tuning) {
    return out << tuning.appName << " mode \"" << tuning.appMode << "\" scene " << tuning.sceneMode
               << " super night " << tuning.isSuperNightOn;
  }
};

const std::map<std::int32_t, std::string> kFixedNames = {
    {11, "SlowMotion"}, {12, "TimeLapse"},      {16, "Professional"},   {24, "ARStickers"},
    {26, "FunVideo"},   {28, "LivePhoto"},      {29, "SuperClearness"}, {35, "MotionCapture"},
    {40, "SuperStar"},  {42, "DiplexExposure"}, {51, "Professional"}};

std::string superNightName(std::int32_t sceneType) {
  if (sceneType == 0x100000) return "SuperNightExtreme";
  return sceneType == 0x180000 || sceneType == 0x700000 ? "SuperNightTripod" : "SuperNight";
}

/// The name that stays: the first that holds, from the rule with the last word to the weakest.
std::string expectedName(const Request& request) {
  const std::int32_t module = request.uiModule.value_or(-1);
  const std::int32_t detail = request.detail;
  if (request.appType == "engcamera") return detail == 8 ? "OISTest" : "before";
  if (request.appType != "heskCamera") return "before";
  if (request.mode && *request.mode > 0 && request.hasMode(2)) return "HDR";
  if (kFixedNames.contains(module)) return kFixedNames.at(module);
  if (module == 32) return detail == 3 ? "SuperMoon" : "NormalMoon";
  if (module == 7) return superNightName(detail);
  if (request.video.value_or(0) != 0) return request.night == 1 ? "VideoNight" : "Video";
  if (module == 31 || request.hasMode(1)) {
    if (detail == 1) return "PartyPortrait";
    return detail == 0 ? "FaceBeauty" : "NativeMode";
  }
  return request.hasMode(0x0800000000018000) ? "Panorama" : "heskCamera";
}

Tuning expectedTuning(const Request& request) {
  Tuning tuning{.appName = expectedName(request), .appMode = "before"};
  if (request.appType != "heskCamera") return tuning;
  const std::int32_t module = request.uiModule.value_or(-1);
  const bool isProfessional = module == 16 || module == 51;
  const bool isPanorama =
      module != 31 && !request.hasMode(1) && request.hasMode(0x0800000000018000);
  tuning.appMode = isProfessional ? "Professional" : "";
  tuning.sceneMode = isProfessional ? 14 : module == 7 ? 5 : isPanorama ? 4 : -1;
  tuning.isSuperNightOn = module == 7;
  return tuning;
}

template <typename T>
void writeIfGiven(IMetadata& metadata, Tag<T> tag, const std::optional<T>& value) {
  if (value) write(&metadata, tag, *value);
}

Tuning tuningOf(host::Phone& phone, TestUpdater& updater, const Request& request) {
  phone.eventStore.set("APP_TYPE", request.appType);
  phone.eventStore.set("APP_NAME", "before");
  phone.eventStore.set("APP_MODE", "before");
  IMetadata metadata;
  write(&metadata, tags::ANDROID_CONTROL_CAPTURE_INTENT, std::uint8_t{2});
  writeIfGiven(metadata, tags::COM_HESK_CURRENTUIMODULE, request.uiModule);
  writeIfGiven(metadata, tags::HESK_CONTROL_CURRENTMODE, request.mode);
  writeIfGiven(metadata, tags::HESK_CONTROL_VIDEOMODE, request.video);
  writeIfGiven(metadata, tags::HESK_CONTROL_NIGHTMODE, request.night);
  for (const auto tag :
       {tags::COM_HESK_SCENETYPE, tags::HESK_CONTROL_MOONMODE, tags::HESK_CONTROL_NATIVEMODE,
        tags::HESK_CONTROL_ISSECONDSNAPSHOT, tags::HESK_CONTROL_ENGTESTITEM}) {
    if (request.detail != 0) write(&metadata, tag, request.detail);
  }
  updater->updateRequestMeta(&metadata, 1);
  return {.appName = phone.eventStore.get("APP_NAME"),
          .appMode = phone.eventStore.get("APP_MODE"),
          .sceneMode = has(&metadata, tags::ANDROID_CONTROL_SCENE_MODE)
                           ? read(&metadata, tags::ANDROID_CONTROL_SCENE_MODE)
                           : -1,
          .isSuperNightOn = read(&metadata, tags::MTK_HESK_SUPER_NIGHT_ON) == 1};
}

TEST(AppTuning, GoesByTheLastRuleThatFires) {
  constexpr auto kNone = std::nullopt;
  std::vector<std::optional<std::int32_t>> modules = {kNone, -1, 0, 7, 31, 32, 53, 99};
  for (const auto& [number, name] : kFixedNames) modules.emplace_back(number);
  const std::optional<std::int64_t> modes[] = {kNone,   0,
                                               1,       2,
                                               3,       0x8000,
                                               0x10000, 0x8002,
                                               0x8001,  0x0800000000000000,
                                               0x4000,  -1,
                                               -2,      std::numeric_limits<std::int64_t>::min()};
  const std::optional<std::int32_t> flags[] = {kNone, 0, 1, 2};
  const std::int32_t details[] = {0, 1, 2, 3, 8, 0x100000, 0x180000, 0x700000};

  host::Phone phone;
  host::LogSink::openLevels({});
  TestUpdater updater;
  for (const char* appType : {"heskCamera", "engcamera", "HeskCamera", ""}) {
    for (const auto& uiModule : modules) {
      for (const auto& mode : modes) {
        for (const auto& video : flags) {
          for (const auto& night : flags) {
            for (const std::int32_t detail : details) {
              const Request request{appType, uiModule, mode, video, night, detail};
              ASSERT_EQ(tuningOf(phone, updater, request), expectedTuning(request))
                  << appType << " module " << uiModule.value_or(-100) << " mode "
                  << mode.value_or(-100) << " video " << video.value_or(-100) << " night "
                  << night.value_or(-100) << " detail " << detail;
            }
          }
        }
        phone.effects.take();
      }
    }
  }
}

TEST(AppTuning, ReportsStabilization) {
  struct Row {
    int uiModule;
    bool hasVideoStream;
    const char* eisEnable;
    int state;  // -1: not reported
  };
  const Row rows[] = {{53, false, "1", 1},  {26, false, "2", 1}, {53, false, "0", 0},
                      {53, false, "[]", 0}, {31, true, "1", 1},  {31, false, "1", -1}};
  for (const auto& [uiModule, hasVideoStream, eisEnable, state] : rows) {
    host::Phone phone;
    phone.eventStore.set("APP_TYPE", "heskCamera");
    const TestUpdater updater;
    updater.fields.hasVideoStream() = hasVideoStream;
    IMetadata request = metadataOf(R"({"HESK_CONTROL_EISENABLE": )" + std::string(eisEnable) + "}");
    write(&request, tags::COM_HESK_CURRENTUIMODULE, uiModule);
    updater->updateRequestMeta(&request, 1);
    EXPECT_EQ(read(&request, tags::HESK_EISSTATE, -1), state) << uiModule << eisEnable;
  }
}

TEST(AppTuning, OfANullRequestIsThatOfAPhoto) {
  host::Phone phone;
  phone.eventStore.set("APP_TYPE", "heskCamera");
  const TestUpdater updater;
  updater->updateRequestMeta(nullptr, 1);
  EXPECT_EQ(phone.eventStore.get("APP_NAME"), "FaceBeauty");
  EXPECT_EQ(phone.eventStore.get("HESK_MOTIONLEVEL"), "-1");
}

TEST(FaceDetection, IsForcedForShortVideoApps) {
  const std::pair<const char*, int> rows[] = {
      {"TikTok", 1}, {"TikTokExternal", 1}, {"TikTokExternal2", 2}, {"", 2}};
  for (const auto& [appName, mode] : rows) {
    host::Phone phone;
    phone.eventStore.set("APP_NAME", appName);
    const TestUpdater updater;
    IMetadata request = metadataOf(R"({"ANDROID_STATISTICS_FACE_DETECT_MODE": 2})");
    updater->updateRequestMeta(&request, 1);
    EXPECT_EQ(read(&request, tags::ANDROID_STATISTICS_FACE_DETECT_MODE), mode) << appName;
  }
}

struct RangeRow {
  std::string name;
  std::string request;
  std::string range;  // afterwards; "absent"
  const char* appName = "";
  const char* appType = "CTS";
  std::optional<int> low = {};
  std::optional<int> max = {};
};

TEST(FrameRateLimit, HoldsForItsAppsAndModes) {
  const std::string k1530 = R"("MTK_CONTROL_AE_TARGET_FPS_RANGE": [15, 30])";
  const RangeRow rows[] = {
      {"other app", k1530, "[15,30]"},
      {"third party", k1530, "[5,24]", "3rd_party"},
      {"IMS at 25", R"("MTK_CONTROL_AE_TARGET_FPS_RANGE": [7, 25])", "[5,24]", "mtk_ims"},
      {"low enough", R"("MTK_CONTROL_AE_TARGET_FPS_RANGE": [7, 24])", "[7,24]", "Whatsapp"},
      {"no range", "", "[5,24]", "Whatsapp"},
      {"no range of another app", "", "absent", "whatsapp"},
      {"photo", k1530 + R"(, "HESK_CONTROL_CURRENTMODE": 1, "HESK_CONTROL_VIDEOMODE": 0)",
       "[5,24]"},
      {"photo without video tag", k1530 + R"(, "HESK_CONTROL_CURRENTMODE": 1)", "[15,30]"},
      {"photo bit in video",
       k1530 + R"(, "HESK_CONTROL_CURRENTMODE": 1, "HESK_CONTROL_VIDEOMODE": 1)", "[15,30]"},
      {"bit 5", k1530 + R"(, "HESK_CONTROL_CURRENTMODE": 32)", "[5,24]"},
      {"AR stickers", k1530 + R"(, "COM_HESK_CURRENTUIMODULE": 24)", "[5,24]"},
      {"manual", k1530, "[10,20]", "", "CTS", 10, 20},
      {"manual to 30", "", "[30,30]", "", "CTS", 30, 30},
      {"manual above 30", k1530, "[5,24]", "", "CTS", 10, 31},
      {"manual upside down", k1530, "[5,24]", "", "CTS", 20, 10},
      {"manual below 1", k1530, "[5,24]", "", "CTS", -1, 20},
      {"manual lower bound alone", k1530, "[5,24]", "", "CTS", 10},
      {"manual upper bound alone", k1530, "[15,30]", "", "CTS", {}, 20},
      {"pinned", R"("HESK_CONTROL_NIGHTMODE": 1, "HESK_CONTROL_FPS_RANGE_MAX": 12)", "[12,12]"},
      {"pinned, another rate", R"("HESK_CONTROL_NIGHTMODE": 1, "HESK_CONTROL_FPS_RANGE_MAX": 20)",
       "absent"},
      {"pinned by day", R"("HESK_CONTROL_NIGHTMODE": 2, "HESK_CONTROL_FPS_RANGE_MAX": 24)",
       "absent"},
      {"pinned behind a limit", R"("HESK_CONTROL_NIGHTMODE": 1, "HESK_CONTROL_FPS_RANGE_MAX": 15)",
       "[5,24,15,15]", "Whatsapp"},
      {"pinned where the limit wrote nothing",
       R"("HESK_CONTROL_NIGHTMODE": 1, "HESK_CONTROL_FPS_RANGE_MAX": 15,
          "MTK_CONTROL_AE_TARGET_FPS_RANGE": [7, 24])",
       "[15,15]", "Whatsapp"},
      {"capped", k1530, "[5,25]", "", "other"},
      {"limited behind the cap", k1530, "[5,24]", "mtk_ims", "other"},
      {"pinned behind the cap", R"("HESK_CONTROL_NIGHTMODE": 1, "HESK_CONTROL_FPS_RANGE_MAX": 24)",
       "[24,24]", "", "other"},
  };
  for (const RangeRow& row : rows) {
    host::Phone phone;
    phone.config.provider = host::ProviderConfig{.fpsCap = 25};
    phone.eventStore.set("APP_TYPE", row.appType);
    phone.eventStore.set("APP_NAME", row.appName);
    if (row.low) phone.properties.set("vendor.debug.camera.fps.low", std::to_string(*row.low));
    if (row.max) phone.properties.set("vendor.debug.camera.fps.max", std::to_string(*row.max));
    const TestUpdater updater;
    IMetadata request = metadataOf("{" + row.request + "}");
    updater->updateRequestMeta(&request, 1);
    IMetadata range;
    range.update(0x00010005, request.entryFor(0x00010005));
    const std::string expected =
        row.range == "absent" ? "{}" : R"({"MTK_CONTROL_AE_TARGET_FPS_RANGE": )" + row.range + "}";
    EXPECT_EQ(range, metadataOf(expected)) << row.name;
  }
}

TEST(ProfessionalMode, PublishesNumbersAsTexts) {
  host::Phone phone;
  const TestUpdater updater;
  IMetadata request = metadataOf(R"({"ANDROID_SENSOR_EXPOSURE_TIME": -9223372036854775808,
    "ANDROID_SENSOR_SENSITIVITY": 2147483647, "HESK_CONTROL_COLOURTEMPERATURE": 0,
    "HESK_CONTROL_MOTIONLEVEL": -2147483648})");
  updater->updateRequestMeta(&request, 1);
  EXPECT_EQ(phone.eventStore.all(), (host::TextMap{{"MTK_EXPTIME", "-9223372036854775808"},
                                                   {"MTK_ISO", "2147483647"},
                                                   {"HESK_COLOURTEMPERATURE", "0"},
                                                   {"MTK_AWBMODE", "0"},
                                                   {"HESK_MOTIONLEVEL", "-2147483648"}}));
  EXPECT_EQ(read(&request, tags::HESK_CONTROL_EXPTIME), std::numeric_limits<std::int64_t>::min());

  phone.eventStore.set("APP_MODE", "Professional");
  request = metadataOf(R"({"ANDROID_SENSOR_EXPOSURE_TIME": 5, "ANDROID_CONTROL_AWB_MODE": 3})");
  updater->updateRequestMeta(&request, 2);
  EXPECT_FALSE(has(&request, tags::HESK_CONTROL_EXPTIME));
  EXPECT_EQ(phone.eventStore.get("MTK_EXPTIME"), "5");
  EXPECT_EQ(phone.eventStore.get("MTK_AWBMODE"), "0");  // without a colour temperature it stays
  EXPECT_EQ(phone.eventStore.get("HESK_MOTIONLEVEL"), "-1");
}

}  // namespace
