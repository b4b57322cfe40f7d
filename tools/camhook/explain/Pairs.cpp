// The first change of a pair is one with which the call takes another course, the second any of
// what the call then reads. Every input has its turn in every round; the search ends soon after it
// has found a pair.

#include "tools/camhook/explain/Pairs.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "tools/camhook/explain/Children.h"
#include "tools/camhook/show/Terminal.h"

namespace camhook {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kTime{10};
constexpr std::chrono::seconds kTimeForOthers{1};  // once a pair is found

class PairSearch {
 public:
  PairSearch(const Question& question, Investigation& investigation, const Asked& asked,
             const Json& wanted)
      : mQuestion(question), mInvestigation(investigation), mAsked(asked), mWanted(wanted) {}

  Json find() {
    Json together = Json::array();
    std::size_t tried = 0;
    std::set<std::set<std::string>> seen;  // most pairs are found from either side
    for (const std::vector<Change>& firsts : rounds()) {
      if (!together.empty() || isOver()) break;
      std::vector<ChildWork> works;
      works.reserve(firsts.size());
      for (const Change& first : firsts) works.emplace_back([&] { return pairsWith(first); });
      ProgressLine progress(works.size(), "pairs with change");
      std::size_t done = 0;
      const auto onDone = [&](const Json& made) {
        progress.advance(++done);
        // Children that are started from now on know it.
        if (!made["pairs"].empty()) mEnd = std::min(mEnd, Clock::now() + kTimeForOthers);
      };
      for (Json& result : inChildren(works, onDone)) {
        tried += result["tried"].get<std::size_t>();
        for (Json& pair : result["pairs"]) {
          if (seen.insert(inputsOf(pair)).second) together.push_back(std::move(pair));
        }
      }
    }
    return {{"together", std::move(together)}, {"tried", tried}};
  }

 private:
  [[nodiscard]] bool isOver() const { return Clock::now() >= mEnd; }

  std::optional<Reruns::Course> courseWith(const Change& change) {
    Reruns& reruns = mInvestigation.reruns();
    const std::optional<CallTrace> trace = reruns.run({change}, Reruns::Detail::accesses);
    if (!trace) return {};
    return reruns.courseOf(*trace);
  }

  /// Changes with which the call takes another course, one for each course. The first ones of all
  /// inputs, then the second ones, and so on.
  std::vector<std::vector<Change>> rounds() {
    std::vector<std::vector<Change>> rounds;
    const Reruns& reruns = mInvestigation.reruns();
    const std::string unchanged = reruns.courseOf(mInvestigation.study().trace).signature;
    for (const Input& input : mInvestigation.inputs()) {
      if (reruns.needsFreshProcess(input)) continue;
      std::set<std::string> seen{unchanged};
      for (const Json& to : mInvestigation.candidatesFor(input)) {
        if (isOver()) return rounds;
        const auto course = courseWith({input, to});
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
    const auto course = courseWith(first);
    for (const Input& input : course->inputs) {
      if (input == first.input || mInvestigation.reruns().needsFreshProcess(input)) continue;
      for (const Json& to : mInvestigation.candidatesFor(input)) {
        if (isOver()) break;
        const Change second{input, to};
        const auto trace = mInvestigation.reruns().run({first, second});
        if (!trace) continue;
        ++tried;
        if (Answer(*trace, mAsked).json() != mWanted) continue;
        pairs.push_back({{"changes", {jsonFrom(first), jsonFrom(second)}}, {"gives", mWanted}});
        break;
      }
    }
    return {{"pairs", std::move(pairs)}, {"tried", tried}};
  }

  [[nodiscard]] Json jsonFrom(const Change& change) const {
    Json json = jsonFromInput(change.input, mQuestion);
    json["to"] = change.to;
    return json;
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
  Investigation& mInvestigation;
  const Asked& mAsked;
  const Json& mWanted;
  Clock::time_point mEnd = Clock::now() + kTime;
};

}  // namespace

Json findPairs(const Question& question, Investigation& investigation, const Asked& asked,
               const Json& wanted) {
  return PairSearch(question, investigation, asked, wanted).find();
}

}  // namespace camhook
