#include "tools/camhook/explain/Input.h"
#include "tools/camhook/input/JsonLine.h"

#include <charconv>
#include <string_view>
#include <variant>
#include <vector>

#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/ScenarioReader.h"
#include "tools/camhook/run/TraceFilter.h"

namespace camhook {
namespace {

/// Splits a place: "sat.cameras[0].role" becomes "sat", "cameras", 0, "role".
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

Json jsonFromCall(const ScenarioCall& call) {
  Json json{{"call", nameOf(call.call)}};
  if (const auto sensor = sensorOf(call.call)) json["sensor"] = *sensor;
  for (const auto& [key, value] : call.arguments.members()) json[key] = value;
  for (const char* name : kContainers) {
    if (containerOf(call.call, name) != nullptr) json[name] = Json();
  }
  return json;
}

/// The container that is named, or that the call writes. Throws InputError.
std::string containerFrom(const std::string& text, const Call& call) {
  std::string names;
  std::string last;
  for (const char* name : kContainers) {
    if (containerOf(call, name) == nullptr) continue;
    names += (names.empty() ? "" : ", ") + std::string(name);
    last = name;
    if (text == name) return text;
  }
  if (names.empty()) throw InputError("the call has no container");
  if (!text.empty()) {
    throw InputError("the call has no container " + jsonText(text) + "; it has " + names);
  }
  return last;
}

}  // namespace

Question readQuestion(std::string_view scenario, const std::string& call, const std::string& tag) {
  Question question{.scenario = readScenario(scenario),
                    .platform = parseJson(std::string(scenario))["platform"]};
  const std::vector<ScenarioCall>& calls = question.scenario.calls;
  question.call =
      callFromText(call, calls.size(), [&](std::size_t index) { return calls[index].call; });
  question.callDocument = jsonFromCall(calls[question.call]);
  if (tag == "return") return question;
  const std::size_t colon = tag.find(':');
  question.container =
      containerFrom(colon != std::string::npos ? tag.substr(0, colon) : "", question.askedCall());
  question.tag = tagFromText(colon != std::string::npos ? tag.substr(colon + 1) : tag);
  return question;
}

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
          {"hook", nameOf(question.scenario.calls[index].call)}};
}

std::string_view nameOf(const Call& call) {
  return std::visit([](const auto& concrete) { return concrete.kName; }, call);
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

const MetadataArgument* containerOf(const Call& call, std::string_view name) {
  return containerOf(const_cast<Call&>(call), name);
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
      if (!at->isList() || *index >= at->size()) return nullptr;
      at = &(*at)[*index];
    } else {
      at = at->find(std::get<std::string>(step));
      if (at == nullptr) return nullptr;
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
  if (!value.isNull()) {
    *at = value;
  } else if (around != nullptr && around->isObject()) {
    around->erase(key);
  }
  return document;
}

}  // namespace camhook
