#include "tools/camhook/explain/ReadCollector.h"

#include <cstddef>
#include <utility>
#include <variant>

namespace camhook {

using Kind = Input::Kind;

void ReadCollector::add(const host::Access& access, std::string_view container) {
  if (const auto* read = std::get_if<host::MetadataRead>(&access)) {
    if (container.empty()) return;
    keep({.kind = Kind::metadata, .key = std::string(container), .tag = read->tag});
  } else if (const auto* statics = std::get_if<host::StaticRead>(&access)) {
    keep({.kind = Kind::statics, .key = {}, .tag = statics->tag, .number = statics->device});
  } else if (const auto* event = std::get_if<host::EventRead>(&access)) {
    keep({.kind = Kind::event, .key = event->key});
  } else if (const auto* property = std::get_if<host::PropertyRead>(&access)) {
    keep({.kind = Kind::property, .key = property->name});
  } else if (const auto* service = std::get_if<host::ServiceRead>(&access)) {
    keepService(service->place);
  }
}

void ReadCollector::keep(const Input& input) {
  if (mSeen.insert(input).second) inputs.push_back(input);
}

void ReadCollector::keepPlace(std::string place, std::int64_t device) {
  keep({.kind = Kind::platform, .key = std::move(place), .tag = 0, .number = device});
}

/// A place may hold several values, each an input by itself.
void ReadCollector::keepService(const std::string& place) {
  const Json& platform = mQuestion.platformDocument();
  if (place == "provider") {
    keep({.kind = Kind::provider, .key = {}});
  } else if (place.ends_with(".static")) {
    // Of a listed device each entry is an input by itself.
    const std::string device = place.substr(0, place.rfind('.'));
    if (!valueAt(platform, device).is_null()) return;
    keepPlace(place, std::stoi(device.substr(device.rfind('.') + 1)));
  } else if (place == "sat.cameras") {
    const std::size_t count = mQuestion.scenario.platform.sat.cameras.size();
    if (count == 0) keepPlace(place);
    for (std::size_t i = 0; i < count; ++i) {
      keepPlace(place + "[" + std::to_string(i) + "].id");
      keepPlace(place + "[" + std::to_string(i) + "].role");
    }
  } else if (place == "sat.translate") {
    for (const char* key : {".scale", ".dx", ".dy"}) keepPlace(place + key);
  } else if (place == "tuningBuffer") {
    for (const char* key : {".fd", ".bufferSize", ".bufferIndex"}) keepPlace(place + key);
  } else if (place.ends_with(".sensor") && !valueAt(platform, place).is_null()) {
    keepPlace(place);
    for (const char* key :
         {".index", ".pdSupported", ".pdWords", ".pdLeft", ".pdRight", ".pdTail"}) {
      keepPlace(place + key);
    }
  } else {
    keepPlace(place);
  }
}

}  // namespace camhook
