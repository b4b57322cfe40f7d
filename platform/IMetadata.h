// The camera HAL's metadata container: tagged entries, each a sequence of items of one type. What
// is private here belongs to whoever implements the container.
//
// Threads: neither a container nor an entry has a lock. Any number of threads may read one that
// nobody changes.

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>

#include "platform/Geometry.h"

namespace host {
struct MetadataAccess;
}

namespace NSCam {

/// Selects an overload by item type.
template <typename T>
struct Type2Type {};

/// The six types that an item can have.
template <typename T>
concept MetadataItem = std::is_same_v<T, std::int32_t> || std::is_same_v<T, std::int64_t> ||
    std::is_same_v<T, std::uint8_t> || std::is_same_v<T, float> || std::is_same_v<T, MRect> ||
    std::is_same_v<T, MRational>;

class IMetadata {
 public:
  using Tag_t = std::uint32_t;

  /// The tag that no entry of a container has: what is not there tells it.
  static constexpr Tag_t kNoTag = 0xffffffff;

  /// The items of one tag. All of them have the type of the first one.
  class IEntry {
   public:
    /// An entry without items.
    explicit IEntry(Tag_t tag = kNoTag);

    /// Tag and items are copied. What was moved from keeps its tag and is empty.
    IEntry(const IEntry& other);
    IEntry(IEntry&& other) noexcept;
    IEntry& operator=(const IEntry& other);
    IEntry& operator=(IEntry&& other) noexcept;
    ~IEntry();

    [[nodiscard]] Tag_t tag() const;
    [[nodiscard]] bool isEmpty() const;
    [[nodiscard]] std::size_t count() const;

    /// Appends an item. An entry that holds items of another type stays as it is.
    template <MetadataItem T>
    void push_back(const T& item, Type2Type<T>);

    /// Replaces the item at `index`. Where there is none, or the entry's items are of another type,
    /// the entry stays as it is.
    template <MetadataItem T>
    void replaceItemAt(std::size_t index, const T& item, Type2Type<T>);

    /// The item at `index`; zero where there is none. int32, int64 and uint8 items are read as one
    /// another, by truncation and (from uint8) zero extension; every other mismatch of types reads
    /// zero.
    template <MetadataItem T>
    [[nodiscard]] T itemAt(std::size_t index, Type2Type<T>) const;

   private:
    friend struct host::MetadataAccess;
    struct Items;

    Tag_t mTag;
    std::unique_ptr<Items> mItems;
  };

  /// A container without entries.
  IMetadata();

  /// All entries are copied. What was moved from has none.
  IMetadata(const IMetadata& other);
  IMetadata(IMetadata&& other) noexcept;
  IMetadata& operator=(const IMetadata& other);
  IMetadata& operator=(IMetadata&& other) noexcept;
  ~IMetadata();

  /// The entry of `tag`; where there is none, an empty entry whose tag is `kNoTag`. Holds until the
  /// container changes.
  [[nodiscard]] const IEntry& entryFor(Tag_t tag) const;

  /// Stores a copy of `entry` in place of the entry of `tag`, if there is one. `entry.tag()` must
  /// be `tag`; `entry` may be one of this container's. An entry without items is stored, too: it
  /// reads as empty and tells its tag. Returns the status, 0 for done.
  int update(Tag_t tag, const IEntry& entry);

  /// Stores a copy of every entry of `other`, those without items included, as `update` does.
  IMetadata& operator+=(const IMetadata& other);

 private:
  friend struct host::MetadataAccess;
  struct Entries;

  std::unique_ptr<Entries> mEntries;
};

}  // namespace NSCam
