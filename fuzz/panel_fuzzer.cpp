// Lines of any bytes as messages of a panel: each is carried out, is refused with a code, or throws the JSON layer's
// exception. What the plug-in sends is a JSON object in parentheses. The agent is the fake one; a line "-" switches the
// connection to it off and on.
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <stdexcept>

#include "Bridge/CoreAgentInterface.h"
#include "Check.h"
#include "Input.h"
#include "JsonParser.h"
#include "Panel/MarquinePanel.h"
#include "support/FakeAgent.h"
#include "support/FakeUIFramework.h"
#include "support/TempFolder.h"

namespace {

class CheckingPanel : public MarquinePanel {
 public:
  TModuleErrorCode OpenSocket() override { return 0; }
  TModuleErrorCode SelectSocket(bool) override { return 0; }
  unsigned int GetSocketPort() override { return 0; }
  TModuleErrorCode SendFontImages(const platform::Dictionary&) override { return 0; }
  TModuleErrorCode SendMessage(const std::string& text) override {
    CHECK(text.size() > 4 && text.starts_with("({") && text.ends_with("})"));
    CHECK(restful_mapper::Json::Parser(text.substr(1, text.size() - 2)).root().exists("messageID"));
    return 0;
  }
};

struct PlugIn {
  PlugIn() {
    setenv("TMPDIR", lists.Path().c_str(), 1);
    FontManagerInterface::sm_pFontManager = std::make_unique<CoreAgentInterface>();
    MarquineGlobals::SetUserHasWorkgroups(true);
    for (uint32_t id = 1; id < 4; ++id) agent.Add({.id = id, .postScriptName = "Font" + std::to_string(id)});
    agent.smartLists = {{7, "Serif"}};
    agent.listedFonts = {platform::Dictionary::Create()};
  }

  const test_support::TempFolder lists;
  fakes::FakeUIFramework ui;
  fakes::FakeAgent agent;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static PlugIn sPlugIn;
  MarquineGlobals::SetConnectedToCore(true);
  CheckingPanel panel;
  std::istringstream lines{std::string(BytesOf(data, size))};
  for (std::string line; std::getline(lines, line);) {
    if (line == "-") MarquineGlobals::SetConnectedToCore(!MarquineGlobals::sConnectedToCore);
    try {
      panel.CallMethodForMessage(line);
    } catch (const std::runtime_error&) {
      // The run loop reports it.
    }
    CHECK(panel.PopNotifications() == 0);
  }
  sPlugIn.agent.calls.clear();
  sPlugIn.agent.asked.clear();
  for (const std::string& list : sPlugIn.lists.Names()) std::filesystem::remove(sPlugIn.lists / list);
  return 0;
}
