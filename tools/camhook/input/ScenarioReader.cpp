#include "tools/camhook/input/ScenarioReader.h"

#include <algorithm>
#include <set>
#include <type_traits>
#include <utility>
#include <variant>

#include "common/updater/MetadataDump.h"
#include "tools/camhook/input/JsonParser.h"
#include "tools/camhook/input/ObjectReader.h"
#include "tools/camhook/input/ScenarioWarnings.h"
#include "tools/camhook/input/TagCatalogue.h"

namespace camhook {
namespace {

/// Checks that concern several keys of a call, or the library.
void checkTogether(const Value& /*value*/, const auto& /*call*/) {}

void checkTogether(const Value& value, const UpdateSessionParams& call) {
  std::set<std::int64_t> ids;
  std::size_t index = 0;
  const auto check = [&](const Value& stream) {
    if (ids.insert(call.streams[index++].id).second) return;
    stream.fail("duplicate id", "id");
  };
  const auto streams = value.find("streams");
  if (streams && streams->size() == call.streams.size()) streams->forEachItem(check);
}

/// The library ends the process if the path of a dump does not fit its buffer.
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

/// Returns a call with this name, if there is one.
std::optional<Call> emptyCall(std::string_view name) {
  std::optional<Call> found;
  forEachCall([&]<typename CallType>(CallType&& call) {
    if (CallType::kName == name) found = std::forward<CallType>(call);
  });
  return found;
}

/// Returns nullopt if there is no such call.
std::optional<Call> readCall(const Value& value) {
  const std::optional<Value> name = value.find(kCallKey);
  std::optional<Call> call;
  if (!value.isObject()) {
    value.failUnless("an object");
  } else if (!name) {
    value.fail("missing", kCallKey);
  } else if (!name->isText()) {
    name->failUnless("a text");
  } else if (call = emptyCall(name->text()); !call) {
    name->fail("unknown call " + name->shown() + nearNames(name->text(), callNames()));
  } else {
    std::visit(
        [&]<typename CallType>(CallType& concrete) {
          ObjectReader reader(value);
          if constexpr (kHasMeta<CallType>) {
            reader.readAll(concrete, {kCallKey, kMetaOfKey});
          } else {
            reader.readAll(concrete, {kCallKey});
          }
          checkTogether(value, concrete);
        },
        *call);
  }
  return call;
}

/// The members of a call that a trace repeats: all but its name, sensor and containers.
Json argumentsOf(const Json& call) {
  constexpr std::string_view kOthers[] = {kCallKey, "sensor", kMetaOfKey, "meta",
                                          "app",    "hal",    "out"};
  Json::Object arguments;
  for (const Json::Member& member : call.members()) {
    const bool isArgument = std::ranges::find(kOthers, member.key) == std::end(kOthers);
    if (isArgument) arguments.push_back(member);
  }
  return arguments;
}

/// Reads a call that was checked.
void makeCall(const Value& value, ScenarioCall& target) {
  std::optional<Call> call = readCall(value);
  if (!call) return;
  target = {.call = *std::move(call), .arguments = argumentsOf(value.json())};
  const auto metaOf = value.find(kMetaOfKey);
  if (!metaOf) return;
  target.metaOf = integerFrom<std::uint32_t>(*metaOf).value_or(0);
  if (const auto meta = value.find("meta")) {
    meta->forEachMember([&](const Key& key, const Value&) {
      const std::uint32_t tag = *tagFrom(key.text());
      if ((*findMeta(target.call))->entryFor(tag).isEmpty()) target.removedTags.push_back(tag);
    });
  }
}

}  // namespace

std::vector<std::string_view> callNames() {
  std::vector<std::string_view> names;
  forEachCall([&]<typename CallType>(const CallType&) { names.push_back(CallType::kName); });
  return names;
}

ScenarioText::ScenarioText(std::string text) : mText(std::move(text)) {
  Faults faults;
  ScenarioWarnings warnings;
  const auto checkCall = [&](const Json& json) {
    const Source source{.root = json,
                        .faults = faults,
                        .warnings = &mWarnings,
                        .text = &mText,
                        .call = mCalls.size(),
                        .isOnlyChecked = true};
    mCalls.push_back({.offset = json.offsets.value});
    const Value value(source);
    value.failRepeatedKeys();
    auto call = readCall(value);
    if (!call) return;
    if (findMeta(*call) != nullptr) checkMetaOf(value);
    warnings.onCall(*call, value);
  };
  Faults parserFaults;
  const auto document = parseDocument(mText, parserFaults, checkCall);
  if (!document) throw InputError(std::move(parserFaults));
  const Source source{.root = *document, .faults = faults, .warnings = &mWarnings, .text = &mText};
  const Value root(source);
  root.failRepeatedKeys();
  ScenarioFrame frame;
  ObjectReader::readObject(root, frame);
  if (!faults.isEmpty()) throw InputError(std::move(faults));
  mAbout = std::move(frame.about);
  mPlatform = std::move(frame.platform);
  mPlatform.tagName = [](std::uint32_t tag) {  // for metadata dumps
    const TagDescription* const info = findTag(tag);
    return info != nullptr ? info->name : std::string_view();
  };
  if (const auto platform = root.find("platform")) warnings.onPlatform(*platform, mPlatform);
  for (const auto& [index, key, problem] : warnings.callWarnings(mPlatform)) {
    const Json json = parseValue(mText, mCalls[index].offset);
    const Source callSource{
        .root = json, .faults = faults, .warnings = &mWarnings, .text = &mText, .call = index};
    Value(callSource).find(key)->warn(problem);
  }
}

/// Checks the metaOf of the latest call.
void ScenarioText::checkMetaOf(const Value& call) {
  const auto meta = call.find("meta");
  const auto metaOf = call.find(kMetaOfKey);
  mCalls.back().hasMeta = metaOf || (meta && !meta->isNull());
  if (!metaOf) return;
  const auto number = integerFrom<std::uint32_t>(*metaOf).value_or(0);
  if (number == 0 || number >= mCalls.size()) {
    metaOf->failUnless("the number of an earlier call");
  } else if (!mCalls[number - 1].hasMeta) {
    metaOf->fail("call " + std::to_string(number) + " has no container \"meta\"");
  } else {
    mCalls[number - 1].lastUse = static_cast<std::uint32_t>(mCalls.size());
  }
}

ScenarioCall ScenarioText::call(std::size_t index) const {
  const Json json = parseValue(mText, mCalls[index].offset);
  Faults none;
  const Source source{.root = json, .faults = none};
  ScenarioCall call;
  makeCall(Value(source), call);
  call.number = index + 1;
  call.isMetaUsed = mCalls[index].lastUse != 0;
  call.isLastUse = call.metaOf != 0 && mCalls[call.metaOf - 1].lastUse == call.number;
  return call;
}

Scenario readScenario(std::string_view text) {
  const ScenarioText scenario{std::string(text)};
  Scenario whole{
      .about = scenario.about(), .platform = scenario.platform(), .warnings = scenario.warnings()};
  whole.calls.reserve(scenario.callCount());
  for (std::size_t i = 0; i < scenario.callCount(); ++i) whole.calls.push_back(scenario.call(i));
  return whole;
}

ScenarioCall callFromJson(const Json& json, std::string_view place) {
  return readJson<ScenarioCall>(json, place, makeCall);
}

host::PhoneConfig platformFromJson(const Json& json, std::string_view place) {
  return readJson<host::PhoneConfig>(json, place, ObjectReader::readObject<host::PhoneConfig>);
}

}  // namespace camhook
