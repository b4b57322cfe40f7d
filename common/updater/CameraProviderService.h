// What the maker's camera provider service says.

#pragma once

#include <cstdint>

namespace hesk {

/// The frame rate in frames a second that other makers' apps are held to; 0 where the service does
/// not answer. The service is looked up until it is there, then kept. Any thread.
std::int32_t providerFrameRateCap();

}  // namespace hesk
