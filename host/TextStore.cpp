#include "host/TextStore.h"

namespace host {

TextStore::TextStore(const TextMap& texts) : mTexts(texts.begin(), texts.end()) {}

void TextStore::set(std::string_view key, std::string_view value) {
  const std::lock_guard lock(mLock);
  const auto found = mTexts.find(key);
  if (found != mTexts.end()) {
    found->second.assign(value);
  } else {
    mTexts.emplace(key, value);
  }
}

void TextStore::get(std::string_view key, std::string& value) const {
  with(key, [&](std::string_view text) { value.assign(text); });
}

std::string TextStore::get(std::string_view key) const {
  std::string value;
  get(key, value);
  return value;
}

TextMap TextStore::all() const {
  const std::lock_guard lock(mLock);
  return {mTexts.begin(), mTexts.end()};
}

}  // namespace host
