// The simulated phone's metadata container.
//
// Requests hold tens of entries of one or two items each and are copied from stage to stage, so an
// entry of up to 16 bytes is 32 bytes flat, a container is one array of them and one index of
// positions, and copying it costs two allocations. A tag that was emptied keeps its place with no
// item: the index never has to forget one.

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <utility>

#include "platform/IMetadata.h"

namespace NSCam {
namespace {

constexpr std::size_t kFirstSlots = 16;

constinit const IMetadata::IEntry kAbsent;

/// Integer items convert among each other by truncation and zero extension.
template <typename T>
T integerAs(std::int64_t value) {
  return static_cast<T>(value);
}

template <typename T>
T load(const std::byte* from) {
  T item;
  std::memcpy(&item, from, sizeof item);
  return item;
}

}  // namespace

IMetadata::IEntry::IEntry(const IEntry& other)
    : mTag(other.mTag), mCount(other.mCount), mType(other.mType) {
  copyItems(other);
}

IMetadata::IEntry::IEntry(IEntry&& other) noexcept
    : mTag(other.mTag), mCount(other.mCount), mType(other.mType) {
  stealItems(other);
}

IMetadata::IEntry& IMetadata::IEntry::operator=(const IEntry& other) {
  if (this == &other) return *this;
  const std::size_t used = other.mCount * sizeOf(other.mType);
  const bool hasRoom = !other.isInline() && !isInline() && used <= mHeapBytes;
  if (!hasRoom) releaseItems();
  mTag = other.mTag;
  mCount = other.mCount;
  mType = other.mType;
  if (hasRoom) {
    std::memcpy(mItems.heap, other.mItems.heap, used);
  } else {
    copyItems(other);
  }
  return *this;
}

IMetadata::IEntry& IMetadata::IEntry::operator=(IEntry&& other) noexcept {
  if (this != &other) {
    releaseItems();
    mTag = other.mTag;
    mCount = other.mCount;
    mType = other.mType;
    stealItems(other);
  }
  return *this;
}

IMetadata::IEntry::~IEntry() { releaseItems(); }

void IMetadata::IEntry::copyItems(const IEntry& other) {
  if (other.isInline()) {
    mItems = other.mItems;
    return;
  }
  const std::size_t used = mCount * sizeOf(mType);
  mItems.heap = new std::byte[used];
  mHeapBytes = static_cast<std::uint32_t>(used);
  std::memcpy(mItems.heap, other.mItems.heap, used);
}

void IMetadata::IEntry::stealItems(IEntry& other) noexcept {
  mItems = other.mItems;
  mHeapBytes = std::exchange(other.mHeapBytes, 0);
  other.mCount = 0;
  other.mType = ItemType::none;
}

void IMetadata::IEntry::releaseItems() noexcept {
  if (!isInline()) {
    delete[] mItems.heap;
    mHeapBytes = 0;
  }
}

void IMetadata::IEntry::growTo(std::size_t byteCount) {
  const std::size_t capacity = isInline() ? kInlineBytes : mHeapBytes;
  if (byteCount <= capacity) return;
  const std::size_t newCapacity = std::max(byteCount, 2 * capacity);
  auto* block = new std::byte[newCapacity];
  std::memcpy(block, bytes(), mCount * sizeOf(mType));
  releaseItems();
  mItems.heap = block;
  mHeapBytes = static_cast<std::uint32_t>(newCapacity);
}

template <MetadataItem T>
constexpr IMetadata::IEntry::ItemType IMetadata::IEntry::typeOf() noexcept {
  if constexpr (std::is_same_v<T, std::int32_t>) return ItemType::int32;
  if constexpr (std::is_same_v<T, std::int64_t>) return ItemType::int64;
  if constexpr (std::is_same_v<T, std::uint8_t>) return ItemType::uint8;
  if constexpr (std::is_same_v<T, float>) return ItemType::float32;
  if constexpr (std::is_same_v<T, MRect>) return ItemType::rect;
  if constexpr (std::is_same_v<T, MRational>) return ItemType::rational;
}

std::size_t IMetadata::IEntry::sizeOf(ItemType type) noexcept {
  constexpr std::array<std::uint8_t, 7> kSizes{0,
                                               sizeof(std::int32_t),
                                               sizeof(std::int64_t),
                                               sizeof(std::uint8_t),
                                               sizeof(float),
                                               sizeof(MRect),
                                               sizeof(MRational)};
  return kSizes.at(static_cast<std::size_t>(type));
}

template <MetadataItem T>
bool IMetadata::IEntry::hasType(Type2Type<T>) const noexcept {
  return !isEmpty() && mType == typeOf<T>();
}

template <MetadataItem T>
void IMetadata::IEntry::push_back(const T& item, Type2Type<T> type) {
  push_back(&item, 1, type);
}

template <MetadataItem T>
void IMetadata::IEntry::push_back(const T* items, std::size_t count, Type2Type<T>) {
  if (count == 0) return;
  if (isEmpty()) {
    mType = typeOf<T>();
  } else if (mType != typeOf<T>()) {
    return;
  }
  const std::size_t used = mCount * sizeof(T);
  growTo(used + count * sizeof(T));
  std::memcpy(bytes() + used, items, count * sizeof(T));
  mCount += static_cast<std::uint32_t>(count);
}

template <MetadataItem T>
void IMetadata::IEntry::replaceItemAt(std::size_t index, const T& item, Type2Type<T>) {
  if (index < mCount && mType == typeOf<T>()) {
    std::memcpy(bytes() + index * sizeof(T), &item, sizeof(T));
  }
}

template <MetadataItem T>
T IMetadata::IEntry::itemAt(std::size_t index, Type2Type<T>) const {
  if (index >= mCount) return T{};
  if (mType == typeOf<T>()) return load<T>(bytes() + index * sizeof(T));
  if constexpr (std::is_integral_v<T>) {
    switch (mType) {
      case ItemType::int32: return integerAs<T>(load<std::int32_t>(bytes() + index * 4));
      case ItemType::int64: return integerAs<T>(load<std::int64_t>(bytes() + index * 8));
      case ItemType::uint8: return integerAs<T>(load<std::uint8_t>(bytes() + index));
      default: break;
    }
  }
  return T{};
}

template <MetadataItem T>
void IMetadata::IEntry::itemAt(std::size_t index, T* out, std::size_t count,
                               Type2Type<T> type) const {
  if (mType == typeOf<T>() && index <= mCount && count <= mCount - index) {
    if (count > 0) std::memcpy(out, bytes() + index * sizeof(T), count * sizeof(T));
    return;
  }
  for (std::size_t i = 0; i < count; ++i) out[i] = itemAt(index + i, type);
}

// NOLINTBEGIN(bugprone-macro-parentheses): a type takes none.
#define HOST_METADATA_ITEM(T)                                                          \
  template bool IMetadata::IEntry::hasType(Type2Type<T>) const noexcept;               \
  template void IMetadata::IEntry::push_back(const T&, Type2Type<T>);                  \
  template void IMetadata::IEntry::push_back(const T*, std::size_t, Type2Type<T>);     \
  template void IMetadata::IEntry::replaceItemAt(std::size_t, const T&, Type2Type<T>); \
  template T IMetadata::IEntry::itemAt(std::size_t, Type2Type<T>) const;               \
  template void IMetadata::IEntry::itemAt(std::size_t, T*, std::size_t, Type2Type<T>) const;
// NOLINTEND(bugprone-macro-parentheses)

HOST_METADATA_ITEM(std::int32_t)
HOST_METADATA_ITEM(std::int64_t)
HOST_METADATA_ITEM(std::uint8_t)
HOST_METADATA_ITEM(float)
HOST_METADATA_ITEM(MRect)
HOST_METADATA_ITEM(MRational)

#undef HOST_METADATA_ITEM

IMetadata::IMetadata() noexcept = default;
IMetadata::IMetadata(const IMetadata& other) = default;
IMetadata::IMetadata(IMetadata&& other) noexcept = default;
IMetadata& IMetadata::operator=(const IMetadata& other) = default;
IMetadata& IMetadata::operator=(IMetadata&& other) noexcept = default;
IMetadata::~IMetadata() = default;

const IMetadata::IEntry& IMetadata::entryFor(Tag_t tag) const noexcept {
  const IEntry* entry = find(tag);
  return entry != nullptr ? *entry : kAbsent;
}

int IMetadata::update(Tag_t tag, const IEntry& entry) {
  IEntry* place = find(tag);
  if (place == nullptr) return update(tag, IEntry(entry));
  *place = entry;  // into the room that it has
  place->mTag = tag;
  return 0;
}

int IMetadata::update(Tag_t tag, IEntry&& entry) {
  IEntry* place = find(tag);
  if (place == nullptr) {
    if (entry.isEmpty()) return 0;
    place = &append(tag);
  }
  *place = std::move(entry);
  place->mTag = tag;
  return 0;
}

IMetadata& IMetadata::operator+=(const IMetadata& other) {
  if (this == &other) return *this;
  for (const IEntry& entry : other.mEntries) {
    if (!entry.isEmpty()) update(entry.mTag, entry);
  }
  return *this;
}

std::size_t IMetadata::firstSlot(Tag_t tag) const noexcept {
  // The golden ratio spreads neighbours over the whole range; its high bits are the mixed ones.
  const std::uint32_t hash = tag * 0x9e3779b1U;
  const auto mask = static_cast<std::uint32_t>(mIndex.size() - 1);
  return hash >> std::countl_zero(mask);
}

const IMetadata::IEntry* IMetadata::find(Tag_t tag) const noexcept {
  if (mIndex.empty()) return nullptr;
  for (std::size_t slot = firstSlot(tag);; slot = (slot + 1) & (mIndex.size() - 1)) {
    const std::uint32_t position = mIndex[slot];
    if (position == 0) return nullptr;
    if (mEntries[position - 1].mTag == tag) return &mEntries[position - 1];
  }
}

IMetadata::IEntry* IMetadata::find(Tag_t tag) noexcept {
  return const_cast<IEntry*>(std::as_const(*this).find(tag));
}

IMetadata::IEntry& IMetadata::append(Tag_t tag) {
  mEntries.emplace_back(tag);
  // At most half full, so that a probe ends after a slot or two.
  if (2 * mEntries.size() > mIndex.size()) {
    rebuildIndex(std::max(kFirstSlots, 2 * mIndex.size()));
  } else {
    indexEntry(mEntries.size() - 1);
  }
  return mEntries.back();
}

void IMetadata::rebuildIndex(std::size_t slotCount) {
  mIndex.assign(slotCount, 0);
  for (std::size_t position = 0; position < mEntries.size(); ++position) indexEntry(position);
}

void IMetadata::indexEntry(std::size_t position) noexcept {
  std::size_t slot = firstSlot(mEntries[position].mTag);
  while (mIndex[slot] != 0) slot = (slot + 1) & (mIndex.size() - 1);
  mIndex[slot] = static_cast<std::uint32_t>(position + 1);
}

}  // namespace NSCam
