// Blocks a number of threads until all of them have arrived. Works once.
#pragma once

#include "GSystemLock.h"

class GBarrier {
 public:
  explicit GBarrier(unsigned int threadCount);  // 0 fails an assertion
  virtual ~GBarrier();
  GBarrier(const GBarrier&) = delete;
  GBarrier& operator=(const GBarrier&) = delete;
  virtual void Wait();

 private:
  GSystemLock mSystem;
  unsigned int mStillToCome;
};
