#include "tools/camhook/input/MetadataReader.h"

#include <algorithm>
#include <array>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "host/AndroidTags.h"
#include "host/MetadataAccess.h"
#include "tools/camhook/input/NearNames.h"
#include "tools/camhook/input/TagCatalogue.h"
#include "tools/camhook/input/ValueReader.h"

namespace camhook {
namespace {

using NSCam::IMetadata;
using NSCam::MRational;
using NSCam::MRect;
using NSCam::Type2Type;

/// A rect or rational is itself a list of numbers.
template <typename T>
constexpr bool kIsTuple = std::is_same_v<T, MRect> || std::is_same_v<T, MRational>;

/// The names of the tag's values; null if it has none.
const host::AndroidTag* findEnumeration(std::uint32_t tag) {
  const host::AndroidTag* known = host::findAndroidTag(tag);
  return known != nullptr && !known->values.empty() ? known : nullptr;
}

/// Reads the name of a value. Returns false for a hexadecimal text, and if the tag has no named
/// values.
template <typename T>
bool readName(const Value& value, std::uint32_t tag, T& item) {
  const host::AndroidTag* known = findEnumeration(tag);
  if (known == nullptr) return false;
  if (const auto number = known->numberOf(value.text())) {
    item = static_cast<T>(*number);
    return true;
  }
  if (numberFromHexadecimal(value.text())) return false;
  std::vector<std::string_view> names;
  for (const host::AndroidTag::Value& each : known->values) names.push_back(each.name);
  value.fail("unknown value " + value.shown() + nearNames(value.text(), names));
  return true;
}

template <typename T>
void readItem(const Value& value, std::uint32_t tag, IMetadata::IEntry* target) {
  T item{};
  bool isRead = false;
  if constexpr (std::is_same_v<T, std::uint8_t> || std::is_same_v<T, std::int32_t>) {
    isRead = value.isText() && readName(value, tag, item);
  }
  if (!isRead) readValue(value, item);
  if (target != nullptr) target->push_back(item, Type2Type<T>{});
}

/// Returns the number of items.
template <typename T>
std::size_t readItems(const Value& value, std::uint32_t tag, IMetadata::IEntry* target) {
  const bool isSingleItem = !value.isList() || (kIsTuple<T> && value.size() > 0 &&
                                                !value.json().items().front().isList());
  if (std::is_same_v<T, std::uint8_t> && value.isText() && findEnumeration(tag) == nullptr) {
    if (target == nullptr) return value.text().size();
    for (const char byte : value.text()) {
      target->push_back(static_cast<std::uint8_t>(byte), Type2Type<std::uint8_t>{});
    }
    return value.text().size();
  }
  if (isSingleItem) {
    readItem<T>(value, tag, target);
    return 1;
  }
  value.forEachItem([tag, target](const Value& item) { readItem<T>(item, tag, target); });
  return value.size();
}

using ItemReader = std::size_t (*)(const Value& value, std::uint32_t tag,
                                   IMetadata::IEntry* target);

/// The reader of items of a type; null if there is no such type.
ItemReader findReader(std::string_view type) {
  constexpr ItemReader kReaders[] = {readItems<std::int32_t>, readItems<std::int64_t>,
                                     readItems<std::uint8_t>, readItems<float>,
                                     readItems<MRect>,        readItems<MRational>};
  const auto* const found = std::ranges::find(host::kTypeNames, type);
  return found != host::kTypeNames.end() ? kReaders[found - host::kTypeNames.begin()] : nullptr;
}

/// Warns if the number of items differs from that of the catalogue, unless the catalogue has more
/// than `kMaxChecked`.
void checkCount(const Value& items, std::size_t count, const TagDescription& info) {
  constexpr std::uint32_t kMaxChecked = 64;
  const bool isChecked = info.count != kAnyCount && info.count <= kMaxChecked;
  if (!isChecked || count == 0 || count == info.count) return;
  items.warn("expected " + std::to_string(info.count) + (info.count == 1 ? " item" : " items") +
             " as in the catalogue, found " + std::to_string(count));
}

/// The long form: {"type": ..., "items": ...}.
void readTypedItems(const Value& value, std::uint32_t tag, const TagDescription* info,
                    IMetadata::IEntry* target) {
  constexpr std::array<std::string_view, 2> kKeys{"type", "items"};
  value.forEachMember([&](const Key& key, const Value&) {
    if (std::ranges::find(kKeys, key.text()) != kKeys.end()) return;
    key.fail("unknown key" + nearNames(key.text(), kKeys));
  });
  const std::optional<Value> type = value.find("type");
  const std::optional<Value> items = value.find("items");
  if (!type) value.fail("missing", "type");
  if (!items) value.fail("missing", "items");
  if (!type || !items) return;
  if (!type->isText()) return type->failUnless("a text");
  const ItemReader read = findReader(type->text());
  if (read == nullptr) {
    return type->failUnless("a type: int32, int64, uint8, float, rect or rational");
  }
  const bool isText =
      items->isText() &&
      (type->text() == "uint8" || (type->text() == "int32" && findEnumeration(tag) != nullptr));
  if (!items->isList() && !isText) return items->failUnless("a list");
  if (info != nullptr && info->type != type->text()) {
    type->warn("expected " + std::string(info->type) + " as in the catalogue, found " +
               type->text());
  }
  const std::size_t count = read(*items, tag, target);
  if (info != nullptr && info->type == type->text()) checkCount(*items, count, *info);
}

void readEntryOf(const Value& value, std::uint32_t tag, const TagDescription* info,
                 IMetadata::IEntry* target) {
  if (value.isObject()) {
    readTypedItems(value, tag, info, target);
  } else if (value.isList() && value.size() == 0) {
    return;
  } else if (info == nullptr) {
    value.fail(R"(unlisted tag: a type is required, {"type": ..., "items": [...]})");
  } else {
    checkCount(value, findReader(info->type)(value, tag, target), *info);
  }
}

/// Reports tags that occur twice under different keys.
void failRepeated(std::vector<std::pair<std::uint32_t, Key>>& keys) {
  std::ranges::stable_sort(keys, {}, [](const auto& key) { return key.first; });
  for (std::size_t i = 1; i < keys.size(); ++i) {
    const auto& [tag, key] = keys[i];
    if (tag == keys[i - 1].first && key.text() != keys[i - 1].second.text()) {
      key.fail("duplicate tag");
    }
  }
}

}  // namespace

std::optional<std::uint64_t> wideTagFrom(std::string_view text) {
  if (const TagDescription* info = findTag(text)) return info->value;
  return numberFromHexadecimal(text);
}

std::optional<std::uint32_t> tagFrom(std::string_view text) {
  const auto tag = wideTagFrom(text);
  if (!tag || !std::in_range<std::uint32_t>(*tag)) return {};
  return static_cast<std::uint32_t>(*tag);
}

void readEntry(const Value& value, std::uint32_t tag, IMetadata::IEntry* target) {
  readEntryOf(value, tag, findTag(tag), target);
}

void readMetadata(const Value& value, IMetadata* target) {
  if (!value.isObject()) return value.failUnless("an object from tag to value");
  bool hasNumbers = false;
  std::vector<std::pair<std::uint32_t, Key>> keys;
  keys.reserve(value.size());
  value.forEachMember([&](const Key& key, const Value& member) {
    const TagDescription* info = findTag(key.text());
    const auto tag = info != nullptr ? info->value : tagFrom(key.text());
    if (!tag) {
      return key.fail(key.areFaultsShown() ? "unknown tag" + nearTags(key.text()) : std::string());
    }
    hasNumbers = hasNumbers || info == nullptr;
    if (info == nullptr) info = findTag(*tag);
    keys.emplace_back(*tag, key);
    if (target == nullptr) return readEntryOf(member, *tag, info, nullptr);
    IMetadata::IEntry entry(*tag);
    readEntryOf(member, *tag, info, &entry);
    if (!entry.isEmpty()) target->update(*tag, entry);
  });
  if (hasNumbers) failRepeated(keys);
}

}  // namespace camhook
