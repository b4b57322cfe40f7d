#include "tools/camhook/explain/Input.h"

#include <charconv>
#include <string_view>
#include <variant>
#include <vector>

#include "tools/camhook/input/MetadataJson.h"

namespace camhook {
namespace {

/// The steps to a place: "sat.cameras[0].role" is sat, cameras, 0, role. Indices are numbers.
std::vector<std::variant<std::string, std::size_t>> stepsOf(std::string_view place) {
  std::vector<std::variant<std::string, std::size_t>> steps;
  while (!place.empty()) {
    if (place.front() == '[') {
      std::size_t index = 0;
      std::from_chars(place.data() + 1, place.data() + place.size(), index);
      steps.emplace_back(index);
      place.remove_prefix(place.find(']') + 1);
    } else {
      if (place.front() == '.') place.remove_prefix(1);
      const std::string_view key = place.substr(0, place.find_first_of(".["));
      steps.emplace_back(std::string(key));
      place.remove_prefix(key.size());
    }
  }
  return steps;
}

}  // namespace

Json jsonFromInput(const Input& input, const Question& question) {
  switch (input.kind) {
    case Input::Kind::metadata:
      return {{"kind", "metadata"}, {"container", input.key}, {"key", tagText(input.tag)}};
    case Input::Kind::statics:
      return {{"kind", "static"}, {"device", input.number}, {"key", tagText(input.tag)}};
    case Input::Kind::event: return {{"kind", "event"}, {"key", input.key}};
    case Input::Kind::property: return {{"kind", "property"}, {"key", input.key}};
    case Input::Kind::provider: return {{"kind", "provider"}};
    case Input::Kind::argument: return {{"kind", "argument"}, {"key", input.key}};
    case Input::Kind::platform: return {{"kind", "platform"}, {"key", input.key}};
    case Input::Kind::call: break;
  }
  const auto index = static_cast<std::size_t>(input.number);
  return {{"kind", "call"},
          {"index", input.number + 1},
          {"hook", question.document["calls"][index]["call"]}};
}

const Json& Question::platformDocument() const {
  static const Json kNone = Json::object();
  const auto found = document.find("platform");
  return found != document.end() ? *found : kNone;
}

Json valueOf(const Input& input, const Question& question, const host::TextMap& events,
             const host::TextMap& properties) {
  const auto entryIn = [&input](const NSCam::IMetadata& metadata) -> Json {
    const NSCam::IMetadata::IEntry& entry = metadata.entryFor(input.tag);
    return entry.isEmpty() ? Json() : jsonFromEntry(entry);
  };
  const auto textIn = [&input](const host::TextMap& texts) -> Json {
    const auto found = texts.find(input.key);
    return found != texts.end() && !found->second.empty() ? Json(found->second) : Json();
  };
  const host::PhoneConfig& phone = question.scenario.platform;
  switch (input.kind) {
    case Input::Kind::metadata: {
      Call call = question.scenarioCall().call;
      const MetadataArgument* container = containerOf(call, input.key);
      return container != nullptr && *container ? entryIn(**container) : Json();
    }
    case Input::Kind::statics:
      return entryIn(phone.deviceOrDefault(static_cast<std::int32_t>(input.number)).statics);
    case Input::Kind::event: return textIn(events);
    case Input::Kind::property: return textIn(properties);
    case Input::Kind::provider: return phone.provider ? Json(phone.provider->fpsCap) : Json();
    case Input::Kind::argument: return valueAt(question.callDocument(), input.key);
    case Input::Kind::platform: return valueAt(question.platformDocument(), input.key);
    case Input::Kind::call: break;
  }
  return jsonFromInput(input, question)["hook"];
}

MetadataArgument* containerOf(Call& call, std::string_view name) {
  return std::visit(
      [&]<typename CallType>(CallType& concrete) -> MetadataArgument* {
        if constexpr (requires { concrete.out; }) {
          if (name == "app") return &concrete.app;
          if (name == "hal") return &concrete.hal;
          if (name == "out") return &concrete.out;
        } else if constexpr (requires { concrete.meta; }) {
          if (name == "meta") return &concrete.meta;
        }
        return nullptr;
      },
      call);
}

std::optional<std::int32_t> sensorOf(const Call& call) {
  return std::visit(
      [](const auto& concrete) -> std::optional<std::int32_t> {
        if constexpr (requires { concrete.sensor; }) return concrete.sensor;
        return {};
      },
      call);
}

Json valueAt(const Json& document, const std::string& place) {
  const Json* at = &document;
  for (const auto& step : stepsOf(place)) {
    if (const auto* index = std::get_if<std::size_t>(&step)) {
      if (*index >= at->size()) return nullptr;
      at = &(*at)[*index];
    } else {
      const auto found = at->find(std::get<std::string>(step));
      if (found == at->end()) return nullptr;
      at = &*found;
    }
  }
  return *at;
}

Json withValueAt(Json document, const std::string& place, const Json& value) {
  Json* around = nullptr;
  Json* at = &document;
  std::string key;
  for (const auto& step : stepsOf(place)) {
    around = at;
    if (const auto* index = std::get_if<std::size_t>(&step)) {
      at = &(*at)[*index];
    } else {
      key = std::get<std::string>(step);
      at = &(*at)[key];
    }
  }
  if (!value.is_null()) {
    *at = value;
  } else if (around != nullptr && around->is_object()) {
    around->erase(key);
  }
  return document;
}

}  // namespace camhook
