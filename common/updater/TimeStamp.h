// The local time as text, for the names of dumps.

#pragma once

#include <array>

namespace hesk {

/// "20210304050607" and a terminating zero, or an empty text.
using TimeStamp = std::array<char, 15>;

/// Returns the current local time; an empty text if it is not available. Any thread.
TimeStamp currentTimeStamp();

}  // namespace hesk
