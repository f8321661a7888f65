// The system mutex and the system condition on which the library's locks, conditions and barriers are built.
// Every operation gives the system's error number, 0 for success. A failure to make or to destroy them stops the
// process.
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
  // For whoever holds the mutex; they may come back without a signal.
  int Wait() { return pthread_cond_wait(&mCondition, &mMutex); }
  int WaitUntil(const timespec& time) {
    return pthread_cond_timedwait(&mCondition, &mMutex, &time);
  }  // of GUtils' clock
  int Signal() { return pthread_cond_signal(&mCondition); }
  int Broadcast() { return pthread_cond_broadcast(&mCondition); }

 private:
  pthread_mutex_t mMutex;
  pthread_cond_t mCondition;
};
