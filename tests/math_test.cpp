// The arithmetic of the hooks.

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <locale>
#include <optional>
#include <string>
#include <vector>

#include "common/NumberText.h"
#include "common/math/AeResult.h"
#include "common/math/AspectFit.h"
#include "common/math/Conversion.h"
#include "common/math/FieldOfView.h"
#include "common/math/SatCrop.h"
#include "common/updater/PdafRecord.h"

namespace {

using namespace hesk;

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

TEST(FieldOfView, DependsOnDiagonalAndFocalLength) {
  struct Row {
    float width, height, focalLength;
    int degrees;
  };
  const Row rows[] = {
      {6.4F, 4.8F, 4.7F, 80},
      {6.4F, 4.8F, 0, 180},
      {6.4F, 4.8F, -0.0F, -180},
      {0, 0, 0, 0},
      {6.4F, 4.8F, -4.7F, -80},
      {6.4F, 4.8F, kNan, 0},
      {kInfinity, 4.8F, 4.7F, 180},
      // With pi as the divisor the result would be just below 90 degrees; with 3.1415 it is above.
      {2.0F, 0, 1.0F, 90},
      {1.99995F, 0, 1.0F, 90},
      // Twice the focal length is infinite.
      {6.4F, 4.8F, 3e38F, 0},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(diagonalFovDegrees(row.width, row.height, row.focalLength), row.degrees)
        << row.width << " x " << row.height << " at " << row.focalLength;
  }
}

TEST(Conversion, IsDefinedForAllInputs) {
  EXPECT_EQ(toInt32(-2.9), -2);
  EXPECT_EQ(toInt32(1e300), 2147483647);
  EXPECT_EQ(toInt32(-HUGE_VAL), -2147483647 - 1);
  EXPECT_EQ(toInt32(std::nan("")), 0);
  EXPECT_EQ(wrappingAdd(2147483647, 1), -2147483647 - 1);
}

TEST(NumberText, IsIndependentOfStandardLibrary) {
  constexpr std::nullopt_t none = std::nullopt;
  struct Row {
    const char* text;
    std::optional<float> number;
    std::optional<std::int32_t> whole;
  };
  const Row rows[] = {
      {"", none, none},
      {"1.5abc", 1.5F, 1},
      {"0x10", 0.0F, 0},
      {"1,5", 1.0F, 1},
      {"\v\f\r\n\t 12 13", 12.0F, 12},
      {"+5", 5.0F, 5},
      {"-", none, none},
      {"+-5", none, none},
      {".5", 0.5F, none},
      {"-5.e1x", -50.0F, -5},
      {".", none, none},
      {"1e", none, 1},
      {"1e5e5", 1e5F, 1},
      {"nan", none, none},
      {"-inf", none, none},
      {"3.4028235e38", 3.4028235e38F, 3},
      {"3.4028236e38", none, 3},
      {"1e-40", 1e-40F, 1},
      {"-1e-999", -0.0F, -1},
      // Just above the middle of two floats; a double would round to the middle.
      {"1.00000005960464477539062500000000000000001", 1.0000001F, 1},
      {"2147483647", 2147483648.0F, 2147483647},
      {"-2147483648", -2147483648.0F, -2147483647 - 1},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(leadingNumber<float>(row.text), row.number) << '"' << row.text << '"';
    EXPECT_EQ(leadingNumber<std::int32_t>(row.text), row.whole) << '"' << row.text << '"';
    EXPECT_EQ(leadingNumber<std::int64_t>(row.text), row.whole) << '"' << row.text << '"';
  }
  EXPECT_EQ(leadingNumber<std::int32_t>("2147483648"), none);
  EXPECT_EQ(leadingNumber<std::int64_t>("9223372036854775808"), none);
}

TEST(NumberText, IsIndependentOfLocale) {
  struct Comma : std::numpunct<char> {
    [[nodiscard]] char do_decimal_point() const override { return ','; }
  };
  const std::locale before = std::locale::global({std::locale(), new Comma});
  EXPECT_EQ(leadingNumber<float>("1.5"), 1.5F);
  EXPECT_EQ(leadingNumber<float>("1,5"), 1.0F);
  std::locale::global(before);
}

struct CropRow {
  NSCam::MSize preview;
  NSCam::MRect crop;
  NSCam::MSize array;
  NSCam::MRect expected;
};

TEST(SatCrop, HasAspectRatioOfPreview) {
  constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
  constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
  const CropRow rows[] = {
      {{1920, 1080}, {0, 0, 4000, 3000}, {4000, 3000}, {0, 0, 4000, 2250}},
      {{1920, 1080}, {0, 0, 4000, 3000}, {0, 0}, {0, 375, 4000, 2250}},
      {{1440, 1080}, {8, 9, 4000, 3000}, {4000, 3000}, {8, 9, 4000, 3000}},
      {{1000, 1000}, {0, 0, 100, 103}, {0, 0}, {0, 1, 100, 100}},  // a half is rounded down
      {{1000, 1000}, {0, 0, 103, 100}, {50, 53}, {1, -1, 100, 100}},
      {{0, 0}, {1, 2, 3, 4}, {5, 6}, {1, 2, 3, 4}},
      {{16, 9}, {1, 2, 3, 0}, {5, 0}, {0, 2, 0, 0}},
      {{1, 1}, {kMax, kMin, kMin, kMax}, {kMin, 1}, {kMax, -1073741825, kMin, kMin}},  // wraps
  };
  for (const CropRow& row : rows) {
    const NSCam::MRect crop = satCropOf(row.crop, row.array, row.preview).crop;
    EXPECT_EQ(crop, row.expected) << row.preview.w << 'x' << row.preview.h << ' ' << row.crop.w
                                  << 'x' << row.crop.h;
  }
}

TEST(AspectFit, CutsLongerSide) {
  const std::array<NSCam::MSize, 3> rows[] = {{{{1920, 1080}, {4000, 3000}, {4000, 2250}}},
                                              {{{1440, 1080}, {1920, 1080}, {1440, 1080}}},
                                              {{{16, 9}, {1600, 900}, {1600, 900}}},
                                              {{{3, 7}, {1000, 1000}, {428, 1000}}},
                                              {{{7, 3}, {1000, 1000}, {1000, 428}}},
                                              {{{0, 0}, {4, 3}, {4, 3}}},
                                              {{{4, 3}, {0, 0}, {0, 0}}},
                                              {{{1, 0}, {4, 3}, {4, 0}}}};
  for (const auto& [reference, size, fitted] : rows) {
    EXPECT_EQ(fitToRatio(size, aspectRatio(reference)), fitted) << size.w << 'x' << size.h;
  }
}

/// Returns the little-endian word at a byte offset.
std::int32_t wordAt(const PdafRecord& record, std::size_t byte) {
  std::uint32_t word = 0;
  for (std::size_t i = 4; i > 0; --i) word = word << 8U | record[byte + i - 1];
  return static_cast<std::int32_t>(word);
}

TEST(PdafRecord, HasDocumentedLayout) {
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

TEST(AeResult, DerivesAllFieldsFromExposure) {
  const AeResult ae = aeResultOf({.luxIndex = 5,
                                  .expIndex = 6,
                                  .sensorGain = 2048,
                                  .ispGain = 4096,
                                  .adrcGain = 1500,
                                  .exposureNs = 10'000'000});
  const std::array<float, 22> expected = {5,    6, 2, 2,    2, 2, 1.5,  1,   1, 2e7F, 2e7F,
                                          2e7F, 2, 1, 1e7F, 2, 1, 1e7F, 1.5, 1, 1,    1};
  EXPECT_EQ((std::bit_cast<std::array<float, 22>>(ae)), expected);
}

}  // namespace
