#include "tools/camhook/input/ObjectReader.h"

#include <algorithm>

namespace camhook {

ObjectReader::ObjectReader(const Json& json, const Place& place,
                           std::span<const std::string_view> known)
    : mJson(json), mPlace(place) {
  if (!json.is_object()) place.fail("must be an object");
  for (const auto& [key, value] : json.items()) {
    if (std::ranges::find(known, key) == known.end()) place[key].fail("unknown key");
  }
}

const Json* ObjectReader::find(std::string_view key) const {
  const auto found = mJson.find(key);
  return found != mJson.end() ? &*found : nullptr;
}

const Json& ObjectReader::at(std::string_view key) const {
  const Json* member = find(key);
  if (member == nullptr) mPlace[key].fail("missing");
  return *member;
}

void ObjectReader::fromJson(bool& value, const Json& json, const Place& place) {
  if (!json.is_boolean()) place.fail("must be true or false");
  value = json.get<bool>();
}

void ObjectReader::fromJson(std::string& value, const Json& json, const Place& place) {
  if (!json.is_string()) place.fail("must be a text");
  value = json.get<std::string>();
}

}  // namespace camhook
