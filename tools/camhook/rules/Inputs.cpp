#include "tools/camhook/rules/Inputs.h"

#include <algorithm>
#include <array>

#include "common/Events.h"
#include "common/Product.h"
#include "common/tags/FrameRateRange.h"
#include "common/tags/Metadata.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/NearNames.h"
#include "tools/camhook/input/WholeNumber.h"

namespace camhook {
namespace {

std::optional<std::array<std::int32_t, 2>> numbersFrom(std::string_view text, char separator) {
  const std::size_t at = text.find(separator);
  if (at == std::string_view::npos) return {};
  const auto first = wholeNumber<std::int32_t>(text.substr(0, at));
  const auto second = wholeNumber<std::int32_t>(text.substr(at + 1));
  if (!first || !second) return {};
  return std::array{*first, *second};
}

template <auto kMember>
constexpr InputField textField(std::string_view name, std::string_view option) {
  return {.name = name,
          .option = option,
          .text =
              [](const Inputs& inputs) {
                return (inputs.*kMember).empty() ? std::string(kAbsent) : inputs.*kMember;
              },
          .json =
              [](const Inputs& inputs) {
                return (inputs.*kMember).empty() ? Json() : Json(inputs.*kMember);
              },
          .set =
              [](Inputs& inputs, std::string_view text) {
                inputs.*kMember = text == kAbsent ? std::string_view() : text;
                return true;
              }};
}

template <auto kMember>
constexpr InputField numberField(std::string_view name, std::string_view option) {
  return {.name = name,
          .option = option,
          .text =
              [](const Inputs& inputs) {
                const std::optional<std::int32_t>& number = inputs.*kMember;
                return number ? std::to_string(*number) : std::string(kAbsent);
              },
          .json =
              [](const Inputs& inputs) {
                const std::optional<std::int32_t>& number = inputs.*kMember;
                return number ? Json(*number) : Json();
              },
          .set =
              [](Inputs& inputs, std::string_view text) {
                const auto number = wholeNumber<std::int32_t>(text);
                if (!number && text != kAbsent) return false;
                inputs.*kMember = number;
                return true;
              }};
}

constexpr InputField kSensorField{
    .name = "sensor",
    .option = "sensor",
    .text = [](const Inputs& inputs) { return std::to_string(inputs.sensor); },
    .json = [](const Inputs& inputs) { return Json(inputs.sensor); },
    .set =
        [](Inputs& inputs, std::string_view text) {
          const auto number = wholeNumber<std::int32_t>(text);
          inputs.sensor = number.value_or(inputs.sensor);
          return number.has_value();
        }};

constexpr InputField kVideoField{
    .name = "video stream",
    .option = "video",
    .text = [](const Inputs& inputs) { return std::string(inputs.video ? "yes" : "no"); },
    .json = [](const Inputs& inputs) { return Json(inputs.video); },
    .set =
        [](Inputs& inputs, std::string_view text) {
          if (text != "yes" && text != "no") return false;
          inputs.video = text == "yes";
          return true;
        }};

constexpr InputField kFpsField{
    .name = "MTK_CONTROL_AE_TARGET_FPS_RANGE",
    .option = "fps",
    .text =
        [](const Inputs& inputs) {
          if (!inputs.fps) return std::string(kAbsent);
          return std::to_string(inputs.fps->lower) + "," + std::to_string(inputs.fps->upper);
        },
    .json =
        [](const Inputs& inputs) {
          return inputs.fps ? Json::array({inputs.fps->lower, inputs.fps->upper}) : Json();
        },
    .set =
        [](Inputs& inputs, std::string_view text) {
          const auto range = numbersFrom(text, ',');
          if (!range && text != kAbsent) return false;
          inputs.fps.reset();
          if (range) inputs.fps = {.lower = range->front(), .upper = range->back()};
          return true;
        }};

constexpr InputField kSizeField{.name = "main output size",
                                .option = "size",
                                .text =
                                    [](const Inputs& inputs) {
                                      return std::to_string(inputs.size.w) + "x" +
                                             std::to_string(inputs.size.h);
                                    },
                                .json =
                                    [](const Inputs& inputs) {
                                      return Json::array({inputs.size.w, inputs.size.h});
                                    },
                                .set =
                                    [](Inputs& inputs, std::string_view text) {
                                      const auto size = numbersFrom(text, 'x');
                                      if (size)
                                        inputs.size = {.w = size->front(), .h = size->back()};
                                      return size.has_value();
                                    }};

constexpr InputField kFields[] = {
    textField<&Inputs::product>("ro.product.model.zdm", "product"),
    kSensorField,
    kVideoField,
    textField<&Inputs::appType>("APP_TYPE", "app-type"),
    textField<&Inputs::appName>("APP_NAME", "app-name"),
    numberField<&Inputs::hfps>("MTK_STREAMING_FEATURE_HFPS_MODE", "hfps"),
    kFpsField,
    numberField<&Inputs::eis>("HESK_CONTROL_EISENABLE", "eis"),
    numberField<&Inputs::videoAlgo>("HESK_CONTROL_VIDEOALGOTYPE", "video-algo"),
    numberField<&Inputs::uiModule>("COM_HESK_CURRENTUIMODULE", "ui-module"),
    numberField<&Inputs::hdr>("MTK_HDR_FEATURE_HDR_MODE", "hdr"),
    numberField<&Inputs::night>("HESK_CONTROL_NIGHTMODE", "night"),
    kSizeField,
};

template <typename T>
void writeIfGiven(NSCam::IMetadata& meta, hesk::Tag<T> tag, const std::optional<T>& value) {
  if (value) hesk::write(&meta, tag, *value);
}

/// Null where no input has this name, nor its option.
const InputField* findInput(std::string_view name) {
  const auto* const found = std::ranges::find_if(kFields, [name](const InputField& field) {
    return field.name == name || field.option == name;
  });
  return found != std::end(kFields) ? found : nullptr;
}

}  // namespace

std::span<const InputField> inputFields() { return kFields; }

Inputs changedBy(Inputs inputs, const std::string& word) {
  const std::size_t equals = word.find('=');
  if (equals == std::string::npos) {
    throw InputError("must be NAME=VALUE, not " + jsonText(word));
  }
  const std::string name = word.substr(0, equals);
  const InputField* const field = findInput(name);
  if (field == nullptr) {
    std::vector<std::string_view> names;
    for (const InputField& one : kFields) names.insert(names.end(), {one.name, one.option});
    throw InputError("no input " + jsonText(name) + nearNames(name, names));
  }
  const std::string value = word.substr(equals + 1);
  if (!field->set(inputs, value)) {
    throw InputError(jsonText(value) + " is no value of " + std::string(field->name));
  }
  return inputs;
}

Json jsonFromInputs(const Inputs& inputs) {
  Json json = Json::object();
  for (const InputField& field : kFields) json[std::string(field.name)] = field.json(inputs);
  return json;
}

hesk::OverrideConfiguration Inputs::forOverrides() const {
  return {.appType = appType,
          .appName = appName,
          .sensorId = sensor,
          .hdrMode = hdr.value_or(0),
          .nightMode = night.value_or(0),
          .hasVideo = video,
          .size = size};
}

NSCam::IMetadata Inputs::metadata() const {
  using namespace hesk;
  NSCam::IMetadata meta;
  writeIfGiven(meta, tags::HESK_CONTROL_EISENABLE, eis);
  writeIfGiven(meta, tags::MTK_STREAMING_FEATURE_HFPS_MODE, hfps);
  writeIfGiven(meta, tags::HESK_CONTROL_VIDEOALGOTYPE, videoAlgo);
  writeIfGiven(meta, tags::COM_HESK_CURRENTUIMODULE, uiModule);
  writeIfGiven(meta, tags::MTK_HDR_FEATURE_HDR_MODE, hdr);
  writeIfGiven(meta, tags::HESK_CONTROL_NIGHTMODE, night);
  if (fps) write(&meta, tags::MTK_CONTROL_AE_TARGET_FPS_RANGE, fps->lower, fps->upper);
  return meta;
}

Inputs inputsOf(const DecideSensorScenario& call) {
  using namespace hesk;
  const NSCam::IMetadata* const meta = call.meta ? &*call.meta : nullptr;
  Inputs inputs{.product = productModel("").data(),
                .sensor = call.sensor,
                .video = call.video,
                .appType = eventValue("APP_TYPE"),
                .appName = eventValue("APP_NAME"),
                .hfps = readIfPresent(meta, tags::MTK_STREAMING_FEATURE_HFPS_MODE),
                .eis = readIfPresent(meta, tags::HESK_CONTROL_EISENABLE),
                .fps = {},
                .videoAlgo = readIfPresent(meta, tags::HESK_CONTROL_VIDEOALGOTYPE),
                .uiModule = readIfPresent(meta, tags::COM_HESK_CURRENTUIMODULE),
                .hdr = readIfPresent(meta, tags::MTK_HDR_FEATURE_HDR_MODE),
                .night = readIfPresent(meta, tags::HESK_CONTROL_NIGHTMODE),
                .size = {.w = call.width, .h = call.height}};
  if (has(meta, tags::MTK_CONTROL_AE_TARGET_FPS_RANGE)) {
    const FrameRateRange range = readFrameRateRange(meta);
    inputs.fps = {.lower = range.lower, .upper = range.upper};
  }
  return inputs;
}

}  // namespace camhook
