#include "nexctl/Fonts.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <filesystem>

#include "agent/include/AgentProtocol.h"
#include "nexctl/Progress.h"
#include "platform/TextEncoding.h"

namespace nexctl {

namespace {

constexpr size_t kMostInOneCall = 500;

std::string Candidates(Session& session, const std::string& name, const Numbers& ids) {
  std::string text = name + " is in several files; name one by its ID:";
  for (const Description& font : Describe(session, ids))
    text += " " + std::to_string(font.fontID) + " (" + font.path + ")";
  return text;
}

bool IsNumber(const std::string& word) {
  return !word.empty() && std::ranges::all_of(word, [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

uint32_t NumberOf(const std::string& word) {
  uint32_t number = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
  if (error != std::errc() || end != word.data() + word.size()) throw WrongUsage("'" + word + "' is no ID");
  return number;
}

Numbers FontsNamed(Session& session, const std::vector<std::string>& words) {
  session.AwaitScan();
  Numbers ids;
  for (const std::string& word : words) {
    if (IsNumber(word)) {
      const uint32_t id = NumberOf(word);
      if (Describe(session, {id}).empty()) throw Failure("there is no font " + word);
      ids.push_back(id);
      continue;
    }
    const Numbers named = session.Ask<calls::GetFontsByPostscriptName>({word, {}}).fontIDs;
    if (named.empty()) throw Failure("there is no font " + word);
    if (named.size() > 1) throw Failure(Candidates(session, word, named));
    ids.push_back(named[0]);
  }
  return ids;
}

std::vector<Description> Describe(Session& session, const Numbers& ids) {
  std::vector<Description> fonts;
  Progress progress("asking about fonts");
  for (size_t at = 0; at < ids.size(); at += kMostInOneCall) {
    const auto first = ids.begin() + static_cast<ptrdiff_t>(at);
    const auto last = ids.begin() + static_cast<ptrdiff_t>(std::min(ids.size(), at + kMostInOneCall));
    std::ranges::move(session.Ask<calls::DescribeFonts>({Numbers(first, last)}).fonts, std::back_inserter(fonts));
    progress.Show(at, ids.size(), "fonts");
  }
  return fonts;
}

Numbers FontsThat(Session& session, const std::string& rule) {
  session.AwaitScan();
  constexpr uint32_t kAllFonts = 1;  // the smart list that is always there
  if (rule.empty()) {
    Numbers ids;
    for (const auto& font : session.Ask<calls::GetSmartListFonts>({kAllFonts}).fonts) ids.push_back(font.fontID);
    return ids;
  }
  auto reply = session.Try<calls::FindFonts>({rule});
  if (!reply.result.problem.empty()) throw WrongUsage(reply.result.problem);
  if (reply.code != agent_protocol::kSuccess) throw Failure(DescribeCode(reply.code));
  return std::move(reply.result.fontIDs);
}

std::string StateText(const Description& font) {
  switch (font.state) {
    case agent_protocol::kAutoActivated:
    case agent_protocol::kAutoActivatedAgain: return "for a document";
    case agent_protocol::kPreviewActivated: return "for a preview";
    case agent_protocol::kTemporary: return "for a program";
    case agent_protocol::kActivated: return "active";
    case agent_protocol::kActiveWithFile:
    case agent_protocol::kPreviewedWithFile: return "with its file";
    case agent_protocol::kSystemActive: return "system";
    case agent_protocol::kActiveInPlace: return "active in place";
    case agent_protocol::kCannotBeActive: return "can't be active";
    case agent_protocol::kForbidden: return "forbidden";
    default: return "";
  }
}

std::string AbsoluteFolder(const std::string& argument) {
  std::error_code error;
  std::string path = std::filesystem::absolute(argument, error).lexically_normal().string();
  if (error) throw Failure(argument + ": " + error.message());
  // The protocol has no form for other names.
  if (!platform::IsValidUTF8(path)) throw Failure(path + ": a folder whose name is not UTF-8 can't be used");
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

std::string DayText(uint32_t seconds) {
  if (seconds == 0) return "";
  const std::chrono::year_month_day day(
      std::chrono::floor<std::chrono::days>(std::chrono::sys_seconds(std::chrono::seconds(seconds))));
  char text[16];
  std::snprintf(text, sizeof text, "%04d-%02u-%02u", static_cast<int>(day.year()), static_cast<unsigned>(day.month()),
                static_cast<unsigned>(day.day()));
  return text;
}

}  // namespace nexctl
