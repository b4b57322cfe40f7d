// The shared tuning buffer of the simulated phone.

#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <span>

namespace host {

/// Memory that is there once it is asked for.
class TuningBuffer {
 public:
  /// The buffer, of `size` bytes from its first use on; null where there is no memory.
  void* map(std::size_t size) {
    const std::lock_guard lock(mMutex);
    if (mBytes == nullptr && size > 0) {
      mBytes.reset(static_cast<std::byte*>(std::calloc(size, 1)));
      mSize = mBytes != nullptr ? size : 0;
    }
    return mBytes.get();
  }

  /// What it holds.
  [[nodiscard]] std::span<const std::byte> bytes() const { return {mBytes.get(), mSize}; }

 private:
  struct Free {
    void operator()(std::byte* bytes) const { std::free(bytes); }
  };

  std::mutex mMutex;
  std::unique_ptr<std::byte, Free> mBytes;
  std::size_t mSize = 0;
};

}  // namespace host
