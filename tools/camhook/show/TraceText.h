// Texts of values, entries and effects in readable traces.

#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/Effect.h"
#include "platform/Hal3A.h"
#include "platform/HalSensor.h"
#include "platform/IMetadata.h"
#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/TagCatalogue.h"

namespace camhook {

/// A value of JSON; a text is shown without quotes unless it is empty.
std::string valueText(const Json& value);

/// The streams of a session: "1 1920x1080 usage 0x100, 2 3840x2160 usage 0x10000".
std::string streamsText(const Json& streams);

/// The name of a command in effects of an operation.
struct CommandName {
  std::string_view op;
  std::int32_t command;
  std::string_view name;
};

inline constexpr CommandName kCommandNames[] = {
    {"hal3a.control", NS3Av3::IHal3A::kSetNonZslFrameCount, "setNonZslFrameCount"},
    {"hal3a.control", NS3Av3::IHal3A::kGetShadingTable, "getShadingTable"},
    {"sensor.command", NSCam::IHalSensor::kSupportsPd, "supportsPd"},
    {"sensor.command", NSCam::IHalSensor::kGetPdBlock, "getPdBlock"},
};

/// "sensor=0 command=8 (getShadingTable) grid=[17, 13]".
std::string effectFields(const host::Effect& effect);

/// The items of a tag's entry, and their type if it differs from the catalogue's; "absent" if there
/// are none. A long list is shown as its first items, their count and a checksum of all items.
std::string entryText(std::uint32_t tag, const NSCam::IMetadata::IEntry& entry);

/// The meaning of items that are a text in bytes or a record for the raw algorithms; empty for
/// other items.
std::vector<std::string> decodedLines(std::uint32_t tag, const NSCam::IMetadata::IEntry& entry);

}  // namespace camhook
