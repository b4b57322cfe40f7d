// Which build of the tool this is.

#pragma once

namespace camhook {

/// "camhook 0.1.0", and the commit that it was built from where git knows it.
const char* version();

}  // namespace camhook
