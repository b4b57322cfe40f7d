// The OEM's camera provider service.

#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/StrongPointer.h"

namespace android::hardware {

/// The result of a call to a service in another process.
template <typename T>
class Return {
 public:
  /// The call failed.
  Return() = default;
  Return(T value) : mValue(value) {}

  [[nodiscard]] T withDefault(T fallback) const { return mValue.value_or(fallback); }

 private:
  std::optional<T> mValue;
};

}  // namespace android::hardware

namespace vendor::hesk::hardware::camera::provider::V1_0 {

/// Threads: any.
class IHeskCameraProvider : public virtual android::RefBase {
 public:
  /// Selects the frame-rate cap of third-party apps, in frames per second.
  static constexpr std::int32_t kFrameRateCap = 20;

  /// Returns the service `name` without waiting for it; null if it is not running. `getStub`
  /// selects the pass-through implementation.
  static android::sp<IHeskCameraProvider> tryGetService(const std::string& name = "default",
                                                        bool getStub = false);

  /// Returns the number that `what` selects.
  virtual android::hardware::Return<std::int32_t> query(std::int32_t what) = 0;
};

}  // namespace vendor::hesk::hardware::camera::provider::V1_0
