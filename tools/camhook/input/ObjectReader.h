// Reads the objects of a scenario by their `keysOf`.

#pragma once

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <initializer_list>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/camhook/input/MetadataReader.h"
#include "tools/camhook/input/NearNames.h"
#include "tools/camhook/input/ScenarioKeys.h"
#include "tools/camhook/input/Value.h"
#include "tools/camhook/input/ValueReader.h"
#include "tools/camhook/input/WholeNumber.h"

namespace camhook {

/// The visitor of `keysOf` that reads one object.
class ObjectReader {
 public:
  explicit ObjectReader(const Value& object) : mObject(object) {}

  static void readObject(const Value& value, auto& target) {
    if (!value.isObject()) return value.failUnless("an object");
    ObjectReader(value).readAll(target);
  }

  void must(std::string_view key, auto&& target, std::string_view /*meaning*/ = {}) {
    if (!readMember(key, target) && !isInherited(key)) mObject.fail("missing", key);
  }

  void may(std::string_view key, auto&& target, std::string_view /*meaning*/ = {}) {
    readMember(key, target);
  }

  /// Reads the keys that `keysOf` lists. Any other key except `others` is a fault.
  void readAll(auto& target, std::initializer_list<std::string_view> others = {}) {
    mKnown = others;
    for (const std::string_view key : others) mRead += mObject.find(key) ? 1U : 0U;
    keysOf(*this, target);
    if (mRead != mObject.size()) failUnknownKeys();
  }

 private:
  bool readMember(std::string_view key, auto& target) {
    mKnown.push_back(key);
    const std::optional<Value> member = mObject.find(key);
    if (!member) return false;
    ++mRead;
    read(*member, target);
    return true;
  }

  /// The `meta` of a call with metaOf is that of another call.
  [[nodiscard]] bool isInherited(std::string_view key) const {
    return key == "meta" && mObject.find(kMetaOfKey);
  }

  void failUnknownKeys() const {
    mObject.forEachMember([this](const Key& key, const Value&) {
      if (std::ranges::find(mKnown, key.text()) != mKnown.end()) return;
      key.fail("unknown key" + nearNames(key.text(), mKnown));
    });
  }

  template <typename T>
  requires requires(const Value& value, T& target) { readValue(value, target); }
  void read(const Value& value, T& target) const { readValue(value, target); }

  void read(const Value& value, ScenarioObject auto& target) const { readObject(value, target); }

  template <typename T>
  void read(const Value& value, std::vector<T>& target) const {
    if (!value.isList()) return value.failUnless("a list");
    value.forEachItem([&](const Value& item) { read(item, target.emplace_back()); });
  }

  template <typename T, std::size_t Size>
  void read(const Value& value, Row<T, Size>& target) const {
    if (!value.isList()) return value.failUnless("a list");
    if (value.size() > Size) return value.failUnless("at most " + std::to_string(Size) + " items");
    std::size_t count = 0;
    value.forEachItem([&](const Value& item) { read(item, target.items.at(count++)); });
  }

  template <typename T>
  void read(const Value& value, std::optional<T>& target) const {
    read(value, target.emplace());
  }

  void read(const Value& value, std::optional<std::tm>& target) const {
    target = timeFrom(value.isText() ? value.text() : "");
    if (!target) value.failUnless("a time such as \"2021-03-04T05:06:07\"");
  }

  void read(const Value& value, NSCam::IMetadata& target) const { readMetadata(value, &target); }

  void read(const Value& value, MetadataArgument& target) const {
    if (value.isNull() && !mObject.find(kMetaOfKey)) return;
    readMetadata(value, value.isOnlyChecked() ? nullptr : &target.emplace());
  }

  void read(const Value& value, DefaultShading& target) const {
    target.isThere = !value.isNull();
    if (target.isThere) readMetadata(value, &target.values);
  }

  void read(const Value& value, NamedTexts& target) const {
    if (!value.isObject()) return value.failUnless("an object from text to text");
    value.forEachMember([&](const Key& key, const Value& member) {
      readValue(member, target.texts[std::string(key.text())]);
    });
  }

  void read(const Value& value, std::map<std::int32_t, host::DeviceConfig>& target) const {
    if (!value.isObject()) return value.failUnless("an object from device number to device");
    value.forEachMember([&](const Key& key, const Value& device) {
      const std::int32_t id = wholeNumber<std::int32_t>(key.text()).value_or(0);
      if (std::to_string(id) != key.text()) key.fail("expected a device number");
      read(device, target[id]);
    });
  }

  void read(const Value& value, WideTag& target) const {
    if (!value.isText()) return value.failUnless("a text");
    const auto tag = wideTagFrom(value.text());
    if (!tag) value.fail("unknown tag " + value.shown() + nearTags(value.text()));
    target.tag = tag.value_or(0);
  }

  void read(const Value& value, BlockSize& target) const {
    readValue(value, target.bytes);
    if (target.bytes > BlockSize::kMax) {
      value.fail("a block has at most " + std::to_string(BlockSize::kMax) + " bytes, not " +
                 value.shown());
    }
  }

  void read(const Value& value, ScenarioFrame::Calls& /*target*/) const {
    if (!value.isList()) value.failUnless("a list");
  }

  Value mObject;
  std::vector<std::string_view> mKnown;  // keys
  std::size_t mRead = 0;                 // members of these keys
};

}  // namespace camhook
