#include "bench/Floors.h"

#include <array>
#include <cstring>
#include <ctime>
#include <memory>
#include <string_view>
#include <vector>

#include "bench/Operations.h"
#include "platform/CLibrary.h"
#include "platform/Hal3A.h"
#include "platform/HalSensor.h"
#include "platform/MetadataProvider.h"
#include "platform/ModuleFactory.h"
#include "platform/StereoSettingProvider.h"
#include "platform/TqcSat.h"
#include "platform/TuningBuffers.h"

namespace bench {
namespace {

using namespace hesk;
using namespace std::string_view_literals;

/// Of preview and still requests: up to the capture intent.
void startOfRequest(IMetadata& request) {
  getEvent("APP_TYPE");
  look(request, tags::HESK_CONTROL_FPS_RANGE_MAX);
  // The calling app.
  getEvent("APP_NAME");
  look(request, tags::HESK_CONTROL_FPS_RANGE_MAX);
  getNumberProperty("vendor.debug.camera.fps.low");
  take(request, tags::HESK_CONTROL_CURRENTMODE);
  look(request, tags::HESK_CONTROL_VIDEOMODE);
  take(request, tags::COM_HESK_CURRENTUIMODULE);
  look(request, tags::HESK_CONTROL_NIGHTMODE);
  // The camera app's mode.
  take(request, tags::COM_HESK_CURRENTUIMODULE);
  take(request, tags::HESK_CONTROL_CURRENTMODE);
  look(request, tags::HESK_CONTROL_EISENABLE);
  look(request, tags::HESK_CONTROL_NATIVEMODE);
  setEvent("APP_NAME", "FaceBeauty");
  look(request, tags::HESK_CONTROL_ISSECONDSNAPSHOT);
  look(request, tags::HESK_CONTROL_VIDEOMODE);
  setEvent("APP_MODE", "");
  // What is said by hand.
  look(request, tags::ANDROID_SENSOR_EXPOSURE_TIME);
  look(request, tags::ANDROID_SENSOR_SENSITIVITY);
  look(request, tags::HESK_CONTROL_ALGO_OVERRIDE);
  look(request, tags::HESK_CONTROL_COLOURTEMPERATURE);
  take(request, tags::COM_HESK_CURRENTUIMODULE);
  setEvent("HESK_CURRENTUIMODE", "31");
  look(request, tags::HESK_CONTROL_MOTIONLEVEL);
  setEvent("HESK_MOTIONLEVEL", "-1");
  look(request, tags::HESK_CONTROL_ISSECONDSNAPSHOT);
  // The request.
  put(request, tags::MTK_CONTROL_SELECTED_STREAM_ID, -1);
  take(request, tags::HESK_CONTROL_CURRENTMODE);
  take(request, tags::COM_HESK_CURRENTUIMODULE);
  take(request, tags::ANDROID_CONTROL_CAPTURE_INTENT);
}

void endOfRequest(IMetadata& request) {
  take(request, tags::HESK_CONTROL_ZOOM_ZOOM_RATIO);
  put(request, tags::MTK_CONTROL_RAW_TYPE);
  look(request, tags::HESK_CONTROL_VIDEO_HDR);
  look(request, tags::HESK_CONTROL_FPS_RANGE_MAX);
}

void takeFrameRates(const IMetadata& metadata) {
  const auto& entry = metadata.entryFor(tags::MTK_CONTROL_AE_TARGET_FPS_RANGE.value);
  benchmark::DoNotOptimize(entry.itemAt(0, Type2Type<std::int32_t>{}));
  benchmark::DoNotOptimize(entry.itemAt(1, Type2Type<std::int32_t>{}));
}

NS3Av3::IHal3A* borrowHal3A(int sensor) {
  const auto create =
      reinterpret_cast<NS3Av3::Hal3ACreator>(NSCam::getMtkcamModuleFactory(NSCam::kModule3A));
  return create(sensor, "bench");
}

const IMetadata& staticsOf(int sensor) {
  return NSCam::NSMetadataProviderManager::valueForByDeviceId(sensor)->getStaticCharacteristics();
}

}  // namespace

void previewFloor(Scene& scene) {
  startOfRequest(scene.app);
  endOfRequest(scene.app);
}

void stillFloor(Scene& scene) {
  IMetadata& request = scene.app;
  startOfRequest(request);
  take(request, tags::ANDROID_CONTROL_ENABLE_ZSL);
  look(request, tags::HESK_CONTROL_HISFRAME);
  take(request, tags::HESK_CONTROL_HISFRAME, 0);
  take(request, tags::HESK_CONTROL_HISFRAME, 1);
  borrowHal3A(kStillSensor)->release("bench");
  take(request, tags::ANDROID_FLASH_MODE);
  look(request, tags::HESK_CONTROL_ALGO_OVERRIDE);
  put(request, tags::MTK_HESK_NO_VIDEO_STREAM, 1);
  put(request, tags::MTK_HESK_STILL_CAPTURE, 1);
  put(request, tags::MTK_CONTROL_RAW_TYPE);
  put(request, tags::MTK_HAL_REQUEST_CAPTURE_FLAG1, 1);
  put(request, tags::MTK_HAL_REQUEST_CAPTURE_FLAG0, 0);
  put(request, tags::MTK_HESK_CAPTURE_COUNT, 4);
  const std::time_t now = cam::time(nullptr);
  std::tm local{};
  cam::localtime_r(&now, &local);
  std::uint8_t stamp[15]{};
  std::strftime(reinterpret_cast<char*>(stamp), sizeof stamp, "%Y%m%d%H%M%S", &local);
  IMetadata::IEntry entry(tags::HESK_CONTROL_DUMPPATH.value);
  entry.push_back(stamp, sizeof stamp, Type2Type<std::uint8_t>{});
  request.update(tags::HESK_CONTROL_DUMPPATH.value, std::move(entry));
  put(request, tags::HESK_CONTROL_MULTICAM_FEATURE_MODE, 0);
  endOfRequest(request);
}

void sessionFloor(Scene& scene) {
  constexpr Tag<std::uint8_t> kConfigured{0x800b000a};
  constexpr Tag<std::int32_t> kVideoFlip{0xc003009c};
  constexpr Tag<std::int32_t> kPipDevices{0xc003009a};

  const HeskParameterUpdater::ImageStreams streams(scene.streams);
  IMetadata& session = scene.app;
  getEvent("APP_TYPE");
  look(session, tags::HESK_CONTROL_EISENABLE);
  StereoSettingProvider::setEisEnable(-1);
  look(session, tags::HESK_CONTROL_VIDEOALGOTYPE);
  StereoSettingProvider::setVideoAlgoType(-1);
  benchmark::DoNotOptimize(NSCam::NSMetadataProviderManager::valueForByDeviceId(kSessionSensor));
  put(session, tags::MTK_HESK_MULTICAM_ENABLE, -1);
  take(session, tags::COM_HESK_CURRENTUIMODULE);
  put(session, kConfigured, 1);
  takeFrameRates(session);
  for (const auto& [id, stream] : streams) {
    benchmark::DoNotOptimize(stream->getUsageForConsumer());
    benchmark::DoNotOptimize(stream->getImgSize());
  }
  put(session, tags::ANDROID_CONTROL_VIDEO_STABILIZATION_MODE, 0);
  look(session, kVideoFlip);
  getNumberProperty("vendor.debug.camera.VideoFlip");
  for (const auto& [id, stream] : streams) {
    benchmark::DoNotOptimize(stream->getUsageForConsumer());
  }
  look(session, kPipDevices);
  look(session, tags::HESK_CONTROL_VIDEO_HDR);
  take(session, tags::HESK_CONTROL_STREAM_FLAGS, 1);
  take(session, tags::HESK_CONTROL_STREAM_FLAGS, 2);
  take(session, tags::HESK_CONTROL_STREAM_FLAGS, 3);
  put(session, tags::MTK_CONTROL_SELECTED_STREAM_ID, 0);
  getEvent("APP_NAME");
}

void resultFloor(Scene& scene) {
  constexpr Tag<std::int32_t> kPlatformLux{0x8006001a};

  IMetadata& result = scene.app;
  getEvent("HESK_ISO");
  getEvent("HESK_EXP");
  getEvent("HESK_EV");
  put(result, tags::HESK_CONTROL_EXPTIME, 33'333'000);
  put(result, tags::HESK_CONTROL_ISO, 400);
  put(result, tags::HESK_CONTROL_EV, -0.3F);
  getEvent("APP_NAME");
  getEvent("HESK_VIDEONRRECOMMAND");
  put(result, tags::HESK_FEEDBACK_VIDEONRRECOMMEND, 0);
  take(result, tags::COM_HESK_SCENETYPE);
  setEvent("PREVIEW_SCENEMODE", "128");
  look(result, tags::HESK_CONTROL_PAIR_SOURCE);
  put(result, tags::HESK_RESULT_PAIR_FIRST, 30.0F);
  put(result, tags::HESK_RESULT_PAIR_SECOND, 23.0F);
  look(result, kPlatformLux);
  look(result, tags::ANDROID_SENSOR_SENSITIVITY);
  put(result, tags::MTK_RAW_ALGO_SENSITIVITY, 0);
  put(result, tags::HESK_CONTROL_REQUESTNO, 1);
  look(result, tags::MTK_3A_AE_CCT_USE_DATA);
  put(result, tags::MTK_RAW_ALGO_AE_CCT_USE_DATA, 0);
}

namespace {

void rawCapture3A(const IMetadata& app, const IMetadata& hal, IMetadata& out) {
  look(app, tags::MTK_3A_AE_LUX_INDEX);
  look(app, tags::MTK_3A_AE_EXP_INDEX);
  look(app, tags::MTK_3A_AE_SENSOR_GAIN);
  look(app, tags::MTK_3A_AE_ISP_GAIN);
  look(hal, tags::MTK_3A_AE_ADRC_GAIN);
  look(app, tags::ANDROID_SENSOR_EXPOSURE_TIME);
  static const std::vector<float> kAeResult(22);
  putAll(out, tags::HESK_CONTROL_AE_RESULT, kAeResult);
  put(out, tags::MTK_RAW_ALGO_ISLIGHTENV, 1);
  look(app, tags::ANDROID_SENSOR_NEUTRAL_COLOR_POINT);
  look(app, tags::MTK_3A_AWB_RESULT_INFO);
  put(out, tags::MTK_RAW_ALGO_AWB_GAIN_R, 1.0F);
  put(out, tags::MTK_RAW_ALGO_AWB_GAIN_G, 1.0F);
  put(out, tags::MTK_RAW_ALGO_AWB_GAIN_B, 1.0F);
  put(out, tags::MTK_RAW_ALGO_AWB_RESULT_INFO, 0);
  look(app, tags::ANDROID_SENSOR_SENSITIVITY);
  put(out, tags::MTK_RAW_ALGO_SENSITIVITY, 0);
  look(app, tags::MTK_3A_AWB_OTP_DATA);
  put(out, tags::MTK_RAW_ALGO_AWB_OTP_DATA, 0.0F, 0.0F, 0.0F, 0.0F);
  take(app, tags::MTK_3A_AWB_STATS_SIZE);
  put(out, tags::MTK_RAW_ALGO_AWB_STATS_SIZE, 0);
  look(app, tags::MTK_3A_AWB_STATS_DATA);
  out.update(tags::MTK_RAW_ALGO_AWB_STATS_DATA.value,
             app.entryFor(tags::MTK_3A_AWB_STATS_DATA.value));
  look(app, tags::MTK_3A_AE_CCT_USE_DATA);
  put(out, tags::MTK_RAW_ALGO_AE_CCT_USE_DATA, 0);
}

void rawCapturePhaseDetection(IMetadata& out) {
  const auto getList = reinterpret_cast<NSCam::HalSensorListGetter>(
      NSCam::getMtkcamModuleFactory(NSCam::kModuleSensorList));
  NSCam::IHalSensorList* list = getList();
  NSCam::IHalSensor* sensor = list->createSensor("bench", kRawSensor);
  std::int32_t scenario = 1;
  std::int32_t isSupported = 0;
  NSCam::SensorPdBlock block{};
  const auto send = [&](std::int32_t command, auto& answer) {
    sensor->sendCommand(list->queryDeviceIndex(kRawSensor), command,
                        reinterpret_cast<std::intptr_t>(&scenario),
                        reinterpret_cast<std::intptr_t>(&answer), 0);
  };
  send(NSCam::IHalSensor::kSupportsPd, isSupported);
  send(NSCam::IHalSensor::kGetPdBlock, block);
  sensor->release("bench");
  static const std::vector<std::uint8_t> kRecord(2080);
  putAll(out, tags::MTK_RAW_ALGO_PDAF_INFO, kRecord);
}

}  // namespace

void rawCaptureFloor(Scene& scene) {
  const IMetadata& app = scene.app;
  IMetadata& hal = scene.hal;
  IMetadata& out = scene.out;
  take(app, tags::HESK_CONTROL_CURRENTMODE);
  NS3Av3::IHal3A* hal3A = borrowHal3A(kRawSensor);
  static std::vector<float> shading(std::size_t{17} * 13 * 4);
  NSCam::MSize grid{17, 13};
  hal3A->control(NS3Av3::IHal3A::kGetShadingTable, reinterpret_cast<std::intptr_t>(&grid),
                 reinterpret_cast<std::intptr_t>(shading.data()));
  putAll(out, tags::ANDROID_STATISTICS_LENS_SHADING_MAP, shading);
  hal3A->release("bench");

  take(hal, tags::MTK_HAL_REQUEST_SENSOR_ID);
  put(out, tags::HESK_CONTROL_CURRENT_CAMERA_ID, kRawSensor);
  rawCapture3A(app, hal, out);
  take(app, tags::HESK_CONTROL_CURRENTMODE);
  look(out, tags::HESK_CONTROL_IS_DUAL_SLAVE);
  look(app, tags::HESK_CONTROL_ALGO_OVERRIDE);
  put(hal, tags::MTK_RAW_ALGO_PROCESS_TYPE, 14);
  put(hal, tags::MTK_CONTROL_RAW_ALGO_ENABLE, 1);
  // The zoom transition.
  look(app, tags::HESK_CONTROL_CURRENTMODE);
  take(hal, tags::MTK_P1NODE_SCALAR_CROP_REGION);
  look(hal, tags::MTK_MULTICAM_REAL_MASTER_ID);
  take(staticsOf(kRawSensor), tags::MTK_SENSOR_INFO_ACTIVE_ARRAY_REGION);
  put(out, tags::MTK_RAW_ALGO_SAT_CROP_REGION, NSCam::MRect{});
  const TqcSat& sat = TqcSat::GetInstance();
  benchmark::DoNotOptimize(sat.cameras());
  put(out, tags::MTK_RAW_ALGO_CAMERA_ROLE, sat.defaultRole());
  look(hal, tags::MTK_P1NODE_CAPTURE_VALUE64);
  put(out, tags::MTK_RAW_ALGO_CAPTURE_VALUE64, 0);
  // What the sensor's statics say.
  const IMetadata& statics = staticsOf(kRawSensor);
  take(hal, tags::MTK_P1NODE_SCALAR_CROP_REGION);
  take(statics, tags::MTK_SENSOR_INFO_ACTIVE_ARRAY_REGION);
  put(out, tags::MTK_RAW_ALGO_PHYSICAL_ZOOM_RATIO, 1.0F);
  look(statics, tags::COM_HESK_ISPDCOMPENSATION);
  take(statics, tags::COM_HESK_PDBUFFERTYPE);
  rawCapturePhaseDetection(out);
  look(statics, tags::MTK_RAW_ALGO_STATIC_INFO);
  out.update(tags::MTK_RAW_ALGO_STATIC_INFO.value,
             statics.entryFor(tags::MTK_RAW_ALGO_STATIC_INFO.value));
}

namespace {

/// Whether the value is one of the texts, each of which is compared.
template <std::size_t Size>
void compareWith(std::string_view value, const std::array<std::string_view, Size>& texts) {
  for (const std::string_view text : texts) benchmark::DoNotOptimize(value == text);
}

template <typename Field, typename Value>
void compareWithRules(Field field, const Value& value) {
  constexpr std::size_t kRules = 12;
  static const std::vector<SensorModeCfg> kList(
      kRules, SensorModeCfg{-1, "Messenger", -1, -1, -1, -1, 0, 1});
  for (const SensorModeCfg& rule : kList) benchmark::DoNotOptimize(rule.*field == value);
}

}  // namespace

void decisionFloor(Scene& scene) {
  static constexpr std::array kProducts{"KX0105"sv, "KX0107"sv, "KX0106"sv, "KX0104"sv, "KX0102"sv};
  static constexpr std::array kOverridingTypes{"mtk_ims"sv, "3rd_party"sv, "Wechat"sv,
                                               "heskCamera"sv};
  static constexpr std::array kOverridingNames{"Dingding"sv, "Whatsapp"sv,  "Facebook"sv,
                                               "Kuaishou"sv, "Instagram"sv, "Whatsapp"sv,
                                               "Messenger"sv};

  const IMetadata& session = scene.app;
  const std::shared_ptr<HeskSensorModeControl::StreamInfo> info(scene.info);
  getProperty("ro.product.model.zdm");
  compareWith("KX0105"sv, kProducts);
  take(session, tags::HESK_CONTROL_EISENABLE);
  compareWithRules(&SensorModeCfg::eisMode, 3);
  take(session, tags::MTK_STREAMING_FEATURE_HFPS_MODE);
  compareWithRules(&SensorModeCfg::isHfpsMode, 1);
  compareWithRules(&SensorModeCfg::appType, getEvent("APP_TYPE"));
  takeFrameRates(session);
  compareWithRules(&SensorModeCfg::fps, 30);
  take(session, tags::HESK_CONTROL_VIDEOALGOTYPE);
  compareWithRules(&SensorModeCfg::videoAlgoType, 3);
  take(session, tags::COM_HESK_CURRENTUIMODULE);
  compareWithRules(&SensorModeCfg::uiMode, 31);
  compareWith(getEvent("APP_TYPE"), kOverridingTypes);
  compareWith(getEvent("APP_NAME"), kOverridingNames);
  look(session, tags::MTK_HDR_FEATURE_HDR_MODE);
  look(session, tags::HESK_CONTROL_NIGHTMODE);
}

void regionFloor(Scene& scene) {
  constexpr Tag<std::int32_t> kLotRegion{0xc00e0017};

  TqcSat& sat = TqcSat::GetInstance();
  benchmark::DoNotOptimize(sat.cameras());
  benchmark::DoNotOptimize(sat.converter().GetSensorFovByCameraIdx(0));
  IMetadata& result = scene.app;
  for (std::size_t side = 0; side < 4; ++side) take(result, kLotRegion, side);
  std::vector<TagInfo> regions(1);
  sat.converter().TranslateResultRegion(regions, 1.0F, 0);
  put(result, kLotRegion, 1, 2, 3, 4);
}

void tuningFloor(Scene& scene) {
  HIF3ABufferInfo buffer;
  Hesk3AInfoManager::Get3AInfoBuf(&buffer, 1920 * 1080);
  std::memcpy(buffer.address, scene.bytes.data(), scene.bytes.size());
  put(scene.app, tags::MTK_RAW_ALGO_TUNING_BUFFER_INDEX, buffer.bufferIndex);
}

}  // namespace bench
