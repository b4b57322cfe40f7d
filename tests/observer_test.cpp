// What an observer of the phone is told of a hook, and that nobody is told without one.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <variant>
#include <vector>

#include "host/Phone.h"
#include "tests/support/TestMetadata.h"
#include "tests/support/TestUpdater.h"
#include "tools/camhook/input/MetadataJson.h"

namespace {

using camhook::tagText;

/// Every access as a line, but what is read and written in containers other than `meta`.
class Lines final : public host::Observer {
 public:
  explicit Lines(const NSCam::IMetadata& meta) : mMeta(&meta) {}

  void onAccess(const host::Access& access) override {
    std::visit([this](const auto& concrete) { add(concrete); }, access);
    hasAddresses = hasAddresses && returnAddresses().size() > 1;
  }

  std::vector<std::string> lines;
  bool hasAddresses = true;

 private:
  void add(const host::MetadataRead& read) {
    if (read.container == mMeta) lines.push_back("read " + tagText(read.tag));
  }
  void add(const host::MetadataWrite& write) {
    if (write.container != mMeta) return;
    lines.push_back((write.entry.isEmpty() ? "clear " : "write ") + tagText(write.tag));
  }
  void add(const host::StaticRead& read) {
    lines.push_back("static " + std::to_string(read.device) + ' ' + tagText(read.tag));
  }
  void add(const host::EventRead& read) { lines.push_back("event " + read.key + '=' + read.value); }
  void add(const host::PropertyRead& read) {
    lines.push_back("property " + read.name + '=' + read.value);
  }
  void add(const host::ServiceRead& read) { lines.push_back("service " + read.place); }
  void add(const host::Effect& effect) { lines.push_back("effect " + effect.op); }

  const NSCam::IMetadata* mMeta;
};

TEST(Observer, IsToldEveryKindOfAccess) {
  host::Phone phone;
  phone.eventStore.set("APP_NAME", "SuperMoon");
  phone.config.devices[0].statics =
      metadataOf(R"({"ANDROID_SENSOR_INFO_PHYSICAL_SIZE": [6.4, 4.8]})");
  TestUpdater updater;
  NSCam::IMetadata meta = metadataOf(R"({"MTK_CONTROL_RAW_TYPE": 1})");
  Lines observer(meta);
  EXPECT_EQ(phone.setObserver(&observer), &phone.effects);
  updater->updateSessionParams(&meta, {});
  updater->updateRequestMeta(&meta, 1);

  for (const char* line :
       {"read HESK_CONTROL_CURRENTMODE", "write MTK_CONTROL_SELECTED_STREAM_ID",
        "clear MTK_CONTROL_RAW_TYPE", "event APP_NAME=SuperMoon",
        "property vendor.debug.camera.fps.low=", "service provider", "effect eventStore.set"}) {
    EXPECT_NE(std::ranges::find(observer.lines, line), observer.lines.end()) << line;
  }
  EXPECT_TRUE(observer.hasAddresses);

  EXPECT_TRUE(phone.effects.take().empty());  // they went to the observer alone
  EXPECT_EQ(phone.setObserver(&phone.effects), &observer);
  const std::size_t told = observer.lines.size();
  updater->updateRequestMeta(&meta, 2);
  EXPECT_EQ(observer.lines.size(), told);
  EXPECT_FALSE(phone.effects.take().empty());
}

TEST(Observer, TellsStaticMetadataByDevice) {
  host::Phone phone;
  for (const int sensor : {0, 1}) {
    phone.config.devices[sensor].statics =
        metadataOf(R"({"ANDROID_SENSOR_INFO_PHYSICAL_SIZE": [6.4, 4.8],
                       "ANDROID_LENS_INFO_AVAILABLE_FOCAL_LENGTHS": 5.0})");
  }
  NSCam::IMetadata meta;
  Lines observer(meta);
  phone.setObserver(&observer);
  TestUpdater updater(1);
  updater->updateSessionParams(&meta, {});
  const auto first = std::ranges::find(observer.lines, "service devices.1.static");
  ASSERT_NE(first, observer.lines.end());
  EXPECT_NE(std::find(first, observer.lines.end(), "static 1 ANDROID_SENSOR_INFO_PHYSICAL_SIZE"),
            observer.lines.end());
}

TEST(Observer, IsNotNeeded) {
  host::Phone phone;
  phone.setObserver(nullptr);
  TestUpdater updater;
  NSCam::IMetadata meta;
  updater->updateRequestMeta(&meta, 1);
  EXPECT_NE(meta, NSCam::IMetadata());
  EXPECT_TRUE(phone.effects.take().empty());
}

}  // namespace
