// Metadata containers as scenarios have them.

#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/IMetadata.h"
#include "tools/camhook/input/Value.h"

namespace camhook {

/// Reads an object from tag to value into `target`; null: it is checked alone, which is quicker,
/// and warned of what it probably does not mean.
void readMetadata(const Value& value, NSCam::IMetadata* target);

/// Reads the value of a tag into `target`; it stays without items where the list is empty. Null: as
/// above.
void readEntry(const Value& value, std::uint32_t tag, NSCam::IMetadata::IEntry* target);

/// A tag: a catalogue name or a hexadecimal text. None where it is neither.
std::optional<std::uint32_t> tagFrom(std::string_view text);

/// The same for an argument that is wider than a tag.
std::optional<std::uint64_t> wideTagFrom(std::string_view text);

}  // namespace camhook
