#include "tests/support/TestMetadata.h"

#include <string>

#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/MetadataJson.h"

namespace {

camhook::JsonLine lineOf(const NSCam::IMetadata& metadata) {
  camhook::JsonLine line;
  camhook::addMetadata(line, metadata);
  return line;
}

}  // namespace

NSCam::IMetadata metadataOf(std::string_view json) {
  return camhook::metadataFromJson(camhook::parseJson(std::string(json)), "");
}

bool NSCam::operator==(const IMetadata& left, const IMetadata& right) {
  return lineOf(left).line() == lineOf(right).line();
}

void NSCam::PrintTo(const IMetadata& metadata, std::ostream* out) {
  *out << lineOf(metadata).broken();
}
