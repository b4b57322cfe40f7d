#include "tools/camhook/show/ScenarioWriter.h"

#include <array>
#include <charconv>
#include <cmath>
#include <ostream>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

#include "host/AndroidTags.h"
#include "host/MetadataAccess.h"
#include "tools/camhook/input/Joined.h"
#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/TagCatalogue.h"

namespace camhook {
namespace {

using NSCam::IMetadata;
using Members = std::vector<std::string>;

/// Members between brackets, each on lines of its own; `indent` is the column of the brackets.
std::string block(const Members& members, std::size_t indent, std::string_view brackets = "{}") {
  if (members.empty()) return std::string(brackets);
  const std::string end = '\n' + std::string(indent, ' ');
  const std::string start = end + "  ";
  return brackets.front() + start + joined(members, ',' + start) + end + brackets.back();
}

std::string listOf(const Members& items) { return '[' + joined(items, ", ") + ']'; }

std::string member(std::string_view key, const std::string& value) {
  return jsonText(key) + ": " + value;
}

std::string listOf(std::initializer_list<std::int32_t> numbers) {
  Members texts;
  for (const std::int32_t number : numbers) texts.push_back(std::to_string(number));
  return listOf(texts);
}

template <typename T>
std::string itemText(T item) {
  return std::to_string(item);
}
std::string itemText(float item) {
  if (std::isnan(item)) return R"("nan")";
  if (std::isinf(item)) return item < 0 ? R"("-inf")" : R"("inf")";
  std::array<char, 32> digits{};
  return {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), item).ptr};
}
std::string itemText(const NSCam::MRect& item) { return listOf({item.x, item.y, item.w, item.h}); }
std::string itemText(const NSCam::MRational& item) {
  return listOf({item.numerator, item.denominator});
}

/// The name of an item of an enumeration; empty where it has none.
template <typename T>
std::string_view nameOf(const host::AndroidTag* known, const T& item) {
  if constexpr (std::is_same_v<T, std::uint8_t> || std::is_same_v<T, std::int32_t>) {
    if (known != nullptr) return known->nameOf(item);
  }
  return {};
}

std::string valueText(const IMetadata::IEntry& entry) {
  const host::ItemList& items = host::MetadataAccess::itemsOf(entry);
  const host::AndroidTag* known = host::findAndroidTag(entry.tag());
  Members texts;
  bool hasNames = false;
  std::visit(
      [&](const auto& list) {
        for (const auto& item : list) {
          const std::string_view name = nameOf(known, item);
          hasNames = hasNames || !name.empty();
          texts.push_back(name.empty() ? itemText(item) : jsonText(name));
        }
      },
      items);
  const TagDescription* info = findTag(entry.tag());
  const std::string_view type = host::typeName(items);
  const bool isOfCatalogue = info != nullptr && info->type == type;
  // A name by itself would be the bytes of its text.
  if (isOfCatalogue && texts.size() == 1 && !hasNames) return texts.front();
  const std::string list = listOf(texts);
  return isOfCatalogue ? list
                       : "{ \"type\": " + jsonText(type) + ", " + member("items", list) + " }";
}

std::string metadataText(const Dump& dump, std::size_t indent) {
  Members entries;
  for (const IMetadata::IEntry& entry : dump.entries) {
    entries.push_back(member(tagText(entry.tag()), valueText(entry)));
  }
  return block(entries, indent);
}

std::string textsText(const host::TextMap& texts, std::size_t indent) {
  Members members;
  for (const auto& [name, value] : texts) members.push_back(member(name, jsonText(value)));
  return block(members, indent);
}

std::string platformText(const DumpScenario& scenario) {
  Members members;
  if (!scenario.properties.empty()) {
    members.push_back(member("properties", textsText(scenario.properties, 4)));
  }
  if (!scenario.eventStore.empty()) {
    members.push_back(member("eventStore", textsText(scenario.eventStore, 4)));
  }
  if (scenario.statics) {
    const std::string device = block({member("static", metadataText(*scenario.statics, 8))}, 6);
    members.push_back(
        member("devices", block({member(std::to_string(scenario.sensor), device)}, 4)));
  }
  if (!scenario.clock.empty()) members.push_back(member("clock", jsonText(scenario.clock)));
  return members.empty() ? "" : block(members, 2);
}

std::string callText(const DumpScenario& scenario, const DumpScenario::Call& call) {
  const DumpHook& hook = *scenario.hook;
  Members arguments{member("call", jsonText(hook.call)),
                    member("sensor", std::to_string(scenario.sensor))};
  if (!hook.numberKey.empty()) {
    arguments.push_back(member(hook.numberKey, std::to_string(call.requestNo)));
  }
  if (!hook.rest.empty()) arguments.emplace_back(hook.rest);
  Members members{joined(arguments, ", ")};
  for (std::size_t i = 0; i < call.containers.size(); ++i) {
    const Dump& dump = call.containers[i];
    members.push_back(member(hook.containers[i], dump.isNull ? "null" : metadataText(dump, 6)));
  }
  return block(members, 4);
}

}  // namespace

void writeScenario(std::ostream& out, const DumpScenario& scenario) {
  out << "{\n  " << member("about", jsonText(scenario.about)) << ",\n";
  const std::string platform = platformText(scenario);
  if (!platform.empty()) out << "  " << member("platform", platform) << ",\n";
  out << "  \"calls\": [";
  for (const DumpScenario::Call& call : scenario.calls) {
    out << (&call != &scenario.calls.front() ? ",\n    " : "\n    ") << callText(scenario, call);
  }
  out << "\n  ]\n}\n";
}

}  // namespace camhook
