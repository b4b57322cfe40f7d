#include "tools/camhook/show/Rectangles.h"

#include <algorithm>
#include <variant>

#include "common/math/AspectFit.h"
#include "common/tags/Tags.h"
#include "host/MetadataAccess.h"
#include "platform/TqcSat.h"

namespace camhook {
namespace {

using NSCam::IMetadata;
using NSCam::MRect;
namespace tags = hesk::tags;

/// The items of a tag; empty if the container is null or has no such tag of this type.
template <typename T>
std::vector<T> itemsOf(const MetadataArgument& container, hesk::Tag<T> tag) {
  if (!container) return {};
  const auto* items =
      std::get_if<std::vector<T>>(&host::MetadataAccess::itemsOf(container->entryFor(tag.value)));
  return items != nullptr ? *items : std::vector<T>();
}

std::vector<NamedRectangle> captureRectangles(const CallTrace& trace,
                                              const host::PhoneConfig& phone) {
  const MetadataArgument& hal = trace.containers[1].after;
  const MetadataArgument& out = trace.containers[2].after;
  const auto crop = itemsOf(hal, tags::MTK_P1NODE_SCALAR_CROP_REGION);
  const auto transition = itemsOf(out, tags::MTK_RAW_ALGO_SAT_CROP_REGION);
  const auto faces = itemsOf(out, tags::MTK_RAW_ALGO_FACE_RECTS);
  std::vector<NamedRectangle> found;
  if (crop.empty() && transition.empty() && faces.empty()) return found;

  const auto master = itemsOf(hal, tags::MTK_MULTICAM_REAL_MASTER_ID);
  const std::int32_t device = master.empty() ? trace.sensor.value_or(0) : master.front();
  const auto array = itemsOf(MetadataArgument(phone.deviceOrDefault(device).statics),
                             tags::MTK_SENSOR_INFO_ACTIVE_ARRAY_REGION);
  MRect preview;
  if (!array.empty()) {
    const NSCam::MSize size{array.front().w, array.front().h};
    found.push_back({"active array", {0, 0, size.w, size.h}});
    NSCam::MSize shown;
    if (trace.state) {
      const Json& sides = trace.state->after["mPreviewSize"];
      shown = {sides[0].integer<std::int32_t>().value(), sides[1].integer<std::int32_t>().value()};
    }
    if (shown.w > 0 && shown.h > 0) {
      const NSCam::MSize fitted = hesk::fitToRatio(size, hesk::aspectRatio(shown));
      preview = {hesk::wrappingSubtract(size.w, fitted.w) / 2,
                 hesk::wrappingSubtract(size.h, fitted.h) / 2, fitted.w, fitted.h};
      found.push_back({"preview area", preview});
    }
  }
  if (!crop.empty()) found.push_back({"crop of the frame", crop.front()});
  if (!transition.empty()) {  // the tag's coordinates are relative to the preview area
    const MRect& rect = transition.front();
    found.push_back({"crop for the zoom transition",
                     {hesk::wrappingAdd(rect.x, preview.x), hesk::wrappingAdd(rect.y, preview.y),
                      rect.w, rect.h}});
  }
  for (std::size_t i = 0; i < faces.size(); ++i) {
    found.push_back({"face " + std::to_string(i + 1), faces[i]});
  }
  return found;
}

/// How a tag stores its regions: `first` is the item of the first one, and each has four items.
struct RegionTag {
  std::int32_t kind;
  const char* name;
  hesk::Tag<std::int32_t> tag;
  std::size_t first;
  std::array<std::size_t, 4> sides;  // the items of left, top, right and bottom
};

constexpr RegionTag kRegionTags[] = {
    {TagInfo::kEye, "eye ", tags::RESULT_EYE_REGIONS, 0, {0, 2, 1, 3}},
    {TagInfo::kLot, "lot ", tags::RESULT_LOT_REGIONS, 0, {0, 1, 2, 3}},
    {TagInfo::kHumanBody, "body ", tags::RESULT_HUMAN_BODY_REGIONS, 1, {0, 1, 2, 3}},
};

void addRegions(std::vector<NamedRectangle>& found, const CallTrace& trace,
                const std::vector<host::Effect::Region>& regions) {
  for (std::size_t i = 0; i < regions.size(); ++i) {
    const auto* const known = std::ranges::find(kRegionTags, regions[i].kind, &RegionTag::kind);
    if (known == std::end(kRegionTags)) continue;
    const std::string name = known->name + std::to_string(i + 1);
    found.push_back({name + ", before", regions[i].rect});
    const auto items = itemsOf(trace.containers.front().after, known->tag);
    const std::size_t at = known->first + 4 * i;
    if (at + 4 > items.size()) continue;
    const auto side = [&](std::size_t index) { return items[at + known->sides[index]]; };
    found.push_back({name + ", after",
                     {side(0), side(1), hesk::wrappingSubtract(side(2), side(0)),
                      hesk::wrappingSubtract(side(3), side(1))}});
  }
}

}  // namespace

std::vector<NamedRectangle> rectanglesOf(const CallTrace& trace, const host::PhoneConfig& phone) {
  if (trace.call == UpdateCaptureRawParameter::kName) return captureRectangles(trace, phone);
  std::vector<NamedRectangle> found;
  for (const host::Effect& effect : trace.effects) {
    for (const auto& [name, value] : effect.fields) {
      const auto* regions = std::get_if<std::vector<host::Effect::Region>>(&value);
      if (regions != nullptr) addRegions(found, trace, *regions);
    }
  }
  return found;
}

}  // namespace camhook
