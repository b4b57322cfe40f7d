// A trace as one self-contained HTML file: the text trace for browsers without scripts, and the
// data from which the page's scripts draw. The file loads nothing else.

#pragma once

#include <cstddef>
#include <iosfwd>
#include <sstream>
#include <string>
#include <string_view>

#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/ScenarioReader.h"
#include "tools/camhook/show/TextTrace.h"
#include "tools/camhook/show/TraceWriter.h"

namespace camhook {

class Page final : public TraceWriter {
 public:
  /// `scenario` is the replayed scenario and must outlive the page.
  Page(std::ostream& out, std::string_view title, const ScenarioText& scenario);

  void write(const CallTrace& trace) override;

  /// `decision` is the output of `camhook decide --json` for a call.
  void addDecision(std::size_t number, const Json& decision);

  void finish(const host::TextMap& eventStore) override;

 private:
  void addRectangles(const CallTrace& trace);
  void addDecoded(const CallTrace& trace);

  std::ostream& mOut;
  std::string mTitle;
  const ScenarioText& mScenario;
  std::ostringstream mText;
  TextTrace mTextTrace;  // writes to mText
  std::string mCalls;    // the JSON trace
  // Further data, by the number of the call.
  Json::Object mDecisions;
  Json::Object mRectangles;
  Json::Object mDecoded;
};

}  // namespace camhook
