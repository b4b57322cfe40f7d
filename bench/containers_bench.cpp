// The metadata container beside libcamera's and the standard library's.
//
// Keys are asked for in three ways: in a fixed order, which branch predictors learn and which
// flatters searches; in a random one; and once each behind a sweep of memory that leaves the caches
// cold.

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "bench/Adapters.h"
#include "bench/Cells.h"
#include "bench/Tables.h"

namespace bench {
namespace {

enum class Order { fixed, random, cold };

constexpr std::string_view nameOf(Order order) {
  switch (order) {
    case Order::fixed: return "fixed order";
    case Order::random: return "random order";
    case Order::cold: break;
  }
  return "cold";
}

/// As requests have them: some sections, close numbers inside each.
std::vector<std::uint32_t> tagsOf(std::size_t count) {
  std::vector<std::uint32_t> tags;
  tags.reserve(count);
  for (std::uint32_t i = 0; i < count; ++i) tags.push_back(((i % 6) << 16U | 0x80000000U) + i / 6);
  return tags;
}

/// Tags that no container has, in the same sections.
std::vector<std::uint32_t> missingTagsOf(std::size_t count) {
  std::vector<std::uint32_t> tags = tagsOf(count);
  for (std::uint32_t& tag : tags) tag += 0x1000;
  return tags;
}

/// The keys in the order in which they are asked for, the warm ones again and again.
template <typename Container>
std::vector<typename Container::Key> visitsOf(const std::vector<std::uint32_t>& tags, Order order) {
  constexpr std::size_t kWarmVisits = 12'000;  // more than a branch predictor learns by heart
  std::vector<std::uint32_t> visits;
  do {
    visits.insert(visits.end(), tags.begin(), tags.end());
  } while (order != Order::cold && visits.size() < kWarmVisits);
  if (order != Order::fixed) std::shuffle(visits.begin(), visits.end(), std::mt19937(1));
  std::vector<typename Container::Key> keys;
  keys.reserve(visits.size());
  for (const std::uint32_t tag : visits) keys.push_back(Container::keyOf(tag));
  return keys;
}

template <typename Container>
Container filled(const std::vector<std::uint32_t>& tags) {
  // The order of requests is not that of the tags.
  std::vector<std::uint32_t> shuffled(tags);
  std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(2));
  Container container;
  for (const std::uint32_t tag : shuffled) container.set(Container::keyOf(tag), 1);
  return container;
}

/// Brings the keys themselves into the caches: they are the caller's, not the container's.
template <typename Key>
void touch(const std::vector<Key>& keys) {
  for (const Key& key : keys) {
    if constexpr (std::is_pointer_v<Key>) {
      benchmark::DoNotOptimize(key->id());
    } else {
      benchmark::DoNotOptimize(key);
    }
  }
}

std::string rowOf(std::string_view operation, Order order, std::size_t count) {
  return std::string(operation) + ", " + std::string(nameOf(order)) + ", " + std::to_string(count);
}

Cache cacheOf(Order order) { return order == Order::cold ? Cache::cold : Cache::warm; }

/// Asks a container of `count` entries for tags in turn: `ask` takes the container and a key.
template <typename Container, typename Ask>
void addLookUp(const std::string& column, std::string_view operation,
               const std::vector<std::uint32_t>& asked, std::size_t count, Order order, Ask ask) {
  addCell({kContainerTable, rowOf(operation, order, count), column}, cacheOf(order),
          [=](Stopwatch& time) {
            const auto keys = visitsOf<Container>(asked, order);
            const Container container = filled<Container>(tagsOf(count));
            time(
                keys.size(),
                [&] {
                  for (const auto key : keys) benchmark::DoNotOptimize(ask(container, key));
                },
                [&] { touch(keys); });
          });
}

template <typename Container>
void addGetHit(const std::string& column, std::size_t count, Order order) {
  addLookUp<Container>(column, "get hit", tagsOf(count), count, order,
                       [](const Container& container, auto key) { return container.get(key); });
}

template <typename Container>
void addGetMiss(const std::string& column, std::size_t count, Order order) {
  addLookUp<Container>(column, "get miss", missingTagsOf(count), count, order,
                       [](const Container& container, auto key) { return container.has(key); });
}

template <typename Container>
void addOverwrite(const std::string& column, std::size_t count, Order order) {
  addCell({kContainerTable, rowOf("overwrite", order, count), column}, cacheOf(order),
          [=](Stopwatch& time) {
            const auto keys = visitsOf<Container>(tagsOf(count), order);
            Container container = filled<Container>(tagsOf(count));
            std::int32_t item = 0;
            time(
                keys.size(),
                [&] {
                  for (const auto key : keys) container.set(key, ++item);
                  benchmark::DoNotOptimize(container);
                },
                [&] { touch(keys); });
          });
}

template <typename Container>
void addBuild(const std::string& column, std::size_t count) {
  addCell({kContainerTable, "build, " + std::to_string(count), column}, Cache::warm,
          [=](Stopwatch& time) {
            const auto keys = visitsOf<Container>(tagsOf(count), Order::cold);
            time(1, [&] {
              Container container;
              for (const auto key : keys) container.set(key, 1);
              benchmark::DoNotOptimize(container);
            });
          });
}

template <typename Container>
void addCopy(const std::string& column, std::size_t count, Cache cache) {
  const std::string row = cache == Cache::warm ? "copy, " : "copy, cold, ";
  addCell({kContainerTable, row + std::to_string(count), column}, cache, [=](Stopwatch& time) {
    const Container container = filled<Container>(tagsOf(count));
    time(1, [&] {
      Container copied(container);
      benchmark::DoNotOptimize(copied);
    });
  });
}

/// Calls `add` for every container, ours first.
template <typename Add>
void forEveryContainer(Add add) {
  add.template operator()<Metadata>(kMetadataColumn);
  add.template operator()<ControlList>(kControlListColumn);
  add.template operator()<TypedControlList>("ControlList, typed");
  add.template operator()<OrderedMap>("map");
  add.template operator()<HashMap>("unordered_map");
}

}  // namespace

void addContainerCells() {
  for (const std::size_t count : {10U, 60U, 200U}) {
    for (const Order order : {Order::fixed, Order::random, Order::cold}) {
      forEveryContainer([&]<typename Container>(const std::string& column) {
        addGetHit<Container>(column, count, order);
      });
      forEveryContainer([&]<typename Container>(const std::string& column) {
        addGetMiss<Container>(column, count, order);
      });
      forEveryContainer([&]<typename Container>(const std::string& column) {
        addOverwrite<Container>(column, count, order);
      });
    }
    forEveryContainer(
        [&]<typename Container>(const std::string& column) { addBuild<Container>(column, count); });
    for (const Cache cache : {Cache::warm, Cache::cold}) {
      forEveryContainer([&]<typename Container>(const std::string& column) {
        addCopy<Container>(column, count, cache);
      });
    }
  }

  const auto beside = [](std::string text, std::string row, double times) {
    addTarget({.text = std::move(text) + " than ControlList",
               .cell = {kContainerTable, std::move(row), kControlListColumn},
               .kind = Target::Kind::atLeastTimes,
               .bound = times});
  };
  beside("get, 60 entries, fixed order: at least 4 times faster", "get hit, fixed order, 60", 4);
  beside("get, 60 entries, random order: at least 4 times faster", "get hit, random order, 60", 4);
  beside("get, 60 entries, cold: not slower", "get hit, cold, 60", 1);
  beside("overwrite, 60 entries, fixed order: at least 3 times faster",
         "overwrite, fixed order, 60", 3);
  beside("overwrite, 60 entries, random order: at least 3 times faster",
         "overwrite, random order, 60", 3);
  beside("copy, 60 entries: at least 30 times faster", "copy, 60", 30);
  addTarget({.text = "copy, 60 entries: at most 3 allocations",
             .cell = {kContainerTable, "copy, 60", kMetadataColumn},
             .kind = Target::Kind::atMostAllocations,
             .bound = 3});
}

}  // namespace bench
