// Colour and aligned columns of texts for people.

#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace camhook {

/// Colours texts, or leaves them as they are.
class Style {
 public:
  explicit Style(bool colour) : mColour(colour) {}

  enum class Colour { automatic, always, never };

  /// Sets whether standard output is coloured: `automatic`, the initial value, colours a terminal
  /// unless it is dumb or the environment sets NO_COLOR.
  static void choose(Colour colour);

  static Style forStandardOutput();

  [[nodiscard]] std::string title(std::string_view text) const { return dress(text, "1"); }
  [[nodiscard]] std::string heading(std::string_view text) const { return dress(text, "36"); }
  [[nodiscard]] std::string faint(std::string_view text) const { return dress(text, "2"); }
  [[nodiscard]] std::string fresh(std::string_view text) const { return dress(text, "32"); }
  [[nodiscard]] std::string alarming(std::string_view text) const { return dress(text, "31"); }

 private:
  [[nodiscard]] std::string dress(std::string_view text, std::string_view code) const;

  bool mColour;
};

/// Rows of cells that line up; the last cell of a row is not padded.
class Columns {
 public:
  /// The first column has at least `firstWidth`, so that a row seldom moves the others.
  explicit Columns(std::size_t firstWidth = 0) : mFirstWidth(firstWidth) {}

  void add(std::vector<std::string> row) { mRows.push_back(std::move(row)); }
  [[nodiscard]] bool isEmpty() const { return mRows.empty(); }

  /// The rows, each a line.
  [[nodiscard]] std::vector<std::string> lines() const;

  /// Writes the rows behind a margin of `indent` blanks.
  void write(std::ostream& out, std::size_t indent) const;

 private:
  std::size_t mFirstWidth;
  std::vector<std::vector<std::string>> mRows;
};

/// The columns that a text takes on a terminal: code points, without colour codes.
std::size_t displayWidth(std::string_view text);

}  // namespace camhook
