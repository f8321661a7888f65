// The system mutex and condition on which locks, conditions and barriers are built. Every operation returns the
// system's error number, 0 for success. A failure to create or destroy them aborts the process.
#pragma once

#include <pthread.h>

class GSystemLock {
 public:
  GSystemLock();
  ~GSystemLock();
  GSystemLock(const GSystemLock&) = delete;
  GSystemLock& operator=(const GSystemLock&) = delete;

  int Lock() { return pthread_mutex_lock(&mMutex); }
  int Unlock() { return pthread_mutex_unlock(&mMutex); }
  // Call with the mutex locked. Can return without a signal.
  int Wait() { return pthread_cond_wait(&mCondition, &mMutex); }
  int WaitUntil(const timespec& time) {
    return pthread_cond_timedwait(&mCondition, &mMutex, &time);
  }  // on the clock of GUtils
  int Signal() { return pthread_cond_signal(&mCondition); }
  int Broadcast() { return pthread_cond_broadcast(&mCondition); }

 private:
  pthread_mutex_t mMutex;
  pthread_cond_t mCondition;
};
