// The record of a sensor's phase-detection pixels that the raw algorithms take.

#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/HalSensor.h"

namespace hesk {

inline constexpr std::size_t PDAF_STATS_DATA_SIZE = 2080;

using PdafRecord = std::array<std::uint8_t, PDAF_STATS_DATA_SIZE>;

/// Little-endian int32 words: words 2 and 3 of the driver's block, its two last, twice the count of
/// pairs, the pairs left and right by turns; at the end the buffer type, three times. All else is
/// 0. A count of pairs below 0 or above the block's room is taken as the nearest that is not.
inline PdafRecord pdafRecordOf(const NSCam::SensorPdBlock& block,
                               std::int32_t bufferType) noexcept {
  constexpr std::size_t kWordBytes = 4;
  constexpr std::size_t kBufferTypes = 3;

  PdafRecord record{};
  std::size_t place = 0;
  const auto put = [&](std::int32_t word) {
    const auto bits = static_cast<std::uint32_t>(word);
    for (unsigned int byte = 0; byte < kWordBytes; ++byte) {
      record[place++] = static_cast<std::uint8_t>(bits >> 8 * byte);
    }
  };
  constexpr auto kMostPairs = static_cast<std::int32_t>(NSCam::SensorPdBlock::kMostPairs);
  const std::int32_t pairs = std::clamp(block.words[4], 0, kMostPairs);
  put(block.words[2]);
  put(block.words[3]);
  for (const std::int32_t word : block.tail) put(word);
  put(2 * pairs);
  for (std::size_t i = 0; i < static_cast<std::size_t>(pairs); ++i) {
    for (const std::int32_t coordinate : block.left[i]) put(coordinate);
    for (const std::int32_t coordinate : block.right[i]) put(coordinate);
  }
  place = record.size() - kBufferTypes * kWordBytes;
  for (std::size_t i = 0; i < kBufferTypes; ++i) put(bufferType);
  return record;
}

}  // namespace hesk
