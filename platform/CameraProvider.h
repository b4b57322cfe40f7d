// The maker's camera provider service.

#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/StrongPointer.h"

namespace android::hardware {

/// The answer of a service in another process, or that it could not be had.
template <typename T>
class Return {
 public:
  /// The service did not answer.
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
  /// The service `name` without waiting for it; null where it is not running. `getStub` asks for
  /// the pass-through implementation.
  static android::sp<IHeskCameraProvider> tryGetService(const std::string& name = "default",
                                                        bool getStub = false);

  /// A number that the service keeps: 20 asks for the frame rate in frames a second that apps of
  /// other makers are held to.
  virtual android::hardware::Return<std::int32_t> query(std::int32_t what) = 0;
};

}  // namespace vendor::hesk::hardware::camera::provider::V1_0
