// What boxes show, and what the plug-in gets from the user's answers.
#include "frameworks/UIFramework.h"

namespace framework_tests {
namespace {

using platform::Array;
using platform::Boolean;
using platform::Dictionary;
using platform::Number;
using platform::String;
using platform::Value;
using testing::ElementsAre;

std::vector<std::string> Texts(const Array& array) {
  std::vector<std::string> texts;
  for (size_t i = 0; i < array.Count(); ++i) texts.push_back(String(array.At(i)).Text());
  return texts;
}

Dictionary Record(std::initializer_list<std::pair<const char*, const char*>> entries) {
  Dictionary record = Dictionary::Create();
  for (const auto& [key, text] : entries) record.Set(key, text);
  return record;
}

TEST_F(UIFrameworkTest, OnlyItsOwnVersionIsCompatible) {
  const std::pair<const char*, bool> rows[] = {
      {"1.0", true}, {"1.1", false}, {"2.0", false}, {"", false}, {nullptr, false}};
  for (const auto& [version, isCompatible] : rows) EXPECT_EQ(VPFIsVersionCompatible(version) != 0, isCompatible);
  EXPECT_NE(VPFInitializeFramework(nullptr), 0);
  VPFSetHostDetails(nullptr);
}

TEST_F(UIFrameworkTest, MessageBoxesGiveTheirButton) {
  const struct {
    const char *header, *message;
    int32_t buttonSet;
    int64_t answer;
    std::vector<std::string> buttons;
    int32_t result;
  } rows[] = {
      {"ConnectionLostHeader", "ConnectionLostMessage", 0, 1, {"OK"}, 1},
      {"ConnectionLostHeader", "ConnectionLostMessage", 0, 0, {"OK"}, 1},
      {"ConnectionLostHeader", "ConnectionLostMessage", 0, 2, {"OK"}, 1},
      {"NotLoggedInHeader", "NotLoggedInOfferLoginMessage", 2, 1, {"Log In", "Cancel"}, 1},
      {"NotLoggedInHeader", "NotLoggedInOfferLoginMessage", 2, 2, {"Log In", "Cancel"}, 2},
      {"MPCoreAgentMissingHeader", "MPCoreAgentMissingMessage", 2, 0, {"Try Again", "Cancel"}, 2},
      {"SomeFontsOfflineHeader", "SomeFontsOfflineMessage", 2, 99, {"Go Online", "Stay Offline"}, 2},
      {nullptr, "a text of its own", 2, -1, {"OK", "Cancel"}, 2},
      {nullptr, nullptr, 0, 1, {"OK"}, 1},
  };
  for (const auto& row : rows) {
    boxes_.clear();
    Answer(row.answer);
    EXPECT_EQ(VPFShowMessageBox(row.header, row.message, row.buttonSet), row.result) << row.message;
    ASSERT_EQ(boxes_.size(), 1u);
    const Dictionary& box = boxes_[0];
    EXPECT_EQ(box.GetString("Kind").View(), "message");
    EXPECT_EQ(Texts(box.GetArray("Buttons")), row.buttons);
    EXPECT_EQ(box.GetString("Message").Text(), row.message ? Localized(row.message) : "");
    EXPECT_EQ(box.GetString("Header").Text(), row.header ? Localized(row.header) : "");
    EXPECT_EQ(box.GetString("Key").Text(), row.message ? row.message : "");
  }
}

TEST_F(UIFrameworkTest, AStringIsAskedFor) {
  const Value typed = String::FromUTF8("Größe"), empty = String::FromUTF8("");
  const struct {
    int64_t button;
    Value text;
    bool isConfirmed;
    const char* result;
  } rows[] = {{1, typed, true, "Größe"},
              {1, empty, true, ""},
              {1, Value(), true, "preset"},
              {2, typed, false, nullptr},
              {0, typed, false, nullptr}};
  for (const auto& row : rows) {
    Answer(row.button, "Text", row.text);
    platform::ValueRef out = Value(typed).Ref();  // must not count as a result
    EXPECT_EQ(VPFAskForOneString("Prompt?", "Set Name:", "preset", &out) != 0, row.isConfirmed);
    const String text(Value::Adopt(out));
    EXPECT_EQ(static_cast<bool>(text), row.isConfirmed);
    EXPECT_EQ(text.View(), row.result ? row.result : "");
    EXPECT_EQ(boxes_.back().GetString("Default").View(), "preset");
    EXPECT_EQ(boxes_.back().GetString("Header").View(), "Prompt?");
    EXPECT_EQ(boxes_.back().GetString("Message").View(), "Set Name:");
  }
  EXPECT_EQ(VPFAskForOneString("", "", nullptr, nullptr), 0);
}

class ResolveTest : public UIFrameworkTest {
 protected:
  ResolveTest() {
    Array candidates = Array::Create();
    candidates.Append(Record({{"PostScriptName", "Sans-Bold"},
                              {"Foundry", "Maker"},
                              {"Version", "1.005"},
                              {"FontKind", "OpenType"},
                              {"WorkgroupName", "Library"},
                              {"IsActive", "1"}}));
    candidates.Append(Record({{"PostScriptName", "Sans-Bold"}, {"FontKind", "Postscript"}, {"IsActive", "0"}}));
    sans_.Set("PossibleReplacements", candidates);
    fonts_.Append(sans_);
    fonts_.Append(missing_);
    fonts_.Append(Value());
    fonts_.Append(String::FromUTF8("no record"));
  }
  // The choice in the record: the index of the candidate, or -1.
  int Chosen(const Dictionary& font) const {
    const Array candidates = font.GetArray("PossibleReplacements");
    for (size_t i = 0; i < candidates.Count(); ++i) {
      if (candidates.At(i) == font.Get("MatchedFont")) return static_cast<int>(i);
    }
    EXPECT_FALSE(font.Contains("MatchedFont"));
    return -1;
  }

  Dictionary sans_ = Record({{"PostScriptName", "Sans-Bold"}});
  Dictionary missing_ = Record({{"PostScriptName", "Gone"}});
  Array fonts_ = Array::Create();
};

TEST_F(ResolveTest, CandidatesAreDescribed) {
  Answer(2);
  VPFShowResolveFonts(fonts_.Ref());
  const Array shown = boxes_.at(0).GetArray("Fonts");
  ASSERT_EQ(shown.Count(), 2u);
  const Array candidates = Dictionary(shown.At(0)).GetArray("PossibleReplacements");
  EXPECT_EQ(Dictionary(candidates.At(0)).GetString("Description").View(),
            "Maker, version 1.005, OpenType, Library, active");
  EXPECT_EQ(Dictionary(candidates.At(1)).GetString("Description").View(), "Postscript");
  EXPECT_EQ(Dictionary(shown.At(1)).GetString("Description").View(), "not found");
  EXPECT_FALSE(sans_.Contains("Description")) << "the plug-in's records are not for display";
}

TEST_F(ResolveTest, TheChoiceGoesIntoTheRecord) {
  const struct {
    int64_t button;
    Value choice;
    int chosen;
  } rows[] = {{1, Number::FromInteger(1), 1},   {1, Number::FromInteger(0), 0}, {1, Number::FromInteger(2), -1},
              {1, Number::FromInteger(-1), -1}, {1, String::FromUTF8("1"), -1}, {1, Value(), -1},
              {2, Number::FromInteger(1), -1},  {0, Number::FromInteger(1), -1}};
  for (const auto& row : rows) {
    sans_.Remove("MatchedFont");
    Dictionary choices = Dictionary::Create();
    choices.Set("Sans-Bold", row.choice);
    choices.Set("Gone", Number::FromInteger(0));
    choices.Set("Unknown", Number::FromInteger(0));
    Answer(row.button, "Choices", choices);
    testing::internal::CaptureStderr();
    VPFShowResolveFonts(fonts_.Ref());
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(Chosen(sans_), row.chosen);
    EXPECT_FALSE(missing_.Contains("MatchedFont"));
  }
  boxes_.clear();
  VPFShowResolveFonts(nullptr);
  VPFShowResolveFonts(Array::Create().Ref());
  EXPECT_TRUE(boxes_.empty());
}

TEST_F(UIFrameworkTest, FontsAreShownBelowATextUnlessThereAreNone) {
  Array fonts = Array::Create();
  VPFShowRestrictedFonts(fonts.Ref());
  VPFShowMissingFonts(nullptr);
  EXPECT_TRUE(boxes_.empty());
  fonts.Append(Record({{"PostScriptName", "Sans"}, {"Foundry", "Maker"}}));
  Dictionary missing = Dictionary::Create();
  missing.Set("Fonts", fonts);
  VPFShowRestrictedFonts(fonts.Ref());
  VPFShowMissingFonts(missing.Ref());
  ASSERT_EQ(boxes_.size(), 2u);
  EXPECT_EQ(boxes_[0].GetString("Kind").View(), "restricted");
  EXPECT_EQ(boxes_[1].GetString("Kind").View(), "missing");
  for (const Dictionary& box : boxes_) {
    EXPECT_EQ(Dictionary(box.GetArray("Fonts").At(0)).GetString("Description").View(), "Maker");
  }
}

class WorkgroupTest : public UIFrameworkTest {
 protected:
  WorkgroupTest() {
    Dictionary local = Record({{"WorkgroupName", "Mine"}, {"WorkgroupID", "3"}});
    local.Set("IsLocalPersonal", Number::FromInteger(1));
    Dictionary integer = Record({{"WorkgroupName", "Server"}});
    integer.Set("WorkgroupID", Number::FromInteger(7));
    for (const Dictionary& workgroup :
         {local, integer, Record({{"WorkgroupName", "All"}, {"WorkgroupID", "-2"}}), Record({{"WorkgroupID", "9"}})}) {
      workgroups_.Append(workgroup);
    }
    command_.Set("Workgroups", workgroups_);
    command_.Set("CurrentWorkgroupID", Number::FromInteger(3));
  }
  Array workgroups_ = Array::Create();
  Dictionary command_ = Dictionary::Create();
};

TEST_F(WorkgroupTest, TheChosenOneIsGivenByItsID) {
  const struct {
    int64_t button;
    Value choice;
    int32_t result;
  } rows[] = {{1, Number::FromInteger(7), 7}, {1, Number::FromInteger(-2), -2},
              {1, Number::FromInteger(9), 0}, {1, Value(), 0},
              {2, Number::FromInteger(7), 0}, {0, Number::FromInteger(7), 0}};
  for (const auto& row : rows) {
    Answer(row.button, "Choice", row.choice);
    EXPECT_EQ(VPFShowSelectWorkgroup(workgroups_.Ref()), row.result);
  }
  const Array shown = boxes_[0].GetArray("Workgroups");
  ASSERT_EQ(shown.Count(), 3u) << "one without a name cannot be chosen";
  EXPECT_EQ(Dictionary(shown.At(0)).GetString("Name").View(), "Mine");
  EXPECT_EQ(Dictionary(shown.At(0)).GetInteger("ID"), 3);
  EXPECT_TRUE(Dictionary(shown.At(0)).GetBoolean("IsLocalPersonal"));
  EXPECT_FALSE(Dictionary(shown.At(1)).GetBoolean("IsLocalPersonal"));
  EXPECT_EQ(VPFShowSelectWorkgroup(nullptr), 0);
}

TEST_F(WorkgroupTest, EachButtonOfTheCommandBoxIsItsCode) {
  const struct {
    const char* button;
    bool isEnabled;
    int32_t code, workgroup;
  } rows[] = {{"Check Document Fonts", true, 6, 7},
              {"Make Document Set", true, 5, 7},
              {"Collect for Output", true, 4, 7},
              {"Preferences", true, 3, 7},
              {"About", true, 2, 7},
              {"Cancel", true, -1, 3},
              {"Check Document Fonts", false, -1, 3},
              {"Make Document Set", false, -1, 3},
              {"Collect for Output", false, -1, 3},
              {"Preferences", false, 3, 7},
              {"closed", true, -1, 3}};
  Answer(0);
  int32_t workgroup = 3;
  VPFShowCommandBox(command_.Ref(), &workgroup);
  const std::vector<std::string> buttons = Texts(boxes_[0].GetArray("Buttons"));
  for (const auto& row : rows) {
    // The plug-in stores flags as numbers.
    command_.Set("ButtonsEnabled", Number::FromInteger(row.isEnabled ? 1 : 0));
    const auto found = std::find(buttons.begin(), buttons.end(), row.button);
    Answer(found == buttons.end() ? 0 : found - buttons.begin() + 1, "Choice", Number::FromInteger(7));
    workgroup = 3;
    EXPECT_EQ(VPFShowCommandBox(command_.Ref(), &workgroup), row.code) << row.button;
    EXPECT_EQ(workgroup, row.workgroup) << row.button;
  }
  // No choice, or one that was not offered: the preset is kept.
  for (const Value& choice : {Value(), Value(Number::FromInteger(9))}) {
    Answer(4, "Choice", choice);
    workgroup = 3;
    EXPECT_EQ(VPFShowCommandBox(command_.Ref(), &workgroup), 3);
    EXPECT_EQ(workgroup, 3);
  }
  EXPECT_EQ(VPFShowCommandBox(nullptr, nullptr), 3) << "not even without a dictionary";
}

TEST_F(WorkgroupTest, TheBoxTellsWhetherTheUserWorksOnline) {
  Answer(0);
  int32_t workgroup = 3;
  const auto message = [&] {
    VPFShowCommandBox(command_.Ref(), &workgroup);
    return boxes_.back().GetString("Message").Text();
  };
  for (const bool isOnline : {true, false}) {
    for (const Value& flag : {Value(Boolean::From(isOnline)), Value(Number::FromInteger(isOnline ? 1 : 0)), Value()}) {
      VPFSetIsOnline(flag ? !isOnline : isOnline);  // used only if the box's dictionary has none
      command_.Set("IsOnline", flag);
      EXPECT_EQ(message(), isOnline ? "You work online." : "You work offline.");
    }
  }
  EXPECT_EQ(boxes_.back().GetInteger("CurrentWorkgroupID"), 3);
}

TEST_F(WorkgroupTest, OnlyABoxThatIsUpComesToTheFront) {
  VPFForceSelectWorkgroupWindowToFront();
  EXPECT_TRUE(progress_.empty());
  whileShown_ = VPFForceSelectWorkgroupWindowToFront;
  EXPECT_EQ(VPFShowSelectWorkgroup(workgroups_.Ref()), 0);
  VPFForceSelectWorkgroupWindowToFront();
  EXPECT_THAT(progress_, ElementsAre("front"));
}

TEST_F(UIFrameworkTest, ThereIsOneProgressWindow) {
  Dictionary progress = Dictionary::Create();
  const auto at = [&](int current) {
    progress.Set("CurrentProgress", Number::FromInteger(current));
    return progress.Ref();
  };
  VPFUpdateProgress(at(1));
  VPFHideProgress();
  VPFShowProgress(nullptr);
  EXPECT_TRUE(progress_.empty());
  VPFShowProgress(at(2));
  VPFUpdateProgress(at(3));
  VPFUpdateProgress(nullptr);
  VPFShowProgress(at(4));
  VPFHideProgress();
  VPFHideProgress();
  VPFUpdateProgress(at(5));
  EXPECT_THAT(progress_, ElementsAre("show 2", "update 3", "update 4", "hide"));
}

TEST_F(UIFrameworkTest, TheAboutBoxTellsTheVersionsThatAreKnown) {
  Start(Record({{"HostApp", "Host"}, {"PluginVersion", "21.0"}}));
  VPFShowAboutBox();
  EXPECT_EQ(boxes_.back().GetString("Message").View(), "Plug-in version 21.0");
  VPFSetHostDetails(Record({{"VelorantPluginInterfaceVersion", "1.2.3"}}).Ref());
  VPFShowAboutBox();
  EXPECT_EQ(boxes_.back().GetString("Message").View(), "Plug-in version 21.0\nFont manager interface version 1.2.3");
  EXPECT_EQ(boxes_.back().GetString("Header").View(), "Velorant Auto-Activation Plug-in for Host");
}

}  // namespace
}  // namespace framework_tests
