// Other programs: which run, how to start one, and when the machine sleeps.
//
// An application announces itself by a file in the runtime folder ("applications/PID"): name, identifier, executable
// path and start time. Each entry is held against /proc (alive, same user, same executable, same start time) before it
// counts, so what a killed program left behind is ignored and removed.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/Value.h"

namespace platform {

struct RunningApplication {
  String localizedName;  // equal short ASCII names are one object: compare handles with ==
  std::string identifier;
  std::string executablePath;
  int processID = 0;
  uint64_t startTime = 0;  // in clock ticks since the machine started
};

// The one string object for an ASCII text of at most 64 bytes: the same handle for the same text, for the life of the
// process. Any other text gives a new object; malformed UTF-8 a null handle. Any thread.
PLATFORM_API String UniqueString(std::string_view text);

// In the order of their start.
PLATFORM_API std::vector<RunningApplication> RunningApplications();

// Announces this process until the returned object goes; null with a line in *error if the folder cannot be written.
class Announcement;
PLATFORM_API std::shared_ptr<Announcement> AnnounceApplication(const std::string& name, const std::string& identifier,
                                                               std::string* error = nullptr);

// Starts a program with exactly one argument, detached: its own session, standard input from /dev/null, standard output
// and error to the given file or, if that is empty, to /dev/null. It is reaped by itself. False with a line in *error.
PLATFORM_API bool LaunchDetached(const std::string& executable, const std::string& argument,
                                 const std::string& outputFile, std::string* error);
PLATFORM_API bool IsExecutableFile(const std::string& path);

// Sleep and wake of the machine. Observers are called on the caller's thread of PostPowerEvent, in order of adding; main
// thread only.
enum class PowerEvent { kWillSleep, kDidWake };
using PowerObserver = std::function<void(PowerEvent)>;
PLATFORM_API int AddPowerObserver(PowerObserver observer);
PLATFORM_API void RemovePowerObserver(int token);
PLATFORM_API void PostPowerEvent(PowerEvent event);
// Posts both events if the machine slept half a second or more since the last call; the main run loop calls it. A program
// learns of a sleep only when the machine is awake again, so that the two come together then. The argument is the whole
// time in seconds that the machine has slept since its start, which SecondsAsleep tells.
PLATFORM_API void NoticeSleep(double secondsAsleep);
PLATFORM_API double SecondsAsleep();

// A new UUID in its 36-character upper-case form; empty if the system can't make one.
PLATFORM_API std::string CreateUUIDString();

}  // namespace platform
