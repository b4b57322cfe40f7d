// The simulated phone's metadata container, and the vocabulary of the hooks on top of it.

#include <gtest/gtest.h>

#include <array>
#include <map>
#include <random>
#include <span>
#include <string>

#include "common/tags/Metadata.h"
#include "host/MetadataAccess.h"
#include "tests/support/AllocationCounter.h"
#include "tests/support/TestMetadata.h"

namespace {

using namespace hesk;
using NSCam::IMetadata;
using NSCam::MRational;
using NSCam::MRect;
using NSCam::Type2Type;

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

TEST(MetadataEntry, ReadsEveryOtherMismatchAsZero) {
  EXPECT_EQ(entryOf<std::int32_t>({7}).itemAt(0, Type2Type<float>{}), 0.0F);
  EXPECT_EQ(entryOf<float>({7.0F}).itemAt(0, Type2Type<std::int32_t>{}), 0);
  EXPECT_EQ(entryOf<MRect>({{1, 2, 3, 4}}).itemAt(0, Type2Type<MRational>{}), MRational{});
  EXPECT_EQ(entryOf<MRational>({{1, 2}}).itemAt(0, Type2Type<std::int64_t>{}), 0);
  EXPECT_EQ(entryOf<std::int64_t>({7}).itemAt(0, Type2Type<MRect>{}), MRect{});
  EXPECT_EQ(entryOf<std::int64_t>({7}).itemAt(1, Type2Type<std::int64_t>{}), 0);
  EXPECT_EQ(IMetadata().entryFor(7).itemAt(0, Type2Type<float>{}), 0.0F);
}

TEST(MetadataEntry, KeepsTheTypeOfItsFirstItem) {
  auto entry = entryOf<std::int32_t>({15, 30});
  entry.push_back(std::int64_t{1}, Type2Type<std::int64_t>{});
  entry.replaceItemAt(0, std::int64_t{1}, Type2Type<std::int64_t>{});
  entry.replaceItemAt(2, 1, Type2Type<std::int32_t>{});
  EXPECT_EQ(host::MetadataAccess::itemsOf(entry), (host::ItemList(std::vector{15, 30})));
  entry.replaceItemAt(1, 60, Type2Type<std::int32_t>{});
  EXPECT_EQ(host::MetadataAccess::itemsOf(entry), (host::ItemList(std::vector{15, 60})));
}

TEST(MetadataEntry, CopiesAndMovesItemsInsideAndOutsideTheEntry) {
  for (const std::size_t count : {1U, 2U, 3U, 500U}) {  // two int64 fit into the entry
    IMetadata::IEntry entry(1);
    for (std::size_t i = 0; i < count; ++i) {
      entry.push_back(static_cast<std::int64_t>(i), Type2Type<std::int64_t>{});
    }
    const auto items = host::MetadataAccess::itemsOf(entry);
    IMetadata::IEntry copy(entry);
    copy.push_back(std::int64_t{-1}, Type2Type<std::int64_t>{});
    EXPECT_EQ(copy.count(), count + 1);
    copy = entry;
    IMetadata::IEntry moved(std::move(entry));
    EXPECT_EQ(host::MetadataAccess::itemsOf(copy), items) << count;
    EXPECT_EQ(host::MetadataAccess::itemsOf(moved), items) << count;
    copy = std::move(moved);
    EXPECT_EQ(host::MetadataAccess::itemsOf(copy), items) << count;
  }
}

/// Random writes, reads and copies beside a plain map.
TEST(Metadata, AgreesWithAMap) {
  std::mt19937 random(20211);
  IMetadata metadata;
  std::map<std::uint32_t, std::int32_t> oracle;
  const auto randomTag = [&] {
    return static_cast<std::uint32_t>(0x80000000U + 0x10000U * (random() % 5) + random() % 100);
  };
  for (int step = 0; step < 20'000; ++step) {
    const std::uint32_t tag = randomTag();
    if (random() % 4 == 0) {
      metadata.update(tag, IMetadata::IEntry(tag));
      oracle.erase(tag);
    } else {
      metadata.update(tag, entryOf<std::int32_t>({step}));
      oracle[tag] = step;
    }
    if (step % 1000 == 0) metadata = IMetadata(metadata);
    const std::uint32_t other = randomTag();
    const auto expected = oracle.find(other);
    ASSERT_EQ(metadata.entryFor(other).isEmpty(), expected == oracle.end());
    ASSERT_EQ(metadata.entryFor(other).itemAt(0, Type2Type<std::int32_t>{}),
              expected == oracle.end() ? 0 : expected->second);
  }
  std::map<std::uint32_t, std::int32_t> listed;
  for (const auto* entry : host::MetadataAccess::entriesByTag(metadata)) {
    listed[entry->tag()] = entry->itemAt(0, Type2Type<std::int32_t>{});
  }
  EXPECT_EQ(listed, oracle);
}

TEST(Metadata, AddsTheEntriesOfAnother) {
  IMetadata left = metadataOf(R"({"HESK_CONTROL_ISO": 100, "HESK_CONTROL_EV": 0.5})");
  IMetadata right = metadataOf(R"({"HESK_CONTROL_ISO": [1, 2], "HESK_CONTROL_VIDEOMODE": 1})");
  clear(&right, tags::HESK_CONTROL_VIDEOMODE);
  left += right;
  left += left;
  EXPECT_EQ(left, metadataOf(R"({"HESK_CONTROL_ISO": [1, 2], "HESK_CONTROL_EV": 0.5})"));
}

TEST(Metadata, StoresAnEntryThatStandsInItself) {
  IMetadata metadata = metadataOf(R"({"HESK_CONTROL_AE_RESULT": [1, 2, 3, 4, 5, 6, 7, 8]})");
  for (std::uint32_t tag = 1; tag < 100; ++tag) {
    metadata.update(tag, metadata.entryFor(tags::HESK_CONTROL_AE_RESULT.value));
  }
  EXPECT_EQ(metadata.entryFor(99).itemAt(7, Type2Type<float>{}), 8.0F);
  EXPECT_EQ(metadata.entryFor(99).tag(), 99U);
}

TEST(Metadata, CopiesSmallEntriesWithTwoAllocations) {
  IMetadata metadata;
  for (std::uint32_t tag = 0; tag < 60; ++tag) {
    metadata.update(tag, entryOf<std::int32_t>({1, 2, 3, 4}));
  }
  EXPECT_LE(allocationsIn([&] {
              IMetadata copy(metadata);
              write(&copy, Tag<std::int32_t>{7}, 5);
            }),
            2U);
  EXPECT_EQ(allocationsIn([&] { metadata.update(7, entryOf<std::int32_t>({5})); }), 0U);
}

TEST(MetadataVocabulary, TakesNullContainers) {
  EXPECT_FALSE(has(nullptr, tags::HESK_CONTROL_ISO));
  EXPECT_EQ(read(nullptr, tags::HESK_CONTROL_ISO, 7), 7);
  EXPECT_EQ(write(nullptr, tags::HESK_CONTROL_ISO, 7), -1);
  EXPECT_EQ(clear(nullptr, tags::HESK_CONTROL_ISO), -1);
  replaceItem(nullptr, tags::HESK_CONTROL_ISO, 0, 7);
  std::array<std::int32_t, 2> items = {1, 2};
  readAll(nullptr, tags::HESK_CONTROL_ISO, std::span(items));
  EXPECT_EQ(items, (std::array<std::int32_t, 2>{}));
  EXPECT_EQ(writeAll(nullptr, tags::HESK_CONTROL_ISO, items), -1);
}

TEST(MetadataVocabulary, FallsBackOnlyWhereTheEntryHoldsNothing) {
  const IMetadata metadata = metadataOf(R"({"HESK_CONTROL_HISFRAME": [5]})");
  EXPECT_EQ(read(&metadata, tags::HESK_CONTROL_HISFRAME, 9), 5);
  EXPECT_EQ(read(&metadata, tags::HESK_CONTROL_HISFRAME, 9, 1), 0);
  EXPECT_EQ(read(&metadata, tags::HESK_CONTROL_ISO, 9), 9);
}

TEST(MetadataVocabulary, WritesInTheTagsTypeUnlessToldOtherwise) {
  IMetadata metadata;
  EXPECT_EQ(write(&metadata, tags::ANDROID_FLASH_MODE, std::uint8_t{1}), 0);
  writeAs<std::int32_t>(&metadata, tags::ANDROID_CONTROL_ENABLE_ZSL, 0);
  replaceItem(&metadata, tags::ANDROID_CONTROL_ENABLE_ZSL, 0, 1);  // a byte: another type
  replaceItem(&metadata, tags::HESK_CONTROL_ISO, 0, 1);            // not there
  EXPECT_EQ(metadata, metadataOf(R"({"ANDROID_FLASH_MODE": 1,
                                     "ANDROID_CONTROL_ENABLE_ZSL": {"type": "int32", "items": [0]}})"));
}

}  // namespace
