// The shared buffers of the OEM's 3A information manager.

#pragma once

#include <cstdint>

/// A buffer of the manager.
struct HIF3ABufferInfo {
  std::int32_t fd = -1;  // of the shared memory; no buffer if below 1
  std::uint32_t bufferSize = 0;
  std::int32_t bufferIndex = 0;
  void* address = nullptr;  // where it is mapped in this process
};

/// Threads: any.
class Hesk3AInfoManager {
 public:
  /// Fills `info` with a buffer of at least `requestedSize` bytes; does not change it if there is
  /// none. The manager keeps the buffer and passes it to no other thread.
  static void Get3AInfoBuf(HIF3ABufferInfo* info, unsigned int requestedSize);
};
