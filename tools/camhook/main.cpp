// The command line of camhook.

#include <sys/stat.h>

#include <cerrno>
#include <charconv>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "common/tags/TagCatalogue.h"
#include "tools/camhook/explain/DecideCommand.h"
#include "tools/camhook/explain/HookReference.h"
#include "tools/camhook/explain/WhyCommand.h"
#include "tools/camhook/input/DumpText.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/ScenarioReader.h"
#include "tools/camhook/run/DataRoot.h"
#include "tools/camhook/run/Replay.h"
#include "tools/camhook/run/StepFinder.h"
#include "tools/camhook/show/DiffCommand.h"
#include "tools/camhook/show/JsonTrace.h"
#include "tools/camhook/show/TagsCommand.h"
#include "tools/camhook/show/Terminal.h"
#include "tools/camhook/show/TextTrace.h"
#include "tools/camhook/show/TraceDiff.h"

namespace {

using namespace camhook;

constexpr int kInputRefused = 2;

struct ReplayOptions {
  std::string file;
  bool json = false;
  bool steps = false;
  std::string logs;
  std::string dataRoot;
};

struct DiffOptions {
  std::string old;
  std::string fresh;
  bool logs = false;
};

struct TagsOptions {
  std::string filter;
  bool json = false;
  bool markdown = false;
};

struct DecideArguments {
  DecideOptions options;
  std::string fps;
  std::string size;
  bool json = false;
};

/// The content of a file, of standard input for "-". Throws InputError.
std::string readInput(const std::string& file) {
  std::ostringstream text;
  if (file == "-") {
    text << std::cin.rdbuf();
    return text.str();
  }
  if (std::filesystem::is_directory(file)) throw InputError("is a folder");
  const std::ifstream in(file, std::ios::binary);
  if (!in) throw InputError(std::string("cannot be read: ") + std::strerror(errno));
  text << in.rdbuf();
  return text.str();
}

TextTrace::Records recordsFromName(const std::string& level) {
  if (level == "debug") return TextTrace::Records::debug;
  if (level == "info") return TextTrace::Records::info;
  if (level == "error") return TextTrace::Records::error;
  return TextTrace::Records::none;
}

/// What `read` makes of the content of a file. Throws InputError, which names the file.
template <typename Read>
auto readFile(const std::string& file, Read read) {
  try {
    return read(readInput(file));
  } catch (const InputError& error) {
    throw InputError((file == "-" ? "standard input" : printable(file)) + ": " + error.what());
  }
}

int replay(const ReplayOptions& options) {
  Scenario scenario = readFile(options.file, readScenario);
  const DataRoot dataRoot(options.dataRoot);
  scenario.platform.dataRoot = dataRoot.path().string();
  scenario.platform.tagName = [](std::uint32_t tag) {
    const hesk::TagDescription* info = hesk::findTag(tag);
    return info != nullptr ? info->name : std::string_view();
  };

  std::unique_ptr<TraceWriter> writer;
  if (options.json) {
    writer = std::make_unique<JsonTrace>(std::cout);
  } else {
    writer = std::make_unique<TextTrace>(std::cout, Style::forStandardOutput(),
                                         recordsFromName(options.logs), scenario.about);
  }
  Replay run(std::move(scenario.platform));
  std::optional<StepFinder> steps;
  if (options.steps) run.followSteps(&steps.emplace(), Replay::StepsOf::writes);
  ProgressLine progress(scenario.calls.size());
  std::size_t done = 0;
  for (const ScenarioCall& call : scenario.calls) {
    writer->write(run.run(call));
    progress.advance(++done);
  }
  writer->finish(run.phone().eventStore.all());
  return 0;
}

int diff(const DiffOptions& options) {
  const auto read = [](const std::filesystem::path& file) {
    return readFile(file.string(), traceFromText);
  };
  const Style style = Style::forStandardOutput();
  if (std::filesystem::is_directory(options.old) && std::filesystem::is_directory(options.fresh)) {
    return diffFolders(std::cout, options.old, options.fresh, read, options.logs, style);
  }
  return diffTraces(std::cout, read(options.old), read(options.fresh), options.logs, style);
}

int hooks(const std::vector<std::string>& files) {
  const DataRoot dataRoot("");
  std::vector<Scenario> scenarios;
  for (const std::string& file : files) {
    if (file.ends_with(".trace.json")) continue;  // an expected trace beside its scenario
    scenarios.push_back(readFile(file, readScenario));
    scenarios.back().platform.dataRoot = dataRoot.path().string();
  }
  HookReference reference;
  for (const Scenario& scenario : scenarios) reference.add(scenario);
  reference.write(std::cout);
  return 0;
}

/// Two integers around `separator`. Throws InputError, which says what is expected of `option`.
std::pair<std::int32_t, std::int32_t> pairFromText(const std::string& text, char separator,
                                                   const char* option, const char* expected) {
  std::pair<std::int32_t, std::int32_t> numbers;
  const char* const end = text.data() + text.size();
  const auto first = std::from_chars(text.data(), end, numbers.first);
  if (first.ec == std::errc() && first.ptr != end && *first.ptr == separator) {
    const auto second = std::from_chars(first.ptr + 1, end, numbers.second);
    if (second.ec == std::errc() && second.ptr == end) return numbers;
  }
  throw InputError("camhook: " + std::string(option) + ": must be " + expected + ", not " +
                   jsonText(text));
}

int decide(DecideArguments arguments) {
  if (!arguments.fps.empty()) {
    const auto [lower, upper] = pairFromText(arguments.fps, ',', "--fps", "LO,HI");
    arguments.options.fps = {lower, upper};
  }
  if (!arguments.size.empty()) {
    const auto [width, height] = pairFromText(arguments.size, 'x', "--size", "WxH");
    arguments.options.size = {width, height};
  }
  const Decision decision = camhook::decide(arguments.options);
  if (arguments.json) {
    writeDecisionJson(std::cout, decision);
  } else {
    writeDecisionText(std::cout, decision, Style::forStandardOutput());
  }
  return 0;
}

int tags(const TagsOptions& options) {
  TagsFormat format = TagsFormat::text;
  if (options.json) format = TagsFormat::json;
  if (options.markdown) format = TagsFormat::markdown;
  listTags(std::cout, options.filter, format, Style::forStandardOutput());
  return 0;
}

int metadata(const std::string& file) {
  const auto read = [](const std::string& text) { return metadataFromDump(text, std::cerr); };
  writeJson(std::cout, readFile(file, read));
  std::cout << '\n';
  return 0;
}

void addReplay(CLI::App& app, ReplayOptions& options) {
  CLI::App* command = app.add_subcommand("replay", "Run a scenario and show what each hook did");
  command->add_option("FILE", options.file, "The scenario; - reads it from standard input")
      ->required();
  command->add_flag("--json", options.json, "Write the trace as JSON");
  command->add_flag("--steps", options.steps, "Show which step of the library wrote each tag");
  command->add_option("--logs", options.logs, "Show log records of this level and above")
      ->check(CLI::IsMember({"debug", "info", "error"}))
      ->type_name("LEVEL");
  command
      ->add_option("--data-root", options.dataRoot,
                   "Folder that stands for the root of the phone's file system; by default a fresh "
                   "one that goes when the scenario has run")
      ->type_name("DIR");
  command->footer("Example:\n  camhook replay scenarios/still_burst.json --logs info");
}

void addWhy(CLI::App& app, WhyOptions& options, std::string& file) {
  CLI::App* command = app.add_subcommand(
      "why", "Explain a tag after a call: what wrote it, and what would change it");
  command->add_option("FILE", file, "The scenario; - reads it from standard input")->required();
  command->add_option("CALL", options.call, "Number of the call, from 1, or last")->required();
  command
      ->add_option("TAG", options.tags,
                   "The tag, written or not, or several; return for what the call returns")
      ->required();
  command
      ->add_option("--container", options.container,
                   "Container of the call; by default the one that it writes")
      ->type_name("NAME");
  command->add_option("--want", options.want, "Find what gives this value; null for absent")
      ->type_name("VALUE");
  command->add_flag("--all", options.all, "Show what was read and does not count, too");
  command->add_flag("--json", options.json, "Write the explanation as JSON");
  command->footer(
      "With --want the exit status is 1 where nothing gives that value.\n\n"
      "Example:\n  camhook why scenarios/third_party_apps.json 1 MTK_CONTROL_AE_TARGET_FPS_RANGE");
}

void addDiff(CLI::App& app, DiffOptions& options) {
  CLI::App* command = app.add_subcommand("diff", "Show how two traces in JSON differ");
  command->add_option("OLD", options.old, "The trace, or a folder of traces")->required();
  command->add_option("NEW", options.fresh, "Another, or a folder with traces of the same names")
      ->required();
  command->add_flag("--logs", options.logs, "Compare the log records, too");
  command->footer(
      "Of folders it tells what differs by hook and tag.\n"
      "The exit status is 1 where something differs.\n\n"
      "Example:\n  camhook diff before.json after.json");
}

void addTags(CLI::App& app, TagsOptions& options) {
  CLI::App* command = app.add_subcommand("tags", "List the metadata tags");
  command->add_option("TEXT", options.filter, "A part of the name, or the value (0x0001000d)");
  CLI::Option* json = command->add_flag("--json", options.json, "Write the list as JSON");
  command->add_flag("--markdown", options.markdown, "Write the list as a page of Markdown")
      ->excludes(json);
  command->footer("Example:\n  camhook tags frame_count");
}

void addDecide(CLI::App& app, DecideArguments& arguments) {
  CLI::App* command =
      app.add_subcommand("decide", "Decide on a sensor scenario and show the way to it");
  DecideOptions& options = arguments.options;
  command->add_option("--product", options.product, "Product model, as ro.product.model.zdm has it")
      ->required();
  command->add_option("--sensor", options.sensor, "Sensor; 1 is the front camera")->required();
  command->add_flag("--video", options.video, "The configuration has a video stream");
  command->add_option("--app-type", options.appType, "\"APP_TYPE\" of the event store");
  command->add_option("--app-name", options.appName, "\"APP_NAME\" of the event store");
  command->add_option("--eis", options.eis, "HESK_CONTROL_EISENABLE");
  command->add_option("--hfps", options.hfps, "MTK_STREAMING_FEATURE_HFPS_MODE");
  command->add_option("--fps", arguments.fps, "MTK_CONTROL_AE_TARGET_FPS_RANGE")
      ->type_name("LO,HI");
  command->add_option("--video-algo", options.videoAlgo, "HESK_CONTROL_VIDEOALGOTYPE");
  command->add_option("--ui-module", options.uiModule, "COM_HESK_CURRENTUIMODULE");
  command->add_option("--hdr", options.hdr, "MTK_HDR_FEATURE_HDR_MODE");
  command->add_option("--night", options.night, "HESK_CONTROL_NIGHTMODE");
  command->add_option("--size", arguments.size, "Size of the app's main output in pixels")
      ->type_name("WxH");
  command->add_flag("--json", arguments.json, "Write the decision as JSON");
  command->footer(
      "What is not given is absent.\n\n"
      "Example:\n  camhook decide --product KX0105 --sensor 0 --video --eis 1 --video-algo 0");
}

void addMetadata(CLI::App& app, std::string& file) {
  CLI::App* command = app.add_subcommand(
      "metadata", "Write the metadata of a dump from a phone as a scenario has it");
  command->add_option("FILE", file, "The dump; - reads it from standard input")->required();
  command->footer(
      "Example:\n  camhook metadata 'request_metadata_[12]_20210304050607.txt' > meta.json");
}

void addHooks(CLI::App& app, std::vector<std::string>& files) {
  CLI::App* command = app.add_subcommand(
      "hooks", "Write what each step of the hooks reads and writes as a page of Markdown");
  command->add_option("FILE", files, "Scenarios; expected traces among them are passed over")
      ->required();
  command->footer("Example:\n  camhook hooks scenarios/*.json > docs/hooks.md");
}

int run(int argc, char** argv) {
  ReplayOptions replayOptions;
  std::string dumpFile;
  std::vector<std::string> hookFiles;
  DiffOptions diffOptions;
  WhyOptions whyOptions;
  std::string whyFile;
  TagsOptions tagsOptions;
  DecideArguments decideArguments;
  CLI::App app("Replays scenarios through the camera hooks and shows what each hook did.",
               "camhook");
  app.set_version_flag("--version", "camhook " CAMHOOK_VERSION);
  app.require_subcommand(1);
  app.footer(
      "Example:\n  camhook replay scenarios/still_burst.json\n\n"
      "camhook COMMAND --help tells about a command.");
  addReplay(app, replayOptions);
  addDiff(app, diffOptions);
  addWhy(app, whyOptions, whyFile);
  addDecide(app, decideArguments);
  addMetadata(app, dumpFile);
  addTags(app, tagsOptions);
  addHooks(app, hookFiles);
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& request) {  // --help, --version
    return app.exit(request);
  } catch (const CLI::ParseError& error) {
    throw InputError("camhook: " + printable(error.what()));
  }
  if (app.got_subcommand("replay")) return replay(replayOptions);
  if (app.got_subcommand("diff")) return diff(diffOptions);
  if (app.got_subcommand("why")) {
    const WhyQuestion question =
        readFile(whyFile, [&](const std::string& text) { return readQuestion(text, whyOptions); });
    return why(std::cout, question, whyOptions, Style::forStandardOutput());
  }
  if (app.got_subcommand("decide")) return decide(std::move(decideArguments));
  if (app.got_subcommand("metadata")) return metadata(dumpFile);
  if (app.got_subcommand("hooks")) return hooks(hookFiles);
  return tags(tagsOptions);
}

}  // namespace

int main(int argc, char** argv) {
  std::ios::sync_with_stdio(false);
  try {
    const int status = run(argc, argv);
    std::cout.flush();
    if (status == 0 && !std::cout) {
      std::cerr << "camhook: the output could not be written\n";
      return 1;
    }
    return status;
  } catch (const InputError& error) {
    std::cerr << error.what() << '\n';
    return kInputRefused;
  }
}
