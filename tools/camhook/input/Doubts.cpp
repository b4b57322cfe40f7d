#include "tools/camhook/input/Doubts.h"

#include <algorithm>
#include <span>
#include <string>
#include <type_traits>
#include <variant>

#include "tools/camhook/input/KnownNames.h"
#include "tools/camhook/input/NearNames.h"
#include "tools/camhook/input/ScenarioKeys.h"

namespace camhook {
namespace {

/// The name that differs from the text in one letter; empty if there is none, and if the text is
/// itself a name.
std::string_view slipOf(std::string_view text, std::span<const std::string_view> names) {
  if (std::ranges::find(names, text) != names.end()) return {};
  for (const std::string_view name : names) {
    // The distance is at least the difference of lengths.
    const auto [shorter, longer] = std::minmax({text.size(), name.size()});
    if (longer - shorter <= 1 && editDistance(text, name) == 1) return name;
  }
  return {};
}

template <typename Name>  // a key or a value
void doubtName(const Name& name, const char* what, std::span<const KnownName> known) {
  std::vector<std::string_view> names;
  for (const KnownName& one : known) names.push_back(one.name);
  const std::string_view meant = slipOf(name.text(), names);
  if (meant.empty()) return;
  name.warn([&] { return "nobody reads " + std::string(what) + "; near: " + std::string(meant); });
}

template <typename Name>
void doubtEvent(const Name& key, const Value& value) {
  doubtName(key, "this event", kKnownEvents);
  if (key.text() != "APP_TYPE") return;
  const std::string_view meant = slipOf(value.text(), kKnownAppTypes);
  if (meant.empty()) return;
  value.warn(
      [&] { return "no rule knows app type " + value.shown() + "; near: " + std::string(meant); });
}

}  // namespace

void Doubts::onPlatform(const Value& value) {
  if (const auto properties = value.find("properties")) {
    properties->forEachMember(
        [](const Key& key, const Value&) { doubtName(key, "this property", kKnownProperties); });
  }
  if (const auto events = value.find("eventStore")) {
    events->forEachMember([](const Key& key, const Value& each) { doubtEvent(key, each); });
  }
}

void Doubts::onCall(const Call& call, const Value& value) {
  std::visit(
      [&]<typename CallType>(const CallType& concrete) {
        if constexpr (std::is_same_v<CallType, SetEvent>) {
          if (const auto key = value.find("key"))
            doubtEvent(*key, value.find("value").value_or(*key));
        } else if constexpr (std::is_same_v<CallType, SetProperty>) {
          if (const auto name = value.find("name"))
            doubtName(*name, "this property", kKnownProperties);
        } else {
          mSensors.try_emplace(concrete.sensor, mCount);
          if constexpr (std::is_same_v<CallType, UpdateRequestMeta>) {
            onRequest(concrete, value);
          } else {
            mLatestRequests.erase(concrete.sensor);
          }
        }
      },
      call);
  ++mCount;
}

/// A burst begins with the request that has the frame count, and ends at any other call on its
/// sensor.
void Doubts::onRequest(const UpdateRequestMeta& request, const Value& call) {
  const auto meta = call.find("meta");
  const bool mayBeginBurst = call.find(kMetaOfKey) || (meta && meta->find("HESK_CONTROL_HISFRAME"));
  if (mayBeginBurst) mLatestRequests.erase(request.sensor);
  const auto latest = mLatestRequests.find(request.sensor);
  if (latest != mLatestRequests.end() && request.requestNo < latest->second) {
    if (const auto value = call.find("requestNo")) {
      value->warn(
          [&] { return "below that of the request before, " + std::to_string(latest->second); });
    }
  }
  mLatestRequests[request.sensor] = request.requestNo;
}

}  // namespace camhook
