// Android's strong pointers to reference-counted objects.

#pragma once

#include <atomic>
#include <cstdint>
#include <utility>

namespace android {

/// An object that is deleted with its last strong pointer. Any thread may copy and drop pointers.
class RefBase {
 public:
  /// Add and remove a strong pointer; `id` identifies its holder for debugging.
  void incStrong(const void* id) const;
  void decStrong(const void* id) const;

  RefBase(const RefBase&) = delete;
  RefBase& operator=(const RefBase&) = delete;

 protected:
  RefBase() = default;
  virtual ~RefBase() = default;

 private:
  mutable std::atomic<std::int32_t> mStrong = 0;
};

/// A strong pointer to a `T`, or null.
template <typename T>
class sp {
 public:
  sp() = default;
  // Implicit, as on the phone: sp<T> stream = new T(...);
  sp(T* object) : mObject(object) {
    if (mObject != nullptr) mObject->incStrong(this);
  }
  sp(const sp& other) : sp(other.mObject) {}
  sp(sp&& other) noexcept : mObject(std::exchange(other.mObject, nullptr)) {}
  sp& operator=(sp other) noexcept {
    std::swap(mObject, other.mObject);
    return *this;
  }
  ~sp() {
    if (mObject != nullptr) mObject->decStrong(this);
  }

  T& operator*() const { return *mObject; }
  T* operator->() const { return mObject; }

  friend bool operator==(const sp& pointer, std::nullptr_t) { return pointer.mObject == nullptr; }

 private:
  T* mObject = nullptr;
};

}  // namespace android
