// Dumps of metadata read back: what a phone wrote is what a scenario has.

#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>
#include <string>

#include "host/CameraMetadata.h"
#include "tests/support/TestMetadata.h"
#include "tools/camhook/input/DumpText.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/MetadataJson.h"

namespace {

std::string dumpOf(const NSCam::IMetadata& metadata) {
  const camera_metadata buffer(metadata);
  std::FILE* file = std::tmpfile();
  dump_camera_metadata(&buffer, fileno(file), 2);
  std::rewind(file);
  std::string text(10'000, '\0');
  text.resize(std::fread(text.data(), 1, text.size(), file));
  std::fclose(file);
  return text;
}

std::string complaintAbout(const std::string& dump) {
  std::ostringstream notes;
  try {
    return camhook::metadataFromDump(dump, notes).dump();
  } catch (const camhook::InputError& error) {
    return error.what();
  }
}

TEST(DumpText, GivesBackWhatWasDumped) {
  const std::string older = "        [7 7 7 ]\n  vendor.HESK_CONTROL_ISO (c0030030): int32[1]\n";
  for (const char* json :
       {"{}",
        R"({"ANDROID_CONTROL_CAPTURE_INTENT": 2, "HESK_CONTROL_CURRENTMODE": -9007199254740993})",
        R"({"ANDROID_CONTROL_CAPTURE_INTENT": {"type": "int32", "items": [2]}})",
        R"({"HESK_CONTROL_EV": -0.5, "HESK_CONTROL_PAIR_INPUT": ["inf", "nan"]})",
        R"({"ANDROID_SENSOR_NEUTRAL_COLOR_POINT": [[1, -2], [3, 4], [5, 6]]})",
        R"({"MTK_P1NODE_SCALAR_CROP_REGION": [-1, 2, 4000, 3000]})",
        R"({"MTK_RAW_ALGO_FACE_RECTS": [[1, 2, 3, 4], [5, 6, 7, 8]]})",
        R"({"HESK_CONTROL_DUMPPATH": "20210304050607-and-more-than-a-row\u0000"})",
        R"({"0xc0999999": {"type": "int32", "items": [1, 2, 3, 4, 5]}})"}) {
    std::ostringstream notes;
    const NSCam::IMetadata metadata = metadataOf(json);
    const auto read = camhook::metadataFromDump(dumpOf(metadata) + older, notes);
    EXPECT_EQ(camhook::metadataFromJson(read, camhook::Place()), metadata) << json;
    EXPECT_EQ(notes.str(), "");
  }
}

TEST(DumpText, LeavesOutDoublesAndSaysSo) {
  std::ostringstream notes;
  const auto read = camhook::metadataFromDump(
      "Camera metadata: 2 entries, 60 bytes\n  Version: 1\n"
      "  vendor.unknown (c0000001): double[2]\n    [1.5 2.5 ]\n"
      "  vendor.HESK_CONTROL_ISO (c0030030): int32[1]\n    [100 ]\n",
      notes);
  EXPECT_EQ(read.dump(), R"({"HESK_CONTROL_ISO":100})");
  EXPECT_EQ(notes.str(), "left out, of doubles: 0xc0000001\n");
}

TEST(DumpText, NamesTheLineOfWhatItRefuses) {
  const std::string first = "Camera metadata: 1 entry\n";
  const std::string head = first + "  vendor.HESK_CONTROL_ISO (c0030030): int32[2]\n";
  const std::pair<std::string, const char*> rows[] = {
      {"", "line 0: no dump of metadata, which begins with the number of its entries"},
      {"{}\n", "line 1: no dump of metadata, which begins with the number of its entries"},
      {first, "line 1: entries missing: 1"},
      {first + "  vendor.HESK_CONTROL_ISO: int32[2]\n", "line 2: entries missing: 1"},
      {first + "  vendor.x (c0030030): text[1]\n", R"(line 2: unknown type "text")"},
      {head, "line 2: HESK_CONTROL_ISO has 0 values of 2"},
      {head + "    [1 ]\n" + "  vendor.x (c0030031): int32[1]\n",
       "line 4: HESK_CONTROL_ISO has 1 values of 2"},
      {head + "    [ON 2 ]\n", R"(line 3: "ON" is no number)"},
  };
  for (const auto& [dump, complaint] : rows) EXPECT_EQ(complaintAbout(dump), complaint);
}

}  // namespace
