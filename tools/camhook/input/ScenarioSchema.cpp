#include "tools/camhook/input/ScenarioSchema.h"

#include <algorithm>
#include <concepts>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "host/AndroidTags.h"
#include "tools/camhook/input/ScenarioKeys.h"
#include "tools/camhook/input/TagCatalogue.h"
#include "tools/camhook/input/ValueReader.h"

namespace camhook {
namespace {

Json reference(std::string_view name) { return {{"$ref", "#/definitions/" + std::string(name)}}; }

Json anyOf(Json alternatives) { return {{"anyOf", std::move(alternatives)}}; }

Json oneWord(std::string_view word) { return {{"enum", Json::array({word})}}; }

Json listOf(Json item) { return {{"type", "array"}, {"items", std::move(item)}}; }

Json listOf(Json item, std::size_t count) {
  Json list = listOf(std::move(item));
  list["minItems"] = count;
  list["maxItems"] = count;
  return list;
}

Json objectOf(Json properties, Json required) {
  Json object = {{"type", "object"}, {"additionalProperties", false}};
  object["properties"] = std::move(properties);
  if (!required.empty()) object["required"] = std::move(required);
  return object;
}

Json hexadecimalText(const std::string& digits) {
  return {{"type", "string"}, {"pattern", "^0x0*" + digits + "$"}};
}

/// A number, or the hexadecimal text of one.
template <std::integral T>
Json integer(T most, const std::string& digits) {
  const Json number = {
      {"type", "integer"}, {"minimum", std::numeric_limits<T>::min()}, {"maximum", most}};
  return anyOf({number, hexadecimalText(digits)});
}

/// The visitor of `keysOf` that describes an object, and those that it refers to.
class SchemaWriter {
 public:
  explicit SchemaWriter(Json& definitions) : mDefinitions(definitions) {}

  template <typename T>
  void must(std::string_view key, T&& target, std::string_view meaning = {}) {
    mRequired.push_back(key);
    may(key, target, meaning);
  }

  template <typename T>
  void may(std::string_view key, T&& target, std::string_view meaning = {}) {
    Json property = Json::object();
    if (!meaning.empty()) property["description"] = meaning;
    property.update(schemaOf(target));
    mProperties[std::string(key)] = std::move(property);
  }

  void addCall(std::string_view name) {
    mRequired.push_back("call");
    mProperties["call"] = oneWord(name);
  }

  [[nodiscard]] Json schema() const { return objectOf(mProperties, mRequired); }

 private:
  template <std::integral T>
  static Json schemaOf(const T& /*target*/) {
    return reference(kIntegerName<T>);
  }
  static Json schemaOf(const bool& /*target*/) { return {{"type", "boolean"}}; }
  static Json schemaOf(const float& /*target*/) { return reference("float"); }
  static Json schemaOf(const std::string& /*target*/) { return {{"type", "string"}}; }
  static Json schemaOf(const NSCam::MRect& /*target*/) { return reference("rect"); }
  static Json schemaOf(const NSCam::MSize& /*target*/) { return reference("size"); }
  static Json schemaOf(const NSCam::IMetadata& /*target*/) { return reference("metadata"); }
  static Json schemaOf(const MetadataArgument& /*target*/) { return reference("container"); }
  static Json schemaOf(const DefaultShading& /*target*/) { return reference("container"); }
  static Json schemaOf(const WideTag& /*target*/) { return reference("tag"); }
  static Json schemaOf(const BlockSize& /*target*/) {
    return integer(BlockSize::kMost, "([0-3]?[0-9a-fA-F]{1,6}|4000000)");
  }
  static Json schemaOf(const ScenarioFrame::Calls& /*target*/) { return listOf(reference("call")); }
  static Json schemaOf(const std::optional<std::tm>& /*target*/) {
    return {{"type", "string"},
            {"pattern", "^[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}$"}};
  }
  static Json schemaOf(const NamedTexts& target) {
    const Json text = {{"type", "string"}};
    Json known = Json::object();
    for (const auto& [name, meaning] : target.known) {
      Json described = {{"description", meaning}};
      described.update(text);
      known[std::string(name)] = std::move(described);
    }
    return {{"type", "object"}, {"properties", std::move(known)}, {"additionalProperties", text}};
  }

  Json schemaOf(const std::map<std::int32_t, host::DeviceConfig>& /*target*/) {
    const Json device = schemaOf(host::DeviceConfig());
    return {{"type", "object"},
            {"additionalProperties", false},
            {"patternProperties", {{"^(0|-?[1-9][0-9]*)$", device}}}};
  }

  template <typename T>
  Json schemaOf(const std::vector<T>& /*target*/) {
    return listOf(schemaOf(T()));
  }

  template <typename T>
  Json schemaOf(const std::optional<T>& /*target*/) {
    return schemaOf(T());
  }

  template <typename T, std::size_t Size>
  Json schemaOf(const Row<T, Size>& /*target*/) {
    Json list = listOf(schemaOf(T()));
    list["maxItems"] = Size;
    return list;
  }

  Json schemaOf(const host::SensorConfig::Pair& pair) {
    return listOf(reference("int32"), pair.size());
  }

  /// Puts the object among the definitions.
  template <ScenarioObject T>
  Json schemaOf(const T& /*target*/) {
    const std::string name(kObjectName<T>);
    mDefinitions[name] = Json();  // before those that are in it
    T target;
    SchemaWriter inside(mDefinitions);
    keysOf(inside, target);
    mDefinitions[name] = inside.schema();
    return reference(name);
  }

  Json& mDefinitions;
  Json mProperties = Json::object();
  Json mRequired = Json::array();
};

void addCalls(Json& definitions) {
  Json alternatives = Json::array();
  definitions["call"] = Json();
  forEachCall([&]<typename CallType>(CallType call) {
    const std::string name(CallType::kName);
    alternatives.push_back(reference(name));
    SchemaWriter writer(definitions);
    writer.addCall(name);
    keysOf(writer, call);
    Json schema = {{"description", CallType::kMeaning}};
    schema.update(writer.schema());
    definitions[name] = std::move(schema);
  });
  definitions["call"] = {{"oneOf", std::move(alternatives)}};
}

void addNumbers(Json& definitions) {
  const std::string hex = "[0-9a-fA-F]";
  const auto signedDigits = [&](const std::string& rest) {
    return "([0-7]" + hex + '{' + rest + "}|" + hex + "{1," + rest + "})";
  };
  definitions["int32"] = integer(std::numeric_limits<std::int32_t>::max(), signedDigits("7"));
  definitions["int64"] = integer(std::numeric_limits<std::int64_t>::max(), signedDigits("15"));
  definitions["uint8"] = integer(std::numeric_limits<std::uint8_t>::max(), hex + "{1,2}");
  definitions["uint32"] = integer(std::numeric_limits<std::uint32_t>::max(), hex + "{1,8}");
  definitions["uint64"] = integer(std::numeric_limits<std::uint64_t>::max(), hex + "{1,16}");
  const Json number = {{"type", "number"},
                       {"minimum", -kFirstBeyondFloats},
                       {"exclusiveMinimum", true},
                       {"maximum", kFirstBeyondFloats},
                       {"exclusiveMaximum", true}};
  definitions["float"] = anyOf({number, {{"enum", {"inf", "-inf", "nan"}}}});
  const auto tuple = [&](const char* name, const char* shape, std::size_t count) {
    definitions[name] = {{"description", shape}};
    definitions[name].update(listOf(reference("int32"), count));
  };
  tuple("size", "[width, height]", 2);
  tuple("rect", "[x, y, width, height]", 4);
  tuple("rational", "[numerator, denominator]", 2);
}

/// Entries of one type: in short, and with the type beside the items.
void addEntries(Json& definitions) {
  constexpr std::string_view kTypes[] = {"int32", "int64", "uint8", "float", "rect", "rational"};
  Json typed = Json::array();
  for (const std::string_view type : kTypes) {
    Json items = listOf(reference(type));
    Json alternatives = {reference(type), items};
    if (type == "uint8") {
      const Json bytes = {{"description", "One item a byte"}, {"type", "string"}};
      items = anyOf({items, bytes});
      alternatives = {{{"type", "integer"}, {"minimum", 0}, {"maximum", 255}}, items};
    }
    alternatives.push_back(reference("typed"));
    definitions[std::string(type) + "Entry"] = anyOf(std::move(alternatives));
    typed.push_back(
        objectOf({{"type", oneWord(type)}, {"items", std::move(items)}}, {"type", "items"}));
  }
  definitions["typed"] = {{"description", "Items of another type than the catalogue's"},
                          {"oneOf", std::move(typed)}};
  definitions["unlisted"] = anyOf({reference("typed"), {{"type", "array"}, {"maxItems", 0}}});
}

/// "2 int32: request: AE target fps range [min,max]"
std::string described(const TagDescription& tag) {
  const std::string count =
      tag.count == kAnyCount ? std::string("any number of") : std::to_string(tag.count);
  return count + ' ' + std::string(tag.type) + ": " + std::string(tag.meaning);
}

/// An entry whose items may have names.
Json enumeratedEntry(const TagDescription& tag, const host::AndroidTag& known) {
  Json names = Json::array();
  for (const host::AndroidTag::Value& value : known.values) names.push_back(value.name);
  const Json items = listOf(anyOf({{{"enum", std::move(names)}}, reference(tag.type)}));
  const Json type = {{"enum", {"int32", "uint8"}}};
  return anyOf({reference(std::string(tag.type) + "Entry"), items,
                objectOf({{"type", type}, {"items", items}}, {"type", "items"})});
}

void addMetadata(Json& definitions) {
  Json tags = Json::object();
  Json names = Json::array();
  for (const TagDescription& tag : kTagCatalogue) {
    names.push_back(tag.name);
    Json entry = {{"description", described(tag)}};
    const host::AndroidTag* known = host::findAndroidTag(tag.value);
    const bool hasNames = known != nullptr && !known->values.empty();
    entry.update(hasNames ? enumeratedEntry(tag, *known)
                          : reference(std::string(tag.type) + "Entry"));
    tags[std::string(tag.name)] = std::move(entry);
  }
  definitions["tag"] = anyOf({{{"enum", std::move(names)}}, hexadecimalText("[0-9a-fA-F]{1,16}")});
  Json metadata = {{"description", "From tag to value"}};
  metadata.update(objectOf(std::move(tags), {}));
  metadata["patternProperties"] = {{"^0x0*[0-9a-fA-F]{1,8}$", reference("unlisted")}};
  definitions["metadata"] = std::move(metadata);
  definitions["container"] = anyOf({{{"type", "null"}}, reference("metadata")});
}

}  // namespace

Json scenarioSchema() {
  Json definitions = Json::object();
  SchemaWriter root(definitions);
  root.may("scenario", ScenarioFrame());
  addCalls(definitions);
  addNumbers(definitions);
  addEntries(definitions);
  addMetadata(definitions);
  Json schema = {{"$schema", "http://json-schema.org/draft-04/schema#"},
                 {"title", "Scenario of camhook replay"}};
  schema.update(reference("scenario"));
  schema["definitions"] = std::move(definitions);
  return schema;
}

}  // namespace camhook
