// What is wrong with the input, and where.

#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "tools/camhook/input/PlainText.h"

namespace camhook {

/// Something that is wrong at one place of a file.
struct Fault {
  std::size_t line = 0;  // from 1; 0: nobody knows
  std::size_t column = 0;
  std::string place = {};  // in the document: "calls[3].meta"; empty for the document itself
  std::string problem = {};
};

/// The first of the things that are wrong with a file, and how many there are.
class Faults {
 public:
  static constexpr std::size_t kMostShown = 20;
  static constexpr std::size_t kMostColumns = 200;

  [[nodiscard]] bool isEmpty() const { return mCount == 0; }

  /// Whether another one is merely counted.
  [[nodiscard]] bool isFull() const { return mShown.size() == kMostShown; }

  /// `fault` is left out where they are full.
  void add(Fault fault);

  [[nodiscard]] const std::vector<Fault>& shown() const { return mShown; }

  /// A line each, "FILE:12:9: calls[3].meta.FOO: unknown tag", in the order of the file, and one
  /// that says how many more there are. `what` stands behind the place in the file. None is wider
  /// than `kMostColumns`.
  [[nodiscard]] std::string lines(std::string_view file, std::string_view what = "") const;

 private:
  std::vector<Fault> mShown;
  std::size_t mCount = 0;
};

/// The input cannot be used. `what()` is a line for each thing that is wrong with it, the file in
/// front where it is known.
class InputError : public std::runtime_error {
 public:
  explicit InputError(const std::string& problem);
  explicit InputError(Faults faults, std::string_view file = {});

  [[nodiscard]] const Faults& faults() const { return mFaults; }

 private:
  Faults mFaults;
};

}  // namespace camhook
