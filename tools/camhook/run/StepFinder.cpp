#include "tools/camhook/run/StepFinder.h"

#include <algorithm>
#include <iostream>
#include <string_view>
#include <vector>

namespace camhook {
namespace {

/// Sources of helpers that all steps use to access the platform; their functions are not steps.
constexpr std::string_view kHelperSources[] = {"common/tags/",
                                               "common/log/",
                                               "common/Events.h",
                                               "common/Product.h",
                                               "common/updater/PlatformHandle.h",
                                               "common/updater/StaticMetadata.h"};

bool isInSteps(const Step& frame) {
  return frame.file.starts_with("common/") &&
         std::ranges::none_of(
             kHelperSources, [&](std::string_view start) { return frame.file.starts_with(start); });
}

/// A lambda, or the function that the compiler generates to call one by address.
bool isLambda(const Step& frame) {
  return frame.name.starts_with("operator()") || frame.name == "_FUN" || frame.name == "__invoke";
}

std::optional<Step> innermostStep(const std::vector<Step>& frames) {
  for (const Step& frame : frames) {
    if (!isInSteps(frame) || isLambda(frame)) continue;
    return frame.name.empty() || frame.line == 0 ? Step() : frame;
  }
  return {};
}

}  // namespace

Step StepFinder::find(std::span<void* const> returnAddresses) {
  for (const void* address : returnAddresses) {
    if (const std::optional<Step>& step = stepAt(address)) {
      if (*step != Step()) return *step;
      break;
    }
  }
  if (!mHasWarned) {
    mHasWarned = true;
    std::cerr << "camhook: some library code has no debug information; its steps are shown as ?\n";
  }
  return {};
}

const std::optional<Step>& StepFinder::stepAt(const void* returnAddress) {
  const auto [known, isNew] = mKnown.try_emplace(returnAddress);
  if (isNew) {
    const auto frames = framesOf(returnAddress);
    known->second = frames ? innermostStep(*frames) : Step();
  }
  return known->second;
}

}  // namespace camhook
