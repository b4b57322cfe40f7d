// Translates detected regions from the coordinates of the detecting camera to those of the app.

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "common/HeskParameterUpdater.h"
#include "common/math/Conversion.h"
#include "common/tags/Metadata.h"
#include "common/updater/UpdaterLog.h"
#include "platform/TqcSat.h"

namespace {

using namespace hesk;
using NSCam::IMetadata;
using NSCam::MRect;

constexpr auto kEyes = tags::RESULT_EYE_REGIONS;
constexpr auto kHumanBodies = tags::RESULT_HUMAN_BODY_REGIONS;
constexpr auto kLots = tags::RESULT_LOT_REGIONS;

constexpr std::size_t kSides = 4;  // the items of a rectangle

/// Returns the index of the first configured camera with this id; -1 if there is none.
int satCameraIndex(const TqcSat& sat, std::int32_t cameraId) {
  const auto cameras = sat.cameras();
  const auto found = std::ranges::find(cameras, cameraId, &TqcSat::Camera::id);
  return found != cameras.end() ? static_cast<int>(found - cameras.begin()) : -1;
}

TagInfo regionOf(TagInfo::Kind kind, std::int32_t left, std::int32_t top, std::int32_t right,
                 std::int32_t bottom) {
  return {.kind = kind,
          .input = {left, top, wrappingSubtract(right, left), wrappingSubtract(bottom, top)},
          .output = {}};
}

/// Reads four items from `first` on: left, top, right and bottom.
TagInfo readRegion(const IMetadata* result, TagInfo::Kind kind, Tag<std::int32_t> tag,
                   std::size_t first) {
  return regionOf(kind, readItem(result, tag, first), readItem(result, tag, first + 1),
                  readItem(result, tag, first + 2), readItem(result, tag, first + 3));
}

std::int32_t rightOf(const MRect& rect) { return wrappingAdd(rect.x, rect.w); }
std::int32_t bottomOf(const MRect& rect) { return wrappingAdd(rect.y, rect.h); }

/// Appends left, top, right and bottom of each translated region.
void appendOutputs(std::vector<std::int32_t>& items, const std::vector<TagInfo>& regions) {
  for (const TagInfo& region : regions) {
    const MRect& output = region.output;
    items.insert(items.end(), {output.x, output.y, rightOf(output), bottomOf(output)});
  }
}

}  // namespace

void HeskParameterUpdater::translateResultRegionForHesk(IMetadata* result, float value,
                                                        int cameraId, long tag) {
  constexpr log::Operation kOperation{kUpdaterSource, "translateResultRegionForHesk"};

  TqcSat& sat = TqcSat::GetInstance();
  const int index = satCameraIndex(sat, cameraId);
  TqcMetaConverter& converter = sat.converter();
  const float ratio = value / converter.GetSensorFovByCameraIdx(index);
  switch (static_cast<unsigned long>(tag)) {  // all 64 bits
    case kLots.value: translatLotRegion(result, &converter, ratio, index); break;
    case kHumanBodies.value: translatHumanBodyRegion(result, &converter, ratio, index); break;
    case kEyes.value: translateEyeRegion(result, &converter, ratio, index); break;
    default:
      HESK_LOGE(kOperation, "please check tag id: %d", static_cast<std::int32_t>(tag));
      break;
  }
}

/// The tag has two rectangles, each as left, right, top and bottom, then an item that is kept.
void HeskParameterUpdater::translateEyeRegion(IMetadata* result, TqcMetaConverter* converter,
                                              float ratio, int index) {
  constexpr std::size_t kEyeCount = 2;
  constexpr std::size_t kExtraItem = kEyeCount * kSides;

  if (!has(result, kEyes)) return;
  std::array<std::int32_t, kExtraItem + 1> items{};
  readAll(result, kEyes, std::span(items));
  std::vector<TagInfo> regions;
  for (std::size_t i = 0; i < kExtraItem; i += kSides) {
    regions.push_back(regionOf(TagInfo::kEye, items[i], items[i + 2], items[i + 1], items[i + 3]));
  }
  converter->TranslateResultRegion(regions, ratio, index);
  std::vector<std::int32_t> translated;
  for (const TagInfo& region : regions) {
    const MRect& output = region.output;
    translated.insert(translated.end(), {output.x, rightOf(output), output.y, bottomOf(output)});
  }
  translated.push_back(items[kExtraItem]);
  writeAll(result, kEyes, translated);
}

/// The tag has one rectangle.
void HeskParameterUpdater::translatLotRegion(IMetadata* result, TqcMetaConverter* converter,
                                             float ratio, int index) {
  if (!has(result, kLots)) return;
  std::vector<TagInfo> regions{readRegion(result, TagInfo::kLot, kLots, 0)};
  converter->TranslateResultRegion(regions, ratio, index);
  std::vector<std::int32_t> translated;
  appendOutputs(translated, regions);
  writeAll(result, kLots, translated);
}

/// The tag has the number of bodies, then a rectangle for each. Only bodies whose data is complete
/// are used.
void HeskParameterUpdater::translatHumanBodyRegion(IMetadata* result, TqcMetaConverter* converter,
                                                   float ratio, int index) {
  const std::int32_t announced = read(result, kHumanBodies);
  if (announced <= 0) return;
  const std::size_t complete = (count(result, kHumanBodies) - 1) / kSides;
  const std::size_t bodies = std::min(static_cast<std::size_t>(announced), complete);
  if (bodies == 0) return;
  std::vector<TagInfo> regions;
  for (std::size_t body = 0; body < bodies; ++body) {
    regions.push_back(readRegion(result, TagInfo::kHumanBody, kHumanBodies, 1 + body * kSides));
  }
  converter->TranslateResultRegion(regions, ratio, index);
  std::vector<std::int32_t> translated{static_cast<std::int32_t>(regions.size())};
  appendOutputs(translated, regions);
  writeAll(result, kHumanBodies, translated);
}
