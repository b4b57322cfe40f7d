#include "host/TextStore.h"

#include <utility>

namespace host {

TextStore::TextStore(TextMap texts) : mTexts(std::move(texts)) {}

void TextStore::set(std::string_view key, std::string_view value) {
  const std::lock_guard lock(mMutex);
  const auto found = mTexts.find(key);
  if (found != mTexts.end()) {
    found->second = value;
  } else {
    mTexts.emplace(key, value);
  }
}

std::string TextStore::get(std::string_view key) const {
  const std::lock_guard lock(mMutex);
  const auto found = mTexts.find(key);
  return found != mTexts.end() ? found->second : std::string();
}

TextMap TextStore::all() const {
  const std::lock_guard lock(mMutex);
  return mTexts;
}

void TextStore::replaceAll(TextMap texts) {
  const std::lock_guard lock(mMutex);
  mTexts = std::move(texts);
}

}  // namespace host
