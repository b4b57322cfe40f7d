// Metadata dumps, time stamps and tuning data.

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <limits>
#include <map>
#include <sstream>
#include <string>

#include "common/tags/Metadata.h"
#include "host/CameraMetadata.h"
#include "host/Phone.h"
#include "tests/support/CamhookProcess.h"
#include "tests/support/TestMetadata.h"
#include "tests/support/TestUpdater.h"
#include "tools/camhook/input/DumpText.h"

namespace {

using namespace hesk;
using NSCam::IMetadata;
using Files = std::vector<std::string>;

class MetadataDump : public testing::Test {
 protected:
  MetadataDump() {
    mPhone.properties.set("vendor.camera.dumprawhifmetadata", "1");
    setClock("2021-03-04 05:06:07");
  }

  void setClock(const char* text) {
    strptime(text, "%Y-%m-%d %H:%M:%S", &mPhone.config.clock.emplace());
  }

  /// Dumps metadata and returns the paths of the opened files.
  Files dump(const std::string& metadata, const char* name = "request", int frame = 12) {
    camera_metadata buffer(metadataOf(metadata));
    mUpdater->dumpMetadata(&buffer, name, frame);
    return mPhone.files.takeOpened();
  }

  const std::string kStill = R"({"ANDROID_CONTROL_CAPTURE_INTENT": 2})";
  const std::string kFile = "/data/vendor/camera/request_metadata_[12]_20210304050607.txt";

  host::Phone mPhone;
  TestUpdater mUpdater;
};

TEST_F(MetadataDump, IsWrittenOnlyForStillCaptures) {
  EXPECT_EQ(dump(kStill), Files{kFile});
  EXPECT_EQ(dump(R"({"ANDROID_CONTROL_CAPTURE_INTENT": {"type": "int32", "items": [2]}})").size(),
            1U);
  EXPECT_EQ(dump(R"({"ANDROID_CONTROL_CAPTURE_INTENT": [2, 0, 0, 0, 7]})").size(), 1U);
  // The intent is compared as four bytes.
  EXPECT_EQ(dump(R"({"ANDROID_CONTROL_CAPTURE_INTENT": [2, 1]})"), Files{});
  EXPECT_EQ(dump(R"({"ANDROID_CONTROL_CAPTURE_INTENT": 1})"), Files{});
  mPhone.log.take();
  EXPECT_EQ(dump("{}"), Files{});
  mUpdater->dumpMetadata(nullptr, "request", 1);
  for (const char* off : {"0", "false", "2", ""}) {
    mPhone.properties.set("vendor.camera.dumprawhifmetadata", off);
    EXPECT_EQ(dump(kStill), Files{}) << off;
  }
  EXPECT_TRUE(mPhone.log.take().empty());
}

TEST_F(MetadataDump, WritesNanWithoutSign) {
  // The sign of a computed NaN depends on the processor.
  NSCam::IMetadata metadata = metadataOf(kStill);
  const float notANumber = std::numeric_limits<float>::quiet_NaN();
  hesk::write(&metadata, hesk::tags::HESK_CONTROL_PAIR_INPUT, notANumber, -notANumber);
  camera_metadata buffer(metadata);
  mUpdater->dumpMetadata(&buffer, "request", 12);
  const std::string text = mPhone.files.content(kFile);
  EXPECT_TRUE(text.ends_with("float[2]\n    [nan nan ]\n")) << text;
}

TEST_F(MetadataDump, OverwritesWithoutTruncating) {
  dump(R"({"ANDROID_CONTROL_CAPTURE_INTENT": 2, "HESK_CONTROL_ISO": 1})");
  const std::string longText = mPhone.files.content(kFile);
  dump(kStill);
  const std::string text = mPhone.files.content(kFile);
  const std::string kFirstLine =
      "Dumping camera metadata array: 1 / 1 entries, 0 / 0 bytes of extra data.\n";
  EXPECT_EQ(text.size(), longText.size());
  EXPECT_TRUE(text.starts_with(kFirstLine)) << text;
  EXPECT_EQ(text.substr(text.size() - 20), longText.substr(text.size() - 20));
}

TEST_F(MetadataDump, OpensOnlyFilesInCameraDirectory) {
  for (const char* outside : {"../x", "../../../../x", "../cameras/x", "../../../../../tmp/x"}) {
    EXPECT_EQ(dump(kStill, outside), Files{}) << outside;
  }
  const Files opened = dump(kStill, "a/../../../../data/vendor/./camera/request");
  ASSERT_EQ(opened.size(), 1U);
  EXPECT_NE(opened.front(), kFile);
  EXPECT_FALSE(mPhone.files.content(kFile).empty());
  EXPECT_EQ(mPhone.files.content(opened.front()), mPhone.files.content(kFile));
}

TEST_F(MetadataDump, AbortsIfNameIsTooLong) {
  EXPECT_EQ(dump(kStill, std::string(46, 'x').c_str()).size(), 1U);
  for (const auto levels : {std::initializer_list<char>{'E'}, {}}) {
    host::LogSink::enableLevels(levels);
    EXPECT_DEATH(dump(kStill, std::string(47, 'x').c_str()),
                 "the path of dump \"x+\" has 100 characters, at most 99 fit");
  }
}

TEST_F(MetadataDump, WritesNothingToDescriptorZero) {
  for (const int number : {STDIN_FILENO, STDOUT_FILENO}) {
    const int kept = dup(number);
    close(number);  // the next file gets this descriptor
    const Files files = dump(kStill);
    const int next = dup(kept);
    dup2(kept, number);
    close(kept);
    EXPECT_EQ(files, Files{kFile});
    EXPECT_EQ(mPhone.files.content(files.front()).empty(), number == STDIN_FILENO);
    EXPECT_EQ(next, number);  // the dump has closed it
  }
}

TEST_F(MetadataDump, TimeStampIsTruncatedAfterYear9999) {
  std::array<char, 15> text{};
  HeskParameterUpdater::getCurrentTime(text.data());
  EXPECT_STREQ(text.data(), "20210304050607");
  mPhone.config.clock->tm_year = 123456 - 1900;
  HeskParameterUpdater::getCurrentTime(text.data());
  EXPECT_STREQ(text.data(), "12345603040506");
}

TEST_F(MetadataDump, TimeStampFollowsTimeZone) {
  mPhone.config.clock.reset();
  const auto timeIn = [](const char* zone) {
    std::array<char, 15> text{};
    setenv("TZ", zone, 1);
    HeskParameterUpdater::getCurrentTime(text.data());
    return std::string(text.data());
  };
  const std::string west = timeIn("WST12");
  const std::string east = timeIn("EST-12");
  unsetenv("TZ");
  EXPECT_EQ(east.size(), 14U);
  EXPECT_GT(east.substr(0, 8), west.substr(0, 8));  // a day later
}

std::string dumpOf(const camera_metadata* buffer, int verbosity = 2) {
  std::FILE* file = std::tmpfile();
  dump_camera_metadata(buffer, fileno(file), verbosity);
  std::rewind(file);
  std::string text(10'000, '\0');
  text.resize(std::fread(text.data(), 1, text.size(), file));
  std::fclose(file);
  return text;
}

/// Returns the lines of each entry of a dump, by tag.
std::map<std::string, std::string> entriesOf(const std::string& dump) {
  std::map<std::string, std::string> entries;
  std::string tag;
  std::istringstream lines(dump);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t number = line.find(" (");
    if (line.starts_with("  ") && line[2] != ' ' && number != std::string::npos) {
      tag = line.substr(number, line.find(')') - number);
      // Names of vendor tags differ between phones.
      if (!line.starts_with("  android.")) line.erase(0, number);
    }
    entries[tag] += line + '\n';
  }
  entries.erase("");
  return entries;
}

TEST(MetadataDumpText, MatchesPhone) {
  const std::string phones = contentOf(kSourceRoot / "tests/support/phone_dump.txt");
  NSCam::IMetadata metadata;
  const camhook::Dump dump = camhook::dumpsIn(phones).dumps.at(0);
  for (const auto& entry : dump.entries) metadata.update(entry.tag(), entry);
  const camera_metadata buffer(metadata);

  auto expected = entriesOf(phones);
  // The simulated phone has no name for this tag.
  expected[" (c0999999"] = " (c0999999): int32[3]\n    [65549 917506 74565 ]\n";
  EXPECT_EQ(entriesOf(dumpOf(&buffer)), expected);
  EXPECT_TRUE(dumpOf(&buffer).starts_with(
      "Dumping camera metadata array: 10 / 10 entries, 168 / 168 bytes of extra data.\n"
      "  Version: 1, Flags: 00000000\n"
      "  android.control.awbMode (1000b): int32[1]\n"));
}

TEST(MetadataDumpText, DependsOnVerbosity) {
  camera_metadata buffer(NSCam::IMetadata{});
  camera_metadata::Entry& doubles = buffer.entries.emplace_back();
  doubles = {.tag = 0xc0999999, .type = 4, .count = 17, .words = {}};
  doubles.words.resize(doubles.count);
  const double large = -1.7976931348623157e308;
  std::memcpy(doubles.words.data(), &large, sizeof large);
  const std::string none =
      "Dumping camera metadata array: 1 / 1 entries, 136 / 136 bytes of extra data.\n"
      "  Version: 1, Flags: 00000000\n"
      "  unknownSection.unknownTag (c0999999): double[17]\n";
  EXPECT_EQ(dumpOf(&buffer, 0), none);
  const std::string all = dumpOf(&buffer, 2);
  const std::string first = dumpOf(&buffer, 1);
  EXPECT_TRUE(first.starts_with(none + "    [-17976931348623157"));
  EXPECT_TRUE(first.ends_with(".00000000 0.00000000 0.00000000 0.00000000 ]\n"));
  EXPECT_EQ(std::ranges::count(first, '['), std::ranges::count(none, '[') + 4);
  EXPECT_EQ(all, first + "    [0.00000000 ]\n");
  EXPECT_EQ(dumpOf(nullptr), "Dumping camera metadata array: Not allocated\n");
}

TEST(TuningData, IsCopiedIfBufferIsLargeEnough) {
  struct Row {
    std::int32_t fd;
    std::int32_t bufferSize;
    unsigned int size;
    bool hasData;
    bool isCopied;
  };
  const Row rows[] = {{1, 8, 8, true, true},   {1, 8, 9, true, false},  {0, 8, 8, true, false},
                      {1, 0, 0, true, true},   {1, 8, 8, false, false}, {1, 8, 0, false, true},
                      {-1, 8, 0, true, false}, {0, 8, 0, true, false},  {1, 9, 9, true, true}};
  host::Phone phone;
  for (const auto& [fd, bufferSize, size, hasData, isCopied] : rows) {
    phone.config.tuningBuffer = {.fd = fd, .bufferSize = bufferSize, .bufferIndex = 3};
    const TestUpdater updater;
    std::string data = "12345678+";
    IMetadata meta;
    EXPECT_EQ(updater->updateTuningData(&meta, hasData ? data.data() : nullptr, size), isCopied);
    EXPECT_EQ(read(&meta, tags::MTK_RAW_ALGO_TUNING_BUFFER_INDEX), isCopied ? 3 : 0);
    if (isCopied && size == 8) {
      EXPECT_EQ(std::memcmp(phone.tuningBuffer.bytes().data(), "12345678", 8), 0);
    }
  }
}

}  // namespace
