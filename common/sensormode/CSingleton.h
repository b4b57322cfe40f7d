// One object of a class for the whole process.

#pragma once

/// The object is made when the library is loaded, and never destroyed.
template <typename T>
class CSingleton {
 public:
  static inline T* const m_pInstance = new T;
};
