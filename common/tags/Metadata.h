// The vocabulary in which the hooks speak to a metadata container: is it there, read an item or a
// default, write these items, replace one, clear. An entry is always built under its own tag.
//
// Every operation takes a null container: it reads as an empty one, and a write to it is skipped
// with status -1. An absent entry, an index past the end and an item of another type never fail.
//
// A tag knows its item type. `writeAs` writes another one; each use says why.

#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <optional>
#include <span>
#include <type_traits>

#include "common/tags/Tags.h"
#include "platform/IMetadata.h"

namespace hesk {

/// What a write to a null container returns.
inline constexpr int kNoContainer = -1;

/// Whether there is an entry of `tag`, with or without items.
template <typename T>
[[nodiscard]] inline bool hasEntry(const NSCam::IMetadata* metadata, Tag<T> tag) {
  return metadata != nullptr && metadata->entryFor(tag.value).tag() == tag.value;
}

/// Whether the entry of `tag` holds an item.
template <typename T>
[[nodiscard]] inline bool has(const NSCam::IMetadata* metadata, Tag<T> tag) {
  return metadata != nullptr && !metadata->entryFor(tag.value).isEmpty();
}

/// Item 0 of `tag`; none where the entry holds no item at all.
template <typename T>
[[nodiscard]] inline std::optional<T> readIfPresent(const NSCam::IMetadata* metadata, Tag<T> tag) {
  if (metadata == nullptr) return {};
  const auto& entry = metadata->entryFor(tag.value);
  if (entry.isEmpty()) return {};
  return entry.itemAt(0, NSCam::Type2Type<T>{});
}

/// Item `index` of `tag`; `fallback` where the entry holds no item at all.
template <typename T>
[[nodiscard]] inline T read(const NSCam::IMetadata* metadata, Tag<T> tag,
                            std::type_identity_t<T> fallback = {}, std::size_t index = 0) {
  if (metadata == nullptr) return fallback;
  const auto& entry = metadata->entryFor(tag.value);
  return entry.isEmpty() ? fallback : entry.itemAt(index, NSCam::Type2Type<T>{});
}

/// The number of items of `tag`.
template <typename T>
[[nodiscard]] inline std::size_t count(const NSCam::IMetadata* metadata, Tag<T> tag) {
  return metadata != nullptr ? metadata->entryFor(tag.value).count() : 0;
}

/// Fills `items` with the first items of `tag`; what the entry does not hold becomes zero.
template <typename T>
inline void readAll(const NSCam::IMetadata* metadata, Tag<T> tag,
                    std::span<std::type_identity_t<T>> items) {
  std::ranges::fill(items, T{});
  if (metadata == nullptr) return;
  const NSCam::IMetadata::IEntry& entry = metadata->entryFor(tag.value);
  const std::size_t held = std::min(items.size(), entry.count());
  for (std::size_t i = 0; i < held; ++i) items[i] = entry.itemAt(i, NSCam::Type2Type<T>{});
}

/// Makes `items` the whole entry of `tag`, in the type `As`. Returns the container's status.
template <typename As, typename T, std::convertible_to<As>... Items>
inline int writeAs(NSCam::IMetadata* metadata, Tag<T> tag, Items... items) {
  if (metadata == nullptr) return kNoContainer;
  NSCam::IMetadata::IEntry entry(tag.value);
  (entry.push_back(static_cast<As>(items), NSCam::Type2Type<As>{}), ...);
  return metadata->update(tag.value, entry);
}

/// Makes `items` the whole entry of `tag`. Returns the container's status.
template <typename T, std::same_as<T>... Items>
inline int write(NSCam::IMetadata* metadata, Tag<T> tag, Items... items) {
  return writeAs<T>(metadata, tag, items...);
}

/// Makes the items of `items` the whole entry of `tag`. Returns the container's status.
template <typename T>
inline int writeAll(NSCam::IMetadata* metadata, Tag<T> tag,
                    std::span<const std::type_identity_t<T>> items) {
  if (metadata == nullptr) return kNoContainer;
  NSCam::IMetadata::IEntry entry(tag.value);
  for (const T& item : items) entry.push_back(item, NSCam::Type2Type<T>{});
  return metadata->update(tag.value, entry);
}

/// Empties the entry of `tag`. Returns the container's status.
template <typename T>
inline int clear(NSCam::IMetadata* metadata, Tag<T> tag) {
  return writeAs<T>(metadata, tag);
}

/// Replaces item `index` of `tag`, where there is one, by an item of the entry's own type; else
/// nothing is written.
template <typename T>
inline void replaceItem(NSCam::IMetadata* metadata, Tag<T> tag, std::size_t index,
                        std::type_identity_t<T> item) {
  if (index >= count(metadata, tag)) return;
  NSCam::IMetadata::IEntry entry = metadata->entryFor(tag.value);
  entry.replaceItemAt(index, item, NSCam::Type2Type<T>{});
  metadata->update(tag.value, entry);
}

}  // namespace hesk
