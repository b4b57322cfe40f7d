#include "host/TextStore.h"

#include <utility>

namespace host {

TextStore::TextStore(TextMap texts) : mTexts(std::move(texts)) {}

void TextStore::set(std::string_view key, std::string_view value) {
  const std::lock_guard lock(mMutex);
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
  const std::lock_guard lock(mMutex);
  return mTexts;
}

}  // namespace host
