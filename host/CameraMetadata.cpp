#include "host/CameraMetadata.h"

#include <algorithm>
#include <cstring>
#include <type_traits>
#include <variant>

#include "host/MetadataAccess.h"
#include "host/Observer.h"

namespace {

using NSCam::MRational;
using NSCam::MRect;

/// Returns the number of the buffer type for items of type `T`.
template <typename T>
constexpr std::uint8_t bufferType() {
  if constexpr (std::is_same_v<T, std::uint8_t>) return 0;
  if constexpr (std::is_same_v<T, std::int32_t> || std::is_same_v<T, MRect>) return 1;
  if constexpr (std::is_same_v<T, float>) return 2;
  if constexpr (std::is_same_v<T, std::int64_t>) return 3;
  if constexpr (std::is_same_v<T, MRational>) return 5;
}

/// Number of buffer values per item.
template <typename T>
constexpr std::size_t kValuesOfItem = 1;
template <>
constexpr std::size_t kValuesOfItem<MRect> = sizeof(MRect) / sizeof(std::int32_t);

template <typename T>
camera_metadata::Entry entryOf(std::uint32_t tag, const std::vector<T>& items) {
  camera_metadata::Entry entry;
  entry.tag = tag;
  entry.type = bufferType<T>();
  entry.count = items.size() * kValuesOfItem<T>;
  const std::size_t bytes = items.size() * sizeof(T);
  entry.words.resize(bytes / sizeof(std::uint64_t) + 1);
  std::memcpy(entry.words.data(), items.data(), bytes);
  return entry;
}

}  // namespace

camera_metadata::camera_metadata(const NSCam::IMetadata& metadata) : source(&metadata) {
  for (const NSCam::IMetadata::IEntry* entry : host::MetadataAccess::entriesByTag(metadata)) {
    entries.push_back(std::visit([&](const auto& items) { return entryOf(entry->tag(), items); },
                                 host::MetadataAccess::itemsOf(*entry)));
  }
}

int find_camera_metadata_entry(camera_metadata* buffer, std::uint32_t tag,
                               camera_metadata_entry* entry) {
  if (buffer == nullptr) return -1;
  host::observe([&] { return host::MetadataRead{buffer->source, tag}; });
  const auto found = std::ranges::find(buffer->entries, tag, &camera_metadata::Entry::tag);
  if (found == buffer->entries.end()) return -1;
  entry->index = static_cast<std::size_t>(found - buffer->entries.begin());
  entry->tag = tag;
  entry->type = found->type;
  entry->count = found->count;
  entry->data.u8 = reinterpret_cast<std::uint8_t*>(found->words.data());
  return 0;
}
