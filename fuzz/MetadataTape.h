// Metadata containers on tapes: any tag, type, count and value, those of the catalogue more often
// than others.

#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <variant>
#include <vector>

#include "common/tags/TagCatalogue.h"
#include "fuzz/Tape.h"
#include "host/MetadataAccess.h"
#include "platform/Geometry.h"
#include "platform/IMetadata.h"

namespace fuzz {

template <typename Tape>
void transfer(Tape& tape, NSCam::MSize& size) {
  transferAll(tape, size.w, size.h);
}

template <typename Tape>
void transfer(Tape& tape, NSCam::MRect& rect) {
  transferAll(tape, rect.x, rect.y, rect.w, rect.h);
}

template <typename Tape>
void transfer(Tape& tape, NSCam::MRational& rational) {
  transferAll(tape, rational.numerator, rational.denominator);
}

/// A byte is a tag of the catalogue by its place there, one of the highest announces four bytes of
/// any tag.
template <typename Tape>
void transferTag(Tape& tape, std::uint32_t& tag) {
  constexpr std::uint8_t kFirstOther = 240;
  static_assert(hesk::kTagCatalogue.size() <= kFirstOther);

  const hesk::TagDescription* info = hesk::findTag(tag);
  auto place =
      info != nullptr ? static_cast<std::uint8_t>(info - hesk::kTagCatalogue.begin()) : kFirstOther;
  transfer(tape, place);
  if (place >= kFirstOther) {
    transfer(tape, tag);
  } else {
    tag = hesk::kTagCatalogue.at(place % hesk::kTagCatalogue.size()).value;
  }
}

struct MetadataEntry {
  std::uint32_t tag = 0;
  host::ItemList items;
};

/// An empty list of each type, in the order of the variant's alternatives.
inline const std::array<host::ItemList, 6>& emptyLists() {
  static const std::array<host::ItemList, 6> kLists{
      std::vector<std::int32_t>{}, std::vector<std::int64_t>{}, std::vector<std::uint8_t>{},
      std::vector<float>{},        std::vector<NSCam::MRect>{}, std::vector<NSCam::MRational>{}};
  return kLists;
}

/// The place among `emptyLists` of the type that the catalogue gives a tag; 0 for other tags.
inline std::size_t listedType(std::uint32_t tag) {
  const hesk::TagDescription* info = hesk::findTag(tag);
  if (info == nullptr) return 0;
  const auto* found = std::ranges::find(emptyLists(), info->type, host::typeName);
  return static_cast<std::size_t>(found - emptyLists().begin());
}

/// A type is counted from the one that the catalogue gives the tag, so that most entries have it.
template <typename Tape>
void transfer(Tape& tape, MetadataEntry& entry) {
  transferTag(tape, entry.tag);
  const std::size_t types = emptyLists().size();
  const std::size_t listed = listedType(entry.tag);
  auto step = static_cast<std::uint8_t>((entry.items.index() + types - listed) % types);
  transfer(tape, step);
  const std::size_t type = (listed + step) % types;
  if (type != entry.items.index()) entry.items = emptyLists().at(type);
  std::visit([&](auto& items) { transfer(tape, items); }, entry.items);
}

inline std::vector<MetadataEntry> entriesOf(const NSCam::IMetadata& metadata) {
  std::vector<MetadataEntry> entries;
  for (const NSCam::IMetadata::IEntry* entry : host::MetadataAccess::entriesByTag(metadata)) {
    entries.push_back({entry->tag(), host::MetadataAccess::itemsOf(*entry)});
  }
  return entries;
}

inline NSCam::IMetadata metadataFrom(const std::vector<MetadataEntry>& entries) {
  NSCam::IMetadata metadata;
  for (const MetadataEntry& entry : entries) {
    NSCam::IMetadata::IEntry items(entry.tag);
    std::visit(
        [&]<typename T>(const std::vector<T>& list) {
          for (const T& item : list) items.push_back(item, NSCam::Type2Type<T>{});
        },
        entry.items);
    metadata.update(entry.tag, items);
  }
  return metadata;
}

template <typename Tape>
void transfer(Tape& tape, NSCam::IMetadata& metadata) {
  std::vector<MetadataEntry> entries = entriesOf(metadata);
  transfer(tape, entries);
  metadata = metadataFrom(entries);
}

}  // namespace fuzz
