// The simulated phone's metadata container: what of it is not inline.
//
// Requests hold tens of entries of one or two items each and are copied from stage to stage, so an
// entry of up to 16 bytes of items is 32 bytes flat, and a container is one block of memory: room
// for entries, and behind it four slots of the index for each. A quarter full, the index finds
// nearly every tag in the first slot that it looks at. A tag that was emptied keeps its place with
// no item: the index never has to forget one.

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "platform/IMetadata.h"

namespace NSCam {
namespace {

constexpr std::uint32_t kFirstCapacity = 16;
constexpr std::uint32_t kSlotsPerEntry = 4;

template <typename T>
T load(const std::byte* from) {
  T item;
  std::memcpy(&item, from, sizeof item);
  return item;
}

}  // namespace

IMetadata::IEntry& IMetadata::IEntry::operator=(const IEntry& other) {
  if (this == &other) return *this;
  const std::size_t used = other.mCount * sizeOf(other.type());
  const bool hasRoom = other.isOnHeap() && isOnHeap() && used <= mItems.heap.capacity;
  if (!hasRoom) return *this = IEntry(other);
  mTag = other.mTag;
  mCount = other.mCount;
  mForm = other.mForm;
  std::memcpy(mItems.heap.bytes, other.mItems.heap.bytes, used);
  return *this;
}

IMetadata::IEntry& IMetadata::IEntry::operator=(IEntry&& other) noexcept {
  mTag = other.mTag;
  std::swap(mCount, other.mCount);
  std::swap(mForm, other.mForm);
  std::swap(mItems, other.mItems);
  return *this;
}

/// Replaces the block that was copied with the rest of another entry by a copy of its own.
void IMetadata::IEntry::cloneHeap() {
  const std::byte* items = mItems.heap.bytes;
  const std::size_t used = mCount * sizeOf(type());
  mItems.heap = {.bytes = new std::byte[used], .capacity = used};
  std::memcpy(mItems.heap.bytes, items, used);
}

void IMetadata::IEntry::makeRoom(std::size_t byteCount) {
  const std::size_t capacity = isOnHeap() ? mItems.heap.capacity : kInlineBytes;
  if (byteCount <= capacity) return;
  const std::size_t newCapacity = std::max(byteCount, 2 * capacity);
  auto* block = new std::byte[newCapacity];
  std::memcpy(block, bytes(), mCount * sizeOf(type()));
  if (isOnHeap()) delete[] mItems.heap.bytes;
  mItems.heap = {.bytes = block, .capacity = newCapacity};
  mForm |= kOnHeap;
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
void IMetadata::IEntry::push_back(const T* items, std::size_t count, Type2Type<T>) {
  if (count == 0 || (!isEmpty() && type() != typeOf<T>())) return;
  const std::size_t used = mCount * sizeof(T);
  mForm = static_cast<std::uint8_t>((mForm & kOnHeap) | inlineFormOf<T>());
  makeRoom(used + count * sizeof(T));
  std::memcpy(bytes() + used, items, count * sizeof(T));
  mCount += static_cast<std::uint32_t>(count);
}

/// An item that is not where most are: on the heap, of another type, or not there. Integers convert
/// among each other by truncation and zero extension.
template <MetadataItem T>
T IMetadata::IEntry::itemElsewhere(std::size_t index) const noexcept {
  if (index >= mCount) return T{};
  if (type() == typeOf<T>()) return load<T>(bytes() + index * sizeof(T));
  if constexpr (std::is_integral_v<T>) {
    switch (type()) {
      case ItemType::int32: return static_cast<T>(load<std::int32_t>(bytes() + index * 4));
      case ItemType::int64: return static_cast<T>(load<std::int64_t>(bytes() + index * 8));
      case ItemType::uint8: return static_cast<T>(load<std::uint8_t>(bytes() + index));
      default: break;
    }
  }
  return T{};
}

template <MetadataItem T>
void IMetadata::IEntry::itemAt(std::size_t index, T* out, std::size_t count,
                               Type2Type<T> itemType) const {
  if (type() == typeOf<T>() && index <= mCount && count <= mCount - index) {
    if (count > 0) std::memcpy(out, bytes() + index * sizeof(T), count * sizeof(T));
    return;
  }
  for (std::size_t i = 0; i < count; ++i) out[i] = itemAt(index + i, itemType);
}

// NOLINTBEGIN(bugprone-macro-parentheses): a type takes none.
#define HOST_METADATA_ITEM(T)                                                      \
  template void IMetadata::IEntry::push_back(const T*, std::size_t, Type2Type<T>); \
  template T IMetadata::IEntry::itemElsewhere(std::size_t) const noexcept;         \
  template void IMetadata::IEntry::itemAt(std::size_t, T*, std::size_t, Type2Type<T>) const;
// NOLINTEND(bugprone-macro-parentheses)

HOST_METADATA_ITEM(std::int32_t)
HOST_METADATA_ITEM(std::int64_t)
HOST_METADATA_ITEM(std::uint8_t)
HOST_METADATA_ITEM(float)
HOST_METADATA_ITEM(MRect)
HOST_METADATA_ITEM(MRational)

#undef HOST_METADATA_ITEM

IMetadata::IMetadata(const IMetadata& other) {
  if (other.mCapacity == mCapacity) return;
  IMetadata copy;
  copy.allocate(other.mCapacity);
  if (other.mMayOwnHeaps) {
    std::uninitialized_copy_n(other.mEntries, other.mCount, copy.block());
  } else {
    // NOLINTNEXTLINE(bugprone-undefined-memory-manipulation): such entries are their bytes.
    std::memcpy(static_cast<void*>(copy.block()), other.mEntries, sizeof(IEntry) * other.mCount);
  }
  std::copy_n(other.mSlots, std::size_t{other.mSlotMask} + 1, copy.slots());
  copy.mCount = other.mCount;
  copy.mMayOwnHeaps = other.mMayOwnHeaps;
  swap(copy);
}

IMetadata::IMetadata(IMetadata&& other) noexcept { swap(other); }

IMetadata& IMetadata::operator=(const IMetadata& other) {
  IMetadata copy(other);
  swap(copy);
  return *this;
}

IMetadata& IMetadata::operator=(IMetadata&& other) noexcept {
  IMetadata taken(std::move(other));
  swap(taken);
  return *this;
}

IMetadata::~IMetadata() {
  if (mMayOwnHeaps) std::destroy_n(block(), mCount);
  if (mEntries != &kAbsent) ::operator delete(block());
}

int IMetadata::update(Tag_t tag, const IEntry& entry) {
  IEntry* place = find(tag);
  if (place == nullptr) return store(tag, IEntry(entry));
  mMayOwnHeaps |= entry.isOnHeap();
  *place = entry;  // into the room that it has
  place->mTag = tag;
  return 0;
}

/// Puts `entry` into the place of its tag, or behind the others where there is none yet.
int IMetadata::store(Tag_t tag, IEntry&& entry) {
  IEntry* place = find(tag);
  if (place == nullptr) {
    if (entry.isEmpty()) return 0;
    place = &append(tag);
  }
  mMayOwnHeaps |= entry.isOnHeap();
  *place = std::move(entry);
  place->mTag = tag;
  return 0;
}

IMetadata& IMetadata::operator+=(const IMetadata& other) {
  if (this == &other) return *this;
  for (const IEntry& entry : other.entries()) {
    if (!entry.isEmpty()) update(entry.mTag, entry);
  }
  return *this;
}

/// The place of `tag`, null where it has none.
IMetadata::IEntry* IMetadata::find(Tag_t tag) noexcept {
  const IEntry& entry = entryFor(tag);
  return &entry != mEntries ? const_cast<IEntry*>(&entry) : nullptr;
}

IMetadata::IEntry& IMetadata::append(Tag_t tag) {
  if (mCount == mCapacity) grow();
  IEntry* entry = std::construct_at(block() + mCount, tag);
  index(mCount++);
  return *entry;
}

/// Makes the block of a container that has none. What is in it is not yet anything.
void IMetadata::allocate(std::uint32_t capacity) {
  const std::size_t entryBytes = sizeof(IEntry) * capacity;
  const std::size_t slotCount = std::size_t{kSlotsPerEntry} * capacity;
  auto* block =
      static_cast<std::byte*>(::operator new(entryBytes + sizeof(std::uint32_t) * slotCount));
  mEntries = reinterpret_cast<const IEntry*>(block);
  mSlots = reinterpret_cast<const std::uint32_t*>(block + entryBytes);
  mSlotMask = static_cast<std::uint32_t>(slotCount - 1);
  mCapacity = capacity;
}

void IMetadata::grow() {
  IMetadata larger;
  larger.allocate(std::max(kFirstCapacity, 2 * mCapacity));
  std::construct_at(larger.block());
  std::fill_n(larger.slots(), std::size_t{larger.mSlotMask} + 1, 0);
  if (mCount > 1) std::uninitialized_move_n(block() + 1, mCount - 1, larger.block() + 1);
  larger.mMayOwnHeaps = mMayOwnHeaps;
  for (; larger.mCount < mCount; ++larger.mCount) larger.index(larger.mCount);
  swap(larger);
}

/// Puts a position into the first free slot for its tag.
void IMetadata::index(std::uint32_t position) noexcept {
  std::uint32_t slot = firstSlot(mEntries[position].mTag);
  while (mSlots[slot] != 0) slot = (slot + 1) & mSlotMask;
  slots()[slot] = position;
}

/// All but the absent one.
std::span<const IMetadata::IEntry> IMetadata::entries() const noexcept {
  return {mEntries + 1, mCount - 1};
}

// A container that has a block may write to it.
IMetadata::IEntry* IMetadata::block() noexcept { return const_cast<IEntry*>(mEntries); }
std::uint32_t* IMetadata::slots() noexcept { return const_cast<std::uint32_t*>(mSlots); }

void IMetadata::swap(IMetadata& other) noexcept {
  std::swap(mEntries, other.mEntries);
  std::swap(mSlots, other.mSlots);
  std::swap(mSlotMask, other.mSlotMask);
  std::swap(mCount, other.mCount);
  std::swap(mCapacity, other.mCapacity);
  std::swap(mMayOwnHeaps, other.mMayOwnHeaps);
}

}  // namespace NSCam
