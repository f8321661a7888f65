#include "GBarrier.h"

#include <cassert>

GBarrier::GBarrier(unsigned int threadCount) : mStillToCome(threadCount) { assert(threadCount != 0); }
GBarrier::~GBarrier() = default;

void GBarrier::Wait() {
  std::unique_lock lock(mMutex);
  if (mStillToCome > 0 && --mStillToCome == 0) {
    mCondition.notify_all();
    return;
  }
  mCondition.wait(lock, [this] { return mStillToCome == 0; });
}
