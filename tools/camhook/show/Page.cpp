#include "tools/camhook/show/Page.h"

#include <ostream>
#include <utility>

#include "host/AndroidTags.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/TagCatalogue.h"
#include "tools/camhook/show/JsonTrace.h"
#include "tools/camhook/show/PageParts.h"
#include "tools/camhook/show/Rectangles.h"
#include "tools/camhook/show/SensorModeName.h"
#include "tools/camhook/show/TraceText.h"

namespace camhook {
namespace {

std::string replaced(std::string_view text, char letter, std::string_view by) {
  std::string result;
  for (const char each : text) {
    if (each == letter) {
      result += by;
    } else {
      result += each;
    }
  }
  return result;
}

std::string html(std::string_view text) {
  return replaced(replaced(text, '&', "&amp;"), '<', "&lt;");
}

/// JSON in a script element: an escaped "<" cannot end the element.
std::string script(std::string_view json) { return replaced(json, '<', "\\u003c"); }

/// Adds the names of tags' values, of sensor modes and of commands:
/// {"values": {"ANDROID_CONTROL_CAPTURE_INTENT": {"2": "STILL_CAPTURE"}}, ...}.
void addNames(Json& data) {
  for (const TagDescription& tag : kTagCatalogue) {
    const host::AndroidTag* const known = host::findAndroidTag(tag.value);
    if (known == nullptr) continue;
    for (const auto& [number, name] : known->values) {
      data["values"][tag.name][std::to_string(number)] = name;
    }
  }
  for (const auto& [number, name] : kSensorModes) data["modes"][std::to_string(number)] = name;
  for (const auto& [op, command, name] : kCommandNames) {
    data["commands"][op][std::to_string(command)] = name;
  }
}

}  // namespace

Page::Page(std::ostream& out, std::string_view title, const ScenarioText& scenario)
    : mOut(out),
      mTitle(title),
      mScenario(scenario),
      mTextTrace(mText, Style(false), kAllLevels, scenario.about()) {}

void Page::write(const CallTrace& trace) {
  mTextTrace.write(trace);
  mCalls += (mCalls.empty() ? "" : ",\n") + script(lineOfJson(jsonFromTrace(trace)));
  addRectangles(trace);
  addDecoded(trace);
}

void Page::addRectangles(const CallTrace& trace) {
  Json::List list;
  for (const auto& [name, rect] : rectanglesOf(trace, mScenario.platform())) {
    list.push_back({{"name", name}, {"rect", jsonFromRect(rect)}});
  }
  if (!list.empty()) mRectangles.push_back({std::to_string(trace.number), std::move(list)});
}

void Page::addDecoded(const CallTrace& trace) {
  Json call;
  for (const ContainerTrace& container : trace.containers) {
    for (const std::uint32_t tag : changedTags(container)) {
      const auto lines = decodedLines(tag, container.after->entryFor(tag));
      if (!lines.empty()) call[container.name][tagText(tag)] = lines;
    }
  }
  if (!call.isNull()) mDecoded.push_back({std::to_string(trace.number), std::move(call)});
}

void Page::addDecision(std::size_t number, const Json& decision) {
  mDecisions.push_back({std::to_string(number), decision});
}

void Page::finish(const host::TextMap& eventStore) {
  mTextTrace.finish(eventStore);
  // The page may run its own scripts and use its own styles, and nothing else. No text that a
  // script handles becomes markup.
  mOut << "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
          "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; script-src '"
       << pageScripts().hash << "'; style-src '" << pageStyles().hash
       << "'; base-uri 'none'; form-action 'none'; require-trusted-types-for 'script'\">\n"
          "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
          "<meta name=\"color-scheme\" content=\"light dark\">\n<title>"
       << html(mTitle) << "</title>\n<style>" << pageStyles().text
       << "</style>\n</head>\n<body>\n<noscript><pre>" << html(mText.str())
       << "</pre></noscript>\n<main id=\"page\"></main>\n"
          "<script type=\"application/json\" id=\"data\">";
  mOut << "{\"title\": " << script(jsonText(mTitle))
       << ",\n\"scenario\": " << script(lineOfJson(parseJson(mScenario.text())))
       << ",\n\"trace\": {\"calls\": [" << mCalls
       << "], \"eventStore\": " << script(lineOfJson(jsonFromTextMap(eventStore))) << "}";
  Json others = {{"decisions", std::move(mDecisions)},
                 {"rectangles", std::move(mRectangles)},
                 {"decoded", std::move(mDecoded)}};
  addNames(others);
  for (const auto& [name, json] : others.members()) {
    mOut << ",\n" << jsonText(name) << ": " << script(lineOfJson(json));
  }
  mOut << "}</script>\n<script>" << pageScripts().text << "</script>\n</body>\n</html>\n";
}

}  // namespace camhook
