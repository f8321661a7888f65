#include "agent/include/AgentProtocol.h"
#include "nexctl/Commands.h"
#include "nexctl/Fonts.h"

namespace nexctl {

namespace {

struct Outcome {
  const char* word;
  const Numbers& ids;
};

// Prints a row for each font and returns whether all have the first outcome.
bool Report(const Call& call, Session& session, const std::vector<Outcome>& outcomes) {
  std::vector<std::vector<std::string>> rows;
  bool isGood = true;
  for (const Outcome& outcome : outcomes) {
    isGood = isGood && (&outcome == &outcomes.front() || outcome.ids.empty());
    for (const Description& font : Describe(session, outcome.ids)) {
      rows.push_back({outcome.word, std::to_string(font.fontID), font.postscriptName, font.path});
    }
  }
  call.output.Table({"outcome", "id", "name", "path"}, rows);
  return isGood;
}

}  // namespace

int ActivateFonts(const Call& call) {
  Session session(call.options.state);
  const Numbers ids = FontsNamed(session, call.arguments);
  const auto result = session.Ask<calls::ActivateFonts>({ids, agent_protocol::kActivated});
  return Report(call, session,
                {{"activated", result.activated}, {"failed", result.failed}, {"refused", result.refused}})
             ? 0
             : 1;
}

int DeactivateFonts(const Call& call) {
  Session session(call.options.state);
  const Numbers ids = FontsNamed(session, call.arguments);
  const auto reply = session.Try<calls::DeactivateFonts>({ids, true});
  if (reply.code != agent_protocol::kSuccess && reply.code != agent_protocol::kCantDeactivateSystemFonts) {
    throw Failure(DescribeCode(reply.code));
  }
  Numbers inactive, stillActive;
  for (const Description& font : Describe(session, ids)) {
    const auto state = static_cast<agent_protocol::AgentActivationState>(font.state);
    (agent_protocol::IsActiveState(state) ? stillActive : inactive).push_back(font.fontID);
  }
  return Report(call, session, {{"inactive", inactive}, {"still active", stillActive}}) ? 0 : 1;
}

}  // namespace nexctl
