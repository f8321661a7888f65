// Other programs: listing and starting them, and sleep of the machine.
//
// An application announces itself with a file in the runtime folder ("applications/PID"): name, identifier, executable
// path and start time. An entry counts only if /proc confirms it (alive, same user, same executable, same start time).
// Entries that a killed program left are removed.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/Value.h"

namespace platform {

struct RunningApplication {
  String localizedName;  // equal short ASCII names are one object; compare handles with ==
  std::string identifier;
  std::string executablePath;
  int processID = 0;
  uint64_t startTime = 0;  // clock ticks since the machine started
};

// Interns an ASCII text of at most 64 bytes: returns the same handle for the same text for the life of the process. Any
// other text gives a new object, malformed UTF-8 a null handle. Thread-safe.
PLATFORM_API String UniqueString(std::string_view text);

// In the order in which they started.
PLATFORM_API std::vector<RunningApplication> RunningApplications();

// Announces this process until the returned object is destroyed. Returns null, with a line in *error, if the folder
// cannot be written.
class Announcement;
PLATFORM_API std::shared_ptr<Announcement> AnnounceApplication(const std::string& name, const std::string& identifier,
                                                               std::string* error = nullptr);

// Starts a program with exactly one argument, detached: in its own session, with standard input from /dev/null, and
// standard output and error to the given file, or to /dev/null if that is empty. The caller need not wait for it.
// Returns false with a line in *error on failure.
PLATFORM_API bool LaunchDetached(const std::string& executable, const std::string& argument,
                                 const std::string& outputFile, std::string* error);
PLATFORM_API bool IsExecutableFile(const std::string& path);

// Sleep and wake of the machine. PostPowerEvent calls the observers in the order in which they were added. Main thread
// only.
enum class PowerEvent { kWillSleep, kDidWake };
using PowerObserver = std::function<void(PowerEvent)>;
PLATFORM_API int AddPowerObserver(PowerObserver observer);
PLATFORM_API void RemovePowerObserver(int token);
PLATFORM_API void PostPowerEvent(PowerEvent event);
// Posts both events if the machine slept half a second or more since the last call. The main run loop calls it. A
// program learns of a sleep only after it, so both events come together. The argument is the total time in seconds that
// the machine has slept since its start, which SecondsAsleep returns.
PLATFORM_API void NoticeSleep(double secondsAsleep);
PLATFORM_API double SecondsAsleep();

// Returns a new UUID in its 36-character upper-case form, or an empty string if the system cannot create one.
PLATFORM_API std::string CreateUUIDString();

}  // namespace platform
