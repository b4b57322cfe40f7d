// The trace as a JSON document, for programs.

#pragma once

#include <iosfwd>

#include "tools/camhook/show/TraceWriter.h"

namespace camhook {

/// The long form of an effect: its op, then what belongs to it.
Json jsonFromEffect(const host::Effect& effect);

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
