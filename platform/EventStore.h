// The event store: string values under string keys, one for the whole process. The camera app's
// side and the HAL's parts leave each other word in it.

#pragma once

#include <string>
#include <string_view>

namespace NSCam {

/// Threads: every operation may be called from any thread at any time.
class ATMsEventMgr {
 public:
  static ATMsEventMgr& getInstance();

  /// Replaces the value of `key`.
  virtual void set(std::string_view key, std::string_view value) = 0;

  /// Copies the value of `key` into `value`; the empty text where the key was never set.
  virtual void get(std::string_view key, std::string& value) const = 0;

 protected:
  ~ATMsEventMgr() = default;
};

}  // namespace NSCam
