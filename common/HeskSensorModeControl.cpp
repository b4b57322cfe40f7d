// Loads the rules and decides. The rules are in sensormode/SensorModeTables.cpp, the filters in
// sensormode/Filters.cpp, the overrides in sensormode/SpecialCustomize.cpp.

#include "common/HeskSensorModeControl.h"

#include <algorithm>
#include <utility>

#include "common/Product.h"
#include "common/sensormode/CSingleton.h"
#include "common/sensormode/SensorModeLog.h"
#include "common/sensormode/SensorModeTables.h"
#include "common/sensormode/SensorScenario.h"

using namespace hesk;

constexpr log::Operation kTableOperation{kSensorModeSource, "getSensorModeTable"};

HeskSensorModeControl* HeskSensorModeControl::createInstance(int sensorId) {
  HeskSensorModeControl* instance = CSingleton<HeskSensorModeControl>::m_pInstance;
  instance->mSensorId = sensorId;
  return instance;
}

void HeskSensorModeControl::getProductName() {
  constexpr log::Operation kOperation{kSensorModeSource, "getProductName"};

  const auto model = productModel("default");
  std::copy_n(model.begin(), productName.size() - 1, productName.begin());  // keeps the final zero
  HESK_LOGD(kOperation, "productName %s", productName.data());
}

/// Returns the rules of the current product for the sensor, null if there are none.
const std::vector<SensorModeCfg>* HeskSensorModeControl::chooseList(int sensorId,
                                                                    bool isVideoMode) const {
  const SensorModeTable* const table = findSensorModeTable(productName.data());
  if (table == nullptr) {
    HESK_LOGD(kTableOperation, "no suitable sensorModeTable");
    return nullptr;
  }
  if (sensorId == 0) return isVideoMode ? &table->sensor0Video : &table->sensor0Preview;
  if (sensorId == 1) return isVideoMode ? &table->sensor1Video : &table->sensor1Preview;
  return nullptr;
}

void HeskSensorModeControl::getSensorModeTable(int sensorId, bool isVideoMode) {
  HESK_LOGD(kTableOperation, "mSensorId %d, isVideoMode %d", sensorId, isVideoMode);
  sensorModeTable.clear();
  multiConditionTable.clear();
  selectedSensorModeCfgs.clear();
  getProductName();
  const std::vector<SensorModeCfg>* rules = chooseList(sensorId, isVideoMode);
  if (rules == nullptr) return;
  for (const SensorModeCfg& rule : *rules) {
    (rule.conditionCount < 2 ? sensorModeTable : multiConditionTable).push_back(rule);
  }
}

/// Returns the scenario of the selected rule, or the default if none is selected.
std::int32_t HeskSensorModeControl::baseScenario(bool isVideoMode) const {
  if (!selectedSensorModeCfgs.empty()) return selectedSensorModeCfgs.back().sensorMode;
  return isVideoMode ? NORMAL_VIDEO : NO_DECISION;
}

int HeskSensorModeControl::decideSensorScenario(NSCam::IMetadata* meta,
                                                std::shared_ptr<StreamInfo> info) {
  constexpr log::Operation kOperation{kSensorModeSource, "decideSensorScenario"};

  const bool isVideoMode = info != nullptr && info->hasVideoConsumer;
  getSensorModeTable(mSensorId, isVideoMode);
  HESK_LOGD(kOperation, "sensorModeTable size %d, %d", static_cast<int>(sensorModeTable.size()),
            static_cast<int>(multiConditionTable.size()));

  getSensorModeCfgByMultiCondition(meta);
  getSensorModeCfgByEisMode(meta);
  getSensorModeCfgByIsHfpsMode(meta);
  getSensorModeCfgByApptype();
  getSensorModeCfgByFps(meta);
  getSensorModeCfgByVideoAlgoType(meta);
  getSensorModeCfgByUiMode(meta);
  HESK_LOGD(kOperation, "selectedSensorModeCfgs size %d",
            static_cast<int>(selectedSensorModeCfgs.size()));

  std::int32_t sensorMode = baseScenario(isVideoMode);
  const std::int32_t special = specialCustomize(meta, std::move(info));
  if (special != NO_DECISION) sensorMode = special;
  HESK_LOGD(kOperation, "sensorMode %lld", static_cast<long long>(sensorMode));
  return sensorMode;
}
