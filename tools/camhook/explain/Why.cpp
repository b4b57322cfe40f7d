#include "tools/camhook/explain/Why.h"

#include <algorithm>
#include <set>
#include <tuple>
#include <utility>

#include "tools/camhook/explain/Candidates.h"
#include "tools/camhook/explain/HookSteps.h"
#include "tools/camhook/input/MetadataJson.h"

namespace camhook {
namespace {

using Kind = Input::Kind;

constexpr std::size_t kMaxOutcomes = 100;    // limit for one input
constexpr std::size_t kMaxReplays = 30'000;  // limit for pairs

/// Tries each candidate by itself.
Explanation::Finding findingOf(const Input& input, const Json::List& candidates, Reruns& reruns,
                               const std::optional<Wanted>& wanted, std::size_t& tried) {
  Explanation::Finding finding{.input = input, .value = reruns.valueOf(input)};
  Json::List seen{reruns.answer()};
  for (const Json& to : candidates) {
    const std::vector<Change> changes{{input, to}};
    const auto gives = reruns.run(changes);
    if (!gives) continue;
    ++tried;
    if (std::ranges::find(seen, *gives) != seen.end()) continue;
    finding.affects = true;
    finding.affectsIfAbsent |= to.isNull();
    if (!wanted && seen.size() > kMaxOutcomes) break;
    seen.push_back(*gives);
    if (wanted && !wanted->isMetBy(*gives)) continue;
    finding.outcomes.push_back({changes, *gives});
    if (finding.value.isNull()) finding.outcomes.back().step = reruns.writingStep(changes);
  }
  return finding;
}

/// Pairs of indexes of findings, ordered by rank: 0 if the step that wrote the tag last reads both
/// inputs, 1 if both are present, 2 for the others.
std::vector<std::pair<std::size_t, std::size_t>> pairsOf(const Explanation& explanation,
                                                         const Reruns& reruns) {
  std::set<Input> read;
  if (!explanation.writes.empty()) read = reruns.readBy(explanation.writes.back().step.name);
  std::vector<int> ranks;
  std::vector<std::pair<std::size_t, std::size_t>> pairs;
  for (const Explanation::Finding& finding : explanation.findings) {
    for (std::size_t i = 0; i < ranks.size(); ++i) pairs.emplace_back(i, ranks.size());
    ranks.push_back(read.contains(finding.input) ? 0 : finding.value.isNull() ? 2 : 1);
  }
  std::ranges::sort(pairs, {}, [&](const auto& pair) {
    return std::tuple(std::max(ranks[pair.first], ranks[pair.second]), pair);
  });
  return pairs;
}

/// Calls `isMet` with pairs of values until it returns true: pairs of likely values, or all others.
bool findPair(const Candidates::List& first, const Candidates::List& second, bool isLikely,
              auto isMet) {
  for (std::size_t i = 0; i < (isLikely ? first.likely : first.values.size()); ++i) {
    for (std::size_t k = 0; k < (isLikely ? second.likely : second.values.size()); ++k) {
      if (!isLikely && i < first.likely && k < second.likely) continue;
      if (isMet(first.values[i], second.values[k])) return true;
    }
  }
  return false;
}

/// Tries pairs of changes: likely values of all pairs of inputs first, then all values. For each
/// pair of inputs, keeps the first pair of changes that gives the wanted value.
void findPairs(Explanation& explanation, Reruns& reruns,
               const std::vector<Candidates::List>& candidates, const Wanted& wanted) {
  auto& found = explanation.pairs.emplace();
  auto pairs = pairsOf(explanation, reruns);
  for (const auto& [first, second] : pairs) {
    explanation.allPairs += candidates[first].values.size() * candidates[second].values.size();
  }
  for (const bool isLikely : {true, false}) {
    std::erase_if(pairs, [&](const auto& pair) {
      const auto isMet = [&](const Json& to, const Json& other) {
        if (explanation.triedPairs == kMaxReplays) return false;
        ++explanation.triedPairs;
        std::vector<Change> changes{{explanation.findings[pair.first].input, to},
                                    {explanation.findings[pair.second].input, other}};
        const auto gives = reruns.run(changes);
        if (!gives || !wanted.isMetBy(*gives)) return false;
        found.push_back({std::move(changes), *gives});
        return true;
      };
      return findPair(candidates[pair.first], candidates[pair.second], isLikely, isMet);
    });
  }
}

/// The input of the call that a step reads; nullopt if the call has no such container.
std::optional<Input> inputFrom(const HookAccess& read, const Question& question) {
  const std::string group(read.group);
  const std::string key(read.member);
  if (group == "event") return Input{.kind = Kind::event, .key = key};
  if (group == "property") return Input{.kind = Kind::property, .key = key};
  if (group == "static") {
    const std::int32_t device = sensorOf(question.askedCall()).value_or(0);
    return Input{.kind = Kind::statics, .tag = tagFromText(key), .number = device};
  }
  if (containerOf(question.askedCall(), group) == nullptr) return {};
  return Input{.kind = Kind::metadata, .key = group, .tag = tagFromText(key)};
}

/// The steps of all hooks that write the tag, with the inputs that they read and the values of
/// these in this call.
std::vector<Explanation::Writer> writersOf(const Question& question, const Reruns& reruns) {
  std::vector<Explanation::Writer> writers;
  for (const HookAccess& write : kHookAccesses) {
    if (!write.isWrite || write.group != question.container ||
        write.member != tagText(question.tag)) {
      continue;
    }
    auto& writer = writers.emplace_back(Explanation::Writer{write.hook, write.step});
    for (const HookAccess& read : kHookAccesses) {
      if (read.isWrite || read.hook != write.hook || read.step != write.step) continue;
      if (const auto input = inputFrom(read, question)) {
        writer.reads.push_back({.input = *input, .value = reruns.valueOf(*input)});
      }
    }
  }
  return writers;
}

}  // namespace

Explanation explain(const Question& question, const std::optional<Wanted>& wanted) {
  Reruns reruns(question);
  const Candidates candidates(question, wanted ? wanted->value() : Json());
  Explanation explanation{.before = reruns.before(),
                          .after = reruns.answer(),
                          .writes = reruns.writes(),
                          .burst = reruns.burst()};
  if (explanation.writes.empty()) explanation.writers = writersOf(question, reruns);
  std::vector<Candidates::List> lists;
  for (const Input& input : reruns.inputs()) {
    if (question.fixed.contains(input)) continue;
    lists.push_back(candidates.forInput(input, reruns.valueOf(input)));
    explanation.findings.push_back(
        findingOf(input, lists.back().values, reruns, wanted, explanation.tried));
  }
  const auto hasNone = [](const auto& finding) { return finding.outcomes.empty(); };
  if (wanted && !wanted->isMetBy(explanation.after) &&
      std::ranges::all_of(explanation.findings, hasNone)) {
    findPairs(explanation, reruns, lists, *wanted);
  }
  return explanation;
}

Json jsonFrom(const Question& question, const Explanation& explanation) {
  const bool isReturn = question.container.empty();
  Json document{{"call", question.call + 1},
                {"hook", nameOf(question.askedCall())},
                {"sensor", question.arguments["sensor"]},
                {"container", isReturn ? Json() : Json(question.container)},
                {"tag", isReturn ? std::string("return") : tagText(question.tag)},
                {"before", explanation.before},
                {"after", explanation.after},
                {"writes", Json::List()},
                {"inputs", Json::List()}};
  for (const auto& [value, step] : explanation.writes) {
    document["writes"].push_back(
        {{"value", value}, {"step", step.name}, {"file", step.file}, {"line", step.line}});
  }
  for (const auto& [input, value, affects, affectsIfAbsent, outcomes] : explanation.findings) {
    Json json = jsonFromInput(input, question);
    json["value"] = value;
    json["counts"] = affects;
    json["changes"] = Json::List();
    for (const auto& [changes, gives, step] : outcomes) {
      json["changes"].push_back({{"to", changes[0].to}, {"gives", gives}});
    }
    document["inputs"].push_back(std::move(json));
  }
  if (explanation.pairs) {
    document["together"] = Json::List();
    for (const auto& [changes, gives, step] : *explanation.pairs) {
      Json::List list;
      for (const auto& [input, to] : changes) {
        list.push_back(jsonFromInput(input, question));
        list.back()["to"] = to;
      }
      document["together"].push_back({{"changes", std::move(list)}, {"gives", gives}});
    }
  }
  return document;
}

}  // namespace camhook
