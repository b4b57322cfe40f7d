// Log records of the library, and the log of the simulated phone.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdarg>
#include <limits>
#include <string>

#include "common/log/Log.h"
#include "host/Phone.h"
#include "tests/support/AllocationCounter.h"

namespace {

constexpr hesk::log::Source kSource{"HeskExample", "common/HeskExample.cpp"};
constexpr hesk::log::Operation kOperation{kSource, "doExample"};

std::string expand(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  std::string text = host::expandFormat(format, arguments);
  va_end(arguments);
  return text;
}

TEST(LogRecord, HasTagSourceLocationAndMessage) {
  host::Phone phone;
  const int line = __LINE__ + 1;
  HESK_LOGI(kOperation, "frame %d of %s", 3, "a burst");
  const auto records = phone.log.take();
  ASSERT_EQ(records.size(), 1U);
  EXPECT_EQ(records[0].level, 'I');
  EXPECT_EQ(records[0].tag, "HeskExample");
  EXPECT_EQ(records[0].file, "HeskExample.cpp");
  EXPECT_EQ(records[0].line, line);
  EXPECT_EQ(records[0].function, "doExample");
  EXPECT_EQ(records[0].message, "[doExample] frame 3 of a burst");
}

TEST(LogRecord, IsFormattedAsOneLine) {
  hesk::log::RecordBuffer buffer;
  hesk::log::formatRecord(buffer, kOperation, hesk::log::kError, 12, "[%s] frame %d");
  EXPECT_STREQ(buffer.data(), "E[HeskExample] HeskExample.cpp:12 doExample() [%s] frame %d");
}

TEST(LogRecord, IsTruncatedTo1023Characters) {
  hesk::log::RecordBuffer buffer;
  const std::string message(2000, 'x');
  hesk::log::formatRecord(buffer, kOperation, hesk::log::kDebug, 1, message.c_str());
  EXPECT_EQ(std::string(buffer.data()).size(), 1023U);
  EXPECT_EQ(buffer[1022], 'x');
}

TEST(LogLevels, ChecksLevelAndTag) {
  host::Phone phone;
  host::LogSink::enableLevels({'E'});
  HESK_LOGD(kOperation, "debug");
  HESK_LOGI(kOperation, "info");
  HESK_LOGE(kOperation, "error");
  phone.log.setTagsEnabled(false);
  HESK_LOGE(kOperation, "error again");
  const auto records = phone.log.take();
  ASSERT_EQ(records.size(), 1U);
  EXPECT_EQ(records[0].message, "[doExample] error");

  // The enable bit is the top bit of the entry's seventh byte.
  const auto* bytes = reinterpret_cast<const unsigned char*>(&g_logInfoLv[CAM_DEBUG_LEVEL_ERROR]);
  EXPECT_EQ(bytes[6], 0x80);
  EXPECT_EQ(reinterpret_cast<const unsigned char*>(g_logInfoLv)[6], 0);
}

TEST(LogLevels, EvaluatesNoArgumentsWhenDisabled) {
  host::Phone phone;
  host::LogSink::enableLevels({});
  int evaluations = 0;
  const auto argument = [&] { return ++evaluations; };
  EXPECT_EQ(allocationsIn([&] { HESK_LOGD(kOperation, "value %d", argument()); }), 0U);
  EXPECT_EQ(evaluations, 0);
  EXPECT_TRUE(phone.log.take().empty());
}

TEST(LogFormat, MatchesPrintf) {
  EXPECT_EQ(expand("%d|%5d|%-5d|%05d|%+d", -7, 42, 42, 42, 42), "-7|   42|42   |00042|+42");
  EXPECT_EQ(expand("%lld %ld %u %x %#X", -1LL, 2L, 3U, 255U, 255U), "-1 2 3 ff 0XFF");
  EXPECT_EQ(expand("%hhd %hu %zu %c%%", 258, 65537, std::size_t{9}, 'c'), "2 1 9 c%");
  EXPECT_EQ(expand("%f %.2f %g %*d %s", 1.5, 2.345, 0.1, 4, 7, "end"),
            "1.500000 2.35 0.1    7 end");
  EXPECT_EQ(expand("%s|%10s|%.2s", static_cast<const char*>(nullptr), "right", "cut"),
            "(null)|     right|cu");
  EXPECT_EQ(expand("%s", std::string(5000, 'x').c_str()), std::string(5000, 'x'));
  EXPECT_EQ(expand("100%"), "100%");
}

TEST(LogFormat, IsIndependentOfMachine) {
  const double notANumber = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(expand("%f %f", notANumber, std::copysign(notANumber, -1.0)), "nan nan");
  EXPECT_EQ(expand("%f %f", -HUGE_VAL, HUGE_VAL), "-inf inf");
  int somewhere = 0;
  EXPECT_EQ(expand("%p %d", static_cast<void*>(&somewhere), 1), "0x0 1");
}

TEST(LogSink, KeepsOtherLinesUnchanged) {
  host::Phone phone;
  log_dbg_print("Other", CAM_DEBUG_LEVEL_ERROR, "plain %d", 3);
  const auto records = phone.log.take();
  ASSERT_EQ(records.size(), 1U);
  EXPECT_EQ(records[0].message, "plain 3");
  EXPECT_EQ(records[0].function, "");
}

}  // namespace
