// The capture path: what still captures hand to the raw algorithms, and that everything borrowed
// for it goes back. Whole captures are in the shipped scenarios.

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "common/math/AeResult.h"
#include "common/math/AspectFit.h"
#include "common/math/PdafRecord.h"
#include "common/math/SatCrop.h"
#include "common/sat/SatTables.h"
#include "common/tags/Metadata.h"
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

TEST(RawAlgorithm, IsNeededByModeSlaveAndOverride) {
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

TEST(MulticamMaster, IsThePlatformsInLogicalSessionsAlone) {
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

TEST(CameraRole, IsThatOfTheFirstConfiguredCamera) {
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

struct CropRow {
  NSCam::MSize preview;
  NSCam::MRect crop;
  NSCam::MSize array;
  NSCam::MRect expected;
};

TEST(SatCrop, TakesThePreviewsShape) {
  constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
  constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
  const CropRow rows[] = {
      {{1920, 1080}, {0, 0, 4000, 3000}, {4000, 3000}, {0, 0, 4000, 2250}},
      {{1920, 1080}, {0, 0, 4000, 3000}, {0, 0}, {0, 375, 4000, 2250}},
      {{1440, 1080}, {8, 9, 4000, 3000}, {4000, 3000}, {8, 9, 4000, 3000}},
      {{1000, 1000}, {0, 0, 100, 103}, {0, 0}, {0, 1, 100, 100}},  // a half is cut
      {{1000, 1000}, {0, 0, 103, 100}, {50, 53}, {1, -1, 100, 100}},
      {{0, 0}, {1, 2, 3, 4}, {5, 6}, {1, 2, 3, 4}},
      {{16, 9}, {1, 2, 3, 0}, {5, 0}, {0, 2, 0, 0}},
      {{1, 1}, {kMax, kMin, kMin, kMax}, {kMin, 1}, {kMax, kMin, kMin, kMin}},
  };
  for (const CropRow& row : rows) {
    const NSCam::MRect crop = satCropOf(row.crop, row.array, row.preview).crop;
    if (row.crop.w < 0) continue;  // no crop that means anything, but none that traps
    EXPECT_EQ(crop, row.expected) << row.preview.w << 'x' << row.preview.h << ' ' << row.crop.w
                                  << 'x' << row.crop.h;
  }
}

TEST(AspectFit, HasTheRatioWithinAPixelAndNeverGrows) {
  std::mt19937 random(1);
  std::uniform_int_distribution<std::int32_t> side(1, 8192);
  for (int i = 0; i < 100'000; ++i) {
    const NSCam::MSize reference{side(random), side(random)};
    const NSCam::MSize size{side(random), side(random)};
    const NSCam::MSize fitted = fitToRatio(size, aspectRatio(reference));
    ASSERT_TRUE(fitted.w <= size.w && fitted.h <= size.h);
    ASSERT_TRUE(fitted.w == size.w || fitted.h == size.h);
    const double ratio = static_cast<double>(reference.w) / reference.h;
    const bool isWidthCut = fitted.w < size.w;
    const double ideal = isWidthCut ? ratio * size.h : size.w / ratio;
    if (fitted == size) continue;
    ASSERT_LE(std::abs((isWidthCut ? fitted.w : fitted.h) - ideal), 1.001)  // single precision
        << size.w << 'x' << size.h << " to " << reference.w << 'x' << reference.h;
  }
}

TEST(ResultRegions, OfTheIdentityStayAsTheyAre) {
  host::Phone phone;
  const TestUpdater updater;
  std::mt19937 random(2);
  std::uniform_int_distribution<std::int32_t> coordinate(-8192, 8192);
  const std::pair<std::uint32_t, std::size_t> kinds[] = {
      {0xc00e0000, 9}, {0xc00e0017, 4}, {0xc00e0014, 13}};
  for (int i = 0; i < 1'000; ++i) {
    for (const auto& [number, count] : kinds) {
      const Tag<std::int32_t> tag{number};
      std::vector<std::int32_t> items(count);
      for (std::int32_t& item : items) item = coordinate(random);
      if (number == 0xc00e0014) items[0] = 3;
      IMetadata result;
      writeAll(&result, tag, items);
      const IMetadata before = result;
      updater->translateResultRegionForHesk(&result, 80.0F, 0, number);
      ASSERT_EQ(result, before);
    }
  }
}

TEST(ResultRegions, NeedABodyThatIsWhollyThere) {
  host::Phone phone;
  phone.config.sat.translate.dx = 1;
  const TestUpdater updater;
  for (const char* items : {"[]", "[0, 1, 2, 3, 4]", "[-1, 1, 2, 3, 4]", "[2, 1, 2, 3]"}) {
    IMetadata result =
        metadataOf(R"({"0xc00e0014": {"type": "int32", "items": )" + std::string(items) + "}}");
    const IMetadata before = result;
    updater->translateResultRegionForHesk(&result, 80.0F, 0, 0xc00e0014);
    EXPECT_EQ(result, before) << items;
  }
  EXPECT_TRUE(phone.effects.take().empty());
}

/// The little-endian word at a byte.
std::int32_t wordAt(const PdafRecord& record, std::size_t byte) {
  std::uint32_t word = 0;
  for (std::size_t i = 4; i > 0; --i) word = word << 8U | record[byte + i - 1];
  return static_cast<std::int32_t>(word);
}

TEST(PdafRecord, HasItsWordsInTheirPlaces) {
  NSCam::SensorPdBlock block{};
  block.words = {1, 2, -3, 4, 2};
  block.tail = {6, 7};
  for (std::int32_t i = 0; i < 16; ++i) {
    block.left[static_cast<std::size_t>(i)] = {100 + i, 200 + i};
    block.right[static_cast<std::size_t>(i)] = {300 + i, 400 + i};
  }
  const PdafRecord record = pdafRecordOf(block, 18);
  const std::vector<std::int32_t> head = {-3,  4,   6,   7,   4,   100, 200,
                                          300, 400, 101, 201, 301, 401, 0};
  for (std::size_t i = 0; i < head.size(); ++i) EXPECT_EQ(wordAt(record, 4 * i), head[i]) << i;
  EXPECT_EQ(wordAt(record, 2064), 0);
  for (const std::size_t byte : {2068U, 2072U, 2076U}) EXPECT_EQ(wordAt(record, byte), 18);

  const std::pair<std::int32_t, std::int32_t> counts[] = {{-1, 0}, {16, 32}, {17, 32}};
  for (const auto& [pairs, twice] : counts) {
    block.words[4] = pairs;
    const PdafRecord capped = pdafRecordOf(block, -1);
    EXPECT_EQ(wordAt(capped, 16), twice);
    EXPECT_EQ(wordAt(capped, 20 + 16 * 15 + 12), twice == 32 ? 415 : 0);
    EXPECT_EQ(wordAt(capped, 20 + 16 * 16), 0);
    EXPECT_EQ(wordAt(capped, 2076), -1);
  }
}

TEST(AeResult, FillsEveryExposureFromTheOne) {
  const AeResult ae = aeResultOf({.luxIndex = 5,
                                  .expIndex = 6,
                                  .sensorGain = 2048,
                                  .ispGain = 4096,
                                  .adrcGain = 1500,
                                  .exposureNs = 10'000'000});
  const AeResult expected = {5,    6, 2, 2,    2, 2, 1.5,  1,   1, 2e7F, 2e7F,
                             2e7F, 2, 1, 1e7F, 2, 1, 1e7F, 1.5, 1, 1,    1};
  EXPECT_EQ(ae, expected);
}

/// What was borrowed and not given back.
std::vector<std::string> unreturned(const std::vector<host::Effect>& effects) {
  std::vector<std::string> held;
  for (const auto& [op, fields] : effects) {
    const std::string object = op.substr(0, op.find('.'));
    if (op.ends_with(".create") && fields.back().value == host::Effect::Value(true)) {
      held.push_back(object);
    }
    if (op.ends_with(".release")) std::erase(held, object);
  }
  return held;
}

TEST(CaptureRaw, GivesBackWhatItBorrows) {
  for (int phoneKind = 0; phoneKind < 32; ++phoneKind) {
    host::Phone phone;
    host::DeviceConfig& device = phone.config.devices[0];
    device.hal3A.available = (phoneKind & 1) != 0;
    device.hasDefaultShading = (phoneKind & 2) != 0;
    if ((phoneKind & 4) != 0) device.sensor.emplace().pdSupported = (phoneKind & 8) != 0;
    phone.config.sensorList = (phoneKind & 16) != 0;
    device.statics = metadataOf(R"({"COM_HESK_PDBUFFERTYPE": 2})");
    const TestUpdater updater;
    for (const char* mode : {"0", "\"0x40000\""}) {
      for (const bool isNull : {false, true}) {
        IMetadata app = metadataOf(R"({"HESK_CONTROL_CURRENTMODE": )" + std::string(mode) + "}");
        IMetadata hal = metadataOf(R"({"MTK_HAL_REQUEST_SENSOR_ID": 0})");
        IMetadata out;
        updater->updateCaptureRawParameter(&app, &hal, isNull ? nullptr : &out);
        const auto effects = phone.effects.take();
        EXPECT_EQ(unreturned(effects), std::vector<std::string>{}) << phoneKind << mode;
        EXPECT_FALSE(effects.empty());
      }
    }
  }
}

TEST(CaptureRaw, MovesStatisticsWithoutTheHeap) {
  host::Phone phone;
  phone.effects.setRecording(false);
  host::LogSink::openLevels({});
  IMetadata app = metadataOf(R"({"MTK_3A_AWB_STATS_SIZE": 73728})");
  writeAll(&app, tags::MTK_3A_AWB_STATS_DATA, std::vector<std::uint8_t>(73'728, 7));
  IMetadata out;
  const TestUpdater updater;
  updater->update3ACaptureRawParameter(&app, nullptr, &out);
  EXPECT_EQ(count(&out, tags::MTK_RAW_ALGO_AWB_STATS_DATA), 73'728U);
  // The AE record is a new entry; the statistics find the room of the old ones.
  EXPECT_LE(allocationsIn([&] { updater->update3ACaptureRawParameter(&app, nullptr, &out); }), 1U);
}

TEST(TuningData, NeedsABufferWithRoom) {
  struct Row {
    std::int32_t fd;
    std::int32_t bufferSize;
    unsigned int size;
    bool hasData;
    bool isCopied;
  };
  const Row rows[] = {{1, 8, 8, true, true},  {1, 8, 9, true, false},  {0, 8, 8, true, false},
                      {1, 0, 0, true, true},  {1, 8, 8, false, false}, {1, 8, 0, false, true},
                      {-1, 8, 0, true, false}};
  for (const auto& [fd, bufferSize, size, hasData, isCopied] : rows) {
    host::Phone phone;
    phone.config.tuningBuffer = {.fd = fd, .bufferSize = bufferSize, .bufferIndex = 3};
    const TestUpdater updater;
    std::string data = "12345678+";
    IMetadata meta;
    EXPECT_EQ(updater->updateTuningData(&meta, hasData ? data.data() : nullptr, size), isCopied);
    EXPECT_EQ(read(&meta, tags::MTK_RAW_ALGO_TUNING_BUFFER_INDEX), isCopied ? 3 : 0);
    if (isCopied && size == 8) {
      EXPECT_EQ(std::memcmp(phone.tuningBuffer.bytes().data(), "12345678", 8), 0);
    }
  }
}

TEST(SatTables, HoldWhatIsFixed) {
  const std::vector<ThresholdOfSat>& thresholds = satThresholds();
  ASSERT_EQ(thresholds.size(), 8U);
  EXPECT_STREQ(thresholds.back().product, "DEFAULT");
  EXPECT_EQ(thresholds[3].thresholds, (std::vector<float>{4.2F, 10.0F, 10.0F, 10.0F}));
  for (const ThresholdOfSat& record : thresholds) {
    EXPECT_EQ(record.groups[0], (ThresholdOfSat::Group{{0.6F, 1.3F}, {0.8F, 2.6F}}));
    EXPECT_STRNE(record.product, "KX0102");
  }
  ASSERT_EQ(fallbackRanges().size(), 4U);
  EXPECT_EQ(fallbackRanges()[2].values[15], 310.0F);
  EXPECT_EQ(fallbackRanges()[1].values[12], 0.0F);
  ASSERT_EQ(satFusionParams().size(), 3U);
  EXPECT_EQ(satFusionParams()[2].zoom, 1.1F);
}

}  // namespace
