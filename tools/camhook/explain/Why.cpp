#include "tools/camhook/explain/Why.h"
#include "tools/camhook/input/JsonLine.h"

#include <algorithm>
#include <set>
#include <utility>

#include "tools/camhook/explain/Candidates.h"
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

/// The wanted value as the tag would have it. Throws InputError.
AnyValue wantedValue(const Json& want, const Question& question) {
  if (question.container.empty() || want.isNull()) return AnyValue(want);
  return AnyValue(entryFromJson(question.tag, want, "--want"));
}

/// Pairs of inputs: first both read by the step that wrote the tag last, then both present, then
/// the others.
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

/// Tries pairs of changes: likely values of all pairs of inputs first, then all values. Of each
/// pair of inputs the first pair of changes that gives the wanted value is kept.
void findPairs(Explanation& explanation, Reruns& reruns,
               const std::vector<Candidates::List>& candidates, const AnyValue& wanted) {
  auto& found = explanation.together.emplace();
  std::vector<PairOfInputs> pairs = pairsOf(explanation, reruns);
  const auto search = [&](const PairOfInputs& pair, bool isLikely) {
    const Candidates::List& firsts = candidates[pair.first];
    const Candidates::List& seconds = candidates[pair.second];
    for (std::size_t i = 0; i < (isLikely ? firsts.likely : firsts.values.size()); ++i) {
      for (std::size_t k = 0; k < (isLikely ? seconds.likely : seconds.values.size()); ++k) {
        if (!isLikely && i < firsts.likely && k < seconds.likely) continue;
        if (explanation.triedPairs == kMostReplays) return false;
        ++explanation.triedPairs;
        std::vector<Change> changes{{explanation.findings[pair.first].input, firsts.values[i]},
                                    {explanation.findings[pair.second].input, seconds.values[k]}};
        if (reruns.run(changes) != wanted) continue;
        found.push_back(std::move(changes));
        return true;
      }
    }
    return false;
  };
  for (const bool isLikely : {true, false}) {
    std::erase_if(pairs, [&](const PairOfInputs& pair) { return search(pair, isLikely); });
  }
}

}  // namespace

Explanation explain(const Question& question, const std::optional<Json>& want) {
  std::optional<AnyValue> wanted;
  if (want) wanted = wantedValue(*want, question);
  Reruns reruns(question);
  const Candidates candidates(question, wanted.value_or(AnyValue()));
  Explanation explanation{.before = valueBefore(reruns.trace(), question),
                          .after = reruns.answer(),
                          .wanted = wanted,
                          .writes = writesOf(reruns.trace(), question)};
  std::vector<Candidates::List> lists;
  bool isFound = false;
  for (const Input& input : reruns.inputs()) {
    auto& finding = explanation.findings.emplace_back(input, reruns.valueOf(input));
    const Candidates::List& list = lists.emplace_back(candidates.forInput(input, finding.value));
    for (const AnyValue& to : list.values) {
      const std::optional<AnyValue> gives = reruns.run({{input, to}});
      if (!gives) continue;
      ++explanation.tried;
      if (*gives == explanation.after) continue;
      finding.affects = true;
      if (wanted && *gives != *wanted) continue;
      if (finding.outcomes.size() == kMostOutcomes ||
          std::ranges::find(finding.outcomes, *gives, &Explanation::Outcome::gives) !=
              finding.outcomes.end()) {
        continue;
      }
      finding.outcomes.push_back({to, *gives});
      isFound = true;
    }
  }
  if (wanted && *wanted != explanation.after && !isFound) {
    findPairs(explanation, reruns, lists, *wanted);
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
    for (const auto& [to, gives] : finding.outcomes) {
      input["changes"].push_back({{"to", to.json()}, {"gives", gives.json()}});
    }
    document["inputs"].push_back(std::move(input));
  }
  if (explanation.together) {
    document["together"] = Json::List();
    for (const std::vector<Change>& changes : *explanation.together) {
      Json::List list;
      for (const Change& change : changes) {
        list.push_back(jsonFromInput(change.input, question));
        list.back()["to"] = change.to.json();
      }
      document["together"].push_back(
          {{"changes", std::move(list)}, {"gives", explanation.wanted->json()}});
    }
  }
  writeJson(out, document);
}

}  // namespace camhook
