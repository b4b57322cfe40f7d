// Metadata in tests, written and compared in the JSON of scenarios.

#pragma once

#include <ostream>
#include <string_view>

#include "host/MetadataAccess.h"
#include "platform/IMetadata.h"
#include "tools/camhook/Json.h"
#include "tools/camhook/MetadataJson.h"

/// A container from the JSON of a scenario: metadataOf(R"({"HESK_CONTROL_ISO": 100})").
inline NSCam::IMetadata metadataOf(std::string_view json) {
  return camhook::metadataFromJson(camhook::parseJson(json), camhook::Place());
}

namespace NSCam {

inline bool operator==(const IMetadata& left, const IMetadata& right) {
  return camhook::jsonFromMetadata(left) == camhook::jsonFromMetadata(right);
}

inline void PrintTo(const IMetadata& metadata, std::ostream* out) {
  camhook::writeJson(*out, camhook::jsonFromMetadata(metadata));
}

}  // namespace NSCam
