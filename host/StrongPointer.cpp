#include "platform/StrongPointer.h"

void android::RefBase::incStrong(const void* /*id*/) const {
  mStrong.fetch_add(1, std::memory_order_relaxed);
}

void android::RefBase::decStrong(const void* /*id*/) const {
  if (mStrong.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
}
