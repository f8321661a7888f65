#include <cstdio>
#include <map>

#include "nexctl/Commands.h"
#include "nexctl/Fonts.h"
#include "nexctl/PreviewInbox.h"
#include "nexctl/Progress.h"

namespace nexctl {

namespace {

struct Column {
  const char* name;
  std::string (*of)(const Description& font);
};

std::string Joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
  return text;
}

std::string YesOrNo(bool value) { return value ? "yes" : "no"; }

const Column kColumns[] = {
    {"id", [](const Description& f) { return std::to_string(f.fontID); }},
    {"state", [](const Description& f) { return StateText(f); }},
    {"name", [](const Description& f) { return f.postscriptName; }},
    {"display", [](const Description& f) { return f.displayName; }},
    {"family", [](const Description& f) { return f.family; }},
    {"style", [](const Description& f) { return f.style; }},
    {"weight", [](const Description& f) { return std::to_string(f.weight); }},
    {"width", [](const Description& f) { return std::to_string(f.width); }},
    {"design", [](const Description& f) { return f.design; }},
    {"italic", [](const Description& f) { return YesOrNo(f.italic); }},
    {"monospaced", [](const Description& f) { return YesOrNo(f.monospaced); }},
    {"variable", [](const Description& f) { return YesOrNo(f.variable); }},
    {"coloured", [](const Description& f) { return YesOrNo(f.coloured); }},
    {"kind", [](const Description& f) { return f.kind; }},
    {"foundry", [](const Description& f) { return f.foundry; }},
    {"version", [](const Description& f) { return f.version; }},
    {"scripts", [](const Description& f) { return Joined(f.scripts); }},
    {"languages", [](const Description& f) { return Joined(f.languages); }},
    {"added", [](const Description& f) { return DayText(f.added); }},
    {"size", [](const Description& f) { return std::to_string(f.fileSize); }},
    {"face", [](const Description& f) { return std::to_string(f.faceIndex); }},
    {"workgroup", [](const Description& f) { return std::to_string(f.workgroupID); }},
    {"clicks", [](const Description& f) { return std::to_string(f.clicks); }},
    {"path", [](const Description& f) { return f.path; }},
};
constexpr const char* kUsualColumns = "id,state,name,kind,foundry,path";

std::vector<const Column*> ColumnsNamed(const std::string& list) {
  std::vector<const Column*> columns;
  for (size_t at = 0; at <= list.size();) {
    const size_t end = std::min(list.find(',', at), list.size());
    const std::string name = list.substr(at, end - at);
    const Column* found = nullptr;
    for (const Column& column : kColumns) {
      if (column.name == name) found = &column;
    }
    if (!found) throw WrongUsage("there is no column '" + name + "'");
    columns.push_back(found);
    at = end + 1;
  }
  return columns;
}

OrderedJson ObjectOf(const Description& font) {
  OrderedJson object = OrderedJson::parse(agent_protocol::ToText(agent_protocol::ToJson(font)));
  object["state"] = StateText(font);
  object["added"] = DayText(font.added);
  return object;
}

void PrintFonts(const Call& call, const std::vector<Description>& fonts) {
  if (call.output.IsJson()) {
    for (const Description& font : fonts) call.output.Object(ObjectOf(font));
    return;
  }
  const auto columns = ColumnsNamed(call.options.columns.empty() ? kUsualColumns : call.options.columns);
  std::vector<std::string> header;
  header.reserve(columns.size());
  for (const Column* column : columns) header.emplace_back(column->name);
  std::vector<std::vector<std::string>> rows;
  for (const Description& font : fonts) {
    rows.emplace_back();
    for (const Column* column : columns) rows.back().push_back(column->of(font));
  }
  call.output.Table(header, rows);
}

}  // namespace

int ListFonts(const Call& call) {
  Session session(call.options.state);
  PrintFonts(call, Describe(session, FontsThat(session, Joined(call.arguments))));
  return 0;
}

int ShowFont(const Call& call) {
  const PictureForm form = call.output.IsJson() ? PictureForm::kNone : FormOfTerminal();
  PreviewInbox inbox;
  Session session(call.options.state, [&inbox](const Json& notification) { inbox.Take(notification); });
  const auto fonts = Describe(session, FontsNamed(session, call.arguments));
  for (const Description& font : fonts) {
    if (call.output.IsJson()) {
      call.output.Object(ObjectOf(font));
      continue;
    }
    if (form != PictureForm::kNone) {
      if (const auto picture = inbox.Draw(session, font.fontID, form)) std::fputs(Draw(*picture, form).c_str(), stdout);
    }
    for (const Column& column : kColumns) {
      const std::string value = column.of(font);
      constexpr size_t kWidth = 12;
      std::string label = column.name;
      label.resize(kWidth, ' ');
      if (!value.empty()) call.output.Line(label + value);
    }
    if (&font != &fonts.back()) call.output.Line("");
  }
  return 0;
}

int ListDuplicates(const Call& call) {
  Session session(call.options.state);
  std::map<std::pair<std::string, uint32_t>, std::vector<Description>> same;
  for (Description& font : Describe(session, FontsThat(session, ""))) {
    same[{font.postscriptName, font.checksum}].push_back(std::move(font));
  }
  std::vector<Description> duplicates;
  for (auto& [key, fonts] : same) {
    if (fonts.size() > 1) std::ranges::move(fonts, std::back_inserter(duplicates));
  }
  PrintFonts(call, duplicates);
  return 0;
}

int ListConflicts(const Call& call) {
  Session session(call.options.state);
  const Numbers ids = FontsNamed(session, call.arguments);
  const Numbers conflicts = session.Ask<calls::GetFontConflicts>({ids}).conflicts;
  std::vector<std::vector<std::string>> rows;
  for (size_t i = 0; i < ids.size() && i < conflicts.size(); ++i) {
    if (conflicts[i] == 0) continue;
    const auto both = Describe(session, {ids[i], conflicts[i]});
    if (both.size() == 2)
      rows.push_back({both[0].postscriptName, both[0].path, std::to_string(both[1].fontID), both[1].path});
  }
  call.output.Table({"name", "path", "conflict", "conflict path"}, rows);
  return rows.empty() ? 0 : 1;
}

int ExportFonts(const Call& call) {
  Session session(call.options.state);
  const std::vector<std::string> names(call.arguments.begin() + 1, call.arguments.end());
  const Numbers ids = FontsNamed(session, names);
  const std::string folder = AbsoluteFolder(call.arguments[0]);
  std::vector<std::vector<std::string>> rows;
  agent_protocol::ResultCode code = agent_protocol::kSuccess;
  Progress progress("copying");
  for (size_t i = 0; i < ids.size(); ++i) {
    progress.Show(i, ids.size(), "fonts");
    const auto reply = session.Try<calls::ExportFonts>({{ids[i]}, folder});
    if (reply.code != agent_protocol::kSuccess) code = reply.code;
    for (const std::string& copy : reply.result.copies) {
      if (std::ranges::find(rows, std::vector{copy}) == rows.end()) rows.push_back({copy});  // faces share a file
    }
  }
  call.output.Table({"copy"}, rows);
  if (code != agent_protocol::kSuccess) throw Failure(DescribeCode(code));
  return 0;
}

}  // namespace nexctl
