// The trace for people: what each call changed, and by which step where the trace has that.

#pragma once

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "tools/camhook/show/Changes.h"
#include "tools/camhook/show/Terminal.h"
#include "tools/camhook/show/TraceWriter.h"

namespace camhook {

/// Without colour, of any width and with the records of every level it is what is stored beside a
/// scenario.
class TextTrace final : public TraceWriter {
 public:
  /// Which records are shown: none, or those of a level and above (debug, info, error).
  enum class Records { none, error, info, debug };

  /// Begins with what the scenario says about itself.
  TextTrace(std::ostream& out, Style style, Records records, std::string_view about = "");

  void write(const CallTrace& trace) override;
  void finish(const host::TextMap& eventStore) override;

 private:
  /// A line of what changed, the step behind it, and what its items mean.
  struct Line {
    std::vector<std::string> cells;
    std::vector<std::string> step;  // empty: not asked for
    std::vector<std::string> decoded;
  };

  void writeLine(const std::string& line, std::size_t hang);
  void writeLines(const Columns& columns, std::size_t hang);
  void writeTitle(const CallTrace& trace);
  void writeExtra(std::string_view name, const Json& value);
  [[nodiscard]] std::string turned(const ValueChange& change) const;
  void addWrites(std::vector<Line>& lines, const ValueChange& change) const;
  void writeContainer(const CallTrace& trace, const ContainerTrace& container);
  void writeChanges(const std::vector<Line>& lines);
  void writeState(const StateTrace& state);
  void writeEffects(const std::vector<host::Effect>& effects);
  void writeRecords(const CallTrace& trace);

  std::ostream& mOut;
  Style mStyle;
  Records mRecords;
};

}  // namespace camhook
