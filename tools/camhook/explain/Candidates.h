// The other values that are tried for an input.
//
// None is listed for a tag. For a number: zero, the numbers next to the present one, each bit,
// small numbers and the edges of common ranges, what the library's own code compares with, and what
// its rules of sensor modes ask for. For a text: the texts of the library's read-only data, and
// those of the rules. For all: absent, and what the scenario has elsewhere in such a place. A list
// changes item by item.

#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "tools/camhook/explain/Input.h"
#include "tools/camhook/explain/LibraryConstants.h"

namespace camhook {

class Candidates {
 public:
  /// `question` must outlive this.
  explicit Candidates(const Question& question);

  /// Other values for an input of this value, simple ones first: absent, zero, near ones. Some may
  /// be none that a scenario can have.
  [[nodiscard]] std::vector<Json> forInput(const Input& input, const Json& value) const;

 private:
  [[nodiscard]] std::vector<Json> integers(const Json& present, const std::string& type,
                                           bool few) const;
  [[nodiscard]] std::vector<Json> floats(const Json& present) const;
  [[nodiscard]] std::vector<Json> items(const Json& present, const std::string& type,
                                        bool few) const;
  [[nodiscard]] std::vector<Json> entries(std::uint32_t tag, const Json& present) const;
  [[nodiscard]] std::vector<Json> texts(const Input& input, const Json& present) const;
  [[nodiscard]] std::vector<Json> values(const Json& present, bool isFloat, bool few) const;
  [[nodiscard]] std::vector<Json> places(const std::string& key, const Json& present) const;
  [[nodiscard]] std::vector<Json> placesWhereAbsent(const std::string& key) const;
  [[nodiscard]] std::vector<Json> placesWherePresent(const std::string& key,
                                                     const Json& present) const;
  void addEntries(Call call);
  [[nodiscard]] std::vector<Json> arguments(const std::string& key, const Json& present) const;

  const Question& mQuestion;
  std::vector<std::int64_t> mNumbers;
  std::vector<float> mFloats;
  std::vector<std::string> mTexts;
  std::map<std::uint32_t, std::vector<Json>> mEntries;  // that the scenario has, by tag
};

}  // namespace camhook
