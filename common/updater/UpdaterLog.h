// The log source of HeskParameterUpdater.

#pragma once

#include "common/log/Log.h"

namespace hesk {

inline constexpr log::Source kUpdaterSource{"HeskParameterUpdater",
                                            "common/HeskParameterUpdater.cpp"};

// Operations whose steps are in several files.
inline constexpr log::Operation kRequestOperation{kUpdaterSource, "updateRequestMeta"};
inline constexpr log::Operation kAppOperation{kUpdaterSource, "update3rdpartyAppControlMeta"};

}  // namespace hesk
