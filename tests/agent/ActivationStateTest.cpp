// Each activation state occurs for its reason, as a client sees it in the records of the real agent.
#include <gmock/gmock.h>

#include <csignal>
#include <filesystem>

#include "agent/AgentRing.h"
#include "support/DebianFonts.h"

namespace {

namespace fs = std::filesystem;
using namespace agent_ring;
using namespace debian_fonts;

class ActivationStates : public AgentRing {
 protected:
  ActivationStates() {
    const auto copy = [](const std::string& file, const std::string& to) { fs::copy_file(file, to); };
    for (const char* file : {"LiberationSerif-Bold.ttf", "LiberationMono-Bold.ttf", "LiberationSans-Bold.ttf",
                             "LiberationSerif-Italic.ttf", "LiberationMono-Italic.ttf"}) {
      copy(kLiberation + file, fonts_ / file);
    }
    fonts_.Write("user.ttc", MakeCollection({Bytes(kOpenType + "NimbusSans-Bold.otf"),
                                             Bytes(kOpenType + "NimbusSans-Italic.otf")}));
    fonts_.Write("preview.ttc",
                 MakeCollection({Bytes(kOpenType + "C059-Bold.otf"), Bytes(kOpenType + "C059-Italic.otf")}));
    fs::create_directory(fonts_ / "inplace");
    copy(kOpenType + "Z003-MediumItalic.otf", fonts_ / "inplace/Z003-MediumItalic.otf");
    copy(kDejaVu + "DejaVuSans.ttf", system_ / "DejaVuSans.ttf");
    state_.WriteFontsConf({state_ / "active", system_.Path(), fonts_ / "inplace"});
    WriteConfiguration({{"refused", {"LiberationSerif-Italic"}}});
    Launch();
  }
  std::string StateOfNamed(const char* name) const { return StateOf(FontNamed(name)); }

  test_support::TempFolder system_;
};

TEST_F(ActivationStates, EachOccursForItsReason) {
  const uint32_t document = FontNamed("LiberationSerif-Bold"), user = FontNamed("NimbusSans-Bold");
  const uint32_t design = FontNamed("C059-Bold"), program = FontNamed("LiberationMono-Bold");
  const uint32_t refused = FontNamed("LiberationSerif-Italic"), wanted = FontNamed("LiberationSans-Bold");
  EXPECT_EQ(Activate({document}, 1), 1u);
  EXPECT_EQ(Activate({design}, 3), 1u);
  EXPECT_EQ(Activate({user, wanted}, 4), 2u);
  EXPECT_EQ(Activate({refused}, 4), 0u);
  EXPECT_EQ(vpi_.PreviewActivateFonts(Handle(), 1, &program, 0), 0u);
  const struct {
    const char* name;
    const char* state;
  } rows[] = {
      {"LiberationMono-Italic", "0"},
      {"LiberationSerif-Bold", "1"},
      {"C059-Bold", "3"},
      {"NimbusSans-Bold", "4"},
      {"DejaVuSans", "5"},
      {"NimbusSans-Italic", "6"},
      {"LiberationSans-Bold", "4"},
      {"LiberationSerif-Italic", "8"},
      {"LiberationMono-Bold", "9"},
      {"C059-Italic", "10"},
      {"Z003-MediumItalic", "11"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(StateOfNamed(row.name), row.state) << row.name;
    const std::string state = row.state;
    EXPECT_EQ(IsActive(FontNamed(row.name)), state != "0" && state != "8") << row.name;
  }

  // The operating system gets a font with the name of one that the user wants, while the agent is away.
  End(SIGKILL);
  fs::copy_file(fonts_ / "LiberationSans-Bold.ttf", system_ / "LiberationSans-Bold.ttf");
  Launch();
  vpi_.ResetPluginFacadeInstance();
  EXPECT_EQ(StateOf(document), "2");
  EXPECT_EQ(StateOf(design), "3");
  EXPECT_EQ(StateOf(wanted), "7");
  EXPECT_FALSE(IsActive(wanted));
  EXPECT_EQ(StateOf(user), "4");
}

TEST_F(ActivationStates, ADesignThatIsRefusedIsToldToWhoAskedForIt) {
  const uint32_t refused = FontNamed("LiberationSerif-Italic"), font = FontNamed("LiberationSerif-Bold");
  const auto tried = [&](RawClient& client) {
    client.Ask("ActivateFonts", {{"fontIDs", {refused}}, {"kind", 3}});
    client.Ask("ActivateFonts", {{"fontIDs", {font}}, {"kind", 3}});
    return client.Next();
  };
  RawClient design(Runtime()), other(Runtime());
  EXPECT_EQ(design.Hello()["code"], 0);
  EXPECT_EQ(design.Ask("EnableDesignActivation")["code"], 0);
  EXPECT_EQ(tried(design), Json({{"notify", PluginInterface::kDesignActivationNonCompliant}, {"fontID", refused}}));
  EXPECT_EQ(other.Hello()["code"], 0);
  other.Ask("DeactivateFonts", {{"fontIDs", {font}}, {"alsoUser", false}});
  design.Ask("DeactivateFonts", {{"fontIDs", {font}}, {"alsoUser", false}});
  EXPECT_EQ(tried(other)["notify"], PluginInterface::kFontDeactivated);
  EXPECT_EQ(other.Next()["notify"], PluginInterface::kFontActivated) << "it did not enable design activation";
}

}  // namespace
