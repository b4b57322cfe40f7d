// A call as the page has it, readable without any script: what it changed, did and logged.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tools/camhook/input/Json.h"
#include "tools/camhook/run/Replay.h"
#include "tools/camhook/show/Html.h"
#include "tools/camhook/show/TraceDiff.h"

namespace camhook {

struct PageCell {
  std::string text;
  std::string aside;  // said less loudly behind it
};

struct PageRow {
  std::vector<PageCell>
      cells;  // what the row is about, then the rest; a single one takes the width
  HtmlAttribute attribute = {};  // by which scripts and styles know it
};

struct PageTable {
  std::string_view kind;  // "container", "state", "effects", ...
  std::string caption;
  std::string note = {};  // behind the caption
  std::vector<std::string_view> head = {};
  std::vector<PageRow> rows = {};
  bool isFolded = false;  // to its caption, until somebody wants to see it
};

struct PageCall {
  std::size_t number = 0;  // in the scenario, from 1; 0: only the old trace has the call
  std::string title;
  std::string hook;
  std::string sensor;  // empty: none
  std::size_t errors = 0;
  std::size_t effects = 0;
  std::size_t differences = 0;
  std::vector<PageTable> tables;
};

PageTable differencesTable(const CallDifference& difference);

PageCall pageCallFrom(const CallTrace& trace);

/// Of a call in a JSON trace, which tells nothing of what was before. `difference` tells how it
/// differs from another trace's, null for one that does not.
PageCall pageCallFrom(const Json& call, std::size_t number, const CallDifference* difference);

void writePageCall(Html& html, const PageCall& call);
void writePageTable(Html& html, const PageTable& table);

}  // namespace camhook
