#include <algorithm>
#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

#include "tools/camhook/explain/Why.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/PlainText.h"

namespace camhook {
namespace {

constexpr std::size_t kMostLetters = 40;  // shown of a value, about
constexpr std::size_t kMostShown = 4;     // outcomes shown of an input, unless all are

std::string itemsText(const Json& items) {
  if (items.size() == 1) return lineOfJson(items[0]);
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

std::string valueText(const AnyValue& value) {
  if (value.isAbsent()) return "absent";
  if (!value.entry().isEmpty()) return itemsText(jsonFromItems(value.entry()));
  std::string text = lineOfJson(value.json());
  if (text.size() > kMostLetters) text = text.substr(0, kMostLetters) + "...";
  return text;
}

class Text {
 public:
  Text(std::ostream& out, const Question& question, const Explanation& explanation, bool all,
       Style style)
      : mOut(out), mQuestion(question), mExplanation(explanation), mAll(all), mStyle(style) {}

  void write(const std::string& want) {
    writeTitle();
    if (!mQuestion.container.empty()) writeWrites();
    writeFindings(!want.empty());
    if (mExplanation.together) writeTogether(want);
  }

 private:
  [[nodiscard]] std::string inputText(const Input& input) const {
    const Json json = jsonFromInput(input, mQuestion);
    const auto kind = json["kind"].text();
    switch (input.kind) {
      case Input::Kind::provider: return "provider fpsCap";
      case Input::Kind::call:
        return "call " + std::to_string(input.number + 1) + " " + json["hook"].text();
      case Input::Kind::metadata: return input.key + " " + tagText(input.tag);
      case Input::Kind::statics:
        return "static " + tagText(input.tag) + " of device " + std::to_string(input.number);
      default: return kind + " " + printable(input.key);
    }
  }

  static std::string toText(const Input& input, const AnyValue& to) {
    return input.kind == Input::Kind::call ? "left out" : valueText(to);
  }

  /// An input with its value; a call that may be left out has none.
  [[nodiscard]] std::vector<std::string> cellsOf(const Explanation::Finding& finding) const {
    std::vector<std::string> cells{inputText(finding.input)};
    if (finding.input.kind != Input::Kind::call) {
      cells.push_back(mStyle.faint(valueText(finding.value)));
    }
    return cells;
  }

  void writeTitle() {
    const bool isTag = !mQuestion.container.empty();
    mOut << mStyle.title(isTag ? tagText(mQuestion.tag) : "return") << "\n  ";
    if (isTag) mOut << mQuestion.container << " of ";
    mOut << "call " << mQuestion.call + 1 << ", " << nameOf(mQuestion.askedCall());
    if (const auto sensor = sensorOf(mQuestion.askedCall())) mOut << ", sensor " << *sensor;
    mOut << '\n';
    Columns values;
    if (isTag) values.add({mStyle.heading("before"), valueText(mExplanation.before)});
    values.add({mStyle.heading("after"), mStyle.fresh(valueText(mExplanation.after))});
    values.write(mOut, 2);
  }

  void writeWrites() {
    mOut << mStyle.heading("written") << '\n';
    Columns rows;
    for (const auto& [value, step] : mExplanation.writes) {
      const bool holds = &value == &mExplanation.writes.back().value && value == mExplanation.after;
      const std::string text = value.isAbsent() ? "cleared" : valueText(value);
      rows.add({holds ? mStyle.fresh(text) : mStyle.faint(text), holds ? "holds" : "", step.name,
                mStyle.faint(step.file + ":" + std::to_string(step.line))});
    }
    if (rows.isEmpty()) rows.add({"by no step of this call"});
    rows.write(mOut, 2);
  }

  void writeFinding(const Explanation::Finding& finding) {
    Columns head;
    head.add(cellsOf(finding));
    head.write(mOut, 2);
    Columns rows;
    for (std::size_t i = 0; i < finding.outcomes.size(); ++i) {
      if (i == kMostShown && !mAll) {
        rows.add({mStyle.faint("and " + std::to_string(finding.outcomes.size() - i) +
                               " other outcomes (--all)")});
        break;
      }
      const auto& [to, gives] = finding.outcomes[i];
      rows.add({toText(finding.input, to), "\u2192", mStyle.fresh(valueText(gives))});
    }
    rows.write(mOut, 4);
  }

  void writeFindings(bool isWanted) {
    const auto isShown = [isWanted](const Explanation::Finding& finding) {
      return isWanted ? !finding.outcomes.empty() : finding.affects;
    };
    const auto& findings = mExplanation.findings;
    const auto shown = std::ranges::count_if(findings, isShown);
    if (shown > 0) mOut << mStyle.heading(isWanted ? "what gives it" : "what counts") << '\n';
    for (const Explanation::Finding& finding : findings) {
      if (isShown(finding)) writeFinding(finding);
    }
    const auto rest = static_cast<std::ptrdiff_t>(findings.size()) - shown;
    if (isWanted || rest == 0) return;
    mOut << mStyle.heading("what does not count");
    mOut << "  " << rest << " inputs" << (mAll ? "" : " (--all)") << '\n';
    if (!mAll) return;
    Columns rows;
    for (const Explanation::Finding& finding : findings) {
      if (!isShown(finding)) rows.add(cellsOf(finding));
    }
    rows.write(mOut, 2);
  }

  void writeTogether(const std::string& want) {
    if (mExplanation.together->empty()) {
      mOut << mStyle.alarming("nothing found") << " that gives " << printable(want) << ": "
           << mExplanation.tried << " changes and " << mExplanation.triedPairs
           << " pairs of them tried\n";
      return;
    }
    mOut << mStyle.heading("what gives it together") << '\n';
    for (const std::vector<Change>& changes : *mExplanation.together) {
      Columns rows;
      for (const Change& change : changes) {
        rows.add({&change == &changes.front() ? "   " : "and", inputText(change.input), "\u2192",
                  mStyle.fresh(toText(change.input, change.to))});
      }
      rows.write(mOut, 2);
    }
  }

  std::ostream& mOut;
  const Question& mQuestion;
  const Explanation& mExplanation;
  bool mAll;
  Style mStyle;
};

}  // namespace

void writeText(std::ostream& out, const Question& question, const Explanation& explanation,
               const std::string& want, bool all, Style style) {
  Text(out, question, explanation, all, style).write(want);
}

}  // namespace camhook
