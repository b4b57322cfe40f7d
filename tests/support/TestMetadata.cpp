#include "tests/support/TestMetadata.h"

#include <string>

#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/MetadataJson.h"

NSCam::IMetadata metadataOf(std::string_view json) {
  return camhook::metadataFromJson(camhook::parseJson(std::string(json)), "");
}

bool NSCam::operator==(const IMetadata& left, const IMetadata& right) {
  return camhook::lineOfJson(camhook::jsonFromMetadata(left)) ==
         camhook::lineOfJson(camhook::jsonFromMetadata(right));
}

void NSCam::PrintTo(const IMetadata& metadata, std::ostream* out) {
  *out << camhook::brokenJson(camhook::jsonFromMetadata(metadata));
}
