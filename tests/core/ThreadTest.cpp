#include <gmock/gmock.h>

#include <atomic>
#include <thread>

#include "GCondition.h"
#include "GThread.h"

namespace {

// What an entry function of these tests works with.
struct Work {
  GThread* thread = nullptr;
  GCondition started;
  GCondition mayEnd;
  std::atomic<int> runs{0};
  GThread* seen = nullptr;
};

void* RunOnce(void* argument) {
  auto* work = static_cast<Work*>(argument);
  work->seen = GThread::GetCurrentThreadObject();
  ++work->runs;
  return work;
}

void* RunUntilStopped(void* argument) {
  auto* work = static_cast<Work*>(argument);
  ++work->runs;
  work->started.Signal();
  while (work->thread->GetThreadState() != EThreadState::kStopRequested) std::this_thread::yield();
  return nullptr;
}

void* RunUntilAllowed(void* argument) {
  auto* work = static_cast<Work*>(argument);
  work->started.Signal();
  work->mayEnd.Wait();
  return nullptr;
}

unsigned long NumberOf(const GThread& thread) { return std::stoul(thread.GetName().substr(7)); }

TEST(Thread, RunsAgainAndAgain) {
  Work work;
  GThread thread(RunOnce, &work);
  EXPECT_EQ(thread.GetThreadState(), EThreadState::kNotStarted);
  EXPECT_EQ(thread.GetResult(), nullptr);
  for (int run = 1; run <= 50; ++run) {
    work.seen = nullptr;
    EXPECT_EQ(thread.RunSynchronously(), &work);
    EXPECT_EQ(thread.GetThreadState(), EThreadState::kFinished);
    EXPECT_EQ(work.runs, run);
    EXPECT_EQ(work.seen, &thread);
  }
}

TEST(Thread, HasANameOfItsOwn) {
  const GThread first(RunOnce, nullptr), second(RunOnce, nullptr);
  EXPECT_EQ(first.GetName().rfind("Thread ", 0), 0u);
  EXPECT_EQ(NumberOf(second), NumberOf(first) + 1);
}

TEST(Thread, TheThreadThatCameFirstIsTheMainOne) {
  GThread* main = GThread::GetCurrentThreadObject();
  if (!main) GTEST_SKIP() << "another thread of this process used the registry first";
  EXPECT_EQ(main->GetName(), "Main Thread");
  EXPECT_EQ(main->GetThreadState(), EThreadState::kRunning);
  main->StartThread();  // nothing: it runs
  GThread* elsewhere = main;
  std::thread([&] { elsewhere = GThread::GetCurrentThreadObject(); }).join();
  EXPECT_EQ(elsewhere, nullptr);
}

TEST(Thread, StopsWhenItSeesTheRequest) {
  Work work;
  GThread thread(RunUntilStopped, &work);
  work.thread = &thread;
  thread.StopThread(true);  // never started
  EXPECT_EQ(thread.GetThreadState(), EThreadState::kNotStarted);
  thread.StartThread();
  work.started.Wait();
  EXPECT_EQ(thread.GetThreadState(), EThreadState::kRunning);
  thread.StartThread();  // nothing: it runs
  thread.StopThread(true);
  EXPECT_EQ(thread.GetThreadState(), EThreadState::kFinished);
  EXPECT_EQ(work.runs, 1);
  thread.StopThread(true);
  thread.StartThread();
  work.started.Wait();
  EXPECT_EQ(work.runs, 2);
}  // the destructor stops it

TEST(Thread, AStopWithoutWaitingReturnsAtOnce) {
  Work work;
  GThread thread(RunUntilAllowed, &work);
  thread.StartThread();
  work.started.Wait();
  thread.StopThread(false);
  EXPECT_EQ(thread.GetThreadState(), EThreadState::kStopRequested);
  work.mayEnd.Signal();
  thread.StopThread(true);
  EXPECT_EQ(thread.GetThreadState(), EThreadState::kFinished);
}

TEST(Thread, StartsAndStopsFromManySides) {
  Work work;
  {
    GThread thread(RunOnce, &work);
    std::vector<std::thread> others;
    others.reserve(3);
    for (int i = 0; i < 3; ++i) {
      others.emplace_back([&, i] {
        for (int k = 0; k < 50; ++k) i == 0 ? thread.StopThread(k % 2 == 0) : thread.StartThread();
      });
    }
    for (std::thread& other : others) other.join();
    thread.StopThread(true);
  }
  EXPECT_GT(work.runs, 0);
}

}  // namespace
