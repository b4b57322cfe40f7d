#include "tools/camhook/input/DumpScenario.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <map>
#include <system_error>
#include <utility>

#include "host/AndroidTags.h"
#include "host/MetadataAccess.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/Joined.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/Scenario.h"
#include "tools/camhook/input/TagCatalogue.h"
#include "tools/camhook/input/ValueReader.h"

namespace camhook {
namespace {

using NSCam::IMetadata;

std::string nameInFolder(const std::string& file) {
  return std::filesystem::path(file).filename().string();
}

/// The parts of the name of a file that `dumpMetadata` wrote:
/// "request_metadata_[12]_20210304050607.txt".
struct FrameOfName {
  std::uint32_t frame = 0;
  std::string time;  // the text after the frame
};

std::optional<FrameOfName> frameOfName(const std::string& file) {
  constexpr std::string_view kBefore = "_metadata_[";
  constexpr std::string_view kAfter = "]_";
  const std::string name = nameInFolder(file);
  const std::size_t at = name.rfind(kBefore);
  if (at == std::string::npos) return {};
  const char* const end = name.data() + name.size();
  FrameOfName found;
  const auto read = std::from_chars(name.data() + at + kBefore.size(), end, found.frame);
  const std::string_view rest(read.ptr, static_cast<std::size_t>(end - read.ptr));
  if (read.ec != std::errc() || !rest.starts_with(kAfter)) return {};
  found.time = rest.substr(kAfter.size());
  return found;
}

/// "2021-03-04T05:06:07" for "20210304050607.txt"; empty if that is not a time.
std::string clockOfName(std::string_view time) {
  std::string clock = "0000-00-00T00:00:00";
  if (time.size() < 14) return {};
  for (char& letter : clock) {
    if (letter != '0') continue;
    letter = time.front();
    time.remove_prefix(1);
  }
  return timeFrom(clock) ? clock : "";
}

std::string counted(std::size_t count, const char* one, const char* many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

bool hasRequestNo(const DumpHook& hook) {
  return hook.call == UpdateRequestMeta::kName || hook.call == UpdateResultMeta::kName;
}

/// A line for each distinct note, with the number of its repetitions.
std::vector<std::string> linesOf(const std::vector<const DumpFile*>& files) {
  std::vector<std::pair<std::string, std::size_t>> notes;  // line and repetitions
  std::map<std::string, std::size_t> indexes;
  for (const DumpFile* file : files) {
    for (const DumpNote& note : file->found.notes) {
      const auto [known, isNew] = indexes.try_emplace(file->name + '\n' + note.text, notes.size());
      if (!isNew) {
        ++notes[known->second].second;
        continue;
      }
      notes.emplace_back(printable(file->name) + ":" + std::to_string(note.line) + ": " + note.text,
                         0);
    }
  }
  std::vector<std::string> lines;
  for (const auto& [text, repeated] : notes) {
    const std::string more =
        repeated > 0 ? " (" + counted(repeated, "more time)", "more times)") : "";
    lines.push_back(printable(text, Faults::kMostColumns - more.size()) + more);
  }
  return lines;
}

/// The numbers of notes by kind; empty if there are none.
std::string summaryOf(const std::vector<const DumpFile*>& files) {
  std::array<std::size_t, 3> counts{};
  for (const DumpFile* file : files) {
    for (const DumpNote& note : file->found.notes) {
      ++counts.at(static_cast<std::size_t>(note.kind));
    }
  }
  const auto& [leftOut, doubtful, incomplete] = counts;
  std::string text;
  if (leftOut > 0) text += " Skipped: " + counted(leftOut, "entry.", "entries.");
  if (doubtful > 0) text += " Doubtful: " + std::to_string(doubtful) + ".";
  if (incomplete > 0) text += " Cut off: " + counted(incomplete, "dump.", "dumps.");
  return text;
}

/// Adds a note to each dump with tags of static metadata: a hook does not receive those.
void noteStatics(DumpFile& file) {
  const auto isStatic = [](const IMetadata::IEntry& entry) {
    const TagDescription* info = findTag(entry.tag());
    return info != nullptr && info->meaning.starts_with("static: ");
  };
  for (const Dump& dump : file.found.dumps) {
    if (std::ranges::none_of(dump.entries, isStatic)) continue;
    file.found.notes.push_back(
        {dump.line, DumpNote::Kind::doubtful, "the dump contains static metadata; use --static"});
  }
  std::ranges::stable_sort(file.found.notes, {}, &DumpNote::line);
}

/// The short form of an entry if its type is the catalogue's, with names for the items that have
/// one.
Json shortEntry(const IMetadata::IEntry& entry) {
  const host::AndroidTag* known = host::findAndroidTag(entry.tag());
  Json list = jsonFromItems(entry);
  for (Json& item : list.items()) {
    const auto number = item.integer<std::int64_t>();
    const std::string_view name = known != nullptr && number ? known->nameOf(*number) : "";
    if (!name.empty()) item = name;
  }
  const TagDescription* info = findTag(entry.tag());
  const std::string_view type = host::typeName(host::MetadataAccess::itemsOf(entry));
  if (info == nullptr || info->type != type) return Json::Object{{"type", type}, {"items", list}};
  return list.size() == 1 ? list[0] : list;
}

Json jsonFromDump(const Dump& dump) {
  if (dump.isNull) return {};
  Json::Object entries;
  for (const IMetadata::IEntry& entry : dump.entries) {
    entries.push_back({tagText(entry.tag()), shortEntry(entry)});
  }
  return entries;
}

/// A dump and the frame in its file's name.
struct FramedDump {
  std::optional<std::uint32_t> frame;
  const Dump* dump;
};

/// The frame of a file; files without one come last.
std::uint64_t orderOf(const DumpFile& file) {
  const auto named = frameOfName(file.name);
  return named ? named->frame : std::uint64_t{1} << 32U;
}

std::vector<FramedDump> dumpsOf(const std::vector<DumpFile>& files) {
  std::vector<FramedDump> dumps;
  for (const DumpFile& file : files) {
    const auto named = frameOfName(file.name);
    for (const Dump& dump : file.found.dumps) {
      dumps.push_back({named ? std::optional(named->frame) : std::nullopt, &dump});
    }
  }
  return dumps;
}

/// The calls, each with as many dumps as the hook has containers. The last containers of the last
/// call stay empty if there are too few dumps.
Json callsOf(const std::vector<FramedDump>& dumps, const DumpHook& hook, std::int32_t sensor) {
  const Json empty = Json::Object();
  Json::List calls;
  std::uint32_t next = 1;
  for (std::size_t i = 0; i < dumps.size(); i += hook.containers.size()) {
    Json call = {{"call", hook.call}, {"sensor", sensor}};
    const std::uint32_t number = dumps[i].frame.value_or(next);
    next = number + 1;
    if (hasRequestNo(hook)) call["requestNo"] = number;
    if (hook.call == UpdateSessionParams::kName) call["streams"] = Json::List();
    for (std::size_t j = 0; j < hook.containers.size(); ++j) {
      call[hook.containers[j]] = i + j < dumps.size() ? jsonFromDump(*dumps[i + j].dump) : empty;
    }
    calls.push_back(std::move(call));
  }
  return calls;
}

Json platformOf(const DumpOptions& options, std::int32_t sensor, const std::string& clock) {
  Json platform;
  const auto& [properties, events] = std::tie(options.properties, options.eventStore);
  if (!properties.empty()) platform["properties"] = jsonFromTextMap(properties);
  if (!events.empty()) platform["eventStore"] = jsonFromTextMap(events);
  if (options.statics) {
    platform["devices"][std::to_string(sensor)]["static"] =
        jsonFromDump(options.statics->found.dumps.front());
  }
  if (!clock.empty()) platform["clock"] = clock;
  return platform;
}

/// The assumed values: given neither by an option nor by a file. Each is a few words.
std::vector<std::string> assumptions(const DumpOptions& options, const DumpHook& hook,
                                     const std::vector<FramedDump>& dumps, bool hasClock) {
  std::vector<std::string> assumed;
  if (options.hook == nullptr) assumed.push_back("hook " + std::string(hook.word));
  if (!options.sensor) assumed.emplace_back("sensor 0");
  const bool isNumbered =
      std::ranges::all_of(dumps, [](const FramedDump& dump) { return dump.frame.has_value(); });
  if (hasRequestNo(hook) && !isNumbered) assumed.emplace_back("request numbers from 1");
  if (hook.call == UpdateSessionParams::kName) assumed.emplace_back("no streams");
  const std::size_t count = hook.containers.size();
  for (std::size_t i = dumps.size() % count; i > 0 && i < count; ++i) {
    assumed.push_back("\"" + std::string(hook.containers[i]) + "\" empty");
  }
  if (!options.properties.contains("ro.product.model.zdm")) assumed.emplace_back("no product");
  if (!options.eventStore.contains("APP_TYPE")) assumed.emplace_back("no app type");
  if (hasClock) assumed.emplace_back("clock from the file name");
  if (options.statics && options.statics->found.dumps.size() > 1) {
    assumed.emplace_back("the first dump as static metadata");
  }
  return assumed;
}

/// "2 dumps of a phone, from a.txt and 1 more file."
std::string origin(const std::vector<DumpFile>& files, std::size_t dumps) {
  std::string text = counted(dumps, "dump", "dumps") + " of a phone, from ";
  text += nameInFolder(files.front().name);
  if (files.size() > 1) text += " and " + counted(files.size() - 1, "more file", "more files");
  return text + ".";
}

}  // namespace

std::span<const DumpHook> dumpHooks() {
  static const std::array kHooks{
      DumpHook{"request", UpdateRequestMeta::kName, {"meta"}},
      DumpHook{"result", UpdateResultMeta::kName, {"meta"}},
      DumpHook{"session", UpdateSessionParams::kName, {"meta"}},
      DumpHook{"capture", UpdateCaptureRawParameter::kName, {"app", "hal", "out"}},
  };
  return kHooks;
}

const DumpHook* findDumpHook(std::string_view name) {
  for (const DumpHook& hook : dumpHooks()) {
    if (hook.word == name || hook.call == name) return &hook;
  }
  return nullptr;
}

DumpFile dumpFile(std::string name, std::string_view text) {
  DumpFile file{.name = name == "-" ? "standard input" : std::move(name), .found = dumpsIn(text)};
  if (file.found.dumps.empty()) {
    throw InputError(
        "no metadata dump found: expected a line such as "
        "\"Dumping camera metadata array: 13 / 40 entries\" or "
        "\"android.control.captureIntent (1000d): byte[1]\"");
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

DumpScenario scenarioOfDumps(std::vector<DumpFile> files, const DumpOptions& options) {
  const DumpHook& hook = options.hook != nullptr ? *options.hook : dumpHooks().front();
  const std::int32_t sensor = options.sensor.value_or(0);
  std::ranges::stable_sort(files, {}, orderOf);
  for (DumpFile& file : files) noteStatics(file);
  const std::vector<FramedDump> dumps = dumpsOf(files);
  const auto first = frameOfName(files.front().name);
  const std::string clock = first ? clockOfName(first->time) : "";

  std::vector<const DumpFile*> sources;
  sources.reserve(files.size() + 1);
  for (const DumpFile& file : files) sources.push_back(&file);
  if (options.statics) sources.push_back(&*options.statics);
  std::vector<std::string> notes = linesOf(sources);
  std::string about = origin(files, dumps.size());
  const std::string assumed = joined(assumptions(options, hook, dumps, !clock.empty()), ", ");
  if (!assumed.empty()) {
    notes.push_back("assumed: " + assumed);
    about += " Assumed: " + assumed + ".";
  }
  Json scenario = {{"about", about + summaryOf(sources)}};
  const Json platform = platformOf(options, sensor, clock);
  if (!platform.isNull()) scenario["platform"] = platform;
  scenario["calls"] = callsOf(dumps, hook, sensor);
  return {std::move(scenario), std::move(notes)};
}

}  // namespace camhook
