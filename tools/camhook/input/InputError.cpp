#include "tools/camhook/input/InputError.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "tools/camhook/input/PlainText.h"

namespace camhook {
namespace {

/// A line of at most `Faults::kMaxColumns`.
std::string lineOf(std::string_view file, std::string_view what, const Fault& fault) {
  constexpr std::size_t kMaxOfFile = 90;
  constexpr std::size_t kMaxOfPlace = 80;
  std::string line = printable(file, kMaxOfFile);
  if (fault.line > 0) {
    if (!line.empty()) line += ':';
    line += std::to_string(fault.line) + ':' + std::to_string(fault.column);
  }
  if (!line.empty()) line += ": ";
  line += what;
  if (!fault.place.empty()) line += printable(fault.place, kMaxOfPlace) + ": ";
  return printable(line + fault.problem, Faults::kMaxColumns);
}

}  // namespace

void Faults::add(Fault fault) {
  ++mCount;
  if (mShown.size() < kMaxShown) mShown.push_back(std::move(fault));
}

std::string Faults::lines(std::string_view file, std::string_view what) const {
  std::vector<Fault> ordered = mShown;
  std::ranges::stable_sort(ordered, {},
                           [](const Fault& fault) { return std::tuple(fault.line, fault.column); });
  std::string text;
  for (const Fault& fault : ordered) {
    if (!text.empty()) text += '\n';
    text += lineOf(file, what, fault);
  }
  if (mCount > mShown.size()) {
    const std::string rest = "and " + std::to_string(mCount - mShown.size()) + " more";
    text += '\n' + lineOf(file, what, {.problem = rest});
  }
  return text;
}

InputError::InputError(const std::string& problem)
    : std::runtime_error(printable(problem, Faults::kMaxColumns)) {
  mFaults.add({.problem = problem});
}

InputError::InputError(Faults faults, std::string_view file)
    : std::runtime_error(faults.lines(file)), mFaults(std::move(faults)) {}

}  // namespace camhook
