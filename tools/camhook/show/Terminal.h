// What is different when a person looks on: colour, aligned columns, progress.

#pragma once

#include <chrono>
#include <cstddef>
#include <iosfwd>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace camhook {

/// Colours texts, or leaves them as they are, and knows how many columns a line has.
class Style {
 public:
  static constexpr std::size_t kAnyWidth = std::numeric_limits<std::size_t>::max();

  explicit Style(bool colour, std::size_t width = kAnyWidth) : mColour(colour), mWidth(width) {}

  enum class Colour { automatic, always, never };

  /// Sets whether standard output is coloured: `automatic`, the initial value, colours a terminal
  /// unless it is dumb or the environment sets NO_COLOR.
  static void choose(Colour colour);

  static Style forStandardOutput();

  [[nodiscard]] std::size_t width() const { return mWidth; }

  [[nodiscard]] std::string title(std::string_view text) const { return dress(text, "1"); }
  [[nodiscard]] std::string heading(std::string_view text) const { return dress(text, "36"); }
  [[nodiscard]] std::string faint(std::string_view text) const { return dress(text, "2"); }
  [[nodiscard]] std::string fresh(std::string_view text) const { return dress(text, "32"); }
  [[nodiscard]] std::string alarming(std::string_view text) const { return dress(text, "31"); }

 private:
  [[nodiscard]] std::string dress(std::string_view text, std::string_view code) const;

  bool mColour;
  std::size_t mWidth;
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

/// A line broken at blanks into lines of `width`; those after the first begin behind `hang` blanks.
std::string wrapped(const std::string& line, std::size_t width, std::size_t hang);

/// One line on a terminal's standard error that tells how far a long run is: "call 3 of 7 (42 %)".
/// Goes with this object.
class ProgressLine {
 public:
  /// Shows from a moment after the start, and only where standard output is not the same person's
  /// terminal.
  explicit ProgressLine(std::size_t total);
  /// Shows a second after the start, in front of what is then printed all at once.
  ProgressLine(std::size_t total, const char* what);
  ~ProgressLine();
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  void advance(std::size_t done);

 private:
  using Clock = std::chrono::steady_clock;

  std::size_t mTotal;
  const char* mWhat = "call";
  bool mEnabled;
  bool mShown = false;
  Clock::time_point mNext;
};

}  // namespace camhook
