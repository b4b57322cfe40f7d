// The updaters' slots, their construction, and the field of view.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "common/math/Conversion.h"
#include "common/math/FieldOfView.h"
#include "host/Phone.h"
#include "tests/support/TestMetadata.h"
#include "tests/support/TestUpdater.h"

namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

TEST(FieldOfView, ComesFromTheDiagonalAndTheFocalLength) {
  struct Row {
    float width, height, focalLength;
    int degrees;
  };
  const Row rows[] = {
      {6.4F, 4.8F, 4.7F, 80},
      {0, 0, 4.7F, 0},
      {6.4F, 4.8F, 0, 180},
      {6.4F, 4.8F, -0.0F, -180},
      {0, 0, 0, 0},
      {6.4F, 4.8F, -4.7F, -80},
      {kNan, 4.8F, 4.7F, 0},
      {6.4F, 4.8F, kNan, 0},
      {kInfinity, 4.8F, 4.7F, 180},
      {kInfinity, 4.8F, kInfinity, 0},
      // The divisor: a quarter turn over pi is just below 90 degrees, over 3.1415 just above.
      {2.0F, 0, 1.0F, 90},
      {1.99995F, 0, 1.0F, 90},
      // Twice the focal length does not fit a float: the view closes.
      {6.4F, 4.8F, 3e38F, 0},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(hesk::diagonalFovDegrees(row.width, row.height, row.focalLength), row.degrees)
        << row.width << " x " << row.height << " at " << row.focalLength;
  }
}

TEST(Conversion, IsDefinedForEveryInput) {
  EXPECT_EQ(hesk::toInt32(-2.9), -2);
  EXPECT_EQ(hesk::toInt32(1e300), 2147483647);
  EXPECT_EQ(hesk::toInt32(-HUGE_VAL), -2147483647 - 1);
  EXPECT_EQ(hesk::toInt32(std::nan("")), 0);
  EXPECT_EQ(hesk::wrappingAdd(2147483647, 1), -2147483647 - 1);
}

TEST(Updater, IsOneASlotAndNoneOutsideThem) {
  host::Phone phone;
  for (int sensor = 0; sensor <= 10; ++sensor) {
    HeskParameterUpdater* updater = HeskParameterUpdater::createInstance(sensor);
    if (updater == nullptr) FAIL() << sensor;
    EXPECT_EQ(HeskParameterUpdaterInspector{*updater}.instanceId(), sensor);
    EXPECT_EQ(HeskParameterUpdater::createInstance(sensor), updater);
  }
  phone.log.take();
  for (const int sensor : {-1, 11, std::numeric_limits<int>::min()}) {
    EXPECT_EQ(HeskParameterUpdater::createInstance(sensor), nullptr) << sensor;
    const auto records = phone.log.take();
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0].level, 'D');
    EXPECT_EQ(records[0].function, "createInstance");
    EXPECT_EQ(records[0].message, "[createInstance] HeskParameterUpdater createInstance failed!");
  }
}

TEST(Updater, LearnsTheViewOfItsOwnSensor) {
  host::Phone phone;
  phone.config.devices[3].statics = metadataOf(R"({
    "ANDROID_SENSOR_INFO_PHYSICAL_SIZE": [6.4, 4.8],
    "ANDROID_LENS_INFO_AVAILABLE_FOCAL_LENGTHS": [4.7, 9.0]})");
  const TestUpdater updater(3);
  EXPECT_EQ(updater.fields.diagonalFovDegrees(), 80);
  const auto records = phone.log.take();
  ASSERT_EQ(records.size(), 1U);
  EXPECT_EQ(records[0].level, 'D');
  EXPECT_EQ(records[0].function, "HeskParameterUpdater");
  EXPECT_EQ(records[0].message,
            "[HeskParameterUpdater] physicalWidth: 6.400000mm, physicalHeight:4.800000mm, "
            "focalLength:4.700000mm, mPrimaryCameraDiagonalFov:80 instanceId:3");
}

TEST(Updater, StartsEmptyWithoutAProvider) {
  host::Phone phone;
  const TestUpdater updater(4);
  EXPECT_EQ(updater.fields.diagonalFovDegrees(), 0);
  EXPECT_FALSE(updater.fields.hasVideoStream());
  EXPECT_EQ(updater.fields.multicamFeatureMode(), 0);
  EXPECT_EQ(updater.fields.captureCount(), 0);
  EXPECT_TRUE(updater.fields.nonZslFrames().empty());
}

}  // namespace
