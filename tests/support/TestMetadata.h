// Metadata in tests, in the JSON format of scenarios.

#pragma once

#include <ostream>
#include <string_view>

#include "platform/IMetadata.h"

/// Returns a container with the entries of a JSON object: metadataOf(R"({"HESK_CONTROL_ISO":
/// 100})").
NSCam::IMetadata metadataOf(std::string_view json);

namespace NSCam {

bool operator==(const IMetadata& left, const IMetadata& right);
void PrintTo(const IMetadata& metadata, std::ostream* out);

}  // namespace NSCam
