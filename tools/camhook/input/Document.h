// A JSON document that is read, not changed: its values in a row, in the order of the text, each
// with its place in it. 16 bytes a value; what stands in a value is read from the text itself.

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/Json.h"

namespace camhook {

class Value;

class Document {
 public:
  static constexpr std::size_t kDeepestNesting = 100;

  /// Parses `text`, of at most `kLongestInput` bytes. What is wrong, with keys that stand twice in
  /// one object, goes to `faults`, now and whenever a value `fail`s. Both must outlive this.
  Document(std::string_view text, Faults& faults);

  /// False where the text is no JSON: there is no value to read.
  [[nodiscard]] bool isWhole() const { return mIsWhole; }

  [[nodiscard]] Value root() const;

  /// Has what values warn of go to `warnings`; null: nowhere.
  void warnTo(Faults* warnings) { mWarnings = warnings; }

 private:
  friend class Value;
  class Writer;

  enum class Kind : std::uint8_t { null, boolean, number, text, escapedText, list, object };

  struct Node {
    std::uint32_t start = 0;   // in the text, of a text's quotes
    std::uint32_t length = 0;  // bytes of what stands there; items, members; 1 for true
    std::uint32_t next = 0;    // the node behind all that is in this one; of an escaped text its
                               // index in `mUnescaped`
    Kind kind = Kind::null;
  };

  [[nodiscard]] Fault faultAt(std::size_t byte, std::string place, std::string problem) const;
  [[nodiscard]] std::uint32_t nextOf(std::uint32_t node) const;
  [[nodiscard]] std::string placeOf(std::uint32_t node) const;
  [[nodiscard]] std::string_view textOf(std::uint32_t node) const;
  void findRepeatedKeys(std::uint32_t object, std::vector<std::uint32_t>& keys);

  std::string_view mText;
  Faults& mFaults;
  Faults* mWarnings = nullptr;
  bool mIsWhole = false;
  std::vector<Node> mNodes;
  std::vector<std::string> mUnescaped;
};

/// A value of a document, which must outlive it.
class Value {
 public:
  Value(const Document& document, std::uint32_t node) : mDocument(&document), mNode(node) {}

  [[nodiscard]] bool isNull() const { return kind() == Kind::null; }
  [[nodiscard]] bool isBoolean() const { return kind() == Kind::boolean; }
  [[nodiscard]] bool isNumber() const { return kind() == Kind::number; }
  [[nodiscard]] bool isText() const { return kind() == Kind::text || kind() == Kind::escapedText; }
  [[nodiscard]] bool isList() const { return kind() == Kind::list; }
  [[nodiscard]] bool isObject() const { return kind() == Kind::object; }

  [[nodiscard]] bool isTrue() const { return node().length == 1; }

  /// The content of a text; the digits of a number, as they stand there.
  [[nodiscard]] std::string_view text() const { return mDocument->textOf(mNode); }

  /// The nearest double to a number; infinite where it is beyond all of them.
  [[nodiscard]] double number() const;

  /// The items of a list, the members of an object; 0 for any other value.
  [[nodiscard]] std::size_t size() const {
    return isList() || isObject() ? node().length : std::size_t{0};
  }

  /// The first item of a list that has one.
  [[nodiscard]] Value front() const { return {*mDocument, mNode + 1}; }

  /// Hands every item of a list to `use`.
  template <typename Use>
  void forEachItem(Use use) const {
    std::uint32_t at = mNode + 1;
    for (std::size_t left = size(); left > 0; --left) {
      use(Value(*mDocument, at));
      at = mDocument->nextOf(at);
    }
  }

  /// Hands every key of an object and its value to `use`.
  template <typename Use>
  void forEachMember(Use use) const {
    std::uint32_t key = mNode + 1;
    for (std::size_t left = size(); left > 0; --left) {
      use(Value(*mDocument, key), Value(*mDocument, key + 1));
      key = mDocument->nextOf(key + 1);
    }
  }

  /// The value of an object's key; the first where it stands there twice.
  [[nodiscard]] std::optional<Value> find(std::string_view key) const;

  /// What stands here, in few words.
  [[nodiscard]] std::string shown() const;

  /// Something is wrong with this value. Whoever reads goes on.
  void fail(const std::string& problem) const;

  /// It is not what it must be: "must be a text, not 3".
  void failUnless(const std::string& expected) const;

  /// Something is wrong with a key that this object lacks.
  void failAt(std::string_view key, const std::string& problem) const;

  /// Whether a fault or warning more would be shown, so that words for it are worth while.
  [[nodiscard]] bool isHeard() const { return !mDocument->mFaults.isFull(); }

  /// This value is probably not what is meant. `words` makes the text.
  template <typename Words>
  void warn(Words words) const {
    if (Faults* warnings = mDocument->mWarnings) {
      warnings->add(warnings->isFull() ? Fault() : faultHere(words()));
    }
  }

  /// The value as JSON. One that no number is large enough for fails.
  [[nodiscard]] Json json() const;

 private:
  friend class Document;

  using Kind = Document::Kind;

  [[nodiscard]] const Document::Node& node() const { return mDocument->mNodes[mNode]; }
  [[nodiscard]] Kind kind() const { return node().kind; }
  [[nodiscard]] Fault faultHere(std::string problem) const;
  [[nodiscard]] Json jsonFromDigits() const;

  const Document* mDocument;
  std::uint32_t mNode;
};

/// The members of an object in the order of the text, to add to its end: by itself it looks through
/// all keys for each.
Json::object_t::Container& membersOf(Json& object);

/// Throws InputError where there are `faults`, which were found in the value at `place`.
void refuse(const Place& place, const Faults& faults);

/// Has `read` read a value, whose own document is gone, into a T. Throws InputError.
template <typename T, typename Read>
T readJson(const Json& json, const Place& place, Read read, T target = {}) {
  const std::string text = json.dump(-1, ' ', false, Json::error_handler_t::replace);
  Faults faults;
  const Document document(text, faults);
  if (document.isWhole()) read(document.root(), target);
  refuse(place, faults);
  return target;
}

}  // namespace camhook
