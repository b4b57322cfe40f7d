#include "tests/support/SensorPipeline.h"

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "common/tags/Metadata.h"
#include "common/tags/ModeBits.h"
#include "host/CameraMetadata.h"
#include "host/ImageStream.h"
#include "host/Phone.h"

namespace {

using namespace hesk;
using NSCam::IMetadata;
using NSCam::MRect;

// The camera of every second frame of all sensors: their threads read its characteristics at once.
constexpr int kSharedCamera = 99;

constexpr std::uint32_t kNoTag = 0;
constexpr std::size_t kTuningBytes = 256;

host::DeviceConfig deviceOf(int id) {
  constexpr Tag<std::uint8_t> kMulticamFeature{0xc008000e};
  constexpr std::uint8_t kLogicalMulticam = 17;

  host::DeviceConfig device;
  IMetadata* const statics = &device.statics;
  write(statics, kMulticamFeature, kLogicalMulticam);
  write(statics, tags::MTK_SENSOR_INFO_ACTIVE_ARRAY_REGION, MRect{0, 0, 4000 + 16 * id, 3000});
  write(statics, tags::COM_HESK_PDBUFFERTYPE, 2);
  writeAll(statics, tags::MTK_RAW_ALGO_STATIC_INFO,
           std::vector<std::uint8_t>(64, static_cast<std::uint8_t>(id)));
  device.hal3A.shadingBase = 1000.0F * static_cast<float>(id);
  device.faces = {{.rect = {id, id, 10 + id, 10 + id}, .score = 90}};
  device.sensor = {.index = id, .pdSupported = 1, .pdWords = {0, 0, id, id, 1}, .pdTail = {id, id}};
  return device;
}

std::vector<std::uint8_t> contentOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace

host::PhoneConfig SensorPipeline::phoneConfig(const std::string& dataRoot) {
  host::PhoneConfig config;
  const auto add = [&](int id) {
    config.devices.emplace(id, deviceOf(id));
    config.sat.cameras.push_back({.id = id, .role = 100 + id, .fov = static_cast<float>(60 + id)});
  };
  for (int sensor = 0; sensor < kSensors; ++sensor) add(sensor);
  add(kSharedCamera);
  config.sat.translate = {.scale = 2, .dx = 3, .dy = 5};
  config.provider = host::ProviderConfig{.fpsCap = 20};
  config.tuningBuffer = {.fd = 7, .bufferSize = kTuningBytes, .bufferIndex = 1};
  std::tm& clock = config.clock.emplace();
  clock.tm_year = 121;
  clock.tm_mday = 4;
  config.dataRoot = dataRoot;
  return config;
}

/// One frame on its way. Every step is a hook, or what belongs to it.
class SensorPipeline::Frame {
 public:
  Frame(const SensorPipeline& pipeline, int frame)
      : mSensor(pipeline.mSensor),
        mUpdater(*pipeline.mUpdater),
        mNumber(pipeline.numberOf(frame)),
        mValue(static_cast<float>(mNumber)) {}

  void configure();
  void request();
  void result();
  void capture();
  void translateRegions();
  void exportTuningData();
  void dump();

  FrameOutcome outcome;

 private:
  void keep(std::string_view container, const IMetadata& metadata) {
    for (const IMetadata::IEntry* entry : host::MetadataAccess::entriesByTag(metadata)) {
      outcome.emplace(FrameField{container, entry->tag()}, host::MetadataAccess::itemsOf(*entry));
    }
  }

  int mSensor;
  HeskParameterUpdater& mUpdater;
  std::int32_t mNumber;
  float mValue;
};

FrameOutcome SensorPipeline::run(int frame) {
  Frame steps(*this, frame);
  steps.configure();
  steps.request();
  steps.result();
  steps.capture();
  steps.translateRegions();
  steps.exportTuningData();
  steps.dump();
  return steps.outcome;
}

void SensorPipeline::Frame::configure() {
  constexpr Tag<std::int32_t> kPipDevices{0xc003009a};

  IMetadata session;
  write(&session, kPipDevices, mNumber, -mNumber);
  write(&session, tags::HESK_CONTROL_STREAM_FLAGS, 0, 1);
  HeskParameterUpdater::ImageStreams streams;
  streams[mNumber] = new host::ImageStream(mNumber, GRALLOC_USAGE_HW_VIDEO_ENCODER, {1920, 1080});
  mUpdater.setPreviewSize({1920, mNumber});
  mUpdater.updateSessionParams(&session, streams);
  keep("session", session);
}

void SensorPipeline::Frame::request() {
  constexpr std::int32_t kLowestFixedFrameRate = 31;

  IMetadata meta;
  write(&meta, tags::ANDROID_CONTROL_CAPTURE_INTENT, std::uint8_t{2});
  write(&meta, tags::ANDROID_CONTROL_ENABLE_ZSL, std::uint8_t{0});
  write(&meta, tags::ANDROID_FLASH_MODE, std::uint8_t{1});
  write(&meta, tags::ANDROID_SENSOR_EXPOSURE_TIME, std::int64_t{mNumber});
  write(&meta, tags::ANDROID_SENSOR_SENSITIVITY, mNumber);
  write(&meta, tags::HESK_CONTROL_ALGO_OVERRIDE, mNumber);
  write(&meta, tags::HESK_CONTROL_COLOURTEMPERATURE, mNumber);
  write(&meta, tags::HESK_CONTROL_FPS_RANGE_MAX, kLowestFixedFrameRate + mNumber);
  write(&meta, tags::HESK_CONTROL_HISFRAME, 0, 1 + mNumber % 7);
  write(&meta, tags::HESK_CONTROL_STREAM_FLAGS, 0, 1);
  write(&meta, tags::HESK_CONTROL_ZOOM_ZOOM_RATIO, 2.0F);
  mUpdater.updateRequestMeta(&meta, static_cast<unsigned int>(mNumber));
  keep("request", meta);
}

void SensorPipeline::Frame::result() {
  IMetadata meta;
  write(&meta, tags::ANDROID_SENSOR_SENSITIVITY, mNumber);
  write(&meta, tags::COM_HESK_SCENETYPE, mNumber % 2 == 0 ? 128 : 0);
  write(&meta, tags::HESK_CONTROL_PAIR_SOURCE, 1);
  write(&meta, tags::HESK_CONTROL_PAIR_INPUT, mValue, -mValue);
  write(&meta, tags::MTK_3A_AE_LUX_INDEX, mNumber);
  write(&meta, tags::MTK_3A_AE_CCT_USE_DATA, mNumber);
  mUpdater.updateResultMeta(&meta, static_cast<unsigned int>(mNumber));
  keep("result", meta);
}

void SensorPipeline::Frame::capture() {
  constexpr std::int64_t kModeWithShadingOf3A = modeBit(18);
  const std::vector<std::uint8_t> statistics(256, static_cast<std::uint8_t>(mNumber));
  const NSCam::MRational neutral{.numerator = mNumber, .denominator = 1000};

  IMetadata app;
  write(&app, tags::HESK_CONTROL_CURRENTMODE, kModeWithShadingOf3A);
  write(&app, tags::MTK_3A_AE_LUX_INDEX, mNumber);
  write(&app, tags::MTK_3A_AE_SENSOR_GAIN, mNumber);
  write(&app, tags::MTK_3A_AE_ISP_GAIN, mNumber);
  write(&app, tags::ANDROID_SENSOR_EXPOSURE_TIME, std::int64_t{mNumber});
  write(&app, tags::ANDROID_SENSOR_SENSITIVITY, mNumber);
  write(&app, tags::ANDROID_SENSOR_NEUTRAL_COLOR_POINT, neutral, neutral, neutral);
  write(&app, tags::MTK_3A_AWB_OTP_DATA, mValue, mValue, mValue, mValue);
  write(&app, tags::MTK_3A_AWB_STATS_SIZE, static_cast<std::int32_t>(statistics.size()));
  writeAll(&app, tags::MTK_3A_AWB_STATS_DATA, statistics);
  IMetadata hal;
  write(&hal, tags::MTK_HAL_REQUEST_SENSOR_ID, mNumber % 2 == 0 ? mSensor : kSharedCamera);
  write(&hal, tags::MTK_MULTICAM_REAL_MASTER_ID, mSensor);
  write(&hal, tags::MTK_P1NODE_SCALAR_CROP_REGION, MRect{mNumber, mNumber, 2000, 1500});
  write(&hal, tags::MTK_P1NODE_CAPTURE_VALUE64, std::int64_t{mNumber});
  IMetadata out;
  mUpdater.updateCaptureRawParameter(&app, &hal, &out);
  keep("capture app", app);
  keep("capture hal", hal);
  keep("capture out", out);
}

void SensorPipeline::Frame::translateRegions() {
  constexpr Tag<std::int32_t> kHumanBodies{0xc00e0014};

  IMetadata meta;
  write(&meta, kHumanBodies, 1, mNumber, mNumber, 2 * mNumber, 2 * mNumber);
  mUpdater.translateResultRegionForHesk(&meta, 70.0F, mSensor, kHumanBodies.value);
  keep("regions", meta);
}

void SensorPipeline::Frame::exportTuningData() {
  std::vector<std::uint8_t> data(kTuningBytes, static_cast<std::uint8_t>(mNumber));
  data.front() = static_cast<std::uint8_t>(mSensor);
  IMetadata meta;
  mUpdater.updateTuningData(&meta, data.data(), kTuningBytes);
  keep("tuning", meta);
  std::vector<std::uint8_t> copied;
  for (const std::byte byte : host::Phone::current().tuningBuffer.bytes()) {
    copied.push_back(std::to_integer<std::uint8_t>(byte));
  }
  outcome.emplace(FrameField{"tuning buffer", kNoTag}, copied);
}

void SensorPipeline::Frame::dump() {
  IMetadata meta;
  write(&meta, tags::ANDROID_CONTROL_CAPTURE_INTENT, std::uint8_t{2});
  write(&meta, tags::HESK_CONTROL_REQUESTNO, mNumber);
  camera_metadata buffer(meta);
  mUpdater.dumpMetadata(&buffer, "frame", mNumber);
  const std::filesystem::path file = host::Phone::current().config.dataRoot +
                                     "/data/vendor/camera/frame_metadata_[" +
                                     std::to_string(mNumber) + "]_20210104000000.txt";
  outcome.emplace(FrameField{"dump", kNoTag}, contentOf(file));
  std::filesystem::remove(file);
}
