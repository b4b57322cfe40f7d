// The readable trace: what each call changed, and by which step if the trace has steps.

#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "tools/camhook/show/Terminal.h"
#include "tools/camhook/show/TraceWriter.h"

namespace camhook {

/// The levels of log records: debug, info, error.
inline constexpr std::string_view kAllLevels = "DIE";

/// Stored traces are written without colour, with the records of all levels.
class TextTrace final : public TraceWriter {
 public:
  /// `levels` lists the levels of the records that are shown; it must outlive the trace. The trace
  /// begins with `about`, the description of the scenario.
  TextTrace(std::ostream& out, Style style, std::string_view levels, std::string_view about = "");

  void write(const CallTrace& trace) override;
  void finish(const host::TextMap& eventStore) override;

 private:
  void writeTitle(const CallTrace& trace);
  void writeExtra(std::string_view name, const Json& value);
  void writeContainer(const CallTrace& trace, const ContainerTrace& container);
  void addChange(Columns& columns, const ContainerTrace& container, std::uint32_t tag,
                 const std::vector<TagWrite>& writes) const;
  void writeState(const CallTrace& trace);
  void writeEffects(const std::vector<host::Effect>& effects);
  void writeRecords(const CallTrace& trace);
  void writeSection(std::string_view name, const Columns& columns);
  [[nodiscard]] std::string changeText(const std::string& before, const std::string& after) const;

  std::ostream& mOut;
  Style mStyle;
  std::string_view mLevels;
};

}  // namespace camhook
