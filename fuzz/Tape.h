// Tapes: bytes that a fuzzer makes up, read as numbers, flags, lists and texts.
//
// Every sequence of bytes is a tape. Behind its end stand zeros, and a byte that would mean nothing
// is taken for one that means something.
//
// What can stand on a tape has a function `transfer(tape, value)`, which fills the value from a
// TapeReader and hands it to a TapeWriter. It is written once for both: what the writer writes, the
// reader reads.

#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "fuzz/NumberTape.h"

namespace fuzz {

class TapeReader {
 public:
  explicit TapeReader(std::span<const std::uint8_t> tape) : mRest(tape) {}

  [[nodiscard]] std::size_t bytesLeft() const { return mRest.size(); }

  template <typename T>
  void number(T& value) {
    std::array<std::uint8_t, sizeof(T)> bytes{};
    const std::size_t count = std::min(bytes.size(), mRest.size());
    std::copy_n(mRest.begin(), count, bytes.begin());
    mRest = mRest.subspan(count);
    value = std::bit_cast<T>(bytes);
  }

  /// How many items the lists from here on may have together: a few bytes must not fill the memory.
  void limitItems(std::size_t count) { mItemsLeft = count; }

  /// How many of `count` items a list may have.
  std::size_t granted(std::size_t count) {
    count = std::min(count, mItemsLeft);
    mItemsLeft -= count;
    return count;
  }

 private:
  std::span<const std::uint8_t> mRest;
  std::size_t mItemsLeft = 0;
};

class TapeWriter {
 public:
  template <typename T>
  void number(T value) {
    const auto bytes = std::bit_cast<std::array<std::uint8_t, sizeof(T)>>(value);
    mTape.insert(mTape.end(), bytes.begin(), bytes.end());
  }

  [[nodiscard]] static std::size_t bytesLeft() { return SIZE_MAX; }
  static void limitItems(std::size_t /*count*/) {}
  [[nodiscard]] static std::size_t granted(std::size_t count) { return count; }

  [[nodiscard]] const std::vector<std::uint8_t>& tape() const { return mTape; }

 private:
  std::vector<std::uint8_t> mTape;
};

template <typename Tape, typename T>
requires(std::is_arithmetic_v<T> && sizeof(T) == 1) void transfer(Tape& tape, T& number) {
  tape.number(number);
}

template <typename Tape>
void transfer(Tape& tape, bool& flag) {
  std::uint8_t byte = flag ? 1 : 0;
  transfer(tape, byte);
  flag = byte % 2 != 0;
}

/// Numbers and what is made of them. Short lists take a byte for their length. Behind the byte 255
/// stand the number of items that are listed, and how often the list is doubled by more of the
/// last.
template <typename Tape, typename List>
void transferPlainItems(Tape& tape, List& list) {
  constexpr std::uint8_t kLong = 255;
  constexpr std::uint8_t kMostDoublings = 20;

  auto length = static_cast<std::uint8_t>(std::min<std::size_t>(list.size(), kLong));
  transfer(tape, length);
  std::size_t listed = length;
  std::size_t count = length;
  if (length == kLong) {
    auto longLength = static_cast<std::uint16_t>(std::min<std::size_t>(list.size(), UINT16_MAX));
    std::uint8_t doublings = 0;
    tape.number(longLength);
    tape.number(doublings);
    listed = longLength;
    count = doublings <= kMostDoublings ? listed << doublings : listed;
  }
  count = tape.granted(count);
  listed = std::min(listed, count);
  list.resize(listed);
  for (auto& item : list) transfer(tape, item);
  if (listed > 0) {
    const auto last = list.back();
    list.resize(count, last);
  }
}

/// Anything else. A list ends with its tape.
template <typename Tape, typename T>
void transferItems(Tape& tape, std::vector<T>& list) {
  auto length = static_cast<std::uint8_t>(std::min<std::size_t>(list.size(), UINT8_MAX));
  transfer(tape, length);
  list.resize(length);
  std::size_t done = 0;
  for (; done < list.size() && tape.bytesLeft() > 0; ++done) transfer(tape, list[done]);
  list.resize(done);
}

template <typename Tape, typename T>
void transfer(Tape& tape, std::vector<T>& list) {
  if constexpr (std::is_trivially_copyable_v<T>) {
    transferPlainItems(tape, list);
  } else {
    transferItems(tape, list);
  }
}

template <typename Tape>
void transfer(Tape& tape, std::string& text) {
  transferPlainItems(tape, text);
}

template <typename Tape, typename T, std::size_t Size>
void transfer(Tape& tape, std::array<T, Size>& items) {
  for (T& item : items) transfer(tape, item);
}

template <typename Tape, typename T>
void transfer(Tape& tape, std::optional<T>& value) {
  bool isThere = value.has_value();
  transfer(tape, isThere);
  if (!isThere) return;
  if (!value) value.emplace();
  transfer(tape, *value);
}

template <typename Tape, typename First, typename Second>
void transfer(Tape& tape, std::pair<First, Second>& pair) {
  transfer(tape, pair.first);
  transfer(tape, pair.second);
}

template <typename Tape, typename Key, typename Value, typename Order>
void transfer(Tape& tape, std::map<Key, Value, Order>& map) {
  std::vector<std::pair<Key, Value>> pairs(map.begin(), map.end());
  transfer(tape, pairs);
  map = std::map<Key, Value, Order>(pairs.begin(), pairs.end());
}

/// One behind the other.
template <typename Tape, typename... Values>
void transferAll(Tape& tape, Values&... values) {
  (transfer(tape, values), ...);
}

}  // namespace fuzz
