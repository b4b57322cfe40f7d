#include "tools/camhook/explain/WhyCommand.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <numeric>
#include <optional>
#include <ostream>
#include <utility>
#include <vector>

#include "common/tags/TagCatalogue.h"
#include "tools/camhook/explain/Why.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/ScenarioReader.h"

namespace camhook {
namespace {

constexpr std::size_t kMostItems = 8;    // shown of an entry
constexpr std::size_t kMostChanges = 4;  // shown of an input, unless all are

/// How many letters must be put in, left out or replaced to make one text of the other.
std::size_t editDistance(std::string_view left, std::string_view right) {
  std::vector<std::size_t> row(right.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < left.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i + 1);
    for (std::size_t j = 0; j < right.size(); ++j) {
      const std::size_t replaced = diagonal + (left[i] != right[j] ? 1 : 0);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
}

/// "; near: A, B", empty where no name is like it.
std::string nearNames(std::string_view text) {
  constexpr std::size_t kMostNames = 3;
  std::vector<std::pair<std::size_t, std::string_view>> names;
  for (const hesk::TagDescription& tag : hesk::kTagCatalogue) {
    // A part of a name is as good as a slip in it.
    const bool isPart = text.size() > 3 && tag.name.find(text) != std::string_view::npos;
    const std::size_t distance = isPart ? 0 : editDistance(text, tag.name);
    if (distance <= tag.name.size() / 4) names.emplace_back(distance, tag.name);
  }
  std::ranges::stable_sort(names, {}, [](const auto& name) { return name.first; });
  names.resize(std::min(names.size(), kMostNames));
  std::string list;
  for (const auto& [distance, name] : names) {
    list += (list.empty() ? "; near: " : ", ") + std::string(name);
  }
  return list;
}

std::size_t callFromText(const std::string& text, std::size_t count) {
  if (text == "last" && count > 0) return count - 1;
  std::size_t number = 0;
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool isNumber = error == std::errc() && stop == text.data() + text.size();
  if (text != "last" && !isNumber) {
    throw InputError("CALL must be a number from 1, or last, not " + jsonText(text));
  }
  if (number < 1 || number > count) {
    throw InputError("there is no call " + text + ": the scenario has " + std::to_string(count));
  }
  return number - 1;
}

std::string containerFromText(const std::string& text, const ScenarioCall& scenarioCall) {
  Call call = scenarioCall.call;
  std::string names;
  std::string last;
  for (const char* name : {"meta", "app", "hal", "out"}) {
    if (containerOf(call, name) == nullptr) continue;
    names += (names.empty() ? "" : ", ") + std::string(name);
    last = name;
    if (text == name) return text;
  }
  if (names.empty()) throw InputError("the call has no container");
  if (!text.empty()) {
    throw InputError("the call has no container " + jsonText(text) + "; it has " + names);
  }
  return last;  // "meta", or what the capture hook writes
}

std::string itemsText(const Json& items) {
  if (items.size() == 1) return lineOfJson(items.front());
  std::string text = "[";
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (i == kMostItems) return text + ", ... " + std::to_string(items.size()) + " in all]";
    text += (i > 0 ? ", " : "") + lineOfJson(items[i]);
  }
  return text + "]";
}

/// Any value: an entry, a text, a number, null.
std::string valueText(const Json& value) {
  constexpr std::size_t kMostLetters = 40;
  if (value.is_null()) return "absent";
  if (value.is_object() && value.contains("items")) return itemsText(value["items"]);
  std::string text = lineOfJson(value);
  if (text.size() > kMostLetters) text = text.substr(0, kMostLetters) + "...";
  return text;
}

std::string inputText(const Json& input) {
  const auto kind = input["kind"].get<std::string>();
  if (kind == "provider") return "provider fpsCap";
  if (kind == "call") {
    return "call " + std::to_string(input["index"].get<std::size_t>()) + " " +
           input["hook"].get<std::string>();
  }
  const auto key = input["key"].get<std::string>();
  if (kind == "metadata") return input["container"].get<std::string>() + " " + key;
  if (kind == "static") {
    return "static " + key + " of device " + std::to_string(input["device"].get<int>());
  }
  return kind + " " + key;
}

std::string toText(const Json& input, const Json& to) {
  return input["kind"] == "call" ? "left out" : valueText(to);
}

/// Prints an explanation.
class Text {
 public:
  Text(std::ostream& out, Style style, bool all) : mOut(out), mStyle(style), mAll(all) {}

  void write(const Explanation& explanation, const WhyOptions& options) {
    const Json& document = explanation.document;
    writeTitle(document);
    writeWrites(document["writes"], document["after"]);
    writeInputs(document["inputs"], !options.want.empty());
    if (!options.want.empty()) writeWanted(explanation, options.want);
  }

 private:
  void writeTitle(const Json& document) {
    mOut << mStyle.title(document["tag"].get<std::string>()) << '\n';
    mOut << "  " << document["container"].get<std::string>() << " of call "
         << document["call"].get<std::size_t>() << ", " << document["hook"].get<std::string>();
    if (!document["sensor"].is_null()) mOut << ", sensor " << lineOfJson(document["sensor"]);
    mOut << '\n';
    Columns values;
    values.add({mStyle.heading("before"), valueText(document["before"])});
    values.add({mStyle.heading("after"), mStyle.fresh(valueText(document["after"]))});
    values.write(mOut, 2);
  }

  void writeWrites(const Json& writes, const Json& after) {
    mOut << mStyle.heading("written") << '\n';
    Columns columns;
    for (std::size_t i = 0; i < writes.size(); ++i) {
      const Json& write = writes[i];
      const bool holds = i + 1 == writes.size() && write["value"] == after;
      const std::string value =
          write["value"].is_null() ? std::string("cleared") : valueText(write["value"]);
      const auto step = write["step"].get<std::string>();
      const std::string place =
          write["file"].get<std::string>() + ":" + std::to_string(write["line"].get<int>());
      columns.add({holds ? mStyle.fresh(value) : mStyle.faint(value), step,
                   mStyle.faint(place) + (holds ? "  holds" : "")});
    }
    if (columns.isEmpty()) columns.add({"by no step of this call"});
    columns.write(mOut, 2);
  }

  void writeInput(const Json& input) {
    mOut << "  " << inputText(input);
    if (input["kind"] != "call") mOut << "  " << mStyle.faint(valueText(input["value"]));
    mOut << '\n';
    Columns columns;
    const Json& changes = input["changes"];
    for (std::size_t i = 0; i < changes.size(); ++i) {
      if (i == kMostChanges && !mAll) {
        columns.add({mStyle.faint("and " + std::to_string(changes.size() - i) +
                                  " other outcomes (--all)")});
        break;
      }
      columns.add({toText(input, changes[i]["to"]), "\u2192",
                   mStyle.fresh(valueText(changes[i]["gives"]))});
    }
    columns.write(mOut, 4);
  }

  void writeInputs(const Json& inputs, bool isWanted) {
    const auto isShown = [isWanted](const Json& input) {
      return isWanted ? !input["changes"].empty() : input["counts"].get<bool>();
    };
    const auto shown = std::ranges::count_if(inputs, isShown);
    if (shown > 0) mOut << mStyle.heading(isWanted ? "what gives it" : "what counts") << '\n';
    for (const Json& input : inputs) {
      if (isShown(input)) writeInput(input);
    }
    const auto rest = static_cast<std::ptrdiff_t>(inputs.size()) - shown;
    if (isWanted || rest == 0) return;
    mOut << mStyle.heading("what does not count");
    mOut << "  " << rest << " inputs" << (mAll ? "" : " (--all)") << '\n';
    if (!mAll) return;
    Columns columns;
    for (const Json& input : inputs) {
      if (isShown(input)) continue;
      columns.add({inputText(input),
                   mStyle.faint(input["kind"] == "call" ? "" : valueText(input["value"]))});
    }
    columns.write(mOut, 2);
  }

  void writeWanted(const Explanation& explanation, const std::string& want) {
    const auto found = explanation.document.find("together");
    if (found == explanation.document.end()) return;
    if (found->empty()) {
      mOut << mStyle.alarming("nothing found") << " that gives " << printable(want) << ": "
           << explanation.tried << " changes and " << explanation.triedPairs
           << " pairs of them tried\n";
      return;
    }
    mOut << mStyle.heading("what gives it together") << '\n';
    for (const Json& pair : *found) {
      Columns columns;
      for (const Json& change : pair["changes"]) {
        columns.add({columns.isEmpty() ? "" : "and", inputText(change), "\u2192",
                     mStyle.fresh(toText(change, change["to"]))});
      }
      columns.write(mOut, 2);
    }
  }

  std::ostream& mOut;
  Style mStyle;
  bool mAll;
};

}  // namespace

Question readQuestion(std::string_view text, const WhyOptions& options) {
  Question question;
  question.document = parseJson(text);
  question.scenario = readScenario(text);
  question.call = callFromText(options.call, question.scenario.calls.size());
  question.container = containerFromText(options.container, question.scenarioCall());
  try {
    question.tag = tagFromText(options.tag, Place());
  } catch (const InputError&) {
    throw InputError("unknown tag " + jsonText(options.tag) + nearNames(options.tag));
  }
  return question;
}

int why(std::ostream& out, const Question& question, const WhyOptions& options, Style style) {
  std::optional<Json> want;
  if (!options.want.empty()) {
    try {
      want = parseJson(options.want);
    } catch (const InputError& error) {
      throw InputError("camhook: --want: " + std::string(error.what()));
    }
  }
  const Explanation explanation = explain(question, want);
  const Json& document = explanation.document;
  if (options.json) {
    writeJson(out, document);
    out << '\n';
  } else {
    Text(out, style, options.all).write(explanation, options);
  }
  if (!want) return 0;
  const auto together = document.find("together");
  return together == document.end() || !together->empty() ? 0 : 1;
}

}  // namespace camhook
