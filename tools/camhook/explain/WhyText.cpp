#include <algorithm>
#include <cstddef>
#include <ostream>
#include <set>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "common/tags/Tags.h"

#include "tools/camhook/explain/SensorModeRules.h"
#include "tools/camhook/explain/Why.h"
#include "tools/camhook/input/Joined.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/PlainText.h"

namespace camhook {
namespace {

constexpr std::size_t kMaxLetters = 40;  // limit for a value's text
constexpr std::size_t kMaxShown = 4;     // limit for the outcomes of an input without --all

std::string valueText(const Json& value) {
  if (value.isNull()) return "absent";
  const Json* const items = value.find("items");
  if (items == nullptr) return printable(lineOfJson(value), kMaxLetters);
  std::string text = lineOfJson(items->size() == 1 ? (*items)[0] : *items);
  if (text.size() <= kMaxLetters) return text;
  return printable(text, kMaxLetters) + " (" + std::to_string(items->size()) + " items)";
}

/// A list in a sentence: "A, B and C", at most three.
std::string listText(std::vector<std::string> names) {
  constexpr std::size_t kMaxNames = 3;
  if (names.size() > kMaxNames) {
    names[kMaxNames] = std::to_string(names.size() - kMaxNames) + " more";
    names.resize(kMaxNames + 1);
  }
  return listed(std::move(names), " and ");
}

using Kind = Input::Kind;
using Finding = Explanation::Finding;

/// Order of the text: 0 for a present input whose absence changes the tag, 1 for another present
/// one, 2 for an absent one.
int rankOf(const Finding& finding) {
  if (finding.value.isNull()) return 2;
  return finding.affectsIfAbsent ? 0 : 1;
}

class Text {
 public:
  Text(std::ostream& out, const Question& question, const Explanation& explanation, bool all,
       Style style)
      : mOut(out), mQuestion(question), mExplanation(explanation), mAll(all), mStyle(style) {}

  void write(const std::string& want) {
    writeTitle();
    if (!mQuestion.container.empty()) writeWrites();
    if (want.empty()) {
      writeFindings(false);
    } else {
      writeWanted(want);
    }
  }

  void writeWanted(const std::string& want) {
    writeFindings(true);
    if (mExplanation.pairs) writePairs(want);
  }

 private:
  [[nodiscard]] std::string inputText(const Input& input) const {
    const Json json = jsonFromInput(input, mQuestion);
    std::string text = json[input.kind == Kind::metadata ? "container" : "kind"].text();
    if (input.kind == Kind::call) {
      return text + " " + std::to_string(input.number + 1) + " " + json["hook"].text();
    }
    if (input.kind == Kind::provider) return text + " fpsCap";
    text.append(" ").append(printable(json["key"].text()));
    if (input.kind == Kind::statics) text += " of device " + std::to_string(input.number);
    return text;
  }

  /// The tag's value or the return value; a sensor mode with its name.
  [[nodiscard]] std::string answerText(const Json& value) const {
    const bool isMode = mQuestion.container.empty() &&
                        std::holds_alternative<DecideSensorScenario>(mQuestion.askedCall());
    return isMode ? sensorModeText(*value.integer<std::int32_t>()) : valueText(value);
  }

  static std::string toText(const Change& change) {
    return change.input.kind == Kind::call ? "omitted" : valueText(change.to);
  }

  /// An input with its value. An earlier call that may be left out has no value.
  [[nodiscard]] std::vector<std::string> cellsOf(const Finding& finding, Style style) const {
    std::vector<std::string> cells{inputText(finding.input)};
    if (finding.input.kind != Kind::call) cells.push_back(style.faint(valueText(finding.value)));
    return cells;
  }

  /// "; request 105 is not in the burst of 100 to 102; 0 by default". Returns an empty text for
  /// other tags, and if the request is in the burst.
  [[nodiscard]] std::string burstText() const {
    const auto* const request = std::get_if<UpdateRequestMeta>(&mQuestion.askedCall());
    const auto& burst = mExplanation.burst;
    if (request == nullptr || burst.empty() || burst.contains(request->requestNo)) return {};
    if (mQuestion.tag != hesk::tags::MTK_HESK_FRAME_INDEX.value &&
        mQuestion.tag != hesk::tags::MTK_HESK_FRAME_COUNT.value) {
      return {};
    }
    // By frame index: request numbers wrap.
    const auto [first, last] =
        std::ranges::minmax_element(burst, {}, [](const auto& frame) { return frame.second; });
    return "; request " + std::to_string(request->requestNo) + " is not in the burst of " +
           std::to_string(first->first) + " to " + std::to_string(last->first) + "; 0 by default";
  }

  /// The inputs that explain the value: present inputs whose absence changes it. If there are none,
  /// present inputs with another value that changes it.
  [[nodiscard]] std::string causeText() const {
    const Input tag = mQuestion.tagAsInput();
    for (const int rank : {0, 1}) {
      std::vector<std::string> names;
      for (const Finding& finding : mExplanation.findings) {
        if (!finding.affects || finding.input == tag || rankOf(finding) != rank) continue;
        names.push_back(joined(cellsOf(finding, Style(false)), " "));
      }
      if (names.empty()) continue;
      return (rank == 0 ? ", because of " : "; the value depends on ") + listText(std::move(names));
    }
    return {};
  }

  /// The answer in one sentence.
  [[nodiscard]] std::string sentence() const {
    const std::string value = " is " + answerText(mExplanation.after);
    if (mQuestion.container.empty()) return "The return value" + value + causeText();
    std::string text = tagText(mQuestion.tag) + value + ": ";
    if (mExplanation.writes.empty()) {
      text += "no step of this call writes it";
    } else {
      const auto& [written, step] = mExplanation.writes.back();
      text += step.name + (written.isNull() ? " cleared it" : " wrote it");
    }
    const std::string burst = burstText();
    return text + (burst.empty() ? causeText() : burst);
  }

  void writeTitle() {
    const bool isTag = !mQuestion.container.empty();
    mOut << mStyle.title(sentence()) << "\n  ";
    if (isTag) mOut << mQuestion.container << " of ";
    mOut << "call " << mQuestion.call + 1 << ", " << nameOf(mQuestion.askedCall());
    if (const auto sensor = sensorOf(mQuestion.askedCall())) mOut << ", sensor " << *sensor;
    const auto& calls = mQuestion.scenario.calls;
    if (const std::size_t of = calls[mQuestion.call].metaOf; of != 0) {
      mOut << ", with the meta of call " << of << ' ' << nameOf(calls[of - 1].call);
    }
    mOut << '\n';
    if (!isTag) return;
    Columns values;
    values.add({mStyle.heading("before"), valueText(mExplanation.before)});
    values.add({mStyle.heading("after"), mStyle.fresh(valueText(mExplanation.after))});
    values.write(mOut, 2);
  }

  /// Steps of other hooks and calls that write the tag.
  void writeWriters() {
    mOut << mStyle.heading("steps that write it, and what they read") << '\n';
    for (const auto& [hook, step, reads] : mExplanation.writers) {
      mOut << "  " << step << " of " << hook << '\n';
      Columns rows;
      for (const Finding& read : reads) rows.add(cellsOf(read, mStyle));
      rows.write(mOut, 4);
    }
  }

  void writeWrites() {
    if (mExplanation.writes.empty()) {
      if (!mExplanation.writers.empty()) writeWriters();
      return;
    }
    mOut << mStyle.heading("written") << '\n';
    Columns rows;
    for (const auto& [value, step] : mExplanation.writes) {
      const bool isFinal =
          &value == &mExplanation.writes.back().value && value == mExplanation.after;
      const std::string text = value.isNull() ? "cleared" : valueText(value);
      rows.add({isFinal ? mStyle.fresh(text) : mStyle.faint(text), isFinal ? "final value" : "",
                step.name, mStyle.faint(step.file + ":" + std::to_string(step.line))});
    }
    rows.write(mOut, 2);
  }

  void writeFinding(const Finding& finding) {
    mOut << "  " << joined(cellsOf(finding, mStyle), "  ") << '\n';
    Columns rows;
    // For an absent input, shows one outcome for each writing step and item count.
    std::set<std::pair<std::string, std::size_t>> shown;
    std::size_t left = 0;
    for (std::size_t i = 0; i < finding.outcomes.size(); ++i) {
      const auto& [changes, gives, step] = finding.outcomes[i];
      const std::size_t kind = finding.value.isNull() ? gives["items"].size() : i;
      if (!mAll && (shown.size() == kMaxShown || !shown.emplace(step, kind).second)) {
        ++left;
        continue;
      }
      rows.add({toText(changes[0]), "\u2192", mStyle.fresh(answerText(gives))});
    }
    if (left > 0) {
      rows.add({mStyle.faint("and " + std::to_string(left) + " other outcomes (--all)")});
    }
    rows.write(mOut, 4);
  }

  void writeFindings(bool isWanted) {
    std::vector<const Finding*> shown;
    std::vector<const Finding*> rest;
    for (const Finding& finding : mExplanation.findings) {
      const bool isShown = isWanted ? !finding.outcomes.empty() : finding.affects;
      (isShown ? shown : rest).push_back(&finding);
    }
    std::ranges::stable_sort(shown, {}, [](const Finding* finding) { return rankOf(*finding); });
    if (!shown.empty()) {
      mOut << mStyle.heading(isWanted ? "changes that give this value" : "inputs that affect it")
           << '\n';
    }
    for (const Finding* finding : shown) writeFinding(*finding);
    if (isWanted && shown.empty() && !mExplanation.pairs) mOut << "no change is needed\n";
    if (isWanted || rest.empty()) return;
    mOut << mStyle.heading("no effect alone") << "  " << rest.size() << " of "
         << shown.size() + rest.size() << " inputs" << (mAll ? "" : " (--all lists them)") << '\n';
    if (!mAll) return;
    Columns rows;
    for (const Finding* finding : rest) rows.add(cellsOf(*finding, mStyle));
    rows.write(mOut, 2);
  }

  void writePairs(const std::string& want) {
    if (mExplanation.pairs->empty()) {
      mOut << mStyle.alarming("no change found") << " that gives " << printable(want) << "; tried "
           << mExplanation.tried << " changes and " << mExplanation.triedPairs << " of "
           << mExplanation.allPairs << " pairs of changes\n";
      return;
    }
    mOut << mStyle.heading("pairs of changes that give this value") << '\n';
    for (const auto& [changes, gives, step] : *mExplanation.pairs) {
      Columns rows;
      for (const Change& change : changes) {
        rows.add({&change == &changes.front() ? "   " : "and", inputText(change.input), "\u2192",
                  mStyle.fresh(toText(change))});
      }
      rows.write(mOut, 2);
    }
    if (mExplanation.triedPairs < mExplanation.allPairs) {
      mOut << mStyle.faint(std::to_string(mExplanation.triedPairs) + " of " +
                           std::to_string(mExplanation.allPairs) + " pairs of changes tried")
           << '\n';
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

void writeWanted(std::ostream& out, const Question& question, const Explanation& explanation,
                 const std::string& want, Style style) {
  Text(out, question, explanation, false, style).writeWanted(want);
}

}  // namespace camhook
