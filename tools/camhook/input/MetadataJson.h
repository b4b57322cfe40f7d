// Metadata containers in JSON, as scenarios and traces have them.

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "host/PhoneConfig.h"
#include "platform/IMetadata.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/JsonLine.h"

namespace camhook {

/// Reads an object from tag to value. Throws InputError.
NSCam::IMetadata metadataFromJson(const Json& json, std::string_view place);

/// Reads the entry of a tag, one without items where the list is empty. Throws InputError.
NSCam::IMetadata::IEntry entryFromJson(std::uint32_t tag, const Json& json, std::string_view place);

/// Reads a tag: a catalogue name or a hexadecimal text. Throws InputError, which names those that
/// are like it.
std::uint32_t tagFromText(std::string_view text);

/// The entries with items in their long form, ordered by tag.
Json jsonFromMetadata(const NSCam::IMetadata& metadata);

/// The long form of an entry: {"type": ..., "items": ...}.
Json jsonFromEntry(const NSCam::IMetadata::IEntry& entry);

/// An object from key to text.
Json jsonFromTextMap(const host::TextMap& texts);

/// [x, y, width, height]
Json jsonFromRect(const NSCam::MRect& rect);

/// The items of an entry, as a trace lists them.
Json jsonFromItems(const NSCam::IMetadata::IEntry& entry);

/// Whether two entries look the same in JSON: 0 is not -0, and one NaN is like another.
bool areSame(const NSCam::IMetadata::IEntry& left, const NSCam::IMetadata::IEntry& right);

/// The tag's catalogue name, in hexadecimal where it has none.
std::string tagText(std::uint32_t tag);

/// An integer of type `T`: a number, or a hexadecimal text. Throws InputError where it does not
/// fit.
template <typename T>
T integerFromJson(const Json& json, std::string_view place);

/// A float: a number, or "inf", "-inf", "nan". Throws InputError where it does not fit.
float floatFromJson(const Json& json, std::string_view place);

}  // namespace camhook
