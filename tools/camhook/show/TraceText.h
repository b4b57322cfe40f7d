// The words that readable traces and differences of traces have in common. What is JSON here is a
// member of the JSON trace.

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/Effect.h"
#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/TagCatalogue.h"

namespace camhook {

/// "updateRequestMeta  sensor 0  requestNo 100". A sensor of null is none.
std::string callTitle(std::string_view call, const Json& sensor, const Json& arguments);

/// "sensor=0 command=8 (getShadingTable) grid=[17, 13]".
std::string effectFields(const Json& effect);
std::string effectFields(const host::Effect& effect);

/// An entry that holds items, taken from its long form or to become one.
struct EntryItems {
  std::string_view type;
  Json items;
};

/// The items of a tag's entry, and their type where the catalogue would have another. Of a long
/// list the first items, their count and a checksum of them all. `tag` is null for one that the
/// catalogue does not list.
std::string entryText(const TagDescription* tag, const EntryItems& entry);

/// None where a member of a call in a trace is no entry.
std::optional<EntryItems> entryFromTrace(const Json& value);

/// What a call in a trace has under a key: an entry, or any other value.
std::string memberValueText(std::string_view key, const Json& value);

/// What the items mean, where they are a text in bytes or one of the records that the raw
/// algorithms take. No line where they are neither.
std::vector<std::string> decodedLines(std::string_view tag, const EntryItems& entry);

/// A value of JSON for a person: a text stands without quotes, unless it is empty.
std::string valueText(const Json& value);

/// A member of an object, empty where it is absent.
std::string memberText(const Json& object, std::string_view key);

}  // namespace camhook
