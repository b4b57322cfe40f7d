// One object of a class per process.

#pragma once

/// The object is created at library load and never destroyed.
template <typename T>
class CSingleton {
 public:
  static inline T* const m_pInstance = new T;
};
