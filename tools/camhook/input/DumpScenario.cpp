#include "tools/camhook/input/DumpScenario.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <regex>
#include <utility>

#include "host/AndroidTags.h"
#include "host/MetadataAccess.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/InputFile.h"
#include "tools/camhook/input/Joined.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/Scenario.h"
#include "tools/camhook/input/TagCatalogue.h"
#include "tools/camhook/input/ValueReader.h"
#include "tools/camhook/input/WholeNumber.h"

namespace camhook {
namespace {

using NSCam::IMetadata;

std::string nameInFolder(const std::string& file) {
  return std::filesystem::path(file).filename().string();
}

/// The frame and the time in the name of a file that `dumpMetadata` wrote:
/// "request_metadata_[12]_20210304050607.txt".
struct FrameOfName {
  std::uint32_t frame = 0;
  std::string clock;  // "2021-03-04T05:06:07"; empty if there is no such time
};

std::optional<FrameOfName> frameOfName(const std::string& file) {
  static const std::regex form(R"(_metadata_\[(\d+)\]_(\d{4})(\d\d)(\d\d)(\d\d)(\d\d)(\d\d))");
  const std::string name = nameInFolder(file);
  std::smatch parts;
  if (!std::regex_search(name, parts, form)) return {};
  const auto frame = wholeNumber<std::uint32_t>(parts.str(1));
  if (!frame) return {};
  const std::string clock = parts.format("$2-$3-$4T$5:$6:$7");
  return FrameOfName{*frame, timeFrom(clock) ? clock : ""};
}

std::string counted(std::size_t count, const char* one, const char* many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

bool hasRequestNo(const DumpHook& hook) {
  return hook.call == UpdateRequestMeta::kName || hook.call == UpdateResultMeta::kName;
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

/// A dump and what the name of its file contains.
struct FramedDump {
  const DumpFile* file;
  std::optional<FrameOfName> named;
  const Dump* dump;
};

/// The dumps in the order of their frames; those without a frame are last.
std::vector<FramedDump> dumpsOf(const std::vector<DumpFile>& files) {
  std::vector<FramedDump> dumps;
  for (const DumpFile& file : files) {
    const auto named = frameOfName(file.name);
    for (const Dump& dump : file.found.dumps) dumps.push_back({&file, named, &dump});
  }
  std::ranges::stable_sort(dumps, [](const FramedDump& left, const FramedDump& right) {
    return left.named && (!right.named || left.named->frame < right.named->frame);
  });
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
    const std::uint32_t number = dumps[i].named ? dumps[i].named->frame : next;
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
  if (!options.properties.empty()) platform["properties"] = jsonFromTextMap(options.properties);
  if (!options.eventStore.empty()) platform["eventStore"] = jsonFromTextMap(options.eventStore);
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
      std::ranges::all_of(dumps, [](const FramedDump& dump) { return dump.named.has_value(); });
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
std::string origin(const std::vector<FramedDump>& dumps, std::size_t files) {
  std::string text = counted(dumps.size(), "dump", "dumps") + " of a phone, from ";
  text += nameInFolder(nameOfInput(dumps.front().file->name));
  if (files > 1) text += " and " + counted(files - 1, "more file", "more files");
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
  DumpFile file{.name = std::move(name), .found = dumpsIn(text)};
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

bool hasStatics(const DumpFile& file) {
  const auto isStatic = [](const IMetadata::IEntry& entry) {
    const TagDescription* info = findTag(entry.tag());
    return info != nullptr && info->meaning.starts_with("static: ");
  };
  return std::ranges::any_of(file.found.dumps, [&](const Dump& dump) {
    return std::ranges::any_of(dump.entries, isStatic);
  });
}

Json scenarioOfDumps(const std::vector<DumpFile>& files, const DumpOptions& options) {
  const DumpHook& hook = options.hook != nullptr ? *options.hook : dumpHooks().front();
  const std::int32_t sensor = options.sensor.value_or(0);
  const std::vector<FramedDump> dumps = dumpsOf(files);
  const auto& first = dumps.front().named;
  const std::string clock = first ? first->clock : "";
  std::string about = origin(dumps, files.size());
  const std::string assumed = joined(assumptions(options, hook, dumps, !clock.empty()), ", ");
  if (!assumed.empty()) about += " Assumed: " + assumed + ".";
  Json scenario = {{"about", std::move(about)}};
  const Json platform = platformOf(options, sensor, clock);
  if (!platform.isNull()) scenario["platform"] = platform;
  scenario["calls"] = callsOf(dumps, hook, sensor);
  return scenario;
}

}  // namespace camhook
