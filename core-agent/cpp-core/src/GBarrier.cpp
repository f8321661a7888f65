#include "GBarrier.h"

#include <cassert>

GBarrier::GBarrier(unsigned int threadCount) : mStillToCome(threadCount) { assert(threadCount != 0); }
GBarrier::~GBarrier() = default;

void GBarrier::Wait() {
  mSystem.Lock();
  if (mStillToCome > 0 && --mStillToCome == 0) mSystem.Broadcast();
  while (mStillToCome > 0) mSystem.Wait();
  mSystem.Unlock();
}
