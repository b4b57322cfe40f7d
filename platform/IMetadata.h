// The camera HAL's metadata container: tagged entries, each a sequence of items of one type.
//
// Threads: a container has no lock. Any number of threads may read one that nobody writes.
//
// On a phone this header forwards to the vendor's container, which has the same operations. The
// private parts below are the host's own: entries stand in one array in the order in which their
// tags first came, a hash index of positions finds them, and up to 16 bytes of items live inside
// the entry.

#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

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
    ~IEntry();

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

    static constexpr std::size_t kInlineBytes = 16;

    enum class ItemType : std::uint8_t { none, int32, int64, uint8, float32, rect, rational };

    template <MetadataItem T>
    static constexpr ItemType typeOf() noexcept;
    static std::size_t sizeOf(ItemType type) noexcept;

    [[nodiscard]] bool isInline() const noexcept { return mHeapBytes == 0; }
    [[nodiscard]] std::byte* bytes() noexcept { return isInline() ? mItems.inlined : mItems.heap; }
    [[nodiscard]] const std::byte* bytes() const noexcept {
      return isInline() ? mItems.inlined : mItems.heap;
    }
    void copyItems(const IEntry& other);
    void stealItems(IEntry& other) noexcept;
    void releaseItems() noexcept;
    void growTo(std::size_t byteCount);

    Tag_t mTag;
    std::uint32_t mCount = 0;
    std::uint32_t mHeapBytes = 0;  // capacity of the heap block; 0: the items are inlined
    ItemType mType = ItemType::none;
    union Items {
      alignas(8) std::byte inlined[kInlineBytes];
      std::byte* heap;
    } mItems{};
  };

  IMetadata() noexcept;
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

  [[nodiscard]] const IEntry* find(Tag_t tag) const noexcept;
  [[nodiscard]] IEntry* find(Tag_t tag) noexcept;
  [[nodiscard]] std::size_t firstSlot(Tag_t tag) const noexcept;
  IEntry& append(Tag_t tag);
  void rebuildIndex(std::size_t slotCount);
  void indexEntry(std::size_t position) noexcept;

  std::vector<IEntry> mEntries;
  std::vector<std::uint32_t> mIndex;  // open addressing; position in mEntries plus 1, 0 a free slot
};

}  // namespace NSCam
