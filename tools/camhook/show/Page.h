// A trace as one file that a browser shows: every call as plain HTML, the data that its scripts
// draw pictures of, and nothing that is fetched.

#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>

#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/ScenarioReader.h"
#include "tools/camhook/show/Html.h"
#include "tools/camhook/show/TraceWriter.h"

namespace camhook {

/// The calls stand in the page as they come, the data behind the last.
class Page final : public TraceWriter {
 public:
  /// The scenario is the one that is replayed, and must outlive this.
  Page(std::ostream& out, std::string_view title, const ScenarioText& scenario);

  void write(const CallTrace& trace) override;

  /// How the sensor scenario of a call came about, as `camhook decide --json` has it.
  void addDecision(std::size_t number, const Json& decision);

  void finish(const host::TextMap& eventStore) override;

 private:
  std::ostream& mOut;
  Html mHtml;
  const ScenarioText& mScenario;
  std::string mCalls;  // of the JSON trace
  std::string mDecisions;
};

/// The same of the later of two JSON traces, with what differs from the other marked.
void writeDifferencePage(std::ostream& out, std::string_view title, const Json& old,
                         const Json& fresh, bool withRecords);

}  // namespace camhook
