// The camera pipeline of one sensor, as one thread runs it: its calls on the sensor's updater.
//
// What it hands to the hooks tells of the sensor and the frame throughout, so that nothing that
// comes back of another frame passes for this one's.

#pragma once

#include <compare>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "common/HeskParameterUpdater.h"
#include "host/MetadataAccess.h"
#include "host/PhoneConfig.h"

/// What the hooks make of a frame: the items of every tag in every container, and the bytes that
/// they put elsewhere.
struct FrameField {
  std::string_view container;
  std::uint32_t tag = 0;

  friend auto operator<=>(const FrameField&, const FrameField&) = default;
};
using FrameOutcome = std::map<FrameField, host::ItemList>;

class SensorPipeline {
 public:
  static constexpr int kSensors = HeskParameterUpdater::kMaxInstanceId + 1;

  /// The phone that the pipelines of all sensors run on. `dataRoot` is the root of its files.
  static host::PhoneConfig phoneConfig(const std::string& dataRoot);

  explicit SensorPipeline(int sensor)
      : mSensor(sensor), mUpdater(HeskParameterUpdater::createInstance(sensor)) {}

  /// Configures a session and takes a frame, counted from 0, through all hooks.
  FrameOutcome run(int frame);

  /// The number of a frame, which no frame of another sensor has, either.
  [[nodiscard]] std::int32_t numberOf(int frame) const { return 1000 * (mSensor + 1) + frame; }

 private:
  class Frame;

  int mSensor;
  HeskParameterUpdater* mUpdater;
};
