// Reads of the library as inputs that a scenario can change.

#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "host/Observer.h"
#include "tools/camhook/explain/Question.h"

namespace camhook {

class ReadInputs final : public host::Observer {
 public:
  /// `platform` is the scenario's; it must outlive this object.
  explicit ReadInputs(const Json& platform) : mPlatform(platform) {}

  void onAccess(const host::Access& access) override { add(access, {}); }

  /// `container` is the name of the container that metadata was read from; empty if the call did
  /// not receive the container.
  void add(const host::Access& access, std::string_view container);

  void add(const Input& input);

  /// The distinct inputs in the order of their first read.
  [[nodiscard]] const std::vector<Input>& inputs() const { return mInputs; }

 private:
  void addService(const std::string& place);

  const Json& mPlatform;
  std::vector<Input> mInputs;
  std::set<Input> mSeen;
};

}  // namespace camhook
