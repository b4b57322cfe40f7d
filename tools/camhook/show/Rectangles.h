// The rectangles of a call that the page draws.

#pragma once

#include <string>
#include <vector>

#include "host/PhoneConfig.h"
#include "tools/camhook/run/CallTrace.h"

namespace camhook {

struct NamedRectangle {
  std::string name;
  NSCam::MRect rect;
};

/// Returns the crops and faces of a still capture, in the active array, or detected regions before
/// and after translation, in drawing order; nothing for other calls.
std::vector<NamedRectangle> rectanglesOf(const CallTrace& trace, const host::PhoneConfig& phone);

}  // namespace camhook
