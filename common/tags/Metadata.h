// The functions with which the hooks read and write metadata containers.
//
// Every function accepts a null container: it is read as an empty one, and a write to it is skipped
// and returns -1. An absent entry, an index past the end and an item of another type are not
// errors.
//
// Items have the type of their tag. `writeAs` writes another type; each use states the reason.

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

/// The status of a write to a null container.
inline constexpr int kNoContainer = -1;

/// Returns true if the container has an entry of `tag`, with or without items.
template <typename T>
[[nodiscard]] inline bool hasEntry(const NSCam::IMetadata* metadata, Tag<T> tag) {
  return metadata != nullptr && metadata->entryFor(tag.value).tag() == tag.value;
}

/// Returns true if the container has an item of `tag`.
template <typename T>
[[nodiscard]] inline bool has(const NSCam::IMetadata* metadata, Tag<T> tag) {
  return metadata != nullptr && !metadata->entryFor(tag.value).isEmpty();
}

/// Returns item 0 of `tag`, if there is one.
template <typename T>
[[nodiscard]] inline std::optional<T> readIfPresent(const NSCam::IMetadata* metadata, Tag<T> tag) {
  if (metadata == nullptr) return {};
  const auto& entry = metadata->entryFor(tag.value);
  if (entry.isEmpty()) return {};
  return entry.itemAt(0, NSCam::Type2Type<T>{});
}

/// Returns item 0 of `tag`, or `fallback` if there is none.
template <typename T>
[[nodiscard]] inline T read(const NSCam::IMetadata* metadata, Tag<T> tag,
                            std::type_identity_t<T> fallback = {}) {
  return readIfPresent(metadata, tag).value_or(fallback);
}

/// Returns item `index` of `tag`, or zero if there is none.
template <typename T>
[[nodiscard]] inline T readItem(const NSCam::IMetadata* metadata, Tag<T> tag, std::size_t index) {
  return metadata != nullptr ? metadata->entryFor(tag.value).itemAt(index, NSCam::Type2Type<T>{})
                             : T{};
}

/// Returns the number of items of `tag`.
template <typename T>
[[nodiscard]] inline std::size_t count(const NSCam::IMetadata* metadata, Tag<T> tag) {
  return metadata != nullptr ? metadata->entryFor(tag.value).count() : 0;
}

/// Fills `items` with the first items of `tag`; missing items are zero.
template <typename T>
inline void readAll(const NSCam::IMetadata* metadata, Tag<T> tag,
                    std::span<std::type_identity_t<T>> items) {
  std::ranges::fill(items, T{});
  if (metadata == nullptr) return;
  const NSCam::IMetadata::IEntry& entry = metadata->entryFor(tag.value);
  const std::size_t present = std::min(items.size(), entry.count());
  for (std::size_t i = 0; i < present; ++i) items[i] = entry.itemAt(i, NSCam::Type2Type<T>{});
}

/// Replaces the entry of `tag` by `items` of type `As`. Returns the container's status.
template <typename As, typename T, std::convertible_to<As>... Items>
inline int writeAs(NSCam::IMetadata* metadata, Tag<T> tag, Items... items) {
  if (metadata == nullptr) return kNoContainer;
  NSCam::IMetadata::IEntry entry(tag.value);
  (entry.push_back(static_cast<As>(items), NSCam::Type2Type<As>{}), ...);
  return metadata->update(tag.value, entry);
}

/// Replaces the entry of `tag` by `items`. Returns the container's status.
template <typename T, std::same_as<T>... Items>
inline int write(NSCam::IMetadata* metadata, Tag<T> tag, Items... items) {
  return writeAs<T>(metadata, tag, items...);
}

/// Replaces the entry of `tag` by the items of a list. Returns the container's status.
template <typename T>
inline int writeAll(NSCam::IMetadata* metadata, Tag<T> tag,
                    std::span<const std::type_identity_t<T>> items) {
  if (metadata == nullptr) return kNoContainer;
  NSCam::IMetadata::IEntry entry(tag.value);
  for (const T& item : items) entry.push_back(item, NSCam::Type2Type<T>{});
  return metadata->update(tag.value, entry);
}

/// Replaces the entry of `tag` by one without items. Returns the container's status.
template <typename T>
inline int clear(NSCam::IMetadata* metadata, Tag<T> tag) {
  return writeAs<T>(metadata, tag);
}

/// Replaces item `index` of `tag`. Does nothing if there is none; writes the entry unchanged if its
/// items have another type.
template <typename T>
inline void replaceItem(NSCam::IMetadata* metadata, Tag<T> tag, std::size_t index,
                        std::type_identity_t<T> item) {
  if (index >= count(metadata, tag)) return;
  NSCam::IMetadata::IEntry entry = metadata->entryFor(tag.value);
  entry.replaceItemAt(index, item, NSCam::Type2Type<T>{});
  metadata->update(tag.value, entry);
}

}  // namespace hesk
