// Reads metadata of scenarios.

#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/IMetadata.h"
#include "tools/camhook/input/Value.h"

namespace camhook {

/// Reads an object from tag to value into `target`. If `target` is null, the value is only checked,
/// which is faster.
void readMetadata(const Value& value, NSCam::IMetadata* target);

/// Reads the value of a tag into `target`, which may be null as above. An empty list adds no item.
void readEntry(const Value& value, std::uint32_t tag, NSCam::IMetadata::IEntry* target);

/// Returns the tag with a catalogue name or hexadecimal number, if the text is one.
std::optional<std::uint32_t> tagFrom(std::string_view text);

/// Like `tagFrom`, for numbers of up to 64 bits.
std::optional<std::uint64_t> wideTagFrom(std::string_view text);

}  // namespace camhook
