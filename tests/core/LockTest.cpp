#include <gmock/gmock.h>

#include <atomic>
#include <thread>

#include "CoreFixtures.h"
#include "GBarrier.h"
#include "GCondition.h"
#include "GScopedLock.h"
#include "GUtils.h"

namespace {

using lock_codes::kBusy;
using lock_codes::kNotAvailable;

// Runs on a thread of its own and gives the result.
template <class F>
auto Elsewhere(F call) {
  decltype(call()) result{};
  std::thread([&] { result = call(); }).join();
  return result;
}

TEST(Mutex, KnowsItsOwner) {
  GMutex mutex;
  EXPECT_EQ(mutex.Unlock(), kNotAvailable);
  EXPECT_EQ(mutex.Lock(), 0u);
  EXPECT_EQ(mutex.Lock(), kNotAvailable);
  EXPECT_EQ(mutex.TryLock(), kNotAvailable);
  EXPECT_EQ(mutex.TryLockWithTimeout(1000), kNotAvailable);
  EXPECT_EQ(Elsewhere([&] { return mutex.Unlock(); }), kNotAvailable);
  EXPECT_EQ(Elsewhere([&] { return mutex.TryLock(); }), kBusy);
  EXPECT_EQ(Elsewhere([&] { return mutex.TryLockWithTimeout(0); }), kBusy);
  EXPECT_EQ(Elsewhere([&] { return mutex.TryLockWithTimeout(1); }), kBusy);
  EXPECT_EQ(mutex.Unlock(), 0u);
  EXPECT_EQ(mutex.Unlock(), kNotAvailable);
  const auto lockAndUnlock = [&] { return mutex.TryLockWithTimeout(1000) | mutex.Unlock(); };
  EXPECT_EQ(Elsewhere(lockAndUnlock), 0u);
}

TEST(Mutex, TheRecursiveOneCounts) {
  GRecursiveMutex mutex;
  EXPECT_EQ(mutex.Lock(), 0u);
  EXPECT_EQ(mutex.TryLock(), 0u);
  EXPECT_EQ(mutex.Unlock(), 0u);
  EXPECT_EQ(Elsewhere([&] { return mutex.TryLock(); }), kBusy);
  EXPECT_EQ(mutex.Unlock(), 0u);
  EXPECT_EQ(mutex.Unlock(), kNotAvailable);
  EXPECT_EQ(Elsewhere([&] { return mutex.TryLock() | mutex.Unlock(); }), 0u);
}

TEST(Mutex, SystemErrorsHaveCodes) {
  const std::pair<int, TModuleErrorCode> cases[] = {
      {0, 0}, {EAGAIN, 0x0100100B}, {ETIMEDOUT, 0x0100100C}, {EINVAL, 0x0200100B}, {EPERM, 0x01000000}};
  for (const auto& [error, code] : cases) EXPECT_EQ(lock_codes::FromSystemError(error), code);
}

TEST(Mutex, ThreadsTakeTurns) {
  GMutex mutex;
  int counter = 0;  // guarded by the mutex; the thread sanitizer watches
  std::vector<std::thread> threads;
  threads.reserve(4);
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([&, thread] {
      for (int i = 0; i < 2000; ++i) {
        const auto code = thread % 2 ? mutex.Lock() : mutex.TryLockWithTimeout(60'000);
        if (code == 0) ++counter;
        mutex.Unlock();
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(counter, 8000);
}

TEST(Mutex, AbsoluteTimesLieAhead) {
  for (const unsigned int milliseconds : {0u, 999u, 1000u, 0xFFFFFFFEu}) {
    timespec before{}, after{};
    clock_gettime(CLOCK_MONOTONIC, &before);
    const timespec time = GUtils::FutureMillisecondsToAbsTime(milliseconds);
    clock_gettime(CLOCK_MONOTONIC, &after);
    const auto nanoseconds = [](const timespec& t) { return t.tv_sec * 1'000'000'000LL + t.tv_nsec; };
    EXPECT_GE(nanoseconds(time), nanoseconds(before) + milliseconds * 1'000'000LL);
    EXPECT_LE(nanoseconds(time), nanoseconds(after) + milliseconds * 1'000'000LL);
    EXPECT_LT(time.tv_nsec, 1'000'000'000);
  }
}

// Busy for a number of tries.
class BusyLock : public GLockable {
 public:
  explicit BusyLock(int tries, TModuleErrorCode then = 0) : mTries(tries), mThen(then) {}
  TModuleErrorCode Lock() override { return mThen; }
  TModuleErrorCode TryLock() override { return ++asked > mTries ? mThen : kBusy; }
  TModuleErrorCode Unlock() override { return unlockCode; }
  int asked = 0;
  TModuleErrorCode unlockCode = 0;

 private:
  int mTries;
  TModuleErrorCode mThen;
};

TEST(Lockable, TriesUntilTheTimeIsUsedUp) {
  struct {
    int busyTries;
    unsigned int milliseconds;
    TModuleErrorCode then, code;
    int asked;
  } const cases[] = {{0, 0, 0, 0, 1},
                     {5, 0, 0, kBusy, 1},
                     {1, 1, 0, 0, 2},
                     {5, 1, 0, kBusy, 2},
                     {0, 60'000, kNotAvailable, kNotAvailable, 1}};
  for (const auto& c : cases) {
    BusyLock lock(c.busyTries, c.then);
    EXPECT_EQ(lock.TryLockWithTimeout(c.milliseconds), c.code);
    EXPECT_EQ(lock.asked, c.asked);
  }
}

class CountingStrategy : public GLockStrategy {
 public:
  explicit CountingStrategy(std::string& calls) : mCalls(calls) {}
  ~CountingStrategy() override { mCalls += "d"; }
  TModuleErrorCode Lock(GLockable& lockable) override { return mCalls += "L", lockable.TryLock(); }
  TModuleErrorCode Unlock(GLockable& lockable) override { return mCalls += "U", GLockStrategy::Unlock(lockable); }

 private:
  std::string& mCalls;
};

TEST(ScopedLock, LocksByItsStrategyAndOwnsIt) {
  GMutex mutex;
  std::string calls;
  {
    GScopedLock lock(mutex, false, new CountingStrategy(calls));
    EXPECT_FALSE(lock.IsLocked());
    EXPECT_TRUE(lock.Lock());
    EXPECT_TRUE(lock.Lock());
    EXPECT_EQ(calls, "L");
    EXPECT_TRUE(lock.Unlock());
    EXPECT_TRUE(lock.Lock());
  }
  EXPECT_EQ(calls, "LULUd");
  EXPECT_EQ(mutex.TryLock(), 0u);
  mutex.Unlock();
}

TEST(ScopedLock, LogsAFailureAndStaysAsItWas) {
  const LogRecorder log(GLogger::kDebug);
  BusyLock refused(0, kNotAvailable);
  GScopedLock lock(refused);
  EXPECT_FALSE(lock.IsLocked());
  ASSERT_EQ(log.lines.size(), 1u);
  EXPECT_THAT(log.lines[0],
              testing::StartsWith("[Lockable]\t[Debug]\tError='GMutex::kMutexDeadlockErr'  File='core-agent/"));

  BusyLock stuck(0);
  GScopedLock held(stuck);
  stuck.unlockCode = kNotAvailable;
  EXPECT_FALSE(held.Unlock());
  EXPECT_TRUE(held.IsLocked());
  ASSERT_EQ(log.lines.size(), 2u);
  EXPECT_THAT(log.lines[1], testing::StartsWith("[Lockable]\t[Error]\t"));
  stuck.unlockCode = 0;
}

TEST(Condition, ASignalIsTakenOnceABroadcastStays) {
  GCondition condition;
  EXPECT_EQ(condition.TimedWait(0), lock_codes::kWaitTimedOut);
  EXPECT_EQ(condition.Signal(), 0u);
  EXPECT_EQ(condition.Wait(), 0u);
  EXPECT_EQ(condition.TimedWait(1), lock_codes::kWaitTimedOut);
  EXPECT_EQ(condition.Broadcast(), 0u);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(condition.Wait(), 0u);
  EXPECT_EQ(condition.Signal(), 0u);
  EXPECT_EQ(condition.TimedWait(0), 0u);
  EXPECT_EQ(condition.TimedWait(0), 0u);
  EXPECT_EQ(condition.Reset(), 0u);
  EXPECT_EQ(condition.TimedWait(0), lock_codes::kWaitTimedOut);
  condition.Signal();
  EXPECT_EQ(condition.TimedWait(0), 0u);
  EXPECT_EQ(condition.TimedWait(0), lock_codes::kWaitTimedOut);
}

TEST(Condition, WakesWaitingThreads) {
  for (const bool isBroadcast : {false, true}) {
    GCondition condition;
    std::atomic<int> through{0};
    std::vector<std::thread> threads;
    threads.reserve(3);
    for (int i = 0; i < 3; ++i) {
      threads.emplace_back([&, i] {
        if ((i % 2 ? condition.Wait() : condition.TimedWait(60'000)) == 0) ++through;
        if (!isBroadcast) condition.Signal();  // hands it on
      });
    }
    isBroadcast ? condition.Broadcast() : condition.Signal();
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(through, 3);
  }
}

TEST(Barrier, LetsGoOnceAllHaveCome) {
  constexpr int kThreads = 4;
  GBarrier barrier(kThreads);
  std::atomic<int> come{0};
  std::vector<std::thread> threads;
  threads.reserve(kThreads);
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&] {
      ++come;
      barrier.Wait();
      EXPECT_EQ(come, kThreads);
    });
  }
  for (std::thread& thread : threads) thread.join();
  GBarrier(1).Wait();
  EXPECT_DEATH(GBarrier(0), "threadCount != 0");
}

}  // namespace
