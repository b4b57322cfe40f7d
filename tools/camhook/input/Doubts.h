// Warns about likely mistakes in a valid scenario.

#pragma once

#include <cstddef>
#include <cstdint>
#include <map>

#include "tools/camhook/input/Scenario.h"
#include "tools/camhook/input/Value.h"

namespace camhook {

/// Receives the platform, and the calls in their order.
class Doubts {
 public:
  static void onPlatform(const Value& value);

  void onCall(const Call& call, const Value& value);

  /// The sensors of the calls, each with the index of its first call.
  [[nodiscard]] const std::map<std::int32_t, std::size_t>& sensors() const { return mSensors; }

 private:
  void onRequest(const UpdateRequestMeta& request, const Value& call);

  std::size_t mCount = 0;  // number of calls
  std::map<std::int32_t, std::size_t> mSensors;
  std::map<std::int32_t, std::uint32_t>
      mLatestRequests;  // by sensor: the latest request of the burst
};

}  // namespace camhook
