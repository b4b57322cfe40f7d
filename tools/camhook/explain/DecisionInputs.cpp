#include "tools/camhook/explain/DecisionInputs.h"

#include <optional>

#include "common/Events.h"
#include "common/Product.h"
#include "common/tags/Metadata.h"
#include "tools/camhook/input/WholeNumber.h"

namespace camhook {
namespace {

using Form = InputField::Form;
using Numbers = std::array<std::int32_t, 2>;

constexpr InputField tagField(std::string_view name, std::string_view options,
                              hesk::Tag<std::int32_t> tag, Form form = Form::number) {
  return {name, options, form, tag.value};
}

constexpr std::array<InputField, kInputCount> kFields = {{
    {"ro.product.model.zdm", "--product", Form::text},
    {"sensor", "--sensor", Form::number},
    {"video stream", "--video", Form::flag},
    {"APP_TYPE", "--app-type", Form::text},
    {"APP_NAME", "--app-name", Form::text},
    tagField("MTK_STREAMING_FEATURE_HFPS_MODE", "--hfps",
             hesk::tags::MTK_STREAMING_FEATURE_HFPS_MODE),
    tagField("MTK_CONTROL_AE_TARGET_FPS_RANGE", "--fps",
             hesk::tags::MTK_CONTROL_AE_TARGET_FPS_RANGE, Form::range),
    tagField("HESK_CONTROL_EISENABLE", "--eis", hesk::tags::HESK_CONTROL_EISENABLE),
    tagField("HESK_CONTROL_VIDEOALGOTYPE", "--algo,--video-algo",
             hesk::tags::HESK_CONTROL_VIDEOALGOTYPE),
    tagField("COM_HESK_CURRENTUIMODULE", "--ui,--ui-module", hesk::tags::COM_HESK_CURRENTUIMODULE),
    tagField("MTK_HDR_FEATURE_HDR_MODE", "--hdr", hesk::tags::MTK_HDR_FEATURE_HDR_MODE),
    tagField("HESK_CONTROL_NIGHTMODE", "--night", hesk::tags::HESK_CONTROL_NIGHTMODE),
    {"main output size", "--size", Form::size},
}};

char separatorOf(Form form) { return form == Form::range ? ',' : 'x'; }

std::string textOf(Form form, Numbers numbers) {
  std::string first = std::to_string(numbers[0]);
  if (form == Form::number) return first;
  return first + separatorOf(form) + std::to_string(numbers[1]);
}

std::optional<Numbers> numbersFrom(Form form, std::string_view text) {
  const std::size_t at =
      form == Form::number ? std::string_view::npos : text.find(separatorOf(form));
  if (form != Form::number && at == std::string_view::npos) return {};
  const auto first = wholeNumber<std::int32_t>(text.substr(0, at));
  if (form == Form::number) return first ? std::optional(Numbers{*first, 0}) : std::nullopt;
  const auto second = wholeNumber<std::int32_t>(text.substr(at + 1));
  if (!first || !second) return {};
  return Numbers{*first, *second};
}

}  // namespace

std::span<const InputField> inputFields() { return kFields; }

Inputs::Inputs(std::string_view product, std::int32_t sensor, bool video) {
  mTexts[kProduct] = product;
  mTexts[kSensor] = std::to_string(sensor);
  mTexts[kVideo] = video ? "yes" : "no";
  mTexts[kSize] = "0x0";
}

std::string Inputs::shown(InputIndex input) const {
  return mTexts[input].empty() ? "absent" : mTexts[input];
}

bool Inputs::set(InputIndex input, std::string_view text) {
  const Form form = kFields[input].form;
  const bool isNeeded = input == kSensor || input == kVideo || input == kSize;
  if (form == Form::text || (text.empty() && !isNeeded)) {
    mTexts[input] = text;
  } else if (form == Form::flag) {
    if (text != "yes" && text != "no") return false;
    mTexts[input] = text;
  } else {
    const auto numbers = numbersFrom(form, text);
    if (!numbers) return false;
    mTexts[input] = textOf(form, *numbers);
  }
  return true;
}

std::array<std::int32_t, 2> Inputs::numbers(InputIndex input) const {
  return numbersFrom(kFields[input].form, mTexts[input]).value_or(Numbers{});
}

Json Inputs::json(InputIndex input) const {
  if (mTexts[input].empty()) return {};
  switch (kFields[input].form) {
    case Form::text: return mTexts[input];
    case Form::flag: return hasVideo();
    case Form::number: return numbers(input)[0];
    case Form::range:
    case Form::size: break;
  }
  return numbers(input);
}

NSCam::IMetadata Inputs::metadata() const {
  NSCam::IMetadata meta;
  for (std::size_t i = 0; i < kInputCount; ++i) {
    const auto input = static_cast<InputIndex>(i);
    if (kFields[i].tag == NSCam::IMetadata::kNoTag || mTexts[i].empty()) continue;
    const hesk::Tag<std::int32_t> tag{kFields[i].tag};
    const auto [first, second] = numbers(input);
    if (kFields[i].form == Form::range) {
      hesk::write(&meta, tag, first, second);
    } else {
      hesk::write(&meta, tag, first);
    }
  }
  return meta;
}

HeskSensorModeControl::StreamInfo Inputs::streams() const {
  const auto [width, height] = numbers(kSize);
  return {.hasVideoConsumer = hasVideo(), .mainOutputSize = {width, height}};
}

hesk::OverrideConfiguration Inputs::forOverrides() const {
  return {.appType = mTexts[kAppType],
          .appName = mTexts[kAppName],
          .sensorId = numbers(kSensor)[0],
          .hdrMode = numbers(kHdr)[0],
          .nightMode = numbers(kNight)[0],
          .hasVideo = hasVideo(),
          .size = streams().mainOutputSize};
}

Inputs inputsOf(const DecideSensorScenario& call) {
  Inputs inputs(hesk::productModel("").data(), call.sensor, call.video);
  inputs.set(kAppType, hesk::eventValue("APP_TYPE"));
  inputs.set(kAppName, hesk::eventValue("APP_NAME"));
  inputs.set(kSize, textOf(Form::size, {call.width, call.height}));
  const NSCam::IMetadata* const meta = call.meta ? &*call.meta : nullptr;
  for (std::size_t i = 0; i < kInputCount; ++i) {
    const hesk::Tag<std::int32_t> tag{kFields[i].tag};
    if (kFields[i].tag == NSCam::IMetadata::kNoTag || !hesk::has(meta, tag)) continue;
    inputs.set(static_cast<InputIndex>(i),
               textOf(kFields[i].form, {hesk::read(meta, tag), hesk::readItem(meta, tag, 1)}));
  }
  return inputs;
}

}  // namespace camhook
