// A phone configuration with events and properties, and an updater that lives as long as a test and
// is not one of those that `createInstance` returns.

#pragma once

#include <utility>

#include "common/HeskParameterUpdater.h"
#include "common/updater/UpdaterInspector.h"
#include "host/PhoneConfig.h"

inline host::PhoneConfig phoneWith(host::TextMap eventStore, host::TextMap properties = {}) {
  host::PhoneConfig config;
  config.eventStore = std::move(eventStore);
  config.properties = std::move(properties);
  return config;
}

class TestUpdater {
 public:
  explicit TestUpdater(int sensor = 0)
      : mUpdater(HeskParameterUpdaterInspector::construct(sensor)), fields{*mUpdater} {}
  ~TestUpdater() { HeskParameterUpdaterInspector::destroy(mUpdater); }
  TestUpdater(const TestUpdater&) = delete;
  TestUpdater& operator=(const TestUpdater&) = delete;

  HeskParameterUpdater* operator->() const { return mUpdater; }

 private:
  HeskParameterUpdater* mUpdater;

 public:
  HeskParameterUpdaterInspector fields;
};
