// The shared tuning buffers of the simulated phone.

#pragma once

#include <cstddef>
#include <cstdlib>
#include <map>
#include <memory>
#include <mutex>
#include <span>
#include <thread>

namespace host {

/// Memory that is there once it is asked for. Each thread has its own: no two frames that are under
/// way at once share a buffer.
class TuningBuffer {
 public:
  /// The thread's buffer, of `size` bytes from its first use on; null where there is no memory.
  void* map(std::size_t size) {
    const std::lock_guard lock(mMutex);
    Block& block = mBlocks[std::this_thread::get_id()];
    if (block.bytes == nullptr && size > 0) {
      block.bytes.reset(static_cast<std::byte*>(std::calloc(size, 1)));
      block.size = block.bytes != nullptr ? size : 0;
    }
    return block.bytes.get();
  }

  /// Frees every buffer.
  void clear() {
    const std::lock_guard lock(mMutex);
    mBlocks.clear();
  }

  /// What the thread's buffer holds.
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
