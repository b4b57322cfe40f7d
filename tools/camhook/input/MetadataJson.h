// Metadata containers in JSON, as scenarios and traces have them.

#pragma once

#include <cstdint>
#include <string>

#include "platform/IMetadata.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/Json.h"

namespace camhook {

/// Reads an object from tag to value. Throws InputError.
NSCam::IMetadata metadataFromJson(const Json& json, const Place& place);

/// Reads the entry of a tag, one without items where the list is empty. Throws InputError.
NSCam::IMetadata::IEntry entryFromJson(std::uint32_t tag, const Json& json, const Place& place);

/// Reads a tag: a catalogue name or a hexadecimal text. Throws InputError.
std::uint32_t tagFromText(const std::string& text, const Place& place);

/// The same for an argument that is wider than a tag.
std::uint64_t wideTagFromText(const std::string& text, const Place& place);

/// Every entry that holds an item in its long form, ordered by tag.
Json jsonFromMetadata(const NSCam::IMetadata& metadata);

/// The long form of an entry that holds an item.
Json jsonFromEntry(const NSCam::IMetadata::IEntry& entry);

/// The items of an entry, as a trace lists them.
Json jsonFromItems(const NSCam::IMetadata::IEntry& entry);

/// The tag's catalogue name, in hexadecimal where it has none.
std::string tagText(std::uint32_t tag);

/// An integer of type `T`: a number, or a hexadecimal text. Throws InputError where it does not
/// fit.
template <typename T>
T integerFromJson(const Json& json, const Place& place);

/// A float: a number, or "inf", "-inf", "nan". Throws InputError where it does not fit.
float floatFromJson(const Json& json, const Place& place);

/// A size: [width, height]. Throws InputError.
NSCam::MSize sizeFromJson(const Json& json, const Place& place);

/// A rectangle: [x, y, width, height]. Throws InputError.
NSCam::MRect rectFromJson(const Json& json, const Place& place);

}  // namespace camhook
