// In a coverage build: writes the counters of processes that abort, such as those of death tests.

#include <csignal>

extern "C" void __gcov_dump();

namespace {

[[maybe_unused]] const auto kPrevious = std::signal(SIGABRT, [](int) { __gcov_dump(); });

}  // namespace
