// The user's languages, the active fonts, and windows.
#include <gmock/gmock.h>

#include <optional>

#include "platform/Folders.h"
#include "platform/Fonts.h"
#include "platform/Language.h"
#include "platform/Presenter.h"
#include "platform/Window.h"
#include "support/ScopedVariable.h"
#include "support/TempFolder.h"

namespace platform {
namespace {

using test_support::ScopedVariable;
using test_support::TempFolder;

// Sets the places during a test.
class ScopedPlaces {
 public:
  explicit ScopedPlaces(const Places& places) : former_(GetPlaces()) { SetPlaces(places); }
  ~ScopedPlaces() { SetPlaces(former_); }
  ScopedPlaces(const ScopedPlaces&) = delete;
  ScopedPlaces& operator=(const ScopedPlaces&) = delete;

 private:
  const Places former_;
};

TEST(Language, TheFirstSettingThatCountsDecides) {
  using Setting = std::optional<std::string>;
  const Setting none;
  const struct {
    Setting all, messages, lang, list;
    std::vector<std::string> expected;
  } rows[] = {{none, none, none, none, {}},
              {none, none, "de_AT.UTF-8@euro", none, {"de"}},
              {none, "fr_CA", "de_DE", none, {"fr"}},
              {"pt_BR.UTF-8", "fr_CA", "de_DE", none, {"pt"}},
              {"", "", "it", none, {"it"}},
              {none, none, "en_US.UTF-8", "ja:de_DE:ja::xx-1", {"ja", "de", "xx", "en"}},
              {"C.UTF-8", none, "de_DE", "ja", {}},
              {"POSIX", none, none, "ja", {}},
              {none, none, "../../etc/passwd", none, {}},
              {none, none, "d3_DE", "de", {}}};
  for (const auto& row : rows) {
    const ScopedVariable all("LC_ALL", row.all), messages("LC_MESSAGES", row.messages), lang("LANG", row.lang),
        list("LANGUAGE", row.list);
    EXPECT_EQ(PreferredLanguages(), row.expected) << row.lang.value_or("none");
  }
}

TEST(Places, UnsetOnesComeFromTheEnvironmentIfThatIsOurs) {
  const TempFolder folder;
  const ScopedVariable home("HOME", "/home/somebody"), state("XDG_STATE_HOME", "/state"),
      config("XDG_CONFIG_HOME", "relative/paths/count/as/unset");
  {
    const ScopedVariable runtime("XDG_RUNTIME_DIR", folder.Path());
    const ScopedPlaces places({});
    EXPECT_EQ(GetPlaces().preferencesFile, "/home/somebody/.config/velorant/preferences.plist");
    EXPECT_EQ(GetPlaces().logs, "/state/velorant/logs");
    EXPECT_EQ(GetPlaces().runtime, folder / "velorant");
    EXPECT_EQ(UserLibraryFolder(), "/home/somebody/Library");
  }
  const ScopedVariable runtime("XDG_RUNTIME_DIR", folder / "missing");
  Places sandbox;
  sandbox.fileSystemRoot = "/sandbox";
  const ScopedPlaces places(sandbox);
  EXPECT_THAT(GetPlaces().runtime, testing::StartsWith("/tmp/velorant-"));
  EXPECT_EQ(LocalFrameworksFolder(), "/sandbox/Library/Frameworks");
}

TEST(Fonts, OnlyWhatTheConfigurationNamesIsActive) {
  const TempFolder folder;
  Places sandbox = GetPlaces();
  sandbox.fontConfigFile = folder.WriteFontsConf({folder / "active"});
  const ScopedPlaces places(sandbox);
  std::filesystem::create_directories(folder / "active");
  EXPECT_TRUE(ActiveFonts().empty());
  EXPECT_FALSE(IsPostScriptNameActive("DejaVuSans"));
  // Queries in a row share a snapshot as soon as no change can be missed any more.
  while (GetFontSnapshot() != GetFontSnapshot()) {
  }
  const std::shared_ptr<const FontSnapshot> before = GetFontSnapshot();
  // The next query sees a change.
  std::filesystem::create_symlink("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf", folder / "active/a.ttf");
  EXPECT_NE(GetFontSnapshot(), before);
  EXPECT_TRUE(before->fonts.empty());
  const std::vector<ActiveFont> fonts = ActiveFonts();
  ASSERT_EQ(fonts.size(), 1u);
  EXPECT_EQ(fonts[0].postScriptName, "DejaVuSans");
  EXPECT_EQ(fonts[0].family, "DejaVu Sans");
  EXPECT_EQ(fonts[0].file, folder / "active/a.ttf");
  for (const char* name : {"DejaVuSans", "DejaVu Sans", "dejavusans", "DejaVuSans-Bold", "DejaVu", ""}) {
    const bool isActive = std::string_view(name) == "DejaVuSans";
    EXPECT_EQ(ActivePostScriptNames().contains(name), isActive) << name;
    EXPECT_EQ(IsPostScriptNameActive(name), isActive) << name;
  }
  std::filesystem::remove(folder / "active/a.ttf");
  EXPECT_TRUE(ActiveFonts().empty());
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
