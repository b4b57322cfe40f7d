// One object of a scenario, read key by key.

#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/MetadataJson.h"

namespace camhook {

class ObjectReader {
 public:
  /// Checks that `json` is an object that holds no key but `known`. Throws InputError.
  ObjectReader(const Json& json, const Place& place, std::span<const std::string_view> known);

  [[nodiscard]] const Place& place() const { return mPlace; }

  /// The member `key`, null where it is absent.
  [[nodiscard]] const Json* find(std::string_view key) const;

  /// The member `key`. Throws InputError where it is absent.
  [[nodiscard]] const Json& at(std::string_view key) const;

  /// Hands the member `key` and its place to `use`, where it is there.
  template <typename Use>
  void ifPresent(std::string_view key, Use use) const {
    if (const Json* member = find(key)) use(*member, mPlace[key]);
  }

  /// Reads the member `key`, where it is there, into `target`.
  template <typename T>
  void readInto(T& target, std::string_view key) const {
    ifPresent(key, [&](const Json& json, const Place& place) { fromJson(target, json, place); });
  }

  /// Reads the member `key`. Throws InputError where it is absent.
  template <typename T>
  [[nodiscard]] T required(std::string_view key) const {
    T value{};
    fromJson(value, at(key), mPlace[key]);
    return value;
  }

 private:
  static void fromJson(bool& value, const Json& json, const Place& place);
  static void fromJson(std::string& value, const Json& json, const Place& place);
  static void fromJson(float& value, const Json& json, const Place& place) {
    value = floatFromJson(json, place);
  }
  static void fromJson(std::int32_t& value, const Json& json, const Place& place) {
    value = integerFromJson<std::int32_t>(json, place);
  }
  static void fromJson(std::uint32_t& value, const Json& json, const Place& place) {
    value = integerFromJson<std::uint32_t>(json, place);
  }
  static void fromJson(std::int64_t& value, const Json& json, const Place& place) {
    value = integerFromJson<std::int64_t>(json, place);
  }
  static void fromJson(std::uint64_t& value, const Json& json, const Place& place) {
    value = integerFromJson<std::uint64_t>(json, place);
  }
  static void fromJson(NSCam::MSize& value, const Json& json, const Place& place) {
    value = sizeFromJson(json, place);
  }
  static void fromJson(NSCam::MRect& value, const Json& json, const Place& place) {
    value = rectFromJson(json, place);
  }
  static void fromJson(NSCam::IMetadata& value, const Json& json, const Place& place) {
    value = metadataFromJson(json, place);
  }

  /// Null is no value.
  template <typename T>
  static void fromJson(std::optional<T>& value, const Json& json, const Place& place) {
    value.reset();
    if (!json.is_null()) fromJson(value.emplace(), json, place);
  }

  const Json& mJson;
  const Place& mPlace;
};

}  // namespace camhook
