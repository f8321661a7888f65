// The calls of AgentCalls.h about workgroups (libraries, the operating system's fonts, web fonts) and rights in them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "agent/include/CallTypes.h"

namespace agent_protocol {

// The rights, by the names of their columns. The first is held for all workgroups or not at all.
inline constexpr const char* kActivateAcrossWorkgroups = "CanActivateAcrossWorkgroups";
inline constexpr const char* kExportFonts = "ExportFonts";

namespace calls {

struct GetAllWorkgroupsForUser {
  struct Arguments {
    bool includeSpecial = false;  // also those of the operating system's fonts and of web fonts
    AGENT_FIELDS(includeSpecial)
  };
  struct Result {
    std::vector<Record> workgroups;
    AGENT_FIELDS(workgroups)
  };
};

struct GetDefaultLibraryName {
  struct Arguments : Nothing {};
  struct Result {
    std::string name;
    AGENT_FIELDS(name)
  };
};

struct GetSystemWorkgroupID {
  struct Arguments : Nothing {};
  struct Result {
    uint32_t workgroupID = 0;
    AGENT_FIELDS(workgroupID)
  };
};

// Every workgroup, with its folders.
struct GetWorkgroups {
  struct Workgroup {
    uint32_t workgroupID = 0;
    std::string name;
    uint32_t type = 0;  // 3 a library, 4 the operating system's fonts, 8 web fonts
    std::vector<std::string> folders;
    AGENT_FIELDS(workgroupID, name, type, folders)
  };
  struct Arguments : Nothing {};
  struct Result {
    std::vector<Workgroup> workgroups;
    AGENT_FIELDS(workgroups)
  };
};

// Creates or changes a library, in the agent's configuration, and scans the folders.
struct PutLibrary {
  struct Arguments {
    uint32_t workgroupID = 0;          // 0 creates one
    std::string name;                  // the first library has always the same
    std::vector<std::string> folders;  // absolute paths; a folder need not exist yet
    AGENT_FIELDS(workgroupID, name, folders)
  };
  struct Result {
    uint32_t workgroupID = 0;
    std::string problem;  // a line for people if the call fails
    AGENT_FIELDS(workgroupID, problem)
  };
};

// Its sets move to the first library.
struct DeleteLibrary {
  struct Arguments {
    uint32_t workgroupID = 0;
    AGENT_FIELDS(workgroupID)
  };
  struct Result {
    std::string problem;  // a line for people if the call fails
    AGENT_FIELDS(problem)
  };
};

// Web fonts: a folder of an open collection of fonts, whose packed files the agent unpacks.

struct GetIsGoogleWebFontsEnabled {
  struct Arguments : Nothing {};
  using Result = Value;
};

struct SetGoogleWebFontsEnabled {
  struct Arguments {
    bool enabled = false;
    AGENT_FIELDS(enabled)
  };
  using Result = Nothing;
};

struct CanAccessGoogleFonts {
  struct Arguments : Nothing {};
  using Result = Value;
};

struct SetWebFontsFolder {
  struct Arguments {
    std::string folder;  // an absolute path; empty for none, which also disables web fonts
    AGENT_FIELDS(folder)
  };
  struct Result {
    std::string problem;  // a line for people if the call fails
    AGENT_FIELDS(problem)
  };
};

struct GetWebFontsStatus {
  struct Problem {
    std::string path;
    std::string message;
    AGENT_FIELDS(path, message)
  };
  struct Arguments : Nothing {};
  struct Result {
    std::string folder;
    bool enabled = false;
    bool isUnpacking = false;
    std::vector<Problem> problems;  // files that can't be unpacked
    AGENT_FIELDS(folder, enabled, isUnpacking, problems)
  };
};

struct Right {
  std::string right;
  uint32_t workgroupID = 0;  // 0: in all workgroups
  AGENT_FIELDS(right, workgroupID)
};

struct GetPermission {
  struct Arguments : Right {};
  using Result = Value;
};

struct GetDeniedRights {
  struct Arguments : Nothing {};
  struct Result {
    std::vector<Right> denied;
    AGENT_FIELDS(denied)
  };
};

struct DenyRight {
  struct Arguments : Right {};
  using Result = Nothing;
};

// For all workgroups: the right is held everywhere afterwards.
struct AllowRight {
  struct Arguments : Right {};
  using Result = Nothing;
};

}  // namespace calls

}  // namespace agent_protocol
