// The camera HAL's metadata container: tagged entries, each a sequence of items of one type.
//
// Threads: a container has no lock. Any number of threads may read one that nobody writes.
//
// On a phone this header forwards to the vendor's container, which has the same operations. The
// private parts below are the host's own. Entries stand in the order in which their tags first
// came, behind them in the same block of memory a hash index of their positions; up to 16 bytes of
// items live inside the entry. What hooks do all the time stands inline at the end of this file: to
// find an entry, to read an item, to write a few. The rest is in host/Metadata.cpp.

#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <type_traits>
#include <utility>

#include "platform/Geometry.h"

namespace host {
struct MetadataAccess;
}

namespace NSCam {

/// Selects an overload by item type.
template <typename T>
struct Type2Type {
  using OriginalType = T;
};

/// The six types that an item can have.
template <typename T>
concept MetadataItem = std::is_same_v<T, std::int32_t> || std::is_same_v<T, std::int64_t> ||
    std::is_same_v<T, std::uint8_t> || std::is_same_v<T, float> || std::is_same_v<T, MRect> ||
    std::is_same_v<T, MRational>;

class IMetadata {
 public:
  using Tag_t = std::uint32_t;

  /// The items of one tag. An entry takes the type of the first item pushed into it.
  class IEntry {
   public:
    constexpr explicit IEntry(Tag_t tag = 0) noexcept : mTag(tag) {}
    IEntry(const IEntry& other);
    IEntry(IEntry&& other) noexcept;
    IEntry& operator=(const IEntry& other);
    IEntry& operator=(IEntry&& other) noexcept;
    constexpr ~IEntry() {
      if (isOnHeap()) delete[] mItems.heap.bytes;
    }

    [[nodiscard]] Tag_t tag() const noexcept { return mTag; }
    [[nodiscard]] bool isEmpty() const noexcept { return mCount == 0; }
    [[nodiscard]] std::size_t count() const noexcept { return mCount; }

    /// Whether the entry has items and they are of type `T`.
    template <MetadataItem T>
    [[nodiscard]] bool hasType(Type2Type<T>) const noexcept;

    /// Appends an item. An item of another type than the entry's changes nothing.
    template <MetadataItem T>
    void push_back(const T& item, Type2Type<T>);

    /// Appends `count` items.
    template <MetadataItem T>
    void push_back(const T* items, std::size_t count, Type2Type<T>);

    /// Replaces the item at `index`. An index past the end, or an item of another type than the
    /// entry's, changes nothing.
    template <MetadataItem T>
    void replaceItemAt(std::size_t index, const T& item, Type2Type<T>);

    /// The item at `index`. Past the end: zero. int32, int64 and uint8 items are read as one
    /// another by truncation and (from uint8) zero extension; every other mismatch of types reads
    /// zero.
    template <MetadataItem T>
    [[nodiscard]] T itemAt(std::size_t index, Type2Type<T>) const;

    /// Copies the `count` items from `index` on to `out`, each as `itemAt` reads it.
    template <MetadataItem T>
    void itemAt(std::size_t index, T* out, std::size_t count, Type2Type<T>) const;

   private:
    friend class IMetadata;
    friend struct host::MetadataAccess;

    static constexpr std::size_t kWordBytes = sizeof(std::uint64_t);
    static constexpr std::size_t kInlineBytes = 2 * kWordBytes;

    enum class ItemType : std::uint8_t { none, int32, int64, uint8, float32, rect, rational };

    /// Where and as what the items stand: an ItemType, and this bit where they are on the heap. An
    /// entry without items has none of it.
    static constexpr std::uint8_t kOnHeap = 0x80;

    template <MetadataItem T>
    static constexpr ItemType typeOf() noexcept {
      if constexpr (std::is_same_v<T, std::int32_t>) return ItemType::int32;
      if constexpr (std::is_same_v<T, std::int64_t>) return ItemType::int64;
      if constexpr (std::is_same_v<T, std::uint8_t>) return ItemType::uint8;
      if constexpr (std::is_same_v<T, float>) return ItemType::float32;
      if constexpr (std::is_same_v<T, MRect>) return ItemType::rect;
      if constexpr (std::is_same_v<T, MRational>) return ItemType::rational;
    }
    template <MetadataItem T>
    static constexpr std::uint8_t inlineFormOf() noexcept {
      return static_cast<std::uint8_t>(typeOf<T>());
    }
    static std::size_t sizeOf(ItemType type) noexcept;

    [[nodiscard]] constexpr bool isOnHeap() const noexcept { return (mForm & kOnHeap) != 0; }
    [[nodiscard]] constexpr ItemType type() const noexcept {
      return static_cast<ItemType>(mForm & ~kOnHeap);
    }
    [[nodiscard]] std::byte* bytes() noexcept {
      return isOnHeap() ? mItems.heap.bytes : reinterpret_cast<std::byte*>(mItems.words);
    }
    [[nodiscard]] const std::byte* bytes() const noexcept {
      return isOnHeap() ? mItems.heap.bytes : reinterpret_cast<const std::byte*>(mItems.words);
    }
    template <MetadataItem T>
    static constexpr std::uint64_t bitsOf(const T& item) noexcept;
    template <MetadataItem T>
    [[nodiscard]] T itemElsewhere(std::size_t index) const noexcept;
    void cloneHeap();
    void makeRoom(std::size_t byteCount);

    Tag_t mTag;
    std::uint32_t mCount = 0;
    std::uint8_t mForm = 0;
    union Items {
      // What no item fills is zero. Words, and not bytes, so that a compiler keeps an entry that is
      // filled and handed on at once in registers.
      std::uint64_t words[2];
      struct Heap {
        std::byte* bytes;
        std::size_t capacity;
      } heap;
    } mItems{};
  };

  IMetadata() noexcept = default;
  IMetadata(const IMetadata& other);
  IMetadata(IMetadata&& other) noexcept;
  IMetadata& operator=(const IMetadata& other);
  IMetadata& operator=(IMetadata&& other) noexcept;
  ~IMetadata();

  /// The entry of `tag`, or an empty entry. The reference holds until the container changes.
  [[nodiscard]] const IEntry& entryFor(Tag_t tag) const noexcept;

  /// Replaces the whole entry of `tag`; an entry without items empties the tag. Returns the status,
  /// 0 for done.
  int update(Tag_t tag, const IEntry& entry);
  int update(Tag_t tag, IEntry&& entry);

  /// Takes every entry of `other`, in place of this container's entries of the same tags.
  IMetadata& operator+=(const IMetadata& other);

 private:
  friend struct host::MetadataAccess;

  static const IEntry kAbsent;
  static const std::uint32_t kNoSlots[1];

  [[nodiscard]] std::uint32_t firstSlot(Tag_t tag) const noexcept;
  [[nodiscard]] IEntry* find(Tag_t tag) noexcept;
  int store(Tag_t tag, IEntry&& entry);
  IEntry& append(Tag_t tag);
  void allocate(std::uint32_t capacity);
  void grow();
  void index(std::uint32_t position) noexcept;
  [[nodiscard]] std::span<const IEntry> entries() const noexcept;
  [[nodiscard]] IEntry* block() noexcept;
  [[nodiscard]] std::uint32_t* slots() noexcept;
  void swap(IMetadata& other) noexcept;

  const IEntry* mEntries = &kAbsent;       // the block; the first is the absent entry, always
  const std::uint32_t* mSlots = kNoSlots;  // of the index: positions; 0 in a free one
  std::uint32_t mSlotMask = 0;
  std::uint32_t mCount = 1;
  std::uint32_t mCapacity = 1;
  bool mMayOwnHeaps = false;  // whether an entry has ever had items on the heap
};

inline IMetadata::IEntry::IEntry(const IEntry& other)
    : mTag(other.mTag), mCount(other.mCount), mForm(other.mForm), mItems(other.mItems) {
  if (isOnHeap()) cloneHeap();
}

inline IMetadata::IEntry::IEntry(IEntry&& other) noexcept
    : mTag(other.mTag),
      mCount(std::exchange(other.mCount, 0)),
      mForm(std::exchange(other.mForm, 0)),
      mItems(std::exchange(other.mItems, {})) {}

template <MetadataItem T>
bool IMetadata::IEntry::hasType(Type2Type<T>) const noexcept {
  return type() == typeOf<T>();
}

/// The bits of an item that is smaller than a word, as they stand in the low end of one.
template <MetadataItem T>
constexpr std::uint64_t IMetadata::IEntry::bitsOf(const T& item) noexcept {
  static_assert(std::endian::native == std::endian::little);
  if constexpr (std::is_same_v<T, std::uint8_t>) return item;
  if constexpr (sizeof(T) == sizeof(std::uint32_t)) return std::bit_cast<std::uint32_t>(item);
  if constexpr (sizeof(T) == kWordBytes) return std::bit_cast<std::uint64_t>(item);
}

template <MetadataItem T>
void IMetadata::IEntry::push_back(const T& item, Type2Type<T> itemType) {
  const std::size_t used = mCount * sizeof(T);
  const bool isRoomInside = mForm == 0 || (mForm == inlineFormOf<T>() && used < kInlineBytes);
  if (!isRoomInside) return push_back(&item, 1, itemType);
  if constexpr (sizeof(T) == kInlineBytes) {
    const auto words = std::bit_cast<std::array<std::uint64_t, 2>>(item);
    mItems.words[0] = words[0];
    mItems.words[1] = words[1];
  } else {
    mItems.words[used / kWordBytes] |= bitsOf(item) << (8 * (used % kWordBytes));
  }
  mForm = inlineFormOf<T>();
  ++mCount;
}

template <MetadataItem T>
void IMetadata::IEntry::replaceItemAt(std::size_t index, const T& item, Type2Type<T>) {
  if (index < mCount && type() == typeOf<T>()) {
    std::memcpy(bytes() + index * sizeof(T), &item, sizeof(T));
  }
}

template <MetadataItem T>
T IMetadata::IEntry::itemAt(std::size_t index, Type2Type<T>) const {
  // An entry of a type has an item: the first one needs no look at the count.
  if (mForm == inlineFormOf<T>() && (index == 0 || index < mCount)) [[likely]] {
    T item;
    std::memcpy(&item, reinterpret_cast<const std::byte*>(mItems.words) + index * sizeof(T),
                sizeof(T));
    return item;
  }
  return isEmpty() ? T{} : itemElsewhere<T>(index);
}

inline constexpr IMetadata::IEntry IMetadata::kAbsent{};
inline constexpr std::uint32_t IMetadata::kNoSlots[1]{};

inline std::uint32_t IMetadata::firstSlot(Tag_t tag) const noexcept {
  // The golden ratio spreads neighbours over the whole range; its middle bits are the mixed ones.
  return static_cast<std::uint32_t>(tag * 0x9e3779b97f4a7c15U >> 40U) & mSlotMask;
}

inline const IMetadata::IEntry& IMetadata::entryFor(Tag_t tag) const noexcept {
  for (std::uint32_t slot = firstSlot(tag);; slot = (slot + 1) & mSlotMask) {
    const std::uint32_t position = mSlots[slot];
    const IEntry& entry = mEntries[position];
    if (entry.mTag == tag || position == 0) [[likely]]
      return entry;
  }
}

inline int IMetadata::update(Tag_t tag, IEntry&& entry) {
  const IEntry& found = entryFor(tag);
  if (&found == mEntries || found.isOnHeap() || entry.isOnHeap()) {
    // Another object, so that `entry` itself may live in registers.
    IEntry taken(std::move(entry));
    return store(tag, std::move(taken));
  }
  auto& place = const_cast<IEntry&>(found);
  place.mCount = entry.mCount;
  place.mForm = entry.mForm;
  place.mItems.words[0] = entry.mItems.words[0];
  place.mItems.words[1] = entry.mItems.words[1];
  return 0;
}

}  // namespace NSCam
