#include "tools/camhook/explain/ReadInputs.h"

#include <cstddef>
#include <initializer_list>
#include <utility>
#include <variant>

namespace camhook {

using Kind = Input::Kind;

void ReadInputs::add(const host::Access& access, std::string_view container) {
  if (const auto* read = std::get_if<host::MetadataRead>(&access)) {
    if (container.empty()) return;
    add({.kind = Kind::metadata, .key = std::string(container), .tag = read->tag});
  } else if (const auto* statics = std::get_if<host::StaticRead>(&access)) {
    add({.kind = Kind::statics, .tag = statics->tag, .number = statics->device});
  } else if (const auto* event = std::get_if<host::EventRead>(&access)) {
    add({.kind = Kind::event, .key = event->key});
  } else if (const auto* property = std::get_if<host::PropertyRead>(&access)) {
    add({.kind = Kind::property, .key = property->name});
  } else if (const auto* service = std::get_if<host::ServiceRead>(&access)) {
    addService(service->place);
  }
}

void ReadInputs::add(const Input& input) {
  if (mSeen.insert(input).second) mInputs.push_back(input);
}

/// Each value at or below the place is an input.
void ReadInputs::addService(const std::string& place) {
  const auto addPlace = [this](std::string key) {
    add({.kind = Kind::platform, .key = std::move(key)});
  };
  const auto addMembers = [&](std::initializer_list<const char*> members) {
    for (const char* member : members) addPlace(place + member);
  };
  if (place == "provider") {
    add({.kind = Kind::provider});
  } else if (place.ends_with(".static")) {
    // Each entry of a listed device is a separate input.
    if (valueAt(mPlatform, place.substr(0, place.rfind('.'))).isNull()) addPlace(place);
  } else if (place == "sat.cameras") {
    const std::size_t count = valueAt(mPlatform, place).size();
    if (count == 0) addPlace(place);
    for (std::size_t i = 0; i < count; ++i) {
      addPlace(place + "[" + std::to_string(i) + "].id");
      addPlace(place + "[" + std::to_string(i) + "].role");
    }
  } else if (place == "sat.translate") {
    addMembers({".scale", ".dx", ".dy"});
  } else if (place == "tuningBuffer") {
    addMembers({".fd", ".bufferSize", ".bufferIndex"});
  } else {
    addPlace(place);
    if (place.ends_with(".sensor") && !valueAt(mPlatform, place).isNull()) {
      addMembers({".index", ".pdSupported", ".pdWords", ".pdLeft", ".pdRight", ".pdTail"});
    }
  }
}

}  // namespace camhook
