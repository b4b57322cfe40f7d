// What reading a scenario and replaying it takes the tool, and that it takes as long for each call
// of a scenario ten times as long.

#pragma once

#include "bench/Report.h"

namespace bench {

void registerTool();

/// Prints the rows that ran. Returns whether all are within their targets.
bool reportTool(const Shortest& shortest);

}  // namespace bench
