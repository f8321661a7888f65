// What is wrong with this machine's font set-up.
#include <algorithm>
#include <filesystem>
#include <set>

#include "agent/client/AgentFolders.h"
#include "agent/client/StateFolder.h"
#include "agent/include/AgentProtocol.h"
#include "nexctl/Commands.h"
#include "nexctl/Fonts.h"
#include "nexctl/RejectedFonts.h"
#include "platform/Files.h"
#include "platform/Folders.h"
#include "platform/Fonts.h"

namespace nexctl {

namespace {

namespace fs = std::filesystem;

struct Machine {
  calls::GetStatus::Result status;
  std::vector<calls::GetWorkgroups::Workgroup> workgroups;
  calls::GetWebFontsStatus::Result web;
  platform::FontServiceSetup setup;
  std::vector<fs::path> links;  // of active fonts
};

struct Finding {
  std::string problem, mend;
  bool isAdvice = false;  // nothing is wrong
};
using Findings = std::vector<Finding>;

bool IsBelow(const fs::path& path, const fs::path& folder) {
  std::error_code error;
  const fs::path real = fs::weakly_canonical(path, error), top = fs::weakly_canonical(folder, error);
  return std::ranges::mismatch(top, real).in1 == top.end();
}

std::string Example(const std::vector<fs::path>& paths) {
  const std::string others = paths.size() == 1 ? "" : " and " + std::to_string(paths.size() - 1) + " more";
  return paths.front().string() + others;
}

void CheckStorage(const Machine& machine, Findings& findings) {
  if (machine.status.unwritable.empty()) return;
  findings.push_back({"what changes lasts only until the font manager ends: " + machine.status.unwritable,
                      "make room on the disk of the state folder, or make it writable; then nexctl library rescan"});
}

void CheckFolders(const Machine& machine, Findings& findings) {
  for (const auto& workgroup : machine.workgroups) {
    for (const std::string& folder : workgroup.folders) {
      if (platform::FolderExists(folder) || workgroup.type == 8) continue;
      // Every new user has this library before they have the folder.
      if (folder == agent_client::DefaultLibraryFolder(platform::GetPlaces().home) && !fs::is_symlink(folder)) {
        findings.push_back({folder + ": is not there yet; fonts that you put there are found",
                            "make the folder, or name others with nexctl library add", true});
        continue;
      }
      findings.push_back(
          {folder + ": the folder of the library " + workgroup.name + " is not there",
           "attach its drive, or nexctl --workgroup " + std::to_string(workgroup.workgroupID) + " library remove it"});
    }
  }
  if (!machine.web.folder.empty() && !platform::FolderExists(machine.web.folder)) {
    findings.push_back(
        {machine.web.folder + ": the folder of web fonts is not there", "name another with nexctl webfonts folder"});
  }
}

void CheckWatches(const Machine& machine, Findings& findings) {
  if (!machine.status.isUnwatched) return;
  std::string most;
  platform::ReadFile("/proc/sys/fs/inotify/max_user_watches", most);
  findings.push_back({"a folder can't be watched for changes; the system allows " + most.substr(0, most.find('\n')) +
                          " watches for all programs of a user",
                      "as root: sysctl fs.inotify.max_user_watches=524288, and the same in /etc/sysctl.d"});
}

void CheckFontService(const Machine& machine, Findings& findings) {
  if (!machine.setup.isReadable) {
    findings.push_back({"fontconfig cannot read its configuration", "repair the file that fc-list complains about"});
    return;
  }
  const std::string& active = machine.status.activeFolder;
  const bool isRead =
      std::ranges::any_of(machine.setup.folders, [&](const std::string& folder) { return IsBelow(active, folder); });
  if (isRead) return;
  findings.push_back(
      {active + ": fontconfig does not read the folder of active fonts",
       "add <dir>" + active + "</dir> to " +
           (machine.status.isDesktop ? "~/.config/fontconfig/fonts.conf" : "fonts.conf of the state folder")});
}

void CheckRejection(const Machine& machine, Findings& findings) {
  bool isExplained = !machine.setup.isReadable;
  for (const RejectRule& rule : RejectRulesIn(machine.setup.configFiles)) {
    if (!Rejects(rule, machine.status.activeFolder)) continue;
    isExplained = true;
    findings.push_back({rule.file + ": rejects " + rule.glob +
                            ", and with it fonts that are activated here; another font"
                            " manager may have written it",
                        "remove that <rejectfont> from the file, or end the other font manager"});
  }
  std::set<std::string> listed;
  for (const platform::ActiveFont& font : platform::ActiveFonts()) listed.insert(fs::path(font.file).filename());
  std::vector<fs::path> unlisted;
  for (const fs::path& link : machine.links) {
    if (!listed.contains(link.filename())) unlisted.push_back(link);
  }
  if (unlisted.empty() || isExplained) return;
  findings.push_back({Example(unlisted) + ": fontconfig does not list an active font",
                      "look for <selectfont> in the files that fc-conflist names"});
}

void CheckLinks(const Machine& machine, Findings& findings) {
  if (!machine.status.isDesktop) return;
  std::vector<fs::path> symbolic;
  std::ranges::copy_if(machine.links, std::back_inserter(symbolic),
                       [](const fs::path& link) { return fs::is_symlink(link); });
  if (symbolic.empty()) return;
  findings.push_back(
      {Example(symbolic) + ": a symbolic link, which sandboxed programs cannot follow out of their sandbox",
       "keep the library on the disk of the home folder, and activate the font again"});
}

constexpr void (*kChecks[])(const Machine&, Findings&) = {CheckStorage,     CheckFolders,   CheckWatches,
                                                          CheckFontService, CheckRejection, CheckLinks};

Machine Examine(const Call& call) {
  Session session(call.options.state);
  session.AwaitScan();
  Machine machine;
  machine.status = session.Ask<calls::GetStatus>();
  machine.workgroups = session.Ask<calls::GetWorkgroups>().workgroups;
  machine.web = session.Ask<calls::GetWebFontsStatus>();
  if (!machine.status.isDesktop) {
    platform::Places places = platform::GetPlaces();
    places.fontConfigFile = agent_client::SessionFolderOf(session.StateFolder()) + "/fonts.conf";
    platform::SetPlaces(places);
  }
  machine.setup = platform::GetFontServiceSetup();
  std::error_code error;
  for (const auto& entry : fs::recursive_directory_iterator(machine.status.activeFolder, error)) {
    const bool isOurs = !entry.path().filename().string().starts_with(".");
    if (isOurs && (entry.is_symlink() || entry.is_regular_file())) machine.links.push_back(entry.path());
  }
  return machine;
}

}  // namespace

int Diagnose(const Call& call) {
  Findings findings;
  try {
    const Machine machine = Examine(call);
    for (const auto& check : kChecks) check(machine, findings);
  } catch (const Failure& failure) {
    findings.push_back({failure.what(), "see nexctl log"});
  }
  const auto problems = std::ranges::count(findings, false, &Finding::isAdvice);
  if (problems == 0 && !call.output.IsJson()) call.output.Line("nothing is wrong");
  for (const Finding& finding : findings) {
    if (call.output.IsJson()) {
      call.output.Object({{finding.isAdvice ? "advice" : "problem", finding.problem}, {"mend", finding.mend}});
      continue;
    }
    call.output.Line(finding.problem);
    call.output.Line("    " + finding.mend);
  }
  return problems == 0 ? 0 : 1;
}

}  // namespace nexctl
