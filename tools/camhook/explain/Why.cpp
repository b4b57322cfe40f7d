// Three kinds of processes take part. This one runs no hook: the library keeps its updaters for
// good, so what is to happen from the scenario's first call on takes a child of it. One child has
// run the calls before the one in question, and starts children of its own, one for each input,
// which try its values one after another. What the library keeps of an input until the process ends
// takes a child of this process for every value.

#include "tools/camhook/explain/Why.h"

#include <algorithm>
#include <set>
#include <string>
#include <utility>

#include "tools/camhook/explain/Candidates.h"
#include "tools/camhook/explain/Children.h"
#include "tools/camhook/explain/Investigation.h"
#include "tools/camhook/explain/Pairs.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/show/Terminal.h"

namespace camhook {
namespace {

constexpr std::size_t kMostChanges = 100;  // that are told of an input

using Wanted = std::optional<Json>;  // as a trace has it; null for absent

/// What changes of one input come to, for one thing asked.
class Findings {
 public:
  Findings(const Json& after, const Wanted& want) : mWant(want) { mSeen.insert(after.dump()); }

  void add(const Json& to, const Json& gives) {
    const bool isNew = mSeen.insert(gives.dump()).second;
    mCounts |= isNew;
    if (isNew && mChanges.size() < kMostChanges && (!mWant || gives == *mWant)) {
      mChanges.push_back({{"to", to}, {"gives", gives}});
    }
  }

  [[nodiscard]] Json json() const { return {{"counts", mCounts}, {"changes", mChanges}}; }

 private:
  const Wanted& mWant;
  std::set<std::string> mSeen;
  bool mCounts = false;
  Json mChanges = Json::array();
};

/// The findings for each thing asked, and how many changes were "tried".
Json jsonFrom(const std::vector<Findings>& findings, std::size_t tried) {
  Json list = Json::array();
  for (const Findings& each : findings) list.push_back(each.json());
  return {{"findings", std::move(list)}, {"tried", tried}};
}

/// Tries the values of an input one after another.
Json sweep(Investigation& investigation, const Input& input, const std::vector<Asked>& asked,
           const Wanted& want) {
  std::vector<Answer> unchanged;
  std::vector<Findings> findings;
  for (const Asked& each : asked) {
    unchanged.emplace_back(investigation.study().trace, each);
    findings.emplace_back(unchanged.back().json(), want);
  }
  std::vector<Answer> last = unchanged;
  std::size_t tried = 0;
  for (const Json& to : investigation.candidatesFor(input)) {
    const std::optional<CallTrace> trace = investigation.reruns().run({{input, to}});
    if (!trace) continue;
    ++tried;
    for (std::size_t i = 0; i < asked.size(); ++i) {
      Answer answer(*trace, asked[i]);
      if (answer == unchanged[i] || answer == last[i]) continue;
      findings[i].add(to, answer.json());
      last[i] = std::move(answer);
    }
  }
  return jsonFrom(findings, tried);
}

/// Tries an input whose every value takes a process that has run nothing.
Json sweepFresh(const Question& question, const Input& input, const std::vector<Json>& candidates,
                const std::vector<Asked>& asked, const Json& after, const Wanted& want) {
  std::vector<ChildWork> works;
  works.reserve(candidates.size());
  for (const Json& to : candidates) {
    works.emplace_back([&]() -> Json {
      const std::optional<CallTrace> trace = Reruns::runOnce(question, {{input, to}});
      if (!trace) return nullptr;
      Json answers = Json::array();
      for (const Asked& each : asked) answers.push_back(Answer(*trace, each).json());
      return answers;
    });
  }
  ProgressLine progress(works.size(), "value");
  std::size_t done = 0;
  const std::vector<Json> results =
      inChildren(works, [&](const Json& /*made*/) { progress.advance(++done); });
  std::vector<Findings> findings;
  for (const Json& value : after) findings.emplace_back(value, want);
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    for (std::size_t k = 0; k < results[i].size(); ++k)
      findings[k].add(candidates[i], results[i][k]);
  }
  return jsonFrom(findings, candidates.size());
}

/// What of an input goes from the child that has found it to the process that has run nothing.
Json parcelOf(const Input& input) {
  return Json::array({static_cast<int>(input.kind), input.key, input.tag, input.number});
}

Input inputFrom(const Json& parcel) {
  return {.kind = static_cast<Input::Kind>(parcel[0].get<int>()),
          .key = parcel[1],
          .tag = parcel[2],
          .number = parcel[3]};
}

/// Puts what was found of every input into "results", but of those that take fresh processes.
void sweepAll(Investigation& investigation, const std::vector<Asked>& asked, const Wanted& want,
              Json& results) {
  constexpr std::size_t kCallsInOne = 50;  // a call that is left out is but one run
  const std::vector<Input>& inputs = investigation.inputs();
  std::vector<std::vector<std::size_t>> groups;
  for (std::size_t i = 0; i < inputs.size(); ++i) {
    if (investigation.reruns().needsFreshProcess(inputs[i])) continue;
    const bool isCall = inputs[i].kind == Input::Kind::call;
    // Calls stand behind all others.
    const bool joins = isCall && !groups.empty() && groups.back().size() < kCallsInOne &&
                       inputs[groups.back().front()].kind == Input::Kind::call;
    if (!joins) groups.emplace_back();
    groups.back().push_back(i);
  }
  std::vector<ChildWork> works;
  works.reserve(groups.size());
  for (const auto& group : groups) {
    works.emplace_back([&] {
      Json list = Json::array();
      for (const std::size_t i : group)
        list.push_back(sweep(investigation, inputs[i], asked, want));
      return list;
    });
  }
  ProgressLine progress(works.size(), "input");
  std::size_t done = 0;
  const std::vector<Json> made =
      inChildren(works, [&](const Json& /*made*/) { progress.advance(++done); });
  for (std::size_t g = 0; g < groups.size(); ++g) {
    for (std::size_t k = 0; k < groups[g].size(); ++k) results[groups[g][k]].update(made[g][k]);
  }
}

/// The value before the call, after it, and the writes to it.
Json historyOf(const CallTrace& trace, const Asked& asked) {
  Json before;
  for (const ContainerTrace& container : trace.containers) {
    if (container.name == asked.container && container.before) {
      before = entryOrNull(container.before->entryFor(asked.tag));
    }
  }
  Json writes = Json::array();
  for (const auto& [access, container, step] : *trace.accesses) {
    const auto* write = std::get_if<host::MetadataWrite>(&access);
    if (write == nullptr || container.empty() || container != asked.container ||
        write->tag != asked.tag) {
      continue;
    }
    writes.push_back({{"value", entryOrNull(write->entry)},
                      {"step", step.name},
                      {"file", step.file},
                      {"line", step.line}});
  }
  return {{"before", std::move(before)},
          {"after", Answer(trace, asked).json()},
          {"writes", std::move(writes)}};
}

/// In a child: the call's history for each thing asked, its inputs, and what was found of them.
Json investigate(const Question& question, const Candidates& candidates,
                 const std::vector<Asked>& asked, const Wanted& want) {
  Investigation investigation(question, candidates);
  Json histories = Json::array();
  for (const Asked& each : asked) {
    histories.push_back(historyOf(investigation.study().trace, each));
  }
  Json inputs = Json::array();
  Json results = Json::array();
  for (const Input& input : investigation.inputs()) {
    inputs.push_back(jsonFromInput(input, question));
    inputs.back()["value"] = investigation.valueOf(input);
    results.push_back({{"input", parcelOf(input)}});
  }
  sweepAll(investigation, asked, want, results);
  return {{"histories", std::move(histories)},
          {"inputs", std::move(inputs)},
          {"results", std::move(results)}};
}

bool hasChange(const Json& inputs) {
  return std::ranges::any_of(inputs, [](const Json& input) { return !input["changes"].empty(); });
}

/// As a trace would have it. Throws InputError.
Json wantedBy(const Json& want, const Asked& asked) {
  if (asked.container.empty()) return want;
  const Json entry = want.is_null() ? Json::array() : want;
  return entryOrNull(entryFromJson(asked.tag, entry, Place()["--want"]));
}

}  // namespace

std::vector<Explanation> explain(const Question& question, const std::vector<Asked>& asked,
                                 const std::optional<Json>& want) {
  Wanted wanted;
  if (want) wanted = wantedBy(*want, asked.front());
  const Candidates candidates(question);
  Json found = inChild([&] { return investigate(question, candidates, asked, wanted); });
  Json after = Json::array();
  for (const Json& history : found["histories"]) after.push_back(history["after"]);
  std::size_t tried = 0;
  for (std::size_t i = 0; i < found["results"].size(); ++i) {
    Json& result = found["results"][i];
    if (!result.contains("findings")) {
      const Input input = inputFrom(result["input"]);
      const auto values = candidates.forInput(input, found["inputs"][i]["value"]);
      result = sweepFresh(question, input, values, asked, after, wanted);
    }
    tried += result["tried"].get<std::size_t>();
  }

  std::vector<Explanation> explanations;
  for (std::size_t k = 0; k < asked.size(); ++k) {
    const bool isReturn = asked[k].container.empty();
    Json document{{"call", question.call + 1},
                  {"hook", question.callDocument()["call"]},
                  {"sensor", question.callDocument().value("sensor", Json())},
                  {"container", isReturn ? Json() : Json(asked[k].container)},
                  {"tag", isReturn ? "return" : tagText(asked[k].tag)}};
    document.update(found["histories"][k]);
    document["inputs"] = found["inputs"];
    for (std::size_t i = 0; i < found["inputs"].size(); ++i) {
      document["inputs"][i].update(found["results"][i]["findings"][k]);
    }
    explanations.push_back({std::move(document), tried});
  }
  Explanation& first = explanations.front();
  if (wanted && *wanted != first.document["after"] && !hasChange(first.document["inputs"])) {
    const Json pairs = inChild([&] {
      Investigation investigation(question, candidates);
      return findPairs(question, investigation, asked.front(), *wanted);
    });
    first.document["together"] = pairs["together"];
    first.triedPairs = pairs["tried"];
  }
  return explanations;
}

}  // namespace camhook
