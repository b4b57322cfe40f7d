// Edge cases of the result hook and of the translation of regions.

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "common/tags/Metadata.h"
#include "host/Phone.h"
#include "platform/TqcSat.h"
#include "tests/support/TestMetadata.h"
#include "tests/support/TestUpdater.h"

namespace {

using namespace hesk;
using NSCam::IMetadata;

struct ResultRow {
  std::string result;
  std::string written;  // in addition to the tags of every result
  int sensor = 0;
};

TEST(ResultMeta, HasPairAndLuxOfSource) {
  const std::string fixed = R"({"HESK_RESULT_PAIR_FIRST": 30, "HESK_RESULT_PAIR_SECOND": 23})";
  const std::string front = R"({"HESK_RESULT_PAIR_FIRST": 46, "HESK_RESULT_PAIR_SECOND": 24})";
  const ResultRow rows[] = {
      {"{}", fixed},
      {"{}", front, 1},
      {"{}", front, 7},
      {R"({"0x8006001a": {"type": "int32", "items": [16777217]}})",
       R"({"HESK_RESULT_PAIR_FIRST": 30, "HESK_RESULT_PAIR_SECOND": 23,
           "MTK_HESK_RESULT_LUX_INDEX": 16777216})"},
      {R"({"HESK_CONTROL_PAIR_SOURCE": 1, "0x8006001a": {"type": "int32", "items": [9]}})",
       R"({"HESK_RESULT_PAIR_FIRST": 0, "HESK_RESULT_PAIR_SECOND": 0})"},
      {R"({"HESK_CONTROL_PAIR_SOURCE": 1, "HESK_CONTROL_PAIR_INPUT": [1.5, "nan"],
           "MTK_3A_AE_LUX_INDEX": -3})",
       R"({"HESK_RESULT_PAIR_FIRST": 1.5, "HESK_RESULT_PAIR_SECOND": "nan",
           "MTK_HESK_RESULT_LUX_INDEX": -3})",
       1},
      {R"({"HESK_CONTROL_PAIR_SOURCE": 2, "MTK_3A_AE_LUX_INDEX": 3,
           "0x8006001a": {"type": "int32", "items": [9]}})",
       "{}"},
  };
  for (const ResultRow& row : rows) {
    const host::Phone phone;
    const TestUpdater updater(row.sensor);
    IMetadata result = metadataOf(row.result);
    IMetadata expected = result;
    expected += metadataOf(R"({"HESK_CONTROL_EXPTIME": 0, "HESK_CONTROL_ISO": 100,
      "HESK_CONTROL_EV": 0, "MTK_RAW_ALGO_SENSITIVITY": 0, "HESK_CONTROL_REQUESTNO": -1,
      "MTK_RAW_ALGO_AE_CCT_USE_DATA": 0})");
    expected += metadataOf(row.written);
    updater->updateResultMeta(&result, 0xffffffff);
    EXPECT_EQ(result, expected) << row.result << " sensor " << row.sensor;
  }
}

TEST(ResultMeta, ExposureTimeWraps) {
  host::Phone phone;
  phone.eventStore.set("HESK_EXP", "9223372036854775807");
  const TestUpdater updater;
  IMetadata result;
  updater->updateResultMeta(&result, 1);
  EXPECT_EQ(result.entryFor(0xc0030034).itemAt(0, NSCam::Type2Type<std::int64_t>{}), -1000);
}

TEST(ResultMeta, IgnoresEmptySceneType) {
  host::Phone phone;
  const TestUpdater updater;
  IMetadata result;
  clear(&result, tags::COM_HESK_SCENETYPE);
  updater->updateResultMeta(&result, 1);
  EXPECT_TRUE(phone.effects.take().empty());
}

TEST(ResultRegions, AreUnchangedByIdentity) {
  const host::Phone phone;
  const TestUpdater updater;
  const std::pair<std::uint32_t, std::vector<std::int32_t>> rows[] = {
      {0xc00e0000, {-8192, 1, 8192, 5, 7, 6, 5, 4, 3}},
      {0xc00e0017, {2147483647, -2147483647, -5, 7}},
      {0xc00e0014, {1, 4, 3, 2, 1}},
      {0xc00e0014, {3, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}}};
  for (const auto& [number, items] : rows) {
    IMetadata result;
    writeAll(&result, Tag<std::int32_t>{number}, items);
    const IMetadata before = result;
    updater->translateResultRegionForHesk(&result, 80.0F, 0, number);
    EXPECT_EQ(result, before);
  }
}

TEST(ResultRegions, IgnoreMissingRegions) {
  host::Phone phone;
  phone.config.sat.translate.dx = 1;
  const TestUpdater updater;
  const std::pair<const char*, std::uint32_t> rows[] = {{"[]", 0xc00e0000},
                                                        {"[]", 0xc00e0017},
                                                        {"[]", 0xc00e0014},
                                                        {"[0, 1, 2, 3, 4]", 0xc00e0014},
                                                        {"[-1, 1, 2, 3, 4]", 0xc00e0014},
                                                        {"[2, 1, 2, 3]", 0xc00e0014}};
  for (const auto& [items, tag] : rows) {
    IMetadata result =
        metadataOf(R"({"0xc00e0014": {"type": "int32", "items": )" + std::string(items) + "}}");
    const IMetadata before = result;
    updater->translateResultRegionForHesk(&result, 80.0F, 0, tag);
    EXPECT_EQ(result, before) << items << std::hex << tag;
  }
  EXPECT_TRUE(phone.effects.take().empty());
}

TEST(ResultRegions, CompareAllBitsOfTag) {
  host::Phone phone;
  const TestUpdater updater;
  for (const long tag : {0x1c00e0017L, -0x3ff1ffe9L}) {
    IMetadata result = metadataOf(R"({"0xc00e0017": {"type": "int32", "items": [1, 2, 3, 4]}})");
    updater->translateResultRegionForHesk(&result, 80.0F, 0, tag);
    EXPECT_TRUE(phone.effects.take().empty());
    EXPECT_EQ(phone.log.take().back().message,
              "[translateResultRegionForHesk] please check tag id: -1072824297");
  }
}

/// Returns `count` equal regions.
class OtherConverter final : public TqcMetaConverter {
 public:
  explicit OtherConverter(std::size_t count) : mCount(count) {}
  float GetSensorFovByCameraIdx(int /*index*/) override { return 1; }
  void TranslateResultRegion(std::vector<TagInfo>& regions, float /*ratio*/,
                             int /*index*/) override {
    regions.assign(mCount, {.kind = 0, .input = {}, .output = {1, 2, 10, 20}});
  }

 private:
  std::size_t mCount;
};

TEST(ResultRegions, HaveNumberOfConvertedRegions) {
  using Inspector = HeskParameterUpdaterInspector;
  const host::Phone phone;
  const TestUpdater updater;
  const auto entry = [](const std::string& tag, const std::string& items) {
    return metadataOf("{\"" + tag + R"(": {"type": "int32", "items": )" + items + "}}");
  };
  const auto translated = [&](auto translate, const std::string& tag, const std::string& items,
                              std::size_t count) {
    IMetadata result = entry(tag, items);
    OtherConverter converter(count);
    (updater.fields.updater.*translate)(&result, &converter, 1.0F, 0);
    return result;
  };
  const std::string eyes = "[1, 2, 3, 4, 5, 6, 7, 8, 9]";
  const auto eyesOf = [&](std::size_t count) {
    return translated(Inspector::kTranslateEyes, "0xc00e0000", eyes, count);
  };
  EXPECT_EQ(eyesOf(0), entry("0xc00e0000", "[9]"));
  EXPECT_EQ(eyesOf(1), entry("0xc00e0000", "[1, 11, 2, 22, 9]"));
  EXPECT_EQ(eyesOf(3), entry("0xc00e0000", "[1, 11, 2, 22, 1, 11, 2, 22, 1, 11, 2, 22, 9]"));
  const auto lotsOf = [&](std::size_t count) {
    return translated(Inspector::kTranslateLots, "0xc00e0017", "[1, 2, 3, 4]", count);
  };
  EXPECT_EQ(lotsOf(0), IMetadata());
  EXPECT_EQ(lotsOf(2), entry("0xc00e0017", "[1, 2, 11, 22, 1, 2, 11, 22]"));
  const auto bodiesOf = [&](std::size_t count) {
    return translated(Inspector::kTranslateBodies, "0xc00e0014", "[1, 2, 3, 4, 5]", count);
  };
  EXPECT_EQ(bodiesOf(0), entry("0xc00e0014", "[0]"));
  EXPECT_EQ(bodiesOf(2), entry("0xc00e0014", "[2, 1, 2, 11, 22, 1, 2, 11, 22]"));
}

}  // namespace
