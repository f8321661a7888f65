// Web fonts: a folder with an open collection of fonts.
#include "nexctl/Commands.h"
#include "nexctl/Fonts.h"
#include "platform/Files.h"

namespace nexctl {

namespace {

int Enable(const Call& call, bool enabled) {
  Session session(call.options.state);
  const auto code = session.Try<calls::SetGoogleWebFontsEnabled>({enabled}).code;
  if (code == agent_protocol::kNotFound) throw Failure("there is no folder of web fonts (nexctl webfonts folder)");
  if (code != agent_protocol::kSuccess) throw Failure(DescribeCode(code));
  session.AwaitScan();
  return 0;
}

}  // namespace

int ShowWebFonts(const Call& call) {
  Session session(call.options.state);
  const auto status = session.Ask<calls::GetWebFontsStatus>();
  const size_t fonts = session.Ask<calls::GetGoogleFonts>().fonts.size();
  const bool isMissing = !status.folder.empty() && !platform::FolderExists(status.folder);
  if (call.output.IsJson()) {
    call.output.Object({{"enabled", status.enabled},
                        {"folder", status.folder},
                        {"isThere", !isMissing && !status.folder.empty()},
                        {"isUnpacking", status.isUnpacking},
                        {"fonts", fonts}});
    return 0;
  }
  call.output.Line(std::string("web fonts  ") + (status.enabled ? "enabled" : "disabled"));
  call.output.Line("folder     " + (status.folder.empty() ? "none" : status.folder) +
                   (isMissing ? ", which is not there now" : ""));
  call.output.Line("fonts      " + std::to_string(fonts) + (status.isUnpacking ? ", more are being unpacked" : ""));
  for (const auto& problem : status.problems) call.output.Line(problem.path + ": " + problem.message);
  return 0;
}

int EnableWebFonts(const Call& call) { return Enable(call, true); }
int DisableWebFonts(const Call& call) { return Enable(call, false); }

int SetWebFontsFolder(const Call& call) {
  const std::string folder = AbsoluteFolder(call.arguments[0]);
  if (!platform::FolderExists(folder)) throw Failure(folder + ": is not a folder");
  Session session(call.options.state);
  const auto reply = session.Try<calls::SetWebFontsFolder>({folder});
  if (!reply.result.problem.empty()) throw Failure(reply.result.problem);
  if (reply.code != agent_protocol::kSuccess) throw Failure(DescribeCode(reply.code));
  session.AwaitScan();
  return 0;
}

}  // namespace nexctl
