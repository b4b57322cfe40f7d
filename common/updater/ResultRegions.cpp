// Detected regions on their way from the camera that saw them to the one that the app looks
// through.

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "common/HeskParameterUpdater.h"
#include "common/math/AspectFit.h"
#include "common/math/Conversion.h"
#include "common/tags/Metadata.h"
#include "common/updater/SatCameras.h"
#include "common/updater/UpdaterLog.h"

namespace {

using namespace hesk;
using NSCam::IMetadata;
using NSCam::MRect;

constexpr Tag<std::int32_t> kEyeRegion{0xc00e0000};
constexpr Tag<std::int32_t> kHumanBodyRegion{0xc00e0014};
constexpr Tag<std::int32_t> kLotRegion{0xc00e0017};

enum RegionKind : std::int32_t { kEye = 3, kLot = 4, kHumanBody = 5 };

/// A rectangle by its sides.
struct Sides {
  std::int32_t left;
  std::int32_t top;
  std::int32_t right;
  std::int32_t bottom;
};

TagInfo regionOf(RegionKind kind, Sides sides) {
  return {.kind = kind,
          .input = {sides.left, sides.top, wrappingSubtract(sides.right, sides.left),
                    wrappingSubtract(sides.bottom, sides.top)},
          .output = {}};
}

Sides sidesOf(const MRect& rect) {
  return {.left = rect.x,
          .top = rect.y,
          .right = wrappingAdd(rect.x, rect.w),
          .bottom = wrappingAdd(rect.y, rect.h)};
}

/// Item `index` and the three behind it as left, top, right and bottom.
Sides readSides(const IMetadata* result, Tag<std::int32_t> tag, std::size_t index) {
  return {.left = read(result, tag, 0, index),
          .top = read(result, tag, 0, index + 1),
          .right = read(result, tag, 0, index + 2),
          .bottom = read(result, tag, 0, index + 3)};
}

}  // namespace

void HeskParameterUpdater::translateResultRegionForHesk(IMetadata* result, float value,
                                                        int cameraId, long tag) {
  constexpr log::Operation kOperation = updaterOperation("translateResultRegionForHesk");

  TqcSat& sat = TqcSat::GetInstance();
  const int index = satCameraIndex(sat, cameraId);
  TqcMetaConverter& converter = sat.converter();
  const float ratio = value / converter.GetSensorFovByCameraIdx(index);
  switch (static_cast<std::uint32_t>(tag)) {
    case kLotRegion.value: translatLotRegion(result, &converter, ratio, index); break;
    case kHumanBodyRegion.value: translatHumanBodyRegion(result, &converter, ratio, index); break;
    case kEyeRegion.value: translateEyeRegion(result, &converter, ratio, index); break;
    default:
      HESK_LOGE(kOperation, "[%s] please check tag id: %d", kOperation.name,
                static_cast<std::int32_t>(tag));
      break;
  }
}

/// Two rectangles as left, right, top, bottom, and an item that is none of their business.
void HeskParameterUpdater::translateEyeRegion(IMetadata* result, TqcMetaConverter* converter,
                                              float ratio, int index) {
  constexpr std::size_t kItemsOfAnEye = 4;
  constexpr std::size_t kExtraItem = 8;

  if (!has(result, kEyeRegion)) return;
  std::array<std::int32_t, kExtraItem + 1> items{};
  readAll(result, kEyeRegion, std::span(items));
  std::vector<TagInfo> regions;
  for (std::size_t i = 0; i < kExtraItem; i += kItemsOfAnEye) {
    regions.push_back(regionOf(
        kEye,
        {.left = items[i], .top = items[i + 2], .right = items[i + 1], .bottom = items[i + 3]}));
  }
  converter->TranslateResultRegion(regions, ratio, index);
  for (std::size_t eye = 0; eye < regions.size(); ++eye) {
    const auto [left, top, right, bottom] = sidesOf(regions[eye].output);
    const std::size_t i = eye * kItemsOfAnEye;
    items[i] = left;
    items[i + 1] = right;
    items[i + 2] = top;
    items[i + 3] = bottom;
  }
  writeAll(result, kEyeRegion, items);
}

/// One rectangle as left, top, right, bottom.
void HeskParameterUpdater::translatLotRegion(IMetadata* result, TqcMetaConverter* converter,
                                             float ratio, int index) {
  if (!has(result, kLotRegion)) return;
  std::vector<TagInfo> regions{regionOf(kLot, readSides(result, kLotRegion, 0))};
  converter->TranslateResultRegion(regions, ratio, index);
  const auto [left, top, right, bottom] = sidesOf(regions.front().output);
  write(result, kLotRegion, left, top, right, bottom);
}

/// The count of bodies, then each as left, top, right, bottom. Of a count that is too large those
/// are taken that are there.
void HeskParameterUpdater::translatHumanBodyRegion(IMetadata* result, TqcMetaConverter* converter,
                                                   float ratio, int index) {
  constexpr std::size_t kItemsOfABody = 4;

  const std::int32_t announced = read(result, kHumanBodyRegion);
  if (announced <= 0) return;
  const std::size_t whole = (count(result, kHumanBodyRegion) - 1) / kItemsOfABody;
  const std::size_t bodies = std::min(static_cast<std::size_t>(announced), whole);
  if (bodies == 0) return;
  std::vector<TagInfo> regions;
  regions.reserve(bodies);
  for (std::size_t body = 0; body < bodies; ++body) {
    const std::size_t first = 1 + body * kItemsOfABody;
    regions.push_back(regionOf(kHumanBody, readSides(result, kHumanBodyRegion, first)));
  }
  converter->TranslateResultRegion(regions, ratio, index);
  std::vector<std::int32_t> items{static_cast<std::int32_t>(bodies)};
  items.reserve(1 + bodies * kItemsOfABody);
  for (const TagInfo& region : regions) {
    const auto [left, top, right, bottom] = sidesOf(region.output);
    items.insert(items.end(), {left, top, right, bottom});
  }
  writeAll(result, kHumanBodyRegion, items);
}

void HeskParameterUpdater::setPreviewSize(NSCam::MSize size) {
  constexpr log::Operation kOperation = updaterOperation("setPreviewSize");
  mPreviewSize = size;
  HESK_LOGD(kOperation, "[%s] setPreviewSize [%d/%d]", kOperation.name, size.w, size.h);
}

void HeskParameterUpdater::matchAspectRatio(const NSCam::MSize* reference, NSCam::MSize* size) {
  *size = fitToRatio(*size, aspectRatio(*reference));
}
