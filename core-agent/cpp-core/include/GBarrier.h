// Lets a number of threads go on once all of them have come. Good for one use.
#pragma once

#include "GSystemLock.h"

class GBarrier {
 public:
  explicit GBarrier(unsigned int threadCount);  // 0 is an assertion failure
  virtual ~GBarrier();
  GBarrier(const GBarrier&) = delete;
  GBarrier& operator=(const GBarrier&) = delete;
  virtual void Wait();

 private:
  GSystemLock mSystem;
  unsigned int mStillToCome;
};
