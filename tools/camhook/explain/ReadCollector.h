// What the library reads, as inputs that a scenario can change.

#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "host/Observer.h"
#include "tools/camhook/explain/Input.h"

namespace camhook {

class ReadCollector final : public host::Observer {
 public:
  /// `question` must outlive this.
  explicit ReadCollector(const Question& question) : mQuestion(question) {}

  void onAccess(const host::Access& access) override { add(access, {}); }

  /// `container` is the one that metadata was read from; empty for one that no call was handed.
  void add(const host::Access& access, std::string_view container);

  void keep(const Input& input);

  std::vector<Input> inputs;  // each once, in the order of the first read

 private:
  void keepPlace(std::string place, std::int64_t device = 0);
  void keepService(const std::string& place);

  const Question& mQuestion;
  std::set<Input> mSeen;
};

}  // namespace camhook
