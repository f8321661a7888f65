#include "GSystemLock.h"

#include <cassert>
#include <ctime>

namespace {

void Require([[maybe_unused]] int result) { assert(result == 0); }

}  // namespace

GSystemLock::GSystemLock() {
  Require(pthread_mutex_init(&mMutex, nullptr));
  pthread_condattr_t attributes;
  Require(pthread_condattr_init(&attributes));
  Require(pthread_condattr_setclock(&attributes, CLOCK_MONOTONIC));
  Require(pthread_cond_init(&mCondition, &attributes));
  Require(pthread_condattr_destroy(&attributes));
}

GSystemLock::~GSystemLock() {
  Require(pthread_cond_destroy(&mCondition));
  Require(pthread_mutex_destroy(&mMutex));
}
