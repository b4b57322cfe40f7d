// JSON values whose faults are reported with their place.

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/Json.h"

namespace camhook {

/// The document of values, and the destination of their faults.
struct Source {
  const Json& root;
  Faults& faults;
  Faults* warnings = nullptr;            // null: warnings are ignored
  const std::string* text = nullptr;     // of `root`; null: faults have no line
  std::optional<std::size_t> call = {};  // index, if `root` is a call
  bool isOnlyChecked = false;            // containers of calls are not built
};

/// A value, or the key of a member. The source must outlive it.
class Located {
 public:
  /// Reports a fault of the value, or of its member `key`, which may be missing.
  void fail(const std::string& problem, std::string_view key = {}) const {
    mSource->faults.add(areFaultsShown() ? faultAt(problem, key) : Fault());
  }

  /// False if further faults are only counted, so that their text is not needed.
  [[nodiscard]] bool areFaultsShown() const { return !mSource->faults.isFull(); }

  [[nodiscard]] bool isOnlyChecked() const { return mSource->isOnlyChecked; }

  /// Reports a warning.
  void warn(const std::string& problem) const {
    if (Faults* warnings = mSource->warnings) {
      warnings->add(warnings->isFull() ? Fault() : faultAt(problem, {}));
    }
  }

 protected:
  Located(const Source& source, const void* place, std::uint32_t offset)
      : mSource(&source), mPlace(place), mOffset(offset) {}

  /// A fault at the line and column of the value.
  [[nodiscard]] Fault faultAt(std::string problem, std::string_view key) const;

  const Source* mSource;

 private:
  const void* mPlace;  // address of a Json in the source, or of a member's key
  std::uint32_t mOffset;
};

class Key : public Located {
 public:
  Key(const Source& source, const Json::Member& member)
      : Located(source, &member.key, member.value.offsets.key), mKey(&member.key) {}

  [[nodiscard]] const std::string& text() const { return *mKey; }

 private:
  const std::string* mKey;
};

class Value : public Located {
 public:
  Value(const Source& source, const Json& json)
      : Located(source, &json, json.offsets.value), mJson(&json) {}
  explicit Value(const Source& source) : Value(source, source.root) {}

  [[nodiscard]] const Json& json() const { return *mJson; }

  [[nodiscard]] bool isNull() const { return mJson->isNull(); }
  [[nodiscard]] bool isText() const { return mJson->isText(); }
  [[nodiscard]] bool isList() const { return mJson->isList(); }
  [[nodiscard]] bool isObject() const { return mJson->isObject(); }
  [[nodiscard]] const std::string& text() const { return mJson->text(); }
  [[nodiscard]] std::size_t size() const { return mJson->size(); }

  /// Calls `use` with each item of a list; any other value has none.
  void forEachItem(auto use) const {
    if (!isList()) return;
    for (const Json& item : mJson->items()) use(Value(*mSource, item));
  }

  /// Calls `use` with each key of an object and its value; any other value has none.
  void forEachMember(auto use) const {
    if (!isObject()) return;
    for (const Json::Member& member : mJson->members()) {
      use(Key(*mSource, member), Value(*mSource, member.value));
    }
  }

  [[nodiscard]] std::optional<Value> find(std::string_view key) const {
    const Json* found = mJson->find(key);
    return found != nullptr ? std::optional(Value(*mSource, *found)) : std::nullopt;
  }

  /// A short form for messages.
  [[nodiscard]] std::string shown() const;

  /// Reports a value of another form: "expected a text, found 3".
  void failUnless(const std::string& expected) const;

  /// Reports repeated keys of this object and of all objects in it.
  void failRepeatedKeys() const;

 private:
  const Json* mJson;
};

/// Throws InputError with the first fault, if there is one. `place` precedes its place.
void throwFirst(std::string_view place, const Faults& faults);

/// Calls `read(value, target)` for a value without a text, and returns the target. Throws
/// InputError.
template <typename T, typename Read>
T readJson(const Json& json, std::string_view place, Read read, T target = {}) {
  Faults faults;
  const Source source{.root = json, .faults = faults};
  read(Value(source), target);
  throwFirst(place, faults);
  return target;
}

}  // namespace camhook
