#include "tools/camhook/show/DiffCommand.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <map>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "tools/camhook/show/TraceDiff.h"

namespace camhook {
namespace {

using Names = std::set<std::string>;
using std::filesystem::path;

/// Calls by scenario: "preview 2, 3; still_burst 1".
using Calls = std::map<std::string, std::vector<std::size_t>>;

/// By the hook and the place in it, what changed and where.
using Groups = std::map<std::string, std::map<std::string, std::map<std::string, Calls>>>;

constexpr std::size_t kPlaceWidth = 34;

void writeIndented(std::ostream& out, Style style, std::size_t indent, const std::string& text) {
  out << wrapped(std::string(indent, ' ') + text, style.width(), indent + 2) << '\n';
}

Names tracesIn(const path& folder) {
  Names names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() == ".json") names.insert(entry.path().filename().string());
  }
  return names;
}

/// Writes the names that only one of the folders has.
void writeLacking(std::ostream& out, const Names& names, const Names& others, const path& folder) {
  Names lacking;
  std::ranges::set_difference(names, others, std::inserter(lacking, lacking.end()));
  for (const std::string& name : lacking) out << name << "  only in " << folder.string() << '\n';
}

std::string callsText(const Calls& calls) {
  std::string text;
  for (const auto& [scenario, numbers] : calls) {
    text += (text.empty() ? "" : "; ") + scenario;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
      if (numbers[i] > 0) text += (i > 0 ? ", " : " ") + std::to_string(numbers[i]);
    }
  }
  return text;
}

/// A change, and where it is behind it, on the next line where it is long.
void writeChange(std::ostream& out, Style style, const std::string& change,
                 const std::string& calls) {
  const std::size_t width = displayWidth(change);
  if (width < kPlaceWidth) {
    writeIndented(out, style, 4,
                  style.fresh(change) + std::string(kPlaceWidth - width, ' ') + calls);
  } else {
    writeIndented(out, style, 4, style.fresh(change));
    writeIndented(out, style, 4 + kPlaceWidth, calls);
  }
}

void writeGroups(std::ostream& out, const Groups& groups, Style style) {
  for (const auto& [hook, places] : groups) {
    out << style.title(hook) << '\n';
    for (const auto& [place, changes] : places) {
      out << "  " << style.heading(place) << '\n';
      for (const auto& [change, calls] : changes) {
        writeChange(out, style, change, style.faint(callsText(calls)));
      }
    }
    out << '\n';
  }
}

}  // namespace

int diffTraces(std::ostream& out, const Json& old, const Json& fresh, bool withRecords,
               Style style) {
  const std::vector<CallDifference> calls = compareTraces(old, fresh, withRecords);
  for (const CallDifference& call : calls) {
    out << style.title(call.title) << '\n';
    Columns columns(kPlaceWidth);
    for (const auto& [place, change] : call.differences) {
      columns.add({place, style.fresh(change)});
    }
    for (const std::string& line : columns.lines()) writeIndented(out, style, 2, line);
    out << '\n';
  }
  return calls.empty() ? 0 : 1;
}

int diffFolders(std::ostream& out, const path& old, const path& fresh, const TraceReader& read,
                bool withRecords, Style style) {
  const Names before = tracesIn(old);
  const Names after = tracesIn(fresh);
  writeLacking(out, before, after, old);
  writeLacking(out, after, before, fresh);
  Groups groups;
  for (const std::string& name : before) {
    if (!after.contains(name)) continue;
    const std::string scenario = path(name).stem().string();
    for (const CallDifference& call :
         compareTraces(read(old / name), read(fresh / name), withRecords)) {
      for (const auto& [place, change] : call.differences) {
        const std::string& hook = call.call.empty() ? call.title : call.call;
        groups[hook][place][change][scenario].push_back(call.number);
      }
    }
  }
  writeGroups(out, groups, style);
  return before == after && groups.empty() ? 0 : 1;
}

}  // namespace camhook
