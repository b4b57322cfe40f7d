// The tuning buffers of the simulated phone.

#pragma once

#include <cstddef>
#include <cstdlib>
#include <map>
#include <memory>
#include <mutex>
#include <span>
#include <thread>

namespace host {

/// One buffer per thread, allocated when it is needed: frames that are processed in parallel do not
/// share a buffer. Any thread.
class TuningBuffer {
 public:
  /// Returns the thread's buffer of at least `size` bytes. A buffer that is too small is replaced
  /// by a new one, filled with zeros. Returns null if there is no buffer.
  void* map(std::size_t size) {
    const std::lock_guard lock(mMutex);
    Block& block = mBlocks[std::this_thread::get_id()];
    if (size > block.size) {
      block.bytes.reset(static_cast<std::byte*>(std::calloc(size, 1)));
      block.size = block.bytes != nullptr ? size : 0;
    }
    return block.bytes.get();
  }

  /// Frees the buffers of all threads.
  void clear() {
    const std::lock_guard lock(mMutex);
    mBlocks.clear();
  }

  /// Returns the content of the thread's buffer.
  [[nodiscard]] std::span<const std::byte> bytes() const {
    const std::lock_guard lock(mMutex);
    const auto found = mBlocks.find(std::this_thread::get_id());
    if (found == mBlocks.end()) return {};
    return {found->second.bytes.get(), found->second.size};
  }

 private:
  struct Free {
    void operator()(std::byte* bytes) const { std::free(bytes); }
  };
  struct Block {
    std::unique_ptr<std::byte, Free> bytes;
    std::size_t size = 0;
  };

  mutable std::mutex mMutex;
  std::map<std::thread::id, Block> mBlocks;
};

}  // namespace host
