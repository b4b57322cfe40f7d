// A map of texts: holds the properties and the event store.

#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

namespace host {

using TextMap = std::map<std::string, std::string, std::less<>>;

/// Any thread.
class TextStore {
 public:
  explicit TextStore(TextMap texts = {});

  void set(std::string_view key, std::string_view value);

  /// Returns the value of `key`; empty if it is not set.
  [[nodiscard]] std::string get(std::string_view key) const;

  [[nodiscard]] TextMap all() const;

  void replaceAll(TextMap texts);

 private:
  mutable std::mutex mMutex;
  TextMap mTexts;
};

}  // namespace host
