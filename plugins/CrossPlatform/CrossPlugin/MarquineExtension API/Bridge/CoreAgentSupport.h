// Small helpers of the source files of CoreAgentInterface.
#pragma once

#include <cstring>
#include <string>
#include <vector>

#include "Bridge/VPILoader.h"
#include "ErrorCodes.h"
#include "platform/Value.h"

inline const VPILoader& AgentTable() { return *VPILoader::GetSharedInstance(); }

// The three results that mean that the agent is not there.
bool IsAgentGone(TModuleErrorCode code);

// The text of a getter of a right's or column's name, in the given buffer or, where that is null, in one of 256 bytes.
using StringGetter = uint32_t (*)(char* buffer, uint32_t size);
std::string CallStringGetter(StringGetter getter, char* buffer = nullptr, uint32_t size = 0);

// A new array with a copy of the vector.
std::vector<uint32_t> CreateArrayFromVector(const std::vector<uint32_t>& values);
void AppendArrayToVector(const uint32_t* values, uint32_t count, std::vector<uint64_t>& out);
void AppendArrayToTUInt32Vector(const uint32_t* values, uint32_t count, std::vector<uint32_t>& out);

// The type of a workgroup; -1 if it has none. Text is read and nothing else, so a workgroup that GetAllWorkgroupsForUser
// renamed, whose type is an integer, counts as type 0: no special workgroup is found once it carries a localised name.
long WorkgroupTypeOf(const platform::Dictionary& workgroup);

// The nonzero font IDs of the records in order; with skipSystem those of system fonts are left out.
std::vector<uint32_t> GetFontIDsFromFontInfoArray(const platform::Array& fonts, bool skipSystem);

void ResetAgentCheckTimeForTesting();
double& LastCoreAgentCheckTime();  // in seconds of Clock::Steady, 0 at first
