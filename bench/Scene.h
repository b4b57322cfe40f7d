// What a hook of the benchmark is called on: a phone of the maker's app, containers, streams.

#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "common/HeskParameterUpdater.h"
#include "common/HeskSensorModeControl.h"
#include "host/Phone.h"

namespace bench {

// Each kind of scene has an updater of its own, which keeps what it learns.
inline constexpr int kPreviewSensor = 0;
inline constexpr int kDecisionSensor = 1;
inline constexpr int kStillSensor = 3;
inline constexpr int kSessionSensor = 4;
inline constexpr int kResultSensor = 5;
inline constexpr int kRawSensor = 6;

inline constexpr std::size_t kTuningBytes = 2'000'000;

/// Its phone is the one of the moment as long as the scene stands; effects are not recorded, the
/// log is closed.
struct Scene {
  host::Phone phone;
  NSCam::IMetadata app;
  NSCam::IMetadata hal;
  NSCam::IMetadata out;
  HeskParameterUpdater::ImageStreams streams;
  std::shared_ptr<HeskSensorModeControl::StreamInfo> info =
      std::make_shared<HeskSensorModeControl::StreamInfo>();
  std::vector<char> bytes;
  unsigned int requestNo = 0;

  Scene() {
    phone.eventStore.set("APP_TYPE", "heskCamera");
    phone.eventStore.set("APP_NAME", "heskCamera");
    phone.properties.set("ro.product.model.zdm", "KX0107");
    phone.effects.setRecording(false);
    host::LogSink::openLevels({});
  }
};

}  // namespace bench
