// The trace for people, where it shows less than there is.

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "tests/support/TestMetadata.h"
#include "tools/camhook/show/TextTrace.h"

namespace {

using namespace camhook;

std::string textOf(const CallTrace& trace) {
  std::ostringstream out;
  TextTrace(out, Style(false), TextTrace::Records::debug, 1).write(trace);
  return out.str();
}

TEST(TextTrace, TellsAChangeBehindTheItemsItShows) {
  const auto metadataEndingIn = [](const char* last) {
    return metadataOf(R"({"HESK_CONTROL_ISO": [1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, )" +
                      std::string(last) + R"(], "HESK_CONTROL_EV": "nan"})");
  };
  CallTrace trace;
  trace.call = "call";
  trace.containers.push_back({"meta", metadataEndingIn("13"), metadataEndingIn("14")});
  const std::string shown = "[1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, ... 13 in all]";
  EXPECT_EQ(textOf(trace), "1/1  call\n  meta  1 unchanged\n    HESK_CONTROL_ISO  " + shown +
                               "  →  " + shown + " (differs behind)\n\n");
}

TEST(TextTrace, LeavesNoControlCharacterToTheTerminal) {
  CallTrace trace;
  trace.call = "setEvent";
  trace.arguments = {{"key", "A"}, {"value", "line\nline"}};
  trace.effects = {{"eventStore.set", {{"key", std::string("\x1b[31m")}}}};
  trace.logs.emplace_back().message = "a\rb";
  const std::string text = textOf(trace);
  for (const char* part : {"value line\\u000aline", "key=\\u001b[31m", "a\\u000db"}) {
    EXPECT_NE(text.find(part), std::string::npos) << part << " in " << text;
  }
}

}  // namespace
