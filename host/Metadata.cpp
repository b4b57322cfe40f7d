// The simulated phone's metadata container: a map of entries, each a variant of vectors.

#include "platform/IMetadata.h"

#include <algorithm>
#include <array>
#include <memory>
#include <type_traits>
#include <unordered_map>

#include "host/MetadataAccess.h"
#include "host/Phone.h"

namespace {

template <typename T>
std::unique_ptr<T> copyOf(const std::unique_ptr<T>& original) {
  return original != nullptr ? std::make_unique<T>(*original) : nullptr;
}

host::Access readOf(const NSCam::IMetadata& container, NSCam::IMetadata::Tag_t tag) {
  for (const auto& [id, device] : host::Phone::current().config.devices) {
    if (&device.statics == &container) return host::StaticRead{id, tag};
  }
  return host::MetadataRead{&container, tag};
}

}  // namespace

namespace NSCam {

/// Allocated with the first item.
struct IMetadata::IEntry::Items {
  host::ItemList list;
};

/// Allocated with the first entry.
struct IMetadata::Entries {
  std::unordered_map<Tag_t, IEntry> byTag;
};

IMetadata::IEntry::IEntry(Tag_t tag) : mTag(tag) {}
IMetadata::IEntry::IEntry(const IEntry& other) : mTag(other.mTag), mItems(copyOf(other.mItems)) {}
IMetadata::IEntry::IEntry(IEntry&& other) noexcept = default;
IMetadata::IEntry& IMetadata::IEntry::operator=(const IEntry& other) {
  if (this != &other) *this = IEntry(other);
  return *this;
}
IMetadata::IEntry& IMetadata::IEntry::operator=(IEntry&& other) noexcept = default;
IMetadata::IEntry::~IEntry() = default;

IMetadata::Tag_t IMetadata::IEntry::tag() const { return mTag; }

bool IMetadata::IEntry::isEmpty() const { return mItems == nullptr; }

std::size_t IMetadata::IEntry::count() const {
  if (mItems == nullptr) return 0;
  return std::visit([](const auto& items) { return items.size(); }, mItems->list);
}

template <MetadataItem T>
void IMetadata::IEntry::push_back(const T& item, Type2Type<T>) {
  if (mItems == nullptr) mItems = std::make_unique<Items>(Items{std::vector<T>()});
  if (auto* items = std::get_if<std::vector<T>>(&mItems->list)) items->push_back(item);
}

template <MetadataItem T>
void IMetadata::IEntry::replaceItemAt(std::size_t index, const T& item, Type2Type<T>) {
  if (mItems == nullptr) return;
  auto* items = std::get_if<std::vector<T>>(&mItems->list);
  if (items != nullptr && index < items->size()) (*items)[index] = item;
}

template <MetadataItem T>
T IMetadata::IEntry::itemAt(std::size_t index, Type2Type<T>) const {
  if (mItems == nullptr) return T{};
  const auto read = [index]<typename Item>(const std::vector<Item>& items) -> T {
    constexpr bool kAreIntegers = std::is_integral_v<T> && std::is_integral_v<Item>;
    if constexpr (kAreIntegers || std::is_same_v<T, Item>) {
      if (index < items.size()) return static_cast<T>(items[index]);
    }
    return T{};
  };
  return std::visit(read, mItems->list);
}

// NOLINTBEGIN(bugprone-macro-parentheses): the argument is a type
#define HOST_METADATA_ITEM(T)                                                          \
  template void IMetadata::IEntry::push_back(const T&, Type2Type<T>);                  \
  template void IMetadata::IEntry::replaceItemAt(std::size_t, const T&, Type2Type<T>); \
  template T IMetadata::IEntry::itemAt(std::size_t, Type2Type<T>) const;
// NOLINTEND(bugprone-macro-parentheses)

HOST_METADATA_ITEM(std::int32_t)
HOST_METADATA_ITEM(std::int64_t)
HOST_METADATA_ITEM(std::uint8_t)
HOST_METADATA_ITEM(float)
HOST_METADATA_ITEM(MRect)
HOST_METADATA_ITEM(MRational)

#undef HOST_METADATA_ITEM

IMetadata::IMetadata() = default;
IMetadata::IMetadata(const IMetadata& other) : mEntries(copyOf(other.mEntries)) {}
IMetadata::IMetadata(IMetadata&& other) noexcept = default;
IMetadata& IMetadata::operator=(const IMetadata& other) {
  if (this != &other) mEntries = copyOf(other.mEntries);
  return *this;
}
IMetadata& IMetadata::operator=(IMetadata&& other) noexcept = default;
IMetadata::~IMetadata() = default;

const IMetadata::IEntry& IMetadata::entryFor(Tag_t tag) const {
  host::observe([&] { return readOf(*this, tag); });
  static const IEntry kAbsent;
  if (mEntries == nullptr) return kAbsent;
  const auto found = mEntries->byTag.find(tag);
  return found != mEntries->byTag.end() ? found->second : kAbsent;
}

int IMetadata::update(Tag_t tag, const IEntry& entry) {
  host::observe([&] { return host::MetadataWrite{this, tag, entry}; });
  if (mEntries == nullptr) mEntries = std::make_unique<Entries>();
  mEntries->byTag.insert_or_assign(tag, entry);
  return 0;
}

IMetadata& IMetadata::operator+=(const IMetadata& other) {
  if (other.mEntries == nullptr) return *this;
  for (const auto& [tag, entry] : other.mEntries->byTag) update(tag, entry);
  return *this;
}

std::vector<const IMetadata::IEntry*> MetadataAccess::entriesByTag(const IMetadata& metadata) {
  std::vector<const IMetadata::IEntry*> entries;
  if (metadata.mEntries == nullptr) return entries;
  for (const auto& [tag, entry] : metadata.mEntries->byTag) {
    if (!entry.isEmpty()) entries.push_back(&entry);
  }
  std::ranges::sort(entries, {}, [](const auto* entry) { return entry->tag(); });
  return entries;
}

const host::ItemList& MetadataAccess::itemsOf(const IMetadata::IEntry& entry) {
  static const host::ItemList kNone;
  return entry.mItems != nullptr ? entry.mItems->list : kNone;
}

void MetadataAccess::erase(IMetadata& metadata, IMetadata::Tag_t tag) {
  if (metadata.mEntries != nullptr) metadata.mEntries->byTag.erase(tag);
}

}  // namespace NSCam
