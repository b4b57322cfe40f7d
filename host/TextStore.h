// Texts under texts, for any number of threads: what properties and the event store are kept in.

#pragma once

#include <mutex>
#include <string>
#include <string_view>

#include "host/PhoneConfig.h"

namespace host {

class TextStore {
 public:
  explicit TextStore(TextMap texts = {});

  void set(std::string_view key, std::string_view value);

  /// Copies the value of `key` into `value`; the empty text where the key is not set.
  void get(std::string_view key, std::string& value) const;
  [[nodiscard]] std::string get(std::string_view key) const;

  /// Hands the value of `key`, empty where it is not set, to `use` under the store's lock.
  template <typename Use>
  auto with(std::string_view key, Use use) const {
    const std::lock_guard lock(mMutex);
    const auto found = mTexts.find(key);
    return use(found != mTexts.end() ? std::string_view(found->second) : std::string_view());
  }

  [[nodiscard]] TextMap all() const;

 private:
  mutable std::mutex mMutex;
  TextMap mTexts;
};

}  // namespace host
