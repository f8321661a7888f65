// Sets, smart sets and smart lists.
#include "nexctl/Commands.h"
#include "nexctl/Fonts.h"

namespace nexctl {

namespace {

std::string Joined(const Numbers& numbers) {
  std::string text;
  for (const uint32_t number : numbers) text += (text.empty() ? "" : " ") + std::to_string(number);
  return text;
}

std::string RuleOf(const std::vector<std::string>& words) {
  std::string rule;
  for (const std::string& word : words) rule += (rule.empty() ? "" : " ") + word;
  return rule;
}

uint32_t PutSmartSet(const Call& call, uint32_t id, const std::string& name, const std::string& rule) {
  Session session(call.options.state);
  const auto reply = session.Try<calls::PutSmartSet>({id, name, rule});
  if (!reply.result.problem.empty()) throw WrongUsage(reply.result.problem);
  if (reply.code != agent_protocol::kSuccess) throw Failure(DescribeCode(reply.code));
  return reply.result.smartSetID;
}

struct Parts {
  Numbers workgroupIDs, setIDs, smartSetIDs;
};

// "workgroup:1", "set:3" or "smartset:2".
Parts PartsOf(const std::vector<std::string>& words) {
  Parts parts;
  for (const std::string& word : words) {
    const size_t colon = word.find(':');
    const std::string kind = word.substr(0, colon);
    const uint32_t id = NumberOf(colon == std::string::npos ? "" : word.substr(colon + 1));
    if (kind == "workgroup") {
      parts.workgroupIDs.push_back(id);
    } else if (kind == "set") {
      parts.setIDs.push_back(id);
    } else if (kind == "smartset") {
      parts.smartSetIDs.push_back(id);
    } else {
      throw WrongUsage("a part of a smart list is workgroup:ID, set:ID or smartset:ID, not '" + word + "'");
    }
  }
  return parts;
}

}  // namespace

int ListSets(const Call& call) {
  Session session(call.options.state);
  std::vector<std::vector<std::string>> rows;
  for (const auto& set : session.Ask<calls::GetSets>().sets) {
    rows.push_back({std::to_string(set.setID), set.name, Joined(set.fontIDs)});
  }
  call.output.Table({"id", "name", "fonts"}, rows);
  return 0;
}

int CreateSet(const Call& call) {
  Session session(call.options.state);
  const Numbers fonts = FontsNamed(session, After(call.arguments, 1));
  return PrintCreated(call, session.Ask<calls::CreateTopLevelSet>({call.arguments[0], WorkgroupOf(call), fonts}).setID);
}

int AddToSet(const Call& call) {
  Session session(call.options.state);
  const Numbers fonts = FontsNamed(session, After(call.arguments, 1));
  session.Ask<calls::AddFontsToSets>({{NumberOf(call.arguments[0])}, fonts});
  return 0;
}

int RemoveFromSet(const Call& call) {
  Session session(call.options.state);
  const Numbers fonts = FontsNamed(session, After(call.arguments, 1));
  session.Ask<calls::RemoveFontsFromSet>({NumberOf(call.arguments[0]), fonts});
  return 0;
}

int RenameSet(const Call& call) {
  Session session(call.options.state);
  session.Ask<calls::RenameSet>({NumberOf(call.arguments[0]), call.arguments[1]});
  return 0;
}

int DeleteSet(const Call& call) {
  Session session(call.options.state);
  session.Ask<calls::DeleteSet>({NumberOf(call.arguments[0])});
  return 0;
}

int ListSmartSets(const Call& call) {
  Session session(call.options.state);
  std::vector<std::vector<std::string>> rows;
  for (const auto& set : session.Ask<calls::GetSmartSets>().smartSets) {
    rows.push_back({std::to_string(set.smartSetID), set.name, set.rule});
  }
  call.output.Table({"id", "name", "rule"}, rows);
  return 0;
}

int CreateSmartSet(const Call& call) {
  return PrintCreated(call, PutSmartSet(call, 0, call.arguments[0], RuleOf(After(call.arguments, 1))));
}

int ChangeSmartSet(const Call& call) {
  const uint32_t id = NumberOf(call.arguments[0]);
  if (id == 0) throw WrongUsage("there is no smart set 0");
  PutSmartSet(call, id, call.arguments[1], RuleOf(After(call.arguments, 2)));
  return 0;
}

int DeleteSmartSet(const Call& call) {
  Session session(call.options.state);
  session.Ask<calls::DeleteSmartSet>({NumberOf(call.arguments[0])});
  return 0;
}

int ListSmartLists(const Call& call) {
  Session session(call.options.state);
  std::vector<std::vector<std::string>> rows;
  for (const auto& list : session.Ask<calls::GetAllSmartLists>().smartLists) {
    rows.push_back({std::to_string(list.smartListID), list.name});
  }
  call.output.Table({"id", "name"}, rows);
  return 0;
}

int ShowSmartList(const Call& call) {
  Session session(call.options.state);
  const uint32_t id = NumberOf(call.arguments[0]);
  std::string text = session.Ask<calls::GetPanelSmartListTree>({id}).text;
  const auto fonts = session.Ask<calls::GetSmartListFonts>({id}).fonts;
  std::vector<std::vector<std::string>> rows;
  rows.reserve(fonts.size());
  for (const auto& font : fonts) {
    rows.push_back(
        {std::to_string(font.fontID), font.activated ? "active" : "", font.postscriptName, font.displayName});
  }
  for (size_t end = 0; !call.output.IsJson() && (end = text.find('\n')) != std::string::npos; text.erase(0, end + 1)) {
    call.output.Line(text.substr(0, end));
  }
  call.output.Table({"id", "state", "name", "display"}, rows);
  return 0;
}

int CreateSmartList(const Call& call) {
  const Parts parts = PartsOf(After(call.arguments, 1));
  Session session(call.options.state);
  return PrintCreated(
      call,
      session.Ask<calls::CreateSmartList>({call.arguments[0], parts.workgroupIDs, parts.setIDs, parts.smartSetIDs})
          .smartListID);
}

int ChangeSmartList(const Call& call) {
  const Parts parts = PartsOf(After(call.arguments, 1));
  Session session(call.options.state);
  session.Ask<calls::SetSmartListQuery>(
      {NumberOf(call.arguments[0]), parts.workgroupIDs, parts.setIDs, parts.smartSetIDs});
  return 0;
}

int RenameSmartList(const Call& call) {
  Session session(call.options.state);
  session.Ask<calls::RenameSmartList>({NumberOf(call.arguments[0]), call.arguments[1]});
  return 0;
}

int DeleteSmartList(const Call& call) {
  Session session(call.options.state);
  session.Ask<calls::DeleteSmartList>({NumberOf(call.arguments[0])});
  return 0;
}

}  // namespace nexctl
