// Uses the public headers of the library and of the simulated phone. Prints a failed check and
// exits with 1.

#include <cstdint>
#include <cstdio>
#include <memory>

#include "common/HeskParameterUpdater.h"
#include "common/HeskSensorModeControl.h"
#include "common/sensormode/SensorScenario.h"
#include "host/Phone.h"

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
  if (!condition) std::printf("failed: %s\n", what);
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
               "a result has the number of its request");
}

bool phoneWorks() {
  host::Phone phone;
  phone.properties.set("ro.product.model.zdm", "KX0105");
  phone.eventStore.set("APP_TYPE", "Wechat");
  auto* control = HeskSensorModeControl::createInstance(1);
  auto preview = std::make_shared<HeskSensorModeControl::StreamInfo>();
  preview->mainOutputSize = {640, 480};
  NSCam::IMetadata session;
  return holds(control->decideSensorScenario(&session, preview) == hesk::CUSTOM2,
               "an override uses the event store of the simulated phone");
}

}  // namespace

int main() { return updaterWorks() && phoneWorks() ? 0 : 1; }
