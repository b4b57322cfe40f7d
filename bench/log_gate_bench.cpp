// The closed log gate beside a call that tests one byte, which it cannot be faster than by much.

#include "bench/Cells.h"
#include "bench/Tables.h"
#include "common/log/Log.h"
#include "host/LogSink.h"

namespace bench {
namespace {

constexpr hesk::log::Source kSource{"HeskBench", "bench/log_gate_bench.cpp"};
constexpr hesk::log::Operation kOperation{kSource, "bench"};

constexpr std::size_t kCalls = 1000;

[[gnu::noinline]] bool isByteSet(const unsigned char* byte) { return (*byte & 0x80U) != 0; }

void timeCalls(Stopwatch& time) {
  const auto* byte = reinterpret_cast<const unsigned char*>(g_logInfoLv) + 6;
  time(kCalls, [&] {
    for (std::size_t call = 0; call < kCalls; ++call) {
      benchmark::DoNotOptimize(isByteSet(byte));
      benchmark::ClobberMemory();
    }
  });
}

void timeGates(Stopwatch& time) {
  host::LogSink::openLevels({});
  int value = 0;
  time(kCalls, [&] {
    for (std::size_t call = 0; call < kCalls; ++call) {
      HESK_LOGD(kOperation, "[%s] value %d", kOperation.name, value);
      benchmark::ClobberMemory();
    }
  });
}

}  // namespace

void addLogGateCells() {
  const CellName gate{kLogGateTable, "one record", "closed gate"};
  addCell({gate.table, gate.row, "call, one byte"}, Cache::warm, timeCalls);
  addCell(gate, Cache::warm, timeGates);
  addTarget({.text = "ns: the closed log gate, at most 2 above a call that tests one byte",
             .cell = gate,
             .kind = Target::Kind::atMostNsAbove,
             .bound = 2});
}

}  // namespace bench
