// Helpers for the source files of CoreAgentInterface.
#pragma once

#include <cstring>
#include <string>
#include <vector>

#include "Bridge/VPILoader.h"
#include "ErrorCodes.h"
#include "platform/Value.h"

inline const VPILoader& AgentTable() { return *VPILoader::GetSharedInstance(); }

// True for the three codes that mean that the agent is gone.
bool IsAgentGone(TModuleErrorCode code);

// Calls a getter of the name of a right or column and returns the text. Uses the given buffer, or one of 256 bytes if
// it is null.
using StringGetter = uint32_t (*)(char* buffer, uint32_t size);
std::string CallStringGetter(StringGetter getter, char* buffer = nullptr, uint32_t size = 0);

// Returns a copy of the vector.
std::vector<uint32_t> CreateArrayFromVector(const std::vector<uint32_t>& values);
void AppendArrayToVector(const uint32_t* values, uint32_t count, std::vector<uint64_t>& out);
void AppendArrayToTUInt32Vector(const uint32_t* values, uint32_t count, std::vector<uint32_t>& out);

// Returns the type of a workgroup, or -1 if it has none. Reads text only. A workgroup that GetAllWorkgroupsForUser
// renamed has an integer type and counts as type 0, so a special workgroup with a localised name is never found. Keep
// it: callers depend on it.
long WorkgroupTypeOf(const platform::Dictionary& workgroup);

// Returns the nonzero font IDs of the records, in order; with skipSystem without those of system fonts.
std::vector<uint32_t> GetFontIDsFromFontInfoArray(const platform::Array& fonts, bool skipSystem);

void ResetAgentCheckTimeForTesting();
double& LastCoreAgentCheckTime();  // seconds of Clock::Steady; 0 at first
