#include "tools/camhook/show/TraceDiff.h"

#include <algorithm>
#include <sstream>

#include "tools/camhook/input/InputError.h"
#include "tools/camhook/show/LineDiff.h"
#include "tools/camhook/show/TraceText.h"

namespace camhook {
namespace {

constexpr std::string_view kTurnsInto = " \u2192 ";

/// A member of an object, null where it is absent.
const Json* find(const Json& object, std::string_view key) {
  const auto found = object.find(key);
  return found != object.end() ? &*found : nullptr;
}

std::string textOf(const std::string& key, const Json* value) {
  return value != nullptr ? memberValueText(key, *value) : "absent";
}

/// Where two long lists of one length differ: "; 2 of 884 items, from [13] on: 5 → 6".
std::string placeInList(const Json& old, const Json& fresh) {
  constexpr std::size_t kShort = 12;
  const std::optional<EntryItems> oldEntry = entryFromTrace(old);
  const std::optional<EntryItems> freshEntry = entryFromTrace(fresh);
  if (!oldEntry || !freshEntry) return "";
  const Json& before = oldEntry->items;
  const Json& after = freshEntry->items;
  if (before.size() != after.size() || before.size() <= kShort) return "";
  std::string first;
  std::size_t count = 0;
  for (std::size_t i = 0; i < before.size(); ++i) {
    const std::string item = lineOfJson(before[i]);
    const std::string other = lineOfJson(after[i]);
    if (item == other) continue;
    if (++count == 1) {
      first.append("[").append(std::to_string(i)).append("] on: ").append(item);
      first.append(kTurnsInto).append(other);
    }
  }
  return "; " + std::to_string(count) + " of " + std::to_string(before.size()) + " items, from " +
         first;
}

/// What is compared in order: effects, records, the lines of a text.
std::vector<std::string> linesOf(const std::string& key, const Json& value) {
  std::vector<std::string> lines;
  if (value.is_string()) {
    std::istringstream text(value.get<std::string>());
    for (std::string line; std::getline(text, line);) lines.push_back(printable(line));
    return lines;
  }
  for (const Json& item : value) {
    lines.push_back(key == "effects"
                        ? memberText(item, "op") + "  " + effectFields(item)
                        : memberText(item, "level") + "  " + memberText(item, "message"));
  }
  return lines;
}

/// Compares the members of two calls.
class CallComparison {
 public:
  explicit CallComparison(bool withRecords) : mWithRecords(withRecords) {}

  std::vector<Difference> compare(const Json& old, const Json& fresh) {
    forKeysOf(old, fresh, [&](const std::string& key) {
      compareMember(key, find(old, key), find(fresh, key));
    });
    return std::move(mDifferences);
  }

  std::vector<Difference> compareEventStores(const Json& old, const Json& fresh) {
    compareMembers("", old, fresh);
    return std::move(mDifferences);
  }

 private:
  /// The keys of both, the new one's first.
  template <typename Use>
  static void forKeysOf(const Json& old, const Json& fresh, Use use) {
    for (const auto& [key, value] : fresh.items()) use(key);
    for (const auto& [key, value] : old.items()) {
      if (!fresh.contains(key)) use(key);
    }
  }

  void compareMember(const std::string& key, const Json* old, const Json* fresh) {
    const bool areBoth = old != nullptr && fresh != nullptr;
    if (key == "writes" || (key == "logs" && !mWithRecords) || (key == "args" && !areBoth)) return;
    const bool isText = areBoth && old->is_string() && fresh->is_string();
    if (key == "effects" || key == "logs" || (key == "text" && isText)) {
      compareLines(key, *old, *fresh);
    } else if (areBoth && old->is_object() && fresh->is_object()) {
      compareMembers(key + ' ', *old, *fresh);
    } else {
      compareValues("", key, old, fresh);
    }
  }

  /// "meta MTK_CONTROL_RAW_TYPE" where `around` is "meta ".
  void compareMembers(const std::string& around, const Json& old, const Json& fresh) {
    forKeysOf(old, fresh, [&](const std::string& key) {
      compareValues(around, key, find(old, key), find(fresh, key));
    });
  }

  void compareValues(const std::string& around, const std::string& key, const Json* old,
                     const Json* fresh) {
    const bool areBoth = old != nullptr && fresh != nullptr;
    if (areBoth && lineOfJson(*old) == lineOfJson(*fresh)) return;
    mDifferences.push_back(
        {around + printable(key), textOf(key, old) + std::string(kTurnsInto) + textOf(key, fresh) +
                                      (areBoth ? placeInList(*old, *fresh) : "")});
  }

  void compareLines(const std::string& place, const Json& old, const Json& fresh) {
    const std::vector<std::string> before = linesOf(place, old);
    const std::vector<std::string> after = linesOf(place, fresh);
    for (const auto& [mark, text] : diffLines(before, after)) {
      if (mark == ' ') continue;
      mDifferences.push_back({place, (mark == '+' ? "added  " : "gone   ") + std::string(text)});
    }
  }

  bool mWithRecords;
  std::vector<Difference> mDifferences;
};

/// What makes a call the same in both traces: all but its number.
std::string identityOf(const Json& call, bool withArguments) {
  const Json* sensor = find(call, "sensor");
  const Json* arguments = withArguments ? find(call, "args") : nullptr;
  return callTitle(memberText(call, "call"), sensor != nullptr ? *sensor : Json(),
                   arguments != nullptr ? *arguments : Json::object());
}

/// Calls that both traces have in one order.
class TraceComparison {
 public:
  TraceComparison(const Json& old, const Json& fresh, bool withRecords)
      : mOld(old["calls"]), mFresh(fresh["calls"]), mWithRecords(withRecords) {}

  std::vector<CallDifference> compare() {
    const std::vector<std::string> before = identities(mOld);
    const std::vector<std::string> after = identities(mFresh);
    std::size_t i = 0;
    std::size_t j = 0;
    for (const DiffLine& line : diffLines(before, after)) {
      if (line.mark == '-') mGone.push_back(i);
      if (line.mark == '+') mAdded.push_back(j);
      if (line.mark == ' ') {
        pairRest(j);
        compareCalls(i, j);
      }
      i += line.mark != '+' ? 1 : 0;
      j += line.mark != '-' ? 1 : 0;
    }
    pairRest(j);
    return std::move(mDifferences);
  }

 private:
  static std::vector<std::string> identities(const Json& calls) {
    std::vector<std::string> identities;
    for (const Json& call : calls) identities.push_back(identityOf(call, true));
    return identities;
  }

  /// Between calls in common, in front of the new one that is `end`: those of one hook and sensor
  /// have other arguments, the rest is gone or new.
  void pairRest(std::size_t end) {
    std::size_t next = 0;
    for (const std::size_t gone : mGone) {
      const std::string identity = identityOf(mOld[gone], false);
      const auto rest = mAdded.begin() + static_cast<std::ptrdiff_t>(next);
      const auto found = std::find_if(rest, mAdded.end(), [&](std::size_t added) {
        return identityOf(mFresh[added], false) == identity;
      });
      if (found == mAdded.end()) {
        add(mOld[gone], gone, {{"call", "gone"}});
        mDifferences.back().goneBefore = end + 1;
        continue;
      }
      for (auto added = rest; added != found; ++added) addWhole(*added);
      compareCalls(gone, *found);
      next = static_cast<std::size_t>(found - mAdded.begin()) + 1;
    }
    for (; next < mAdded.size(); ++next) addWhole(mAdded[next]);
    mGone.clear();
    mAdded.clear();
  }

  void addWhole(std::size_t number) { add(mFresh[number], number, {{"call", "added"}}); }

  void compareCalls(std::size_t old, std::size_t fresh) {
    add(mFresh[fresh], fresh, CallComparison(mWithRecords).compare(mOld[old], mFresh[fresh]));
  }

  void add(const Json& call, std::size_t number, std::vector<Difference> differences) {
    if (differences.empty()) return;
    mDifferences.push_back({memberText(call, "call"),
                            number + 1,
                            std::to_string(number + 1) + "  " + identityOf(call, true),
                            std::move(differences),
                            {}});
  }

  const Json& mOld;
  const Json& mFresh;
  bool mWithRecords;
  std::vector<std::size_t> mGone;   // calls of the old trace that wait for one of the new
  std::vector<std::size_t> mAdded;  // and the other way round
  std::vector<CallDifference> mDifferences;
};

void expect(bool isSo, const Place& place) {
  if (!isSo) place.fail("not as in a trace of camhook replay --json");
}

const Json& expectList(const Json& object, std::string_view key, const Place& place) {
  const Json* list = find(object, key);
  expect(list != nullptr && list->is_array(), place[key]);
  for (std::size_t i = 0; i < list->size(); ++i) expect((*list)[i].is_object(), place[key][i]);
  return *list;
}

}  // namespace

Json traceFromText(std::string_view text) {
  Json trace = parseJson(text);
  const Place root;
  expect(trace.is_object(), root);
  const Json& calls = expectList(trace, "calls", root);
  const Place callsPlace = root["calls"];
  for (std::size_t i = 0; i < calls.size(); ++i) {
    const Place place = callsPlace[i];
    const Json* name = find(calls[i], "call");
    expect(name != nullptr && name->is_string(), place["call"]);
    const Json* arguments = find(calls[i], "args");
    expect(arguments == nullptr || arguments->is_object(), place["args"]);
    (void)expectList(calls[i], "effects", place);
    (void)expectList(calls[i], "logs", place);
  }
  const Json* eventStore = find(trace, "eventStore");
  expect(eventStore != nullptr && eventStore->is_object(), root["eventStore"]);
  return trace;
}

std::vector<CallDifference> compareTraces(const Json& old, const Json& fresh, bool withRecords) {
  std::vector<CallDifference> calls = TraceComparison(old, fresh, withRecords).compare();
  std::vector<Difference> events =
      CallComparison(withRecords).compareEventStores(old["eventStore"], fresh["eventStore"]);
  if (!events.empty()) calls.push_back({"", 0, "event store at the end", std::move(events), {}});
  return calls;
}

}  // namespace camhook
