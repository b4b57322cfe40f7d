// The event store: string values under string keys, shared by the whole process. The camera app's
// side and the parts of the HAL exchange values through it.

#pragma once

#include <string>
#include <string_view>

namespace NSCam {

/// Threads: any.
class ATMsEventMgr {
 public:
  static ATMsEventMgr& getInstance();

  /// Replaces the value of `key`.
  virtual void set(std::string_view key, std::string_view value) = 0;

  /// Copies the value of `key` to `value`; an empty string if the key was never set.
  virtual void get(std::string_view key, std::string& value) const = 0;

 protected:
  ~ATMsEventMgr() = default;
};

}  // namespace NSCam
