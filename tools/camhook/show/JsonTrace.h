// The trace as a JSON document, for programs.

#pragma once

#include <iosfwd>
#include <string>

#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/show/TraceWriter.h"

namespace camhook {

/// The value of a field of an effect.
Json jsonFromEffectValue(const host::Effect::Value& value);

/// A call of the trace.
void addCall(JsonLine& line, const CallTrace& trace);

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
