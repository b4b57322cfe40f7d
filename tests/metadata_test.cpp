// The metadata container of the simulated phone, and the functions by which hooks use it.

#include <gtest/gtest.h>

#include <array>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "common/tags/Metadata.h"
#include "host/MetadataAccess.h"
#include "tests/support/TestMetadata.h"

namespace {

using namespace hesk;
using NSCam::IMetadata;
using NSCam::MRational;
using NSCam::MRect;
using NSCam::Type2Type;

const host::ItemList& itemsOf(const IMetadata::IEntry& entry) {
  return host::MetadataAccess::itemsOf(entry);
}

template <typename T>
IMetadata::IEntry entryOf(std::initializer_list<T> items) {
  IMetadata::IEntry entry(1);
  for (const T& item : items) entry.push_back(item, Type2Type<T>{});
  return entry;
}

TEST(MetadataEntry, ConvertsIntegersByTruncationAndZeroExtension) {
  const auto wide = entryOf<std::int64_t>({0x1'8000'00ff, -1});
  EXPECT_EQ(wide.itemAt(0, Type2Type<std::int32_t>{}), std::int32_t{-0x7fffff01});
  EXPECT_EQ(wide.itemAt(0, Type2Type<std::uint8_t>{}), 0xff);
  EXPECT_EQ(wide.itemAt(1, Type2Type<std::int32_t>{}), -1);
  const auto bytes = entryOf<std::uint8_t>({0xff});
  EXPECT_EQ(bytes.itemAt(0, Type2Type<std::int32_t>{}), 255);
  EXPECT_EQ(bytes.itemAt(0, Type2Type<std::int64_t>{}), 255);
  const auto words = entryOf<std::int32_t>({-2, 258});
  EXPECT_EQ(words.itemAt(0, Type2Type<std::int64_t>{}), -2);
  EXPECT_EQ(words.itemAt(1, Type2Type<std::uint8_t>{}), 2);
}

TEST(MetadataEntry, ReadsOtherTypesAsZero) {
  EXPECT_EQ(entryOf<std::int32_t>({7}).itemAt(0, Type2Type<float>{}), 0.0F);
  EXPECT_EQ(entryOf<float>({7.0F}).itemAt(0, Type2Type<std::int32_t>{}), 0);
  EXPECT_EQ(entryOf<MRect>({{1, 2, 3, 4}}).itemAt(0, Type2Type<MRational>{}), MRational{});
  EXPECT_EQ(entryOf<MRational>({{1, 2}}).itemAt(0, Type2Type<std::int64_t>{}), 0);
  EXPECT_EQ(entryOf<std::int64_t>({7}).itemAt(0, Type2Type<MRect>{}), MRect{});
  EXPECT_EQ(entryOf<std::int64_t>({7}).itemAt(1, Type2Type<std::int64_t>{}), 0);
  EXPECT_EQ(IMetadata().entryFor(7).itemAt(0, Type2Type<float>{}), 0.0F);
}

TEST(MetadataEntry, KeepsTypeOfFirstItem) {
  auto entry = entryOf<std::int32_t>({15, 30});
  entry.push_back(std::int64_t{1}, Type2Type<std::int64_t>{});
  entry.replaceItemAt(0, std::int64_t{1}, Type2Type<std::int64_t>{});
  entry.replaceItemAt(2, 1, Type2Type<std::int32_t>{});
  EXPECT_EQ(itemsOf(entry), (host::ItemList(std::vector{15, 30})));
  entry.replaceItemAt(1, 60, Type2Type<std::int32_t>{});
  EXPECT_EQ(itemsOf(entry), (host::ItemList(std::vector{15, 60})));
}

TEST(Metadata, DistinguishesEmptyEntryFromAbsentOne) {
  constexpr std::uint32_t kIso = tags::HESK_CONTROL_ISO.value;
  constexpr std::uint32_t kVideoMode = tags::HESK_CONTROL_VIDEOMODE.value;
  IMetadata metadata = metadataOf(R"({"HESK_CONTROL_ISO": 100, "HESK_CONTROL_EV": []})");
  EXPECT_EQ(metadata.entryFor(kVideoMode).tag(), IMetadata::kNoTag);
  EXPECT_EQ(metadata.entryFor(tags::HESK_CONTROL_EV.value).tag(), IMetadata::kNoTag);
  for (const auto tag : {kIso, kVideoMode}) {  // one present, one absent
    EXPECT_EQ(metadata.update(tag, IMetadata::IEntry(tag)), 0);
    EXPECT_TRUE(metadata.entryFor(tag).isEmpty());
    EXPECT_EQ(metadata.entryFor(tag).tag(), tag);
  }
  EXPECT_EQ(metadata, IMetadata());  // a trace shows neither
}

TEST(Metadata, AddsEntriesOfAnotherContainer) {
  IMetadata left = metadataOf(
      R"({"HESK_CONTROL_ISO": 100, "HESK_CONTROL_EV": 0.5, "HESK_CONTROL_VIDEOMODE": 1})");
  IMetadata right = metadataOf(R"({"HESK_CONTROL_ISO": [1, 2]})");
  clear(&right, tags::HESK_CONTROL_VIDEOMODE);
  left += right;
  left += left;
  left += IMetadata();
  EXPECT_EQ(left, metadataOf(R"({"HESK_CONTROL_ISO": [1, 2], "HESK_CONTROL_EV": 0.5})"));
  EXPECT_EQ(left.entryFor(tags::HESK_CONTROL_VIDEOMODE.value).tag(),
            tags::HESK_CONTROL_VIDEOMODE.value);
}

TEST(MetadataFunctions, AcceptNullContainers) {
  EXPECT_FALSE(has(nullptr, tags::HESK_CONTROL_ISO));
  EXPECT_EQ(read(nullptr, tags::HESK_CONTROL_ISO, 7), 7);
  EXPECT_EQ(readItem(nullptr, tags::HESK_CONTROL_ISO, 1), 0);
  EXPECT_EQ(write(nullptr, tags::HESK_CONTROL_ISO, 7), -1);
  EXPECT_EQ(clear(nullptr, tags::HESK_CONTROL_ISO), -1);
  replaceItem(nullptr, tags::HESK_CONTROL_ISO, 0, 7);
  std::array<std::int32_t, 2> items = {1, 2};
  readAll(nullptr, tags::HESK_CONTROL_ISO, std::span(items));
  EXPECT_EQ(items, (std::array<std::int32_t, 2>{}));
  EXPECT_EQ(writeAll(nullptr, tags::HESK_CONTROL_ISO, items), -1);
}

TEST(MetadataFunctions, UseDefaultOnlyForAbsentEntries) {
  const IMetadata metadata = metadataOf(R"({"HESK_CONTROL_HISFRAME": [5]})");
  EXPECT_EQ(read(&metadata, tags::HESK_CONTROL_HISFRAME, 9), 5);
  EXPECT_EQ(readItem(&metadata, tags::HESK_CONTROL_HISFRAME, 1), 0);
  EXPECT_EQ(read(&metadata, tags::HESK_CONTROL_ISO, 9), 9);
}

TEST(MetadataFunctions, WriteTypeOfTag) {
  IMetadata metadata;
  EXPECT_EQ(write(&metadata, tags::ANDROID_FLASH_MODE, std::uint8_t{1}), 0);
  writeAs<std::int32_t>(&metadata, tags::ANDROID_CONTROL_ENABLE_ZSL, 0);
  replaceItem(&metadata, tags::ANDROID_CONTROL_ENABLE_ZSL, 0, 1);  // no effect: other type
  replaceItem(&metadata, tags::HESK_CONTROL_ISO, 0, 1);            // no effect: absent
  EXPECT_EQ(metadata, metadataOf(R"({"ANDROID_FLASH_MODE": 1,
                                     "ANDROID_CONTROL_ENABLE_ZSL": {"type": "int32", "items": [0]}})"));
}

}  // namespace
