// The operations on containers, event store and properties, with nothing around them.

#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "common/tags/Tags.h"
#include "platform/EventStore.h"
#include "platform/IMetadata.h"
#include "platform/Properties.h"

namespace bench {

using hesk::Tag;
using NSCam::IMetadata;
using NSCam::Type2Type;

/// Whether the tag is there.
template <typename T>
void look(const IMetadata& metadata, Tag<T> tag) {
  benchmark::DoNotOptimize(metadata.entryFor(tag.value).isEmpty());
}

/// Its first item.
template <typename T>
void take(const IMetadata& metadata, Tag<T> tag, std::size_t index = 0) {
  benchmark::DoNotOptimize(metadata.entryFor(tag.value).itemAt(index, Type2Type<T>{}));
}

template <typename T, typename... Items>
void put(IMetadata& metadata, Tag<T> tag, Items... items) {
  IMetadata::IEntry entry(tag.value);
  (entry.push_back(static_cast<T>(items), Type2Type<T>{}), ...);
  metadata.update(tag.value, std::move(entry));
}

template <typename T>
void putAll(IMetadata& metadata, Tag<T> tag, const std::vector<T>& items) {
  IMetadata::IEntry entry(tag.value);
  entry.push_back(items.data(), items.size(), Type2Type<T>{});
  metadata.update(tag.value, std::move(entry));
}

template <typename T>
void copyEntry(IMetadata& metadata, const IMetadata& from, Tag<T> tag) {
  metadata.update(tag.value, from.entryFor(tag.value));
}

/// The value, until the next one is read.
inline std::string_view getEvent(std::string_view key) {
  static std::string value;
  NSCam::ATMsEventMgr::getInstance().get(key, value);
  benchmark::DoNotOptimize(value.data());
  return value;
}

inline void setEvent(std::string_view key, std::string_view value) {
  NSCam::ATMsEventMgr::getInstance().set(key, value);
}

inline void getNumberProperty(const char* key) {
  benchmark::DoNotOptimize(property_get_int32(key, 0));
}

inline void getProperty(const char* key) {
  char value[PROPERTY_VALUE_MAX];
  benchmark::DoNotOptimize(property_get(key, value, ""));
}

}  // namespace bench
