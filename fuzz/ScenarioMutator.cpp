// Mutates scenarios for the fuzz targets of hooks. The mutations work on JSON, so that most results
// are valid scenarios. Containers get entries of any tag, type, count and value, more often those
// of the catalogue.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/MetadataAccess.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/TagCatalogue.h"

namespace {

using camhook::Json;

struct Node {
  std::string key;  // of the value, or of the list that contains it
  Json* value;
};

void collect(std::vector<Node>& nodes, const std::string& key, Json& value) {
  nodes.push_back({key, &value});
  if (value.isObject()) {
    for (auto& [name, member] : value.members()) collect(nodes, name, member);
  } else if (value.isList()) {
    for (Json& item : value.items()) collect(nodes, key, item);
  }
}

bool isMetadata(std::string_view key) {
  constexpr std::array<std::string_view, 6> kKeys = {"meta", "app",    "hal",
                                                     "out",  "static", "defaultShading"};
  return std::ranges::find(kKeys, key) != kKeys.end();
}

class Mutator {
 public:
  Mutator(Json& scenario, unsigned int seed) : mRandom(seed) { collect(mNodes, "", scenario); }

  /// Changes a random value.
  void change() { change(any(mNodes)); }

  /// Replaces or extends a value with one of the same key of the other scenario.
  void takeFrom(Json& other) {
    std::vector<Node> theirs;
    collect(theirs, "", other);
    const Node& given = any(theirs);
    const auto isAlike = [&](const Node& node) { return node.key == given.key; };
    std::vector<Node> places;
    std::copy_if(mNodes.begin(), mNodes.end(), std::back_inserter(places), isAlike);
    if (places.empty()) return;
    Json& place = *any(places).value;
    if (place.isList() && given.value->isList() && mRandom() % 2 == 0) {
      append(place.items(), given.value->items());
    } else if (place.isObject() && given.value->isObject() && mRandom() % 2 == 0) {
      for (const auto& [key, value] : given.value->members()) place[key] = value;
    } else {
      place = *given.value;
    }
  }

 private:
  template <typename List>
  auto any(List& list) -> decltype(*std::begin(list)) {
    return list[mRandom() % std::size(list)];
  }

  static void append(Json::List& list, const Json::List& items) {
    list.insert(list.end(), items.begin(), items.end());
  }

  /// Returns a random position in a non-empty list or in the members of a non-empty object.
  auto anyIn(auto& list) {
    return std::next(list.begin(), static_cast<std::ptrdiff_t>(mRandom() % list.size()));
  }

  Json number() {
    // Limits of arithmetic, and values that the hooks compare with.
    static const std::vector<Json> kNumbers = {
        0,          1,           -1,           2,          3,         8,
        60,         127,         128,          255,        256,       1024,
        0x7fffffff, -0x7fffffff, INT32_MIN,    UINT32_MAX, INT64_MAX, INT64_MIN,
        0.5,        1e-45,       3.4028235e38, "nan",      "inf",     "-inf"};
    if (mRandom() % 2 == 0) return any(kNumbers);
    return std::int64_t{1} << mRandom() % 63;
  }

  Json item(std::string_view type) {
    if (type != "rect" && type != "rational") return number();
    Json::List list;
    for (std::size_t i = 0; i < (type == "rect" ? 4 : 2); ++i) list.push_back(number());
    return list;
  }

  /// Writes an entry whose tag is from the catalogue or already in the container, mostly with the
  /// type and count that the library reads.
  void putEntry(Json& metadata) {
    const camhook::TagDescription& tag = any(camhook::kTagCatalogue);
    std::string name(tag.name);
    if (metadata.size() > 0 && mRandom() % 2 == 0) name = anyIn(metadata.members())->key;
    const std::string_view type = mRandom() % 4 != 0 ? tag.type : any(host::kTypeNames);
    const std::size_t counts[] = {tag.count, tag.count, tag.count + 1, 1, 2, mRandom() % 20};
    Json::List items;
    for (std::size_t left = any(counts); left > 0; --left) items.push_back(item(type));
    metadata[name] = Json::Object{{"type", type}, {"items", items}};
  }

  void change(const Node& node) {
    Json& value = *node.value;
    if (isMetadata(node.key) && !value.isList() && mRandom() % 4 != 0) {
      if (value.isNull()) value = Json::Object();
      if (value.isObject()) putEntry(value);
    } else if (value.isNumber()) {
      value = number();
    } else if (value.isBoolean()) {
      value = !value.isTrue();
    } else if (value.isText()) {
      changeText(value);
    } else if (isMetadata(node.key) && value.isObject() && mRandom() % 4 == 0) {
      value = nullptr;
    } else if (value.isObject() && value.size() > 0) {
      value.members().erase(anyIn(value.members()));
    } else if (value.isList() && value.size() > 0) {
      changeList(value.items());
    }
  }

  /// Replaces a text with another one of the scenario, or with a part of it.
  void changeText(Json& value) {
    const Node& other = any(mNodes);
    std::string text = (other.value->isText() ? *other.value : value).text();
    if (mRandom() % 2 == 0) text.resize(mRandom() % (text.size() + 3), 'x');
    value = text;
  }

  void changeList(Json::List& list) {
    const Json::List items = list;
    switch (mRandom() % 4) {
      case 0: list.erase(anyIn(list)); break;
      case 1: list.insert(anyIn(list), Json(*anyIn(list))); break;
      case 2: append(list, items); break;
      default: std::swap(*anyIn(list), *anyIn(list)); break;
    }
  }

  std::minstd_rand mRandom;
  std::vector<Node> mNodes;
};

Json scenarioFrom(const std::uint8_t* data, std::size_t size) {
  try {
    return camhook::parseJson({reinterpret_cast<const char*>(data), size});
  } catch (const camhook::InputError&) {
    return Json::Object{{"calls", Json::List()}};
  }
}

/// Returns the number of bytes written; 0 if the buffer is too small.
std::size_t writeTo(std::uint8_t* out, std::size_t capacity, const Json& scenario) {
  const std::string text = camhook::lineOfJson(scenario);
  if (text.size() > capacity) return 0;
  std::ranges::copy(text, out);
  return text.size();
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t capacity, unsigned int seed) {
  Json scenario = scenarioFrom(data, size);
  for (unsigned int left = 1 + seed % 4; left > 0; --left) Mutator(scenario, seed / left).change();
  const std::size_t written = writeTo(data, capacity, scenario);
  return written != 0 ? written : size;
}

extern "C" std::size_t LLVMFuzzerCustomCrossOver(const std::uint8_t* data, std::size_t size,
                                                 const std::uint8_t* other, std::size_t otherSize,
                                                 std::uint8_t* out, std::size_t capacity,
                                                 unsigned int seed) {
  Json scenario = scenarioFrom(data, size);
  Json giver = scenarioFrom(other, otherSize);
  Mutator(scenario, seed).takeFrom(giver);
  return writeTo(out, capacity, scenario);
}
