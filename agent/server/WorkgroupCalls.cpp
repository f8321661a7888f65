// The handlers of the session calls about workgroups and rights.
#include <algorithm>
#include <iterator>

#include "agent/fonts/FontRecord.h"
#include "agent/server/Agent.h"
#include "frameworks/VelorantPluginInterface/include/PluginInterface.h"

namespace agent {

namespace {

constexpr size_t kLongestLibraryName = 127;  // bytes; what clients have room for

// The workgroup of this folder; null if there is none.
const Workgroup* OwnerOf(const Workgroups& workgroups, const std::string& folder) {
  const auto owner = std::ranges::find_if(workgroups, [&](const Workgroup& workgroup) {
    return std::ranges::find(workgroup.folders, folder) != workgroup.folders.end();
  });
  return owner == workgroups.end() ? nullptr : &*owner;
}

// Makes the library in `changed` what the arguments say. Returns a line for people if that is impossible.
std::string Put(const calls::PutLibrary::Arguments& arguments, Configuration& changed, uint32_t& id) {
  id = arguments.workgroupID;
  const bool isFirst = id == kFontLibraryID;
  if (isFirst && arguments.name != kFontLibraryName) return "the first library can't be renamed";
  if (arguments.name.empty() || arguments.name.size() > kLongestLibraryName) return "the name is empty or too long";
  const Workgroups before = changed.AllWorkgroups();
  std::vector<std::string> folders;
  for (const std::string& folder : arguments.folders) {
    if (!folder.starts_with('/')) return folder + ": is not an absolute path";
    folders.push_back(CleanFolder(changed, folder));
    const Workgroup* owner = OwnerOf(before, folders.back());
    if (owner && owner->id != id) return folder + ": is a folder of the library " + owner->name;
  }
  if (isFirst) {
    changed.library = folders;
    return "";
  }
  if (id == 0) {
    id = ++changed.lastLibraryID;
    changed.ownLibraries.push_back({id, arguments.name, kLibraryType, folders});
    return "";
  }
  const auto library = std::ranges::find(changed.ownLibraries, id, &Workgroup::id);
  if (library == changed.ownLibraries.end()) return "there is no library " + std::to_string(id);
  library->name = arguments.name;
  library->folders = folders;
  return "";
}

}  // namespace

bool Agent::ChangeConfiguration(const Configuration& changed, std::string& problem) {
  if (!StoreConfiguration(changed, problem)) {
    log_.Write(problem);
    return false;
  }
  configuration_ = changed;
  FollowWebFolder();
  if (library_) library_->SetWorkgroups(configuration_.AllWorkgroups());
  Notify({{"notify", PluginInterface::kWorkgroupsChanged}});
  return true;
}

Answer<calls::GetAllWorkgroupsForUser> Agent::Serve(ClientID,
                                                    const calls::GetAllWorkgroupsForUser::Arguments& arguments) {
  calls::GetAllWorkgroupsForUser::Result result;
  for (const Workgroup& workgroup : configuration_.AllWorkgroups()) {
    if (workgroup.type != kLibraryType && !arguments.includeSpecial) continue;
    result.workgroups.push_back(MakeWorkgroupRecord(workgroup));
  }
  return result;
}

Answer<calls::GetDefaultLibraryName> Agent::Serve(ClientID, const calls::GetDefaultLibraryName::Arguments&) {
  return calls::GetDefaultLibraryName::Result{kFontLibraryName};
}

Answer<calls::GetSystemWorkgroupID> Agent::Serve(ClientID, const calls::GetSystemWorkgroupID::Arguments&) {
  return calls::GetSystemWorkgroupID::Result{kSystemFontsID};
}

Answer<calls::GetWorkgroups> Agent::Serve(ClientID, const calls::GetWorkgroups::Arguments&) {
  calls::GetWorkgroups::Result result;
  for (const Workgroup& workgroup : configuration_.AllWorkgroups()) {
    result.workgroups.push_back(
        {workgroup.id, workgroup.name, static_cast<uint32_t>(workgroup.type), workgroup.folders});
  }
  return result;
}

Answer<calls::PutLibrary> Agent::Serve(ClientID, const calls::PutLibrary::Arguments& arguments) {
  Configuration changed = configuration_;
  uint32_t id = 0;
  std::string problem = Put(arguments, changed, id);
  if (!problem.empty()) return {kInvalidParam, {0, problem}};
  if (!ChangeConfiguration(changed, problem)) return {kDatabaseError, {0, problem}};
  return calls::PutLibrary::Result{id, ""};
}

Answer<calls::DeleteLibrary> Agent::Serve(ClientID, const calls::DeleteLibrary::Arguments& arguments) {
  Configuration changed = configuration_;
  const uint32_t id = arguments.workgroupID;
  if (std::erase_if(changed.ownLibraries, [id](const Workgroup& library) { return library.id == id; }) == 0) {
    return {kNotFound, {"there is no library " + std::to_string(id) + " that can be deleted"}};
  }
  std::string problem;
  if (!ChangeConfiguration(changed, problem)) return {kDatabaseError, {problem}};
  // If this fails, sets and lists name a workgroup that does not exist, which they may.
  if (library_) library_->User().ForgetWorkgroup(id, kFontLibraryID);
  if (library_) library_->NoteListsChanged();
  return calls::DeleteLibrary::Result();
}

// The one right that is checked across workgroups can't be taken away in one of them.
bool Agent::IsRight(const calls::Right& right) const {
  if (right.right == kActivateAcrossWorkgroups) return right.workgroupID == kAllWorkgroups;
  if (right.right != kExportFonts) return false;
  const Workgroups workgroups = configuration_.AllWorkgroups();
  return right.workgroupID == kAllWorkgroups || FindWorkgroup(workgroups, right.workgroupID);
}

Answer<calls::GetPermission> Agent::Serve(ClientID, const calls::GetPermission::Arguments& arguments) {
  if (!library_) return kInvalidVault;
  const bool isRight = arguments.right == kActivateAcrossWorkgroups || arguments.right == kExportFonts;
  const bool isHeld = isRight && library_->Rights().IsHeld(arguments.right, arguments.workgroupID);
  return calls::Value{isHeld ? 1u : 0u};
}

Answer<calls::GetDeniedRights> Agent::Serve(ClientID, const calls::GetDeniedRights::Arguments&) {
  if (!library_) return kInvalidVault;
  calls::GetDeniedRights::Result result;
  for (DeniedRight& right : library_->Rights().Denied()) {
    result.denied.push_back({std::move(right.name), right.workgroupID});
  }
  return result;
}

Answer<calls::DenyRight> Agent::Serve(ClientID, const calls::DenyRight::Arguments& arguments) {
  if (!library_) return kInvalidVault;
  if (!IsRight(arguments)) return kInvalidParam;
  library_->Rights().TakeAway({arguments.right, arguments.workgroupID});
  Notify({{"notify", PluginInterface::kUserPermissionsChanged}});
  return calls::Nothing();
}

Answer<calls::AllowRight> Agent::Serve(ClientID, const calls::AllowRight::Arguments& arguments) {
  if (!library_) return kInvalidVault;
  if (!IsRight(arguments)) return kInvalidParam;
  library_->Rights().GiveBack({arguments.right, arguments.workgroupID});
  Notify({{"notify", PluginInterface::kUserPermissionsChanged}});
  return calls::Nothing();
}

}  // namespace agent
