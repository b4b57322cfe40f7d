// Gives the replay tool and the tests access to an updater's fields. Not used on a phone.

#pragma once

#include <tuple>

#include "common/HeskParameterUpdater.h"

struct HeskParameterUpdaterInspector {
  HeskParameterUpdater& updater;

  [[nodiscard]] auto& instanceId() const { return updater.mInstanceId; }
  [[nodiscard]] auto& hasVideoStream() const { return updater.mHasVideoStream; }
  [[nodiscard]] auto& nonZslFrames() const { return updater.mNonZslFrames; }
  [[nodiscard]] auto& multicamFeatureMode() const { return updater.mMulticamFeatureMode; }
  [[nodiscard]] auto& previewSize() const { return updater.mPreviewSize; }
  [[nodiscard]] auto& captureCount() const { return updater.mCaptureCount; }
  [[nodiscard]] auto& streamIds() const { return updater.mStreamIds; }
  [[nodiscard]] auto& diagonalFovDegrees() const { return updater.mPrimaryCameraDiagonalFov; }

  /// Returns references to all fields except the sensor index.
  [[nodiscard]] auto values() const {
    return std::tie(updater.mHasVideoStream, updater.mNonZslFrames, updater.mMulticamFeatureMode,
                    updater.mPreviewSize, updater.mCaptureCount, updater.mStreamIds,
                    updater.mPrimaryCameraDiagonalFov);
  }
  /// The types of `values()`, without references.
  using Values = std::tuple<bool, std::map<std::uint32_t, std::uint32_t>, std::int32_t,
                            NSCam::MSize, std::int32_t, std::vector<std::uint32_t>, std::int32_t>;

  // For calls with a converter that is not the platform's.
  static constexpr auto kTranslateEyes = &HeskParameterUpdater::translateEyeRegion;
  static constexpr auto kTranslateLots = &HeskParameterUpdater::translatLotRegion;
  static constexpr auto kTranslateBodies = &HeskParameterUpdater::translatHumanBodyRegion;

  /// Creates an updater in addition to those of `createInstance`. Needs the library's internal
  /// symbols.
  static HeskParameterUpdater* construct(int instanceId) {
    return new HeskParameterUpdater(instanceId);
  }
  static void destroy(HeskParameterUpdater* updater) { delete updater; }
};
