// update3ACaptureRawParameter: copies the 3A state of a still capture's frame for the raw
// algorithms.

#include <array>
#include <bit>
#include <span>

#include "common/HeskParameterUpdater.h"
#include "common/math/AeResult.h"
#include "common/tags/Metadata.h"
#include "common/updater/SharedSteps.h"
#include "common/updater/UpdaterLog.h"

namespace {

using namespace hesk;
using NSCam::IMetadata;
using NSCam::MRational;

constexpr log::Operation kOperation{kUpdaterSource, "update3ACaptureRawParameter"};

AeInput readAe(const IMetadata* appMeta, const IMetadata* halMeta) {
  return {.luxIndex = read(appMeta, tags::MTK_3A_AE_LUX_INDEX),
          .expIndex = read(appMeta, tags::MTK_3A_AE_EXP_INDEX),
          .sensorGain = read(appMeta, tags::MTK_3A_AE_SENSOR_GAIN),
          .ispGain = read(appMeta, tags::MTK_3A_AE_ISP_GAIN),
          .adrcGain = read(halMeta, tags::MTK_3A_AE_ADRC_GAIN),
          .exposureNs = read(appMeta, tags::ANDROID_SENSOR_EXPOSURE_TIME)};
}

void writeAeResult(IMetadata* outMeta, const AeResult& ae) {
  HESK_LOGD(kOperation,
            "[%s]AEResult: luxIndex:%f, expIndex:%f, realGain:%f, safeGain:%f, longGain:%f, "
            "sensorGain:%f, adrcGain:%f, darkBoostGain:%f, ispGain:%f, sensitivityShort:%f, "
            "sensitivitySafe:%f, sensitivityLong :%f, sensorGainShort:%f, ispGainShort%f, "
            "expTimeShort:%f, sensorGainNormal:%f, ispGainNormal:%f, expTimeNormal:%f, "
            "adrcGainNormal:%f, sensitivityRatio:%f, expTimeRatio:%f, gainRatio:%f",
            kOperation.name, ae.luxIndex, ae.expIndex, ae.realGain, ae.safeGain, ae.longGain,
            ae.sensorGain, ae.adrcGain, ae.darkBoostGain, ae.ispGain, ae.sensitivityShort,
            ae.sensitivitySafe, ae.sensitivityLong, ae.sensorGainShort, ae.ispGainShort,
            ae.expTimeShort, ae.sensorGainNormal, ae.ispGainNormal, ae.expTimeNormal,
            ae.adrcGainNormal, ae.sensitivityRatio, ae.expTimeRatio, ae.gainRatio);
  using Floats = std::array<float, sizeof(AeResult) / sizeof(float)>;
  writeAll(outMeta, tags::HESK_CONTROL_AE_RESULT, std::bit_cast<Floats>(ae));
}

void writeLightFlag(IMetadata* outMeta, std::int32_t luxIndex) {
  constexpr std::int32_t kFirstDarkLux = 311;
  const std::int32_t lightEnv = luxIndex < kFirstDarkLux ? 1 : 0;
  write(outMeta, tags::MTK_RAW_ALGO_ISLIGHTENV, lightEnv);
  HESK_LOG_RECORD(kOperation, log::kDebug, " ISLIGHTENV  %d", lightEnv);
}

/// Writes the inverse of the neutral color point, infinite if it is absent.
void writeAwbGains(IMetadata* outMeta, const IMetadata* appMeta) {
  std::array<MRational, 3> neutral;
  neutral.fill({.numerator = 0, .denominator = 1});
  if (count(appMeta, tags::ANDROID_SENSOR_NEUTRAL_COLOR_POINT) == neutral.size()) {
    readAll(appMeta, tags::ANDROID_SENSOR_NEUTRAL_COLOR_POINT, std::span(neutral));
  }
  const auto gain = [](MRational point) {
    return static_cast<float>(point.denominator) / static_cast<float>(point.numerator);
  };
  const float red = gain(neutral[0]);
  const float green = gain(neutral[1]);
  const float blue = gain(neutral[2]);
  const std::int32_t result = read(appMeta, tags::MTK_3A_AWB_RESULT_INFO);
  write(outMeta, tags::MTK_RAW_ALGO_AWB_GAIN_R, red);
  write(outMeta, tags::MTK_RAW_ALGO_AWB_GAIN_G, green);
  write(outMeta, tags::MTK_RAW_ALGO_AWB_GAIN_B, blue);
  write(outMeta, tags::MTK_RAW_ALGO_AWB_RESULT_INFO, result);
  HESK_LOGD(kOperation, "[%s]AWBEResult: %f %f %f %d", kOperation.name, red, green, blue, result);
}

void writeAwbCalibration(IMetadata* outMeta, const IMetadata* appMeta) {
  std::array<float, 4> otp{};
  if (count(appMeta, tags::MTK_3A_AWB_OTP_DATA) == otp.size()) {
    readAll(appMeta, tags::MTK_3A_AWB_OTP_DATA, std::span(otp));
  }
  HESK_LOGD(kOperation, "[%s]awbOtpData: %f %f %f %f", kOperation.name, otp[0], otp[1], otp[2],
            otp[3]);
  writeAll(outMeta, tags::MTK_RAW_ALGO_AWB_OTP_DATA, otp);
}

/// Writes as many bytes as the size tag states; zeros if the statistics have another size.
void writeAwbStatistics(IMetadata* outMeta, const IMetadata* appMeta) {
  constexpr std::int32_t kMaxBytes = 73'728;

  const std::int32_t size = read(appMeta, tags::MTK_3A_AWB_STATS_SIZE);
  HESK_LOGD(kOperation, "[%s]awbStatsSize: %d", kOperation.name, size);
  const bool isValidSize = 0 <= size && size <= kMaxBytes;
  if (!isValidSize) {
    HESK_LOGE(kOperation, "AWB statistics size %d is outside 0 to %d", size, kMaxBytes);
  }
  write(outMeta, tags::MTK_RAW_ALGO_AWB_STATS_SIZE, size);

  std::array<std::uint8_t, kMaxBytes> buffer{};
  const std::span bytes(buffer.data(), isValidSize ? static_cast<std::size_t>(size) : 0);
  if (count(appMeta, tags::MTK_3A_AWB_STATS_DATA) == bytes.size()) {
    readAll(appMeta, tags::MTK_3A_AWB_STATS_DATA, bytes);
  }
  writeAll(outMeta, tags::MTK_RAW_ALGO_AWB_STATS_DATA, bytes);
}

}  // namespace

void HeskParameterUpdater::update3ACaptureRawParameter(IMetadata* appMeta, IMetadata* halMeta,
                                                       IMetadata* outMeta) {
  const AeInput ae = readAe(appMeta, halMeta);
  writeAeResult(outMeta, aeResultOf(ae));
  writeLightFlag(outMeta, ae.luxIndex);
  writeAwbGains(outMeta, appMeta);
  write(outMeta, tags::MTK_RAW_ALGO_SENSITIVITY, read(appMeta, tags::ANDROID_SENSOR_SENSITIVITY));
  writeAwbCalibration(outMeta, appMeta);
  writeAwbStatistics(outMeta, appMeta);
  copyColourTemperatureUse(appMeta, outMeta, kOperation);
}
