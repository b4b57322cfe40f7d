// The trace for people: what each call changed, and by which step where the trace has that.

#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>

#include "tools/camhook/show/Terminal.h"
#include "tools/camhook/show/TraceWriter.h"

namespace camhook {

class TextTrace final : public TraceWriter {
 public:
  /// Which records are shown: none, or those of a level and above (debug, info, error).
  enum class Records { none, error, info, debug };

  TextTrace(std::ostream& out, Style style, Records records, std::size_t callCount);

  void write(const CallTrace& trace) override;
  void finish(const host::TextMap& eventStore) override;

 private:
  void writeTitle(const CallTrace& trace);
  void writeExtra(std::string_view name, const Json& value);
  void writeContainer(const CallTrace& trace, const ContainerTrace& container);
  void writeChanges(const Columns& changes, const Columns& steps);
  void writeState(const StateTrace& state);
  void writeEffects(const std::vector<host::Effect>& effects);
  void writeRecords(const CallTrace& trace);

  std::ostream& mOut;
  Style mStyle;
  Records mRecords;
  std::size_t mCallCount;
  std::size_t mCallNumber = 0;
};

}  // namespace camhook
