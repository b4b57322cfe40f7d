#include "tools/camhook/input/ScenarioReader.h"

#include <set>
#include <type_traits>
#include <utility>
#include <variant>

#include "common/updater/MetadataDump.h"
#include "tools/camhook/input/Doubts.h"
#include "tools/camhook/input/ObjectReader.h"

namespace camhook {
namespace {

/// What a call must keep to beyond what its keys say each.
template <typename CallType>
void checkTogether(const Value& /*value*/, const CallType& /*call*/) {}

void checkTogether(const Value& value, const UpdateSessionParams& call) {
  std::set<std::int64_t> ids;
  std::size_t index = 0;
  const auto check = [&](const Value& stream) {
    if (ids.insert(call.streams[index++].id).second) return;
    stream.failAt("id", "this id is given twice");
  };
  const auto streams = value.find("streams");
  if (streams && streams->size() == call.streams.size()) streams->forEachItem(check);
}

/// A dump whose label the library has no room for would end the process.
void checkTogether(const Value& value, const DumpMetadata& call) {
  hesk::MetadataDumpPath path{};
  const int length =
      hesk::formatMetadataDumpPath(path, call.name.c_str(), call.frame, "YYYYMMDDHHMMSS");
  const int most = static_cast<int>(path.size()) - 1;
  const auto name = value.find("name");
  if (length > most && name) {
    name->fail("too long: the path would have " + std::to_string(length) + " characters, at most " +
               std::to_string(most) + " fit");
  }
}

/// A call of the kind that `name` says. None where there is no such call.
std::optional<Call> emptyCall(std::string_view name) {
  std::optional<Call> found;
  forEachCall([&]<typename CallType>(CallType&& call) {
    if (CallType::kName == name) found = std::forward<CallType>(call);
  });
  return found;
}

/// None where there is no such call.
std::optional<Call> readCall(const Value& value, Containers containers) {
  constexpr std::string_view kName = "call";
  if (!value.isObject()) {
    value.failUnless("an object");
    return {};
  }
  const std::optional<Value> name = value.find(kName);
  if (!name) {
    value.failAt(kName, "missing");
    return {};
  }
  std::optional<Call> call = name->isText() ? emptyCall(name->text()) : std::nullopt;
  if (!name->isText()) {
    name->failUnless("a text");
  } else if (!call) {
    name->fail("unknown call " + name->shown() + nearNames(name->text(), callNames()));
  } else {
    std::visit(
        [&](auto& concrete) {
          ObjectReader(value, containers).readAll(concrete, kName);
          checkTogether(value, concrete);
        },
        *call);
  }
  return call;
}

/// What a trace repeats of a call: all but its name, its sensor and its containers.
class RepeatedArguments {
 public:
  explicit RepeatedArguments(const Value& call) : mCall(call) {}

  template <typename T>
  void must(std::string_view key, T&& /*target*/, std::string_view /*meaning*/ = {}) {
    if (key == "sensor" || std::is_same_v<std::remove_cvref_t<T>, MetadataArgument>) return;
    mKeys.insert(key);
  }

  [[nodiscard]] Json json() const {
    Json json = Json::object();
    mCall.forEachMember([&](const Value& key, const Value& member) {
      if (mKeys.contains(key.text())) json[std::string(key.text())] = member.json();
    });
    return json;
  }

 private:
  Value mCall;
  std::set<std::string_view> mKeys;
};

/// The call of a value that was checked.
void makeCall(const Value& value, ScenarioCall& target) {
  std::optional<Call> call = readCall(value, Containers::made);
  if (!call) return;
  RepeatedArguments arguments(value);
  std::visit([&](auto& concrete) { keysOf(arguments, concrete); }, *call);
  target = {.call = *std::move(call), .arguments = arguments.json()};
}

}  // namespace

std::vector<std::string_view> callNames() {
  std::vector<std::string_view> names;
  forEachCall([&]<typename CallType>(const CallType&) { names.push_back(CallType::kName); });
  return names;
}

ScenarioText::ScenarioText(std::string text) : mText(std::move(text)), mDocument(mText, mFaults) {
  if (mDocument.isWhole()) {
    mDocument.warnTo(&mWarnings);
    const Value root = mDocument.root();
    ScenarioFrame frame;
    if (root.isObject()) {
      ObjectReader(root, Containers::made).readAll(frame);
    } else {
      root.failUnless("an object");
    }
    mAbout = std::move(frame.about);
    mPlatform = std::move(frame.platform);
    if (const auto calls = root.find("calls")) readCalls(*calls);
  }
  if (!mFaults.isEmpty()) throw InputError(mFaults);
  mDocument.warnTo(nullptr);
}

void ScenarioText::readCalls(const Value& list) {
  if (!list.isList()) return;
  Doubts doubts(mPlatform);
  if (const auto platform = mDocument.root().find("platform")) doubts.onPlatform(*platform);
  mCalls.reserve(list.size());
  list.forEachItem([&](const Value& value) {
    mCalls.push_back(value);
    if (const auto call = readCall(value, Containers::checked)) doubts.onCall(*call, value);
  });
}

ScenarioCall ScenarioText::call(std::size_t index) const {
  ScenarioCall call;
  makeCall(mCalls[index], call);
  return call;
}

Scenario readScenario(std::string_view text) {
  const ScenarioText scenario{std::string(text)};
  Scenario whole{.about = scenario.about(), .platform = scenario.platform(), .calls = {}};
  whole.calls.reserve(scenario.callCount());
  for (std::size_t i = 0; i < scenario.callCount(); ++i) whole.calls.push_back(scenario.call(i));
  return whole;
}

ScenarioCall callFromJson(const Json& json, const Place& place) {
  return readJson<ScenarioCall>(json, place, makeCall);
}

host::PhoneConfig platformFromJson(const Json& json, const Place& place) {
  return readJson<host::PhoneConfig>(json, place,
                                     [](const Value& value, host::PhoneConfig& platform) {
                                       if (!value.isObject()) return value.failUnless("an object");
                                       ObjectReader(value, Containers::made).readAll(platform);
                                     });
}

}  // namespace camhook
