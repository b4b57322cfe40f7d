// Values as the readers of scenarios see them: JSON whose faults are reported with their place.

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/Json.h"

namespace camhook {

/// Where values come from, and where their faults go.
struct Source {
  const Json& root;  // contains all values
  Faults& faults;
  Faults* warnings = nullptr;            // null: values do not warn
  const std::string* text = nullptr;     // that `root` was parsed from; null: faults have no line
  std::optional<std::size_t> call = {};  // the index of the call that `root` is; none: the document
};

/// A value, or the key of a member. The source must outlive it.
class Located {
 public:
  /// Reports a fault; the reader goes on.
  void fail(const std::string& problem) const { mSource->faults.add(faultHere(problem)); }

  /// True if another fault or warning would be shown: if not, its text is not needed.
  [[nodiscard]] bool isHeard() const { return !mSource->faults.isFull(); }

  /// Reports that this is probably not what the user means. `words` makes the text.
  template <typename Words>
  void warn(Words words) const {
    if (Faults* warnings = mSource->warnings) {
      warnings->add(warnings->isFull() ? Fault() : faultAt(words(), {}));
    }
  }

 protected:
  Located(const Source& source, const void* place, std::uint32_t offset)
      : mSource(&source), mPlace(place), mOffset(offset) {}

  [[nodiscard]] Fault faultHere(const std::string& problem, std::string_view key = {}) const {
    return isHeard() ? faultAt(problem, key) : Fault();
  }

  /// `key` is one that this object does not have.
  [[nodiscard]] Fault faultAt(std::string problem, std::string_view key) const;

  const Source* mSource;

 private:
  const void* mPlace;  // a Json of the source, or the key of a member
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
  [[nodiscard]] bool isBoolean() const { return mJson->isBoolean(); }
  [[nodiscard]] bool isNumber() const { return mJson->isNumber(); }
  [[nodiscard]] bool isText() const { return mJson->isText(); }
  [[nodiscard]] bool isList() const { return mJson->isList(); }
  [[nodiscard]] bool isObject() const { return mJson->isObject(); }
  [[nodiscard]] const std::string& text() const { return mJson->text(); }
  [[nodiscard]] std::size_t size() const { return mJson->size(); }

  /// Calls `use` with every item of a list; a value of another kind has none.
  template <typename Use>
  void forEachItem(Use use) const {
    if (!isList()) return;
    for (const Json& item : mJson->items()) use(Value(*mSource, item));
  }

  /// Calls `use` with every key of an object and its value; a value of another kind has none.
  template <typename Use>
  void forEachMember(Use use) const {
    if (!isObject()) return;
    for (const Json::Member& member : mJson->members()) {
      use(Key(*mSource, member), Value(*mSource, member.value));
    }
  }

  [[nodiscard]] std::optional<Value> find(std::string_view key) const {
    const Json* found = mJson->find(key);
    return found != nullptr ? std::optional(Value(*mSource, *found)) : std::nullopt;
  }

  /// The value in a few words, for messages.
  [[nodiscard]] std::string shown() const;

  /// Reports that this is not what it must be: "must be a text, not 3".
  void failUnless(const std::string& expected) const;

  /// Reports a fault of a key that this object does not have.
  void failAt(std::string_view key, const std::string& problem) const {
    mSource->faults.add(faultHere(problem, key));
  }

  /// Reports keys that an object has twice, here and in all values in this.
  void failRepeatedKeys() const;

 private:
  const Json* mJson;
};

/// Throws InputError if there are `faults`. `place` is that of the value in which they were found.
void refuse(std::string_view place, const Faults& faults);

/// Calls `read(value, target)` for a value that has no text, and returns the target. Throws
/// InputError.
template <typename T, typename Read>
T readJson(const Json& json, std::string_view place, Read read, T target = {}) {
  Faults faults;
  const Source source{.root = json, .faults = faults};
  read(Value(source), target);
  refuse(place, faults);
  return target;
}

}  // namespace camhook
