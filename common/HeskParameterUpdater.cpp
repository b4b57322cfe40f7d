// The updaters of the sensors: one slot an index, what construction learns of the sensor, and the
// preview's size and shape.
//
// Reading order of the class: this file, then the hooks, each the list of its steps
// (updater/SessionParams.cpp, updater/RequestMeta.cpp, updater/ResultMeta.cpp), and the files of
// their steps.

#include "common/HeskParameterUpdater.h"

#include <array>
#include <utility>

#include "common/math/AspectFit.h"
#include "common/math/FieldOfView.h"
#include "common/tags/Metadata.h"
#include "common/updater/StaticMetadata.h"
#include "common/updater/UpdaterLog.h"

using namespace hesk;

HeskParameterUpdater::HeskParameterUpdater(int instanceId) : mInstanceId(instanceId) {
  constexpr log::Operation kOperation = updaterOperation("HeskParameterUpdater");

  const NSCam::IMetadata* statics = staticCharacteristics(mInstanceId);
  const float width = read(statics, tags::ANDROID_SENSOR_INFO_PHYSICAL_SIZE, 0.0F, 0);
  const float height = read(statics, tags::ANDROID_SENSOR_INFO_PHYSICAL_SIZE, 0.0F, 1);
  const float focalLength = read(statics, tags::ANDROID_LENS_INFO_AVAILABLE_FOCAL_LENGTHS);
  mPrimaryCameraDiagonalFov = diagonalFovDegrees(width, height, focalLength);
  HESK_LOGD(kOperation,
            "physicalWidth: %fmm, physicalHeight:%fmm, focalLength:%fmm, "
            "mPrimaryCameraDiagonalFov:%d instanceId:%d",
            width, height, focalLength, mPrimaryCameraDiagonalFov, mInstanceId);
}

template <int InstanceId>
HeskParameterUpdater* HeskParameterUpdater::slot() {
  static HeskParameterUpdater updater(InstanceId);
  return &updater;
}

HeskParameterUpdater* HeskParameterUpdater::createInstance(int instanceId) {
  constexpr log::Operation kOperation = updaterOperation("createInstance");
  static constexpr auto kSlots = []<int... Ids>(std::integer_sequence<int, Ids...>) {
    return std::array{&HeskParameterUpdater::slot<Ids>...};
  }
  (std::make_integer_sequence<int, kMaxInstanceId + 1>{});

  // As unsigned a negative index is past the end, too.
  const auto index = static_cast<unsigned int>(instanceId);
  if (index > kMaxInstanceId) {
    HESK_LOGD(kOperation, "HeskParameterUpdater createInstance failed!");
    return nullptr;
  }
  return kSlots[index]();
}

void HeskParameterUpdater::setPreviewSize(NSCam::MSize size) {
  constexpr log::Operation kOperation = updaterOperation("setPreviewSize");

  mPreviewSize = size;
  HESK_LOGD(kOperation, "setPreviewSize [%d/%d]", size.w, size.h);
}

void HeskParameterUpdater::matchAspectRatio(const NSCam::MSize* reference, NSCam::MSize* size) {
  *size = fitToRatio(*size, aspectRatio(*reference));
}
