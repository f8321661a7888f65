// Preferences survive whatever happens to their file.
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <set>

#include "frameworks/UIFramework.h"
#include "platform/Files.h"
#include "platform/PropertyList.h"
#include "support/FullDisk.h"

namespace framework_tests {
namespace {

using platform::Boolean;
using platform::Dictionary;
using platform::Number;
using platform::String;
using platform::Value;
using testing::HasSubstr;

class PreferencesTest : public UIFrameworkTest {
 protected:
  PreferencesTest() { testing::internal::CaptureStderr(); }
  ~PreferencesTest() override { testing::internal::GetCapturedStderr(); }

  // Returns the problems reported since the last call.
  static std::string Reported() {
    std::string text = testing::internal::GetCapturedStderr();
    testing::internal::CaptureStderr();
    return text;
  }
  std::string Text(const char* key) { return String(Value::Adopt(VPFGetStringPreferenceForKey(key))).Text(); }
  Dictionary Stored() const {
    return Dictionary(platform::ParseXMLPropertyList(test_support::TempFolder::Content(PreferencesFile())).value);
  }
  void Store(const Dictionary& values) const {
    folder_.Write("settings/preferences.plist", platform::CreateXMLPropertyList(values));
  }
  std::set<std::string> Names() const {
    std::set<std::string> names = folder_.Names("settings");
    names.erase(".preferences.plist.lock");
    return names;
  }
};

TEST_F(PreferencesTest, UnsetOnesAreZeroAndMakeNoFile) {
  EXPECT_EQ(VPFGetPreferenceForKey("EnablePlugin"), 0);
  EXPECT_EQ(VPFGetLongPreferenceForKey("RMF5"), 0);
  EXPECT_EQ(VPFGetStringPreferenceForKey("LastAddress"), nullptr);
  EXPECT_EQ(VPFDoPreferencesExist(), 0);
  EXPECT_FALSE(platform::FileExists(PreferencesFile()));
  EXPECT_EQ(Reported(), "");
}

TEST_F(PreferencesTest, WhatIsSetLastsBeyondTheProcess) {
  VPFSetPreferenceForKey("EnablePlugin", 1);
  VPFSetPreferenceForKey("EnableLogging", 0);
  VPFSetLongPreferenceForKey("RMF5", -1);
  VPFSetLongPreferenceForKey("CS5PanelWidth", 1 << 30);
  VPFSetStringPreferenceForKey("LastAddress", "größe & <server>");
  Start();  // drops its cache
  EXPECT_EQ(VPFGetPreferenceForKey("EnablePlugin"), 1);
  EXPECT_EQ(VPFGetPreferenceForKey("EnableLogging"), 0);
  EXPECT_EQ(VPFGetLongPreferenceForKey("RMF5"), -1);
  EXPECT_EQ(VPFGetLongPreferenceForKey("CS5PanelWidth"), 1 << 30);
  EXPECT_EQ(Text("LastAddress"), "größe & <server>");
  VPFSetStringPreferenceForKey("LastAddress", nullptr);
  Start();
  EXPECT_EQ(VPFGetStringPreferenceForKey("LastAddress"), nullptr);
  EXPECT_EQ(VPFGetLongPreferenceForKey("RMF5"), -1);
  EXPECT_EQ(Names(), std::set<std::string>{"preferences.plist"});
}

TEST_F(PreferencesTest, EachGetterReadsEveryKindOfValue) {
  const struct {
    Value stored;
    int8_t byte;
    int32_t number;
    const char* text;
  } rows[] = {
      {Boolean::From(true), 1, 1, ""},          {Boolean::From(false), 0, 0, ""},
      {Number::FromInteger(4096), 1, 4096, ""},  // whose low byte is 0
      {Number::FromInteger(-3), -3, -3, ""},    {Number::FromInteger(INT64_C(1) << 40), 1, INT32_MAX, ""},
      {Number::FromReal(2.9), 2, 2, ""},        {String::FromUTF8("8080"), 1, 8080, "8080"},  // written by hand
      {String::FromUTF8("yes"), 0, 0, "yes"},   {platform::Array::Create(), 0, 0, ""},
  };
  for (const auto& row : rows) {
    Dictionary values = Dictionary::Create();
    values.Set("key", row.stored);
    Store(values);
    Start();
    EXPECT_EQ(VPFGetPreferenceForKey("key"), row.byte);
    EXPECT_EQ(VPFGetLongPreferenceForKey("key"), row.number);
    EXPECT_EQ(Text("key"), row.text);
  }
  VPFSetPreferenceForKey("signed", -2);
  EXPECT_EQ(VPFGetPreferenceForKey("signed"), -2);
}

// The workgroup is stored before the first start writes the defaults. The defaults must still be written.
TEST_F(PreferencesTest, OnlyWhatAFirstStartWritesCountsAsPreferences) {
  VPFSetLongPreferenceForKey("CurrentWorkgroup", -2);
  VPFSetLongPreferenceForKey("RMF5", 4000);
  VPFSetPreferenceForKey("SuppressPanelLaunch", 1);
  EXPECT_EQ(VPFDoPreferencesExist(), 0);
  VPFSetPreferenceForKey("CloseFontsOnDocClose", 0);
  EXPECT_NE(VPFDoPreferencesExist(), 0);
}

TEST_F(PreferencesTest, AnOverriddenOneKeepsWhatIsStored) {
  VPFSetPreferenceForKey("CloseFontsOnDocClose", 0);
  const std::string before = test_support::TempFolder::Content(PreferencesFile());
  Dictionary overrides = Dictionary::Create(), details = Dictionary::Create();
  overrides.Set("CloseFontsOnDocClose", Boolean::From(true));
  details.Set("PreferenceOverrides", overrides);
  VPFSetHostDetails(details.Ref());
  EXPECT_EQ(VPFGetPreferenceForKey("CloseFontsOnDocClose"), 1);
  EXPECT_EQ(test_support::TempFolder::Content(PreferencesFile()), before);
  VPFSetPreferenceForKey("EnableLogging", 1);
  EXPECT_FALSE(Stored().GetBoolean("CloseFontsOnDocClose", true));
  Start();
  EXPECT_EQ(VPFGetPreferenceForKey("CloseFontsOnDocClose"), 0);
}

TEST_F(PreferencesTest, AChangeByAnotherProgramIsSeenAndKept) {
  VPFSetPreferenceForKey("EnablePlugin", 1);
  Dictionary others = Stored();
  others.Set("LastUsername", "somebody");
  Store(others);
  VPFSetLongPreferenceForKey("RMF5", 5000);
  EXPECT_EQ(Stored().GetString("LastUsername").View(), "somebody");
  EXPECT_EQ(Stored().GetInteger("RMF5"), 5000);
  EXPECT_EQ(Text("LastUsername"), "somebody");
}

TEST_F(PreferencesTest, ProgramsThatChangeItAtOnceLoseNothing) {
  constexpr int kPrograms = 3, kChanges = 20;
  std::vector<pid_t> programs;
  for (int program = 0; program < kPrograms; ++program) {
    programs.push_back(fork());
    if (programs.back() != 0) continue;
    for (int i = 0; i < kChanges; ++i) {
      VPFSetLongPreferenceForKey((std::to_string(program) + "/" + std::to_string(i)).c_str(), i + 1);
    }
    _exit(0);
  }
  for (const pid_t program : programs) waitpid(program, nullptr, 0);
  EXPECT_EQ(Stored().Count(), static_cast<size_t>(kPrograms) * kChanges);
  EXPECT_EQ(VPFGetLongPreferenceForKey("2/19"), 20);
  EXPECT_EQ(Names(), std::set<std::string>{"preferences.plist"});
}

TEST_F(PreferencesTest, AnEqualValueIsNotWrittenAgain) {
  VPFSetLongPreferenceForKey("RMF5", 4000);
  ASSERT_TRUE(platform::SetFileModificationDate(PreferencesFile(), 1));
  VPFSetLongPreferenceForKey("RMF5", 4000);
  VPFSetStringPreferenceForKey("LastAddress", nullptr);
  EXPECT_EQ(platform::GetFileModificationDate(PreferencesFile()), 1u);
}

TEST_F(PreferencesTest, ADamagedFileIsKeptBeside) {
  const std::pair<const char*, const char*> rows[] = {
      {"", "is empty"},
      {"<plist><dict><key>EnablePlugin</key>", "no XML"},
      {"<plist><array/></plist>", "no dictionary"},
      {"<plist><dict><key>a</key><date>x</date></dict></plist>", "date"}};
  std::set<std::string> kept;
  for (const auto& [damaged, reason] : rows) {
    folder_.Write("settings/preferences.plist", damaged);
    Start();
    EXPECT_EQ(VPFGetPreferenceForKey("EnablePlugin"), 0);
    const std::string aside =
        kept.empty() ? "preferences.plist.damaged" : "preferences.plist.damaged-" + std::to_string(kept.size() + 1);
    const std::string reported = Reported();
    EXPECT_THAT(reported, HasSubstr(PreferencesFile() + ": "));
    EXPECT_THAT(reported, HasSubstr(reason));
    EXPECT_THAT(reported, HasSubstr(aside + ","));
    EXPECT_EQ(std::count(reported.begin(), reported.end(), '\n'), 1) << reported;
    EXPECT_EQ(test_support::TempFolder::Content(folder_ / ("settings/" + aside)), damaged);
    kept.insert(aside);
    EXPECT_EQ(Names(), kept);
    VPFSetPreferenceForKey("EnablePlugin", 1);
    EXPECT_TRUE(Stored().GetBoolean("EnablePlugin"));
    std::filesystem::remove(PreferencesFile());
  }
}

TEST_F(PreferencesTest, AFileThatCannotBeReadIsLeftAlone) {
  std::filesystem::create_directories(PreferencesFile());
  VPFSetPreferenceForKey("EnablePlugin", 1);
  EXPECT_EQ(VPFGetPreferenceForKey("EnablePlugin"), 1) << "as long as the process lives";
  VPFSetPreferenceForKey("EnableLogging", 1);
  EXPECT_TRUE(std::filesystem::is_directory(PreferencesFile()));
  const std::string reported = Reported();
  EXPECT_THAT(reported, HasSubstr("changes are not stored"));
  EXPECT_EQ(std::count(reported.begin(), reported.end(), '\n'), 1) << "said once: " << reported;
}

TEST_F(PreferencesTest, AFailedWriteKeepsTheOldFileAndTheChangeInMemory) {
  VPFSetPreferenceForKey("EnablePlugin", 1);
  const std::string before = test_support::TempFolder::Content(PreferencesFile());
  {
    const test_support::FullDisk full(64);
    VPFSetLongPreferenceForKey("RMF5", 6000);
    VPFSetLongPreferenceForKey("RMF4", 6000);
  }
  EXPECT_EQ(test_support::TempFolder::Content(PreferencesFile()), before);
  EXPECT_EQ(Names(), std::set<std::string>{"preferences.plist"});
  EXPECT_EQ(VPFGetLongPreferenceForKey("RMF5"), 6000);
  // The next change that can be written includes the earlier ones.
  VPFSetPreferenceForKey("EnableLogging", 1);
  EXPECT_EQ(Stored().GetInteger("RMF5"), 6000);
  EXPECT_EQ(Stored().GetInteger("RMF4"), 6000);
}

TEST_F(PreferencesTest, WhatCannotBeStoredIsRefusedAlone) {
  VPFSetStringPreferenceForKey("LastAddress", "good");
  VPFSetStringPreferenceForKey("LastAddress", "control \x01 character");
  VPFSetStringPreferenceForKey("LastAddress", "malformed \xFF");
  VPFSetLongPreferenceForKey("", 1);
  VPFSetLongPreferenceForKey("bad \xFF key", 1);
  VPFSetLongPreferenceForKey(nullptr, 1);
  VPFSetPreferenceForKey(nullptr, 1);
  VPFSetStringPreferenceForKey(nullptr, "x");
  EXPECT_EQ(VPFGetPreferenceForKey(nullptr), 0);
  EXPECT_EQ(Text("LastAddress"), "good");
  EXPECT_EQ(Stored().Count(), 1u);
  EXPECT_THAT(Reported(), HasSubstr("'LastAddress' cannot be stored"));
}

TEST_F(PreferencesTest, TheBoxShowsAndSetsThem) {
  VPFSetPreferenceForKey("EnablePlugin", 1);
  VPFSetLongPreferenceForKey("RMF5", 4000);
  Dictionary changes = Dictionary::Create();
  changes.Set("EnablePlugin", Boolean::From(false));
  changes.Set("PickBestMatch", Number::FromInteger(1));  // as a script sets it
  changes.Set("RMF5", Number::FromInteger(7000));
  changes.Set("SuppressHostAppDialogs", String::FromUTF8("1"));
  changes.Set("CurrentWorkgroup", Number::FromInteger(9));
  Answer(2, "Preferences", changes);
  VPFShowPreferences();
  EXPECT_EQ(Stored().Count(), 2u) << "cancelled";
  Answer(1, "Preferences", changes);
  VPFShowPreferences();
  const Dictionary stored = Stored();
  EXPECT_FALSE(stored.GetBoolean("EnablePlugin", true));
  EXPECT_TRUE(stored.GetBoolean("PickBestMatch"));
  EXPECT_EQ(stored.GetInteger("RMF5"), 7000);
  EXPECT_EQ(stored.Count(), 3u) << "neither the wrong kind nor the unknown key";
  EXPECT_THAT(Reported(), testing::AllOf(HasSubstr("SuppressHostAppDialogs"), HasSubstr("CurrentWorkgroup")));

  std::set<std::string> labels;
  const platform::Array shown = boxes_[0].GetArray("Preferences");
  for (size_t i = 0; i < shown.Count(); ++i) {
    const Dictionary entry(shown.At(i));
    const std::string key = entry.GetString("Key").Text();
    labels.insert(entry.GetString("Label").Text());
    EXPECT_THAT(entry.GetString("Label").Text(), testing::Not(HasSubstr("Label"))) << key << " has no text";
    EXPECT_EQ(entry.GetBoolean("Value"), key == "EnablePlugin") << key;
    EXPECT_EQ(entry.GetInteger("Value"), key == "RMF5" ? 4000 : 0) << key;
  }
  EXPECT_EQ(labels.size(), shown.Count());
  EXPECT_GE(labels.size(), 9u);
}

}  // namespace
}  // namespace framework_tests
