// The sensor mode rules of the products.

#pragma once

#include <string_view>
#include <vector>

#include "common/sensormode/SensorModeCfg.h"

/// The rules of one product. The order of the rows matters (SensorModeTables.cpp).
struct SensorModeTable {
  const char* productName;                    // prefix of the product model
  std::vector<SensorModeCfg> sensor0Preview;  // sensor 0, no video stream
  std::vector<SensorModeCfg> sensor0Video;
  std::vector<SensorModeCfg> sensor1Preview;  // sensor 1 is the front camera
  std::vector<SensorModeCfg> sensor1Video;
};

namespace hesk {

/// The tables of all products, built at library load and never changed.
const std::vector<SensorModeTable>& sensorModeTables();

/// Returns the last table whose name is a prefix of the product model, null if there is none.
const SensorModeTable* findSensorModeTable(std::string_view product);

}  // namespace hesk
