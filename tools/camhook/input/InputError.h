// Faults of the input.

#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace camhook {

/// A fault at one place of a file.
struct Fault {
  std::size_t line = 0;  // from 1; 0: unknown
  std::size_t column = 0;
  std::string place = {};  // path in the document: "calls[3].meta"; empty: the document
  std::string problem = {};
};

/// The first faults of a file, and their number.
class Faults {
 public:
  static constexpr std::size_t kMaxShown = 20;
  static constexpr std::size_t kMaxColumns = 200;

  [[nodiscard]] bool isEmpty() const { return mCount == 0; }

  /// True if further faults are only counted.
  [[nodiscard]] bool isFull() const { return mShown.size() == kMaxShown; }

  void add(Fault fault);

  [[nodiscard]] const std::vector<Fault>& shown() const { return mShown; }

  /// A line for each fault in the order of the file: "FILE:12:9: calls[3].meta.FOO: unknown tag",
  /// and one with the number of further faults. `what` precedes the path. No line is wider than
  /// `kMaxColumns`.
  [[nodiscard]] std::string lines(std::string_view file, std::string_view what = "") const;

 private:
  std::vector<Fault> mShown;
  std::size_t mCount = 0;
};

/// The input cannot be used. `what()` has a line for each fault, with the file if it is known.
class InputError : public std::runtime_error {
 public:
  explicit InputError(const std::string& problem);
  explicit InputError(Faults faults, std::string_view file = {});

  [[nodiscard]] const Faults& faults() const { return mFaults; }

 private:
  Faults mFaults;
};

}  // namespace camhook
