#include "tests/support/TestMetadata.h"

#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/MetadataJson.h"

namespace {

std::string lineOf(const NSCam::IMetadata& metadata) {
  camhook::JsonLine line;
  camhook::addMetadata(line, metadata);
  return line.line();
}

}  // namespace

NSCam::IMetadata metadataOf(std::string_view json) {
  return camhook::metadataFromJson(camhook::parseJson(json), camhook::Place());
}

bool NSCam::operator==(const IMetadata& left, const IMetadata& right) {
  return lineOf(left) == lineOf(right);
}

void NSCam::PrintTo(const IMetadata& metadata, std::ostream* out) {
  *out << camhook::brokenJson(lineOf(metadata), 0);
}
