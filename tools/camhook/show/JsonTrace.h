// The trace as a JSON document, for programs.

#pragma once

#include <iosfwd>
#include <string>

#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/show/TraceWriter.h"

namespace camhook {

/// What belongs to an effect, as the trace has it.
void addEffectValue(JsonLine& line, const host::Effect::Value& value);

/// An effect: its op, then what belongs to it.
std::string lineOfEffect(const host::Effect& effect);

/// A call of the trace.
void addCall(JsonLine& line, const CallTrace& trace);

/// An object from key to text.
void addTexts(JsonLine& line, const host::TextMap& texts);

class JsonTrace final : public TraceWriter {
 public:
  explicit JsonTrace(std::ostream& out);

  void write(const CallTrace& trace) override;
  void finish(const host::TextMap& eventStore) override;

 private:
  std::ostream& mOut;
  bool mHasCall = false;
  JsonLine mLine;
};

}  // namespace camhook
