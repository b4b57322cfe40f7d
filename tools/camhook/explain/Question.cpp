#include "tools/camhook/explain/Question.h"

#include <algorithm>
#include <charconv>
#include <ctime>
#include <variant>
#include <vector>

#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/Joined.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/ScenarioReader.h"
#include "tools/camhook/run/TraceFilter.h"

namespace camhook {
namespace {

using Kind = Input::Kind;

/// Removes the first step of a place, such as "cameras" or "[0]", and returns it.
std::string_view takeStep(std::string_view& place) {
  if (place.starts_with('.')) place.remove_prefix(1);
  const std::string_view step = place.substr(0, place.find_first_of(".[", 1));
  place.remove_prefix(step.size());
  return step;
}

/// The member or item that a step names; null if there is none.
const Json* findStep(const Json& json, std::string_view step) {
  if (!step.starts_with('[')) return json.find(step);
  std::size_t index = 0;
  std::from_chars(step.data() + 1, step.data() + step.size(), index);
  return json.isList() && index < json.size() ? &json[index] : nullptr;
}

bool returnsValue(const Call& call) {
  return std::holds_alternative<CreateInstance>(call) ||
         std::holds_alternative<UpdateTuningData>(call) ||
         std::holds_alternative<MatchAspectRatio>(call) ||
         std::holds_alternative<DecideSensorScenario>(call);
}

/// Returns `text`, or for an empty text the container that the call writes. Throws InputError if
/// the call has no such container.
std::string containerFrom(const std::string& text, const Call& call) {
  std::vector<std::string> names;
  for (const char* name : kContainers) {
    if (containerOf(call, name) != nullptr) names.emplace_back(name);
  }
  if (names.empty()) throw InputError(std::string(nameOf(call)) + " has no container");
  if (text.empty()) return names.back();
  if (std::ranges::find(names, text) != names.end()) return text;
  throw InputError(std::string(nameOf(call)) + " has no container " + jsonText(text) + "; it has " +
                   joined(names, ", "));
}

}  // namespace

Question readQuestion(std::string_view scenario, const std::string& call, const std::string& tag) {
  Question question{.scenario = readScenario(scenario),
                    .platform = parseJson(std::string(scenario))["platform"]};
  // The results of runs are compared, so the clock must not advance between them.
  std::optional<std::tm>& clock = question.scenario.platform.clock;
  if (!clock) {
    const std::time_t now = std::time(nullptr);
    localtime_r(&now, &clock.emplace());
  }
  const std::vector<ScenarioCall>& calls = question.scenario.calls;
  question.call =
      callFromText(call, calls.size(), [&](std::size_t index) { return calls[index].call; });
  if (const auto sensor = sensorOf(question.askedCall())) question.arguments["sensor"] = *sensor;
  for (const auto& [key, value] : calls[question.call].arguments.members()) {
    question.arguments[key] = value;
  }
  if (tag == "return") {
    if (returnsValue(question.askedCall())) return question;
    throw InputError(std::string(nameOf(question.askedCall())) + " returns no value");
  }
  const std::size_t colon = tag.find(':');
  const bool isNamed = colon != std::string::npos;
  question.container = containerFrom(isNamed ? tag.substr(0, colon) : "", question.askedCall());
  question.tag = tagFromText(isNamed ? tag.substr(colon + 1) : tag);
  return question;
}

Json jsonFromInput(const Input& input, const Question& question) {
  constexpr const char* kKinds[] = {"metadata", "static",   "event",    "property",
                                    "provider", "argument", "platform", "call"};
  Json json{{"kind", kKinds[static_cast<std::size_t>(input.kind)]}};
  if (input.kind == Kind::call) {
    const auto index = static_cast<std::size_t>(input.number);
    json["index"] = index + 1;
    json["hook"] = nameOf(question.scenario.calls[index].call);
  } else if (input.kind == Kind::metadata || input.kind == Kind::statics) {
    if (input.kind == Kind::metadata) json["container"] = input.key;
    if (input.kind == Kind::statics) json["device"] = input.number;
    json["key"] = tagText(input.tag);
  } else if (input.kind != Kind::provider) {
    json["key"] = input.key;
  }
  return json;
}

std::string_view nameOf(const Call& call) {
  return std::visit([](const auto& concrete) { return concrete.kName; }, call);
}

MetadataArgument* containerOf(Call& call, std::string_view name) {
  if (name == "meta") return findMeta(call);
  auto* const capture = std::get_if<UpdateCaptureRawParameter>(&call);
  if (capture == nullptr) return nullptr;
  if (name == "app") return &capture->app;
  if (name == "hal") return &capture->hal;
  return name == "out" ? &capture->out : nullptr;
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

Json valueAt(const Json& document, std::string_view place) {
  const Json* at = &document;
  while (at != nullptr && !place.empty()) at = findStep(*at, takeStep(place));
  return at != nullptr ? *at : Json();
}

void setValueAt(Json& document, std::string_view place, const Json& value) {
  const std::string_view step = takeStep(place);
  if (place.empty() && value.isNull()) return document.erase(step);
  const Json* found = findStep(document, step);
  // Another change may have shortened the list.
  if (found == nullptr && document.isList()) throw InputError("no item " + std::string(step));
  Json& next = found != nullptr ? const_cast<Json&>(*found) : document[step];
  if (place.empty()) {
    next = value;
  } else {
    setValueAt(next, place, value);
  }
}

}  // namespace camhook
