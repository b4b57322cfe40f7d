#include "tools/camhook/show/TraceText.h"

#include <algorithm>
#include <cstring>
#include <sstream>
#include <variant>

#include "common/math/AeResult.h"
#include "common/tags/Tags.h"
#include "common/updater/PdafRecord.h"
#include "host/AndroidTags.h"
#include "host/MetadataAccess.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/PlainText.h"
#include "tools/camhook/input/TagCatalogue.h"
#include "tools/camhook/show/JsonTrace.h"

namespace camhook {
namespace {

using NSCam::IMetadata;
using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kMaxItems = 12;  // limit for the items shown

/// The fields of the AE record, one string for each line of output.
constexpr std::string_view kAeRows[] = {
    "luxIndex expIndex",
    "realGain safeGain longGain sensorGain adrcGain darkBoostGain ispGain",
    "sensitivityShort sensitivitySafe sensitivityLong",
    "sensorGainShort ispGainShort expTimeShort",
    "sensorGainNormal ispGainNormal expTimeNormal adrcGainNormal",
    "sensitivityRatio expTimeRatio gainRatio",
};

/// FNV-1a of a text, in eight digits.
std::string checksum(std::string_view text) {
  std::uint32_t sum = 2'166'136'261U;
  for (const char letter : text) {
    sum ^= static_cast<std::uint8_t>(letter);
    sum = static_cast<std::uint32_t>(std::uint64_t{sum} * 16'777'619U & 0xffff'ffffU);
  }
  return hexadecimal(sum).substr(2);
}

/// "2", or "2 (STILL_CAPTURE)" if the tag has names for its values.
std::string itemText(const host::AndroidTag* known, const Json& item) {
  std::string text = valueText(item);
  if (known == nullptr || !item.isInteger()) return text;
  const std::string_view name = known->nameOf(item.integer<std::int64_t>().value_or(0));
  if (!name.empty()) text.append(" (").append(name).append(")");
  return text;
}

/// "1", "[15, 60]", "[50, 48, ... 15 items, sum 1f00beef]".
std::string itemsText(std::uint32_t tag, const Json& items) {
  const host::AndroidTag* known = host::findAndroidTag(tag);
  if (items.size() == 1) return itemText(known, items[0]);
  std::string text = "[";
  for (std::size_t i = 0; i < std::min(items.size(), kMaxItems); ++i) {
    text += (i > 0 ? ", " : "") + itemText(known, items[i]);
  }
  if (items.size() > kMaxItems) {
    text += ", ... " + std::to_string(items.size()) + " items, sum " + checksum(lineOfJson(items));
  }
  return text + "]";
}

/// The bytes as a text in quotes; empty unless they are printable and end with a zero.
std::vector<std::string> textLines(const Bytes& bytes) {
  const bool isText = bytes.size() > 1 && bytes.back() == 0 &&
                      std::all_of(bytes.begin(), bytes.end() - 1, [](std::uint8_t letter) {
                        return letter >= ' ' && letter <= '~';
                      });
  if (!isText) return {};
  return {jsonText(std::string(bytes.begin(), bytes.end()))};
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

std::vector<std::string> pdafLines(const Bytes& bytes) {
  std::vector<std::int32_t> words(bytes.size() / sizeof(std::int32_t));
  std::memcpy(words.data(), bytes.data(), bytes.size());
  const auto list = [&](std::size_t first, std::size_t count) {
    std::string text;
    for (std::size_t i = first; i < first + count; ++i) text += ' ' + std::to_string(words[i]);
    return text;
  };
  const std::int32_t pairs = std::clamp(words[4] / 2, 0, 16);
  std::vector<std::string> lines{"words 2 and 3:" + list(0, 2) + ", tail:" + list(2, 2) +
                                 ", twice the pairs:" + list(4, 1) +
                                 ", buffer type:" + list(words.size() - 3, 3)};
  for (std::size_t i = 0; i < static_cast<std::size_t>(pairs); ++i) {
    lines.push_back("pair " + std::to_string(i + 1) + ": left" + list(5 + 4 * i, 2) + ", right" +
                    list(7 + 4 * i, 2));
  }
  return lines;
}

}  // namespace

std::string valueText(const Json& value) {
  return value.isText() && !value.text().empty() ? printable(value.text()) : lineOfJson(value);
}

std::string streamsText(const Json& streams) {
  std::string text;
  for (const Json& stream : streams.items()) {
    if (!text.empty()) text += ", ";
    const auto member = [&stream](const char* key) { return valueText(stream[key]); };
    text +=
        member("id") + ' ' + member("width") + 'x' + member("height") + " usage " + member("usage");
  }
  return text.empty() ? "none" : text;
}

std::string effectFields(const host::Effect& effect) {
  std::string fields;
  const Json json = jsonFromEffect(effect);
  for (const auto& [key, value] : json.members()) {
    if (key == "op") continue;
    if (!fields.empty()) fields += ' ';
    fields.append(key).append("=").append(valueText(value));
    if (key != "command") continue;
    for (const auto& [op, command, name] : kCommandNames) {
      if (op == effect.op && value == command) fields.append(" (").append(name).append(")");
    }
  }
  return fields;
}

std::string entryText(std::uint32_t tag, const IMetadata::IEntry& entry) {
  if (entry.isEmpty()) return "absent";
  std::string text = itemsText(tag, jsonFromItems(entry));
  const std::string_view type = host::typeName(host::MetadataAccess::itemsOf(entry));
  const TagDescription* known = findTag(tag);
  if (known == nullptr || known->type != type) text.append(" (").append(type).append(")");
  return text;
}

std::vector<std::string> decodedLines(std::uint32_t tag, const IMetadata::IEntry& entry) {
  const host::ItemList& items = host::MetadataAccess::itemsOf(entry);
  if (tag == hesk::tags::HESK_CONTROL_AE_RESULT.value &&
      entry.count() == sizeof(hesk::AeResult) / sizeof(float)) {
    return aeLines(jsonFromItems(entry));
  }
  const auto* bytes = std::get_if<Bytes>(&items);
  if (bytes == nullptr) return {};
  if (tag == hesk::tags::MTK_RAW_ALGO_PDAF_INFO.value &&
      bytes->size() == hesk::PDAF_STATS_DATA_SIZE) {
    return pdafLines(*bytes);
  }
  return textLines(*bytes);
}

}  // namespace camhook
