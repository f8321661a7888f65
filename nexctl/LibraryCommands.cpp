// Libraries, which are workgroups of folders, and rights in workgroups.
#include <algorithm>

#include "nexctl/Commands.h"
#include "nexctl/Fonts.h"
#include "platform/Files.h"

namespace nexctl {

namespace {

using Workgroup = calls::GetWorkgroups::Workgroup;
constexpr uint32_t kLibraryType = 3;

// The library that --workgroup names, or the first. Throws Failure.
Workgroup LibraryOf(const Call& call, Session& session) {
  const uint32_t id = WorkgroupOf(call);
  for (Workgroup& workgroup : session.Ask<calls::GetWorkgroups>().workgroups) {
    if (workgroup.workgroupID == id && workgroup.type == kLibraryType) return std::move(workgroup);
  }
  throw Failure("there is no library " + std::to_string(id) + " (nexctl workgroup list)");
}

uint32_t Put(Session& session, const Workgroup& library) {
  const auto reply = session.Try<calls::PutLibrary>({library.workgroupID, library.name, library.folders});
  if (!reply.result.problem.empty()) throw Failure(reply.result.problem);
  if (reply.code != agent_protocol::kSuccess) throw Failure(DescribeCode(reply.code));
  session.AwaitScan();
  return reply.result.workgroupID;
}

std::string ExistingFolder(const std::string& argument) {
  std::string folder = AbsoluteFolder(argument);
  if (!platform::FolderExists(folder)) throw Failure(folder + ": is not a folder");
  return folder;
}

const char* TypeText(uint32_t type) {
  switch (type) {
    case kLibraryType: return "library";
    case 4: return "system";
    case 8: return "web fonts";
    default: return "";
  }
}

struct RightName {
  const char* word;
  const char* right;
};
constexpr RightName kRights[] = {{"export", agent_protocol::kExportFonts},
                                 {"activate-across", agent_protocol::kActivateAcrossWorkgroups}};

calls::Right RightNamed(const std::vector<std::string>& arguments) {
  const auto* const right = std::ranges::find(kRights, arguments[0], &RightName::word);
  if (right == std::end(kRights)) throw WrongUsage("a right is export or activate-across, not '" + arguments[0] + "'");
  return {right->right, arguments.size() > 1 ? NumberOf(arguments[1]) : 0};
}

}  // namespace

int ListLibrary(const Call& call) {
  Session session(call.options.state);
  std::vector<std::vector<std::string>> rows;
  for (const Workgroup& workgroup : session.Ask<calls::GetWorkgroups>().workgroups) {
    for (const std::string& folder : workgroup.folders) {
      rows.push_back({std::to_string(workgroup.workgroupID), workgroup.name, folder,
                      platform::FolderExists(folder) ? "" : "is not there now"});
    }
  }
  call.output.Table({"workgroup", "name", "folder", "problem"}, rows);
  return 0;
}

int AddToLibrary(const Call& call) {
  Session session(call.options.state);
  Workgroup library = LibraryOf(call, session);
  for (const std::string& argument : call.arguments) {
    const std::string folder = ExistingFolder(argument);
    if (std::ranges::find(library.folders, folder) == library.folders.end()) library.folders.push_back(folder);
  }
  Put(session, library);
  return 0;
}

int RemoveFromLibrary(const Call& call) {
  Session session(call.options.state);
  Workgroup library = LibraryOf(call, session);
  for (const std::string& argument : call.arguments) {
    if (std::erase(library.folders, AbsoluteFolder(argument)) == 0) {
      throw Failure(argument + ": is not among the library's folders (nexctl library list)");
    }
  }
  Put(session, library);
  return 0;
}

int Rescan(const Call& call) {
  Session session(call.options.state);
  session.Ask<calls::Rescan>();
  session.AwaitScan();
  return 0;
}

int ListWorkgroups(const Call& call) {
  Session session(call.options.state);
  std::vector<std::vector<std::string>> rows;
  for (const Workgroup& workgroup : session.Ask<calls::GetWorkgroups>().workgroups) {
    rows.push_back({std::to_string(workgroup.workgroupID), TypeText(workgroup.type), workgroup.name});
  }
  call.output.Table({"id", "type", "name"}, rows);
  return 0;
}

int CreateWorkgroup(const Call& call) {
  Session session(call.options.state);
  Workgroup library;
  library.name = call.arguments[0];
  for (const std::string& argument : After(call.arguments, 1)) library.folders.push_back(ExistingFolder(argument));
  return PrintCreated(call, Put(session, library));
}

int RenameWorkgroup(const Call& call) {
  Session session(call.options.state);
  const uint32_t id = NumberOf(call.arguments[0]);
  for (Workgroup& workgroup : session.Ask<calls::GetWorkgroups>().workgroups) {
    if (workgroup.workgroupID != id) continue;
    workgroup.name = call.arguments[1];
    Put(session, workgroup);
    return 0;
  }
  throw Failure("there is no library " + call.arguments[0]);
}

int DeleteWorkgroup(const Call& call) {
  Session session(call.options.state);
  const auto reply = session.Try<calls::DeleteLibrary>({NumberOf(call.arguments[0])});
  if (!reply.result.problem.empty()) throw Failure(reply.result.problem);
  if (reply.code != agent_protocol::kSuccess) throw Failure(DescribeCode(reply.code));
  session.AwaitScan();
  return 0;
}

int ListRights(const Call& call) {
  Session session(call.options.state);
  const auto denied = session.Ask<calls::GetDeniedRights>().denied;
  std::vector<std::vector<std::string>> rows;
  for (const RightName& right : kRights) {
    bool isHeldEverywhere = true;
    for (const calls::Right& missing : denied) {
      if (missing.right != right.right) continue;
      isHeldEverywhere = false;
      const bool isAll = missing.workgroupID == 0;
      rows.push_back({right.word, isAll ? "all" : std::to_string(missing.workgroupID), "denied"});
    }
    if (isHeldEverywhere) rows.push_back({right.word, "all", "allowed"});
  }
  call.output.Table({"right", "workgroup", "state"}, rows);
  return 0;
}

int DenyRight(const Call& call) {
  Session session(call.options.state);
  session.Ask<calls::DenyRight>({RightNamed(call.arguments)});
  return 0;
}

int AllowRight(const Call& call) {
  Session session(call.options.state);
  session.Ask<calls::AllowRight>({RightNamed(call.arguments)});
  return 0;
}

}  // namespace nexctl
