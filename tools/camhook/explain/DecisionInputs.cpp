#include "tools/camhook/explain/DecisionInputs.h"

#include <algorithm>

#include "common/Events.h"
#include "common/Product.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/TagCatalogue.h"
#include "tools/camhook/input/WholeNumber.h"

namespace camhook {
namespace {

constexpr DecisionInputField kFields[] = {
    {kProduct, "--product", "Product model, as in ro.product.model.zdm", "TEXT"},
    {kSensor, "--sensor", "Sensor index; 1 is the front camera"},
    {kVideo, "--video", "The configuration has a video stream", ""},
    {kAppType, "--app-type", "APP_TYPE of the event store", "TEXT"},
    {kAppName, "--app-name", "APP_NAME of the event store", "TEXT"},
    {kHfps, "--hfps", kHfps},
    {kFps, "--fps", kFps, "LO,HI", ','},
    {kEis, "--eis", kEis},
    {kVideoAlgo, "--algo,--video-algo", kVideoAlgo},
    {kUiModule, "--ui,--ui-module", kUiModule},
    {kHdr, "--hdr", kHdr},
    {kNight, "--night", kNight},
    {kSize, "--size", "Size of the app's main output in pixels", "WxH", 'x'},
};

const DecisionInputField& fieldOf(std::string_view name) {
  return *std::ranges::find(kFields, name, &DecisionInputField::name);
}

Json jsonFromText(std::string_view text) { return text.empty() ? Json() : Json(text); }

}  // namespace

std::span<const DecisionInputField> decisionInputFields() { return kFields; }

DecisionInputs decisionInputsOf(std::string_view product, std::int32_t sensor, bool hasVideo) {
  DecisionInputs inputs;
  for (const DecisionInputField& field : kFields) inputs[field.name] = nullptr;
  inputs[kProduct] = jsonFromText(product);
  inputs[kSensor] = sensor;
  inputs[kVideo] = hasVideo;
  return inputs;
}

DecisionInputs decisionInputsOf(const DecideSensorScenario& call) {
  DecisionInputs inputs = decisionInputsOf(hesk::productModel("").data(), call.sensor, call.video);
  inputs[kAppType] = jsonFromText(hesk::eventValue(kAppType));
  inputs[kAppName] = jsonFromText(hesk::eventValue(kAppName));
  inputs[kSize] = Json::List{call.width, call.height};
  for (const DecisionInputField& field : kFields) {
    const TagDescription* const tag = findTag(field.name);
    if (tag == nullptr || !call.meta) continue;
    const auto& entry = call.meta->entryFor(tag->value);
    const auto item = [&](std::size_t i) {
      return entry.itemAt(i, NSCam::Type2Type<std::int32_t>{});
    };
    if (entry.isEmpty()) continue;
    inputs[field.name] = field.name == kFps ? Json(Json::List{item(0), item(1)}) : Json(item(0));
  }
  return inputs;
}

Json decisionInputFromText(const DecisionInputField& field, std::string_view text) {
  if (field.type == "TEXT") return jsonFromText(text);
  const std::size_t end = std::min(text.find(field.separator), text.size());
  const auto first = wholeNumber<std::int32_t>(text.substr(0, end));
  if (first && end == text.size() && field.separator == '\0') return *first;
  const auto second = wholeNumber<std::int32_t>(text.substr(std::min(end + 1, text.size())));
  if (first && second) return Json::List{*first, *second};
  const std::string expected(field.separator == '\0' ? "a 32-bit integer" : field.type);
  throw InputError("camhook: " + std::string(field.option()) + ": expected " + expected +
                   ", found " + jsonText(text));
}

std::string_view textOf(const Json& value) {
  return value.isText() ? value.text() : std::string_view();
}

std::int32_t numberOf(const Json& value) { return value.integer<std::int32_t>().value_or(0); }

std::string decisionInputText(std::string_view name, const Json& value) {
  if (value.isNull()) return "absent";
  if (value.isText()) return value.text();
  if (value.isBoolean()) return value.isTrue() ? "yes" : "no";
  if (!value.isList()) return lineOfJson(value);
  return lineOfJson(value[0]) + fieldOf(name).separator + lineOfJson(value[1]);
}

NSCam::IMetadata sessionMetadataOf(const DecisionInputs& inputs) {
  Json entries = Json::Object();
  for (const auto& [name, value] : inputs.members()) {
    if (!value.isNull() && findTag(name) != nullptr) entries[name] = value;
  }
  return metadataFromJson(entries, "");
}

HeskSensorModeControl::StreamInfo streamsOf(const DecisionInputs& inputs) {
  const Json& size = inputs[kSize];
  return {.hasVideoConsumer = inputs[kVideo].isTrue(),
          .mainOutputSize =
              size.isNull() ? NSCam::MSize() : NSCam::MSize{numberOf(size[0]), numberOf(size[1])}};
}

hesk::OverrideConfiguration overrideConfigurationOf(const DecisionInputs& inputs) {
  return {.appType = textOf(inputs[kAppType]),
          .appName = textOf(inputs[kAppName]),
          .sensorId = numberOf(inputs[kSensor]),
          .hdrMode = numberOf(inputs[kHdr]),
          .nightMode = numberOf(inputs[kNight]),
          .hasVideo = inputs[kVideo].isTrue(),
          .size = streamsOf(inputs).mainOutputSize};
}

}  // namespace camhook
