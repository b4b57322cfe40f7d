#include "tools/camhook/input/ScenarioReader.h"

#include <set>
#include <string>
#include <vector>

#include "common/updater/MetadataDump.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/ObjectReader.h"
#include "tools/camhook/input/PlatformReader.h"
#include "tools/camhook/input/ScenarioKeys.h"

namespace camhook {
namespace {

using Stream = UpdateSessionParams::Stream;

Stream streamFromJson(const Json& json, const Place& place) {
  const ObjectReader reader(json, place, keysOf("stream"));
  return {.id = reader.required<std::int64_t>("id"),
          .usage = reader.required<std::uint64_t>("usage"),
          .width = reader.required<std::int32_t>("width"),
          .height = reader.required<std::int32_t>("height")};
}

std::vector<Stream> streamsFromJson(const Json& json, const Place& place) {
  if (!json.is_array()) place.fail("must be a list");
  std::vector<Stream> streams;
  std::set<std::int64_t> ids;
  for (std::size_t i = 0; i < json.size(); ++i) {
    streams.push_back(streamFromJson(json[i], place[i]));
    if (!ids.insert(streams.back().id).second) place[i]["id"].fail("this id is given twice");
  }
  return streams;
}

/// A dump whose label the library has no room for would end the process.
DumpMetadata dumpFromArguments(const ObjectReader& reader) {
  DumpMetadata call{.sensor = reader.required<std::int32_t>("sensor"),
                    .meta = reader.required<MetadataArgument>("meta"),
                    .name = reader.required<std::string>("name"),
                    .frame = reader.required<std::int32_t>("frame")};
  hesk::MetadataDumpPath path{};
  const int length =
      hesk::formatMetadataDumpPath(path, call.name.c_str(), call.frame, "YYYYMMDDHHMMSS");
  const int most = static_cast<int>(path.size()) - 1;
  if (length > most) {
    reader.place()["name"].fail("too long: the path would have " + std::to_string(length) +
                                " characters, at most " + std::to_string(most) + " fit");
  }
  return call;
}

Call sessionCall(const ObjectReader& reader, std::int32_t sensor) {
  return UpdateSessionParams{
      .sensor = sensor,
      .meta = reader.required<MetadataArgument>("meta"),
      .streams = streamsFromJson(reader.at("streams"), reader.place()["streams"])};
}

Call captureCall(const ObjectReader& reader, std::int32_t sensor) {
  return UpdateCaptureRawParameter{.sensor = sensor,
                                   .app = reader.required<MetadataArgument>("app"),
                                   .hal = reader.required<MetadataArgument>("hal"),
                                   .out = reader.required<MetadataArgument>("out")};
}

/// The tool makes the block, so it must be of a size that a machine has room for.
Call tuningCall(const ObjectReader& reader, std::int32_t sensor) {
  constexpr std::uint32_t kMostBytes = 1U << 26;
  UpdateTuningData call{.sensor = sensor,
                        .meta = reader.required<MetadataArgument>("meta"),
                        .size = reader.required<std::uint32_t>("size")};
  if (call.size > kMostBytes) {
    reader.place()["size"].fail("a block has at most " + std::to_string(kMostBytes) + " bytes");
  }
  return call;
}

Call regionCall(const ObjectReader& reader, std::int32_t sensor) {
  return TranslateResultRegion{
      .sensor = sensor,
      .meta = reader.required<MetadataArgument>("meta"),
      .value = reader.required<float>("value"),
      .cameraId = reader.required<std::int32_t>("cameraId"),
      .tag = wideTagFromText(reader.required<std::string>("tag"), reader.place()["tag"])};
}

Call decisionCall(const ObjectReader& reader, std::int32_t sensor) {
  return DecideSensorScenario{.sensor = sensor,
                              .meta = reader.required<MetadataArgument>("meta"),
                              .video = reader.required<bool>("video"),
                              .width = reader.required<std::int32_t>("width"),
                              .height = reader.required<std::int32_t>("height")};
}

/// The requests and results of the pipeline: a number and a container.
template <typename Frame>
Call frameCall(const ObjectReader& reader, std::int32_t sensor) {
  return Frame{.sensor = sensor,
               .requestNo = reader.required<std::uint32_t>("requestNo"),
               .meta = reader.required<MetadataArgument>("meta")};
}

/// A call on a sensor.
Call sensorCall(std::string_view name, const ObjectReader& reader) {
  const auto sensor = reader.required<std::int32_t>("sensor");
  if (name == UpdateSessionParams::kName) return sessionCall(reader, sensor);
  if (name == UpdateRequestMeta::kName) return frameCall<UpdateRequestMeta>(reader, sensor);
  if (name == UpdateResultMeta::kName) return frameCall<UpdateResultMeta>(reader, sensor);
  if (name == UpdateCaptureRawParameter::kName) return captureCall(reader, sensor);
  if (name == UpdateTuningData::kName) return tuningCall(reader, sensor);
  if (name == TranslateResultRegion::kName) return regionCall(reader, sensor);
  if (name == SetPreviewSize::kName) {
    return SetPreviewSize{.sensor = sensor,
                          .width = reader.required<std::int32_t>("width"),
                          .height = reader.required<std::int32_t>("height")};
  }
  if (name == MatchAspectRatio::kName) {
    return MatchAspectRatio{.sensor = sensor,
                            .reference = reader.required<NSCam::MSize>("reference"),
                            .size = reader.required<NSCam::MSize>("size")};
  }
  if (name == DumpMetadata::kName) return dumpFromArguments(reader);
  if (name == DecideSensorScenario::kName) return decisionCall(reader, sensor);
  return CreateInstance{.sensor = sensor};
}

Call callFromArguments(std::string_view name, const ObjectReader& reader) {
  if (name == SetEvent::kName) {
    return SetEvent{.key = reader.required<std::string>("key"),
                    .value = reader.required<std::string>("value")};
  }
  if (name == SetProperty::kName) {
    return SetProperty{.name = reader.required<std::string>("name"),
                       .value = reader.required<std::string>("value")};
  }
  return sensorCall(name, reader);
}

/// What a trace repeats of a call: all but its name, its sensor and its containers.
Json argumentsOf(const Json& call) {
  Json arguments = Json::object();
  for (const auto& [key, value] : call.items()) {
    if (key != "call" && key != "sensor" && !isContainer(key)) arguments[key] = value;
  }
  return arguments;
}

}  // namespace

ScenarioCall callFromJson(const Json& json, const Place& place) {
  if (!json.is_object()) place.fail("must be an object");
  const Place namePlace = place["call"];
  const auto nameMember = json.find("call");
  if (nameMember == json.end()) namePlace.fail("missing");
  if (!nameMember->is_string()) namePlace.fail("must be a text");

  const auto& name = nameMember->get_ref<const std::string&>();
  const ObjectKeys* call = findCall(name);
  if (call == nullptr) namePlace.fail("unknown call " + jsonText(name));
  std::vector<std::string_view> keys(call->keys.begin(), call->keys.end());
  keys.emplace_back("call");
  return {.call = callFromArguments(name, ObjectReader(json, place, keys)),
          .arguments = argumentsOf(json)};
}

Scenario readScenario(std::string_view text) {
  const Json json = parseJson(text);
  const Place root;
  const ObjectReader reader(json, root, keysOf("scenario"));
  Scenario scenario;
  std::string schema;  // for editors
  reader.readInto(schema, "$schema");
  reader.readInto(scenario.about, "about");
  reader.ifPresent("platform", [&](const Json& platform, const Place& place) {
    scenario.platform = platformFromJson(platform, place);
  });
  const Json& calls = reader.at("calls");
  const Place callsPlace = root["calls"];
  if (!calls.is_array()) callsPlace.fail("must be a list");
  scenario.calls.reserve(calls.size());
  for (std::size_t i = 0; i < calls.size(); ++i) {
    scenario.calls.push_back(callFromJson(calls[i], callsPlace[i]));
  }
  return scenario;
}

}  // namespace camhook
