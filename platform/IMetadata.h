// The camera HAL's metadata container: tagged entries, each a sequence of items of one type. The
// private members belong to the implementation of the container.
//
// Threads: a container or entry may be read by several threads at once while no thread changes it.

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>

#include "platform/Geometry.h"

namespace NSCam {

/// Selects an overload by item type.
template <typename T>
struct Type2Type {};

/// The item types.
template <typename T>
concept MetadataItem = std::is_same_v<T, std::int32_t> || std::is_same_v<T, std::int64_t> ||
    std::is_same_v<T, std::uint8_t> || std::is_same_v<T, float> || std::is_same_v<T, MRect> ||
    std::is_same_v<T, MRational>;

class IMetadata {
 public:
  using Tag_t = std::uint32_t;

  /// Tag of an entry that is not in the container.
  static constexpr Tag_t kNoTag = 0xffffffff;

  /// The items of one tag. All items have the type of the first one.
  class IEntry {
   public:
    /// Creates an entry without items.
    explicit IEntry(Tag_t tag = kNoTag);

    /// A copy has the same tag and items. A moved-from entry keeps its tag and is empty.
    IEntry(const IEntry& other);
    IEntry(IEntry&& other) noexcept;
    IEntry& operator=(const IEntry& other);
    IEntry& operator=(IEntry&& other) noexcept;
    ~IEntry();

    [[nodiscard]] Tag_t tag() const;
    [[nodiscard]] bool isEmpty() const;
    [[nodiscard]] std::size_t count() const;

    /// Appends an item. Does nothing if the entry holds items of another type.
    template <MetadataItem T>
    void push_back(const T& item, Type2Type<T>);

    /// Replaces the item at `index`. Does nothing if there is none, or if the entry holds items of
    /// another type.
    template <MetadataItem T>
    void replaceItemAt(std::size_t index, const T& item, Type2Type<T>);

    /// Returns the item at `index`; zero if there is none. int32, int64 and uint8 items are
    /// converted to each other by truncation and, from uint8, zero extension. Any other mismatch of
    /// types returns zero.
    template <MetadataItem T>
    [[nodiscard]] T itemAt(std::size_t index, Type2Type<T>) const;

   private:
    friend struct MetadataAccess;
    struct Items;

    Tag_t mTag;
    std::unique_ptr<Items> mItems;
  };

  /// Creates a container without entries.
  IMetadata();

  /// A copy has the same entries. A moved-from container has none.
  IMetadata(const IMetadata& other);
  IMetadata(IMetadata&& other) noexcept;
  IMetadata& operator=(const IMetadata& other);
  IMetadata& operator=(IMetadata&& other) noexcept;
  ~IMetadata();

  /// Returns the entry of `tag`, or an empty entry with tag `kNoTag` if there is none. The
  /// reference is valid until the container changes.
  [[nodiscard]] const IEntry& entryFor(Tag_t tag) const;

  /// Stores a copy of `entry` as the entry of `tag` and replaces any other. Requires that `entry`
  /// has the tag `tag` or no items; it may belong to this container. An entry without items is
  /// stored, too; it keeps its tag and is read as empty. Returns 0 for success.
  int update(Tag_t tag, const IEntry& entry);

  /// Calls `update` for every entry of `other`, including entries without items.
  IMetadata& operator+=(const IMetadata& other);

 private:
  friend struct MetadataAccess;
  struct Entries;

  std::unique_ptr<Entries> mEntries;
};

}  // namespace NSCam
