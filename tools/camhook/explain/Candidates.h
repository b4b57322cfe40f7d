// The other values that are tried for an input: absent; values of the same input elsewhere in the
// scenario; what sensor-mode rules and overrides ask of it; the wanted value and its items; known
// app types and names; zero, small numbers, single bits and a few edges; neighbours of its value. A
// list changes item by item.

#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/camhook/explain/Input.h"

namespace camhook {

class Candidates {
 public:
  struct List {
    std::vector<AnyValue> values;  // may hold values that a scenario cannot have
    std::size_t likely = 0;        // the first ones: absent, elsewhere, rules, wanted
  };

  /// `question` must outlive this object. `wanted` may be absent.
  Candidates(const Question& question, const AnyValue& wanted);

  [[nodiscard]] List forInput(const Input& input, const AnyValue& present) const;

 private:
  using Numbers = std::vector<std::int64_t>;

  enum class Which { likely, few, all };  // numbers

  void addWanted(const AnyValue& wanted);
  void addScenario();
  void addContainer(const NSCam::IMetadata& metadata);
  void addRules();

  template <typename T>
  [[nodiscard]] std::vector<T> numbers(const std::optional<T>& present, Which which,
                                       const Numbers& likely) const;
  template <typename T>
  [[nodiscard]] std::vector<T> items(const std::optional<T>& present, Which which,
                                     const Numbers& likely) const;
  template <typename T>
  void addEntries(std::uint32_t tag, const std::vector<T>& base, bool isNew, Which which,
                  std::vector<AnyValue>& list) const;
  [[nodiscard]] List entries(std::uint32_t tag, const AnyValue& present) const;
  [[nodiscard]] List texts(const Input& input, const AnyValue& present) const;

  // Arguments and places of the phone, as JSON.
  [[nodiscard]] std::vector<Json> numbers(const Json& present, bool isFloat, Which which) const;
  [[nodiscard]] std::vector<Json> variants(const Json& present, bool isFloat, Which which) const;
  [[nodiscard]] std::vector<Json> argument(const std::string& key, const Json& present) const;
  [[nodiscard]] std::vector<Json> place(const std::string& key, const Json& present) const;

  const Question& mQuestion;
  Numbers mWanted;
  std::vector<float> mWantedFloats;
  AnyValue mWantedValue;
  std::map<std::uint32_t, std::vector<AnyValue>> mEntries;  // of the scenario, by tag
  std::map<std::uint32_t, Numbers> mRuleNumbers;            // by tag
  std::map<std::string, std::vector<std::string>> mTexts;   // likely ones by event or property
};

}  // namespace camhook
