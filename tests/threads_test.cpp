// Updaters created and used on several threads at once, as their header allows; also run under
// ThreadSanitizer.

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <barrier>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "common/HeskParameterUpdater.h"
#include "common/HeskSensorModeControl.h"
#include "common/tags/Metadata.h"
#include "host/CameraMetadata.h"
#include "host/ImageStream.h"
#include "host/Phone.h"

namespace {

using namespace hesk;
using NSCam::IMetadata;

constexpr int kSensors = HeskParameterUpdater::kMaxInstanceId + 1;

/// Runs `work` on `count` threads that start together, with the index of the thread.
void runOnThreads(int count, const std::function<void(int thread)>& work) {
  std::barrier start(count);
  std::vector<std::thread> threads;
  threads.reserve(static_cast<std::size_t>(count));
  for (int thread = 0; thread < count; ++thread) {
    threads.emplace_back([&, thread] {
      start.arrive_and_wait();
      work(thread);
    });
  }
  for (std::thread& thread : threads) thread.join();
}

TEST(Threads, CreateInstanceConstructsEachUpdaterOnce) {  // first: there is no updater yet
  constexpr int kThreads = 16;
  host::Phone phone;
  HeskParameterUpdater* updaters[kThreads][kSensors];
  runOnThreads(kThreads, [&](int thread) {
    // Half of the threads start with the last sensor.
    for (int step = 0; step < kSensors; ++step) {
      const int sensor = thread % 2 == 0 ? step : kSensors - 1 - step;
      updaters[thread][sensor] = HeskParameterUpdater::createInstance(sensor);
    }
  });
  for (const auto& ofThread : updaters) {
    EXPECT_TRUE(std::equal(std::begin(ofThread), std::end(ofThread), updaters[0]));
  }
  EXPECT_EQ(std::set(std::begin(updaters[0]), std::end(updaters[0])).size(), kSensors);
  EXPECT_EQ(phone.log.take().size(), kSensors);  // one record for each constructor
}

/// Runs the hooks of a sensor on one frame and checks that they write values of this frame.
void runFrame(int sensor, std::int32_t number) {
  HeskParameterUpdater& updater = *HeskParameterUpdater::createInstance(sensor);
  IMetadata meta;
  write(&meta, tags::HESK_CONTROL_STREAM_FLAGS, 0, 1);
  write(&meta, tags::HESK_CONTROL_HISFRAME, 0, 2);
  write(&meta, tags::ANDROID_CONTROL_CAPTURE_INTENT, std::uint8_t{2});
  write(&meta, tags::MTK_CONTROL_AE_TARGET_FPS_RANGE, 15, 30);
  write(&meta, tags::ANDROID_SENSOR_EXPOSURE_TIME, std::int64_t{number});
  const auto usage = GRALLOC_USAGE_HW_VIDEO_ENCODER;
  updater.setPreviewSize({1920, 1080});
  updater.updateSessionParams(&meta, {{number, new host::ImageStream(number, usage, {4, 3})}});
  updater.updateRequestMeta(&meta, static_cast<unsigned int>(number));
  updater.updateResultMeta(&meta, static_cast<unsigned int>(number));
  EXPECT_EQ(read(&meta, tags::MTK_CONTROL_SELECTED_STREAM_ID), number);
  EXPECT_EQ(read(&meta, tags::MTK_HESK_CAPTURE_COUNT), 2);
  EXPECT_EQ(read(&meta, tags::HESK_CONTROL_REQUESTNO), number);

  IMetadata app;
  write(&app, tags::HESK_CONTROL_CURRENTMODE, std::int64_t{0x40000});
  write(&app, tags::MTK_3A_AE_LUX_INDEX, number);
  write(&app, tags::ANDROID_SENSOR_SENSITIVITY, number);
  IMetadata hal;
  write(&hal, tags::MTK_HAL_REQUEST_SENSOR_ID, sensor);
  write(&hal, tags::MTK_P1NODE_SCALAR_CROP_REGION, NSCam::MRect{0, 0, number, 9});
  IMetadata out;
  updater.updateCaptureRawParameter(&app, &hal, &out);
  EXPECT_EQ(read(&out, tags::HESK_CONTROL_AE_RESULT), static_cast<float>(number));
  EXPECT_EQ(read(&out, tags::MTK_RAW_ALGO_SENSITIVITY), number);
  EXPECT_EQ(read(&out, tags::MTK_RAW_ALGO_PHYSICAL_ZOOM_RATIO),
            4000.0F / static_cast<float>(number));

  updater.translateResultRegionForHesk(&meta, 1.0F, sensor, 0xc00e0014);
  char block[8] = {};
  updater.updateTuningData(&meta, block, sizeof block);
  camera_metadata buffer(meta);
  updater.dumpMetadata(&buffer, "frame", number);
}

/// Sets events and properties that the hooks read. The long texts are on the heap, so that a data
/// race on them is found.
void changeSettings(host::Phone& phone, unsigned int round) {
  for (const char* key : {"APP_TYPE", "APP_NAME", "APP_MODE", "HESK_EXP", "HESK_ISO", "HESK_EV"}) {
    phone.eventStore.set(key, std::string(1 + round % 2 * 30, '1'));
  }
  phone.eventStore.set("APP_TYPE", round % 3 == 0 ? "heskCamera" : "an unknown third-party app");
  phone.properties.set("ro.product.model.zdm", round % 2 == 0 ? "KX0102" : "KX0107");
  phone.properties.set("vendor.debug.camera.VideoFlip", std::to_string(round % 2));
}

/// Runs the control that all sensors share; only one thread may use it.
void decideScenario(unsigned int round) {
  IMetadata session;
  const auto streams = std::make_shared<HeskSensorModeControl::StreamInfo>();
  streams->hasVideoConsumer = round % 3 == 0;
  const int sensor = static_cast<int>(round % 2);
  HeskSensorModeControl::createInstance(sensor)->decideSensorScenario(&session, streams);
}

/// Calls the operations that any thread may call while another one runs the updater's hooks.
void dumpFromAnotherThread(unsigned int round) {
  IMetadata meta;
  write(&meta, tags::ANDROID_CONTROL_CAPTURE_INTENT, std::uint8_t{2});
  camera_metadata buffer(meta);
  HeskParameterUpdater::createInstance(static_cast<int>(round % kSensors))
      ->dumpMetadata(&buffer, "other", static_cast<int>(round));
  char time[15] = {};
  HeskParameterUpdater::getCurrentTime(time);
  EXPECT_EQ(std::strlen(time), 14U);
}

TEST(Threads, HooksOfDifferentUpdatersRunAtOnce) {
  constexpr int kFrames = 50;
  host::PhoneConfig config;
  config.properties = {{"vendor.camera.dumprawhifmetadata", "1"}};
  config.provider = host::ProviderConfig{.fpsCap = 20};
  config.tuningBuffer = {.fd = 7, .bufferSize = 8, .bufferIndex = 1};
  for (int sensor = 0; sensor < kSensors; ++sensor) {
    IMetadata& statics = config.devices[sensor].statics;
    write(&statics, tags::COM_HESK_PDBUFFERTYPE, 2);
    write(&statics, tags::MTK_SENSOR_INFO_ACTIVE_ARRAY_REGION, NSCam::MRect{0, 0, 4000, 3000});
    config.devices[sensor].sensor.emplace().pdSupported = 1;
  }
  host::Phone phone(std::move(config));
  // Without TZ, each tzset reloads the time zone. The C library does that under a lock that
  // ThreadSanitizer does not see.
  setenv("TZ", "UTC0", 1);
  tzset();
  // Locks of the log and of the observer would order the threads and hide data races.
  host::LogSink::enableLevels({});
  phone.setObserver(nullptr);

  std::atomic<int> sensorsAtWork = kSensors;
  runOnThreads(kSensors + 3, [&](int thread) {
    if (thread < kSensors) {
      for (int frame = 0; frame < kFrames; ++frame) runFrame(thread, 1000 * (thread + 1) + frame);
      --sensorsAtWork;
      return;
    }
    for (unsigned int round = 0; sensorsAtWork > 0; ++round) {
      if (thread == kSensors) changeSettings(phone, round);
      if (thread == kSensors + 1) decideScenario(round);
      if (thread == kSensors + 2) dumpFromAnotherThread(round);
    }
  });
  EXPECT_TRUE(std::ranges::any_of(phone.files.takeOpened(), [](const std::string& path) {
    return path.starts_with("/data/vendor/camera/other_metadata_");
  }));
}

}  // namespace
