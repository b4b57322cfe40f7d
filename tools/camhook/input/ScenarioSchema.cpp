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
#include "host/MetadataAccess.h"
#include "tools/camhook/input/ScenarioKeys.h"
#include "tools/camhook/input/TagCatalogue.h"
#include "tools/camhook/input/ValueReader.h"

namespace camhook {
namespace {

using Object = Json::Object;
using List = Json::List;

Json reference(std::string_view name) {
  return Object{{"$ref", "#/definitions/" + std::string(name)}};
}

Json ofType(const char* type) { return Object{{"type", type}}; }

Json anyOf(List alternatives) { return Object{{"anyOf", std::move(alternatives)}}; }

Json oneOf(List values) { return Object{{"enum", std::move(values)}}; }

Json listOf(Json item) { return Object{{"type", "array"}, {"items", std::move(item)}}; }

Json listOf(Json item, std::size_t count) {
  Json list = listOf(std::move(item));
  list["minItems"] = count;
  list["maxItems"] = count;
  return list;
}

Json objectOf(Object properties, List required) {
  Json object = Object{{"type", "object"}, {"additionalProperties", false}};
  object["properties"] = std::move(properties);
  if (!required.empty()) object["required"] = std::move(required);
  return object;
}

/// The schema with a description before it.
Json described(std::string_view meaning, const Json& schema) {
  Object members{{"description", meaning}};
  members.insert(members.end(), schema.members().begin(), schema.members().end());
  return members;
}

std::string digitsUpTo(std::size_t most) { return "[0-9a-fA-F]{1," + std::to_string(most) + '}'; }

Json hexadecimalText(const std::string& digits) {
  return Object{{"type", "string"}, {"pattern", "^0x0*" + digits + "$"}};
}

/// A number, or the hexadecimal text of one.
template <std::integral T>
Json integer(T most, const std::string& digits) {
  const Json number =
      Object{{"type", "integer"}, {"minimum", std::numeric_limits<T>::min()}, {"maximum", most}};
  return anyOf({number, hexadecimalText(digits)});
}

/// The visitor of `keysOf` that describes an object and the objects in it.
class SchemaWriter {
 public:
  explicit SchemaWriter(Json& definitions) : mDefinitions(definitions) {}

  void must(std::string_view key, auto&& target, std::string_view meaning = {}) {
    mRequired.push_back(key);
    may(key, target, meaning);
  }

  void may(std::string_view key, auto&& target, std::string_view meaning = {}) {
    const Json schema = schemaOf(target);
    mProperties.push_back(
        {std::string(key), meaning.empty() ? schema : described(meaning, schema)});
  }

  void addCall(std::string_view name) {
    mRequired.push_back("call");
    mProperties.push_back({"call", oneOf({name})});
  }

  [[nodiscard]] Json schema() const { return objectOf(mProperties, mRequired); }

 private:
  template <std::integral T>
  static Json schemaOf(const T& /*target*/) {
    return reference(integerName<T>());
  }
  static Json schemaOf(const bool& /*target*/) { return ofType("boolean"); }
  static Json schemaOf(const float& /*target*/) { return reference("float"); }
  static Json schemaOf(const std::string& /*target*/) { return ofType("string"); }
  static Json schemaOf(const NSCam::MRect& /*target*/) { return reference("rect"); }
  static Json schemaOf(const NSCam::MSize& /*target*/) { return reference("size"); }
  static Json schemaOf(const NSCam::IMetadata& /*target*/) { return reference("metadata"); }
  static Json schemaOf(const MetadataArgument& /*target*/) { return reference("container"); }
  static Json schemaOf(const DefaultShading& /*target*/) { return reference("container"); }
  static Json schemaOf(const WideTag& /*target*/) { return reference("tag"); }
  static Json schemaOf(const BlockSize& /*target*/) {
    return integer(BlockSize::kMax, "([0-3]?[0-9a-fA-F]{1,6}|4000000)");
  }
  static Json schemaOf(const ScenarioFrame::Calls& /*target*/) { return listOf(reference("call")); }
  static Json schemaOf(const std::optional<std::tm>& /*target*/) {
    return Object{{"type", "string"},
                  {"pattern", "^[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}$"}};
  }
  static Json schemaOf(const NamedTexts& target) {
    const Json text = ofType("string");
    Object known;
    for (const auto& [name, meaning] : target.known) {
      known.push_back({std::string(name), described(meaning, text)});
    }
    return Object{
        {"type", "object"}, {"properties", std::move(known)}, {"additionalProperties", text}};
  }

  Json schemaOf(const std::map<std::int32_t, host::DeviceConfig>& /*target*/) {
    const Json device = schemaOf(host::DeviceConfig());
    return Object{{"type", "object"},
                  {"additionalProperties", false},
                  {"patternProperties", Object{{"^(0|-?[1-9][0-9]*)$", device}}}};
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

  /// Adds the object to the definitions.
  template <ScenarioObject T>
  Json schemaOf(const T& /*target*/) {
    const std::string name(objectName<T>());
    mDefinitions[name] = Json();  // an object precedes the objects in it
    T target;
    SchemaWriter inside(mDefinitions);
    keysOf(inside, target);
    mDefinitions[name] = inside.schema();
    return reference(name);
  }

  Json& mDefinitions;
  Object mProperties;
  List mRequired;
};

/// Adds metaOf to a call. With it, `meta` may be absent but not null.
void addMetaOf(Json& call) {
  const Json required = Object{{"required", List{"metaOf"}}};
  call["properties"]["metaOf"] = described(
      "Number of an earlier call, from 1, whose `meta` this call gets", reference("uint32"));
  std::erase(call["required"].items(), Json("meta"));
  call["oneOf"] = List{Object{{"required", List{"meta"}}, {"not", required}},
                       Object{{"required", List{"metaOf"}},
                              {"properties", Object{{"meta", reference("metadata")}}}}};
}

void addCalls(Json& definitions) {
  List alternatives;
  definitions["call"] = Json();
  forEachCall([&]<typename CallType>(CallType call) {
    const std::string name(CallType::kName);
    alternatives.push_back(reference(name));
    SchemaWriter writer(definitions);
    writer.addCall(name);
    keysOf(writer, call);
    Json schema = writer.schema();
    if constexpr (kHasMeta<CallType>) addMetaOf(schema);
    definitions[name] = described(CallType::kMeaning, schema);
  });
  definitions["call"] = Object{{"oneOf", std::move(alternatives)}};
}

void addNumbers(Json& definitions) {
  const auto addInteger = [&]<typename T>(T /*type*/) {
    const bool isSigned = std::signed_integral<T>;
    const std::size_t digits = 2 * sizeof(T) - (isSigned ? 1 : 0);
    definitions[integerName<T>()] =
        integer(std::numeric_limits<T>::max(), (isSigned ? "[0-7]?" : "") + digitsUpTo(digits));
  };
  addInteger(std::int32_t());
  addInteger(std::int64_t());
  addInteger(std::uint8_t());
  addInteger(std::uint32_t());
  addInteger(std::uint64_t());
  const Json number = Object{{"type", "number"},
                             {"minimum", -kFirstBeyondFloats},
                             {"exclusiveMinimum", true},
                             {"maximum", kFirstBeyondFloats},
                             {"exclusiveMaximum", true}};
  definitions["float"] = anyOf({number, oneOf({"inf", "-inf", "nan"})});
  const auto tuple = [&](const char* name, const char* shape, std::size_t count) {
    definitions[name] = described(shape, listOf(reference("int32"), count));
  };
  tuple("size", "[width, height]", 2);
  tuple("rect", "[x, y, width, height]", 4);
  tuple("rational", "[numerator, denominator]", 2);
}

/// Entries of one type: the short form, and the long form with the type.
void addEntries(Json& definitions) {
  List typed;
  List unnamed;  // types without named values
  for (const std::string_view type : host::kTypeNames) {
    Json items = listOf(reference(type));
    if (type == "uint8") {
      items = anyOf({items, described("One item per byte", ofType("string"))});
    }
    definitions[std::string(type) + "Entry"] = anyOf({reference(type), items, reference("typed")});
    typed.push_back(
        objectOf({{"type", oneOf({type})}, {"items", std::move(items)}}, {"type", "items"}));
    if (type != "int32" && type != "uint8") unnamed.push_back(typed.back());
  }
  definitions["unnamed"] = Object{{"oneOf", std::move(unnamed)}};
  definitions["typed"] = Object{{"description", "Items of a type other than the catalogue's"},
                                {"oneOf", std::move(typed)}};
  definitions["unlisted"] = anyOf({reference("typed"), Object{{"type", "array"}, {"maxItems", 0}}});
}

/// "2 int32: request: AE target fps range [min,max]"
std::string meaningOf(const TagDescription& tag) {
  const std::string count =
      tag.count == kAnyCount ? std::string("any number of") : std::to_string(tag.count);
  return count + ' ' + std::string(tag.type) + ": " + std::string(tag.meaning);
}

/// An entry whose items may have names. A text is a name, not bytes.
Json enumeratedEntry(const TagDescription& tag, const host::AndroidTag& known) {
  List values;
  for (const host::AndroidTag::Value& value : known.values) values.push_back(value.name);
  const Json names = oneOf(std::move(values));
  const Json item = anyOf({names, reference(tag.type)});
  const Json typed =
      objectOf({{"type", oneOf({"int32", "uint8"})}, {"items", anyOf({names, listOf(item)})}},
               {"type", "items"});
  return anyOf({item, listOf(item), typed, reference("unnamed")});
}

void addMetadata(Json& definitions) {
  Object tags;
  List names;
  for (const TagDescription& tag : kTagCatalogue) {
    names.push_back(tag.name);
    const host::AndroidTag* known = host::findAndroidTag(tag.value);
    const bool hasNames = known != nullptr && !known->values.empty();
    const Json entry =
        hasNames ? enumeratedEntry(tag, *known) : reference(std::string(tag.type) + "Entry");
    tags.push_back({std::string(tag.name), described(meaningOf(tag), entry)});
  }
  definitions["tag"] = anyOf({oneOf(std::move(names)), hexadecimalText(digitsUpTo(16))});
  Json metadata = described("From tag to value", objectOf(std::move(tags), {}));
  metadata["patternProperties"] = Object{{"^0x0*[0-9a-fA-F]{1,8}$", reference("unlisted")}};
  definitions["metadata"] = std::move(metadata);
  definitions["container"] = anyOf({ofType("null"), reference("metadata")});
}

}  // namespace

Json scenarioSchema() {
  Json definitions;
  SchemaWriter root(definitions);
  root.may("scenario", ScenarioFrame());
  addCalls(definitions);
  addNumbers(definitions);
  addEntries(definitions);
  addMetadata(definitions);
  return Object{{"$schema", "http://json-schema.org/draft-04/schema#"},
                {"title", "Scenario of camhook replay"},
                reference("scenario").members().front(),
                {"definitions", std::move(definitions)}};
}

}  // namespace camhook
