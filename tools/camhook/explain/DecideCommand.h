// `camhook decide`: one decision on a sensor scenario, and the way to it.

#pragma once

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>

#include "platform/Geometry.h"
#include "tools/camhook/explain/Decision.h"
#include "tools/camhook/show/Terminal.h"

namespace camhook {

/// A stream configuration; what is not given is absent from its metadata.
struct DecideOptions {
  struct FrameRates {
    std::int32_t lower = 0;
    std::int32_t upper = 0;
  };

  std::string product;
  std::int32_t sensor = 0;
  bool video = false;
  std::string appType;
  std::string appName;
  std::optional<std::int32_t> eis;
  std::optional<std::int32_t> hfps;
  std::optional<FrameRates> fps;
  std::optional<std::int32_t> videoAlgo;
  std::optional<std::int32_t> uiModule;
  std::optional<std::int32_t> hdr;
  std::optional<std::int32_t> night;
  NSCam::MSize size;
};

/// Lets the library decide, on a phone made for it.
Decision decide(const DecideOptions& options);

void writeDecisionText(std::ostream& out, const Decision& decision, Style style);
void writeDecisionJson(std::ostream& out, const Decision& decision);

}  // namespace camhook
