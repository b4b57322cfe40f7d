// Edge cases of the capture hook. Complete captures are in scenarios/.

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "common/tags/Metadata.h"
#include "common/tags/Values.h"
#include "host/Phone.h"
#include "platform/TuningBuffers.h"
#include "tests/support/AllocationCounter.h"
#include "tests/support/TestMetadata.h"
#include "tests/support/TestUpdater.h"

namespace {

using namespace hesk;
using NSCam::IMetadata;

struct RawAlgoRow {
  std::string app;
  std::string out;
  bool isNeeded;
};

TEST(RawAlgorithm, DependsOnModeSlaveAndOverride) {
  const RawAlgoRow rows[] = {
      {"{}", "{}", false},
      {R"({"HESK_CONTROL_CURRENTMODE": 4})", "{}", true},
      {R"({"HESK_CONTROL_CURRENTMODE": "0x0040000000000000"})", "{}", true},
      {R"({"HESK_CONTROL_CURRENTMODE": 32})", "{}", false},
      {"{}", R"({"HESK_CONTROL_IS_DUAL_SLAVE": 1})", true},
      {R"({"HESK_CONTROL_CURRENTMODE": 36})", R"({"HESK_CONTROL_IS_DUAL_SLAVE": 1})", false},
      {R"({"HESK_CONTROL_CURRENTMODE": 36})", R"({"HESK_CONTROL_IS_DUAL_SLAVE": 2})", true},
      {R"({"HESK_CONTROL_CURRENTMODE": 8, "HESK_CONTROL_ALGO_OVERRIDE": 1})", "{}", true},
      {R"({"HESK_CONTROL_CURRENTMODE": 4, "HESK_CONTROL_ALGO_OVERRIDE": -1})",
       R"({"HESK_CONTROL_IS_DUAL_SLAVE": 1})", false},
      {R"({"HESK_CONTROL_CURRENTMODE": 4, "HESK_CONTROL_ALGO_OVERRIDE": 0})", "{}", true},
  };
  const host::Phone phone;
  for (const RawAlgoRow& row : rows) {
    IMetadata app = metadataOf(row.app);
    IMetadata out = metadataOf(row.out);
    EXPECT_EQ(HeskParameterUpdater::isNeedRawAlgo(&app, &out, 7), row.isNeeded)
        << row.app << row.out;
  }
  EXPECT_FALSE(HeskParameterUpdater::isNeedRawAlgo(nullptr, nullptr, 0));
}

TEST(MulticamMaster, ComesFromHalMetadataOnlyInLogicalSessions) {
  host::Phone phone;
  phone.config.devices[4].statics =
      metadataOf(R"({"ANDROID_LOGICAL_MULTI_CAMERA_PHYSICAL_IDS": "2\u00003"})");
  const TestUpdater updater;
  IMetadata hal = metadataOf(R"({"MTK_MULTICAM_REAL_MASTER_ID": 3})");
  IMetadata none;
  for (const int mode : {0, 1, 2}) {
    updater.fields.multicamFeatureMode() = mode;
    EXPECT_EQ(updater->getMulticamMasterID(4, &hal), mode == 2 ? 3 : 2);
    EXPECT_EQ(updater->getMulticamMasterID(4, &none), 2);
    EXPECT_EQ(updater->getMulticamMasterID(5, nullptr), -48);
  }
}

TEST(CameraRole, UsesFirstCameraWithId) {
  host::Phone phone;
  phone.config.sat.cameras = {{.id = 3, .role = 1}, {.id = 3, .role = 2}, {.id = 4, .role = 5}};
  phone.config.sat.defaultRole = 9;
  const TestUpdater updater;
  const std::array<int, 3> rows[] = {{99, 3, 1}, {99, 4, 5}, {99, 5, 9},
                                     {2, 4, 9},  {0, 3, 9},  {-1, 3, 9}};
  for (const auto& [configured, camera, role] : rows) {
    phone.config.sat.configured = configured;
    IMetadata out;
    updater->setCameraRole(&out, camera);
    EXPECT_EQ(read(&out, tags::MTK_RAW_ALGO_CAMERA_ROLE), role) << configured << ' ' << camera;
  }
}

struct CaptureRow {
  std::string hal;
  std::string out;  // only the tags under test
  std::string app = "{}";
};

/// Checks these tags after a capture by camera 3 in a logical multi-camera session.
void expectCaptures(const std::vector<CaptureRow>& rows, const std::vector<std::uint32_t>& tags,
                    const std::string& statics) {
  for (const CaptureRow& row : rows) {
    host::Phone phone;
    phone.config.devices[3].statics = metadataOf(statics);
    const TestUpdater updater;
    updater.fields.multicamFeatureMode() = 2;
    IMetadata app = metadataOf(row.app);
    IMetadata hal = metadataOf(R"({"MTK_HAL_REQUEST_SENSOR_ID": 3,
                                   "MTK_MULTICAM_REAL_MASTER_ID": 2})");
    hal += metadataOf(row.hal);
    IMetadata out;
    updater->updateCaptureRawParameter(&app, &hal, &out);
    IMetadata written;
    for (const std::uint32_t tag : tags) written.update(tag, out.entryFor(tag));
    EXPECT_EQ(written, metadataOf(row.out)) << row.hal << row.app;
  }
}

TEST(CaptureRaw, DependsOnModeBits) {
  const std::set<unsigned int> ofShading = {18, 27, 35, 51, 52, 53, 55};
  const std::set<unsigned int> ofRawAlgorithm = {2, 3, 18, 19, 27, 35, 51, 52, 53, 54, 55};
  const host::Phone phone;
  const TestUpdater updater;
  const auto capture = [&](std::int64_t mode, bool hasShading, bool isForRawAlgorithm) {
    IMetadata app;
    IMetadata hal;
    IMetadata out;
    write(&app, tags::HESK_CONTROL_CURRENTMODE, mode);
    updater->updateCaptureRawParameter(&app, &hal, &out);
    EXPECT_EQ(has(&out, tags::ANDROID_STATISTICS_LENS_SHADING_MAP), hasShading) << mode;
    EXPECT_EQ(read(&hal, tags::MTK_CONTROL_RAW_ALGO_ENABLE) == 1, isForRawAlgorithm) << mode;
  };
  for (unsigned int bit = 0; bit < 64; ++bit) {
    capture(modeBits(bit), ofShading.contains(bit), ofRawAlgorithm.contains(bit));
  }
  capture(-1, false, true);  // a negative mode never gets shading
}

TEST(CaptureRaw, WritesPhaseDetectionOfSensorsThatHaveIt) {
  for (const std::int32_t isSupported : {0, 1, 2, -1}) {
    host::Phone phone;
    phone.config.devices[3].sensor.emplace().pdSupported = isSupported;
    const TestUpdater updater;
    IMetadata out;
    EXPECT_EQ(updater->updateSensorPdafInfo(3, 0, 2, &out), isSupported != 0 ? 0 : -1);
    EXPECT_EQ(has(&out, tags::MTK_RAW_ALGO_PDAF_INFO), isSupported != 0) << isSupported;
  }
}

TEST(CaptureRaw, UsesDefaultsForWrongItemCounts) {
  const auto row = [](const std::string& app, const std::string& out) {
    return CaptureRow{"{}", out, app};
  };
  const auto points = [&](const std::string& list, const std::string& gain) {
    return row(R"({"ANDROID_SENSOR_NEUTRAL_COLOR_POINT": )" + list + "}",
               R"({"MTK_RAW_ALGO_AWB_GAIN_G": )" + gain + "}");
  };
  expectCaptures({points("[[1, 2], [1, 4], [1, 8]]", "4"), points("[[1, 2], [1, 4]]", R"("inf")"),
                  points("[[1, 2], [1, 4], [1, 8], [1, 1]]", R"("inf")")},
                 {tags::MTK_RAW_ALGO_AWB_GAIN_G.value}, "{}");
  const auto bytes = [&](const std::string& size, const std::string& given,
                         const std::string& written) {
    return row(R"({"MTK_3A_AWB_STATS_SIZE": )" + size + R"(, "MTK_3A_AWB_STATS_DATA": )" + given +
                   R"(, "MTK_3A_AWB_OTP_DATA": )" + given + "}",
               written);
  };
  expectCaptures({bytes("1", "[7]", R"({"MTK_RAW_ALGO_AWB_STATS_DATA": 7,
                             "MTK_RAW_ALGO_AWB_OTP_DATA": [0, 0, 0, 0]})"),
                  bytes("1", "[1, 2, 3, 4]", R"({"MTK_RAW_ALGO_AWB_STATS_DATA": 0,
                                      "MTK_RAW_ALGO_AWB_OTP_DATA": [1, 2, 3, 4]})"),
                  bytes("0", "[1, 2, 3, 4, 5]", R"({"MTK_RAW_ALGO_AWB_OTP_DATA": [0, 0, 0, 0]})")},
                 {tags::MTK_RAW_ALGO_AWB_STATS_DATA.value, tags::MTK_RAW_ALGO_AWB_OTP_DATA.value},
                 "{}");
}

TEST(CaptureRaw, MarksSlaveOfPair) {
  expectCaptures(
      {{"{}", "{}"},
       {R"({"MTK_MULTICAM_MASTER_SLAVE_ID": [2, 3]})", R"({"HESK_CONTROL_IS_DUAL_SLAVE": 1})"},
       {R"({"MTK_MULTICAM_MASTER_SLAVE_ID": [3, 2]})", "{}"},
       {R"({"MTK_MULTICAM_MASTER_SLAVE_ID": [3, 3]})", "{}"}},
      {tags::HESK_CONTROL_IS_DUAL_SLAVE.value}, "{}");
}

TEST(CaptureRaw, WritesPhysicalZoomRatio) {
  const std::vector<std::uint32_t> ratio = {tags::MTK_RAW_ALGO_PHYSICAL_ZOOM_RATIO.value};
  const std::string crop = R"({"MTK_P1NODE_SCALAR_CROP_REGION": [0, 0, 2000, 1500]})";
  const std::string none =
      R"({"MTK_HAL_REQUEST_SENSOR_ID": 4})";  // a camera without static metadata
  expectCaptures({{crop, R"({"MTK_RAW_ALGO_PHYSICAL_ZOOM_RATIO": 2})"},
                  {crop.substr(0, crop.size() - 1) + ", " + none.substr(1),
                   R"({"MTK_RAW_ALGO_PHYSICAL_ZOOM_RATIO": 1})"},
                  {"{}", R"({"MTK_RAW_ALGO_PHYSICAL_ZOOM_RATIO": 1})"},
                  {"{}", R"({"MTK_RAW_ALGO_PHYSICAL_ZOOM_RATIO": 3.5})",
                   R"({"HESK_CONTROL_ZOOM_ZOOM_RATIO": 3.5})"}},
                 ratio, R"({"MTK_SENSOR_INFO_ACTIVE_ARRAY_REGION": [8, 8, 4000, 3000]})");
  expectCaptures({{crop, R"({"MTK_RAW_ALGO_PHYSICAL_ZOOM_RATIO": 0})"}}, ratio, "{}");
}

TEST(CaptureRaw, AllocatesOnlyForStatisticsEntry) {
  host::Phone phone;
  phone.setObserver(nullptr);
  host::LogSink::enableLevels({});
  const TestUpdater updater;
  const auto allocationsFor = [&](std::size_t size, std::size_t given) {
    IMetadata app;
    write(&app, tags::MTK_3A_AWB_STATS_SIZE, static_cast<std::int32_t>(size));
    writeAll(&app, tags::MTK_3A_AWB_STATS_DATA, std::vector<std::uint8_t>(given, 7));
    IMetadata out;
    return allocationsIn([&] { updater->update3ACaptureRawParameter(&app, nullptr, &out); });
  };
  const std::size_t none = allocationsFor(0, 0);
  const std::vector<std::uint8_t> most(73'728);
  IMetadata out;
  const std::size_t ofEntry =
      allocationsIn([&] { writeAll(&out, tags::MTK_RAW_ALGO_AWB_STATS_DATA, most); });
  EXPECT_LE(allocationsFor(most.size(), most.size()), none + ofEntry);
}

}  // namespace
