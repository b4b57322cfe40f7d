// The layout of a sensor's phase-detection pixels in the format of the raw algorithms.

#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/HalSensor.h"

namespace hesk {

inline constexpr std::size_t PDAF_STATS_DATA_SIZE = 2080;

using PdafRecord = std::array<std::uint8_t, PDAF_STATS_DATA_SIZE>;

/// Returns a record of little-endian int32 words: words 2 and 3 of the driver's block, its two last
/// words, twice the number of pairs, and the left and right pairs alternately; the last three words
/// are the buffer type. All other bytes are 0. The number of pairs is clamped to the size of the
/// block.
inline PdafRecord pdafRecordOf(const NSCam::SensorPdBlock& block,
                               std::int32_t bufferType) noexcept {
  constexpr std::size_t kWordBytes = 4;
  constexpr std::size_t kBufferTypes = 3;

  PdafRecord record{};
  std::size_t offset = 0;
  const auto put = [&](std::int32_t word) {
    const auto bits = static_cast<std::uint32_t>(word);
    for (unsigned int byte = 0; byte < kWordBytes; ++byte) {
      record[offset++] = static_cast<std::uint8_t>(bits >> 8 * byte);
    }
  };
  constexpr auto kMaxPairs = static_cast<std::int32_t>(NSCam::SensorPdBlock::kMaxPairs);
  const std::int32_t pairs = std::clamp(block.words[4], 0, kMaxPairs);
  put(block.words[2]);
  put(block.words[3]);
  for (const std::int32_t word : block.tail) put(word);
  put(2 * pairs);
  for (std::size_t i = 0; i < static_cast<std::size_t>(pairs); ++i) {
    for (const std::int32_t coordinate : block.left[i]) put(coordinate);
    for (const std::int32_t coordinate : block.right[i]) put(coordinate);
  }
  offset = record.size() - kBufferTypes * kWordBytes;
  for (std::size_t i = 0; i < kBufferTypes; ++i) put(bufferType);
  return record;
}

}  // namespace hesk
