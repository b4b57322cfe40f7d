// A phone on which an app runs, and an updater of its own for a test: fresh, outside the slots, and
// gone when the test ends.

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
