#include "tools/camhook/input/ScenarioWarnings.h"

#include <algorithm>
#include <span>
#include <string>
#include <type_traits>
#include <variant>

#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/KnownNames.h"
#include "tools/camhook/input/NearNames.h"
#include "tools/camhook/input/ScenarioKeys.h"

namespace camhook {
namespace {

constexpr std::string_view kProductProperty = "ro.product.model.zdm";
constexpr std::string_view kUnusedProductProperty = "ro.product.model";

/// The name that differs from the text in one letter; empty if there is none or the text is itself
/// a name.
std::string_view misspelledName(std::string_view text, std::span<const std::string_view> names) {
  if (std::ranges::find(names, text) != names.end()) return {};
  for (const std::string_view name : names) {
    // The distance is at least the difference of lengths.
    const auto [shorter, longer] = std::minmax({text.size(), name.size()});
    if (longer - shorter <= 1 && editDistance(text, name) == 1) return name;
  }
  return {};
}

/// Warns about a text that differs from one of these names in one letter.
void warnOfText(const auto& text, const std::string& problem,
                std::span<const std::string_view> names) {
  const std::string_view meant = misspelledName(text.text(), names);
  if (!meant.empty()) text.warn(problem + "; did you mean " + std::string(meant) + '?');
}

void warnOfName(const auto& name, const char* problem, std::span<const KnownName> known) {
  std::vector<std::string_view> names;
  for (const KnownName& one : known) names.push_back(one.name);
  warnOfText(name, problem, names);
}

void warnOfEvent(const auto& key, const Value& value) {
  warnOfName(key, "unknown event", kKnownEvents);
  if (key.text() != "APP_TYPE" || !value.isText()) return;
  warnOfText(value, "no rule has app type " + value.shown(), kKnownAppTypes);
}

}  // namespace

std::string productWarning(const host::TextMap& properties, bool decides) {
  const auto found = properties.find(kProductProperty);
  if (found == properties.end()) {
    if (!properties.contains(kUnusedProductProperty)) return {};
    return "the library does not read " + std::string(kUnusedProductProperty) + "; set " +
           std::string(kProductProperty);
  }
  const std::string& product = found->second;
  const auto isPrefix = [&](std::string_view name) { return product.starts_with(name); };
  if (product.empty() || std::ranges::any_of(kProductsWithRules, isPrefix)) return {};
  if (!decides && std::ranges::any_of(kProductsOfZoomOnly, isPrefix)) return {};
  return "no rules for product " + jsonText(product) + nearNames(product, kProductsWithRules);
}

void ScenarioWarnings::onPlatform(const Value& value, const host::PhoneConfig& platform) const {
  if (const auto properties = value.find("properties")) {
    const std::string problem = productWarning(platform.properties, mDecides);
    auto product = properties->find(kProductProperty);
    if (!product && !mSetsProduct) product = properties->find(kUnusedProductProperty);
    if (product && !problem.empty()) product->warn(problem);
    properties->forEachMember([](const Key& key, const Value&) {
      warnOfName(key, "unknown property", kKnownProperties);
    });
  }
  if (const auto events = value.find("eventStore")) {
    events->forEachMember([](const Key& key, const Value& each) { warnOfEvent(key, each); });
  }
}

void ScenarioWarnings::onCall(const Call& call, const Value& value) {
  std::visit(
      [&]<typename CallType>(const CallType& concrete) {
        if constexpr (std::is_same_v<CallType, SetEvent>) {
          if (const auto key = value.find("key"); key && key->isText())
            warnOfEvent(*key, value.find("value").value_or(*key));
        } else if constexpr (std::is_same_v<CallType, SetProperty>) {
          if (const auto name = value.find("name"); name && name->isText())
            warnOfName(*name, "unknown property", kKnownProperties);
          if (concrete.name == kProductProperty || concrete.name == kUnusedProductProperty)
            mProducts.emplace_back(mCount, concrete);
          mSetsProduct |= concrete.name == kProductProperty;
        } else {
          mSensors.try_emplace(concrete.sensor, mCount);
          mDecides |= std::is_same_v<CallType, DecideSensorScenario>;
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
void ScenarioWarnings::onRequest(const UpdateRequestMeta& request, const Value& call) {
  const auto meta = call.find("meta");
  const bool mayBeginBurst = call.find(kMetaOfKey) || (meta && meta->find("HESK_CONTROL_HISFRAME"));
  if (mayBeginBurst) mLatestRequests.erase(request.sensor);
  const auto latest = mLatestRequests.find(request.sensor);
  if (latest != mLatestRequests.end() && request.requestNo < latest->second) {
    if (const auto value = call.find("requestNo")) {
      value->warn("less than the previous request number, " + std::to_string(latest->second));
    }
  }
  mLatestRequests[request.sensor] = request.requestNo;
}

std::vector<ScenarioWarnings::CallWarning> ScenarioWarnings::callWarnings(
    const host::PhoneConfig& platform) const {
  std::vector<CallWarning> warnings;
  for (const auto& [sensor, call] : mSensors) {
    if (platform.devices.empty() || platform.devices.contains(sensor)) continue;
    warnings.push_back(
        {call, "sensor", "device " + std::to_string(sensor) + " is not in platform.devices"});
  }
  const bool hasProduct = mSetsProduct || platform.properties.contains(kProductProperty);
  for (const auto& [call, property] : mProducts) {
    if (hasProduct && property.name == kUnusedProductProperty) continue;
    std::string problem = productWarning({{property.name, property.value}}, mDecides);
    if (!problem.empty()) warnings.push_back({call, "value", std::move(problem)});
  }
  return warnings;
}

}  // namespace camhook
