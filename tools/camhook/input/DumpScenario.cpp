#include "tools/camhook/input/DumpScenario.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <map>
#include <system_error>
#include <utility>

#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/Joined.h"
#include "tools/camhook/input/Scenario.h"
#include "tools/camhook/input/TagCatalogue.h"

namespace camhook {
namespace {

constexpr std::string_view kMeta[] = {"meta"};
constexpr std::string_view kCaptureContainers[] = {"app", "hal", "out"};

constexpr DumpHook kHooks[] = {
    {"request", UpdateRequestMeta::kName, kMeta, "requestNo"},
    {"result", UpdateResultMeta::kName, kMeta, "requestNo"},
    {"session", UpdateSessionParams::kName, kMeta, "", true},
    {"capture", UpdateCaptureRawParameter::kName, kCaptureContainers, ""},
};

std::string nameInFolder(const std::string& file) {
  const std::size_t slash = file.rfind('/');
  return slash == std::string::npos ? file : file.substr(slash + 1);
}

/// What the name of a file tells that `dumpMetadata` left:
/// "request_metadata_[12]_20210304050607.txt".
struct FrameOfName {
  std::uint32_t frame = 0;
  std::string time;  // what follows the number
};

std::optional<FrameOfName> frameOfName(const std::string& file) {
  constexpr std::string_view kBefore = "_metadata_[";
  constexpr std::string_view kBehind = "]_";
  const std::string inFolder = nameInFolder(file);
  std::string_view name = inFolder;
  const std::size_t at = name.rfind(kBefore);
  if (at == std::string_view::npos) return {};
  name.remove_prefix(at + kBefore.size());
  FrameOfName found;
  const auto read = std::from_chars(name.data(), name.data() + name.size(), found.frame);
  name.remove_prefix(static_cast<std::size_t>(read.ptr - name.data()));
  if (read.ec != std::errc() || !name.starts_with(kBehind)) return {};
  found.time = name.substr(kBehind.size());
  return found;
}

/// "2021-03-04T05:06:07" of "20210304050607.txt"; empty where that is no time.
std::string clockOfName(std::string_view time) {
  constexpr std::array<std::size_t, 6> kLengths{4, 2, 2, 2, 2, 2};
  constexpr std::array<const char*, 6> kBefore{"", "-", "-", "T", ":", ":"};
  std::array<unsigned, 6> numbers{};
  std::string clock;
  for (std::size_t i = 0; i < kLengths.size(); ++i) {
    const std::string_view digits = time.substr(0, kLengths[i]);
    const char* const end = digits.data() + digits.size();
    if (digits.size() < kLengths[i] || std::from_chars(digits.data(), end, numbers[i]).ptr != end) {
      return {};
    }
    clock.append(kBefore[i]).append(digits);
    time.remove_prefix(kLengths[i]);
  }
  const auto [year, month, day, hour, minute, second] = numbers;
  const std::chrono::year_month_day date{std::chrono::year(static_cast<int>(year)),
                                         std::chrono::month(month), std::chrono::day(day)};
  return date.ok() && hour < 24 && minute < 60 && second < 60 ? clock : "";
}

std::string counted(std::size_t count, const char* one, const char* many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

/// Gathers what is to be said, the same of many dumps once.
class Notes {
 public:
  void add(const DumpFile& file) {
    for (const DumpNote& note : file.found.notes) {
      ++mCounts.at(static_cast<std::size_t>(note.kind));
      const std::string key = file.name + '\n' + note.text;
      const auto [known, isNew] = mIndexes.try_emplace(key, mNotes.size());
      if (isNew) {
        const std::string line = std::to_string(note.line);
        mNotes.push_back({printable(file.name) + ":" + line + ": " + note.text, 0});
      }
      ++mNotes[known->second].count;
    }
  }

  [[nodiscard]] std::vector<std::string> lines() const {
    std::vector<std::string> lines;
    for (const auto& [text, count] : mNotes) {
      const std::string more =
          count > 1 ? " (" + counted(count - 1, "more time)", "more times)") : "";
      lines.push_back(cutBehind(text, Faults::kMostColumns - columnsOf(more)) + more);
    }
    return lines;
  }

  /// In short; empty where there is none.
  [[nodiscard]] std::string summary() const {
    const auto& [leftOut, doubtful, incomplete] = mCounts;
    std::string text;
    if (leftOut > 0) text += " Left out: " + counted(leftOut, "entry.", "entries.");
    if (doubtful > 0) text += " Doubtful: " + std::to_string(doubtful) + ".";
    if (incomplete > 0) text += " Cut off: " + counted(incomplete, "dump.", "dumps.");
    return text;
  }

 private:
  struct Note {
    std::string text;
    std::size_t count;
  };

  std::vector<Note> mNotes;
  std::map<std::string, std::size_t> mIndexes;
  std::array<std::size_t, 3> mCounts{};  // by kind
};

/// Whether a dump has what the library reads of a camera's static metadata alone.
bool hasStatics(const Dump& dump) {
  return std::ranges::any_of(dump.entries, [](const NSCam::IMetadata::IEntry& entry) {
    const TagDescription* info = findTag(entry.tag());
    return info != nullptr && info->meaning.starts_with("static: ");
  });
}

/// Doubts that static metadata is what a hook is handed.
void doubtStatics(DumpFile& file) {
  for (const Dump& dump : file.found.dumps) {
    if (!hasStatics(dump)) continue;
    file.found.notes.push_back({dump.line, DumpNote::Kind::doubtful,
                                "the dump has static metadata, which --static takes"});
  }
  std::ranges::stable_sort(file.found.notes, {}, &DumpNote::line);
}

/// A dump and the frame that its file is named after.
struct FramedDump {
  std::optional<std::uint32_t> frame;
  Dump dump;
};

std::vector<FramedDump> dumpsByFrame(std::vector<DumpFile>& files) {
  // Before all others: a request is numbered on from them.
  constexpr std::uint64_t kBehindFrames = std::uint64_t{1} << 32U;
  const auto placeOf = [](const DumpFile& file) {
    const auto named = frameOfName(file.name);
    return named ? named->frame : kBehindFrames;
  };
  std::ranges::stable_sort(files, {}, placeOf);
  std::vector<FramedDump> dumps;
  for (DumpFile& file : files) {
    const auto named = frameOfName(file.name);
    for (Dump& dump : file.found.dumps) {
      FramedDump& added = dumps.emplace_back();
      if (named) added.frame = named->frame;
      added.dump = std::move(dump);
    }
  }
  return dumps;
}

/// The calls, each of as many dumps as the hook has containers; of the last one those are empty for
/// which there is none.
std::vector<DumpScenario::Call> callsOf(std::vector<FramedDump> dumps, const DumpHook& hook) {
  std::vector<DumpScenario::Call> calls;
  std::uint64_t next = 1;
  for (std::size_t i = 0; i < dumps.size(); ++i) {
    if (i % hook.containers.size() == 0) {
      const std::uint64_t number = dumps[i].frame ? *dumps[i].frame : next;
      calls.emplace_back().requestNo = static_cast<std::uint32_t>(number);
      next = number + 1;
    }
    calls.back().containers.push_back(std::move(dumps[i].dump));
  }
  if (!calls.empty()) calls.back().containers.resize(hook.containers.size());
  return calls;
}

/// What nobody said, each in a few words.
std::vector<std::string> assumptions(const DumpOptions& options, const DumpScenario& made,
                                     bool isNumbered, std::size_t dumps) {
  const DumpHook& hook = *made.hook;
  std::vector<std::string> assumed;
  if (options.hook == nullptr) assumed.push_back("hook " + std::string(hook.word));
  if (!options.sensor) assumed.emplace_back("sensor 0");
  if (!hook.numberKey.empty() && !isNumbered) assumed.emplace_back("request numbers from 1");
  if (hook.hasStreams) assumed.emplace_back("no streams");
  for (std::size_t i = dumps % hook.containers.size(); i > 0 && i < hook.containers.size(); ++i) {
    assumed.push_back("nothing in \"" + std::string(hook.containers[i]) + "\"");
  }
  if (!made.properties.contains("ro.product.model.zdm")) assumed.emplace_back("no product");
  if (!made.eventStore.contains("APP_TYPE")) assumed.emplace_back("no app type");
  if (!made.clock.empty()) assumed.emplace_back("the clock of a file's name");
  if (made.statics && options.statics->found.dumps.size() > 1) {
    assumed.emplace_back("the first dump as static metadata");
  }
  return assumed;
}

/// "2 dumps of a phone, from a.txt, b.txt and 3 more files.".
std::string origin(const std::vector<DumpFile>& files, std::size_t dumps) {
  constexpr std::size_t kMostNames = 3;
  std::vector<std::string> names;
  for (const DumpFile& file : files) {
    if (names.size() < kMostNames) names.push_back(nameInFolder(file.name));
  }
  std::string text = counted(dumps, "dump", "dumps") + " of a phone, from " + joined(names, ", ");
  if (files.size() > kMostNames) {
    text += " and " + counted(files.size() - kMostNames, "more file", "more files");
  }
  return text + ".";
}

}  // namespace

std::span<const DumpHook> dumpHooks() { return kHooks; }

const DumpHook* findDumpHook(std::string_view name) {
  const auto* found = std::ranges::find_if(
      kHooks, [&](const DumpHook& hook) { return hook.word == name || hook.call == name; });
  return found != std::end(kHooks) ? found : nullptr;
}

DumpFile dumpFile(std::string name, std::string_view text) {
  DumpFile file{.name = name == "-" ? "standard input" : std::move(name), .found = dumpsIn(text)};
  if (file.found.dumps.empty()) {
    throw InputError(
        "no dump of metadata: no line has \"Dumping camera metadata array: 13 / 40 entries\", "
        "nor an entry such as \"android.control.captureIntent (1000d): byte[1]\"");
  }
  for (const Dump& dump : file.found.dumps) {
    if (!dump.entries.empty() || dump.problem.empty()) continue;
    Faults faults;
    faults.add({.line = dump.line,
                .column = 1,
                .problem = "no entry of the dump can be read; " + dump.problem});
    throw InputError(std::move(faults));
  }
  return file;
}

DumpScenario scenarioOfDumps(std::vector<DumpFile> files, DumpOptions options) {
  DumpScenario made;
  made.hook = options.hook != nullptr ? options.hook : &kHooks[0];
  made.sensor = options.sensor.value_or(0);
  made.properties = std::move(options.properties);
  made.eventStore = std::move(options.eventStore);

  for (DumpFile& file : files) doubtStatics(file);
  std::vector<FramedDump> dumps = dumpsByFrame(files);
  const std::size_t count = dumps.size();
  const bool isNumbered =
      std::ranges::all_of(dumps, [](const FramedDump& dump) { return dump.frame.has_value(); });
  if (const auto first = frameOfName(files.front().name)) made.clock = clockOfName(first->time);
  made.calls = callsOf(std::move(dumps), *made.hook);

  Notes notes;
  for (const DumpFile& file : files) notes.add(file);
  if (options.statics) {
    notes.add(*options.statics);
    made.statics = std::move(options.statics->found.dumps.front());
  }
  made.notes = notes.lines();
  made.about = origin(files, count);
  const std::string assumed = joined(assumptions(options, made, isNumbered, count), ", ");
  if (!assumed.empty()) {
    made.notes.push_back("assumed: " + assumed);
    made.about += " Assumed: " + assumed + ".";
  }
  made.about += notes.summary();
  return made;
}

}  // namespace camhook
