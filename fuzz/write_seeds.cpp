// Writes what the fuzzers begin with:
//
//   write_seeds SCENARIOS FOLDER
//
// makes of each scenario a tape for every family of hooks that it calls, and a copy for the
// scenario reader; and dictionaries, the words that a fuzzer would be long in finding.

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <set>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "common/sensormode/SensorModeTables.h"
#include "common/tags/TagCatalogue.h"
#include "fuzz/CallFamily.h"
#include "fuzz/RunTape.h"
#include "fuzz/Tape.h"
#include "tools/camhook/input/ScenarioKeys.h"
#include "tools/camhook/input/ScenarioReader.h"

namespace {

using namespace camhook;
using std::filesystem::path;

constexpr std::string_view kReader = "scenario_reader";

using Words = std::set<std::string>;

std::string contentOf(const path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

void write(const path& file, std::string_view bytes) {
  std::filesystem::create_directories(file.parent_path());
  std::ofstream out(file, std::ios::binary);
  out << bytes;
  out.close();
  if (!out) throw std::runtime_error("cannot write " + file.string());
}

std::string_view textOf(const std::vector<std::uint8_t>& tape) {
  return {reinterpret_cast<const char*>(tape.data()), tape.size()};
}

void writeTapes(const fuzz::HookRun& run, const path& folder, const std::string& name) {
  for (const fuzz::CallFamily& family : fuzz::callFamilies()) {
    const auto tape = fuzz::writeRun(family, run);
    if (fuzz::readRun(family, tape).scenario.calls.empty()) continue;
    write(folder / family.name / name, textOf(tape));
  }
}

void addTexts(Words& words, const host::TextMap& texts) {
  for (const auto& [key, value] : texts) words.insert({key, value});
}

/// What properties and events are called and hold.
void addTexts(Words& words, const Scenario& scenario) {
  addTexts(words, scenario.platform.properties);
  addTexts(words, scenario.platform.eventStore);
  for (const auto& [call, arguments] : scenario.calls) {
    if (const auto* event = std::get_if<SetEvent>(&call)) words.insert({event->key, event->value});
    if (const auto* set = std::get_if<SetProperty>(&call)) words.insert({set->name, set->value});
  }
}

void addTableTexts(Words& words) {
  for (const SensorModeTable& table : hesk::sensorModeTables()) {
    words.insert(table.productName);
    for (const auto* rules :
         {&table.sensor0Preview, &table.sensor0Video, &table.sensor1Preview, &table.sensor1Video}) {
      for (const SensorModeCfg& rule : *rules) words.insert(rule.appType);
    }
  }
}

/// As they stand on a tape.
Words tapesOf(const Words& texts) {
  Words tapes;
  for (std::string text : texts) {
    fuzz::TapeWriter writer;
    transfer(writer, text);
    tapes.emplace(textOf(writer.tape()));
  }
  return tapes;
}

Words wordsOfScenarios() {
  Words words;
  const auto addKeys = [&](const ObjectKeys& object) {
    words.emplace(object.object);
    for (const std::string_view key : object.keys) words.emplace('"' + std::string(key) + '"');
  };
  for (const ObjectKeys& object : scenarioObjects()) addKeys(object);
  for (const ObjectKeys& call : scenarioCalls()) addKeys(call);
  for (const hesk::TagDescription& tag : hesk::kTagCatalogue) {
    words.emplace(tag.name);
    words.emplace('"' + std::string(tag.type) + '"');
  }
  words.insert({"\"nan\"", "\"inf\"", "\"-inf\""});
  return words;
}

void writeDictionary(const path& file, const Words& words) {
  std::string lines;
  for (const std::string& word : words) {
    lines += '"';
    for (const char letter : word) {
      char escape[5];
      std::snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned char>(letter));
      lines += escape;
    }
    lines += "\"\n";
  }
  write(file, lines);
}

/// The seeds of a target, as it is told them one by one.
void writeList(const path& folder, std::string_view target) {
  std::filesystem::create_directories(folder / target);
  std::set<std::string> seeds;
  for (const auto& seed : std::filesystem::directory_iterator(folder / target)) {
    seeds.insert(seed.path().string());
  }
  std::string list;
  for (const std::string& seed : seeds) list += (list.empty() ? "" : ",") + seed;
  write(folder / (std::string(target) + ".list"), list);
}

/// The scenarios' files, in the same order on every machine.
std::set<path> scenarioFiles(const path& folder) {
  std::set<path> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    const path& file = entry.path();
    if (file.extension() == ".json" && file.stem().extension() != ".trace") files.insert(file);
  }
  return files;
}

void writeSeeds(const path& scenarios, const path& folder) {
  std::filesystem::remove_all(folder);
  Words texts;
  // The forms of traces by turns, so that the fuzzers know each.
  constexpr fuzz::TraceForm kForms[] = {fuzz::TraceForm::none, fuzz::TraceForm::text,
                                        fuzz::TraceForm::json};
  std::size_t count = 0;
  for (const path& file : scenarioFiles(scenarios)) {
    const std::string content = contentOf(file);
    const Scenario scenario = readScenario(content);
    const fuzz::TraceForm form = kForms[count++ % std::size(kForms)];
    write(folder / kReader / file.stem(), content);
    writeTapes({.trace = form, .scenario = scenario}, folder, file.stem().string());
    addTexts(texts, scenario);
  }
  addTableTexts(texts);
  texts.erase("");
  for (const fuzz::CallFamily& family : fuzz::callFamilies()) {
    writeDictionary(folder / (std::string(family.name) + ".dict"), tapesOf(texts));
    writeList(folder, family.name);
  }
  writeList(folder, kReader);
  writeDictionary(folder / (std::string(kReader) + ".dict"), wordsOfScenarios());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: write_seeds SCENARIOS FOLDER\n";
    return 2;
  }
  try {
    writeSeeds(argv[1], argv[2]);
  } catch (const std::exception& error) {
    std::cerr << "write_seeds: " << error.what() << '\n';
    return 1;
  }
  return 0;
}
