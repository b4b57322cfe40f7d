// The OEM's multi-camera library: the zoom transition between cameras (SAT).

#pragma once

#include <cstdint>
#include <vector>

#include "platform/Geometry.h"

/// A detected region that is translated from the coordinates of a camera to those of the app.
struct TagInfo {
  enum Kind : std::int32_t { kEye = 3, kLot = 4, kHumanBody = 5 };

  std::int32_t kind = 0;
  NSCam::MRect input;
  NSCam::MRect output;  // filled by the converter
};

/// Threads: any.
class TqcMetaConverter {
 public:
  /// Returns the field of view of the camera at an index of the library's list; 0 for other
  /// indices.
  virtual float GetSensorFovByCameraIdx(int index) = 0;

  /// Translates all regions from the camera at an index, which may be -1. `ratio` is the hook's
  /// argument divided by the camera's field of view.
  virtual void TranslateResultRegion(std::vector<TagInfo>& regions, float ratio, int index) = 0;

 protected:
  ~TqcMetaConverter() = default;
};

/// Threads: any.
class TqcSat {
 public:
  struct Camera {
    std::int32_t role = 0;
    std::int32_t id = 0;
  };

  static TqcSat& GetInstance();

  /// Returns the configured cameras.
  [[nodiscard]] virtual std::vector<Camera> cameras() const = 0;

  /// Returns the role of a camera that is not in `cameras()`.
  [[nodiscard]] virtual std::int32_t defaultRole() const = 0;

  [[nodiscard]] virtual TqcMetaConverter& converter() = 0;

 protected:
  ~TqcSat() = default;
};
