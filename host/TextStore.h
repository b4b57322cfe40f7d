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

  /// The value of `key`; the empty text where it is not set.
  [[nodiscard]] std::string get(std::string_view key) const;

  /// All texts.
  [[nodiscard]] TextMap all() const;

  /// Puts these texts in place of all.
  void replaceAll(TextMap texts);

 private:
  mutable std::mutex mMutex;
  TextMap mTexts;
};

}  // namespace host
