#include "common/updater/CameraProviderService.h"

#include <mutex>

#include "platform/CameraProvider.h"

namespace {

using vendor::hesk::hardware::camera::provider::V1_0::IHeskCameraProvider;

android::sp<IHeskCameraProvider> cameraProvider() {
  static std::mutex mutex;
  static android::sp<IHeskCameraProvider> service;
  const std::lock_guard lock(mutex);
  if (service == nullptr) service = IHeskCameraProvider::tryGetService("default", false);
  return service;
}

}  // namespace

std::int32_t hesk::providerFrameRateCap() {
  constexpr std::int32_t kFrameRateCap = 20;
  const android::sp<IHeskCameraProvider> service = cameraProvider();
  return service == nullptr ? 0 : service->query(kFrameRateCap).withDefault(0);
}
