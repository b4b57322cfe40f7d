// What a scenario says and probably does not mean.

#pragma once

#include <cstdint>
#include <map>
#include <set>

#include "tools/camhook/input/Document.h"
#include "tools/camhook/input/Scenario.h"

namespace camhook {

/// Warns of what it is shown, in the order of the scenario.
class Doubts {
 public:
  /// `platform` must outlive this.
  explicit Doubts(const host::PhoneConfig& platform) : mPlatform(platform) {}

  /// `value` is that of "platform".
  void onPlatform(const Value& value);

  void onCall(const Call& call, const Value& value);

 private:
  void onSensor(std::int32_t sensor, const Value& call);
  void onRequest(const UpdateRequestMeta& request, const Value& call);

  const host::PhoneConfig& mPlatform;
  std::set<std::int32_t> mSensors;                        // that calls are made on
  std::map<std::int32_t, std::uint32_t> mLatestRequests;  // by sensor, of the burst
};

}  // namespace camhook
