// A thread with a name, a state, a result, and an entry in the registry of all threads.
//
// A finished thread may be started again. A thread that was asked to stop before its entry function began never runs it
// and stays at kStopRequested forever. Nothing forces an entry function to end: it checks GetThreadState and returns on
// kStopRequested. A thread's own lock is never held while taking the registry's.
#pragma once

#include <pthread.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "GBarrier.h"
#include "GCondition.h"
#include "GScopedLock.h"

enum class EThreadState : int { kNotStarted = 0, kStarting = 1, kRunning = 2, kStopRequested = 3, kFinished = 4 };

class GThread {
 public:
  using EntryFunction = void* (*)(void* argument);

  GThread(EntryFunction entry, void* argument);
  // Asks the thread to stop, waits for it, and removes it from the registry.
  virtual ~GThread();
  GThread(const GThread&) = delete;
  GThread& operator=(const GThread&) = delete;

  // Does nothing unless the thread has not started yet or has finished. The thread has its name and its OS data when
  // this returns.
  void StartThread();
  // With `wait`, blocks until the thread has finished; must not be called by the thread itself then.
  void StopThread(bool wait);
  // Starts the thread, waits, and returns the entry function's result. If it did not run, returns null or the result of
  // an earlier run.
  void* RunSynchronously();

  EThreadState GetThreadState() const;
  std::string GetName() const;
  void SetName(const std::string& name);
  void* GetResult() const;

  // Returns the object of the calling thread, or null if it has none.
  static GThread* GetCurrentThreadObject();

 private:
  using OSData = std::optional<pthread_t>;

  GThread();  // for the thread that first uses the registry
  static void OSThreadingSetup();
  static void OSThreadSetup();
  static void OSThreadCleanup();
  static void* PthreadInternal(void* thread);
  bool CreateDetachedThread();
  static bool AreThreadsEqual(const OSData& a, const OSData& b);
  void Run();
  OSData GetOSData() const;
  void SetOSData(const OSData& data);
  void SetThreadState(EThreadState state);
  void SetResult(void* result);

  friend class GThreadRegistry;

  mutable GRecursiveMutex mMutex;  // guards everything below
  EntryFunction mEntry = nullptr;
  void* mArgument = nullptr;
  std::string mName;
  OSData mOSData;
  EThreadState mState = EThreadState::kNotStarted;
  void* mResult = nullptr;
  std::shared_ptr<GCondition> mFinished;
  std::shared_ptr<GBarrier> mStartBarrier;
};
