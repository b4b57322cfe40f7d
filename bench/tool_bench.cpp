// Measures reading and replaying scenarios, and that the time for a call does not grow with the
// length of the scenario. Exits with 1 if a limit is exceeded.

#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>
#include <cstdio>
#include <ostream>
#include <streambuf>
#include <string>

#include "bench/Report.h"
#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/ScenarioReader.h"
#include "tools/camhook/run/Replay.h"
#include "tools/camhook/show/JsonTrace.h"
#include "tools/camhook/show/TextTrace.h"

namespace {

using namespace camhook;

/// The longest time for a part of the longer scenario, in percent of that for the shorter one.
constexpr double kMaxGrowth = 150;

/// Requests of about 300 bytes, every tenth a still capture.
std::string requests(std::size_t count) {
  std::string text = R"({"calls": [)";
  for (std::size_t i = 0; i < count; ++i) {
    const bool isStill = i % 10 == 9;
    text += i > 0 ? ",\n" : "\n";
    text += R"({"call": "updateRequestMeta", "sensor": 0, "requestNo": )" + std::to_string(i);
    text += R"(, "meta": {"ANDROID_CONTROL_CAPTURE_INTENT": )";
    text += isStill ? R"(2, "ANDROID_CONTROL_ENABLE_ZSL": 0)" : R"(1, "ANDROID_FLASH_MODE": 1)";
    text += R"(, "MTK_CONTROL_AE_TARGET_FPS_RANGE": [15, 30], "COM_HESK_CURRENTUIMODULE": 31)";
    text += R"(, "HESK_CONTROL_CURRENTMODE": )" + std::string(isStill ? R"("0x80001")" : "1");
    text += R"(, "HESK_CONTROL_VIDEO_HDR": 1, "HESK_CONTROL_ZOOM_ZOOM_RATIO": 1.5}})";
  }
  return text + "]}";
}

/// One request with `count` tags.
std::string tags(std::size_t count) {
  std::string text =
      R"({"calls": [{"call": "updateRequestMeta", "sensor": 0, "requestNo": 1, "meta": {)";
  for (std::size_t i = 0; i < count; ++i) {
    text += (i > 0 ? ", \"" : "\"") + hexadecimal(static_cast<std::uint32_t>(i));
    text += R"(": {"type": "int32", "items": [1]})";
  }
  return text + "}}]}";
}

/// Discards its output.
class NullBuffer final : public std::streambuf {
 public:
  NullBuffer() { empty(); }

 private:
  void empty() { setp(mBuffer.data(), mBuffer.data() + mBuffer.size()); }

  int_type overflow(int_type letter) override {
    empty();
    return traits_type::not_eof(letter);
  }

  std::array<char, 1U << 16U> mBuffer{};
};

void read(const std::string& text) {
  const ScenarioText scenario(text);
  for (std::size_t i = 0; i < scenario.callCount(); ++i) {
    benchmark::DoNotOptimize(scenario.call(i));
  }
}

template <typename Trace, typename... Options>
void replay(const std::string& text, Options... options) {
  const ScenarioText scenario(text);
  NullBuffer buffer;
  std::ostream out(&buffer);
  Trace trace(out, options...);
  Replay run(scenario.platform());
  for (std::size_t i = 0; i < scenario.callCount(); ++i) trace.write(run.run(scenario.call(i)));
  trace.finish(run.phone().eventStore.all());
}

void replayToText(const std::string& text) { replay<TextTrace>(text, Style(false), kAllLevels); }

void replayToJson(const std::string& text) { replay<JsonTrace>(text); }

/// An operation on a scenario of `parts` parts, and on one of ten times as many.
struct Row {
  const char* name;
  std::string (*scenario)(std::size_t parts);
  void (*run)(const std::string& scenario);
  std::size_t parts;
};

constexpr std::array kRows = {
    Row{"reading a call", requests, read, 1000},
    Row{"replaying a call to text", requests, replayToText, 1000},
    Row{"replaying a call to JSON", requests, replayToJson, 1000},
    Row{"reading a tag", tags, read, 4000},
};

std::string longerOf(const Row& row) { return std::string(row.name) + ", ten times as many"; }

void measure(benchmark::State& state, const Row& row, std::size_t parts) {
  const std::string text = row.scenario(parts);
  for ([[maybe_unused]] const auto iteration : state) row.run(text);
}

void registerRows() {
  for (const Row& row : kRows) {
    benchmark::RegisterBenchmark(row.name, measure, row, row.parts);
    benchmark::RegisterBenchmark(longerOf(row).c_str(), measure, row, 10 * row.parts);
  }
}

/// Prints the rows that ran. Returns true if all are within their limits.
bool report(const bench::FastestRuns& fastest) {
  bool areMet = true;
  for (const Row& row : kRows) {
    const auto* const few = fastest.find(row.name);
    const auto* const many = fastest.find(longerOf(row));
    if (few == nullptr || many == nullptr) continue;
    const double each = few->ns / static_cast<double>(row.parts);
    const double eachOfMany = many->ns / static_cast<double>(10 * row.parts);
    std::printf("%-34s %6.0f ns, of ten times as many %6.0f ns", row.name, each, eachOfMany);
    areMet &= bench::judge(100 * eachOfMany / each, kMaxGrowth, "%");
  }
  return areMet;
}

}  // namespace

int main(int argc, char** argv) { return bench::run(argc, argv, registerRows, report); }
