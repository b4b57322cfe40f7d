// Properties and lifetime of the simulated phone, and the instances of updaters.

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "common/HeskParameterUpdater.h"
#include "host/Phone.h"
#include "platform/Hal3A.h"
#include "platform/MetadataProvider.h"
#include "platform/ModuleFactory.h"
#include "platform/Properties.h"

namespace {

std::string property(const char* name, const char* fallback) {
  char value[PROPERTY_VALUE_MAX];
  const int length = property_get(name, value, fallback);
  EXPECT_EQ(std::string(value).size(), static_cast<std::size_t>(length));
  return value;
}

TEST(Phone, ReturnsDefaultForUnsetProperties) {
  host::Phone phone;
  EXPECT_EQ(property("a", nullptr), "");
  phone.properties.set("a", "");
  EXPECT_EQ(property("a", "default"), "default");
  phone.properties.set("a", std::string(500, 'x'));
  EXPECT_EQ(property("a", "default"), std::string(91, 'x'));
}

TEST(Phone, ParsesNumbersInProperties) {
  const std::pair<const char*, int> rows[] = {{"", 7},
                                              {"0", 0},
                                              {"-3abc", -3},
                                              {" 0x1F", 31},
                                              {"010", 8},
                                              {"yes", 7},
                                              {"0x", 0},
                                              {"2147483647", 2147483647},
                                              {"2147483648", 7},
                                              {"-2147483649", 7},
                                              {"99999999999999999999", 7}};
  for (const auto& [text, number] : rows) {
    host::Phone phone;
    phone.properties.set("a", text);
    EXPECT_EQ(property_get_int32("a", 7), number) << text;
  }
}

TEST(Phone, KeepsNoStateAfterItsEnd) {
  {
    host::Phone phone;
    phone.properties.set("a", "set");
    phone.config.devices[0].hal3A.available = false;
    EXPECT_NE(NSCam::NSMetadataProviderManager::valueForByDeviceId(0), nullptr);
    EXPECT_THROW(host::Phone(), std::logic_error);  // one at a time
  }
  EXPECT_EQ(g_logInfoLv[CAM_DEBUG_LEVEL_ERROR].flags & cam_log_info_t::kEnabled, 0U);
  EXPECT_EQ(property("a", "default"), "default");  // without a phone
  EXPECT_EQ(NSCam::NSMetadataProviderManager::valueForByDeviceId(0), nullptr);
  const auto creator =
      reinterpret_cast<NS3Av3::Hal3ACreator>(NSCam::getMtkcamModuleFactory(NSCam::kModule3A));
  NS3Av3::IHal3A* hal3A = creator(0, "test");
  ASSERT_NE(hal3A, nullptr);
  hal3A->release("test");
}

TEST(Updater, ExistsOnlyForSensorsUpTo10) {
  EXPECT_NE(HeskParameterUpdater::createInstance(10), nullptr);
  for (const int sensor : {-1, 11, std::numeric_limits<int>::min()}) {
    EXPECT_EQ(HeskParameterUpdater::createInstance(sensor), nullptr) << sensor;
  }
}

}  // namespace
