// Uses the installed library as a camera pipeline does: through its public headers alone. Says what
// does not hold, and ends with 1.

#include <cstdint>
#include <cstdio>
#include <memory>

#include "common/HeskParameterUpdater.h"
#include "common/HeskSensorModeControl.h"
#include "common/sensormode/SensorScenario.h"

namespace {

constexpr NSCam::IMetadata::Tag_t kRequestNo = 0xc00300a2;  // HESK_CONTROL_REQUESTNO

class VideoStream : public NSCam::v3::IImageStreamInfo {
 public:
  [[nodiscard]] std::uint64_t getUsageForConsumer() const override {
    return GRALLOC_USAGE_HW_VIDEO_ENCODER;
  }
  [[nodiscard]] NSCam::MSize getImgSize() const override { return {1920, 1080}; }
  int setTransform(std::uint32_t) override { return 0; }
};

bool holds(bool condition, const char* what) {
  if (!condition) std::printf("does not hold: %s\n", what);
  return condition;
}

bool updaterWorks() {
  HeskParameterUpdater* updater = HeskParameterUpdater::createInstance(0);
  if (!holds(updater != nullptr, "sensor 0 has an updater")) return false;

  NSCam::IMetadata session;
  updater->updateSessionParams(&session, {{1, new VideoStream}});
  NSCam::IMetadata result;
  updater->updateResultMeta(&result, 100);
  return holds(result.entryFor(kRequestNo).itemAt(0, NSCam::Type2Type<std::int32_t>()) == 100,
               "a result carries the number of its request");
}

bool sensorModeWorks() {
  auto* control = HeskSensorModeControl::createInstance(0);
  auto video = std::make_shared<HeskSensorModeControl::StreamInfo>();
  video->hasVideoConsumer = true;
  NSCam::IMetadata session;
  return holds(control->decideSensorScenario(&session, video) == hesk::NORMAL_VIDEO,
               "a stream for video takes the video scenario");
}

}  // namespace

int main() { return updaterWorks() && sensorModeWorks() ? 0 : 1; }
