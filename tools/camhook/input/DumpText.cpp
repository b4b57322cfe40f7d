#include "tools/camhook/input/DumpText.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <regex>
#include <unordered_set>
#include <utility>

#include "tools/camhook/input/DumpEntry.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/WholeNumber.h"

namespace camhook {
namespace {

constexpr std::size_t kUnknown = std::numeric_limits<std::size_t>::max();
constexpr std::string_view kFirstWords = "Dumping camera metadata array: ";

/// The text after the time at the beginning of a line of a log; the whole line if it has no time.
std::string_view afterTime(std::string_view line) {
  constexpr std::size_t kMaxSearched = 60;
  static const std::regex time(R"(\d\d:\d\d:\d\d[.,\d]*)");
  const char* const end = line.data() + std::min(line.size(), kMaxSearched);
  std::cmatch found;
  if (!std::regex_search(line.data(), end, found, time)) return line;
  return line.substr(static_cast<std::size_t>(found[0].second - line.data()));
}

/// True for a header of `logcat -v long`, which is on a separate line:
/// "[ 03-04 05:06:07.123  1234: 1235 I/CameraMetadata ]".
bool isHeader(std::string_view line) {
  while (line.ends_with(' ') || line.ends_with('\r')) line.remove_suffix(1);
  return line.starts_with("[ ") && line.ends_with(']') && afterTime(line).size() < line.size();
}

class DumpFinder {
 public:
  DumpsOfText find(std::string_view text) {
    while (!text.empty()) {
      const std::size_t end = std::min(text.find('\n'), text.size());
      ++mLine;
      onLine(text.substr(0, end));
      text.remove_prefix(std::min(end + 1, text.size()));
    }
    while (!mOpen.empty()) close(mOpen.front());
    return std::move(mFound);
  }

 private:
  /// A dump whose end was not found yet.
  struct Open {
    std::string source;
    std::size_t index = 0;      // in mFound.dumps
    std::size_t announced = 0;  // entries according to the first line
    std::size_t begun = 0;      // entries whose head was found
    std::size_t entryLine = 0;
    std::optional<DumpEntry> entry = {};
    std::unordered_set<std::uint32_t> tags = {};
  };

  /// The process, thread and log tag of a line, from the header before it or from its beginning.
  [[nodiscard]] std::string_view sourceOf(std::string_view line) const {
    return mHeader.empty() ? afterTime(line) : mHeader;
  }
  void warn(std::size_t line, std::string entry, std::string problem) {
    mFound.warnings.add(
        {.line = line, .column = 1, .place = std::move(entry), .problem = std::move(problem)});
  }

  void onLine(std::string_view line) {
    if (isHeader(line)) {
      mHeader = afterTime(line);
    } else if (const std::size_t at = line.find(kFirstWords); at != std::string_view::npos) {
      onFirstLine(line.substr(0, at), line.substr(at + kFirstWords.size()));
    } else if (const auto row = findDumpRow(line)) {
      Open* dump = openFor(line);
      if (dump == nullptr || !dump->entry) return;
      dump->entry->addRow(*row);
      closeIfComplete(*dump);
    } else if (const auto head = findDumpHead(line)) {
      onHead(*head, line);
    }
  }

  /// An example of `counts`: "13 / 40 entries, 64 / 4000 bytes of extra data."
  void onFirstLine(std::string_view beforeDump, std::string_view counts) {
    constexpr std::size_t kMaxThreads = 8;
    std::string_view source = sourceOf(beforeDump);
    while (source.ends_with(' ')) source.remove_suffix(1);
    const auto same = std::ranges::find(mOpen, source, &Open::source);
    if (same != mOpen.end()) close(*same);
    if (mOpen.size() == kMaxThreads) close(mOpen.front());
    if (counts.starts_with("Not allocated")) {
      mFound.dumps.push_back({.line = mLine, .isNull = true});
      return;
    }
    const std::size_t slash = counts.find(" / ");
    const auto announced = wholeNumber<std::size_t>(counts.substr(0, slash));
    if (!announced || slash == std::string_view::npos) {
      warn(mLine, "", "the dump's first line has no entry count");
      return;
    }
    open(source, *announced);
    closeIfComplete(mOpen.back());
  }

  void onHead(const DumpHead& head, std::string_view line) {
    Open* dump = openFor(line);
    if (dump == nullptr && mFound.dumps.empty()) {
      warn(mLine, "", "the text begins within a dump");
      open("", kUnknown);
      dump = &mOpen.back();
    }
    if (dump == nullptr) {
      if (!mHasOlder)
        warn(mLine, "", "ignored entries after the end of a dump (left by an older dump)");
      mHasOlder = true;
      return;
    }
    finishEntry(*dump, false);
    dump->entry.emplace(head);
    dump->entryLine = mLine;
    ++dump->begun;
    closeIfComplete(*dump);
  }

  void open(std::string_view source, std::size_t announced) {
    mOpen.push_back({std::string(source), mFound.dumps.size(), announced});
    mFound.dumps.push_back({.line = mLine});
  }

  /// The open dump of a line: the latest of the same source, else the latest; null if none is open.
  Open* openFor(std::string_view line) {
    if (mOpen.empty()) return nullptr;
    if (mOpen.size() == 1) return &mOpen.front();
    const std::string_view written = sourceOf(line);
    const auto found = std::find_if(mOpen.rbegin(), mOpen.rend(), [&](const Open& dump) {
      return written.starts_with(dump.source);
    });
    return found != mOpen.rend() ? &*found : &mOpen.back();
  }

  void closeIfComplete(Open& dump) {
    if (dump.begun < dump.announced || (dump.entry && !dump.entry->isComplete())) return;
    close(dump);
  }

  void close(Open& dump) {
    const bool isCutOff = dump.begun < dump.announced;
    finishEntry(dump, isCutOff);
    if (isCutOff && dump.announced != kUnknown) {
      warn(mFound.dumps[dump.index].line, "",
           "the dump is cut off: " + std::to_string(dump.begun) + " of " +
               std::to_string(dump.announced) + " entries");
    }
    mOpen.erase(mOpen.begin() + (&dump - mOpen.data()));
  }

  void finishEntry(Open& dump, bool isCutOff) {
    if (!dump.entry) return;
    const DumpEntry& entry = *dump.entry;
    Dump& found = mFound.dumps[dump.index];
    try {
      auto read = entry.metadataEntry(isCutOff);
      if (!dump.tags.insert(entry.tag()).second) throw InputError("duplicate tag");
      std::string problem = entry.warning(read);
      if (!problem.empty()) warn(dump.entryLine, entry.title(), std::move(problem));
      found.entries.push_back(std::move(read));
    } catch (const InputError& error) {
      const std::string problem = error.what();
      if (found.problem.empty()) found.problem = entry.title() + ": " + problem;
      warn(dump.entryLine, entry.title(), "skipped: " + problem);
    }
    dump.entry.reset();
  }

  DumpsOfText mFound;
  std::vector<Open> mOpen;
  std::string_view mHeader;  // after the time; empty if lines have no header
  std::size_t mLine = 0;
  bool mHasOlder = false;  // there are entries after a complete dump
};

}  // namespace

DumpsOfText dumpsIn(std::string_view text) { return DumpFinder().find(text); }

}  // namespace camhook
