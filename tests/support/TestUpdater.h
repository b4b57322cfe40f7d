// An updater of its own for a test: fresh, outside the slots, and gone when the test ends.

#pragma once

#include "common/HeskParameterUpdater.h"
#include "common/updater/UpdaterInspector.h"

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
