#include "docfonts/Resolver.h"

#include <map>
#include <nlohmann/json.hpp>
#include <utility>

#include "Bridge/FontManagerInterface.h"
#include "Services/MarquineGlobals.h"
#include "docfonts/FileChoice.h"
#include "platform/LocalSocket.h"

namespace docfonts {

using Json = nlohmann::ordered_json;

namespace {

// The rest of this namespace runs in the resolver's process.
std::string ConnectToAgent() {
  // The name under which the agent's library knows this program.
  MarquineGlobals::IdentifyPluginBundleID("com.velorant.docfonts");
  MarquineGlobals::IdentifyPluginHostApp(platform::String::FromUTF8("docfonts"));
  bool isRunning = false;
  FontManagerInterface::CompatibleFontManagerIsRunning(nullptr, isRunning);
  if (isRunning && FontManagerInterface::ConnectedManager()) return "";
  return "no font manager is running, and none can be started; --state names the folder of one";
}

// The first message says what is wrong with the connection. After that each message is a report, and its answer an
// array with the result of ChooseFile for each font, or null.
void Serve(int socket) {
  const std::string problem = ConnectToAgent();
  if (platform::SendMessage(socket, problem) || !problem.empty()) return;
  // The documents of a folder name the same fonts again and again.
  std::map<std::pair<std::string, std::map<std::string, std::string>>, Json> known;
  for (std::string text; !platform::ReceiveMessage(socket, text);) {
    Json files = Json::array();
    for (const Font& font : FromJson(Json::parse(text)).fonts) {
      Json& file = known[{font.name, font.slug}];
      if (const auto chosen = file.is_null() ? ChooseFile(font) : std::nullopt) file = *chosen;
      files.push_back(file);
    }
    if (platform::SendMessage(socket, files.dump(-1, ' ', false, Json::error_handler_t::replace))) break;
  }
  if (FontManagerInterface::sm_pFontManager) FontManagerInterface::sm_pFontManager->DisconnectFromFontManager();
}

}  // namespace

std::string Resolver::Connect() {
  if (const std::error_code error = process_.Start(Serve)) return "no process can be started: " + error.message();
  std::string problem;
  if (platform::ReceiveMessage(process_.Socket(), problem)) return "the process that asks the font manager has crashed";
  return problem;
}

void Resolver::Resolve(Report& report) {
  const std::string text = ToJson(report).dump(-1, ' ', false, Json::error_handler_t::replace);
  std::string answer;
  if (platform::SendMessage(process_.Socket(), text) || platform::ReceiveMessage(process_.Socket(), answer)) {
    report.problems.push_back("the process that asks the font manager has crashed");
    return;
  }
  const Json files = Json::parse(answer);
  for (size_t i = 0; i < report.fonts.size(); ++i) {
    if (!files.at(i).is_null()) {
      report.fonts[i].file = files[i];
      continue;
    }
    report.problems.push_back("the font manager does not answer for " + report.fonts[i].name);
    return;
  }
}

}  // namespace docfonts
