#include "with-fonts/KeptFonts.h"

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "agent/client/AgentStart.h"
#include "agent/include/AgentCalls.h"
#include "platform/FileLock.h"
#include "platform/Files.h"

namespace with_fonts {

namespace {

namespace calls = agent_protocol::calls;
using Json = nlohmann::json;

constexpr const char* kKey = "fonts";

std::string Problem(const std::string& file, const std::error_code& error) {
  return file + ": " + platform::DescribeError(error);
}

// A missing file is an empty record.
std::string Read(const std::string& file, std::vector<uint32_t>& fontIDs) {
  std::string text;
  const std::error_code error = platform::ReadFile(file, text);
  if (error == std::errc::no_such_file_or_directory) return "";
  if (error) return Problem(file, error);
  try {
    fontIDs = Json::parse(text).at(kKey).get<std::vector<uint32_t>>();
  } catch (const Json::exception&) {
    return file + ": is no record of fonts; remove it, and give fonts back with nexctl deactivate";
  }
  return "";
}

}  // namespace

std::string KeptFontsFile(const std::string& stateFolder) { return stateFolder + "/kept-fonts.json"; }

std::string AddKeptFonts(const std::string& file, const std::vector<uint32_t>& fontIDs) {
  std::error_code noLock;
  const platform::FileLock lock(file, &noLock);
  if (noLock) return Problem(file, noLock);
  std::vector<uint32_t> all;
  if (std::string problem = Read(file, all); !problem.empty()) return problem;
  all.insert(all.end(), fontIDs.begin(), fontIDs.end());
  std::sort(all.begin(), all.end());
  all.erase(std::unique(all.begin(), all.end()), all.end());
  const std::error_code error = platform::ReplaceFile(file, Json{{kKey, all}}.dump() + "\n");
  return error ? Problem(file, error) : "";
}

std::string ReleaseKeptFonts(const std::string& stateFolder, const std::string& agentProgram, size_t* count) {
  const std::string file = KeptFontsFile(stateFolder);
  std::error_code noLock;
  const platform::FileLock lock(file, &noLock);
  if (noLock) return Problem(file, noLock);
  std::vector<uint32_t> fontIDs;
  if (std::string problem = Read(file, fontIDs); !problem.empty()) return problem;
  *count = fontIDs.size();
  if (fontIDs.empty()) return "";
  std::string problem;
  const auto agent = agent_client::StartAgent(stateFolder, agentProgram, &problem);
  if (!agent) return problem + "; nothing was given back";
  const auto code = agent->Call<calls::DeactivateFonts>({fontIDs, true}).code;
  // Fonts that became the operating system's since they were kept can't be given back.
  if (code != agent_protocol::kSuccess && code != agent_protocol::kCantDeactivateSystemFonts) {
    return "the font manager refuses to give the fonts back (code " + std::to_string(code) + ")";
  }
  std::error_code error;
  std::filesystem::remove(file, error);
  return error ? Problem(file, error) : "";
}

}  // namespace with_fonts
