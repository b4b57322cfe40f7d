// Colour and aligned columns for the terminal.

#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace camhook {

/// Colours texts, or returns them unchanged.
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

/// Rows of cells in aligned columns; the last cell of a row is not padded.
class Columns {
 public:
  /// `firstWidth` is the least width of the first column. Cells wider than `maxWidth` do not widen
  /// their column.
  explicit Columns(std::size_t firstWidth = 0, std::size_t maxWidth = std::string::npos)
      : mFirstWidth(firstWidth), mMaxWidth(maxWidth) {}

  void add(std::vector<std::string> row) { mRows.push_back(std::move(row)); }
  [[nodiscard]] bool isEmpty() const { return mRows.empty(); }

  /// Writes the rows, indented by `indent` spaces.
  void write(std::ostream& out, std::size_t indent) const;

 private:
  std::size_t mFirstWidth;
  std::size_t mMaxWidth;
  std::vector<std::vector<std::string>> mRows;
};

/// The width of a text on a terminal: its code points, without colour codes.
std::size_t displayWidth(std::string_view text);

}  // namespace camhook
