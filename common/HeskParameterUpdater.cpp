// Creates the updaters, one per sensor index, and handles the preview size.
//
// Reading order of the class: this file; the hooks, each a list of its steps (SessionParams.cpp,
// RequestMeta.cpp, ResultMeta.cpp and CaptureRaw.cpp in updater/); the files of the steps.

#include "common/HeskParameterUpdater.h"

#include <array>

#include "common/math/AspectFit.h"
#include "common/math/FieldOfView.h"
#include "common/tags/Metadata.h"
#include "common/updater/StaticMetadata.h"
#include "common/updater/UpdaterLog.h"

using namespace hesk;

HeskParameterUpdater::HeskParameterUpdater(int instanceId) : mInstanceId(instanceId) {
  constexpr log::Operation kOperation{kUpdaterSource, "HeskParameterUpdater"};

  const NSCam::IMetadata* statics = deviceCharacteristics(mInstanceId);
  const float width = readItem(statics, tags::ANDROID_SENSOR_INFO_PHYSICAL_SIZE, 0);
  const float height = readItem(statics, tags::ANDROID_SENSOR_INFO_PHYSICAL_SIZE, 1);
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
  constexpr log::Operation kOperation{kUpdaterSource, "createInstance"};
  static constexpr std::array kSlots{&slot<0>, &slot<1>, &slot<2>, &slot<3>, &slot<4>, &slot<5>,
                                     &slot<6>, &slot<7>, &slot<8>, &slot<9>, &slot<10>};
  static_assert(kSlots.size() == kMaxInstanceId + 1);

  // A negative index becomes a large unsigned number.
  const auto index = static_cast<unsigned int>(instanceId);
  if (index > kMaxInstanceId) {
    HESK_LOGD(kOperation, "HeskParameterUpdater createInstance failed!");
    return nullptr;
  }
  return kSlots[index]();
}

void HeskParameterUpdater::setPreviewSize(NSCam::MSize size) {
  constexpr log::Operation kOperation{kUpdaterSource, "setPreviewSize"};

  mPreviewSize = size;
  HESK_LOGD(kOperation, "setPreviewSize [%d/%d]", size.w, size.h);
}

void HeskParameterUpdater::matchAspectRatio(const NSCam::MSize* reference, NSCam::MSize* size) {
  *size = fitToRatio(*size, aspectRatio(*reference));
}
