// Texts under texts, for any number of threads: what properties and the event store are kept in.

#pragma once

#include <cstdint>
#include <cstring>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

#include "host/PhoneConfig.h"
#include "host/SpinLock.h"

namespace host {

class TextStore {
 public:
  explicit TextStore(const TextMap& texts = {});

  void set(std::string_view key, std::string_view value);

  /// Copies the value of `key` into `value`; the empty text where the key is not set.
  void get(std::string_view key, std::string& value) const;
  [[nodiscard]] std::string get(std::string_view key) const;

  /// Hands the value of `key`, empty where it is not set, to `use` under the store's lock.
  template <typename Use>
  auto with(std::string_view key, Use use) const {
    const std::lock_guard lock(mLock);
    const auto found = mTexts.find(key);
    return use(found != mTexts.end() ? std::string_view(found->second) : std::string_view());
  }

  /// All texts, ordered by key.
  [[nodiscard]] TextMap all() const;

 private:
  /// Length and first characters tell most keys apart, and are compared as numbers.
  struct KeyOrder {
    using is_transparent = void;
    bool operator()(std::string_view left, std::string_view right) const {
      if (left.size() != right.size()) return left.size() < right.size();
      if (left.size() < sizeof(std::uint64_t)) return left < right;
      const std::uint64_t leftHead = headOf(left);
      const std::uint64_t rightHead = headOf(right);
      if (leftHead != rightHead) return leftHead < rightHead;
      return left.size() > sizeof(std::uint64_t) && left < right;
    }
    static std::uint64_t headOf(std::string_view text) {
      std::uint64_t head = 0;
      std::memcpy(&head, text.data(), sizeof head);
      return head;
    }
  };

  mutable SpinLock mLock;
  std::map<std::string, std::string, KeyOrder> mTexts;
};

}  // namespace host
