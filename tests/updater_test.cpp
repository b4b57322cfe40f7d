// The updaters' slots and their construction.

#include <gtest/gtest.h>

#include <limits>

#include "host/Phone.h"
#include "tests/support/TestMetadata.h"
#include "tests/support/TestUpdater.h"

namespace {

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
