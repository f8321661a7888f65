// The user's languages, the active fonts, and windows.
#include <gmock/gmock.h>
#include <stdlib.h>

#include <map>

#include "platform/Folders.h"
#include "platform/Fonts.h"
#include "platform/Language.h"
#include "platform/Presenter.h"
#include "platform/Window.h"
#include "support/TempFolder.h"

namespace platform {
namespace {

using test_support::TempFolder;
using testing::ElementsAre;

// Sets variables of the environment and puts the former ones back.
class Environment {
 public:
  ~Environment() {
    for (const auto& [name, value] : former_)
      value.empty() ? unsetenv(name.c_str()) : setenv(name.c_str(), value.c_str(), 1);
  }
  void Set(const char* name, const char* value) {
    const char* former = getenv(name);
    former_.emplace(name, former ? former : "");
    value ? setenv(name, value, 1) : unsetenv(name);
  }

 private:
  std::map<std::string, std::string> former_;
};

TEST(Language, TheFirstSettingThatCountsDecides) {
  const struct {
    const char *all, *messages, *lang, *list;
    std::vector<std::string> expected;
  } rows[] = {
      {nullptr, nullptr, nullptr, nullptr, {}},
      {nullptr, nullptr, "de_AT.UTF-8@euro", nullptr, {"de"}},
      {nullptr, "fr_CA", "de_DE", nullptr, {"fr"}},
      {"pt_BR.UTF-8", "fr_CA", "de_DE", nullptr, {"pt"}},
      {"", "", "it", nullptr, {"it"}},
      {nullptr, nullptr, "en_US.UTF-8", "ja:de_DE:ja::xx-1", {"ja", "de", "xx", "en"}},
      {"C", nullptr, "de_DE", "ja", {}},
      {"C.UTF-8", nullptr, "de_DE", "ja", {}},
      {"POSIX", nullptr, nullptr, "ja", {}},
      {nullptr, nullptr, "../../etc/passwd", nullptr, {}},
      {nullptr, nullptr, "d3_DE", "de", {}},
  };
  for (const auto& row : rows) {
    Environment environment;
    environment.Set("LC_ALL", row.all);
    environment.Set("LC_MESSAGES", row.messages);
    environment.Set("LANG", row.lang);
    environment.Set("LANGUAGE", row.list);
    EXPECT_EQ(PreferredLanguages(), row.expected) << (row.lang ? row.lang : "none");
  }
}

TEST(Places, UnsetOnesComeFromTheEnvironmentIfThatIsOurs) {
  const TempFolder folder;
  const Places former = GetPlaces();
  Environment environment;
  environment.Set("HOME", "/home/somebody");
  environment.Set("XDG_CONFIG_HOME", "relative/paths/count/as/unset");
  environment.Set("XDG_STATE_HOME", "/state");
  environment.Set("XDG_RUNTIME_DIR", folder.Path().c_str());
  SetPlaces({});
  EXPECT_EQ(GetPlaces().preferencesFile, "/home/somebody/.config/velorant/preferences.plist");
  EXPECT_EQ(GetPlaces().logs, "/state/velorant/logs");
  EXPECT_EQ(GetPlaces().runtime, folder / "velorant");
  EXPECT_EQ(UserLibraryFolder(), "/home/somebody/Library");
  environment.Set("XDG_RUNTIME_DIR", (folder / "missing").c_str());
  Places places;
  places.fileSystemRoot = "/sandbox";
  SetPlaces(places);
  EXPECT_THAT(GetPlaces().runtime, testing::StartsWith("/tmp/velorant-"));
  EXPECT_EQ(LocalFrameworksFolder(), "/sandbox/Library/Frameworks");
  SetPlaces(former);
}

TEST(Fonts, OnlyWhatTheConfigurationNamesIsActive) {
  const TempFolder folder;
  const Places former = GetPlaces();
  Places places = former;
  places.fontConfigFile = folder / "fonts.conf";
  SetPlaces(places);
  std::filesystem::create_directories(folder / "active");
  folder.Write("fonts.conf", "<fontconfig><dir>" + folder / "active" + "</dir><cachedir>" + folder / "cache" +
                                 "</cachedir></fontconfig>");
  EXPECT_TRUE(ActiveFonts().empty());
  EXPECT_FALSE(IsFontNameActive("DejaVu Sans"));
  // A change is seen at the next question.
  std::filesystem::create_symlink("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf", folder / "active/a.ttf");
  const std::vector<ActiveFont> fonts = ActiveFonts();
  ASSERT_EQ(fonts.size(), 1u);
  EXPECT_EQ(fonts[0].postScriptName, "DejaVuSans");
  EXPECT_EQ(fonts[0].family, "DejaVu Sans");
  EXPECT_EQ(fonts[0].file, folder / "active/a.ttf");
  const struct {
    const char* name;
    bool isPostScriptName, isName;
  } rows[] = {{"DejaVuSans", true, true},        {"DejaVu Sans", false, true}, {"dejavusans", false, false},
              {"DejaVuSans-Bold", false, false}, {"", false, false},           {"DejaVu", false, false}};
  for (const auto& row : rows) {
    EXPECT_EQ(IsPostScriptNameActive(row.name), row.isPostScriptName) << row.name;
    EXPECT_EQ(IsFontNameActive(row.name), row.isName) << row.name;
  }
  SetPlaces(former);
}

OrderWindowMethod sFormer = nullptr;
std::vector<std::string> sOrdered;

void NotingOrderWindow(Window& window, WindowOrdering place, int relativeTo) {
  sOrdered.push_back(window.Title() + (window.IsVisible() ? " visible" : " hidden"));
  sFormer(window, place, relativeTo);
}

TEST(Window, TheExchangedMethodReachesTheFormerOne) {
  std::vector<std::string> keys;
  Window window("Missing Fonts", {{"NSTextField", ""}, {"NSButton", "Cancel"}},
                [&](Window& self, const KeyEvent& event) { keys.push_back(self.Title() + event.characters); });
  const Window other("Other", {}, nullptr);
  EXPECT_NE(window.Number(), other.Number());
  sFormer = &NotingOrderWindow;
  ExchangeOrderWindowMethod(sFormer);
  window.OrderWindow(WindowOrdering::kAbove, 0);
  EXPECT_TRUE(window.IsVisible());
  window.OrderWindow(WindowOrdering::kOut, 0);
  ExchangeOrderWindowMethod(sFormer);
  window.OrderWindow(WindowOrdering::kAbove, 0);
  EXPECT_THAT(sOrdered, ElementsAre("Missing Fonts hidden", "Missing Fonts visible"));
  KeyEvent escape;
  escape.characters = "\x1B";
  window.SendEvent(escape);
  EXPECT_THAT(keys, ElementsAre("Missing Fonts\x1B"));
}

TEST(Window, AModalWindowThatGoesIsModalNoMore) {
  {
    Window window("Modal", {}, nullptr);
    Window::SetModal(&window);
    EXPECT_EQ(Window::Modal(), &window);
  }
  EXPECT_EQ(Window::Modal(), nullptr);
}

TEST(Presenter, WithoutOneABoxIsALineAndItsFirstButton) {
  SetPresenter(nullptr);
  Dictionary box = Dictionary::Create();
  box.Set("Kind", "message");
  box.Set("Message", "The text");
  testing::internal::CaptureStderr();
  EXPECT_EQ(RunBox(box).GetInteger("Button"), 1);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "message: The text\n");

  Presenter closing;
  closing.runBox = [](void*, ValueRef) -> ValueRef { return nullptr; };
  SetPresenter(&closing);
  EXPECT_EQ(RunBox(box).GetInteger("Button"), 0);
  ShowProgress(box);
  HideProgress();
  SetPresenter(nullptr);
}

}  // namespace
}  // namespace platform
