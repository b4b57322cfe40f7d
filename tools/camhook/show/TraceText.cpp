#include "tools/camhook/show/TraceText.h"

#include <algorithm>
#include <cstdint>
#include <sstream>
#include <utility>
#include <variant>

#include "common/math/AeResult.h"
#include "common/updater/PdafRecord.h"
#include "host/AndroidTags.h"
#include "platform/Hal3A.h"
#include "platform/HalSensor.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/show/JsonTrace.h"

namespace camhook {
namespace {

constexpr std::size_t kMostItems = 12;  // shown of an entry

/// The fields of the AE record, a row a line.
constexpr std::string_view kAeRows[] = {
    "luxIndex expIndex",
    "realGain safeGain longGain sensorGain adrcGain darkBoostGain ispGain",
    "sensitivityShort sensitivitySafe sensitivityLong",
    "sensorGainShort ispGainShort expTimeShort",
    "sensorGainNormal ispGainNormal expTimeNormal adrcGainNormal",
    "sensitivityRatio expTimeRatio gainRatio",
};

/// "1 1920x1080 usage 0x100, 2 3840x2160 usage 0x10000".
std::string streamsText(const Json& streams) {
  std::string text;
  for (const Json& stream : streams) {
    if (!text.empty()) text += ", ";
    if (!stream.is_object()) return valueText(streams);
    text += memberText(stream, "id") + ' ' + memberText(stream, "width") + 'x' +
            memberText(stream, "height") + " usage " + memberText(stream, "usage");
  }
  return text.empty() ? "none" : text;
}

/// The name of a command to a part of the phone, empty where it has none.
std::string_view commandName(std::string_view op, std::string_view command) {
  using NS3Av3::IHal3A;
  using NSCam::IHalSensor;
  constexpr std::pair<std::string_view, std::pair<std::int32_t, std::string_view>> kCommands[] = {
      {"hal3a.control", {IHal3A::kSetNonZslFrameCount, "setNonZslFrameCount"}},
      {"hal3a.control", {IHal3A::kGetShadingTable, "getShadingTable"}},
      {"sensor.command", {IHalSensor::kSupportsPd, "supportsPd"}},
      {"sensor.command", {IHalSensor::kGetPdBlock, "getPdBlock"}},
  };
  for (const auto& [of, known] : kCommands) {
    if (op == of && command == std::to_string(known.first)) return known.second;
  }
  return {};
}

void appendField(std::string& fields, std::string_view op, std::string_view key,
                 const std::string& value) {
  if (!fields.empty()) fields += ' ';
  fields.append(key).append("=").append(value);
  if (key != "command") return;
  const std::string_view name = commandName(op, value);
  if (!name.empty()) fields.append(" (").append(name).append(")");
}

std::string textOrQuotes(const std::string& text) {
  return text.empty() ? "\"\"" : printable(text);
}

std::string fieldText(const host::Effect::Value& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return textOrQuotes(*text);
  if (const auto* number = std::get_if<float>(&value)) return valueText(jsonFromFloat(*number));
  JsonLine line;
  addEffectValue(line, value);
  return line.line();
}

/// FNV-1a of a text, in eight digits.
std::string checksum(std::string_view text) {
  std::uint32_t sum = 2'166'136'261U;
  for (const char letter : text) {
    sum ^= static_cast<std::uint8_t>(letter);
    sum = static_cast<std::uint32_t>(std::uint64_t{sum} * 16'777'619U & 0xffff'ffffU);
  }
  return hexadecimal(sum).substr(2);
}

/// "2", or "2 (STILL_CAPTURE)" where the tag names its values.
std::string itemText(const host::AndroidTag* known, const Json& item) {
  std::string text = valueText(item);
  if (known == nullptr || !item.is_number_integer()) return text;
  const std::string_view name = known->nameOf(item.get<std::int64_t>());
  if (!name.empty()) text.append(" (").append(name).append(")");
  return text;
}

/// "1", "[15, 60]", "[50, 48, ... 15 items, sum 1f00beef]".
std::string itemsText(const TagDescription* tag, const Json& items) {
  const host::AndroidTag* known = tag != nullptr ? host::findAndroidTag(tag->value) : nullptr;
  if (items.size() == 1) return itemText(known, items.front());
  std::string text = "[";
  for (std::size_t i = 0; i < std::min(items.size(), kMostItems); ++i) {
    text += (i > 0 ? ", " : "") + itemText(known, items[i]);
  }
  if (items.size() > kMostItems) {
    text += ", ... " + std::to_string(items.size()) + " items, sum " + checksum(lineOfJson(items));
  }
  return text + "]";
}

/// The text that bytes hold, in quotes; empty where they are not letters with a zero behind them.
std::string textOfBytes(const Json& items) {
  std::string text;
  for (const Json& item : items) text += static_cast<char>(item.get<std::uint8_t>());
  const bool isText = text.size() > 1 && text.back() == '\0' &&
                      std::all_of(text.begin(), text.end() - 1,
                                  [](char letter) { return letter >= ' ' && letter <= '~'; });
  return isText ? jsonText(text) : "";
}

std::vector<std::string> aeLines(const Json& items) {
  std::vector<std::string> lines;
  std::size_t item = 0;
  for (const std::string_view row : kAeRows) {
    std::istringstream names{std::string(row)};
    std::string& line = lines.emplace_back();
    for (std::string name; names >> name && item < items.size(); ++item) {
      line += (line.empty() ? "" : ", ") + name + ' ' + valueText(items[item]);
    }
  }
  return lines;
}

/// The little-endian words of a record of phase-detection pixels.
std::vector<std::int32_t> wordsOf(const Json& bytes) {
  std::vector<std::int32_t> words;
  for (std::size_t i = 0; i + 3 < bytes.size(); i += 4) {
    std::uint32_t word = 0;
    for (std::size_t byte = 0; byte < 4; ++byte) {
      word |= std::uint32_t{bytes[i + byte].get<std::uint8_t>()} << 8 * byte;
    }
    words.push_back(static_cast<std::int32_t>(word));
  }
  return words;
}

std::vector<std::string> pdafLines(const Json& bytes) {
  const std::vector<std::int32_t> words = wordsOf(bytes);
  const auto list = [&](std::size_t first, std::size_t count) {
    std::string text;
    for (std::size_t i = first; i < first + count; ++i) text += ' ' + std::to_string(words[i]);
    return text;
  };
  constexpr std::size_t kFirstPair = 5;
  constexpr std::size_t kPairWords = 4;
  const std::int32_t pairs = std::clamp(words[kFirstPair - 1] / 2, 0, 16);
  std::vector<std::string> lines{"words 2 and 3:" + list(0, 2) + ", tail:" + list(2, 2) +
                                 ", twice the pairs:" + list(4, 1) +
                                 ", buffer type:" + list(words.size() - 3, 3)};
  for (std::size_t i = 0; i < static_cast<std::size_t>(pairs); ++i) {
    const std::size_t pair = kFirstPair + kPairWords * i;
    lines.push_back("pair " + std::to_string(i + 1) + ": left" + list(pair, 2) + ", right" +
                    list(pair + 2, 2));
  }
  return lines;
}

}  // namespace

std::string valueText(const Json& value) {
  return value.is_string() ? textOrQuotes(value.get_ref<const std::string&>()) : lineOfJson(value);
}

std::string memberText(const Json& object, std::string_view key) {
  const auto found = object.find(key);
  return found != object.end() ? valueText(*found) : "";
}

std::string callTitle(std::string_view call, const Json& sensor, const Json& arguments) {
  std::string title(call);
  if (!sensor.is_null()) title += "  sensor " + valueText(sensor);
  for (const auto& [name, value] : arguments.items()) {
    title += "  " + name + ' ' + (name == "streams" ? streamsText(value) : valueText(value));
  }
  return title;
}

std::string effectFields(const Json& effect) {
  const std::string op = memberText(effect, "op");
  std::string fields;
  for (const auto& [key, value] : effect.items()) {
    if (key != "op") appendField(fields, op, key, valueText(value));
  }
  return fields;
}

std::string effectFields(const host::Effect& effect) {
  std::string fields;
  for (const auto& [name, value] : effect.fields) {
    appendField(fields, effect.op, name, fieldText(value));
  }
  return fields;
}

std::string entryText(const TagDescription* tag, const EntryItems& entry) {
  std::string text = itemsText(tag, entry.items);
  if (tag == nullptr || tag->type != entry.type)
    text.append(" (").append(printable(entry.type)).append(")");
  return text;
}

std::optional<EntryItems> entryFromTrace(const Json& value) {
  if (!value.is_object()) return {};
  const auto type = value.find("type");
  const auto items = value.find("items");
  if (type == value.end() || items == value.end()) return {};
  if (!type->is_string() || !items->is_array()) return {};
  return EntryItems{.type = type->get_ref<const std::string&>(), .items = *items};
}

std::string memberValueText(std::string_view key, const Json& value) {
  if (const auto entry = entryFromTrace(value)) return entryText(findTag(key), *entry);
  return value.is_object() ? std::to_string(value.size()) + " entries" : valueText(value);
}

std::vector<std::string> decodedLines(std::string_view tag, const EntryItems& entry) {
  const auto& [type, items] = entry;
  if (tag == "HESK_CONTROL_AE_RESULT" && items.size() == sizeof(hesk::AeResult) / sizeof(float)) {
    return aeLines(items);
  }
  if (type != "uint8" || !std::ranges::all_of(items, &Json::is_number_integer)) return {};
  if (tag == "MTK_RAW_ALGO_PDAF_INFO" && items.size() == hesk::PDAF_STATS_DATA_SIZE) {
    return pdafLines(items);
  }
  const std::string text = textOfBytes(items);
  return text.empty() ? std::vector<std::string>() : std::vector{text};
}

}  // namespace camhook
