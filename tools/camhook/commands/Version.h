// The version of the tool. Without CLI11, because each commit compiles Version.cpp again.

#pragma once

namespace camhook {

/// "camhook 0.1.0", and the commit if it was built in a git checkout.
const char* version();

}  // namespace camhook
