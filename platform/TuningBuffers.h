// The shared buffers of the maker's 3A information manager.

#pragma once

#include <cstdint>

/// One of the manager's buffers.
struct HIF3ABufferInfo {
  std::int32_t fd = -1;  // of the shared memory; below 1: no buffer
  std::uint32_t bufferSize = 0;
  std::int32_t bufferIndex = 0;
  void* address = nullptr;  // where it is mapped in this process
};

/// Threads: any.
class Hesk3AInfoManager {
 public:
  /// Fills `info` with a buffer of at least `requestedSize` bytes, which stays the manager's and is
  /// no other thread's; leaves what it cannot give.
  static void Get3AInfoBuf(HIF3ABufferInfo* info, unsigned int requestedSize);
};
