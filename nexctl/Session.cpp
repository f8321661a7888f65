#include "nexctl/Session.h"

#include <chrono>
#include <cstdio>
#include <filesystem>

#include "agent/client/AgentFolders.h"
#include "agent/include/AgentProtocol.h"
#include "nexctl/Progress.h"
#include "platform/Files.h"
#include "platform/Folders.h"
#include "platform/PlainText.h"
#include "platform/Process.h"
#include "platform/Waiting.h"

namespace nexctl {

namespace {

namespace fs = std::filesystem;
constexpr std::chrono::seconds kPatience(10);
constexpr std::chrono::milliseconds kBetweenLooks(50);

std::string AgentProgram() {
  std::error_code error;
  const fs::path self = fs::read_symlink("/proc/self/exe", error);
  return (self.parent_path().parent_path() / "agent" / agent_protocol::kAgentName).string();
}

std::string Absolute(const std::string& folder) {
  std::error_code error;
  const fs::path path = fs::absolute(folder, error).lexically_normal();
  return error ? folder : path.string();
}

}  // namespace

std::string StateFolderNamed(const std::string& name) {
  return Absolute(name.empty() ? platform::UserStateFolder() : name);
}

std::string DescribeCode(agent_protocol::ResultCode code) {
  using namespace agent_protocol;
  switch (code) {
    case kInvalidParam: return "the font manager refuses an argument";
    case kNotFound: return "there is no such font, set or list";
    case kNotImplemented: return "this font manager does not know the call; is it older than this program?";
    case kDatabaseError: return "the font manager cannot store this; its log says why (nexctl log)";
    case kInvalidVault: return "the font manager cannot use its databases, or its state folder is gone";
    case kNotGrantedExport: return "the right to export some of the fonts was taken away (nexctl rights list)";
    case kCouldNotCopyFile: return "a font file could not be copied";
    case kCantDeactivateSystemFonts: return "fonts of the operating system can't be deactivated";
    case kMessageTooLarge: return "the request is too long";
    case kAgentShutdownCode: return "the font manager has ended or does not answer";
    default: break;
  }
  char text[64];
  std::snprintf(text, sizeof text, "the font manager failed with code 0x%08X", code);
  return text;
}

Session::Session(const std::string& stateFolder, const NotificationHandler& onNotification)
    : stateFolder_(StateFolderNamed(stateFolder)) {
  if (Connect(onNotification)) return;
  // The agent sets up the user's own folder.
  if (!platform::FolderExists(stateFolder_) && stateFolder_ != StateFolderNamed("")) {
    throw Failure(stateFolder_ + ": there is no state folder of a font manager; --state names another");
  }
  Launch(onNotification);
}

bool Session::Connect(const NotificationHandler& onNotification) {
  platform::Descriptor socket = agent_client::ReachAgent(agent_client::RuntimeFolderOf(stateFolder_));
  if (!socket) return false;
  connection_ = std::make_unique<agent_client::AgentConnection>(
      std::move(socket), onNotification ? onNotification : [](const Json&) {}, [] {});
  const auto reply = connection_->Call<calls::Hello>({.notifications = static_cast<bool>(onNotification)});
  const bool isAnswer = reply.code == agent_protocol::kSuccess || reply.code == agent_protocol::kVersionMismatch;
  if (isAnswer && reply.result.protocol != agent_protocol::kProtocolVersion) {
    throw Failure("the font manager that runs speaks protocol " + std::to_string(reply.result.protocol) +
                  ", this program " + std::to_string(agent_protocol::kProtocolVersion));
  }
  if (connection_->HasFallenSilent()) throw Failure("the font manager runs and does not answer");
  if (reply.code != agent_protocol::kSuccess) return false;
  const auto status = connection_->Call<calls::GetStatus>({});
  if (!status.result.unwritable.empty()) {
    std::fprintf(stderr, "nexctl: changes last only until the font manager ends: %s\n",
                 platform::OneLine(status.result.unwritable).c_str());
  }
  return true;
}

void Session::AwaitScan() {
  Progress progress("reading fonts");
  platform::WaitUntil(
      platform::kForever,
      [&] {
        const auto status = Ask<calls::GetStatus>();
        progress.Show(status.step, status.steps, "files");
        return !status.isScanning;
      },
      kBetweenLooks);
}

void Session::Launch(const NotificationHandler& onNotification) {
  std::error_code error = agent_client::MakeSessionFolder(stateFolder_);
  const std::string agent = AgentProgram(), logs = agent_client::SessionFolderOf(stateFolder_) + "/logs";
  const std::string errors = logs + "/agent.err";
  std::string problem;
  if (!error) error = platform::MakeFolder(logs);
  if (error) throw Failure(stateFolder_ + ": " + platform::DescribeError(error));
  std::remove(errors.c_str());  // those of the previous agent
  if (!platform::LaunchDetached(agent, stateFolder_, errors, &problem)) throw Failure(problem);
  Progress progress("starting the font manager");
  const auto isConnected = [&] {
    progress.Show();
    return Connect(onNotification);
  };
  if (platform::WaitUntil(kPatience, isConnected)) return;
  std::string words;
  platform::ReadFile(errors, words);
  if (words.ends_with('\n')) words.pop_back();
  throw Failure(agent + ": the font manager did not start" + (words.empty() ? "" : ": " + words));
}

}  // namespace nexctl
