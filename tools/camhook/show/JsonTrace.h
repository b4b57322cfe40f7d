// The trace as a JSON document, for programs.

#pragma once

#include <iosfwd>

#include "tools/camhook/input/Json.h"
#include "tools/camhook/show/TraceWriter.h"

namespace camhook {

/// An effect: its operation "op", then its fields.
Json jsonFromEffect(const host::Effect& effect);

/// A call of the trace.
Json jsonFromTrace(const CallTrace& trace);

class JsonTrace final : public TraceWriter {
 public:
  explicit JsonTrace(std::ostream& out);

  void write(const CallTrace& trace) override;
  void finish(const host::TextMap& eventStore) override;

 private:
  std::ostream& mOut;
  bool mHasCall = false;
};

}  // namespace camhook
