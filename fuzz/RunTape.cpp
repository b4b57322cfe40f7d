#include "fuzz/RunTape.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>
#include <variant>

#include "fuzz/CallTape.h"
#include "fuzz/PhoneTape.h"
#include "fuzz/Tape.h"

namespace fuzz {
namespace {

using camhook::Call;

constexpr std::size_t kMostCalls = 64;

/// A call of every kind.
const auto& emptyCalls() {
  static const auto kCalls = []<std::size_t... Kinds>(std::index_sequence<Kinds...>) {
    return std::array{Call(std::in_place_index<Kinds>)...};
  }
  (std::make_index_sequence<std::variant_size_v<Call>>{});
  return kCalls;
}

template <typename Tape>
void transfer(Tape& tape, Call& call, const CallFamily& family) {
  const auto known = std::ranges::find(family.kinds, call.index());
  auto place = static_cast<std::uint8_t>(known - family.kinds.begin());
  transfer(tape, place);
  const std::size_t kind = family.kinds[place % family.kinds.size()];
  if (kind != call.index()) call = emptyCalls().at(kind);
  std::visit([&](auto& concrete) { transfer(tape, concrete); }, call);
}

template <typename Tape>
void transferHead(Tape& tape, HookRun& run) {
  constexpr std::uint8_t kForms = 3;
  constexpr std::size_t kMostItems = std::size_t{1} << 20;
  constexpr std::size_t kMostTracedItems = std::size_t{1} << 12;  // a trace spells each one out

  auto form = static_cast<std::uint8_t>(run.trace);
  transferAll(tape, run.isDebugOpen, run.isErrorOpen, run.isInfoOpen, run.areTagsWanted, form);
  run.trace = static_cast<TraceForm>(form % kForms);
  tape.limitItems(run.trace == TraceForm::none ? kMostItems : kMostTracedItems);
  transfer(tape, run.scenario.platform);
}

}  // namespace

HookRun readRun(const CallFamily& family, std::span<const std::uint8_t> tape) {
  TapeReader reader(tape);
  HookRun run;
  transferHead(reader, run);
  std::vector<camhook::ScenarioCall>& calls = run.scenario.calls;
  while (reader.bytesLeft() > 0 && calls.size() < kMostCalls) {
    transfer(reader, calls.emplace_back().call, family);
  }
  return run;
}

std::vector<std::uint8_t> writeRun(const CallFamily& family, HookRun run) {
  TapeWriter writer;
  transferHead(writer, run);
  for (auto& [call, arguments] : run.scenario.calls) {
    if (std::ranges::find(family.kinds, call.index()) == family.kinds.end()) continue;
    transfer(writer, call, family);
  }
  return writer.tape();
}

}  // namespace fuzz
