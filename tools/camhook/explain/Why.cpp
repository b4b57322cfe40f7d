#include "tools/camhook/explain/Why.h"
#include "tools/camhook/input/JsonLine.h"

#include <algorithm>
#include <set>
#include <utility>

#include "tools/camhook/explain/Candidates.h"
#include "tools/camhook/explain/HookSteps.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/MetadataJson.h"

namespace camhook {
namespace {

constexpr std::size_t kMostOutcomes = 100;    // listed of an input
constexpr std::size_t kMostReplays = 30'000;  // of pairs

AnyValue valueBefore(const CallTrace& trace, const Question& question) {
  for (const ContainerTrace& container : trace.containers) {
    if (container.name == question.container && container.before) {
      return AnyValue(container.before->entryFor(question.tag));
    }
  }
  return {};
}

std::vector<Explanation::Write> writesOf(const CallTrace& trace, const Question& question) {
  std::vector<Explanation::Write> writes;
  for (const auto& [access, container, step] : *trace.accesses) {
    const auto* write = std::get_if<host::MetadataWrite>(&access);
    if (write == nullptr || container.empty() || container != question.container) continue;
    if (write->tag == question.tag) writes.push_back({AnyValue(write->entry), step});
  }
  return writes;
}

/// Pairs of inputs: first both read by the step that wrote the tag last, then
/// both present, then the others.
struct PairOfInputs {
  std::size_t first;
  std::size_t second;
  int rank;
};

std::vector<PairOfInputs> pairsOf(const Explanation& explanation, const Reruns& reruns) {
  std::set<Input> read;
  if (!explanation.writes.empty()) read = reruns.readBy(explanation.writes.back().step.name);
  const auto& findings = explanation.findings;
  const auto rankOf = [&](const Explanation::Finding& finding) {
    if (read.contains(finding.input)) return 0;
    return finding.value.isAbsent() ? 2 : 1;
  };
  std::vector<PairOfInputs> pairs;
  for (std::size_t i = 0; i < findings.size(); ++i) {
    for (std::size_t k = i + 1; k < findings.size(); ++k) {
      pairs.push_back({i, k, std::max(rankOf(findings[i]), rankOf(findings[k]))});
    }
  }
  std::ranges::stable_sort(pairs, {}, &PairOfInputs::rank);
  return pairs;
}

/// Tries pairs of changes: likely values of all pairs of inputs first, then all
/// values. Of each pair of inputs the first pair of changes that gives the
/// wanted value is kept.
class PairSearch {
 public:
  PairSearch(Explanation& explanation, Reruns& reruns,
             const std::vector<Candidates::List>& candidates, const Wanted& wanted)
      : mExplanation(explanation), mReruns(reruns), mCandidates(candidates), mWanted(wanted) {}

  void search() {
    std::vector<PairOfInputs> pairs = pairsOf(mExplanation, mReruns);
    for (const auto& [first, second, rank] : pairs) {
      mExplanation.allPairs += mCandidates[first].values.size() * mCandidates[second].values.size();
    }
    mExplanation.together.emplace();
    for (const bool isLikely : {true, false}) {
      std::erase_if(pairs, [&](const PairOfInputs& pair) { return isFound(pair, isLikely); });
    }
  }

 private:
  bool isFound(const PairOfInputs& pair, bool isLikely) {
    const Candidates::List& firsts = mCandidates[pair.first];
    const Candidates::List& seconds = mCandidates[pair.second];
    for (std::size_t i = 0; i < (isLikely ? firsts.likely : firsts.values.size()); ++i) {
      for (std::size_t k = 0; k < (isLikely ? seconds.likely : seconds.values.size()); ++k) {
        if (!isLikely && i < firsts.likely && k < seconds.likely) continue;
        if (mExplanation.triedPairs == kMostReplays) return false;
        ++mExplanation.triedPairs;
        std::vector<Change> changes{{mExplanation.findings[pair.first].input, firsts.values[i]},
                                    {mExplanation.findings[pair.second].input, seconds.values[k]}};
        const std::optional<AnyValue> gives = mReruns.run(changes);
        if (!gives || !mWanted.isMetBy(*gives)) continue;
        mExplanation.together->push_back({std::move(changes), *gives});
        return true;
      }
    }
    return false;
  }

  Explanation& mExplanation;
  Reruns& mReruns;
  const std::vector<Candidates::List>& mCandidates;
  const Wanted& mWanted;
};

/// Tries each candidate by itself.
Explanation::Finding findingOf(const Input& input, const Candidates::List& candidates,
                               Reruns& reruns, const std::optional<Wanted>& wanted,
                               std::size_t& tried) {
  Explanation::Finding finding{.input = input, .value = reruns.valueOf(input)};
  std::vector<AnyValue> seen{reruns.answer()};
  for (const AnyValue& to : candidates.values) {
    const std::optional<AnyValue> gives = reruns.run({{input, to}});
    if (!gives) continue;
    ++tried;
    if (std::ranges::find(seen, *gives) != seen.end()) continue;
    finding.affects = true;
    if (!wanted && seen.size() > kMostOutcomes) break;
    seen.push_back(*gives);
    if (wanted && !wanted->isMetBy(*gives)) continue;
    finding.outcomes.push_back({to, *gives});
    if (finding.value.isAbsent()) finding.outcomes.back().step = reruns.writingStep({{input, to}});
  }
  return finding;
}

/// A read of a step as an input of the call; none if the call has no such
/// container.
std::optional<Input> inputFrom(const HookAccess& read, const Question& question) {
  const std::string key(read.member);
  if (read.group == "event") return Input{.kind = Input::Kind::event, .key = key};
  if (read.group == "property") return Input{.kind = Input::Kind::property, .key = key};
  if (read.group == "service") return {};
  const std::uint32_t tag = tagFromText(read.member);
  if (read.group == "static") {
    return Input{.kind = Input::Kind::statics,
                 .key = {},
                 .tag = tag,
                 .number = sensorOf(question.askedCall()).value_or(0)};
  }
  if (containerOf(question.askedCall(), read.group) == nullptr) return {};
  return Input{.kind = Input::Kind::metadata, .key = std::string(read.group), .tag = tag};
}

/// The steps of all hooks that write the tag, with this call's values of what
/// they read.
std::vector<Explanation::Writer> writersOf(const Question& question, const Reruns& reruns) {
  std::vector<Explanation::Writer> writers;
  for (const HookAccess& write : hookAccesses()) {
    if (!write.isWrite || write.group != question.container ||
        write.member != tagText(question.tag)) {
      continue;
    }
    writers.push_back({write.hook, write.step});
    auto& writer = writers.back();
    for (const HookAccess& read : hookAccesses()) {
      if (read.isWrite || read.hook != write.hook || read.step != write.step) continue;
      if (auto input = inputFrom(read, question)) {
        AnyValue value = reruns.valueOf(*input);
        writer.reads.emplace_back(*std::move(input), std::move(value));
      }
    }
  }
  return writers;
}

}  // namespace

Explanation explain(const Question& question, const std::optional<Wanted>& wanted) {
  Reruns reruns(question);
  const Candidates candidates(question, wanted ? wanted->value() : AnyValue());
  Explanation explanation{.before = valueBefore(reruns.trace(), question),
                          .after = reruns.answer(),
                          .writes = writesOf(reruns.trace(), question),
                          .burst = reruns.burst()};
  if (explanation.writes.empty()) explanation.writers = writersOf(question, reruns);
  std::vector<Candidates::List> lists;
  for (const Input& input : reruns.inputs()) {
    lists.push_back(candidates.forInput(input, reruns.valueOf(input)));
    explanation.findings.push_back(
        findingOf(input, lists.back(), reruns, wanted, explanation.tried));
  }
  const bool isFound = std::ranges::any_of(
      explanation.findings, [](const auto& finding) { return !finding.outcomes.empty(); });
  if (wanted && !isFound && !wanted->isMetBy(explanation.after)) {
    PairSearch(explanation, reruns, lists, *wanted).search();
  }
  return explanation;
}

void writeJson(std::ostream& out, const Question& question, const Explanation& explanation) {
  const bool isReturn = question.container.empty();
  Json document{{"call", question.call + 1},
                {"hook", nameOf(question.askedCall())},
                {"sensor", question.callDocument["sensor"]},
                {"container", isReturn ? Json() : Json(question.container)},
                {"tag", isReturn ? std::string("return") : tagText(question.tag)},
                {"before", explanation.before.json()},
                {"after", explanation.after.json()},
                {"writes", Json::List()},
                {"inputs", Json::List()}};
  for (const auto& [value, step] : explanation.writes) {
    document["writes"].push_back(
        {{"value", value.json()}, {"step", step.name}, {"file", step.file}, {"line", step.line}});
  }
  for (const Explanation::Finding& finding : explanation.findings) {
    Json input = jsonFromInput(finding.input, question);
    input["value"] = finding.value.json();
    input["counts"] = finding.affects;
    input["changes"] = Json::List();
    for (const auto& [to, gives, step] : finding.outcomes) {
      input["changes"].push_back({{"to", to.json()}, {"gives", gives.json()}});
    }
    document["inputs"].push_back(std::move(input));
  }
  if (explanation.together) {
    document["together"] = Json::List();
    for (const auto& [changes, gives] : *explanation.together) {
      Json::List list;
      for (const Change& change : changes) {
        list.push_back(jsonFromInput(change.input, question));
        list.back()["to"] = change.to.json();
      }
      document["together"].push_back({{"changes", std::move(list)}, {"gives", gives.json()}});
    }
  }
  writeJson(out, document);
}

}  // namespace camhook
