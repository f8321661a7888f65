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
using lock_codes::kWaitTimedOut;

// Runs the call on this many threads, each with its number, and waits for them.
template <class F>
void OnThreads(int count, F call) {
  std::vector<std::thread> threads;
  threads.reserve(static_cast<size_t>(count));
  for (int i = 0; i < count; ++i) threads.emplace_back(call, i);
  for (std::thread& thread : threads) thread.join();
}

template <class F>
TModuleErrorCode Elsewhere(F call) {
  TModuleErrorCode result = 0;
  OnThreads(1, [&](int) { result = call(); });
  return result;
}

TEST(Mutex, KnowsItsOwner) {
  GMutex mutex;
  EXPECT_EQ(mutex.Unlock(), kNotAvailable);
  EXPECT_EQ(mutex.Lock(), 0u);
  for (const auto again : {mutex.Lock(), mutex.TryLock(), mutex.TryLockWithTimeout(1000)}) {
    EXPECT_EQ(again, kNotAvailable);
  }
  EXPECT_EQ(Elsewhere([&] { return mutex.Unlock(); }), kNotAvailable);
  EXPECT_EQ(Elsewhere([&] { return mutex.TryLock(); }), kBusy);
  for (const unsigned time : {0u, 1u}) {
    EXPECT_EQ(Elsewhere([&] { return mutex.TryLockWithTimeout(time); }), kBusy);
  }
  EXPECT_EQ(mutex.Unlock(), 0u);
  EXPECT_EQ(mutex.Unlock(), kNotAvailable);
  EXPECT_EQ(Elsewhere([&] { return mutex.TryLockWithTimeout(1000) | mutex.Unlock(); }), 0u);
}

TEST(Mutex, TheRecursiveOneCounts) {
  GRecursiveMutex mutex;
  EXPECT_EQ(mutex.Lock() | mutex.TryLock() | mutex.Unlock(), 0u);
  EXPECT_EQ(Elsewhere([&] { return mutex.TryLock(); }), kBusy);
  EXPECT_EQ(mutex.Unlock(), 0u);
  EXPECT_EQ(mutex.Unlock(), kNotAvailable);
  EXPECT_EQ(Elsewhere([&] { return mutex.TryLock() | mutex.Unlock(); }), 0u);
}

TEST(Mutex, ThreadsTakeTurns) {
  GMutex mutex;
  int counter = 0;  // guarded by the mutex; the thread sanitizer watches
  OnThreads(4, [&](int thread) {
    for (int i = 0; i < 2000; ++i) {
      if ((thread % 2 ? mutex.Lock() : mutex.TryLockWithTimeout(60'000)) == 0) ++counter;
      mutex.Unlock();
    }
  });
  EXPECT_EQ(counter, 8000);
}

TEST(Mutex, AbsoluteTimesLieAhead) {
  const auto nanoseconds = [](const timespec& t) { return t.tv_sec * 1'000'000'000LL + t.tv_nsec; };
  for (const unsigned int milliseconds : {0u, 999u, 1000u, 0xFFFFFFFEu}) {
    const timespec before = GUtils::FutureMillisecondsToAbsTime(0);
    const timespec time = GUtils::FutureMillisecondsToAbsTime(milliseconds);
    const timespec after = GUtils::FutureMillisecondsToAbsTime(0);
    const long long ahead = milliseconds * 1'000'000LL;
    EXPECT_TRUE(nanoseconds(time) >= nanoseconds(before) + ahead && nanoseconds(time) <= nanoseconds(after) + ahead);
    EXPECT_LT(time.tv_nsec, 1'000'000'000);
  }
}

// Is busy for a number of attempts.
class BusyLock : public GLockable {
 public:
  explicit BusyLock(int tries, TModuleErrorCode then = 0) : mTries(tries), mThen(then) {}
  TModuleErrorCode Lock() override { return mThen; }
  TModuleErrorCode TryLock() override { return ++asked > mTries ? mThen : kBusy; }
  TModuleErrorCode Unlock() override { return ++unlocked, unlockCode; }
  int asked = 0, unlocked = 0;
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

// Tries instead of waiting, and records its calls.
struct TryingStrategy : public GLockStrategy {
  explicit TryingStrategy(std::string& written) : calls(written) {}
  ~TryingStrategy() override { calls += "d"; }
  TModuleErrorCode Lock(GLockable& lockable) override { return calls += "L", lockable.TryLock(); }
  std::string& calls;
};

TEST(ScopedLock, LocksByItsStrategyAndOwnsIt) {
  GMutex mutex;
  std::string calls;
  {
    GScopedLock lock(mutex, false, std::make_unique<TryingStrategy>(calls));
    EXPECT_FALSE(lock.IsLocked());
    EXPECT_TRUE(lock.Lock() && lock.Lock());
    EXPECT_EQ(calls, "L");
    EXPECT_TRUE(lock.Unlock() && !lock.IsLocked() && lock.Lock());
  }
  EXPECT_EQ(calls, "LLd");
  EXPECT_EQ(mutex.TryLock() | mutex.Unlock(), 0u);
}

TEST(ScopedLock, LogsAFailureAndStaysAsItWas) {
  const LogRecorder log(GLogger::kDebug);
  BusyLock refused(0, kNotAvailable), stuck(0);
  {
    GScopedLock lock(refused);
    EXPECT_TRUE(!lock.IsLocked() && !lock.Unlock());
  }
  EXPECT_EQ(refused.unlocked, 0) << "unlocked what it did not hold";
  {
    GScopedLock held(stuck);
    stuck.unlockCode = kNotAvailable;
    EXPECT_FALSE(held.Unlock());
    EXPECT_TRUE(held.IsLocked());
    stuck.unlockCode = 0;
  }
  EXPECT_EQ(stuck.unlocked, 2);
  const auto line = [](const std::string& level) {
    return testing::MatchesRegex(
        "\\[Lockable]\t\\[" + level +
        "]\tError='GMutex::kMutexDeadlockErr'  File='.*core-agent/cpp-core/src/GScopedLock.cpp'.*");
  };
  EXPECT_THAT(log.lines, testing::ElementsAre(line("Debug"), line("Error"), line("Error")));
}

TEST(Condition, ASignalIsTakenOnceABroadcastStays) {
  GCondition condition;
  const auto expect = [&](std::initializer_list<TModuleErrorCode> codes) {
    for (const TModuleErrorCode code : codes) EXPECT_EQ(condition.TimedWait(0), code);
  };
  expect({kWaitTimedOut});
  EXPECT_EQ(condition.Signal() | condition.Wait(), 0u);
  EXPECT_EQ(condition.TimedWait(1), kWaitTimedOut);
  EXPECT_EQ(condition.Broadcast() | condition.Wait(), 0u);
  expect({0, 0});
  EXPECT_EQ(condition.Signal(), 0u);  // also stays after a broadcast
  expect({0, 0});
  EXPECT_EQ(condition.Reset(), 0u);
  expect({kWaitTimedOut});
  condition.Signal();
  expect({0, kWaitTimedOut});
}

TEST(Condition, WakesWaitingThreads) {
  for (const bool isBroadcast : {false, true}) {
    GCondition condition;
    std::atomic<int> through{0};
    OnThreads(4, [&](int i) {
      if (i == 3) {
        isBroadcast ? condition.Broadcast() : condition.Signal();
        return;
      }
      if ((i % 2 ? condition.Wait() : condition.TimedWait(60'000)) == 0) ++through;
      if (!isBroadcast) condition.Signal();  // passes it on
    });
    EXPECT_EQ(through, 3);
  }
}

TEST(Barrier, LetsGoOnceAllHaveCome) {
  constexpr int kThreads = 4;
  GBarrier barrier(kThreads);
  std::atomic<int> come{0};
  OnThreads(kThreads, [&](int) {
    ++come;
    barrier.Wait();
    EXPECT_EQ(come, kThreads);
  });
  GBarrier(1).Wait();
  EXPECT_DEATH(GBarrier(0), "threadCount != 0");
}

}  // namespace
