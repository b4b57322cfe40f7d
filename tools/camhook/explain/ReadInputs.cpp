#include "tools/camhook/explain/ReadInputs.h"

#include <cstddef>
#include <utility>
#include <variant>

namespace camhook {

using Kind = Input::Kind;

void ReadInputs::add(const host::Access& access, std::string_view container) {
  if (const auto* read = std::get_if<host::MetadataRead>(&access)) {
    if (container.empty()) return;
    add(Input{.kind = Kind::metadata, .key = std::string(container), .tag = read->tag});
  } else if (const auto* statics = std::get_if<host::StaticRead>(&access)) {
    add(Input{.kind = Kind::statics, .key = {}, .tag = statics->tag, .number = statics->device});
  } else if (const auto* event = std::get_if<host::EventRead>(&access)) {
    add(Input{.kind = Kind::event, .key = event->key});
  } else if (const auto* property = std::get_if<host::PropertyRead>(&access)) {
    add(Input{.kind = Kind::property, .key = property->name});
  } else if (const auto* service = std::get_if<host::ServiceRead>(&access)) {
    addService(service->place);
  }
}

void ReadInputs::add(const Input& input) {
  if (mSeen.insert(input).second) mInputs.push_back(input);
}

void ReadInputs::addPlace(std::string place, std::int64_t device) {
  add(Input{.kind = Kind::platform, .key = std::move(place), .tag = 0, .number = device});
}

/// Each value of a place is an input.
void ReadInputs::addService(const std::string& place) {
  if (place == "provider") {
    add(Input{.kind = Kind::provider, .key = {}});
  } else if (place.ends_with(".static")) {
    // Each entry of a listed device is an input.
    const std::string device = place.substr(0, place.rfind('.'));
    if (!valueAt(mPlatform, device).isNull()) return;
    addPlace(place, std::stoi(device.substr(device.rfind('.') + 1)));
  } else if (place == "sat.cameras") {
    const std::size_t count = valueAt(mPlatform, place).size();
    if (count == 0) addPlace(place);
    for (std::size_t i = 0; i < count; ++i) {
      addPlace(place + "[" + std::to_string(i) + "].id");
      addPlace(place + "[" + std::to_string(i) + "].role");
    }
  } else if (place == "sat.translate") {
    for (const char* key : {".scale", ".dx", ".dy"}) addPlace(place + key);
  } else if (place == "tuningBuffer") {
    for (const char* key : {".fd", ".bufferSize", ".bufferIndex"}) addPlace(place + key);
  } else if (place.ends_with(".sensor") && !valueAt(mPlatform, place).isNull()) {
    addPlace(place);
    for (const char* key :
         {".index", ".pdSupported", ".pdWords", ".pdLeft", ".pdRight", ".pdTail"}) {
      addPlace(place + key);
    }
  } else {
    addPlace(place);
  }
}

}  // namespace camhook
