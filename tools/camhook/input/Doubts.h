// What a scenario says and probably does not mean.

#pragma once

#include <cstddef>
#include <cstdint>
#include <map>

#include "tools/camhook/input/Scenario.h"
#include "tools/camhook/input/Value.h"

namespace camhook {

/// Warns of what it is shown. Calls are shown in the order of the scenario.
class Doubts {
 public:
  /// `value` is that of "platform".
  static void onPlatform(const Value& value);

  void onCall(const Call& call, const Value& value);

  /// The sensors on which calls are made, each with the index of its first call.
  [[nodiscard]] const std::map<std::int32_t, std::size_t>& sensors() const { return mSensors; }

 private:
  void onRequest(const UpdateRequestMeta& request, const Value& call);

  std::size_t mCount = 0;  // of calls
  std::map<std::int32_t, std::size_t> mSensors;
  std::map<std::int32_t, std::uint32_t> mLatestRequests;  // by sensor, of the burst
};

}  // namespace camhook
