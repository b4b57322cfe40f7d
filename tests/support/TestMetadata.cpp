#include "tests/support/TestMetadata.h"

#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/MetadataJson.h"

NSCam::IMetadata metadataOf(std::string_view json) {
  return camhook::metadataFromJson(camhook::parseJson(json), camhook::Place());
}

bool NSCam::operator==(const IMetadata& left, const IMetadata& right) {
  return camhook::jsonFromMetadata(left) == camhook::jsonFromMetadata(right);
}

void NSCam::PrintTo(const IMetadata& metadata, std::ostream* out) {
  camhook::writeJson(*out, camhook::jsonFromMetadata(metadata));
}
