// Converts metadata between containers and the JSON of scenarios and traces.

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "host/PhoneConfig.h"
#include "platform/IMetadata.h"
#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/ValueReader.h"

namespace camhook {

// These functions read values that have no source text. They throw InputError; `place` precedes the
// place of a fault.

/// Reads an object from tag to value.
NSCam::IMetadata metadataFromJson(const Json& json, std::string_view place);

/// Reads the entry of a tag; an empty list is an entry without items.
NSCam::IMetadata::IEntry entryFromJson(std::uint32_t tag, const Json& json, std::string_view place);

/// Reads an integer, which may be a hexadecimal text, or a float, which may be "inf", "-inf",
/// "nan".
template <typename T>
T numberFromJson(const Json& json, std::string_view place) {
  return readJson<T>(json, place, [](const Value& value, T& target) { readValue(value, target); });
}

/// Returns the tag with a catalogue name or hexadecimal number. Throws InputError with similar
/// names.
std::uint32_t tagFromText(std::string_view text);

/// The entries with items in their long form, ordered by tag.
Json jsonFromMetadata(const NSCam::IMetadata& metadata);

/// The long form of an entry, {"type": ..., "items": ...}; null for an entry without items.
Json jsonFromEntry(const NSCam::IMetadata::IEntry& entry);

/// An object from key to text.
Json jsonFromTextMap(const host::TextMap& texts);

/// [x, y, width, height]
Json jsonFromRect(const NSCam::MRect& rect);

/// The items of an entry.
Json jsonFromItems(const NSCam::IMetadata::IEntry& entry);

/// True if two entries are the same in JSON: 0 and -0 differ, two NaNs do not.
bool areSame(const NSCam::IMetadata::IEntry& left, const NSCam::IMetadata::IEntry& right);

/// The catalogue name of a tag, or its number in hexadecimal.
std::string tagText(std::uint32_t tag);

}  // namespace camhook
