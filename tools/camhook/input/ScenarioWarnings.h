// Warns about likely mistakes in a valid scenario.

#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/PhoneConfig.h"
#include "tools/camhook/input/Scenario.h"
#include "tools/camhook/input/Value.h"

namespace camhook {

/// The problem with the product model among properties; empty if there is none. If the scenario
/// `decides` on a sensor mode, products that only have zoom-transition parameters are reported,
/// too.
std::string productWarning(const host::TextMap& properties, bool decides);

/// Receives the calls in the order of the scenario, then the platform.
class ScenarioWarnings {
 public:
  /// `value` is that of "platform".
  void onPlatform(const Value& value, const host::PhoneConfig& platform) const;

  void onCall(const Call& call, const Value& value);

  /// A warning about a member of a call that depends on the whole scenario.
  struct CallWarning {
    std::size_t call;  // index
    std::string_view key;
    std::string problem;
  };
  [[nodiscard]] std::vector<CallWarning> callWarnings(const host::PhoneConfig& platform) const;

 private:
  void onRequest(const UpdateRequestMeta& request, const Value& call);

  std::size_t mCount = 0;                        // number of calls
  bool mDecides = false;                         // true if a call decides on a sensor mode
  std::map<std::int32_t, std::size_t> mSensors;  // index of the first call
  std::vector<std::pair<std::size_t, SetProperty>> mProducts;  // calls that set a product model
  bool mSetsProduct = false;  // true if one of them sets ro.product.model.zdm
  std::map<std::int32_t, std::uint32_t> mLatestRequests;  // by sensor: latest request of the burst
};

}  // namespace camhook
