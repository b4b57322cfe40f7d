#include "tools/camhook/show/Page.h"

#include <algorithm>
#include <initializer_list>
#include <ostream>
#include <utility>

#include "host/AndroidTags.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/PlainText.h"
#include "tools/camhook/input/TagCatalogue.h"
#include "tools/camhook/show/JsonTrace.h"
#include "tools/camhook/show/PageParts.h"
#include "tools/camhook/show/Rectangles.h"
#include "tools/camhook/show/SensorModeName.h"
#include "tools/camhook/show/TraceText.h"

namespace camhook {
namespace {

/// Writes a text with each of some letters replaced.
void writeReplaced(std::ostream& out, std::string_view text,
                   std::initializer_list<std::pair<char, std::string_view>> replacements) {
  std::string letters;
  for (const auto& replacement : replacements) letters += replacement.first;
  for (std::size_t at = text.find_first_of(letters); at != std::string_view::npos;
       at = text.find_first_of(letters)) {
    out << text.substr(0, at);
    for (const auto& [letter, by] : replacements) {
      if (letter == text[at]) out << by;
    }
    text.remove_prefix(at + 1);
  }
  out << text;
}

void writeHtml(std::ostream& out, std::string_view text) {
  writeReplaced(out, text, {{'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}});
}

void writeParts(std::ostream& out, std::string_view element, const PageParts& parts) {
  out << '<' << element << '>';
  for (const std::string_view text : parts.texts) out << text;
  out << "</" << element << ">\n";
}

/// The page may run its own scripts and use its own styles, and nothing else. No text that a script
/// handles becomes markup.
void writeHead(std::ostream& out, std::string_view title) {
  out << "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
         "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; script-src '"
      << pageScripts().hash << "'; style-src '" << pageStyles().hash
      << "'; base-uri 'none'; form-action 'none'; require-trusted-types-for 'script'\">\n"
         "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
         "<meta name=\"color-scheme\" content=\"light dark\">\n<title>";
  writeHtml(out, title);
  out << "</title>\n";
  writeParts(out, "style", pageStyles());
  out << "</head>\n<body>\n";
}

/// JSON without raw control and bidirectional characters: apart from white space they can only be
/// in its strings, where they are escaped.
std::string plainJson(std::string json) {
  std::ranges::replace_if(
      json, [](char letter) { return letter == '\t' || letter == '\r'; }, ' ');
  std::istringstream lines(json);
  std::string plain;
  for (std::string line; std::getline(lines, line);) plain += printable(line) + '\n';
  return plain;
}

/// The names of the values of tags, {"ANDROID_CONTROL_CAPTURE_INTENT": {"2": "STILL_CAPTURE"}}.
Json valueNames() {
  Json::Object tags;
  for (const TagDescription& tag : kTagCatalogue) {
    const host::AndroidTag* const known = host::findAndroidTag(tag.value);
    if (known == nullptr || known->values.empty()) continue;
    Json::Object names;
    for (const auto& [number, name] : known->values)
      names.push_back({std::to_string(number), name});
    tags.push_back({std::string(tag.name), std::move(names)});
  }
  return tags;
}

Json modeNames() {
  Json::Object names;
  for (int mode = 0; mode <= hesk::NO_DECISION; ++mode) {
    const std::string_view name = sensorModeName(mode);
    if (!name.empty()) names.push_back({std::to_string(mode), name});
  }
  return names;
}

/// The names of commands by operation, {"hal3a.control": {"8": "getShadingTable"}}.
Json commandNamesByOperation() {
  Json operations;
  for (const auto& [op, command, name] : commandNames()) {
    operations[op][std::to_string(command)] = name;
  }
  return operations;
}

}  // namespace

Page::Page(std::ostream& out, std::string_view title, const ScenarioText& scenario)
    : mOut(out),
      mTitle(title),
      mScenario(scenario),
      mTextTrace(mText, Style(false), TextTrace::Records::debug, scenario.about()) {
  writeHead(mOut, mTitle);
  mOut << "<noscript><pre>";
}

void Page::writeText() {
  writeHtml(mOut, mText.str());
  mText.str("");
}

void Page::write(const CallTrace& trace) {
  mTextTrace.write(trace);
  writeText();
  mCalls += (mCalls.empty() ? "" : ",\n") + lineOfJson(jsonFromTrace(trace));
  addRectangles(trace);
  addDecoded(trace);
}

void Page::addRectangles(const CallTrace& trace) {
  const std::vector<NamedRectangle> rectangles = rectanglesOf(trace, mScenario.platform());
  if (rectangles.empty()) return;
  Json::List list;
  for (const auto& [name, rect] : rectangles) {
    list.push_back(Json::Object{{"name", name}, {"rect", jsonFromRect(rect)}});
  }
  mRectangles.push_back({std::to_string(trace.number), std::move(list)});
}

void Page::addDecoded(const CallTrace& trace) {
  Json::Object call;
  for (const ContainerTrace& container : trace.containers) {
    Json::Object tags;
    for (const std::uint32_t tag : changedTags(container)) {
      const auto lines = decodedLines(tag, container.after->entryFor(tag));
      if (!lines.empty()) tags.push_back({tagText(tag), lines});
    }
    if (!tags.empty()) call.push_back({std::string(container.name), std::move(tags)});
  }
  if (!call.empty()) mDecoded.push_back({std::to_string(trace.number), std::move(call)});
}

void Page::addDecision(std::size_t number, const Json& decision) {
  mDecisions.push_back({std::to_string(number), decision});
}

void Page::finish(const host::TextMap& eventStore) {
  mTextTrace.finish(eventStore);
  writeText();
  mOut << "</pre></noscript>\n<main id=\"page\"></main>\n"
          "<script type=\"application/json\" id=\"data\">";
  // Escaped, "<" cannot end the element.
  const auto write = [&](std::string_view json) { writeReplaced(mOut, json, {{'<', "\\u003c"}}); };
  write("{\"title\": " + jsonText(mTitle) + ",\n\"scenario\": ");
  write(plainJson(std::string(mScenario.text())));
  write(",\n\"trace\": {\"calls\": [");
  write(mCalls);
  write("], \"eventStore\": " + lineOfJson(jsonFromTextMap(eventStore)) + "}");
  write(",\n\"decisions\": " + lineOfJson(std::move(mDecisions)));
  write(",\n\"rectangles\": " + lineOfJson(std::move(mRectangles)));
  write(",\n\"decoded\": " + lineOfJson(std::move(mDecoded)));
  write(",\n\"values\": " + lineOfJson(valueNames()));
  write(",\n\"modes\": " + lineOfJson(modeNames()));
  write(",\n\"commands\": " + lineOfJson(commandNamesByOperation()) + "}");
  mOut << "</script>\n";
  writeParts(mOut, "script", pageScripts());
  mOut << "</body>\n</html>\n";
}

}  // namespace camhook
