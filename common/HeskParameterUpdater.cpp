// The updaters of the sensors: one slot an index, and what construction learns of the sensor.
//
// Reading order of the class: this file, then the hooks, each the list of its steps
// (updater/SessionParams.cpp, updater/RequestMeta.cpp, updater/ResultMeta.cpp), and the files of
// their steps.

#include "common/HeskParameterUpdater.h"

#include <array>
#include <utility>

#include "common/math/FieldOfView.h"
#include "common/tags/Metadata.h"
#include "common/updater/StaticMetadata.h"
#include "common/updater/UpdaterLog.h"

HeskParameterUpdater::HeskParameterUpdater(int instanceId) : mInstanceId(instanceId) {
  using namespace hesk;
  const NSCam::IMetadata* statics = staticCharacteristics(mInstanceId);
  const float width = read(statics, tags::ANDROID_SENSOR_INFO_PHYSICAL_SIZE, 0.0F, 0);
  const float height = read(statics, tags::ANDROID_SENSOR_INFO_PHYSICAL_SIZE, 0.0F, 1);
  const float focalLength = read(statics, tags::ANDROID_LENS_INFO_AVAILABLE_FOCAL_LENGTHS);
  mPrimaryCameraDiagonalFov = diagonalFovDegrees(width, height, focalLength);
  HESK_LOGD(updaterOperation("HeskParameterUpdater"),
            "[%s] physicalWidth: %fmm, physicalHeight:%fmm, focalLength:%fmm, "
            "mPrimaryCameraDiagonalFov:%d instanceId:%d",
            updaterOperation("HeskParameterUpdater").name, width, height, focalLength,
            mPrimaryCameraDiagonalFov, mInstanceId);
}

template <int InstanceId>
HeskParameterUpdater* HeskParameterUpdater::slot() {
  static HeskParameterUpdater updater(InstanceId);
  return &updater;
}

HeskParameterUpdater* HeskParameterUpdater::createInstance(int instanceId) {
  static constexpr auto kSlots = []<int... Ids>(std::integer_sequence<int, Ids...>) {
    return std::array{&HeskParameterUpdater::slot<Ids>...};
  }
  (std::make_integer_sequence<int, kMaxInstanceId + 1>{});

  // As unsigned a negative index is past the end, too.
  const auto index = static_cast<unsigned int>(instanceId);
  if (index > kMaxInstanceId) {
    HESK_LOGD(hesk::updaterOperation("createInstance"),
              "[%s] HeskParameterUpdater createInstance failed!",
              hesk::updaterOperation("createInstance").name);
    return nullptr;
  }
  return kSlots[index]();
}
