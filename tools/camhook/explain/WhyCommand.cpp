#include "tools/camhook/explain/WhyCommand.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <ostream>
#include <vector>

#include "tools/camhook/explain/Why.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/ScenarioReader.h"
#include "tools/camhook/run/TraceFilter.h"

namespace camhook {
namespace {

constexpr std::size_t kMostLetters = 40;  // shown of a value, about
constexpr std::size_t kMostShown = 4;     // shown of an input, unless all are
constexpr std::size_t kLineWidth = 80;

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
    const std::string item = (i > 0 ? ", " : "") + lineOfJson(items[i]);
    if (text.size() + item.size() > kMostLetters) {
      return text + ", ... " + std::to_string(items.size()) + " in all]";
    }
    text += item;
  }
  return text + "]";
}

/// Any value: an entry, a text, a number, null.
std::string valueText(const Json& value) {
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

using Row = std::vector<std::string>;

/// Writes rows that line up. Where one is too wide, each goes onto a second line behind its first
/// `head` cells.
void writeRows(std::ostream& out, const std::vector<Row>& rows, std::size_t head,
               std::size_t indent) {
  Columns columns;
  for (const Row& row : rows) columns.add(row);
  const std::vector<std::string> lines = columns.lines();
  const auto fits = [indent](const std::string& line) {
    return indent + displayWidth(line) <= kLineWidth;
  };
  if (std::ranges::all_of(lines, fits)) return columns.write(out, indent);
  for (const Row& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (row[i].empty()) continue;
      if (i == head) out << '\n';
      out << std::string(i == 0 ? indent : i == head ? indent + 2 : 2, ' ') << row[i];
    }
    out << '\n';
  }
}

/// Prints an explanation.
class Text {
 public:
  Text(std::ostream& out, Style style, bool all) : mOut(out), mStyle(style), mAll(all) {}

  /// `want` is empty where nothing is wanted.
  void write(const Explanation& explanation, const std::string& want) {
    const Json& document = explanation.document;
    writeTitle(document);
    if (!document["container"].is_null()) writeWrites(document["writes"], document["after"]);
    writeInputs(document["inputs"], !want.empty());
    if (!want.empty()) writeWanted(explanation, want);
  }

 private:
  void writeTitle(const Json& document) {
    mOut << mStyle.title(document["tag"].get<std::string>()) << '\n';
    mOut << "  ";
    const bool isTag = !document["container"].is_null();
    if (isTag) mOut << document["container"].get<std::string>() << " of ";
    mOut << "call " << document["call"].get<std::size_t>() << ", "
         << document["hook"].get<std::string>();
    if (!document["sensor"].is_null()) mOut << ", sensor " << lineOfJson(document["sensor"]);
    mOut << '\n';
    Columns values;
    if (isTag) values.add({mStyle.heading("before"), valueText(document["before"])});
    values.add({mStyle.heading("after"), mStyle.fresh(valueText(document["after"]))});
    values.write(mOut, 2);
  }

  void writeWrites(const Json& writes, const Json& after) {
    mOut << mStyle.heading("written") << '\n';
    std::vector<Row> rows;
    for (std::size_t i = 0; i < writes.size(); ++i) {
      const Json& write = writes[i];
      const bool holds = i + 1 == writes.size() && write["value"] == after;
      const std::string value =
          write["value"].is_null() ? std::string("cleared") : valueText(write["value"]);
      const std::string place =
          write["file"].get<std::string>() + ":" + std::to_string(write["line"].get<int>());
      rows.push_back({holds ? mStyle.fresh(value) : mStyle.faint(value), holds ? "holds" : "",
                      write["step"].get<std::string>(), mStyle.faint(place)});
    }
    if (rows.empty()) rows.push_back({"by no step of this call"});
    writeRows(mOut, rows, 2, 2);
  }

  void writeInput(const Json& input) {
    Row row{inputText(input)};
    if (input["kind"] != "call") row.push_back(mStyle.faint(valueText(input["value"])));
    writeRows(mOut, {row}, 1, 2);
    std::vector<Row> rows;
    const Json& changes = input["changes"];
    for (std::size_t i = 0; i < changes.size(); ++i) {
      if (i == kMostShown && !mAll) {
        rows.push_back({mStyle.faint("and " + std::to_string(changes.size() - i) +
                                     " other outcomes (--all)")});
        break;
      }
      rows.push_back({toText(input, changes[i]["to"]), "\u2192",
                      mStyle.fresh(valueText(changes[i]["gives"]))});
    }
    writeRows(mOut, rows, 1, 4);
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
    std::vector<Row> rows;
    for (const Json& input : inputs) {
      if (isShown(input)) continue;
      rows.push_back({inputText(input)});
      if (input["kind"] != "call") rows.back().push_back(mStyle.faint(valueText(input["value"])));
    }
    writeRows(mOut, rows, 1, 2);
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
      std::vector<Row> rows;
      for (const Json& change : pair["changes"]) {
        rows.push_back({rows.empty() ? "   " : "and", inputText(change), "\u2192",
                        mStyle.fresh(toText(change, change["to"]))});
      }
      writeRows(mOut, rows, 2, 2);
    }
  }

  std::ostream& mOut;
  Style mStyle;
  bool mAll;
};

}  // namespace

WhyQuestion readQuestion(std::string_view text, const WhyOptions& options) {
  WhyQuestion asking;
  Question& question = asking.question;
  question.document = parseJson(text);
  question.scenario = readScenario(text);
  question.call = callFromText(options.call, question.scenario.calls.size());
  for (const std::string& tag : options.tags) {
    if (tag == "return") {
      asking.asked.emplace_back();
      continue;
    }
    const std::string container = containerFromText(options.container, question.scenarioCall());
    asking.asked.push_back({container, tagFromText(tag)});
  }
  return asking;
}

int why(std::ostream& out, const WhyQuestion& asking, const WhyOptions& options, Style style) {
  std::optional<Json> want;
  if (!options.want.empty()) {
    if (asking.asked.size() > 1) throw InputError("camhook: --want: takes one TAG");
    try {
      want = parseJson(options.want);
    } catch (const InputError& error) {
      throw InputError("camhook: --want: " + std::string(error.what()));
    }
  }
  const std::vector<Explanation> explanations = explain(asking.question, asking.asked, want);
  if (options.json) {
    Json documents = Json::array();
    for (const Explanation& explanation : explanations) documents.push_back(explanation.document);
    writeJson(out, documents.size() == 1 ? documents.front() : documents);
  } else {
    for (const Explanation& explanation : explanations) {
      if (&explanation != &explanations.front()) out << '\n';
      Text(out, style, options.all).write(explanation, options.want);
    }
  }
  if (!want) return 0;
  const auto& document = explanations.front().document;
  const auto together = document.find("together");
  return together == document.end() || !together->empty() ? 0 : 1;
}

}  // namespace camhook
