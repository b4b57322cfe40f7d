// What is wrong with the input, and where.

#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>

namespace camhook {

/// The input cannot be used. `what()` is one line: "calls[3].meta.HESK_CONTROL_FOO: unknown tag".
class InputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A text for a message: control characters stand as "\u000a".
std::string printable(std::string_view text);

/// A place in a JSON document: a key or an index, and the place around it, which must outlive it.
class Place {
 public:
  Place() = default;  // the document itself

  [[nodiscard]] Place operator[](std::string_view key) const { return Place(this, key); }
  [[nodiscard]] Place operator[](std::size_t index) const { return Place(this, index); }

  /// "calls[3].meta"; empty for the document itself.
  [[nodiscard]] std::string text() const;

  [[noreturn]] void fail(const std::string& problem) const;

 private:
  using Step = std::variant<std::string_view, std::size_t>;

  Place(const Place* around, Step step) : mAround(around), mStep(step) {}

  const Place* mAround = nullptr;
  Step mStep;
};

}  // namespace camhook
