// A call that has run once as it is: what it read, and how it runs when that is changed. Lives in a
// process in which nothing of the library has run before.

#pragma once

#include <cstddef>
#include <vector>

#include "tools/camhook/explain/Candidates.h"
#include "tools/camhook/explain/Input.h"
#include "tools/camhook/explain/Reruns.h"

namespace camhook {

class Investigation {
 public:
  /// Runs the scenario up to the call. What is handed in must outlive this.
  Investigation(const Question& question, const Candidates& candidates);

  [[nodiscard]] Reruns& reruns() { return mReruns; }
  [[nodiscard]] const Reruns::Study& study() const { return mStudy; }

  /// The call's arguments, what it read, and the calls on its sensor before it.
  [[nodiscard]] const std::vector<Input>& inputs() const { return mInputs; }

  /// What stands in an input's place at the start of the call.
  [[nodiscard]] Json valueOf(const Input& input) const;

  [[nodiscard]] std::vector<Json> candidatesFor(const Input& input) const;

 private:
  void addArguments();
  void addEarlierCalls();

  const Question& mQuestion;
  const Candidates& mCandidates;
  Reruns mReruns;
  Reruns::Study mStudy;
  std::vector<Input> mInputs;
};

}  // namespace camhook
