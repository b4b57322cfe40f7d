#include "host/CameraMetadata.h"

#include <algorithm>
#include <cstring>

#include "host/MetadataAccess.h"

namespace {

using NSCam::MRational;
using NSCam::MRect;

/// How a buffer holds items of a container's type: the number of its own type, and values an item.
template <typename T>
struct BufferType;
template <>
struct BufferType<std::uint8_t> {
  static constexpr std::uint8_t kNumber = 0;
  static constexpr std::size_t kValues = 1;
};
template <>
struct BufferType<std::int32_t> {
  static constexpr std::uint8_t kNumber = 1;
  static constexpr std::size_t kValues = 1;
};
template <>
struct BufferType<float> {
  static constexpr std::uint8_t kNumber = 2;
  static constexpr std::size_t kValues = 1;
};
template <>
struct BufferType<std::int64_t> {
  static constexpr std::uint8_t kNumber = 3;
  static constexpr std::size_t kValues = 1;
};
template <>
struct BufferType<MRational> {
  static constexpr std::uint8_t kNumber = 5;
  static constexpr std::size_t kValues = 1;
};
template <>
struct BufferType<MRect> {
  static constexpr std::uint8_t kNumber = BufferType<std::int32_t>::kNumber;
  static constexpr std::size_t kValues = sizeof(MRect) / sizeof(std::int32_t);
};

template <typename T>
camera_metadata::Entry entryOf(std::uint32_t tag, const std::vector<T>& items) {
  camera_metadata::Entry entry;
  entry.tag = tag;
  entry.type = BufferType<T>::kNumber;
  entry.count = items.size() * BufferType<T>::kValues;
  const std::size_t bytes = items.size() * sizeof(T);
  entry.words.resize(bytes / sizeof(std::uint64_t) + 1);
  std::memcpy(entry.words.data(), items.data(), bytes);
  return entry;
}

}  // namespace

camera_metadata::camera_metadata(const NSCam::IMetadata& metadata) {
  for (const NSCam::IMetadata::IEntry* entry : host::MetadataAccess::entriesByTag(metadata)) {
    entries.push_back(std::visit([&](const auto& items) { return entryOf(entry->tag(), items); },
                                 host::MetadataAccess::itemsOf(*entry)));
  }
}

int find_camera_metadata_entry(camera_metadata* buffer, std::uint32_t tag,
                               camera_metadata_entry* entry) {
  if (buffer == nullptr) return -1;
  const auto found = std::ranges::find(buffer->entries, tag, &camera_metadata::Entry::tag);
  if (found == buffer->entries.end()) return -1;
  entry->index = static_cast<std::size_t>(found - buffer->entries.begin());
  entry->tag = tag;
  entry->type = found->type;
  entry->count = found->count;
  entry->data.u8 = reinterpret_cast<std::uint8_t*>(found->words.data());
  return 0;
}
