// Three kinds of processes take part. This one runs nothing: the library keeps its updaters for
// good, so what is to happen from the scenario's first call on takes a child of it. One child has
// run the calls before the one in question, and starts children of its own, one for each input,
// which try its values one after another. What the library keeps of an input until the process ends
// takes a child of this process for every value.

#include "tools/camhook/explain/Why.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tools/camhook/explain/Candidates.h"
#include "tools/camhook/explain/Children.h"
#include "tools/camhook/explain/Reruns.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/show/Terminal.h"

namespace camhook {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kMostChanges = 100;  // that are told of an input
constexpr std::chrono::seconds kTimeForPairs{10};

using Wanted = std::optional<Json>;  // as a trace has it; null for absent

Json entryJson(const Outcome& outcome) {
  return outcome.entry.isEmpty() ? Json() : jsonFromEntry(outcome.entry);
}

/// The arguments of the call, each number by itself.
std::vector<Input> argumentsOf(const Question& question) {
  std::vector<Input> inputs;
  const auto add = [&inputs](std::string place) {
    inputs.push_back({.kind = Input::Kind::argument, .key = std::move(place)});
  };
  for (const auto& [key, value] : question.callDocument().items()) {
    Call call = question.scenarioCall().call;
    if (key == "call" || containerOf(call, key) != nullptr) continue;
    if (key == "streams" || !value.is_structured()) add(key);
    if (!value.is_array()) continue;
    for (std::size_t i = 0; i < value.size(); ++i) {
      const std::string item = std::string(key).append("[").append(std::to_string(i)).append("]");
      if (!value[i].is_object()) add(item);
      if (!value[i].is_object()) continue;
      for (const auto& [member, number] : value[i].items())
        add(std::string(item).append(".").append(member));
    }
  }
  return inputs;
}

std::vector<Input> earlierCallsOf(const Question& question) {
  std::vector<Input> inputs;
  const auto sensor = sensorOf(question.scenarioCall().call);
  for (std::size_t i = 0; sensor && i < question.call; ++i) {
    if (sensorOf(question.scenario.calls[i].call) != sensor) continue;
    inputs.push_back(
        {.kind = Input::Kind::call, .key = {}, .tag = 0, .number = static_cast<std::int64_t>(i)});
  }
  return inputs;
}

/// What changes of one input come to.
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

  [[nodiscard]] Json json(std::size_t tried) const {
    return {{"counts", mCounts}, {"changes", mChanges}, {"tried", tried}};
  }

 private:
  const Wanted& mWant;
  std::set<std::string> mSeen;
  bool mCounts = false;
  Json mChanges = Json::array();
};

/// The child that has run the calls before the one in question.
class Investigation {
 public:
  Investigation(const Question& question, const Wanted& want)
      : mQuestion(question), mWant(want), mReruns(question), mCandidates(question) {}

  /// Runs the scenario as it is.
  void study() {
    mStudy = mReruns.study();
    mInputs = argumentsOf(mQuestion);
    mInputs.insert(mInputs.end(), mStudy.course.inputs.begin(), mStudy.course.inputs.end());
    for (Input& call : earlierCallsOf(mQuestion)) mInputs.push_back(std::move(call));
  }

  Json explain() {
    study();
    Json document{{"before", mStudy.before}, {"after", entryJson(mStudy.after)}};
    document["writes"] = Json::array();
    for (const auto& [value, step] : mStudy.writes) {
      document["writes"].push_back(
          {{"value", value}, {"step", step.name}, {"file", step.file}, {"line", step.line}});
    }
    document["inputs"] = Json::array();
    for (const Input& input : mInputs) document["inputs"].push_back(describe(input));
    tryInputs(document["inputs"]);
    return document;
  }

  /// Pairs of changes that give what is wanted: a first one with which the call takes another
  /// course, and any second one of what it then reads. Every input has its turn in every round;
  /// ends with the first round that finds a pair.
  Json findPairs() {
    study();
    mEndOfPairs = Clock::now() + kTimeForPairs;
    Json together = Json::array();
    std::size_t tried = 0;
    for (const std::vector<Change>& firsts : roundsOfChanges()) {
      if (!together.empty() || Clock::now() >= mEndOfPairs) break;
      std::vector<ChildWork> works;
      works.reserve(firsts.size());
      for (const Change& first : firsts) {
        works.emplace_back([this, &first] { return pairsWith(first); });
      }
      std::set<std::set<std::string>> seen;
      for (Json& result : inChildren(works)) {
        tried += result["tried"].get<std::size_t>();
        for (Json& pair : result["pairs"]) {
          // Most pairs are found from either side.
          if (seen.insert(inputsOf(pair)).second) together.push_back(std::move(pair));
        }
      }
    }
    return {{"together", std::move(together)}, {"tried", tried}};
  }

 private:
  Json valueFor(const Input& input) const {
    return valueOf(input, mQuestion, mStudy.events, mStudy.properties);
  }

  Json describe(const Input& input) const {
    Json json = jsonFromInput(input, mQuestion);
    json["value"] = valueFor(input);
    if (mReruns.needsFreshProcess(input)) {
      // For the process that has run nothing.
      json["fresh"] =
          Json::array({static_cast<int>(input.kind), input.key, input.tag, input.number});
    }
    return json;
  }

  Json sweep(const Input& input) {
    Findings findings(entryJson(mStudy.after), mWant);
    std::size_t tried = 0;
    std::string last = mStudy.after.signature;
    for (const Json& to : mCandidates.forInput(input, valueFor(input))) {
      const std::optional<Outcome> outcome = mReruns.run({{input, to}});
      if (!outcome) continue;
      ++tried;
      if (outcome->signature == last || outcome->signature == mStudy.after.signature) continue;
      last = outcome->signature;
      findings.add(to, entryJson(*outcome));
    }
    return findings.json(tried);
  }

  /// Tries all inputs but those that are left to the other process.
  void tryInputs(Json& described) {
    std::vector<ChildWork> works;
    std::vector<std::size_t> inputOf;
    std::vector<std::size_t> calls;
    for (std::size_t i = 0; i < mInputs.size(); ++i) {
      if (described[i].contains("fresh")) continue;
      if (mInputs[i].kind == Input::Kind::call) {
        calls.push_back(i);
        continue;
      }
      inputOf.push_back(i);
      works.emplace_back([this, i] { return sweep(mInputs[i]); });
    }
    // A call that is left out is one run: many go into one child.
    constexpr std::size_t kCallsInOne = 50;
    for (std::size_t from = 0; from < calls.size(); from += kCallsInOne) {
      const std::size_t to = std::min(from + kCallsInOne, calls.size());
      works.emplace_back([this, &calls, from, to] {
        Json list = Json::array();
        for (std::size_t i = from; i < to; ++i) list.push_back(sweep(mInputs[calls[i]]));
        return list;
      });
    }
    ProgressLine progress(works.size(), "input", std::chrono::seconds(1));
    std::size_t done = 0;
    std::vector<Json> results = inChildren(works, [&] { progress.advance(++done); });
    for (std::size_t i = 0; i < inputOf.size(); ++i) described[inputOf[i]].update(results[i]);
    std::size_t call = 0;
    for (std::size_t i = inputOf.size(); i < results.size(); ++i) {
      for (const Json& result : results[i]) described[calls[call++]].update(result);
    }
  }

  /// Changes with which the call takes another course, one for each course. The first ones of all
  /// inputs, then the second ones, and so on.
  std::vector<std::vector<Change>> roundsOfChanges() {
    std::vector<std::vector<Change>> rounds;
    for (const Input& input : mInputs) {
      if (mReruns.needsFreshProcess(input)) continue;
      std::set<std::string> seen{mStudy.course.signature};
      for (const Json& to : mCandidates.forInput(input, valueFor(input))) {
        if (Clock::now() >= mEndOfPairs) return rounds;
        const auto course = mReruns.courseWith({{input, to}});
        if (!course || !seen.insert(course->signature).second) continue;
        const std::size_t round = seen.size() - 2;
        if (round >= rounds.size()) rounds.resize(round + 1);
        rounds[round].push_back({input, to});
      }
    }
    return rounds;
  }

  /// Tries every value of what is read with `first`.
  Json pairsWith(const Change& first) {
    Json pairs = Json::array();
    std::size_t tried = 0;
    const auto course = mReruns.courseWith({first});
    for (const Input& input : course->inputs) {
      if (input == first.input || mReruns.needsFreshProcess(input)) continue;
      for (const Json& to : mCandidates.forInput(input, valueFor(input))) {
        if (Clock::now() >= mEndOfPairs) break;
        const Change second{input, to};
        const std::optional<Outcome> outcome = mReruns.run({first, second});
        if (!outcome) continue;
        ++tried;
        if (entryJson(*outcome) != *mWant) continue;
        Json changes = Json::array();
        for (const Change& change : {first, second}) {
          changes.push_back(jsonFromInput(change.input, mQuestion));
          changes.back()["to"] = change.to;
        }
        pairs.push_back({{"changes", std::move(changes)}, {"gives", *mWant}});
        break;
      }
    }
    return {{"pairs", std::move(pairs)}, {"tried", tried}};
  }

  static std::set<std::string> inputsOf(const Json& pair) {
    std::set<std::string> inputs;
    for (Json change : pair["changes"]) {
      change.erase("to");
      inputs.insert(change.dump());
    }
    return inputs;
  }

  const Question& mQuestion;
  const Wanted& mWant;
  Reruns mReruns;
  Candidates mCandidates;
  Reruns::Study mStudy;
  std::vector<Input> mInputs;
  Clock::time_point mEndOfPairs;
};

/// Tries an input whose every value takes a process that has run nothing.
Json sweepFresh(const Question& question, const Input& input, const Json& described,
                const Json& after, const Wanted& want) {
  const std::vector<Json> candidates = Candidates(question).forInput(input, described["value"]);
  std::vector<ChildWork> works;
  works.reserve(candidates.size());
  for (const Json& to : candidates) {
    works.emplace_back([&question, &input, &to]() -> Json {
      const std::optional<Outcome> outcome = Reruns::runOnce(question, {{input, to}});
      return outcome ? Json::array({entryJson(*outcome)}) : Json();
    });
  }
  ProgressLine progress(works.size(), "value", std::chrono::seconds(1));
  std::size_t done = 0;
  const std::vector<Json> results = inChildren(works, [&] { progress.advance(++done); });
  Findings findings(after, want);
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    if (!results[i].is_null()) findings.add(candidates[i], results[i].front());
  }
  return findings.json(candidates.size());
}

bool hasChange(const Json& inputs) {
  return std::ranges::any_of(inputs, [](const Json& input) { return !input["changes"].empty(); });
}

}  // namespace

Explanation explain(const Question& question, const std::optional<Json>& want) {
  Wanted wanted;
  if (want) {
    const Json entry = want->is_null() ? Json::array() : *want;
    const NSCam::IMetadata::IEntry items = entryFromJson(question.tag, entry, Place()["--want"]);
    wanted = items.isEmpty() ? Json() : jsonFromEntry(items);
  }
  Explanation explanation;
  Json& document = explanation.document;
  document = {{"call", question.call + 1},
              {"hook", question.callDocument()["call"]},
              {"sensor", question.callDocument().value("sensor", Json())},
              {"container", question.container},
              {"tag", tagText(question.tag)}};
  document.update(inChild([&] { return Investigation(question, wanted).explain(); }));
  for (Json& input : document["inputs"]) {
    if (const auto fresh = input.find("fresh"); fresh != input.end()) {
      const Input read{.kind = static_cast<Input::Kind>((*fresh)[0].get<int>()),
                       .key = (*fresh)[1],
                       .tag = (*fresh)[2],
                       .number = (*fresh)[3]};
      input.erase("fresh");
      input.update(sweepFresh(question, read, input, document["after"], wanted));
    }
    explanation.tried += input["tried"].get<std::size_t>();
    input.erase("tried");
  }
  if (wanted && *wanted != document["after"] && !hasChange(document["inputs"])) {
    const Json pairs = inChild([&] { return Investigation(question, wanted).findPairs(); });
    document["together"] = pairs["together"];
    explanation.triedPairs = pairs["tried"];
  }
  return explanation;
}

}  // namespace camhook
