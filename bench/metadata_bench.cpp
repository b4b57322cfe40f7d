// The metadata container beside std::map and std::unordered_map from tag to a vector of items, at
// 10, 60 and 200 entries of one int32: look up an item, replace an entry, copy the whole. The tags
// are visited in a random order that is the same for every row.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <random>
#include <unordered_map>
#include <vector>

#include "platform/IMetadata.h"

namespace {

using NSCam::IMetadata;
using NSCam::Type2Type;

/// Tags as requests have them: a few sections, close numbers inside each; `count` times 64 visits.
std::vector<std::uint32_t> tagsOf(std::size_t count) {
  std::vector<std::uint32_t> tags;
  for (std::uint32_t i = 0; i < count; ++i) tags.push_back(((i % 6) << 16U | 0x80000000U) + i / 6);
  return tags;
}

std::vector<std::uint32_t> visitsOf(const std::vector<std::uint32_t>& tags) {
  std::vector<std::uint32_t> visits;
  for (int i = 0; i < 64; ++i) visits.insert(visits.end(), tags.begin(), tags.end());
  std::shuffle(visits.begin(), visits.end(), std::mt19937(1));
  return visits;
}

struct Container {
  IMetadata metadata;

  void set(std::uint32_t tag, std::int32_t item) {
    IMetadata::IEntry entry(tag);
    entry.push_back(item, Type2Type<std::int32_t>{});
    metadata.update(tag, std::move(entry));
  }
  [[nodiscard]] std::int32_t get(std::uint32_t tag) const {
    return metadata.entryFor(tag).itemAt(0, Type2Type<std::int32_t>{});
  }
};

template <typename Map>
struct MapOf {
  Map map;

  void set(std::uint32_t tag, std::int32_t item) { map[tag].assign(1, item); }
  [[nodiscard]] std::int32_t get(std::uint32_t tag) const {
    const auto found = map.find(tag);
    return found != map.end() ? found->second.front() : 0;
  }
};

using OrderedMap = MapOf<std::map<std::uint32_t, std::vector<std::int32_t>>>;
using HashMap = MapOf<std::unordered_map<std::uint32_t, std::vector<std::int32_t>>>;

template <typename T>
T filled(const std::vector<std::uint32_t>& tags) {
  T container;
  for (const std::uint32_t tag : tags) container.set(tag, 1);
  return container;
}

template <typename T>
void get(benchmark::State& state) {
  const auto tags = tagsOf(static_cast<std::size_t>(state.range(0)));
  const auto visits = visitsOf(tags);
  const T container = filled<T>(tags);
  for ([[maybe_unused]] auto _ : state) {
    for (const std::uint32_t tag : visits) benchmark::DoNotOptimize(container.get(tag));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(visits.size()));
}

template <typename T>
void overwrite(benchmark::State& state) {
  const auto tags = tagsOf(static_cast<std::size_t>(state.range(0)));
  const auto visits = visitsOf(tags);
  T container = filled<T>(tags);
  std::int32_t item = 0;
  for ([[maybe_unused]] auto _ : state) {
    for (const std::uint32_t tag : visits) container.set(tag, ++item);
    benchmark::DoNotOptimize(container);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(visits.size()));
}

template <typename T>
void copy(benchmark::State& state) {
  const T container = filled<T>(tagsOf(static_cast<std::size_t>(state.range(0))));
  for ([[maybe_unused]] auto _ : state) {
    T copied(container);
    benchmark::DoNotOptimize(copied);
  }
}

#define FOR_EVERY_SIZE Arg(10)->Arg(60)->Arg(200)

BENCHMARK(get<Container>)->FOR_EVERY_SIZE;
BENCHMARK(get<OrderedMap>)->FOR_EVERY_SIZE;
BENCHMARK(get<HashMap>)->FOR_EVERY_SIZE;
BENCHMARK(overwrite<Container>)->FOR_EVERY_SIZE;
BENCHMARK(overwrite<OrderedMap>)->FOR_EVERY_SIZE;
BENCHMARK(overwrite<HashMap>)->FOR_EVERY_SIZE;
BENCHMARK(copy<Container>)->FOR_EVERY_SIZE;
BENCHMARK(copy<OrderedMap>)->FOR_EVERY_SIZE;
BENCHMARK(copy<HashMap>)->FOR_EVERY_SIZE;

}  // namespace
