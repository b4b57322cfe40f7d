#include "tools/camhook/explain/Investigation.h"

#include <string>
#include <utility>

namespace camhook {

Investigation::Investigation(const Question& question, const Candidates& candidates)
    : mQuestion(question), mCandidates(candidates), mReruns(question), mStudy(mReruns.study()) {
  addArguments();
  for (Input& input : mReruns.courseOf(mStudy.trace).inputs) mInputs.push_back(std::move(input));
  addEarlierCalls();
}

Json Investigation::valueOf(const Input& input) const {
  return camhook::valueOf(input, mQuestion, mStudy.events, mStudy.properties);
}

std::vector<Json> Investigation::candidatesFor(const Input& input) const {
  return mCandidates.forInput(input, valueOf(input));
}

/// Each number of them by itself.
void Investigation::addArguments() {
  const auto add = [this](std::string place) {
    mInputs.push_back({.kind = Input::Kind::argument, .key = std::move(place)});
  };
  Call call = mQuestion.scenarioCall().call;
  for (const auto& [key, value] : mQuestion.callDocument().items()) {
    if (key == "call" || containerOf(call, key) != nullptr) continue;
    if (key == "streams" || !value.is_structured()) add(key);
    for (std::size_t i = 0; value.is_array() && i < value.size(); ++i) {
      const std::string item = std::string(key).append("[").append(std::to_string(i)).append("]");
      if (!value[i].is_object()) add(item);
      if (!value[i].is_object()) continue;
      for (const auto& [member, number] : value[i].items()) {
        add(std::string(item).append(".").append(member));
      }
    }
  }
}

void Investigation::addEarlierCalls() {
  const auto sensor = sensorOf(mQuestion.scenarioCall().call);
  for (std::size_t i = 0; sensor && i < mQuestion.call; ++i) {
    if (sensorOf(mQuestion.scenario.calls[i].call) != sensor) continue;
    mInputs.push_back(
        {.kind = Input::Kind::call, .key = {}, .tag = 0, .number = static_cast<std::int64_t>(i)});
  }
}

}  // namespace camhook
